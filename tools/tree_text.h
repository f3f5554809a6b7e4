// tree_text.h: a drawing as indented text.
#ifndef TOOLS_TREE_TEXT_H
#define TOOLS_TREE_TEXT_H

#include <cstdio>

#include "tools/drawing.h"

// Prints the document facts, then the tree: one line for each element, one for each value
// (beginning with ". "), one for each text that is not blank (in quotes). Long values are shortened
// unless full.
void print_document(FILE *out, const Drawing &drawing, bool full);

// Prints the subtree of one element.
void print_subtree(FILE *out, const Drawing &drawing, const svg_e_node *top, bool full);

#endif
