// json_value.cpp: every kind of value as JSON (docs/json.md). A record that may hold a keyword in
// place of a number is written as a keyword when it does.
#include "tools/json_value.h"

#include <span>
#include <string>
#include <string_view>

#include "tools/records.h"
#include "tools/value_text.h"

static void write_keyword(JsonWriter &json, int key);
static void write_number(JsonWriter &json, double value);
static void write_length(JsonWriter &json, double value, int unit);
static void write_clip(JsonWriter &json, const svg_an_clip *clip);
static void write_lengths(JsonWriter &json, int32_t count, const double *values,
                          const uint8_t *units);
static void write_trafo(JsonWriter &json, const svg_an_trafo *trafo);
static void write_paint(JsonWriter &json, const ValueContext &context, const svg_a_node *value);
static void write_color(JsonWriter &json, const svg_color &color);
static std::string link_text(const ValueContext &context, const svg_iri &iri);
static void write_families(JsonWriter &json, const svg_an_key_name_list *families);
static void write_path(JsonWriter &json, const svg_an_path_data *path);
static void write_type(JsonWriter &json, const char *type);

constexpr size_t LONG_VALUE = 200; // bytes

// "value": the items of a list.
template <class Item> static void write_items(JsonWriter &json, int32_t count, Item item) {
  json.list("value", [&] {
    for (int32_t i = 0; i < count; ++i) json.value(item(i));
  });
}

void write_json_value(JsonWriter &json, const ValueContext &context, const svg_a_node *value) {
  switch (svg_get_record_kind(value->row)) {
  case SVG_RECORD_NONE: return;
  case SVG_RECORD_KEYWORD: return write_keyword(json, as<svg_an_keyword>(value)->key);
  case SVG_RECORD_NUMBER: return write_number(json, as<svg_an_number>(value)->value);
  case SVG_RECORD_UNUM: return write_length(json, as<svg_an_unum>(value)->value, value->unit);
  case SVG_RECORD_KEY_NUMBER: {
    const auto *record = as<svg_an_key_number>(value);
    return record->key != 0 ? write_keyword(json, record->key) : write_number(json, record->value);
  }
  case SVG_RECORD_KEY_UNUM: {
    const auto *record = as<svg_an_key_unum>(value);
    return record->key != 0 ? write_keyword(json, record->key)
                            : write_length(json, record->value, value->unit);
  }
  case SVG_RECORD_ASPECT: {
    const auto *record = as<svg_an_aspect>(value);
    write_type(json, "aspect");
    json.field("defer", record->defer != 0);
    json.field("meet", record->meet != 0);
    return json.field("align", svg_get_keyword_text(record->align));
  }
  case SVG_RECORD_VIEWBOX: {
    const auto *record = as<svg_an_viewbox>(value);
    const double box[] = {record->min_x, record->min_y, record->width, record->height};
    write_type(json, "viewBox");
    return write_items(json, 4, [&](int32_t i) { return box[i]; });
  }
  case SVG_RECORD_CLIP: return write_clip(json, as<svg_an_clip>(value));
  case SVG_RECORD_STRING:
    write_type(json, "string");
    return json.field("value", as<svg_an_string>(value)->text);
  case SVG_RECORD_NAME_LIST: {
    const auto *record = as<svg_an_name_list>(value);
    write_type(json, "names");
    return write_items(json, record->count, [&](int32_t i) { return record->names[i]; });
  }
  case SVG_RECORD_NUM_LIST: {
    const auto *record = as<svg_an_num_list>(value);
    write_type(json, "numbers");
    return write_items(json, record->count, [&](int32_t i) { return record->values[i]; });
  }
  case SVG_RECORD_KEY_LIST: {
    const auto *record = as<svg_an_key_list>(value);
    write_type(json, "keywords");
    return write_items(json, record->count,
                       [&](int32_t i) { return svg_get_keyword_text(record->keys[i]); });
  }
  case SVG_RECORD_UNUM_LIST: {
    const auto *record = as<svg_an_unum_list>(value);
    return write_lengths(json, record->count, record->values, record->units);
  }
  case SVG_RECORD_KEY_UNUM_LIST: {
    const auto *record = as<svg_an_key_unum_list>(value);
    return record->key != 0 ? write_keyword(json, record->key)
                            : write_lengths(json, record->count, record->values, record->units);
  }
  case SVG_RECORD_TRAFO: return write_trafo(json, as<svg_an_trafo>(value));
  case SVG_RECORD_COLOR:
    write_type(json, "color");
    return write_json_rgb(json, "rgb", as<svg_an_color>(value)->rgb);
  case SVG_RECORD_PAINT: return write_paint(json, context, value);
  case SVG_RECORD_IRI:
    write_type(json, "iri");
    return write_json_iri(json, context, as<svg_an_iri>(value)->iri);
  case SVG_RECORD_COLOR_PROFILE: {
    const auto *record = as<svg_an_color_profile>(value);
    write_type(json, "colorProfile");
    json.field("keyword", svg_get_keyword_text(record->keyword));
    return json.field("profileName", record->name);
  }
  case SVG_RECORD_KEY_NAME_LIST: return write_families(json, as<svg_an_key_name_list>(value));
  case SVG_RECORD_PATH_DATA: return write_path(json, as<svg_an_path_data>(value));
  }
}

void write_json_value_once(JsonWriter &json, const ValueContext &context, const svg_a_node *value,
                           int64_t node, WrittenValues &written) {
  if (const auto whole = written.find(value); whole != written.end()) {
    write_type(json, "same");
    return json.field("node", whole->second);
  }
  const size_t before = json.content();
  write_json_value(json, context, value);
  if (!context.full && json.content() - before > LONG_VALUE) written[value] = node;
}

static void write_keyword(JsonWriter &json, int key) {
  write_type(json, "keyword");
  json.field("keyword", svg_get_keyword_text(key));
}

static void write_number(JsonWriter &json, double value) {
  write_type(json, "number");
  json.field("value", value);
}

static void write_length(JsonWriter &json, double value, int unit) {
  write_type(json, "length");
  json.field("value", value);
  json.field("unit", svg_get_unit_text(unit));
}

static void write_clip(JsonWriter &json, const svg_an_clip *clip) {
  write_type(json, "clip");
  json.field("keyword", svg_get_keyword_text(clip->key));
  if (clip->key != SVG_KW_rect) return json.null_field("rect");
  json.list("rect", [&] {
    for (const double edge : clip->rect) json.value(edge);
  });
}

static void write_lengths(JsonWriter &json, int32_t count, const double *values,
                          const uint8_t *units) {
  write_type(json, "lengths");
  write_items(json, count, [&](int32_t i) { return values[i]; });
  json.list("units", [&] {
    for (int32_t i = 0; i < count; ++i) json.value(svg_get_unit_text(units[i]));
  });
}

static void write_trafo(JsonWriter &json, const svg_an_trafo *trafo) {
  write_type(json, "transform");
  json.field("kind", trafo->type);
  write_items(json, svg_get_trafo_count(trafo->type), [&](int32_t i) { return trafo->numbers[i]; });
}

static void write_paint(JsonWriter &json, const ValueContext &context, const svg_a_node *value) {
  static constexpr const char *kinds[] = {"none", "inherit", "currentColor", "rgb", "iri", "color"};
  write_type(json, "paint");
  json.field("paint", kinds[value->kind]);
  if (value->kind == SVG_PAINT_RGB) write_json_rgb(json, "rgb", as<svg_an_paint_rgb>(value)->rgb);
  if (value->kind == SVG_PAINT_COLOR) write_color(json, as<svg_an_paint_color>(value)->color);
  if (value->kind != SVG_PAINT_IRI) return;
  const svg_iri &iri = as<svg_an_paint_iri>(value)->iri;
  json.key("iri");
  json.begin_object();
  write_json_iri(json, context, iri);
  json.end_object();
  if (iri.fallback >= 0)
    write_json_rgb(json, "fallback", static_cast<uint32_t>(iri.fallback));
  else
    json.field("fallback", fallback_keyword(iri));
}

static void write_color(JsonWriter &json, const svg_color &color) {
  write_json_rgb(json, "rgb", color.rgb);
  json.field("colortype", color.colortype);
  json.field("colorName", color.name); // "name" is the property
  int32_t count = 0;
  const double *components = svg_get_components(&color, &count);
  json.list("components", [&] {
    for (int32_t i = 0; i < count; ++i) json.value(components[i]);
  });
}

void write_json_iri(JsonWriter &json, const ValueContext &context, const svg_iri &iri) {
  static constexpr const char *kinds[] = {"none", "data", "link", "name"};
  const svg_e_node *target = iri.kind == SVG_IRI_LINK ? iri.ref.target : nullptr;
  json.field("kind", kinds[iri.kind]);
  json.key("target");
  if (target)
    json.value(context.numbers.of(target));
  else
    json.null();
  json.key("text");
  if (iri.kind == SVG_IRI_LINK)
    json.value(link_text(context, iri));
  else
    json.value(iri.kind != SVG_IRI_NONE ? iri.ref.text : nullptr);
  json.field("mime", svg_get_mime_text(iri.mime));
}

static std::string link_text(const ValueContext &context, const svg_iri &iri) {
  const Drawing &drawing = context.drawing;
  const char *name = iri.ref.target ? svg_find_href_id(drawing.parser(), iri.ref.target)
                                    : drawing.waiting_name(&iri);
  return '#' + shortened(name ? name : "", context.full);
}

std::string shortened(std::string_view text, bool full) {
  const std::string_view shown = shown_part(text, full);
  return std::string(shown) + (shown.size() < text.size() ? "..." : "");
}

static void write_families(JsonWriter &json, const svg_an_key_name_list *families) {
  write_type(json, "families");
  json.array("value", [&] {
    for (int32_t i = 0; i < families->count; ++i) {
      if (families->keys[i] == 0) {
        json.value(families->names[i]);
        continue;
      }
      json.begin_object();
      json.field("keyword", svg_get_keyword_text(families->keys[i]));
      json.end_object();
    }
  });
}

static void write_path(JsonWriter &json, const svg_an_path_data *path) {
  write_type(json, "path");
  json.field("vertices", path->vertices);
  size_t count = 0;
  const svg_pada *segments = svg_get_segments(path, &count);
  json.array("segments", [&] {
    for (const svg_pada &segment : std::span(segments, count)) {
      json.begin_object();
      json.field("op", path_command(segment));
      json.list("points", [&] {
        for (int k = 0; k < 2 * segment.count; ++k) json.value(segment.points[k]);
      });
      json.end_object();
    }
  });
}

void write_json_rgb(JsonWriter &json, const char *name, uint32_t rgb) {
  char text[16];
  snprintf(text, sizeof text, "#%06X", rgb & 0xFFFFFFu);
  json.field(name, static_cast<const char *>(text));
}

static void write_type(JsonWriter &json, const char *type) { json.field("type", type); }
