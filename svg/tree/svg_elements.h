// svg_elements.h: the table of elements, with their hooks.
#ifndef SVG_ELEMENTS_H
#define SVG_ELEMENTS_H

#include "svg/svg_records.h"

// A reference to constants that the compiler computes and proves (svg/tables/schema.h).
extern const svg_elem_def (&svg_elem_table)[SVG_ELEM_COUNT];

#endif
