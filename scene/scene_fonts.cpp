// scene_fonts.cpp: see scene_fonts.h. Called by scene_text_*.cpp.
#include "scene/scene_fonts.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

#include "scene/scene_walk.h"

static constexpr size_t LONGEST = 64;  // bytes of a ligature; a longer one never stands in a text
static constexpr uint64_t PROBES = 16; // look-ups that count as one shown element

static const svg_e_node *find_element(svg_scene *scene, const svg_scene_style *style);
static svg_scene_font *load_font(svg_scene *scene, const svg_e_node *element);
static void read_facts(svg_scene_font *font);
static void add_glyphs(svg_scene *scene, svg_scene_font *font);
static uint64_t index_glyph(svg_scene_font *font, uint32_t place);
static bool is_in_list(const svg_an_name_list *list, const svg_scene_glyph *glyph, bool is_unicode);
static bool is_in_range(const char *range, const char *unicode);

static uint32_t extend_hash(uint32_t hash, const char *text, size_t size) { // FNV-1a
  for (size_t i = 0; i < size; ++i) hash = (hash ^ static_cast<unsigned char>(text[i])) * 16777619u;
  return hash;
}

static constexpr uint32_t HASH_START = 2166136261u;

size_t svg_scene_character_length(const char *text, size_t size) {
  const auto lead = static_cast<unsigned char>(*text);
  const size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  return std::min(length, size);
}

static double number_of(const svg_e_node *element, int row, double otherwise) {
  const auto *number = svg_scene_find<svg_an_number>(element, row);
  return number ? number->value : otherwise;
}

svg_scene_font *svg_scene_find_font(svg_scene *scene, const svg_scene_style *style) {
  if (svg_get_font_count(scene->parser) == 0) return nullptr;
  const svg_e_node *element = find_element(scene, style);
  if (!element) return nullptr;
  svg_scene_font **place = &scene->fonts;
  for (uint64_t steps = 0; *place; place = &(*place)->next) {
    if ((*place)->element == element) return *place;
    if (++steps % PROBES == 0) svg_scene_count(scene, 1);
  }
  *place = load_font(scene, element);
  return *place;
}

static const svg_e_node *find_element(svg_scene *scene, const svg_scene_style *style) {
  static constexpr int32_t weights[] = {SVG_KW_100, SVG_KW_200, SVG_KW_300, SVG_KW_400, SVG_KW_500,
                                        SVG_KW_600, SVG_KW_700, SVG_KW_800, SVG_KW_900};
  const svg_an_key_name_list *families = style->font_family;
  for (int32_t i = 0; families && i < families->count; ++i) {
    svg_scene_count(scene, svg_get_font_count(scene->parser) / PROBES);
    const svg_e_node *element =
        svg_get_font(scene->parser, families->names[i], families->keys[i], style->font_size,
                     style->font_stretch, style->font_style, style->font_variant,
                     weights[std::clamp(style->font_weight / 100, 1, 9) - 1]);
    if (element && element->head.id == SVG_ELEM_font) return element;
  }
  return nullptr;
}

// One block holds the font and all its tables.
static svg_scene_font *load_font(svg_scene *scene, const svg_e_node *element) {
  size_t glyphs = 0, kerns = 0;
  for (const svg_node *node = element->first_child; node; node = node->next) {
    glyphs += node->id == SVG_ELEM_glyph;
    kerns += node->id == SVG_ELEM_hkern;
  }
  const size_t slots = std::bit_ceil(2 * glyphs + 1);
  const size_t sizes[] = {sizeof(svg_scene_font), glyphs * sizeof(svg_scene_glyph),
                          kerns * sizeof(const svg_e_node *), slots * sizeof(uint32_t)};
  auto *block = static_cast<char *>(
      ort_calloc(scene->core, 1, sizes[0] + sizes[1] + sizes[2] + sizes[3], "svg_scene_find_font"));
  auto *font = reinterpret_cast<svg_scene_font *>(block);
  font->element = element;
  font->glyphs = reinterpret_cast<svg_scene_glyph *>(block + sizes[0]);
  font->kerns = reinterpret_cast<const svg_e_node **>(block + sizes[0] + sizes[1]);
  font->slots = reinterpret_cast<uint32_t *>(block + sizes[0] + sizes[1] + sizes[2]);
  font->slot_count = static_cast<uint32_t>(slots);
  read_facts(font);
  add_glyphs(scene, font);
  return font;
}

static void read_facts(svg_scene_font *font) {
  const svg_e_node *face = nullptr;
  for (svg_node *node = font->element->first_child; node && !face; node = node->next)
    if (node->id == SVG_ELEM_font_face) face = svg_as_element(node);
  const auto fact = [face](int row, double otherwise) {
    return face ? number_of(face, row, otherwise) : otherwise;
  };
  const double units = fact(SVG_ATTR_units_per_em, 1000);
  font->units = units > 0 ? units : 1000;
  font->ascent = fact(SVG_ATTR_ascent, 0.8 * font->units);
  font->descent = std::abs(fact(SVG_ATTR_descent, 0.2 * font->units));
  font->underline[0] = fact(SVG_ATTR_underline_position, -0.1 * font->units);
  font->underline[1] = fact(SVG_ATTR_underline_thickness, 0.05 * font->units);
  font->origin[0] = number_of(font->element, SVG_ATTR_horiz_origin_x, 0);
  font->origin[1] = number_of(font->element, SVG_ATTR_horiz_origin_y, 0);
}

static void add_glyphs(svg_scene *scene, svg_scene_font *font) {
  const double usual = number_of(font->element, SVG_ATTR_font_horiz_adv_x, 0);
  font->missing.advance = usual;
  for (svg_node *node = font->element->first_child; node; node = node->next) {
    if (node->id == SVG_ID_TEXT) continue;
    const svg_e_node *element = svg_as_element(node);
    const double advance = number_of(element, SVG_ATTR_horiz_adv_x, usual);
    if (node->id == SVG_ELEM_missing_glyph) font->missing = {element, nullptr, advance};
    if (node->id == SVG_ELEM_hkern) font->kerns[font->kern_count++] = element;
    if (node->id != SVG_ELEM_glyph) continue;
    const auto *unicode = svg_scene_find<svg_an_string>(element, SVG_ATTR_unicode);
    font->glyphs[font->glyph_count] = {element, unicode ? unicode->text : "", advance};
    svg_scene_count(scene, index_glyph(font, font->glyph_count++) / PROBES);
  }
}

// Of several glyphs for the same characters, the first one counts. Returns the slots looked at.
static uint64_t index_glyph(svg_scene_font *font, uint32_t place) {
  const char *unicode = font->glyphs[place].unicode;
  const size_t size = strnlen(unicode, LONGEST + 1);
  if (size == 0 || size > LONGEST) return 1;
  const uint32_t hash = extend_hash(HASH_START, unicode, size);
  for (uint32_t probe = 0;; ++probe) {
    uint32_t &entry = font->slots[(hash + probe) & (font->slot_count - 1)];
    if (entry != 0 && strcmp(font->glyphs[entry - 1].unicode, unicode) != 0) continue;
    if (entry == 0) entry = place + 1;
    font->longest = std::max(font->longest, size);
    return probe + 1;
  }
}

const svg_scene_glyph *svg_scene_find_glyph(svg_scene *scene, const svg_scene_font *font,
                                            const char *text, size_t size, size_t *length) {
  *length = svg_scene_character_length(text, size);
  const svg_scene_glyph *best = nullptr;
  uint32_t hash = HASH_START;
  uint64_t probes = 0;
  const size_t end = std::min(size, font->longest);
  for (size_t at = 0; at < end;) {
    const size_t next = at + svg_scene_character_length(text + at, end - at);
    hash = extend_hash(hash, text + at, next - at);
    at = next;
    for (uint32_t slot = hash;; ++slot, ++probes) {
      const uint32_t entry = font->slots[slot & (font->slot_count - 1)];
      if (entry == 0) break;
      const svg_scene_glyph *glyph = &font->glyphs[entry - 1];
      if (strncmp(glyph->unicode, text, at) != 0 || glyph->unicode[at] != 0) continue;
      if (!best || glyph < best) {
        best = glyph;
        *length = at;
      }
      break;
    }
  }
  if (probes >= PROBES) svg_scene_count(scene, probes / PROBES);
  return best ? best : &font->missing;
}

double svg_scene_get_kern(svg_scene *scene, svg_scene_font *font, const svg_scene_glyph *left,
                          const svg_scene_glyph *right) {
  if (font->kern_count == 0 || !left->unicode || !right->unicode) return 0;
  const auto left_place = static_cast<size_t>(left - font->glyphs);
  const auto right_place = static_cast<size_t>(right - font->glyphs);
  auto &known = font->known[(left_place * 31 + right_place) % std::size(font->known)];
  if (known.left == left && known.right == right) return known.kern;
  known = {left, right, 0};
  for (size_t i = 0; i < font->kern_count; ++i) {
    const svg_e_node *kern = font->kerns[i];
    const auto list = [kern](int row) { return svg_scene_find<svg_an_name_list>(kern, row); };
    const svg_an_name_list *lists[] = {list(SVG_ATTR_u1), list(SVG_ATTR_g1), list(SVG_ATTR_u2),
                                       list(SVG_ATTR_g2)};
    uint64_t names = 0;
    for (const svg_an_name_list *names_of : lists)
      names += names_of ? static_cast<uint64_t>(names_of->count) : 0;
    svg_scene_count(scene, (names + (i % PROBES == 0)) / PROBES);
    if ((is_in_list(lists[0], left, true) || is_in_list(lists[1], left, false)) &&
        (is_in_list(lists[2], right, true) || is_in_list(lists[3], right, false))) {
      known.kern = number_of(kern, SVG_ATTR_k, 0);
      break;
    }
  }
  return known.kern;
}

static bool is_in_list(const svg_an_name_list *list, const svg_scene_glyph *glyph,
                       bool is_unicode) {
  if (!list) return false;
  const auto *name = svg_scene_find<svg_an_string>(glyph->element, SVG_ATTR_glyph_name);
  const char *wanted = is_unicode ? glyph->unicode : name ? name->text : nullptr;
  for (int32_t i = 0; wanted && i < list->count; ++i)
    if (strcmp(list->names[i], wanted) == 0 || (is_unicode && is_in_range(list->names[i], wanted)))
      return true;
  return false;
}

// Whether a single character lies in U+XXXX, U+XX?? or U+XXXX-YYYY (CSS 2, 15.3.6).
static bool is_in_range(const char *range, const char *unicode) {
  if ((range[0] != 'U' && range[0] != 'u') || range[1] != '+') return false;
  if (*unicode == 0 || unicode[svg_scene_character_length(unicode, 4)] != 0) return false;
  uint32_t first = 0, last = 0, digits = 0;
  const char *c = range + 2;
  for (bool is_second = false; *c != 0 && digits < 7; ++c, ++digits) {
    const char lower = static_cast<char>(*c | 0x20);
    const bool is_letter = lower >= 'a' && lower <= 'f';
    const bool is_digit = *c >= '0' && *c <= '9';
    const auto digit = static_cast<uint32_t>(is_letter ? lower - 'a' + 10 : *c - '0');
    if (*c == '-' && !is_second) {
      is_second = true;
      last = digits = 0;
    } else if (*c == '?' || is_digit || is_letter) {
      last = last << 4 | (*c == '?' ? 0xF : digit);
      if (!is_second) first = first << 4 | (*c == '?' ? 0 : digit);
    } else {
      return false;
    }
  }
  const uint32_t character = svg_scene_decode(unicode);
  return *c == 0 && first <= character && character <= last;
}

uint32_t svg_scene_decode(const char *text) {
  const size_t length = svg_scene_character_length(text, 4);
  const auto lead = static_cast<unsigned char>(*text);
  uint32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
  for (size_t i = 1; i < length; ++i)
    character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
  return character;
}

void svg_scene_free_fonts(svg_scene *scene) {
  while (svg_scene_font *font = scene->fonts) {
    scene->fonts = font->next;
    ort_free(scene->core, font);
  }
}
