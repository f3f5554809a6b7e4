// svg_color.h: colors by their names and by their texts.
#ifndef SVG_COLOR_H
#define SVG_COLOR_H

#include "svg/parser/svg_parser.h"

int32_t svg_find_color(const char *name);    // row of svg_rgb_table, or -1
int32_t svg_find_syscolor(const char *name); // row of svg_sysrgb_table, or -1
uint8_t svg_parse_color_comp(svg_scanner *p);
void svg_get_rgb_color_comps(double *out, double v);
int32_t svg_get_color(svg_scanner *p, svg_color *color);

#endif
