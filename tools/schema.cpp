// schema.cpp: the reader's tables as one JSON object (--schema), and the names that printers need.
#include "tools/schema.h"

#include <rapidjson/filewritestream.h>
#include <rapidjson/writer.h>

using Writer = rapidjson::Writer<rapidjson::FileWriteStream>;

static void write_element(Writer &json, int id);
static void write_attribute(Writer &json, int row);
static void write_text(Writer &json, const char *name, const char *text);
static void write_number(Writer &json, const char *name, int64_t number);
template <class Items> static void write_array(Writer &json, const char *name, Items items);

const char *element_name(int id) { return svg_get_elem_table()[id].name; }

const char *row_name(int row) { return svg_get_attr_table()[row].name; }

const char *color_space_name(int colortype) {
  switch (colortype) {
  case SVG_CT_DEVICE_GRAY: return "device-gray";
  case SVG_CT_DEVICE_RGB: return "device-rgb";
  case SVG_CT_DEVICE_CMYK: return "device-cmyk";
  case SVG_CT_ICC:
  case SVG_CT_ICC1:
  case SVG_CT_ICC3:
  case SVG_CT_ICC4: return "icc-color";
  case SVG_CT_CIELAB: return "cielab";
  case SVG_CT_ICC_NAMED: return "icc-named-color";
  case SVG_CT_DEVICE_NCHANNEL: return "device-nchannel";
  default: return "";
  }
}

const char *mime_text(int mime) {
  static constexpr const char *texts[] = {"image/gif",     "image/jpeg", "image/png",
                                          "image/svg+xml", "image/tiff", "text/css"};
  return mime >= 0 ? texts[mime] : "unknown type";
}

ColorValues color_values(const svg_color &color) {
  switch (color.colortype) {
  case SVG_CT_DEVICE_GRAY: return {color.comps, 1};
  case SVG_CT_DEVICE_RGB:
  case SVG_CT_CIELAB: return {color.comps, 3};
  case SVG_CT_DEVICE_CMYK: return {color.comps, 4};
  case SVG_CT_ICC1:
  case SVG_CT_ICC_NAMED: return {color.comps + 1, 1};
  case SVG_CT_ICC3: return {color.comps + 1, 3};
  case SVG_CT_ICC4: return {color.comps + 1, 4};
  case SVG_CT_DEVICE_NCHANNEL: {
    int count = 0;
    while (color.comps[1 + count] != SVG_CT_TERMINATOR) count++;
    return {color.comps + 1, count};
  }
  default: return {nullptr, 0};
  }
}

void print_schema(FILE *out) {
  char buffer[65536];
  rapidjson::FileWriteStream stream(out, buffer, sizeof buffer);
  Writer json(stream);
  json.StartObject();
  write_array(json, "elements", [&] {
    for (int id = 0; id < SVG_ELEM_COUNT; id++) write_element(json, id);
  });
  write_array(json, "attributes", [&] {
    for (int row = 0; row < SVG_ATTR_COUNT; row++) write_attribute(json, row);
  });
  write_array(json, "keywords", [&] {
    for (int id = 1; id < SVG_KW_COUNT; id++) json.String(svg_get_keyword_text(id));
  });
  write_array(json, "errors", [&] {
    int32_t code = 0;
    int32_t parameters = 0;
    for (size_t i = 0; const char *text = svg_get_error_text(i, &code, &parameters); i++) {
      json.StartObject();
      write_number(json, "code", code);
      write_number(json, "parameters", parameters);
      write_text(json, "text", text);
      json.EndObject();
    }
  });
  json.EndObject();
  stream.Put('\n');
  stream.Flush();
}

static void write_element(Writer &json, int id) {
  const svg_elem_def &element = svg_get_elem_table()[id];
  json.StartObject();
  write_number(json, "id", id);
  write_text(json, "name", element.name);
  write_number(json, "slotSize", element.slot_size);
  write_number(json, "category", element.category);
  write_number(json, "kind", element.kind);
  write_array(json, "attributes", [&] {
    for (int32_t i = 0; i < element.esa_count; i++) {
      json.StartObject();
      write_text(json, "name", element.esa_list[i].name);
      write_number(json, "row", element.esa_list[i].attr);
      json.EndObject();
    }
  });
  write_array(json, "required", [&] {
    for (int32_t i = 0; i < element.req_count; i++)
      json.String(element.esa_list[element.req_list[i]].name);
  });
  json.EndObject();
}

static void write_attribute(Writer &json, int row) {
  const svg_attr_def &attribute = svg_get_attr_table()[row];
  json.StartObject();
  write_number(json, "row", row);
  write_text(json, "name", attribute.name);
  write_text(json, "default", attribute.default_text);
  write_number(json, "size", attribute.value_size);
  write_number(json, "priority", attribute.prio);
  write_array(json, "keywords", [&] {
    for (uint32_t i = 0; i < attribute.key_count; i++) json.String(attribute.keys[i].text);
  });
  write_number(json, "flags", attribute.flags);
  write_number(json, "group", attribute.group);
  if (attribute.apo == nullptr) {
    write_text(json, "slots", nullptr);
  } else {
    write_array(json, "slots", [&] {
      for (int id = 0; id < SVG_ELEM_COUNT; id++) json.Int(attribute.apo[id]);
    });
  }
  json.EndObject();
}

static void write_text(Writer &json, const char *name, const char *text) {
  json.Key(name);
  if (text != nullptr)
    json.String(text);
  else
    json.Null();
}

static void write_number(Writer &json, const char *name, int64_t number) {
  json.Key(name);
  json.Int64(number);
}

template <class Items> static void write_array(Writer &json, const char *name, Items items) {
  json.Key(name);
  json.StartArray();
  items();
  json.EndArray();
}
