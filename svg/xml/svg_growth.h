// svg_growth.h: bounds for what grows faster than the input. They raise ORT_E_LIMIT.
#ifndef SVG_GROWTH_H
#define SVG_GROWTH_H

#include "svg/parser/svg_parser.h"

void svg_bound_growth(svg_parser *p); // of a new pass
void svg_check_namespace(svg_parser *p, const char *prefix, const char *uri);
// Of a start tag, when attributes were declared.
void svg_count_defaults(svg_parser *p, const XML_Char **attrs);
// Counts one more open element, in either pass.
void svg_enter_element(svg_parser *p);

#endif
