// scene_markers.cpp: the markers on the vertices of a shape (SVG 1.1, 11.6). The frame of the shape
// stays on the walk's stack while they are shown one after another.
#include <algorithm>
#include <cmath>
#include <new>
#include <type_traits>

#include "scene/scene_view.h"
#include "scene/scene_walk.h"

namespace {

constexpr int KINDS = 3; // start, mid, end: the bits of svg_scene_vertex.kind

// What one property places; element is null for nothing.
struct marker {
  const svg_e_node *element;
  svg_scene_place place; // of the element in the tree: it inherits nothing from the shape
  svg_scene_view view;
};

} // namespace

struct svg_scene_markers {
  svg_scene_vertices vertices;
  svg_scene_vertex vertex; // the last one
  int left;                // its kinds that are still to be shown
  marker markers[KINDS];
  double matrix[6]; // from the shape's user space to that of the group around its markers
};

static_assert(std::is_trivially_destructible_v<svg_scene_markers>);

static bool find_marker(svg_scene_walk *walk, const svg_scene_frame *frame,
                        const svg_e_node *element, marker *found);
static double angle_of(const svg_e_node *element, const svg_scene_vertex &vertex);

bool svg_scene_begin_markers(svg_scene_walk *walk, svg_scene_frame *frame,
                             const svg_scene_path &path, const double matrix[6]) {
  const svg_scene_style &style = *frame->style;
  const int id = frame->element->head.id;
  if ((!style.marker_start && !style.marker_mid && !style.marker_end) ||
      walk->purpose == SVG_SCENE_CLIP || (walk->purpose == SVG_SCENE_MEASURE && !walk->is_stroked))
    return false;
  if (id != SVG_ELEM_path && id != SVG_ELEM_line && id != SVG_ELEM_polyline &&
      id != SVG_ELEM_polygon)
    return false;
  auto *room = svg_scene_take_room(walk->scene, sizeof(svg_scene_markers));
  auto *markers =
      new (room) svg_scene_markers{svg_scene_vertices(path.runs, path.count), {}, 0, {}, {}};
  const svg_e_node *const elements[KINDS] = {style.marker_start, style.marker_mid,
                                             style.marker_end};
  bool is_any = false;
  for (int i = 0; i < KINDS; ++i)
    if (elements[i] && find_marker(walk, frame, elements[i], &markers->markers[i])) is_any = true;
  std::copy_n(matrix, 6, markers->matrix);
  frame->markers = markers;
  frame->kind = SVG_SCENE_MARKERS;
  return is_any;
}

static bool find_marker(svg_scene_walk *walk, const svg_scene_frame *frame,
                        const svg_e_node *element, marker *found) {
  svg_scene *scene = walk->scene;
  if (svg_scene_is_refused(walk, element, frame->element)) return false;
  svg_scene_count_place(scene, element);
  svg_scene_find_place(scene, element, &found->place);
  if (!svg_scene_find_marker_view(scene, found->place, &found->view)) return false;
  found->element = element;
  if (svg_scene_keyword_of(element, SVG_ATTR_markerUnits, SVG_KW_strokeWidth) ==
      SVG_KW_userSpaceOnUse)
    return true;
  const double width = frame->style->stroke_width;
  const double scaled[6] = {width, 0, 0, width, 0, 0};
  svg_scene_multiply(found->view.matrix, scaled, found->view.matrix);
  return width > 0;
}

// The content of a marker is a group that stands on the vertex, turned (SVG 1.1, 11.6.3).
bool svg_scene_show_marker(svg_scene_walk *walk) {
  svg_scene_frame *outer = walk->top;
  svg_scene_markers *markers = outer->markers;
  while (markers->left == 0) {
    if (!markers->vertices.next(&markers->vertex)) return false;
    for (int i = 0; i < KINDS; ++i)
      if ((markers->vertex.kind & 1 << i) != 0 && markers->markers[i].element)
        markers->left |= 1 << i;
  }
  const int which = markers->left & 1 ? 0 : markers->left & 2 ? 1 : 2;
  markers->left &= ~(1 << which);
  const marker &shown = markers->markers[which];
  svg_scene_count(walk->scene, 1);
  const double angle = angle_of(shown.element, markers->vertex);
  const double turned[6] = {std::cos(angle), std::sin(angle),      -std::sin(angle),
                            std::cos(angle), markers->vertex.at.x, markers->vertex.at.y};
  double matrix[6];
  svg_scene_multiply(matrix, turned, shown.view.matrix);
  svg_scene_frame *frame = svg_scene_new_frame(walk, shown.element);
  svg_scene_multiply(frame->ctm, outer->ctm, matrix);
  svg_scene_multiply(matrix, markers->matrix, matrix);
  if (!svg_scene_are_finite(frame->ctm, 6) || !svg_scene_are_finite(matrix, 6)) {
    svg_scene_release(walk->scene, frame->mark);
    return true;
  }
  frame->style = shown.place.style;
  std::copy_n(shown.view.viewport, 2, frame->viewport);
  svg_scene_begin_group(walk, frame, matrix, shown.view.is_clipped ? shown.view.clip : nullptr,
                        svg_scene_has_effects(walk, frame), nullptr);
  frame->next = shown.element->first_child;
  svg_scene_push(walk, frame);
  return true;
}

static double angle_of(const svg_e_node *element, const svg_scene_vertex &vertex) {
  const auto *orient = svg_scene_find<svg_an_key_unum>(element, SVG_ATTR_orient);
  if (!orient) return 0;
  if (orient->key == SVG_KW_auto) return vertex.angle;
  switch (orient->head.unit) {
  case SVG_UNIT_RAD: return orient->value;
  case SVG_UNIT_GRAD: return orient->value * (M_PI / 200);
  default: return orient->value * (M_PI / 180);
  }
}
