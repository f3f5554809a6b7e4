// schema.cpp: the reader's tables as one JSON object.
#include "tools/schema.h"

#include "svg/svg.h"
#include "tools/json_writer.h"

static void write_element(JsonWriter &json, int id);
static void write_attribute(JsonWriter &json, int row);

void print_schema(FILE *out, bool pretty) {
  JsonWriter json(out, pretty);
  json.begin_object();
  json.array("elements", [&] {
    for (int id = 0; id < SVG_ELEM_COUNT; ++id) write_element(json, id);
  });
  json.array("attributes", [&] {
    for (int row = 0; row < SVG_ATTR_COUNT; ++row) write_attribute(json, row);
  });
  json.list("keywords", [&] {
    for (int id = 1; id < SVG_KW_COUNT; ++id) json.value(svg_get_keyword_text(id));
  });
  json.array("errors", [&] {
    int32_t code = 0;
    int32_t parameters = 0;
    for (size_t i = 0; const char *text = svg_get_error_text(i, &code, &parameters); ++i) {
      json.begin_object();
      json.field("code", code);
      json.field("parameters", parameters);
      json.field("text", text);
      json.end_object();
    }
  });
  json.end_object();
}

static void write_element(JsonWriter &json, int id) {
  const svg_elem_def &element = svg_get_elem_table()[id];
  json.begin_object();
  json.field("id", id);
  json.field("name", element.name);
  json.field("slotSize", element.slot_size);
  json.field("category", element.category);
  json.field("kind", element.kind);
  json.array("attributes", [&] {
    for (int32_t i = 0; i < element.esa_count; ++i) {
      json.begin_object();
      json.field("name", element.esa_list[i].name);
      json.field("row", element.esa_list[i].attr);
      json.end_object();
    }
  });
  json.list("required", [&] {
    for (int32_t i = 0; i < element.req_count; ++i)
      json.value(element.esa_list[element.req_list[i]].name);
  });
  json.end_object();
}

static void write_attribute(JsonWriter &json, int row) {
  const svg_attr_def &attribute = svg_get_attr_table()[row];
  json.begin_object();
  json.field("row", row);
  json.field("name", attribute.name);
  json.field("property", svg_is_property(row) != 0);
  json.field("record", static_cast<int>(svg_get_record_kind(row)));
  json.field("default", attribute.default_text);
  json.field("size", attribute.value_size);
  json.field("priority", attribute.prio);
  json.list("keywords", [&] {
    for (uint32_t i = 0; i < attribute.key_count; ++i) json.value(attribute.keys[i].text);
  });
  json.field("flags", attribute.flags);
  json.field("group", attribute.group);
  if (!attribute.apo) {
    json.null_field("slots");
  } else {
    json.list("slots", [&] {
      for (int id = 0; id < SVG_ELEM_COUNT; ++id) json.value(attribute.apo[id]);
    });
  }
  json.end_object();
}
