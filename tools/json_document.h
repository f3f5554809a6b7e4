// json_document.h: a drawing as one JSON object; docs/json.md describes it.
#ifndef TOOLS_JSON_DOCUMENT_H
#define TOOLS_JSON_DOCUMENT_H

#include <cstdio>

#include "tools/drawing.h"
#include "tools/json_value.h"
#include "tools/json_writer.h"

struct JsonOptions {
  bool pretty = false; // indented, not on one line
  bool full = false;   // nothing is shortened
};

// Writes the drawing with the subtrees of elements that do not lie in each other: one or none, or
// those of all that match a selector. Like most other fields they are null when the drawing was not
// readable.
void print_json(FILE *out, const Drawing &drawing, const Elements &roots, const Elements *matched,
                const JsonOptions &options);

// Parts of that object: "warnings" and "error"; "fonts"; "name", "row" and "source" of a value.
void write_json_messages(JsonWriter &json, const Drawing &drawing);
void write_json_fonts(JsonWriter &json, const Drawing &drawing, const NodeNumbers &numbers);
void write_json_name_and_source(JsonWriter &json, const ValueContext &context,
                                const svg_e_node *element, const svg_a_node *value);

#endif
