// shapes.cpp: see shapes.h.
#include "tools/shapes.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>

#include "tools/names.h"
#include "tools/scene.h"
#include "tools/tree_text.h"
#include "tools/utf8.h"
#include "tools/value_text.h"

static void print_painted(FILE *out, const Drawing &drawing, const Painted &painted, bool full);
static std::string place_text(const Drawing &drawing, const svg_e_node *element, bool full);
static void add_cell(std::string &line, size_t column, const std::string &cell);
static std::string box_text(const std::optional<Box> &box, bool full);
static std::string paint_text(const Drawing &drawing, const char *name,
                              const svg_scene_paint *paint, bool full);
static void add_effects(std::string &line, const Drawing &drawing, const svg_scene_group &group,
                        bool full);
static std::string matrix_text(const double matrix[6], bool full);

// Where the cells of a line begin that is not indented.
constexpr size_t BOX_COLUMN = 30, FILL_COLUMN = 60, STROKE_COLUMN = 74;

bool print_shapes(FILE *out, const Drawing &drawing, const Elements &elements, bool full) {
  const Scene scene(drawing);
  fprintf(out, "%s: %s px\n", escaped(drawing.name()).c_str(),
          numbers_text(scene.size(), " x ", full).c_str());
  const auto print = [&](const Painted &painted) {
    if (ferror(out) == 0) print_painted(out, drawing, painted, full);
  };
  return std::ranges::all_of(
      elements, [&](const svg_e_node *element) { return scene.list(element, print, [] {}); });
}

bool print_boxes(FILE *out, const Drawing &drawing, const Elements &elements, bool full) {
  const Scene scene(drawing);
  for (const svg_e_node *element : elements) {
    std::optional<Box> plain, stroked;
    if (!scene.measure(element, nullptr, false, plain) ||
        !scene.measure(element, nullptr, true, stroked))
      return false;
    fprintf(out, "%s: %s\n", escaped(drawing.name()).c_str(),
            element_text(drawing, element, full).c_str());
    fprintf(out, "  without stroke  %s\n", box_text(plain, full).c_str());
    fprintf(out, "  with stroke     %s\n", box_text(stroked, full).c_str());
  }
  return true;
}

static void print_painted(FILE *out, const Drawing &drawing, const Painted &painted, bool full) {
  const svg_scene_item &item = *painted.item;
  const size_t indented = 2 * static_cast<size_t>(std::min(painted.depth, DEEPEST_INDENT));
  std::string line = place_text(drawing, item.element, full);
  const auto add = [&](size_t column, const std::string &cell) {
    add_cell(line, column - std::min(column, indented), cell);
  };
  if (painted.group) add_effects(line, drawing, *painted.group, full);
  if (painted.shape || painted.image) add(BOX_COLUMN, box_text(painted.box, full));
  if (painted.origin) add(BOX_COLUMN, numbers_text(*painted.origin, ",", full));
  add(FILL_COLUMN, paint_text(drawing, "fill ", painted.fill, full));
  if (const std::string stroke = paint_text(drawing, "stroke ", painted.stroke, full);
      !stroke.empty())
    add(STROKE_COLUMN, stroke + " width " + number_text(item.style->stroke_width, full));
  if (painted.image) add(0, iri_text(drawing, *painted.image->iri, full));
  if (painted.run) add(0, quoted_text(painted.run->text, full));
  if (painted.run && painted.run->link)
    add(0, "link " + iri_text(drawing, *painted.run->link, full));
  add(0, matrix_text(item.matrix, full));
  if (item.use) add(0, "in " + place_text(drawing, item.use, full));
  indent(out, painted.depth + 1);
  fprintf(out, "%s\n", line.c_str());
}

// "rect #button [line 12]", as in the tree.
static std::string place_text(const Drawing &drawing, const svg_e_node *element, bool full) {
  return element_text(drawing, element, full) + " [line " +
         std::to_string(drawing.notes().line_of(element)) + ']';
}

// Adds a cell at its column, or after a gap where the line has passed it.
static void add_cell(std::string &line, size_t column, const std::string &cell) {
  if (cell.empty()) return;
  const auto width = static_cast<size_t>(
      std::ranges::count_if(line, [](char c) { return (c & 0xC0) != 0x80; })); // in characters
  line.append(std::max(column, width + 2) - width, ' ') += cell;
}

static std::string box_text(const std::optional<Box> &box, bool full) {
  if (!box) return "nothing";
  std::string text = numbers_text(*box, " ", full);
  text[text.find(' ')] = ',';
  return text.replace(text.rfind(' '), 1, " x ");
}

static std::string paint_text(const Drawing &drawing, const char *name,
                              const svg_scene_paint *paint, bool full) {
  if (!paint || paint->kind == SVG_SCENE_PAINT_NONE) return "";
  const svg_e_node *server = server_of(*paint);
  return name + (server ? element_text(drawing, server, full) : rgb_text(paint->rgb)) +
         (paint->opacity < 1 ? '/' + number_text(paint->opacity, full) : "");
}

static void add_effects(std::string &line, const Drawing &drawing, const svg_scene_group &group,
                        bool full) {
  if (group.opacity < 1) add_cell(line, 0, "opacity " + number_text(group.opacity, full));
  if (group.clip) add_cell(line, 0, element_text(drawing, group.clip->element, full));
  if (group.mask) add_cell(line, 0, element_text(drawing, group.mask->element, full));
  if (group.has_viewport != 0)
    add_cell(line, 0, "viewport " + box_text(std::to_array(group.viewport), full));
  if (group.link) add_cell(line, 0, "link " + iri_text(drawing, *group.link, full));
}

static std::string matrix_text(const double matrix[6], bool full) {
  static constexpr double identity[] = {1, 0, 0, 1, 0, 0};
  if (std::ranges::equal(std::span(matrix, 6), identity)) return "";
  return "matrix(" + numbers_text({matrix, 4}, " ", full) + ' ' +
         numbers_text({matrix + 4, 2}, " ", full) + ')';
}
