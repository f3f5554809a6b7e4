// tree_text.h: a drawing as indented text.
#ifndef TOOLS_TREE_TEXT_H
#define TOOLS_TREE_TEXT_H

#include <cstdio>

#include "tools/drawing.h"

struct TextOptions {
  bool full = false;      // nothing is shortened
  bool languages = false; // mark elements by systemLanguage, and what each switch chooses
};

// Prints the document facts, then the tree: a line for each element, its class and each attribute
// that the reader skips ("- "), each value (". "), and each text that is not blank (in quotes).
void print_document(FILE *out, const Drawing &drawing, const TextOptions &options);

// Prints the subtree of one element.
void print_subtree(FILE *out, const Drawing &drawing, const svg_e_node *top,
                   const TextOptions &options);

// Begins a line at a depth. Deeper ones than DEEPEST_INDENT show their level instead: the output
// must not grow with the square of the depth.
constexpr int DEEPEST_INDENT = 40;
void indent(FILE *out, int depth);

#endif
