// explain.h: why an element looks as it does: the values of its properties, and which one counts.
#ifndef TOOLS_EXPLAIN_H
#define TOOLS_EXPLAIN_H

#include <cstdio>
#include <string>
#include <vector>

#include "tools/drawing.h"

// Whether some property or attribute has this name.
bool is_known_name(const std::string &name);

// An element, its parent and so on to the outermost svg; nothing for null.
using Chain = std::vector<const svg_e_node *>;
Chain chain_of(const svg_e_node *element);

// A value and the element that has it.
struct Holder {
  const svg_e_node *element = nullptr;
  const svg_a_node *value = nullptr; // null: no element has one
};

// Why the first element of a chain has its value for a row of the schema.
struct Explanation {
  Holder winner;                  // among the element's own values
  std::vector<Holder> overridden; // the others, the last one first
  Holder inherited;               // when there is no winner, or it is "inherit"
  const char *initial = nullptr;  // when nothing is inherited either; null: the schema has none
};
Explanation explain(const Drawing &drawing, const Chain &chain, int row);

// The row with this name that the first element of a chain can have, if any; for an empty name the
// rows of all that it has and inherits.
std::vector<int> rows_to_explain(const Drawing &drawing, const Chain &chain,
                                 const std::string &name);

// Prints every value that the element has for the property or attribute, where each came from,
// which one wins by SVG and CSS, and, when there is none or it is "inherit", the ancestor whose
// value is inherited. An empty name stands for all that the element has and inherits.
void print_explanation(FILE *out, const Drawing &drawing, const svg_e_node *element,
                       const std::string &name);

#endif
