// svg_style.cpp: the style attribute.
//
// svg_add_e_node calls it after the attributes and the rules of style sheets. A small lexer splits
// the text into declarations, each of which goes to svg_add_prop. Bad values are warnings of the
// dispatcher; raises what svg_add_prop raises.
#include "svg/style/svg_style.h"

#include <array>
#include <cstring>

#include "svg/values/svg_attr.h"
#include "svg/values/svg_css_color.h"
#include "svg/values/svg_font.h"

static const char *skip_space(const char *s);
static const char *skip_ident(const char *s);
static void set_text(ort_bs *bs, const char *begin, const char *end);
static void add_declaration(svg_parser *p, const char *name, const char *value);

void svg_parse_style(svg_parser *p, const char *text) {
  svg_note(p, 6, "\t\t\t[style attribute:]\n");
  const svg_source source = p->source;
  p->source = SVG_SOURCE_STYLE;
  svg_begin_alphas(p);
  const char *s = skip_space(text);
  while (*s != '\0') {
    const char *name_end = skip_ident(s);
    if (name_end == s) break;
    set_text(p->style_name_buf, s, name_end);
    const char *value = skip_space(name_end);
    if (*value == ':') value = skip_space(value + 1);
    if (*value == '\0') break;
    const char *value_end = value + strcspn(value, ";");
    set_text(p->style_value_buf, value, value_end);
    add_declaration(p, ort_bs_text(p->style_name_buf), ort_bs_text(p->style_value_buf));
    s = skip_space(*value_end == ';' ? value_end + 1 : value_end);
  }
  p->source = source;
}

// White space and comments. An unterminated comment runs to the end of the text.
static const char *skip_space(const char *s) {
  for (;;) {
    while (ort_isspace(*s)) ++s;
    if (s[0] != '/' || s[1] != '*') return s;
    const char *end = strstr(s + 2, "*/");
    if (!end) return s + strlen(s);
    s = end + 2;
  }
}

static const char *skip_ident(const char *s) {
  enum { NO_NAME, NAME, NAME_BEGIN };
  static constexpr auto kinds = [] {
    std::array<uint8_t, 256> table = {};
    for (size_t c = 'a'; c <= 'z'; ++c) table[c] = table[c - 'a' + 'A'] = NAME_BEGIN;
    for (size_t c = '0'; c <= '9'; ++c) table[c] = NAME;
    table['_'] = NAME_BEGIN;
    table['-'] = NAME;
    return table;
  }();
  const auto kind_of = [](char c) { return kinds[static_cast<unsigned char>(c)]; };
  const char *name = *s == '-' ? s + 1 : s;
  if (kind_of(*name) != NAME_BEGIN) return s;
  while (kind_of(*name) != NO_NAME) ++name;
  return name;
}

static void set_text(ort_bs *bs, const char *begin, const char *end) {
  ort_bs_clear(bs);
  ort_bs_append(bs, begin, static_cast<size_t>(end - begin));
}

static void add_declaration(svg_parser *p, const char *name, const char *value) {
  if (strcmp(name, "font") == 0) {
    svg_parse_font_prop(p, value);
    return;
  }
  p->in_style_attr = 1;
  svg_add_prop(p, name, value);
  p->in_style_attr = 0;
}
