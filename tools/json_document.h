// json_document.h: a drawing as one JSON object; docs/json.md describes it.
#ifndef TOOLS_JSON_DOCUMENT_H
#define TOOLS_JSON_DOCUMENT_H

#include <cstdio>

#include "tools/drawing.h"

struct JsonOptions {
  bool pretty = false; // indented, not on one line
  bool full = false;   // nothing is shortened
};

// Writes the drawing. root is the element whose subtree is written, the outermost svg by default;
// it is null, like most other fields, when the drawing was not readable.
void print_json(FILE *out, const Drawing &drawing, const svg_e_node *root,
                const JsonOptions &options);

#endif
