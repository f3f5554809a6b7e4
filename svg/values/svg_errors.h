// svg_errors.h: how a bad value is raised, and becomes a warning.
#ifndef SVG_ERRORS_H
#define SVG_ERRORS_H

#include "svg/parser/svg_parser.h"

// Raises the current token as unexpected, or the value as incomplete when it is the end. A warning
// in the end: svg_parse_attr drops the value.
[[gnu::cold]] ORT_NORETURN void svg_err_value(svg_scanner *p);
// The same for a rest of the text instead of the token.
[[gnu::cold]] ORT_NORETURN void svg_err_rest(svg_scanner *p, const char *rest);
// The same for the end of the text, wherever the scanner is.
[[gnu::cold]] ORT_NORETURN void svg_err_end(svg_scanner *p);
// Raises the value as incomplete for want of its embedded data, and that ends the parse.
[[gnu::cold]] ORT_NORETURN void svg_err_no_data(svg_scanner *p);
// Whether one of the functions above raises this code.
bool svg_is_value_error(int code);

// Appends to the pending error where it is in the document; line 0 stands for a style sheet.
void svg_add_position(svg_parser *p, long line);
// Reports the pending error as a warning, on a line of its own where log and messages mix.
void svg_warn_pending(svg_host *p);

#endif
