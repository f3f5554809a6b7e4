// svg_fonts.h: the fonts that a document defines.
#ifndef SVG_FONTS_H
#define SVG_FONTS_H

#include "svg/parser/svg_parser.h"

svg_font *svg_font_new(svg_parser *p, svg_e_node *node);

#endif
