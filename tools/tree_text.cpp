// tree_text.cpp: a drawing as indented text, for a person.
#include "tools/tree_text.h"

#include <string>

#include "tools/schema.h"
#include "tools/value_text.h"

static void print_facts(FILE *out, const Drawing &drawing);
static void print_element(FILE *out, const Drawing &drawing, const svg_e_node *element, int depth,
                          bool full);
static void print_value(FILE *out, const Drawing &drawing, const svg_e_node *element,
                        const svg_a_node *value, int depth, bool full);
static void print_text(FILE *out, const svg_t_node *text, int depth, bool full);
static void indent(FILE *out, int depth);
static bool is_blank(const char *text);

// Below this depth the level is printed instead of blanks: the output must not grow with the square
// of the depth.
constexpr int deepest_indent = 40;

constexpr size_t shown_text = 200;

void print_document(FILE *out, const Drawing &drawing, bool full) {
  print_facts(out, drawing);
  print_subtree(out, drawing, drawing.svg(), full);
}

static void print_facts(FILE *out, const Drawing &drawing) {
  std::string line = drawing.name() + ": ";
  if (drawing.viewport_width() != 0 || drawing.viewport_height() != 0)
    line += "viewport " + number_text(drawing.viewport_width()) + " x " +
            number_text(drawing.viewport_height());
  else
    line += "embedded";
  if (drawing.viewbox_width() != 0 || drawing.viewbox_height() != 0)
    line += ", viewBox " + number_text(drawing.viewbox_width()) + " x " +
            number_text(drawing.viewbox_height());
  line += drawing.has_text() ? ", with text" : "";
  std::string used;
  for (int id = 0; id < SVG_ELEM_COUNT; id++)
    if (drawing.uses(id)) used += std::string(used.empty() ? "" : " ") + element_name(id);
  fprintf(out, "%s\nelements: %s\n", line.c_str(), used.c_str());
  const std::pair<const char *, const char *> texts[] = {
      {"title", svg_get_title_text(drawing.parser())},
      {"desc", svg_get_desc_text(drawing.parser())},
      {"metadata", svg_get_metadata(drawing.parser())}};
  for (const auto &[name, text] : texts)
    if (text != nullptr) fprintf(out, "%s: %s\n", name, quoted(text).c_str());
}

// Walks without recursion: a stack of the siblings still to come, one for each open level.
void print_subtree(FILE *out, const Drawing &drawing, const svg_e_node *top, bool full) {
  std::vector<svg_node *> open;
  print_element(out, drawing, top, 0, full);
  open.push_back(top->first_child);
  while (!open.empty()) {
    svg_node *node = open.back();
    if (node == nullptr) {
      open.pop_back();
      continue;
    }
    open.back() = node->next;
    const auto depth = static_cast<int>(open.size());
    if (const svg_e_node *element = svg_as_element(node)) {
      print_element(out, drawing, element, depth, full);
      open.push_back(element->first_child);
    } else {
      print_text(out, svg_as_text(node), depth, full);
    }
  }
}

static void print_element(FILE *out, const Drawing &drawing, const svg_e_node *element, int depth,
                          bool full) {
  indent(out, depth);
  fputs(element_name(element->head.id), out);
  if (const std::string id = svg_find_href_id(drawing.parser(), element); id != "(empty)")
    fprintf(out, " #%s", id.c_str());
  if ((element->head.flags & SVG_EF_NEEDS_BBOX) != 0) fputs(" [needs bbox]", out);
  fputc('\n', out);
  for (int32_t i = 0; i < element->values_num; i++)
    print_value(out, drawing, element, element->values[i], depth + 1, full);
}

static void print_value(FILE *out, const Drawing &drawing, const svg_e_node *element,
                        const svg_a_node *value, int depth, bool full) {
  indent(out, depth);
  fprintf(out, ". %s: %s", row_name(value->row), value_text(drawing, value, full).c_str());
  const Source source = drawing.source(element, value);
  switch (source.kind) {
  case SVG_SOURCE_ATTRIBUTE: break;
  case SVG_SOURCE_SHEET:
    fprintf(out, "  (sheet: %s)", source.selector != nullptr ? source.selector->c_str() : "");
    break;
  case SVG_SOURCE_STYLE: fputs("  (style)", out); break;
  case SVG_SOURCE_DEFAULT: fputs("  (default)", out); break;
  }
  fputc('\n', out);
}

static void print_text(FILE *out, const svg_t_node *text, int depth, bool full) {
  if (is_blank(text->text)) return;
  std::string_view shown = text->text;
  if (!full && shown.size() > shown_text) {
    shown = shown.substr(0, shown_text);
    while ((static_cast<unsigned char>(shown.back()) & 0xC0) == 0x80) shown.remove_suffix(1);
    if (static_cast<unsigned char>(shown.back()) >= 0xC0) shown.remove_suffix(1);
  }
  indent(out, depth);
  fprintf(out, "%s%s\n", quoted(shown).c_str(),
          shown.size() < std::string_view(text->text).size() ? "..." : "");
}

static void indent(FILE *out, int depth) {
  if (depth <= deepest_indent)
    fprintf(out, "%*s", 2 * depth, "");
  else
    fprintf(out, "%*s[%d] ", 2 * deepest_indent, "", depth);
}

static bool is_blank(const char *text) {
  return std::string_view(text).find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
}
