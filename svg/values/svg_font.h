// svg_font.h: the font shorthand (CSS 2.1, 15.8).
#ifndef SVG_FONT_H
#define SVG_FONT_H

#include "svg/parser/svg_parser.h"

// Splits a font shorthand and hands each longhand to add(p, name, value), in the order weight,
// style, variant (as written), size, family. An incomplete shorthand adds nothing. In a sheet,
// where CSS 2.1, 15.8 holds, "inherit" is the value of all of them, and blanks may stand around the
// "/" before the line height.
void svg_split_font(svg_parser *p, const char *text,
                    void (*add)(svg_parser *p, const char *name, const char *value));
// Adds the longhands to the element being built.
void svg_parse_font_prop(svg_parser *p, const char *text);

#endif
