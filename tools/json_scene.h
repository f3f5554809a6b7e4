// json_scene.h: what a drawing shows, and a drawing in a few words, as JSON (docs/json.md).
#ifndef TOOLS_JSON_SCENE_H
#define TOOLS_JSON_SCENE_H

#include "tools/drawing.h"
#include "tools/json_value.h"
#include "tools/json_writer.h"

// Write one field of the object being written, null for no elements. Return false after an error.
bool write_json_shapes(JsonWriter &json, const Drawing &drawing, const Elements &elements,
                       bool full);
void write_json_info(JsonWriter &json, const Drawing &drawing);

// The same for boxes: those of many elements are an array. The context knows their numbers.
bool write_json_boxes(JsonWriter &json, const ValueContext &context, const Elements &elements,
                      bool many);

#endif
