#include "tests/support/scene_list.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <span>

namespace {

// What the callbacks write to. Those that paint content keep no object alive across it, for it may
// raise.
struct Lines {
  svg_scene *scene;
  const svg_parser *parser;
  std::string text;
  size_t indent;

  void add(const std::string &line) { text += std::string(2 * indent, ' ') + line + '\n'; }
};

Lines &lines(void *user) { return *static_cast<Lines *>(user); }

std::string id_of(const Lines &lines, const svg_e_node *element) {
  const std::string id = svg_find_href_id(lines.parser, element);
  return id == "(empty)" ? svg_get_elem_table()[element->head.id].name : id;
}

void expect_finite(const double *numbers, size_t count) {
  EXPECT_TRUE(std::all_of(numbers, numbers + count, [](double n) { return std::isfinite(n); }));
}

std::string matrix_text(const double m[6], const char *name = "matrix") {
  const double identity[6] = {1, 0, 0, 1, 0, 0};
  expect_finite(m, 6);
  return std::equal(m, m + 6, identity) ? "" : " " + std::string(name) + "=" + short_numbers(m, 6);
}

std::string item_text(const Lines &lines, const svg_scene_item &item) {
  matrix_text(item.ctm, "ctm");
  return id_of(lines, item.element) +
         (item.use != nullptr ? " use=" + id_of(lines, item.use) : "") + matrix_text(item.matrix);
}

std::string path_text(std::span<const svg_pada> segments) {
  std::string result;
  for (const svg_pada &run : segments)
    result += std::string(" ") + "?MLCZ"[run.type] + short_numbers(run.points, 2 * run.count);
  return result;
}

std::string paint_text(const Lines &lines, const svg_scene_paint &paint) {
  std::string result;
  switch (paint.kind) {
  case SVG_SCENE_PAINT_NONE: return "none";
  case SVG_SCENE_PAINT_COLOR: result = color_text(paint.rgb, paint.color); break;
  case SVG_SCENE_PAINT_GRADIENT: {
    const svg_scene_gradient &g = *paint.gradient;
    result = g.radial ? "radial(" + short_numbers(&g.cx, 5) : "linear(" + short_numbers(&g.x1, 4);
    if (g.spread != SVG_KW_pad) result += std::string(" ") + svg_get_keyword_text(g.spread);
    result += matrix_text(g.matrix) + (g.of_box ? " of box" : "");
    for (const svg_scene_stop &stop : std::span(g.stops, g.stop_count)) {
      result += " " + short_number(stop.offset) + " " + color_text(stop.rgb, stop.color);
      if (stop.opacity != 1) result += "/" + short_number(stop.opacity);
    }
    result += ")";
    break;
  }
  case SVG_SCENE_PAINT_PATTERN:
    result = "pattern(" + id_of(lines, paint.pattern->element) + ")";
    break;
  }
  return paint.opacity == 1 ? result : result + "/" + short_number(paint.opacity);
}

void add_pattern(Lines &lines, const svg_scene_pattern &p) {
  lines.add("pattern " + id_of(lines, p.element) + " tile=" + short_numbers(p.tile, 4) +
            matrix_text(p.matrix) +
            (p.content != p.element ? " content=" + id_of(lines, p.content) : "") +
            matrix_text(p.content_matrix, "content-matrix") + (p.clipped ? "" : " visible") +
            (p.of_box ? " of box" : "") + (p.content_of_box ? " content of box" : ""));
}

extern const svg_scene_callbacks callbacks;

void paint_pattern(Lines &lines, const svg_scene_paint &paint) {
  if (paint.kind != SVG_SCENE_PAINT_PATTERN) return;
  lines.indent++;
  add_pattern(lines, *paint.pattern);
  lines.indent++;
  svg_scene_paint_pattern(lines.scene, paint.pattern, &callbacks, &lines);
  lines.indent -= 2;
}

std::string link_text(const Lines &lines, const svg_iri *link) {
  if (!link) return "";
  return " link=" + (link->kind == SVG_IRI_LINK
                         ? "#" + id_text(lines.parser, link->ref.target)
                         : std::string(link->ref.text ? link->ref.text : ""));
}

void add_group(Lines &lines, const svg_scene_group &group) {
  std::string line = "group " + item_text(lines, group.item);
  if (group.opacity != 1) line += " opacity=" + short_number(group.opacity);
  if (group.has_viewport) line += " viewport=" + short_numbers(group.viewport, 4);
  line += link_text(lines, group.link);
  if (group.is_single) line += " single";
  if (group.has_bounds) line += " bounds=" + short_numbers(group.bounds, 4);
  lines.add(line);
  lines.indent++;
}

struct ClipOutline {
  int32_t is_known;
  const svg_pada *segments;
  size_t count;
  int32_t fill_rule;
};

void add_clip(Lines &lines, const svg_scene_clip &clip, const ClipOutline &outline) {
  std::string line = "clip " + id_of(lines, clip.element) + matrix_text(clip.matrix) +
                     (clip.of_box ? " of box" : "");
  if (outline.is_known)
    line += (outline.fill_rule == SVG_KW_evenodd ? " outline evenodd" : " outline") +
            path_text({outline.segments, outline.count});
  lines.add(line);
}

void add_mask(Lines &lines, const svg_scene_mask &mask) {
  lines.add("mask " + id_of(lines, mask.element) + " area=" + short_numbers(mask.area, 4) +
            matrix_text(mask.matrix) + (mask.of_box ? " of box" : "") +
            (mask.content_of_box ? " content of box" : ""));
}

void begin_group(void *user, const svg_scene_group *group) {
  add_group(lines(user), *group);
  if (group->clip) {
    ClipOutline outline = {};
    outline.is_known = svg_scene_get_clip_outline(lines(user).scene, group->clip, &outline.segments,
                                                  &outline.count, &outline.fill_rule);
    add_clip(lines(user), *group->clip, outline);
    lines(user).indent++;
    svg_scene_paint_clip(lines(user).scene, group->clip, &callbacks, user);
    lines(user).indent--;
  }
  if (group->mask) {
    add_mask(lines(user), *group->mask);
    lines(user).indent++;
    svg_scene_paint_mask(lines(user).scene, group->mask, &callbacks, user);
    lines(user).indent--;
  }
}

void end_group(void *user, const svg_scene_group *) { lines(user).indent--; }

void add_shape(Lines &lines, const svg_scene_shape &shape) {
  std::string line = "shape " + item_text(lines, shape.item);
  if (shape.fill.kind != SVG_SCENE_PAINT_NONE) {
    line += " fill=" + paint_text(lines, shape.fill);
    if (shape.fill_rule != SVG_KW_nonzero) line += " rule=evenodd";
  }
  if (shape.stroke.kind != SVG_SCENE_PAINT_NONE)
    line += " stroke=" + paint_text(lines, shape.stroke) +
            " width=" + short_number(shape.item.style->stroke_width);
  lines.add(line + path_text({shape.segments, shape.segment_count}));
}

void shape(void *user, const svg_scene_shape *shape) {
  add_shape(lines(user), *shape);
  paint_pattern(lines(user), shape->fill);
  paint_pattern(lines(user), shape->stroke);
}

void image(void *user, const svg_scene_image *image) {
  std::string line =
      "image " + item_text(lines(user), image->item) + " area=" + short_numbers(image->area, 4);
  if (image->iri->kind == SVG_IRI_NAME) line += std::string(" ") + image->iri->ref.text;
  if (image->data != nullptr) line += " bytes=" + std::to_string(image->size);
  line += std::string(" align=") + svg_get_keyword_text(image->align);
  lines(user).add(line + (image->meet ? "" : " slice") + (image->clipped ? "" : " visible"));
}

void add_run(Lines &lines, const svg_scene_run &run) {
  std::string line = "text " + item_text(lines, run.item) + " '" + run.text + "'";
  const auto add = [&](const char *name, double value, double usual) {
    if (value != usual) line += std::string(" ") + name + "=" + short_number(value);
  };
  if (run.flags & (SVG_RUN_X | SVG_RUN_PLACED)) line += " x=" + short_number(run.x);
  if (run.flags & (SVG_RUN_Y | SVG_RUN_PLACED)) line += " y=" + short_number(run.y);
  for (const auto &[bit, name] :
       {std::pair(SVG_RUN_CHUNK, "chunk"), {SVG_RUN_FIRST, "first"}, {SVG_RUN_LAST, "last"}})
    if (run.flags & static_cast<uint32_t>(bit)) line += std::string(" ") + name;
  add("dx", run.dx, 0);
  add("dy", run.dy, 0);
  add("baseline", run.baseline, 0);
  add("rotate", run.rotate, 0);
  add("stretch", run.stretch, 1);
  add("spacing", run.spacing, 0);
  add("advance", run.advance, 0);
  line += " fill=" + paint_text(lines, run.fill);
  if (run.stroke.kind != SVG_SCENE_PAINT_NONE) line += " stroke=" + paint_text(lines, run.stroke);
  for (const svg_scene_decoration &d : std::span(run.decorations, run.decoration_count))
    line += " decoration=" + std::to_string(d.lines) + " " + paint_text(lines, d.fill);
  line += link_text(lines, run.link);
  if (run.path)
    line += " path=" + short_number(run.path->start) +
            path_text({run.path->segments, run.path->segment_count});
  for (const svg_scene_text_length *l = run.text_length; l; l = l->outer)
    line += " length=" + id_of(lines, l->element) + " " + short_number(l->length) +
            (l->adjust == SVG_KW_spacing ? "" : " glyphs");
  lines.add(line);
}

void text(void *user, const svg_scene_run *run) { add_run(lines(user), *run); }

const svg_scene_callbacks callbacks = {begin_group, end_group, shape, image, text, nullptr};

// Each character is half an em wide.
double measure(void *, const svg_scene_run *run) {
  const auto characters = std::count_if(run->text, run->text + run->length,
                                        [](char byte) { return (byte & 0xC0) != 0x80; });
  return static_cast<double>(characters) * (run->item.style->font_size / 2 + run->spacing);
}

} // namespace

std::string scene_list(const Scene &scene, const svg_e_node *element, bool measured) {
  svg_scene_callbacks chosen = callbacks;
  if (measured) chosen.measure = measure;
  Lines lines = {scene, scene.document.parser, "", 0};
  auto &core = const_cast<AccountingCore &>(scene.document.core);
  const int code = core.protect([&] { svg_scene_paint_element(scene, element, &chosen, &lines); });
  return code == 0 ? lines.text : lines.text + "error " + std::to_string(code) + "\n";
}

std::string scene_box(const Scene &scene, const std::string &element, const std::string &ancestor,
                      bool stroked) {
  const svg_e_node *of = element.empty() ? nullptr : scene.document.find(element.c_str());
  const svg_e_node *in = ancestor.empty() ? nullptr : scene.document.find(ancestor.c_str());
  auto &core = const_cast<AccountingCore &>(scene.document.core);
  double box[4];
  int32_t found = 0;
  const int code = core.protect([&] { found = svg_scene_get_box(scene, of, in, stroked, box); });
  if (code != 0) return "error " + std::to_string(code);
  return found ? short_numbers(box, 4) : "none";
}

int scene_all(AccountingCore &core, svg_parser *parser, svg_e_node *svg) {
  Lines lines = {nullptr, parser, "", 0};
  svg_scene *&scene = lines.scene;
  const int code = core.protect([&] {
    scene = svg_scene_new(parser, svg, nullptr);
    svg_scene_callbacks chosen = callbacks;
    chosen.measure = measure;
    svg_scene_paint_element(scene, nullptr, &chosen, &lines);
    double box[4] = {};
    svg_scene_get_box(scene, nullptr, nullptr, 1, box);
    for (size_t i = 0; i < svg_get_href_count(parser); i++) {
      svg_e_node *element = nullptr;
      svg_scene_style style;
      const svg_pada *segments;
      svg_get_href(parser, i, &element);
      svg_scene_get_style(scene, element, &style);
      svg_scene_get_outline(scene, element, &segments);
      if (svg_scene_get_box(scene, element, element, 1, box)) expect_finite(box, 4);
    }
  });
  svg_scene_delete(scene);
  return code;
}
