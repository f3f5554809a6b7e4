// svg_scan.h: the scanner that splits the text of one attribute or property value into tokens.
//
// svg_parse_attr sets it up for each value; the constructors pull tokens. A bad token is raised
// with svg_err_value.
#ifndef SVG_SCAN_H
#define SVG_SCAN_H

#include "svg/parser/svg_parser.h"
#include "svg/path/svg_number.h"

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

int svg_get_token(svg_parser *p);
int svg_ntok(svg_parser *p);       // with number recognition
int svg_ntok_nonum(svg_parser *p); // a plain word is a string
int svg_try_unumtok(svg_parser *p);
const char *svg_tok_text(svg_parser *p); // of the current token
int32_t svg_ctok_as_key(svg_parser *p);  // the current token as a keyword id
double svg_ctok_as_num(svg_parser *p);
double svg_get_num(svg_parser *p);
double svg_ctok_as_unum(svg_parser *p, uint8_t *unit);
double svg_get_unum(svg_parser *p, uint8_t *unit);
double svg_chk_sep_num(svg_parser *p);
double svg_get_sep_num(svg_parser *p);
void svg_scan_reset(svg_parser *p); // back to the start of the value; tok_pushed stays
constexpr bool svg_is_special(char c) { return c == '(' || c == ')' || c == ','; }

// ---- svg_errors.cpp -------------------------------------------------------------------------------------------------

// Raises the current token as unexpected, or the value as incomplete when it is the end. A warning
// in the end: svg_parse_attr drops the value.
ORT_NORETURN void svg_err_value(svg_parser *p);
// The same for a rest of the text instead of the token.
ORT_NORETURN void svg_err_rest(svg_parser *p, const char *rest);
// The same for the end of the text, wherever the scanner is.
ORT_NORETURN void svg_err_end(svg_parser *p);
// Raises the value as incomplete for want of its embedded data, and that ends the parse.
ORT_NORETURN void svg_err_no_data(svg_parser *p);
// Whether one of the functions above raises this code.
bool svg_is_value_error(int code);

// Appends to the pending error where it is in the document; line 0 stands for a style sheet.
void svg_add_position(svg_parser *p, long line);
// Reports the pending error as a warning, on a line of its own where log and messages mix.
void svg_warn_pending(svg_parser *p);

// Copies what a message shows of a rest of input: so many characters, and "..." when there are
// more.
constexpr size_t SVG_REST_CHARACTERS = 40;
constexpr size_t SVG_REST_SIZE = 4 * SVG_REST_CHARACTERS + sizeof "...";
void svg_cut_rest(char cut[SVG_REST_SIZE], const char *rest);

#endif
