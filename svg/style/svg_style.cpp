// svg_style.cpp: the style attribute and the font shorthand.
//
// A small lexer splits the text of a style attribute into declarations, each of which goes to
// svg_add_prop. The font shorthand has no value of its own: it is split into its longhands, for an
// element as for a style sheet. Bad values are warnings of the dispatcher; raises what svg_add_prop
// raises.
#include "svg/style/svg_style.h"

#include <cstring>

#include "svg/names/svg_schema.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_values.h"

namespace {

constexpr int MAX_WORDS = 5;

// A word of a font shorthand, terminated in the copy; the last of five runs to the end of the text.
struct font_word {
  char *start;
  char *end;
  char separator;               // what stood at end
  const svg_attr_def *longhand; // that takes it as a keyword, or null
  bool normal;                  // and the keyword is "normal", which adds nothing
};

// The keyword-valued longhands, in the order in which they are tried.
constexpr int32_t font_props[] = {SVG_PROP_font_weight, SVG_PROP_font_style, SVG_PROP_font_variant};
constexpr int FONT_PROPS = 3;

using add_fn = void (*)(svg_parser *p, const char *name, const char *value);

void set_text(ort_bs *bs, const char *begin, const char *end);
void add_declaration(svg_parser *p, const char *name, const char *value);
int split_words(char *text, font_word *words);
int classify_words(svg_parser *p, font_word *words, int count, add_fn add);
const svg_key_entry *find_keyword(const svg_parser *p, const svg_attr_def &def, const char *word);

} // namespace

bool svg_css_isspace(char c) { return ort_isspace(c); }

bool svg_css_isnmstart(char c) { return c == '_' || ort_isalpha(c); }

bool svg_css_isnmchar(char c) { return c == '-' || svg_css_isnmstart(c) || ort_isdigit(c); }

const char *svg_css_skip_wsp(const char *s) {
  while (svg_css_isspace(*s)) s++;
  return s;
}

bool svg_css_is_cmnt_beg(const char *s) { return s[0] == '/' && s[1] == '*'; }

bool svg_css_is_cmnt_end(const char *s) { return s[0] == '*' && s[1] == '/'; }

const char *svg_css_skip_wsp_c(const char *s) {
  s = svg_css_skip_wsp(s);
  while (svg_css_is_cmnt_beg(s)) {
    s += 2;
    while (!svg_css_is_cmnt_end(s)) {
      if (*s == '\0') return s;
      s++;
    }
    s = svg_css_skip_wsp(s + 2);
  }
  return s;
}

const char *svg_css_skip_ident(const char *s) {
  const char *name = *s == '-' ? s + 1 : s;
  if (!svg_css_isnmstart(*name)) return s;
  while (svg_css_isnmchar(*name)) name++;
  return name;
}

void svg_parse_style(svg_parser *p, const char *text) {
  svg_note(p, 6, "\t\t\t[style attribute:]\n");
  svg_source source = p->source;
  p->source = SVG_SOURCE_STYLE;
  const char *s = svg_css_skip_wsp_c(text);
  while (*s != '\0') {
    const char *name_end = svg_css_skip_ident(s);
    if (name_end == s) break;
    set_text(p->style_name_buf, s, name_end);
    const char *value = svg_css_skip_wsp_c(name_end);
    if (*value == ':') value = svg_css_skip_wsp_c(value + 1);
    if (*value == '\0') break;
    const char *value_end = value + strcspn(value, ";");
    set_text(p->style_value_buf, value, value_end);
    add_declaration(p, ort_bs_text(p->style_name_buf), ort_bs_text(p->style_value_buf));
    s = svg_css_skip_wsp_c(*value_end == ';' ? value_end + 1 : value_end);
  }
  p->source = source;
}

void svg_split_font(svg_parser *p, const char *text, add_fn add) {
  p->font_copy = ort_strdup(p->core, text);
  svg_note(p, 5, "\t\t\t[font properties:]\n");
  font_word words[MAX_WORDS] = {};
  int count = split_words(p->font_copy, words);
  int taken = count > 1 ? classify_words(p, words, count, add) : 0;
  if (count == 1) {
    add(p, svg_attr_table[SVG_PROP_font_family].name, words[0].start);
  } else if (taken + 1 < count) { // else size or family is missing
    for (int i = 0; i < count; i++) {
      if (words[i].longhand != nullptr && !words[i].normal) {
        add(p, words[i].longhand->name, words[i].start);
      }
    }
    char *size = words[taken].start;
    size[strcspn(size, "/")] = '\0';
    add(p, svg_attr_table[SVG_PROP_font_size].name, size);
    for (int i = taken + 1; i < count - 1; i++) *words[i].end = words[i].separator;
    add(p, svg_attr_table[SVG_PROP_font_family].name, words[taken + 1].start);
  }
  ort_free(p->core, p->font_copy);
  p->font_copy = nullptr;
}

// The longhands rank like presentation attributes, also those of a style attribute.
void svg_parse_font_prop(svg_parser *p, const char *text) {
  int32_t in_style_attr = p->in_style_attr;
  p->in_style_attr = 0;
  svg_split_font(p, text, svg_add_prop);
  p->in_style_attr = in_style_attr;
}

void svg_ctor_an_font(svg_parser *p, svg_a_node *) {
  ort_free(p->core, p->new_value);
  p->new_value = nullptr;
  svg_scan_reset(p);
  svg_parse_font_prop(p, p->scan_pos);
}

namespace {

void set_text(ort_bs *bs, const char *begin, const char *end) {
  ort_bs_clear(bs);
  ort_bs_append(bs, begin, static_cast<size_t>(end - begin));
}

void add_declaration(svg_parser *p, const char *name, const char *value) {
  if (strcmp(name, "font") == 0) {
    svg_parse_font_prop(p, value);
    return;
  }
  p->in_style_attr = 1;
  svg_add_prop(p, name, value);
  p->in_style_attr = 0;
}

int split_words(char *text, font_word *words) {
  int count = 0;
  bool in_word = false;
  for (char *s = text; *s != '\0'; s++) {
    bool space = svg_css_isspace(*s);
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
int classify_words(svg_parser *p, font_word *words, int count, add_fn add) {
  bool set[FONT_PROPS] = {};
  int taken = 0;
  for (int i = 0; i < count; i++) {
    for (int k = 0; k < FONT_PROPS; k++) {
      if (set[k]) continue;
      const svg_attr_def &def = svg_attr_table[font_props[k]];
      const svg_key_entry *keyword = find_keyword(p, def, words[i].start);
      if (keyword == nullptr) continue;
      words[i].longhand = &def;
      words[i].normal = keyword->id == SVG_KW_normal;
      set[k] = true;
      taken++;
      // A longhand counts as added when its word is met, and svg_add_prop leaves css_mode clear:
      // behind the first word with an effect, an element's words are compared exactly.
      if (!words[i].normal && add == svg_add_prop) p->css_mode = 0;
      break;
    }
  }
  return taken;
}

const svg_key_entry *find_keyword(const svg_parser *p, const svg_attr_def &def, const char *word) {
  for (uint32_t i = 0; i < def.key_count; i++) {
    if (svg_strcmp(p, word, def.keys[i].text) == 0) return &def.keys[i];
  }
  return nullptr;
}

} // namespace
