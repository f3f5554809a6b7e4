// shapes.h: what a drawing or an element of it paints, and boxes, as text.
#ifndef TOOLS_SHAPES_H
#define TOOLS_SHAPES_H

#include <cstdio>

#include "tools/drawing.h"

// Prints a line for everything that the elements paint, in order and indented by the groups around
// it: the element, the box, the paints, then what is unusual. Returns false after an error.
bool print_shapes(FILE *out, const Drawing &drawing, const Elements &elements, bool full);

// Prints the boxes of elements without and with its strokes. Returns false after an error.
bool print_boxes(FILE *out, const Drawing &drawing, const Elements &elements, bool full);

#endif
