// svg_style.h: the style attribute.
#ifndef SVG_STYLE_H
#define SVG_STYLE_H

#include "svg/parser/svg_parser.h"

void svg_parse_style(svg_parser *p, const char *text);

#endif
