// svg_hooks.h: what particular elements do at their start tag and at their end tag.
#ifndef SVG_HOOKS_H
#define SVG_HOOKS_H

#include "svg/parser/svg_parser.h"

void svg_beg_clipPath(svg_parser *p, svg_e_node *node);
void svg_beg_font(svg_parser *p, svg_e_node *node);
void svg_beg_font_face(svg_parser *p, svg_e_node *node);
void svg_end_font_face(svg_parser *p);
void svg_beg_linearGradient(svg_parser *p, svg_e_node *node);
void svg_beg_mask(svg_parser *p, svg_e_node *node);
void svg_beg_pattern(svg_parser *p, svg_e_node *node);
void svg_beg_radialGradient(svg_parser *p, svg_e_node *node);
void svg_beg_svg(svg_parser *p, svg_e_node *node);
void svg_beg_text(svg_parser *p, svg_e_node *node);
void svg_end_text(svg_parser *p);
void svg_beg_use(svg_parser *p, svg_e_node *node);
double svg_unit2pt(int unit, double value);

#endif
