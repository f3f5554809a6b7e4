// svg_fonts.cpp: the value of font-family, the fonts that a document defines, and the questions
// about them.
//
// The constructor is called by svg_parse_attr, svg_font_new by the hooks of font and font-face, the
// queries by hosts. A bad family list is raised with svg_err_value; the queries raise at most for
// lack of memory.
#include <cmath>
#include <cstring>

#include "svg/values/svg_scan.h"
#include "svg/values/svg_values.h"

// clang-format off
static const ort_keyword svg_font_keylist[] = { // "all", "bold" and "inherit" have no text in names
    {"cursive",         SVG_KW_cursive},
    {"fantasy",         SVG_KW_fantasy},
    {"monospace",       SVG_KW_monospace},
    {"sans-serif",      SVG_KW_sans_serif},
    {"serif",           SVG_KW_serif},
    {"100",             SVG_KW_100},
    {"200",             SVG_KW_200},
    {"300",             SVG_KW_300},
    {"400",             SVG_KW_400},
    {"500",             SVG_KW_500},
    {"600",             SVG_KW_600},
    {"700",             SVG_KW_700},
    {"800",             SVG_KW_800},
    {"900",             SVG_KW_900},
    {"normal",          SVG_KW_normal},
    {"italic",          SVG_KW_italic},
    {"oblique",         SVG_KW_oblique},
    {"ultra-condensed", SVG_KW_ultra_condensed},
    {"extra-condensed", SVG_KW_extra_condensed},
    {"condensed",       SVG_KW_condensed},
    {"semi-condensed",  SVG_KW_semi_condensed},
    {"semi-expanded",   SVG_KW_semi_expanded},
    {"expanded",        SVG_KW_expanded},
    {"extra-expanded",  SVG_KW_extra_expanded},
    {"ultra-expanded",  SVG_KW_ultra_expanded},
    {"small-caps",      SVG_KW_small_caps},
    {nullptr,           0},
};
// clang-format on

struct font_request {
  const char *family; // null: the generic family is asked for
  int32_t generic;
  double size;
  int32_t stretch, style, variant, weight;
};

static int32_t count_families(svg_parser *p);
static void log_families(const svg_parser *p, const svg_an_key_name_list *list);
static void keep_inherit_only(svg_parser *p, svg_an_key_name_list *list);
static bool fits(const svg_font *font, const font_request &wanted, int32_t relaxed);
static bool fits_family(const svg_font *font, const font_request &wanted);
static bool fits_size(const svg_font *font, double size);
template <class Accepts> static bool any_key(const svg_an_key_list *list, Accepts accepts);
static int32_t slanted(int32_t style);
static void append_text(ort_bs *name, const char *text);
static void append_family(ort_bs *name, const svg_font *font);
template <class Map> static void append_keys(ort_bs *name, const svg_an_key_list *list, Map map);
static void append_sizes(svg_parser *p, ort_bs *name, const svg_an_key_unum_list *sizes);
static uint32_t hex_number(const char *text, const char *end, char joker);

svg_font *svg_font_new(svg_parser *p, svg_e_node *node) {
  auto *font = ort_new<svg_font>(p->core, "svg_font_new");
  font->id = p->cur_href;
  font->node = node;
  return font;
}

void svg_ctor_an_font_family(svg_parser *p, svg_a_node *node) {
  auto *list = svg_record<svg_an_key_name_list>(node);
  const int32_t count = count_families(p);
  svg_note(p, 5, "\t\t\t[%d font families detected]\n", count);
  const auto size = static_cast<size_t>(count);
  list->keys = static_cast<int32_t *>(
      ort_malloc(p->core, size * sizeof(int32_t), "svg_ctor_an_font_family"));
  list->names = ort_new_array<char *>(p->core, size, "svg_ctor_an_font_family");
  list->count = count;

  svg_scan_reset(p);
  svg_ntok_nonum(p);
  bool inherit = false;
  for (int32_t i = 0; i < count; i++) {
    list->keys[i] = svg_get_family_name(p);
    if (list->keys[i] == SVG_KW_NONE)
      list->names[i] = ort_strdup(p->core, ort_bs_text(p->name_buf));
    else if (list->keys[i] == SVG_KW_inherit)
      inherit = true;
  }
  if (p->log_level >= 6) log_families(p, list);
  if (inherit) keep_inherit_only(p, list);
}

// Reads one entry of the list and what separates it from the next. A failure leaves keyword
// recognition off, which ends with the value.
int32_t svg_get_family_name(svg_parser *p) {
  int32_t key = SVG_KW_NONE;
  if (p->tok_type == SVG_TOK_STRING) {
    const int32_t key_count = p->key_count;
    ort_bs_clear(p->name_buf);
    ort_bs_append_text(p->name_buf, p->tok_text);
    p->key_count = 0; // "Bitstream serif" is a name
    while (svg_ntok_nonum(p) == SVG_TOK_STRING) {
      ort_bs_append_byte(p->name_buf, ' ');
      ort_bs_append_text(p->name_buf, p->tok_text);
    }
    p->key_count = key_count;
  } else if (p->tok_type == SVG_TOK_KEYWORD) {
    key = p->tok_key;
    svg_ntok_nonum(p);
  } else {
    svg_err_value(p);
  }
  if (p->tok_type == SVG_TOK_COMMA)
    svg_ntok_nonum(p);
  else if (p->tok_type != SVG_TOK_END)
    svg_err_value(p);
  return key;
}

void svg_dtor_an_key_name_list(ort_core *core, svg_a_node *node) {
  auto *list = svg_record<svg_an_key_name_list>(node);
  ort_free(core, list->keys);
  if (list->names == nullptr) return;
  for (int32_t i = 0; i < list->count; i++) ort_free(core, list->names[i]);
  ort_free(core, list->names);
}

int32_t svg_match_condition(int32_t relaxed, int32_t font_value, int32_t wanted) {
  if (font_value != SVG_KW_all) return font_value == wanted;
  return relaxed == 1 || wanted == SVG_KW_400 || wanted == SVG_KW_normal;
}

int32_t svg_normalize_font_weight(int32_t weight) {
  if (weight == SVG_KW_normal) return SVG_KW_400;
  return weight == SVG_KW_bold ? SVG_KW_700 : weight;
}

size_t svg_get_font_count(const svg_parser *p) { return ort_vtr_count(p->fonts); }

const svg_font *svg_get_font_at(const svg_parser *p, size_t i) {
  return i < ort_vtr_count(p->fonts) ? ort_item<svg_font *>(p->fonts, i) : nullptr;
}

svg_e_node *svg_get_font(const svg_parser *p, const char *family, int32_t generic, double size,
                         int32_t stretch, int32_t style, int32_t variant, int32_t weight) {
  const font_request wanted = {family, generic, size, stretch, style, variant, weight};
  for (int32_t relaxed = 0; relaxed <= 1; relaxed++)
    for (size_t i = 0; i < ort_vtr_count(p->fonts); i++)
      if (const auto *font = ort_item<svg_font *>(p->fonts, i); fits(font, wanted, relaxed))
        return font->node;
  return nullptr;
}

svg_e_node *svg_get_first_font(svg_parser *p, ort_bs *name) {
  const svg_font *font = svg_get_font_at(p, 0);
  if (font == nullptr) return nullptr;
  if (name != nullptr) svg_create_fontname(p, font, name);
  return font->node;
}

void svg_create_fontname(svg_parser *p, const svg_font *font, ort_bs *name) {
  constexpr size_t NO_DESCRIPTORS = 5; // the underscores alone
  const auto same = [](int32_t key) { return key; };
  append_family(name, font);
  if (p->font_number > 0) {
    ort_bs_append_byte(name, '-');
    ort_bs_append_text(name, ort_errprintf(p->core, "%d", p->font_number));
  }
  const size_t length = ort_bs_length(name);
  append_keys(name, font->weight, svg_normalize_font_weight);
  append_keys(name, font->style, same);
  append_keys(name, font->stretch, same);
  append_keys(name, font->variant,
              [](int32_t key) { return key == SVG_KW_normal ? SVG_KW_NONE : key; });
  append_sizes(p, name, font->size);
  if (ort_bs_length(name) == length + NO_DESCRIPTORS) ort_bs_shorten(name, length);
}

int32_t svg_get_urange(ort_core *, const char *text, uint32_t *first, uint32_t *last) {
  if (text[0] != 'U' || text[1] != '+' || text[2] == '\0') return 0;
  text += 2;
  const char *end = text + strcspn(text, "-");
  *first = *last = hex_number(text, end, '0');
  if (memchr(text, '?', static_cast<size_t>(end - text)) != nullptr)
    *last = hex_number(text, end, 'F'); // whatever follows the dash
  else if (*end == '-')
    *last = hex_number(end + 1, end + strlen(end), '0');
  return 1;
}

// One more than the commas.
static int32_t count_families(svg_parser *p) {
  int32_t count = 1;
  for (int token = svg_ntok_nonum(p); token != SVG_TOK_END; token = svg_ntok_nonum(p))
    if (token == SVG_TOK_COMMA) count++;
  return count;
}

static void log_families(const svg_parser *p, const svg_an_key_name_list *list) {
  ort_logg(p->core, "\t\t\t\t");
  for (int32_t i = 0; i < list->count; i++) {
    if (list->names[i] != nullptr)
      ort_logg(p->core, "\"%a\" ", list->names[i]);
    else if (list->keys[i] == SVG_KW_inherit)
      ort_logg(p->core, "inherit ");
    else
      ort_logg(p->core, "generics=%d ", list->keys[i]);
  }
  ort_logg(p->core, "\n");
}

static void keep_inherit_only(svg_parser *p, svg_an_key_name_list *list) {
  for (int32_t i = 0; i < list->count; i++) {
    ort_free(p->core, list->names[i]);
    list->names[i] = nullptr;
  }
  if (list->count > 1) svg_note(p, 6, "\t\t\t\t\"inherit\" is dominant\n");
  list->keys[0] = SVG_KW_inherit;
  list->count = 1;
}

static bool fits(const svg_font *font, const font_request &wanted, int32_t relaxed) {
  return fits_family(font, wanted) && fits_size(font, wanted.size) &&
         any_key(
             font->stretch,
             [&](int32_t key) { return svg_match_condition(relaxed, key, wanted.stretch) != 0; }) &&
         any_key(font->style,
                 [&](int32_t key) {
                   return svg_match_condition(relaxed, slanted(key), slanted(wanted.style)) != 0;
                 }) &&
         any_key(font->variant, [&](int32_t key) { return key == wanted.variant; }) &&
         (relaxed || any_key(font->weight, [&](int32_t key) {
            return svg_match_condition(0, svg_normalize_font_weight(key), wanted.weight) != 0;
          }));
}

static bool fits_family(const svg_font *font, const font_request &wanted) {
  const svg_an_key_name_list *list = font->family;
  for (int32_t i = 0; list != nullptr && i < list->count; i++) {
    const char *name = list->names[i];
    if (wanted.family == nullptr ? list->keys[i] == wanted.generic
                                 : name != nullptr && ort_strcmp(name, wanted.family) == 0)
      return true;
  }
  return false;
}

static bool fits_size(const svg_font *font, double size) {
  const svg_an_key_unum_list *list = font->size;
  if (list == nullptr || list->key != SVG_KW_NONE) return true;
  for (int32_t i = 0; i < list->count; i++)
    if (fabs(list->values[i] - size) < 1e-6) return true;
  return false;
}

// A font without the descriptor has any value; one with an empty list has none.
template <class Accepts> static bool any_key(const svg_an_key_list *list, Accepts accepts) {
  if (list == nullptr) return true;
  for (int32_t i = 0; i < list->count; i++)
    if (accepts(list->keys[i])) return true;
  return false;
}

static int32_t slanted(int32_t style) { return style == SVG_KW_oblique ? SVG_KW_italic : style; }

static void append_text(ort_bs *name, const char *text) {
  if (text != nullptr) ort_bs_append_escaped(name, text);
}

static void append_family(ort_bs *name, const svg_font *font) {
  const svg_an_key_name_list *list = font->family;
  if (list == nullptr || list->count == 0) {
    append_text(name, font->id != nullptr ? font->id : "*");
    return;
  }
  for (int32_t i = 0; i < list->count; i++) {
    if (i > 0) ort_bs_append_byte(name, ',');
    const char *text = list->names[i];
    append_text(name, text ? text : ort_get_keyword(list->keys[i], svg_font_keylist));
  }
}

// A keyword without text leaves its separator behind.
template <class Map> static void append_keys(ort_bs *name, const svg_an_key_list *list, Map map) {
  ort_bs_append_byte(name, '_');
  for (int32_t i = 0; list != nullptr && i < list->count; i++) {
    if (i > 0) ort_bs_append_byte(name, ',');
    append_text(name, ort_get_keyword(map(list->keys[i]), svg_font_keylist));
  }
}

static void append_sizes(svg_parser *p, ort_bs *name, const svg_an_key_unum_list *sizes) {
  ort_bs_append_byte(name, '_');
  if (sizes == nullptr || sizes->key != SVG_KW_NONE) return;
  for (int32_t i = 0; i < sizes->count; i++) {
    if (i > 0) ort_bs_append_byte(name, ',');
    ort_bs_append_text(name, ort_errprintf(p->core, "%g", sizes->values[i]));
  }
}

// joker stands for each "?". A byte that is no digit counts as 0.
static uint32_t hex_number(const char *text, const char *end, char joker) {
  uint32_t number = 0;
  for (; text < end; text++) {
    const char digit[2] = {*text == '?' ? joker : *text, '\0'};
    number = number * 16 + static_cast<uint32_t>(ort_hex2bin_a(digit, -1));
  }
  return number;
}
