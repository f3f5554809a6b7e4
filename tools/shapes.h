// shapes.h: what a drawing or an element of it paints, and boxes, as text.
#ifndef TOOLS_SHAPES_H
#define TOOLS_SHAPES_H

#include <cstdio>

#include "tools/drawing.h"

// Prints a line for everything that the element paints, in order and indented by the groups around
// it: the element, the box, the paints, then what is unusual. Returns false after an error.
bool print_shapes(FILE *out, const Drawing &drawing, const svg_e_node *element, bool full);

// Prints the boxes of an element without and with its strokes. Returns false after an error.
bool print_boxes(FILE *out, const Drawing &drawing, const svg_e_node *element, bool full);

#endif
