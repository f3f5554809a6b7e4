// json_scene.cpp: see json_scene.h.
#include "tools/json_scene.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "tools/info.h"
#include "tools/json_value.h"
#include "tools/names.h"
#include "tools/records.h"
#include "tools/scene.h"
#include "tools/value_text.h"
#include "tools/walk.h"

static void write_painted(JsonWriter &json, const ValueContext &context, const Painted &painted);
static void write_group(JsonWriter &json, const ValueContext &context,
                        const svg_scene_group &group);
static void write_paint(JsonWriter &json, const ValueContext &context, const Painted &painted,
                        const char *name, const svg_scene_paint &paint);
static void write_node(JsonWriter &json, const ValueContext &context, const char *name,
                       const svg_e_node *element);
static void write_iri(JsonWriter &json, const ValueContext &context, const char *name,
                      const svg_iri *iri);
static void write_numbers(JsonWriter &json, const char *name, std::span<const double> numbers);

bool write_json_shapes(JsonWriter &json, const Drawing &drawing, const Elements &elements,
                       bool full) {
  if (elements.empty()) {
    json.null_field("shapes");
    return true;
  }
  std::vector<const svg_e_node *> all;
  each_element(drawing.svg(), [&](const svg_e_node *of) { all.push_back(of); });
  const NodeNumbers numbers(drawing, all);
  const ValueContext context = {drawing, numbers, full};
  const Scene scene(drawing);
  const auto begin = [&](const Painted &painted) {
    json.begin_object();
    write_painted(json, context, painted);
    if (painted.group) {
      json.key("children");
      json.begin_array();
    } else {
      json.end_object();
    }
  };
  const auto end = [&] {
    json.end_array();
    json.end_object();
  };
  bool ok = true;
  json.array("shapes", [&] {
    ok = std::ranges::all_of(
        elements, [&](const svg_e_node *element) { return scene.list(element, begin, end); });
  });
  return ok;
}

static void write_painted(JsonWriter &json, const ValueContext &context, const Painted &painted) {
  const svg_scene_item &item = *painted.item;
  json.field("kind", painted.group   ? "group"
                     : painted.shape ? "shape"
                     : painted.image ? "image"
                                     : "text");
  json.field("node", context.numbers.of(item.element));
  json.field("element", element_name(item.element->head.id));
  json.key("id");
  if (const char *id = id_of(context.drawing, item.element))
    json.value(shortened(id, context.full));
  else
    json.null();
  write_node(json, context, "use", item.use);
  write_numbers(json, "matrix", item.matrix);
  write_numbers(json, "ctm", item.ctm);
  if (painted.group) return write_group(json, context, *painted.group);
  if (painted.run) {
    write_numbers(json, "origin", painted.origin ? *painted.origin : std::span<const double>());
    json.field("text", shortened(painted.run->text, context.full));
    json.field("fontSize", item.style->font_size);
    write_iri(json, context, "link", painted.run->link);
  } else {
    write_numbers(json, "box", painted.box ? *painted.box : std::span<const double>());
  }
  if (painted.image) return write_iri(json, context, "image", painted.image->iri);
  write_paint(json, context, painted, "fill", *painted.fill);
  write_paint(json, context, painted, "stroke", *painted.stroke);
}

static void write_group(JsonWriter &json, const ValueContext &context,
                        const svg_scene_group &group) {
  json.field("opacity", group.opacity);
  write_node(json, context, "clip", group.clip ? group.clip->element : nullptr);
  write_node(json, context, "mask", group.mask ? group.mask->element : nullptr);
  write_numbers(json, "viewport",
                group.has_viewport != 0 ? group.viewport : std::span<const double>());
  write_iri(json, context, "link", group.link);
}

static void write_paint(JsonWriter &json, const ValueContext &context, const Painted &painted,
                        const char *name, const svg_scene_paint &paint) {
  if (paint.kind == SVG_SCENE_PAINT_NONE) return json.null_field(name);
  json.key(name);
  json.begin_object();
  if (const svg_e_node *server = server_of(paint))
    write_node(json, context, "server", server);
  else
    write_json_rgb(json, "rgb", paint.rgb);
  json.field("opacity", paint.opacity);
  if (&paint == painted.stroke) json.field("width", painted.item->style->stroke_width);
  json.end_object();
}

// A field with the number of an element, null for none.
static void write_node(JsonWriter &json, const ValueContext &context, const char *name,
                       const svg_e_node *element) {
  if (element)
    json.field(name, context.numbers.of(element));
  else
    json.null_field(name);
}

static void write_iri(JsonWriter &json, const ValueContext &context, const char *name,
                      const svg_iri *iri) {
  if (!iri) return json.null_field(name);
  json.key(name);
  json.begin_object();
  write_json_iri(json, context, *iri);
  json.end_object();
}

// A field with numbers, null for none.
static void write_numbers(JsonWriter &json, const char *name, std::span<const double> numbers) {
  if (numbers.empty()) return json.null_field(name);
  json.list(name, [&] {
    for (const double number : numbers) json.value(number);
  });
}

bool write_json_boxes(JsonWriter &json, const ValueContext &context, const Elements &elements,
                      bool many) {
  const Scene scene(context.drawing);
  const auto write_box = [&](const svg_e_node *element) {
    std::optional<Box> plain, stroked;
    const bool ok = scene.measure(element, nullptr, false, plain) &&
                    scene.measure(element, nullptr, true, stroked);
    if (!ok) {
      json.null();
      return false;
    }
    json.begin_object();
    json.field("node", context.numbers.of(element));
    json.field("element", element_name(element->head.id));
    write_numbers(json, "box", plain ? *plain : std::span<const double>());
    write_numbers(json, "strokedBox", stroked ? *stroked : std::span<const double>());
    json.end_object();
    return true;
  };
  bool ok = true;
  if (many) {
    json.array("boxes", [&] { ok = std::ranges::all_of(elements, write_box); });
  } else if (elements.empty()) {
    json.null_field("bbox");
  } else {
    json.key("bbox");
    ok = write_box(elements.front());
  }
  return ok;
}

void write_json_info(JsonWriter &json, const Drawing &drawing) {
  const Info info = info_of(drawing);
  const double sizes[] = {millimetres(info.size[0]), millimetres(info.size[1])};
  json.key("info");
  json.begin_object();
  json.field("title", info.title);
  write_numbers(json, "size", info.size);
  write_numbers(json, "millimetres", sizes);
  write_numbers(json, "viewBox", info.viewbox ? *info.viewbox : std::span<const double>());
  for (const auto &[name, count] : {std::pair("shapes", info.shapes),
                                    {"texts", info.texts},
                                    {"images", info.images},
                                    {"fonts", info.fonts},
                                    {"links", info.links},
                                    {"sheets", info.sheets}})
    json.field(name, count);
  json.key("skipped");
  json.begin_object();
  for (const auto &[name, found] : {std::pair("elements", &info.elements),
                                    {"attributes", &info.attributes},
                                    {"properties", &info.properties}}) {
    json.array(name, [&, counts = found] {
      for (const auto &[skipped, count] : *counts) {
        json.begin_object();
        json.field("name", skipped);
        json.field("count", count);
        json.end_object();
      }
    });
  }
  json.end_object();
  json.end_object();
}
