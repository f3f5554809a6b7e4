// svg_font.cpp: the font shorthand (CSS 2.1, 15.8).
//
// It has no value of its own: it is split into its longhands, for an element as for a style sheet.
// Bad values are warnings of the dispatcher; raises what adding a longhand raises.
#include "svg/values/svg_font.h"

#include <cstring>
#include <iterator>

#include "svg/names/svg_schema.h"
#include "svg/values/svg_attr.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

namespace {

// A word of a font shorthand, terminated in the copy; the last of five runs to the end of the text.
struct font_word {
  char *start;
  char *end;
  char separator;               // what stood at end
  const svg_attr_def *longhand; // that takes it as a keyword, or null
  bool normal;                  // and the keyword is "normal", which adds nothing
};

} // namespace

using add_fn = void (*)(svg_parser *p, const char *name, const char *value);

static void split_font_copy(svg_parser *p, add_fn add);
static void join_line_height(char *text);
static int split_words(char *text, font_word *words);
static int classify_words(svg_parser *p, font_word *words, int count, add_fn add);
static const svg_key_entry *find_keyword(const svg_scanner *p, const svg_attr_def &def,
                                         const char *word);

constexpr int MAX_WORDS = 5;

// The keyword-valued longhands, in the order in which they are tried.
constexpr int32_t font_props[] = {SVG_PROP_font_weight, SVG_PROP_font_style, SVG_PROP_font_variant};

constexpr int32_t font_longhands[] = {SVG_PROP_font_weight, SVG_PROP_font_style,
                                      SVG_PROP_font_variant, SVG_PROP_font_size,
                                      SVG_PROP_font_family};

void svg_split_font(svg_parser *p, const char *text, add_fn add) {
  p->font_copy = ort_strdup(p->core, text);
  svg_note(p, 5, "\t\t\t[font properties:]\n");
  const bool in_sheet = add != svg_add_prop;
  if (in_sheet) join_line_height(p->font_copy);
  if (in_sheet && svg_strcmp(p, p->font_copy, "inherit") == 0)
    for (int32_t row : font_longhands) add(p, svg_attr_table[row].name, p->font_copy);
  else
    split_font_copy(p, add);
  ort_free(p->core, p->font_copy);
  p->font_copy = nullptr;
}

// The longhands rank like presentation attributes, also those of a style attribute.
void svg_parse_font_prop(svg_parser *p, const char *text) {
  const int32_t in_style_attr = p->in_style_attr;
  p->in_style_attr = 0;
  svg_split_font(p, text, svg_add_prop);
  p->in_style_attr = in_style_attr;
}

void svg_ctor_an_font(svg_parser *p, svg_a_node *) {
  p->new_value = nullptr;
  svg_scan_reset(p);
  svg_parse_font_prop(p, p->scan_pos);
}

static void split_font_copy(svg_parser *p, add_fn add) {
  font_word words[MAX_WORDS] = {};
  const int count = split_words(p->font_copy, words);
  const int taken = count > 1 ? classify_words(p, words, count, add) : 0;
  if (count == 1) {
    add(p, svg_attr_table[SVG_PROP_font_family].name, words[0].start);
  } else if (taken + 1 < count) { // else size or family is missing
    for (int i = 0; i < count; ++i)
      if (words[i].longhand && !words[i].normal) add(p, words[i].longhand->name, words[i].start);
    char *size = words[taken].start;
    size[strcspn(size, "/")] = '\0';
    add(p, svg_attr_table[SVG_PROP_font_size].name, size);
    for (int i = taken + 1; i < count - 1; ++i) *words[i].end = words[i].separator;
    add(p, svg_attr_table[SVG_PROP_font_family].name, words[taken + 1].start);
  }
}

// Removes the blanks around the "/" between size and line height, which a sheet may have. A family
// in quotes comes after it.
static void join_line_height(char *text) {
  char *slash = text + strcspn(text, "/\"'");
  if (*slash != '/') return;
  char *end = slash;
  while (end > text && ort_isspace(end[-1])) --end;
  *end++ = '/';
  const char *rest = slash + 1;
  while (ort_isspace(*rest)) ++rest;
  memmove(end, rest, strlen(rest) + 1);
}

static int split_words(char *text, font_word *words) {
  int count = 0;
  bool in_word = false;
  for (char *s = text; *s != '\0'; ++s) {
    const bool space = ort_isspace(*s);
    if (space && in_word) {
      words[count - 1].end = s;
      words[count - 1].separator = *s;
      *s = '\0';
    } else if (!space && !in_word) {
      words[count++].start = s;
      if (count == MAX_WORDS) break;
    }
    in_word = !space;
  }
  return count;
}

// Finds the words that are keywords of a longhand, each longhand taking one; returns their number.
static int classify_words(svg_parser *p, font_word *words, int count, add_fn add) {
  bool set[std::size(font_props)] = {};
  int taken = 0;
  for (int i = 0; i < count; ++i)
    for (size_t k = 0; k < std::size(font_props); ++k) {
      if (set[k]) continue;
      const svg_attr_def &def = svg_attr_table[font_props[k]];
      const svg_key_entry *keyword = find_keyword(p, def, words[i].start);
      if (!keyword) continue;
      words[i].longhand = &def;
      words[i].normal = keyword->id == SVG_KW_normal;
      set[k] = true;
      ++taken;
      // A longhand counts as added when its word is met, and svg_add_prop leaves css_mode clear:
      // after the first word with an effect, an element's words are compared exactly.
      if (!words[i].normal && add == svg_add_prop) p->css_mode = 0;
      break;
    }
  return taken;
}

static const svg_key_entry *find_keyword(const svg_scanner *p, const svg_attr_def &def,
                                         const char *word) {
  for (uint32_t i = 0; i < def.key_count; ++i)
    if (svg_strcmp(p, word, def.keys[i].text) == 0) return &def.keys[i];
  return nullptr;
}
