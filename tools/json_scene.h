// json_scene.h: what a drawing shows, and a drawing in a few words, as JSON (docs/json.md).
#ifndef TOOLS_JSON_SCENE_H
#define TOOLS_JSON_SCENE_H

#include "tools/drawing.h"
#include "tools/json_writer.h"

// Write one field of the object being written, null for no element. Return false after an error.
bool write_json_shapes(JsonWriter &json, const Drawing &drawing, const svg_e_node *element,
                       bool full);
bool write_json_boxes(JsonWriter &json, const Drawing &drawing, const svg_e_node *element);
void write_json_info(JsonWriter &json, const Drawing &drawing);

#endif
