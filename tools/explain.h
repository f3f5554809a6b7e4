// explain.h: why an element looks as it does: the values of its properties, and which one counts.
#ifndef TOOLS_EXPLAIN_H
#define TOOLS_EXPLAIN_H

#include <cstdio>
#include <string>

#include "tools/drawing.h"

// Whether some property or attribute has this name.
bool is_known_name(const std::string &name);

// Prints every value that the element has for the property or attribute, where each came from,
// which one wins by SVG and CSS, and, when there is none or it is "inherit", the ancestor whose
// value is inherited. An empty name stands for all that the element has and inherits.
void print_explanation(FILE *out, const Drawing &drawing, const svg_e_node *element,
                       const std::string &name);

#endif
