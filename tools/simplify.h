// simplify.h: a drawing written as plain SVG.
#ifndef TOOLS_SIMPLIFY_H
#define TOOLS_SIMPLIFY_H

#include <cstdio>

#include "tools/drawing.h"

// Writes an SVG drawing that shows the same with groups, paths, images, text and what they refer
// to: without style sheets, use, symbol, switch, inheritance, units and percentages. Written again
// from the result, it has the same bytes. False when an error, a message of the drawing, ended the
// walk; nothing is then written.
bool print_simplified(FILE *out, const Drawing &drawing);

#endif
