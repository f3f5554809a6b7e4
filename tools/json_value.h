// json_value.h: a value's own fields in JSON.
#ifndef TOOLS_JSON_VALUE_H
#define TOOLS_JSON_VALUE_H

#include <string>
#include <string_view>

#include <unordered_map>

#include "tools/json_writer.h"
#include "tools/names.h"

// What the values of a drawing are written with.
struct ValueContext {
  const Drawing &drawing;
  const NodeNumbers &numbers;
  bool full; // nothing is shortened
};

// What is written wherever it occurs in a drawing: cut after about 200 bytes unless full.
std::string shortened(std::string_view text, bool full);

// A field "#RRGGBB".
void write_json_rgb(JsonWriter &json, const char *name, uint32_t rgb);

// Writes the four fields of an IRI into the object being written.
void write_json_iri(JsonWriter &json, const ValueContext &context, const svg_iri &iri);

// Writes "type" and the fields that the type has (docs/json.md) into the object being written.
void write_json_value(JsonWriter &json, const ValueContext &context, const svg_a_node *value);

// Values that are written, and the numbers of the elements where they are.
using WrittenValues = std::unordered_map<const svg_a_node *, int64_t>;

// The same for a value that several elements of the output may have: what is long is written at the
// first of them, else the output would grow with the square of the drawing.
void write_json_value_once(JsonWriter &json, const ValueContext &context, const svg_a_node *value,
                           int64_t node, WrittenValues &written);

#endif
