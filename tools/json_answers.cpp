// json_answers.cpp: see json_answers.h.
#include "tools/json_answers.h"

#include "tools/explain.h"
#include "tools/json_scene.h"
#include "tools/json_value.h"
#include "tools/json_writer.h"
#include "tools/names.h"
#include "tools/questions.h"
#include "tools/records.h"
#include "tools/value_text.h"
#include "tools/walk.h"

static void write_ids(JsonWriter &json, const ValueContext &context);
static void write_links(JsonWriter &json, const ValueContext &context);
static void write_statistics(JsonWriter &json, const Drawing &drawing);
static void write_explanations(JsonWriter &json, const ValueContext &context, const Asked &asked);
static void write_row(JsonWriter &json, const ValueContext &context, const Explanation &row,
                      int64_t node, WrittenValues &written);
static void write_holder(JsonWriter &json, const ValueContext &context, const Holder &holder,
                         int64_t node, WrittenValues &written);

bool print_json_answers(FILE *out, const Drawing &drawing, const Asked &asked,
                        const JsonOptions &options) {
  JsonWriter json(out, options.pretty);
  json.begin_object();
  json.field("file", drawing.name());
  bool ok = true;
  const auto answer = [&](bool wanted, const char *name, const auto &write) {
    if (!wanted) return;
    if (!drawing.ok()) return json.null_field(name);
    const NodeNumbers numbers(drawing, asked.measured);
    write(ValueContext{drawing, numbers, options.full});
  };
  answer(asked.fonts, "fonts",
         [&](const ValueContext &context) { write_json_fonts(json, drawing, context.numbers); });
  answer(asked.ids, "ids", [&](const ValueContext &context) { write_ids(json, context); });
  answer(asked.links, "links", [&](const ValueContext &context) { write_links(json, context); });
  answer(asked.stats, "stats", [&](const ValueContext &) { write_statistics(json, drawing); });
  answer(asked.explain, asked.explain_many ? "explanations" : "explain",
         [&](const ValueContext &context) { write_explanations(json, context, asked); });
  answer(asked.info, "info", [&](const ValueContext &) { write_json_info(json, drawing); });
  answer(asked.boxes, asked.measure_many ? "boxes" : "bbox", [&](const ValueContext &context) {
    ok = write_json_boxes(json, context, asked.measured, asked.measure_many) && ok;
  });
  answer(asked.shapes, "shapes", [&](const ValueContext &) {
    ok = write_json_shapes(json, drawing, asked.shown, options.full) && ok;
  });
  write_json_messages(json, drawing); // those of answers too
  json.end_object();
  return ok;
}

static void write_ids(JsonWriter &json, const ValueContext &context) {
  json.array("ids", [&] {
    for (const auto &[name, element] : named_elements(context.drawing, context.numbers)) {
      json.begin_object();
      json.field("name", name);
      json.field("element", element_name(element->head.id));
      json.field("node", context.numbers.of(element));
      json.end_object();
    }
  });
}

static void write_links(JsonWriter &json, const ValueContext &context) {
  int64_t number = 0;
  json.array("links", [&] {
    each_element(context.drawing.svg(), [&](const svg_e_node *element) {
      ++number;
      for (int32_t i = 0; i < element->values_num; ++i) {
        const svg_iri *iri = value_iri(element->values[i]);
        if (!iri || iri->kind == SVG_IRI_DATA) continue;
        json.begin_object();
        json.field("node", number);
        json.field("element", element_name(element->head.id));
        json.field("name", row_name(element->values[i]->row));
        write_json_iri(json, context, *iri);
        json.end_object();
      }
    });
  });
}

static void write_statistics(JsonWriter &json, const Drawing &drawing) {
  const Statistics statistics = statistics_of(drawing);
  json.key("stats");
  json.begin_object();
  json.field("elements", statistics.elements);
  json.field("values", statistics.values);
  json.field("texts", statistics.texts);
  json.field("styleSheetSeconds", statistics.style_sheet_pass);
  json.field("documentSeconds", statistics.main_pass);
  json.field("bytes", statistics.memory.live_bytes);
  json.field("blocks", statistics.memory.live_blocks);
  json.field("peakBytes", statistics.memory.peak_bytes);
  json.array("functions", [&] {
    for (const ort_tag_count &tag : statistics.tags) {
      json.begin_object();
      json.field("name", tag.tag);
      json.field("bytes", tag.bytes);
      json.field("blocks", tag.blocks);
      json.end_object();
    }
  });
  json.end_object();
}

static void write_explanations(JsonWriter &json, const ValueContext &context, const Asked &asked) {
  WrittenValues written;
  const auto write_all = [&] {
    explain(context.drawing, asked.explained, asked.property,
            [&](const svg_e_node *element, int64_t node, const std::vector<Explanation> &rows) {
              json.begin_object();
              json.field("node", node);
              json.field("element", element_name(element->head.id));
              json.array("rows", [&] {
                for (const Explanation &row : rows) write_row(json, context, row, node, written);
              });
              json.end_object();
            });
  };
  if (asked.explain_many) return json.array("explanations", write_all);
  json.key("explain");
  if (asked.explained.empty())
    json.null();
  else
    write_all();
}

static void write_row(JsonWriter &json, const ValueContext &context, const Explanation &row,
                      int64_t node, WrittenValues &written) {
  const auto write = [&](const Holder &holder) {
    write_holder(json, context, holder, node, written);
  };
  json.begin_object();
  json.field("name", row_name(row.row));
  json.key("value");
  write(row.winner);
  json.array("overrides", [&] {
    for (const Holder &holder : row.overridden) write(holder);
  });
  json.key("inherited");
  write(row.inherited);
  json.field("initial", row.initial);
  json.end_object();
}

// A value with the element that has it. node is the element that is explained.
static void write_holder(JsonWriter &json, const ValueContext &context, const Holder &holder,
                         int64_t node, WrittenValues &written) {
  if (!holder.value) return json.null();
  const Source source = context.drawing.source(holder.element, holder.value);
  json.begin_object();
  json.field("holder", holder.node);
  json.field("important", source.kind == SVG_SOURCE_IMPORTANT);
  json.key("selector");
  if (source.selector)
    json.value(shown_part(*source.selector, context.full));
  else
    json.null();
  write_json_name_and_source(json, context, holder.element, holder.value);
  write_json_value_once(json, context, holder.value, node, written);
  json.end_object();
}
