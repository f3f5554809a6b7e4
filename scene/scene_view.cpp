// scene_view.cpp: viewports (SVG 1.1, 7.7 to 7.9, 11.6 and 14.3.3). Called by the walk, and for
// what percentages are of. Nothing here raises.
#include "scene/scene_view.h"

#include <algorithm>
#include <cmath>

#include "scene/scene_geometry.h"

static void find_area(const svg_scene *scene, const svg_scene_place &place,
                      const svg_scene_place *use, double area[4]);
static bool fit(const svg_scene_place &place, const double area[4], svg_scene_view *view);

bool svg_scene_find_view(const svg_scene *scene, const svg_scene_place &place,
                         const svg_scene_place *use, svg_scene_view *view) {
  double area[4];
  find_area(scene, place, use, area);
  return fit(place, area, view);
}

// The outermost svg is as large as the drawing, wherever it says that it lies. A symbol fills what
// is around it unless the use says otherwise; it has no position (SVG 1.1, 5.5 and 5.6).
static void find_area(const svg_scene *scene, const svg_scene_place &place,
                      const svg_scene_place *use, double area[4]) {
  const bool is_svg = place.element->head.id == SVG_ELEM_svg;
  std::copy_n(scene->size, 2, area + 2);
  area[0] = area[1] = 0;
  if (place.element == scene->svg && !use) return;
  std::copy_n(place.viewport, 2, area + 2);
  if (is_svg) {
    area[0] = svg_scene_length_of(scene, place, SVG_ATTR_x, SVG_SCENE_X, 0);
    area[1] = svg_scene_length_of(scene, place, SVG_ATTR_y, SVG_SCENE_Y, 0);
    area[2] = svg_scene_length_of(scene, place, SVG_ATTR_svg_width, SVG_SCENE_X, area[2]);
    area[3] = svg_scene_length_of(scene, place, SVG_ATTR_svg_height, SVG_SCENE_Y, area[3]);
  }
  if (!use) return;
  area[2] = svg_scene_length_of(scene, *use, SVG_ATTR_width, SVG_SCENE_X, area[2]);
  area[3] = svg_scene_length_of(scene, *use, SVG_ATTR_height, SVG_SCENE_Y, area[3]);
}

bool svg_scene_find_marker_view(const svg_scene *scene, const svg_scene_place &place,
                                svg_scene_view *view) {
  const double area[4] = {0, 0,
                          svg_scene_length_of(scene, place, SVG_ATTR_markerWidth, SVG_SCENE_X, 3),
                          svg_scene_length_of(scene, place, SVG_ATTR_markerHeight, SVG_SCENE_Y, 3)};
  if (!fit(place, area, view)) return false;
  svg_scene_place inside = place;
  std::copy_n(view->viewport, 2, inside.viewport);
  const double x = svg_scene_length_of(scene, inside, SVG_ATTR_refX, SVG_SCENE_X, 0);
  const double y = svg_scene_length_of(scene, inside, SVG_ATTR_refY, SVG_SCENE_Y, 0);
  const svg_scene_point reference = svg_scene_map(view->matrix, x, y);
  view->matrix[4] -= reference.x;
  view->matrix[5] -= reference.y;
  return svg_scene_are_finite(view->matrix, 6);
}

// Fits the viewBox into the area. One without width or height shows nothing, one with a negative
// size is an error and does not count (SVG 1.1, 7.7). The clip is what overflow and clip say.
static bool fit(const svg_scene_place &place, const double area[4], svg_scene_view *view) {
  if (!(area[2] > 0 && area[3] > 0) || !svg_scene_are_finite(area, 4)) return false;
  const auto *box = svg_scene_find<svg_an_viewbox>(place.element, SVG_ATTR_viewBox);
  if (box && (box->width < 0 || box->height < 0)) box = nullptr;
  if (box) {
    const double from[4] = {box->min_x, box->min_y, box->width, box->height};
    const svg_scene_aspect aspect = svg_scene_aspect_of(place.element);
    if (!svg_scene_fit(view->matrix, from, area, aspect.align, aspect.meet)) return false;
    std::copy_n(from + 2, 2, view->viewport);
  } else {
    const double moved[6] = {1, 0, 0, 1, area[0], area[1]};
    std::copy_n(moved, 6, view->matrix);
    std::copy_n(area + 2, 2, view->viewport);
  }
  const svg_scene_style &style = *place.style;
  view->is_clipped = style.overflow == SVG_KW_hidden || style.overflow == SVG_KW_scroll;
  const double *sides = style.clip_rect; // top, right, bottom, left
  const double left = area[0] + sides[3], top = area[1] + sides[0];
  const double *m = view->matrix;
  view->clip[0] = (left - m[4]) / m[0];
  view->clip[1] = (top - m[5]) / m[3];
  view->clip[2] = std::max((area[2] - sides[1] - sides[3]) / m[0], 0.0);
  view->clip[3] = std::max((area[3] - sides[0] - sides[2]) / m[3], 0.0);
  return svg_scene_are_finite(view->clip, 4);
}
