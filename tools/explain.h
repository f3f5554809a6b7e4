// explain.h: why elements look as they do: the values of their properties, and which one counts.
#ifndef TOOLS_EXPLAIN_H
#define TOOLS_EXPLAIN_H

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "tools/drawing.h"

// Whether some property or attribute has this name.
bool is_known_name(const std::string &name);

// A value, the element that has it, and the number of that element in document order, from 1.
struct Holder {
  const svg_e_node *element = nullptr;
  const svg_a_node *value = nullptr; // null: no element has one
  int64_t node = 0;
};

// Why an element has its value for a row of the schema.
struct Explanation {
  int row = 0;
  Holder winner;                  // among the element's own values
  std::vector<Holder> overridden; // the others, the last one first
  Holder inherited;               // when there is no winner, or it is "inherit"
  const char *initial = nullptr;  // when nothing is inherited either; null: the schema has none
};

// Calls explained for each of these elements, which stand in document order, with its number and
// with the row of this name that it can have, if any; for an empty name with the rows of all that
// it has and inherits. One walk does for all elements.
using Explained = std::function<void(const svg_e_node *element, int64_t node,
                                     const std::vector<Explanation> &rows)>;
void explain(const Drawing &drawing, const Elements &elements, const std::string &name,
             const Explained &explained);

// Prints for each element every value that it has for the property or attribute, where each came
// from, which one wins by SVG and CSS, and, when there is none or it is "inherit", the ancestor
// whose value is inherited. An empty name stands for all that the element has and inherits.
void print_explanations(FILE *out, const Drawing &drawing, const Elements &elements,
                        const std::string &name);

#endif
