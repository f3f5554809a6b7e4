// svg_css_color.h: colors of CSS Color 4, and their alpha as an opacity property.
#ifndef SVG_CSS_COLOR_H
#define SVG_CSS_COLOR_H

#include "svg/parser/svg_parser.h"

// Reads the color whose first word is the current token: #rgba, #rrggbbaa, rgb(), rgba(), hsl(),
// hsla(), transparent. False for any other word. The alpha goes to p->alpha. Raises value errors.
bool svg_get_css_color(svg_scanner *p, uint32_t *rgb);

// Alphas and opacities of the source that is read next are those of no other.
void svg_begin_alphas(svg_parser *p);

// To be called with each value of a property before it is handed on. An opacity is multiplied with
// the alpha of its color. Returns the property that must be added after the value because of its
// alpha, or null; text receives what it is given.
constexpr size_t SVG_ALPHA_SIZE = 32;
const char *svg_take_alpha(svg_parser *p, svg_a_node *value, char text[SVG_ALPHA_SIZE]);

#endif
