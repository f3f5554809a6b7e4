// scene_box.cpp: boxes: walks that paint nothing and measure what they meet.
//
// Called by hosts, and by the walk where a clip path, mask or paint is relative to the box of an
// element. Raises ORT_E_LIMIT past the budget, and for lack of memory.
#include <algorithm>

#include "scene/scene_paint.h"
#include "scene/scene_view.h"
#include "scene/scene_walk.h"

namespace {

// What a walk measures, and in which space.
struct subject {
  const svg_e_node *element;
  const svg_scene_frame *outer; // the frame that it is measured in, or null: its place in the tree
  const double *ctm;            // from the space around it
  bool is_bare;
};

// From the user space of an ancestor (null: from outside of the drawing) down to that around an
// element.
struct descent {
  svg_scene *scene;
  const svg_e_node *ancestor;
  double *matrix;
  bool has_begun; // at the ancestor
  bool is_there;
};

} // namespace

static void descend(void *user, const svg_scene_place &around);
static void measure(svg_scene *scene, const subject &of, bool is_stroked, svg_scene_extent *extent);
static void start(svg_scene_walk *walk, const void *argument);

int32_t svg_scene_get_box(svg_scene *scene, const svg_e_node *element, const svg_e_node *ancestor,
                          int32_t stroked, double box[4]) {
  if (!element) element = scene->svg;
  const bool is_bare = element == ancestor;
  double ctm[6];
  std::copy_n(SVG_SCENE_IDENTITY, 6, ctm);
  const svg_scene_mark mark = scene->top;
  svg_scene_place place;
  descent way = {scene, ancestor, ctm, !ancestor, true};
  if (!is_bare) svg_scene_go_down(scene, element, &place, descend, &way);
  svg_scene_release(scene, mark);
  svg_scene_extent extent;
  if (way.is_there && svg_scene_are_finite(ctm, 6))
    measure(scene, {element, nullptr, ctm, is_bare}, stroked != 0, &extent);
  return svg_scene_get_extent(extent, box);
}

// Adds what an element around does. One without a view shows nothing.
static void descend(void *user, const svg_scene_place &around) {
  auto *way = static_cast<descent *>(user);
  if (way->has_begun) {
    double own[6];
    svg_scene_matrix_of(around.element, SVG_ATTR_transform, own);
    if (around.element->head.id == SVG_ELEM_svg) {
      svg_scene_view view;
      if (svg_scene_find_view(way->scene, around, nullptr, &view))
        std::copy_n(view.matrix, 6, own);
      else
        way->is_there = false;
    }
    svg_scene_multiply(way->matrix, way->matrix, own);
  }
  way->has_begun = way->has_begun || around.element == way->ancestor;
}

const double *svg_scene_measure(svg_scene_walk *walk, const svg_scene_frame *frame,
                                double room[4]) {
  svg_scene_extent extent;
  measure(walk->scene, {frame->element, frame->outer, SVG_SCENE_IDENTITY, true}, false, &extent);
  if (extent.is_open && walk->callbacks && walk->callbacks->text) return SVG_SCENE_UNIT_BOX;
  return svg_scene_get_extent(extent, room) ? room : nullptr;
}

static void measure(svg_scene *scene, const subject &of, bool is_stroked,
                    svg_scene_extent *extent) {
  svg_scene_walk walk = {};
  walk.scene = scene;
  walk.purpose = SVG_SCENE_MEASURE;
  walk.is_stroked = is_stroked;
  walk.extent = extent;
  if (scene->walk) { // the host may measure texts
    walk.callbacks = scene->walk->callbacks;
    walk.user = scene->walk->user;
    walk.depth = scene->walk->depth;
  }
  svg_scene_go(&walk, start, &of);
}

static void start(svg_scene_walk *walk, const void *argument) {
  const auto &of = *static_cast<const subject *>(argument);
  svg_scene_frame *frame = svg_scene_new_frame(walk, nullptr);
  if (of.outer) {
    frame->kind = of.outer->kind == SVG_SCENE_USE ? SVG_SCENE_USE : SVG_SCENE_CHILDREN;
    frame->is_done = true;
    frame->element = of.outer->element;
    frame->use = of.outer->use;
    frame->style = of.outer->style;
    std::copy_n(of.outer->viewport, 2, frame->viewport);
  } else {
    const svg_e_node *parent =
        of.element == walk->scene->svg ? nullptr : svg_get_parent(of.element);
    svg_scene_place place;
    svg_scene_find_inside(walk->scene, parent, &place);
    frame->element = parent;
    frame->style = place.style;
    std::copy_n(place.viewport, 2, frame->viewport);
  }
  std::copy_n(of.ctm, 6, frame->ctm);
  svg_scene_push(walk, frame);
  svg_scene_show(walk, of.element, true, of.is_bare);
}
