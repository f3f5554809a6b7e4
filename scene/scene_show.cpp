// scene_show.cpp: what one element comes to: whether it is shown, with which style and transform,
// and what becomes of it: a leaf is painted at once, anything else becomes a frame of the walk.
#include <algorithm>

#include "scene/scene_text.h"
#include "scene/scene_view.h"
#include "scene/scene_walk.h"

namespace {

// How elements are shown.
enum kind : uint8_t {
  NOT_SHOWN, // by reference at most
  CONTAINER,
  SWITCH,
  USE,
  VIEW,
  SHAPE,
  IMAGE,
  TEXT
};

} // namespace

static kind kind_of(const svg_scene_walk *walk, const svg_e_node *element, bool is_direct);
static void find_style(svg_scene_walk *walk, svg_scene_frame *frame);
static bool place_frame(svg_scene_walk *walk, svg_scene_frame *frame, bool is_bare,
                        double matrix[6]);
static void correct_use(const svg_scene *scene, const svg_scene_frame *frame, double matrix[6]);
static bool show_leaf(svg_scene_walk *walk, svg_scene_frame *frame, kind kind,
                      const double matrix[6]);
static void show_container(svg_scene_walk *walk, svg_scene_frame *frame, kind kind,
                           const double matrix[6]);
static void show_view(svg_scene_walk *walk, svg_scene_frame *frame, bool is_bare);
static void enter_view(svg_scene_walk *walk, svg_scene_frame *frame, const svg_scene_frame *around,
                       bool is_bare);

// What is not pushed leaves nothing on the stack.
void svg_scene_show(svg_scene_walk *walk, const svg_e_node *element, bool is_direct, bool is_bare) {
  svg_scene *scene = walk->scene;
  const kind kind = kind_of(walk, element, is_direct);
  if (kind == NOT_SHOWN) return;
  svg_scene_count(scene, 1);
  if (!svg_scene_has_language(scene, element)) return;
  svg_scene_frame *frame = svg_scene_new_frame(walk, element);
  find_style(walk, frame);
  double matrix[6];
  bool is_pushed = false;
  if ((frame->style->display != SVG_KW_none || element->head.id == SVG_ELEM_symbol) &&
      place_frame(walk, frame, is_bare, matrix)) {
    if (kind >= SHAPE)
      is_pushed = show_leaf(walk, frame, kind, matrix);
    else if (kind == VIEW)
      show_view(walk, frame, is_bare);
    else
      show_container(walk, frame, kind, matrix);
    is_pushed = is_pushed || walk->top != frame->outer;
  }
  if (!is_pushed) svg_scene_release(scene, frame->mark);
}

// A clip path holds shapes and texts, and uses of these (SVG 1.1, 14.3.5).
static kind kind_of(const svg_scene_walk *walk, const svg_e_node *element, bool is_direct) {
  kind kind = is_direct ? CONTAINER : NOT_SHOWN;
  switch (element->head.id) {
  case SVG_ELEM_a:
  case SVG_ELEM_g: kind = CONTAINER; break;
  case SVG_ELEM_switch: kind = SWITCH; break;
  case SVG_ELEM_use: kind = USE; break;
  case SVG_ELEM_symbol:
    if (walk->top->kind == SVG_SCENE_USE) kind = VIEW;
    break;
  case SVG_ELEM_svg: kind = VIEW; break;
  case SVG_ELEM_circle:
  case SVG_ELEM_ellipse:
  case SVG_ELEM_line:
  case SVG_ELEM_path:
  case SVG_ELEM_polygon:
  case SVG_ELEM_polyline:
  case SVG_ELEM_rect: kind = SHAPE; break;
  case SVG_ELEM_image: kind = IMAGE; break;
  case SVG_ELEM_text: kind = TEXT; break;
  default: break;
  }
  const bool is_of_clip =
      kind == SHAPE || kind == TEXT || (kind == USE && walk->top->kind != SVG_SCENE_USE);
  return walk->purpose != SVG_SCENE_CLIP || is_of_clip ? kind : NOT_SHOWN;
}

bool svg_scene_has_language(const svg_scene *scene, const svg_e_node *element) {
  return (element->head.flags & SVG_EF_SYSLANG) == 0 ||
         svg_check_system_language(scene->parser, element) != 0;
}

bool svg_scene_is_choice(const svg_scene_walk *walk, const svg_e_node *child) {
  return kind_of(walk, child, false) != NOT_SHOWN && svg_scene_has_language(walk->scene, child);
}

// An element without properties in one that has nothing but what is inherited shares its style.
static void find_style(svg_scene_walk *walk, svg_scene_frame *frame) {
  const svg_scene_frame *outer = frame->outer;
  frame->is_plain = true;
  if (outer->is_plain && !svg_scene_has_properties(frame->element)) return;
  auto *style =
      static_cast<svg_scene_style *>(svg_scene_take_room(walk->scene, sizeof(svg_scene_style)));
  frame->is_plain =
      !svg_scene_compute_style(walk->scene, frame->element, outer->style, outer->viewport, style);
  frame->style = style;
}

// Finds the transform. One that is singular or overflows shows nothing (SVG 1.1, 7.4).
static bool place_frame(svg_scene_walk *walk, svg_scene_frame *frame, bool is_bare,
                        double matrix[6]) {
  std::copy_n(SVG_SCENE_IDENTITY, 6, matrix);
  const auto *transform = svg_scene_find<svg_an_trafo>(frame->element, SVG_ATTR_transform);
  if (is_bare || !transform) return true;
  svg_get_matrix(transform, matrix);
  if (frame->element->head.id == SVG_ELEM_use) correct_use(walk->scene, frame, matrix);
  double inverse[6];
  svg_scene_multiply(frame->ctm, frame->ctm, matrix);
  return svg_scene_are_finite(frame->ctm, 6) && svg_scene_invert(inverse, matrix);
}

// The reader has put the numbers of x and y into the transform, whatever their units.
static void correct_use(const svg_scene *scene, const svg_scene_frame *frame, double matrix[6]) {
  const svg_scene_place place = svg_scene_place_of(frame);
  const auto missing = [&](int row, svg_scene_axis axis) {
    const auto *written = svg_scene_find<svg_an_unum>(frame->element, row);
    return written ? svg_scene_length_of(scene, place, row, axis, 0) - written->value : 0;
  };
  const double x = missing(SVG_ATTR_x, SVG_SCENE_X), y = missing(SVG_ATTR_y, SVG_SCENE_Y);
  if (x == 0 && y == 0) return;
  const double moved[6] = {1, 0, 0, 1, x, y};
  svg_scene_multiply(matrix, matrix, moved);
}

static bool show_leaf(svg_scene_walk *walk, svg_scene_frame *frame, kind kind,
                      const double matrix[6]) {
  if (kind == SHAPE) return svg_scene_show_shape(walk, frame, matrix);
  if (kind == IMAGE) svg_scene_show_image(walk, frame, matrix);
  if (kind == TEXT) svg_scene_show_text(walk, frame, matrix);
  return false;
}

static void show_container(svg_scene_walk *walk, svg_scene_frame *frame, kind kind,
                           const double matrix[6]) {
  const bool has_effects = svg_scene_has_effects(walk, frame);
  if (has_effects || !std::equal(matrix, matrix + 6, SVG_SCENE_IDENTITY))
    svg_scene_begin_group(walk, frame, matrix, nullptr, has_effects, nullptr);
  frame->next = frame->element->first_child;
  frame->kind = kind == USE      ? SVG_SCENE_USE
                : kind == SWITCH ? SVG_SCENE_SWITCH
                                 : SVG_SCENE_CHILDREN;
  svg_scene_push(walk, frame);
}

// Effects are applied in the user space around a viewport, its clip within it: two groups.
static void show_view(svg_scene_walk *walk, svg_scene_frame *frame, bool is_bare) {
  if (!svg_scene_has_effects(walk, frame)) return enter_view(walk, frame, frame->outer, is_bare);
  svg_scene_begin_group(walk, frame, SVG_SCENE_IDENTITY, nullptr, true, nullptr);
  frame->kind = SVG_SCENE_VIEW;
  svg_scene_push(walk, frame);
}

void svg_scene_show_view(svg_scene_walk *walk) {
  const svg_scene_frame *outer = walk->top;
  svg_scene_frame *frame = svg_scene_new_frame(walk, outer->element);
  enter_view(walk, frame, outer->outer, false);
  if (walk->top == outer) svg_scene_release(walk->scene, frame->mark);
}

// around may be the frame of a use, which then tells the size.
static void enter_view(svg_scene_walk *walk, svg_scene_frame *frame, const svg_scene_frame *around,
                       bool is_bare) {
  const svg_scene_place user = svg_scene_place_of(around);
  const bool is_used = around->kind == SVG_SCENE_USE;
  svg_scene_view view;
  if (!svg_scene_find_view(walk->scene, svg_scene_place_of(frame), is_used ? &user : nullptr,
                           &view))
    return;
  if (!is_bare) svg_scene_multiply(frame->ctm, frame->ctm, view.matrix);
  if (!svg_scene_are_finite(frame->ctm, 6)) return;
  std::copy_n(view.viewport, 2, frame->viewport);
  if (view.is_clipped || !std::equal(view.matrix, view.matrix + 6, SVG_SCENE_IDENTITY))
    svg_scene_begin_group(walk, frame, view.matrix, view.is_clipped ? view.clip : nullptr, false,
                          nullptr);
  frame->next = frame->element->first_child;
  svg_scene_push(walk, frame);
}
