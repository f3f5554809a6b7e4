// colors.h: the names of colors and of color spaces.
#ifndef SVG_TABLES_COLORS_H
#define SVG_TABLES_COLORS_H

#include "core/ort_core.h"

struct svg_rgb_entry {
  uint32_t rgb;
  const char *name;
};

constexpr int SVG_COLOR_COUNT = 147;
constexpr int SVG_SYSCOLOR_COUNT = 28;
extern const svg_rgb_entry svg_rgb_table[SVG_COLOR_COUNT];
extern const svg_rgb_entry svg_sysrgb_table[SVG_SYSCOLOR_COUNT];
extern const ort_keyword svg_colortype_keylist[];

#endif
