// json_document.cpp: the fields of a drawing, its elements and texts as JSON (docs/json.md).
#include "tools/json_document.h"

#include "tools/names.h"
#include "tools/records.h"
#include "tools/walk.h"

static void write_document(JsonWriter &json, const Drawing &drawing);
static void write_message(JsonWriter &json, const Message &message);
static void write_names(JsonWriter &json, const Drawing &drawing, const NodeNumbers &numbers);
static void write_roots(JsonWriter &json, const ValueContext &context, const Elements &roots,
                        const Elements *matched);
static void write_tree(JsonWriter &json, const ValueContext &context, const svg_e_node *root,
                       WrittenValues &written);
static void write_attributes(JsonWriter &json, const ElementAttributes &attributes);
static void write_flags(JsonWriter &json, int flags);
static bool is_sheet(svg_source source);
static const char *source_name(svg_source source);

void print_json(FILE *out, const Drawing &drawing, const Elements &roots, const Elements *matched,
                const JsonOptions &options) {
  JsonWriter json(out, options.pretty);
  json.begin_object();
  json.field("file", drawing.name());
  json.key("document");
  if (drawing.ok())
    write_document(json, drawing);
  else
    json.null();
  write_json_messages(json, drawing);
  if (drawing.ok()) {
    const NodeNumbers numbers(drawing, matched ? *matched : roots);
    write_json_fonts(json, drawing, numbers);
    write_names(json, drawing, numbers);
    write_roots(json, {drawing, numbers, options.full}, roots, matched);
  } else {
    for (const char *name : {"fonts", "names"}) json.null_field(name);
    for (const char *name : {"matched", "matches"})
      if (matched) json.null_field(name);
    if (!matched) json.null_field("root");
  }
  json.end_object();
}

static void write_document(JsonWriter &json, const Drawing &drawing) {
  const auto size = [&](const char *name, double width, double height) {
    json.list(name, [&] {
      json.value(width);
      json.value(height);
    });
  };
  json.begin_object();
  size("viewport", drawing.viewport_width(), drawing.viewport_height());
  size("viewBox", drawing.viewbox_width(), drawing.viewbox_height());
  json.field("hasText", drawing.has_text());
  json.list("elements", [&] {
    for (int id = 0; id < SVG_ELEM_COUNT; ++id)
      if (drawing.uses(id)) json.value(element_name(id));
  });
  json.field("title", svg_get_title_text(drawing.parser()));
  json.field("desc", svg_get_desc_text(drawing.parser()));
  json.field("metadata", svg_get_metadata(drawing.parser()));
  json.end_object();
}

void write_json_messages(JsonWriter &json, const Drawing &drawing) {
  const Message *error = nullptr;
  json.array("warnings", [&] {
    for (const Message &message : drawing.messages())
      if (message.severity == ORT_WARNING)
        write_message(json, message);
      else
        error = &message;
  });
  json.key("error");
  if (error)
    write_message(json, *error);
  else
    json.null();
}

static void write_message(JsonWriter &json, const Message &message) {
  json.begin_object();
  json.field("code", message.code);
  json.field("message", message.text);
  json.end_object();
}

void write_json_fonts(JsonWriter &json, const Drawing &drawing, const NodeNumbers &numbers) {
  json.array("fonts", [&] {
    for (size_t i = 0; i < svg_get_font_count(drawing.parser()); ++i) {
      const svg_font *font = svg_get_font_at(drawing.parser(), i);
      json.begin_object();
      json.field("name", drawing.font_name(font));
      json.field("id", font->id);
      json.field("node", numbers.of(font->node));
      json.end_object();
    }
  });
}

static void write_names(JsonWriter &json, const Drawing &drawing, const NodeNumbers &numbers) {
  json.array("names", [&] {
    for (const auto &[name, element] : named_elements(drawing, numbers)) {
      json.begin_object();
      json.field("name", name);
      json.field("node", numbers.of(element));
      json.end_object();
    }
  });
}

static void write_roots(JsonWriter &json, const ValueContext &context, const Elements &roots,
                        const Elements *matched) {
  WrittenValues written;
  if (matched) {
    json.list("matched", [&] {
      for (const svg_e_node *element : *matched) json.value(context.numbers.of(element));
    });
    return json.array("matches", [&] {
      for (const svg_e_node *root : roots) write_tree(json, context, root, written);
    });
  }
  json.key("root");
  if (roots.empty())
    json.null();
  else
    write_tree(json, context, roots.front(), written);
}

// Many elements may share a value of a style sheet; others belong to one element.
static void write_tree(JsonWriter &json, const ValueContext &context, const svg_e_node *root,
                       WrittenValues &written) {
  int64_t number = context.numbers.of(root) - 1;
  walk(
      root,
      [&](const svg_e_node *element, int) {
        json.begin_object();
        json.field("node", ++number);
        json.field("element", element_name(element->head.id));
        json.field("level", element->level);
        json.field("line", context.drawing.notes().line_of(element));
        write_attributes(json, context.drawing.notes().attributes_of(element));
        write_flags(json, element->head.flags);
        json.array("values", [&] {
          for (int32_t i = 0; i < element->values_num; ++i) {
            const svg_a_node *value = element->values[i];
            const svg_source source = context.drawing.source(element, value).kind;
            json.begin_object();
            write_json_name_and_source(json, context, element, value);
            if (is_sheet(source))
              write_json_value_once(json, context, value, number, written);
            else
              write_json_value(json, context, value);
            json.end_object();
          }
        });
        json.key("children");
        json.begin_array();
      },
      [&](const svg_t_node *text, int) {
        json.begin_object();
        json.field("text", text->text);
        json.field("last", (text->head.flags & SVG_TF_LAST) != 0);
        json.end_object();
      },
      [&](const svg_e_node *) {
        json.end_array();
        json.end_object();
      });
}

void write_json_name_and_source(JsonWriter &json, const ValueContext &context,
                                const svg_e_node *element, const svg_a_node *value) {
  json.field("name", row_name(value->row));
  json.field("row", value->row);
  json.field("source", source_name(context.drawing.source(element, value).kind));
}

static void write_attributes(JsonWriter &json, const ElementAttributes &attributes) {
  json.field("class", attributes.classes.empty() ? nullptr : attributes.classes.c_str());
  json.array("foreign", [&] {
    for (const auto &[name, value] : attributes.foreign) {
      json.begin_object();
      json.field("name", name);
      json.field("value", value);
      json.end_object();
    }
  });
}

static void write_flags(JsonWriter &json, int flags) {
  static constexpr std::pair<int, const char *> names[] = {{SVG_EF_NEEDS_BBOX, "needsBBox"},
                                                           {SVG_EF_TEXT, "text"},
                                                           {SVG_EF_GROUP, "group"},
                                                           {SVG_EF_NEEDS_BBOX2, "needsBBox2"},
                                                           {SVG_EF_SYSLANG, "systemLanguage"},
                                                           {SVG_EF_BBOX_USER, "bboxUser"},
                                                           {SVG_EF_BBOX_USER2, "bboxUser2"}};
  json.list("flags", [&] {
    for (const auto &[flag, name] : names)
      if ((flags & flag) != 0) json.value(name);
  });
}

static bool is_sheet(svg_source source) {
  return source == SVG_SOURCE_SHEET || source == SVG_SOURCE_IMPORTANT;
}

static const char *source_name(svg_source source) {
  switch (source) {
  case SVG_SOURCE_SHEET:
  case SVG_SOURCE_IMPORTANT: return "sheet";
  case SVG_SOURCE_STYLE: return "style";
  case SVG_SOURCE_DEFAULT: return "default";
  default: return "attribute";
  }
}
