// scene.cpp: the life of a scene, its size, and its messages.
#include <cmath>
#include <cstring>
#include <iterator>

#include "scene/scene.h"
#include "scene/scene_fonts.h"
#include "scene/scene_servers.h"

static void find_size(svg_scene *scene);

namespace {

constexpr ort_errtab_entry ERRORS[] = {
    {2, SVG_SCENE_CIRCLE, "Element '$1' in line $2: reference in a circle is ignored", nullptr},
    {2, SVG_SCENE_DEEP, "Element '$1' in line $2: reference is nested too deep and is ignored",
     nullptr},
};

} // namespace

svg_scene *svg_scene_new(svg_parser *parser, svg_e_node *svg, const svg_scene_options *options) {
  ort_core *core = svg_get_core(parser);
  ort_register_errtab(core, 10, ERRORS, static_cast<int>(std::size(ERRORS)));
  auto *scene = static_cast<svg_scene *>(ort_calloc(core, 1, sizeof(svg_scene), "svg_scene_new"));
  scene->parser = parser;
  scene->core = core;
  scene->svg = svg;
  if (options) scene->options = *options;
  if (scene->options.dpi == 0) scene->options.dpi = 96;
  if (scene->options.medium == 0) scene->options.medium = 12;
  scene->top.chunk = scene->result.chunk = scene->result_end.chunk = &scene->bottom;
  svg_limits limits;
  svg_get_limits(parser, &limits);
  scene->limit = limits.expanded;
  find_size(scene);
  return scene;
}

void svg_scene_delete(svg_scene *scene) {
  if (!scene) return;
  svg_scene_release(scene, {&scene->bottom, 0});
  ort_free(scene->core, scene->bottom.after);
  ort_free(scene->core, scene->active.slots);
  ort_free(scene->core, scene->warned.slots);
  svg_scene_free_servers(scene);
  svg_scene_free_fonts(scene);
  ort_free(scene->core, scene);
}

void svg_scene_get_size(const svg_scene *scene, double *width, double *height) {
  if (width) *width = scene->size[0];
  if (height) *height = scene->size[1];
}

// A size that is no number above 0 shows nothing.
static void find_size(svg_scene *scene) {
  const auto *box = svg_scene_find<svg_an_viewbox>(scene->svg, SVG_ATTR_viewBox);
  const double given[2] = {scene->options.viewport_width, scene->options.viewport_height};
  const double of_box[2] = {box ? box->width : 0, box ? box->height : 0};
  const double lone[2] = {300, 150}; // CSS 2.1, 10.3.2
  double viewport[2];
  for (int i = 0; i < 2; ++i)
    viewport[i] = given[i] > 0 ? given[i] : of_box[i] > 0 ? of_box[i] : lone[i];
  svg_scene_style style = {};
  style.font_size = scene->options.medium;
  const svg_scene_place place = {scene->svg, &style, {viewport[0], viewport[1]}};
  const int rows[2] = {SVG_ATTR_svg_width, SVG_ATTR_svg_height};
  const svg_scene_axis axes[2] = {SVG_SCENE_X, SVG_SCENE_Y};
  for (int i = 0; i < 2; ++i) {
    const double size = svg_scene_length_of(scene, place, rows[i], axes[i], viewport[i]);
    scene->size[i] = size > 0 && std::isfinite(size) ? size : 0;
  }
}

void svg_scene_warn(svg_scene *scene, svg_scene_warning warning, const svg_e_node *element) {
  if (!svg_scene_enter(scene, &scene->warned, element)) return;
  const char *name = svg_get_elem_table()[element->head.id].name;
  const char *id = svg_find_href_id(scene->parser, element);
  if (strcmp(id, "(empty)") != 0) name = ort_errprintf(scene->core, "%s #%s", name, id);
  ort_warning(scene->core, warning, name,
              ort_errprintf(scene->core, "%ld", static_cast<long>(element->line)), nullptr,
              nullptr);
}
