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
static void write_holder(JsonWriter &json, const ValueContext &context, const Holder &holder);

bool print_json_answers(FILE *out, const Drawing &drawing, const Asked &asked,
                        const JsonOptions &options) {
  JsonWriter json(out, options.pretty);
  json.begin_object();
  json.field("file", drawing.name());
  bool ok = true;
  const auto answer = [&](bool wanted, const char *name, const auto &write) {
    if (!wanted) return;
    if (!drawing.ok()) return json.null_field(name);
    const NodeNumbers numbers(drawing, chain_of(asked.element));
    write(ValueContext{drawing, numbers, options.full});
  };
  answer(asked.fonts, "fonts",
         [&](const ValueContext &context) { write_json_fonts(json, drawing, context.numbers); });
  answer(asked.ids, "ids", [&](const ValueContext &context) { write_ids(json, context); });
  answer(asked.links, "links", [&](const ValueContext &context) { write_links(json, context); });
  answer(asked.stats, "stats", [&](const ValueContext &) { write_statistics(json, drawing); });
  answer(asked.explain, "explain",
         [&](const ValueContext &context) { write_explanations(json, context, asked); });
  answer(asked.info, "info", [&](const ValueContext &) { write_json_info(json, drawing); });
  answer(asked.boxes, "bbox",
         [&](const ValueContext &) { ok = write_json_boxes(json, drawing, asked.measured) && ok; });
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
  if (!asked.element) return json.null_field("explain");
  const Chain chain = chain_of(asked.element);
  json.key("explain");
  json.begin_object();
  json.field("node", context.numbers.of(asked.element));
  json.field("element", element_name(asked.element->head.id));
  json.array("rows", [&] {
    for (const int row : rows_to_explain(context.drawing, chain, asked.property)) {
      const Explanation found = explain(context.drawing, chain, row);
      json.begin_object();
      json.field("name", row_name(row));
      json.key("value");
      write_holder(json, context, found.winner);
      json.array("overrides", [&] {
        for (const Holder &holder : found.overridden) write_holder(json, context, holder);
      });
      json.key("inherited");
      write_holder(json, context, found.inherited);
      json.field("initial", found.initial);
      json.end_object();
    }
  });
  json.end_object();
}

// A value with the element that has it.
static void write_holder(JsonWriter &json, const ValueContext &context, const Holder &holder) {
  if (!holder.value) return json.null();
  const Source source = context.drawing.source(holder.element, holder.value);
  json.begin_object();
  json.field("holder", context.numbers.of(holder.element));
  json.field("important", source.kind == SVG_SOURCE_IMPORTANT);
  json.key("selector");
  if (source.selector)
    json.value(shown_part(*source.selector, context.full));
  else
    json.null();
  write_json_name_and_source(json, context, holder.element, holder.value);
  write_json_value(json, context, holder.value);
  json.end_object();
}
