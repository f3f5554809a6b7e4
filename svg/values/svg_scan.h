// svg_scan.h: the scanner that splits the text of one attribute or property value into tokens.
//
// svg_parse_attr sets it up for each value; the constructors pull tokens. A bad token is raised
// with svg_err_value.
#ifndef SVG_SCAN_H
#define SVG_SCAN_H

#include "svg/parser/svg_parser.h"

enum {
  SVG_TOK_WORD = 0, // only from svg_get_token
  SVG_TOK_LPAREN = 1,
  SVG_TOK_RPAREN = 2,
  SVG_TOK_COMMA = 3,
  SVG_TOK_INT = 4,
  SVG_TOK_REAL = 5,
  SVG_TOK_UNUM = 6,
  SVG_TOK_PERCENT = 7,
  SVG_TOK_STRING = 8,
  SVG_TOK_KEYWORD = 9,
  SVG_TOK_END = 10
};

int svg_get_token(svg_scanner *p);
int svg_ntok(svg_scanner *p);       // with number recognition
int svg_ntok_nonum(svg_scanner *p); // a plain word is a string
int svg_try_unumtok(svg_scanner *p);
// Nearly all tokens where a number may stand are numbers without exponent and unit. False, and
// nothing read: this is another one.
bool svg_read_plain_number(svg_scanner *p);
bool svg_read_plain_color(svg_scanner *p); // the same of #rgb and #rrggbb with nothing after it
const char *svg_tok_text(svg_scanner *p);  // of the current token
int32_t svg_ctok_as_key(svg_scanner *p);   // the current token as a keyword id
double svg_ctok_as_num(svg_scanner *p);
double svg_get_num(svg_scanner *p);
double svg_ctok_as_unum(svg_scanner *p, uint8_t *unit);
double svg_get_unum(svg_scanner *p, uint8_t *unit);
double svg_chk_sep_num(svg_scanner *p);
double svg_get_sep_num(svg_scanner *p);
void svg_scan_reset(svg_scanner *p); // back to the start of the value; tok_pushed stays
constexpr bool svg_is_special(char c) { return c == '(' || c == ')' || c == ','; }

#endif
