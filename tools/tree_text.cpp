// tree_text.cpp: a drawing as indented text, for a person.
#include "tools/tree_text.h"

#include <string>
#include <string_view>
#include <unordered_set>

#include "tools/names.h"
#include "tools/questions.h"
#include "tools/records.h"
#include "tools/utf8.h"
#include "tools/value_text.h"
#include "tools/walk.h"

namespace {

// The children that the switches met so far choose.
using Chosen = std::unordered_set<const svg_node *>;

} // namespace

static void print_facts(FILE *out, const Drawing &drawing, bool full);
static void print_answer_list(FILE *out, const Drawing &drawing, const char *label,
                              Question question, bool full);
static void print_element(FILE *out, const Drawing &drawing, const svg_e_node *element, int depth,
                          const TextOptions &options, Chosen &chosen);
static void print_attributes(FILE *out, const ElementAttributes &attributes, int depth, bool full);
static std::string language_marks(const Drawing &drawing, const svg_e_node *element,
                                  Chosen &chosen);
static void print_value(FILE *out, const Drawing &drawing, const svg_e_node *element,
                        const svg_a_node *value, int depth, bool full);
static void print_text(FILE *out, const svg_t_node *text, int depth, bool full);
static bool is_blank(const char *text);

constexpr size_t SHOWN_ANSWERS = 12; // fonts, ids, links above the tree

void print_document(FILE *out, const Drawing &drawing, const TextOptions &options) {
  print_facts(out, drawing, options.full);
  print_subtree(out, drawing, drawing.svg(), options);
}

void print_subtree(FILE *out, const Drawing &drawing, const svg_e_node *top,
                   const TextOptions &options) {
  Chosen chosen;
  walk(
      top,
      [&](const svg_e_node *element, int depth) {
        if (ferror(out) == 0) print_element(out, drawing, element, depth, options, chosen);
      },
      [&](const svg_t_node *text, int depth) { print_text(out, text, depth, options.full); },
      [](const svg_e_node *) {});
}

static void print_facts(FILE *out, const Drawing &drawing, bool full) {
  const auto size = [&](double width, double height) {
    return number_text(width, full) + " x " + number_text(height, full);
  };
  std::string line = escaped(drawing.name()) + ": ";
  if (drawing.viewport_width() != 0 || drawing.viewport_height() != 0)
    line += "viewport " + size(drawing.viewport_width(), drawing.viewport_height());
  else
    line += "embedded";
  if (drawing.viewbox_width() != 0 || drawing.viewbox_height() != 0)
    line += ", viewBox " + size(drawing.viewbox_width(), drawing.viewbox_height());
  line += drawing.has_text() ? ", with text" : "";
  fprintf(out, "%s\nelements:", line.c_str());
  for (int id = 0; id < SVG_ELEM_COUNT; ++id)
    if (drawing.uses(id)) fprintf(out, " %s", element_name(id));
  fputc('\n', out);
  const std::pair<const char *, const char *> texts[] = {
      {"title", svg_get_title_text(drawing.parser())},
      {"desc", svg_get_desc_text(drawing.parser())},
      {"metadata", svg_get_metadata(drawing.parser())}};
  for (const auto &[name, text] : texts)
    if (text) fprintf(out, "%s: %s\n", name, quoted_text(text, full).c_str());
  print_answer_list(out, drawing, "fonts", answer_fonts, full);
  print_answer_list(out, drawing, "ids", answer_ids, full);
  print_answer_list(out, drawing, "links", answer_links, full);
  print_answer_list(out, drawing, "data", answer_data, full);
}

static void print_answer_list(FILE *out, const Drawing &drawing, const char *label,
                              Question question, bool full) {
  size_t count = 0;
  question(drawing, full, [&](const std::string &answer) {
    if (full || count < SHOWN_ANSWERS)
      fprintf(out, "%s%s", count == 0 ? (std::string(label) + ": ").c_str() : "; ", answer.c_str());
    ++count;
  });
  if (!full && count > SHOWN_ANSWERS) fprintf(out, "; ... (%zu in all)", count);
  if (count > 0) fputc('\n', out);
}

static void print_element(FILE *out, const Drawing &drawing, const svg_e_node *element, int depth,
                          const TextOptions &options, Chosen &chosen) {
  indent(out, depth);
  fputs(element_text(drawing, element, options.full).c_str(), out);
  fprintf(out, " [line %u]", drawing.notes().line_of(element));
  if ((element->head.flags & SVG_EF_NEEDS_BBOX) != 0) fputs(" [needs bbox]", out);
  if (options.languages) fputs(language_marks(drawing, element, chosen).c_str(), out);
  fputc('\n', out);
  print_attributes(out, drawing.notes().attributes_of(element), depth + 1, options.full);
  for (int32_t i = 0; i < element->values_num; ++i)
    print_value(out, drawing, element, element->values[i], depth + 1, options.full);
}

// What the tree does not hold: the class, and attributes that the reader skips.
static void print_attributes(FILE *out, const ElementAttributes &attributes, int depth, bool full) {
  const auto print = [&](const std::string &name, const std::string &value) {
    indent(out, depth);
    fprintf(out, "- %s: %s\n", short_text(name, full).c_str(), quoted_text(value, full).c_str());
  };
  if (!attributes.classes.empty()) print("class", attributes.classes);
  for (const auto &[name, value] : attributes.foreign) print(name, value);
}

// A switch shows the first of its child elements whose conditions hold (SVG 1.1, 5.8.2). The only
// condition that the reader knows is systemLanguage.
static std::string language_marks(const Drawing &drawing, const svg_e_node *element,
                                  Chosen &chosen) {
  std::string marks;
  if ((element->head.flags & SVG_EF_SYSLANG) != 0)
    marks +=
        drawing.accepts_language(element) ? " [language accepted]" : " [language not accepted]";
  if (chosen.contains(&element->head)) marks += " [chosen]";
  if (element->head.id != SVG_ELEM_switch) return marks;
  int number = 0;
  for (svg_node *node = element->first_child; node; node = node->next) {
    const svg_e_node *child = svg_as_element(node);
    if (!child) continue;
    ++number;
    if (!drawing.accepts_language(child)) continue;
    chosen.insert(node);
    return marks + " [chooses child " + std::to_string(number) + ']';
  }
  return marks + " [chooses no child]";
}

static void print_value(FILE *out, const Drawing &drawing, const svg_e_node *element,
                        const svg_a_node *value, int depth, bool full) {
  indent(out, depth);
  fprintf(out, ". %s: %s", row_name(value->row), value_text(drawing, value, full).c_str());
  const std::string source = source_text(drawing, element, value, full);
  fputs(source.empty() ? "\n" : ("  (" + source + ")\n").c_str(), out);
}

static void print_text(FILE *out, const svg_t_node *text, int depth, bool full) {
  if (is_blank(text->text)) return;
  indent(out, depth);
  fprintf(out, "%s\n", quoted_text(text->text, full).c_str());
}

void indent(FILE *out, int depth) {
  if (depth <= DEEPEST_INDENT)
    fprintf(out, "%*s", 2 * depth, "");
  else
    fprintf(out, "%*s[%d] ", 2 * DEEPEST_INDENT, "", depth);
}

static bool is_blank(const char *text) {
  return std::string_view(text).find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
}
