// json_value.h: a value's own fields in JSON.
#ifndef TOOLS_JSON_VALUE_H
#define TOOLS_JSON_VALUE_H

#include "tools/json_writer.h"
#include "tools/names.h"

// Writes "type" and the fields that the type has (docs/json.md) into the object being written.
void write_json_value(JsonWriter &json, const Drawing &drawing, const NodeNumbers &numbers,
                      const svg_a_node *value);

#endif
