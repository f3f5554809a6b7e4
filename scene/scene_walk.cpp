// scene_walk.cpp: goes through what is to be painted, frame by frame, and answers the host's calls
// for it. What an element comes to is in scene_show.cpp.
//
// Raises ORT_E_LIMIT past the budget, for lack of memory, and what callbacks raise.
#include "scene/scene_walk.h"

#include <algorithm>

static void advance(svg_scene_walk *walk);
static void pop(svg_scene_walk *walk);
static void leave(svg_scene_walk *walk, const svg_scene_frame *frame);
static void list_frames(svg_scene *scene);
static void paint(svg_scene *scene, const svg_scene_callbacks *callbacks, void *user,
                  svg_scene_purpose purpose,
                  void (*start)(svg_scene_walk *walk, const void *argument), const void *argument);
static void start_element(svg_scene_walk *walk, const void *argument);
static void start_content(svg_scene_walk *walk, const void *argument);

// ---- What hosts call ----------------------------------------------------------------------------

void svg_scene_paint_element(svg_scene *scene, const svg_e_node *element,
                             const svg_scene_callbacks *callbacks, void *user) {
  paint(scene, callbacks, user, SVG_SCENE_PAINT, start_element, element ? element : scene->svg);
}

void svg_scene_paint_pattern(svg_scene *scene, const svg_scene_pattern *pattern,
                             const svg_scene_callbacks *callbacks, void *user) {
  paint(scene, callbacks, user, SVG_SCENE_PAINT, start_content, pattern->content);
}

void svg_scene_paint_clip(svg_scene *scene, const svg_scene_clip *clip,
                          const svg_scene_callbacks *callbacks, void *user) {
  paint(scene, callbacks, user, SVG_SCENE_CLIP, start_content, clip->element);
}

void svg_scene_paint_mask(svg_scene *scene, const svg_scene_mask *mask,
                          const svg_scene_callbacks *callbacks, void *user) {
  paint(scene, callbacks, user, SVG_SCENE_PAINT, start_content, mask->element);
}

static void paint(svg_scene *scene, const svg_scene_callbacks *callbacks, void *user,
                  svg_scene_purpose purpose,
                  void (*start)(svg_scene_walk *walk, const void *argument), const void *argument) {
  svg_scene_walk walk = {};
  walk.scene = scene;
  walk.callbacks = callbacks;
  walk.user = user;
  walk.purpose = purpose;
  walk.depth = scene->walk ? scene->walk->depth + 1 : 1;
  svg_scene_go(&walk, start, argument);
}

// An element is shown as the only child of its parent, whose place in the tree tells what is
// inherited.
static void start_element(svg_scene_walk *walk, const void *argument) {
  const auto *element = static_cast<const svg_e_node *>(argument);
  const svg_e_node *parent = element == walk->scene->svg ? nullptr : svg_get_parent(element);
  svg_scene_place place;
  svg_scene_find_inside(walk->scene, parent, &place);
  svg_scene_frame *frame = svg_scene_new_frame(walk, parent);
  frame->style = place.style;
  std::copy_n(place.viewport, 2, frame->viewport);
  svg_scene_push(walk, frame);
  svg_scene_show(walk, element, true, false);
}

// The content of a clip path, mask or pattern, which may itself be clipped or masked.
static void start_content(svg_scene_walk *walk, const void *argument) {
  const auto *element = static_cast<const svg_e_node *>(argument);
  svg_scene_place place;
  svg_scene_count_place(walk->scene, element);
  svg_scene_find_inside(walk->scene, element, &place);
  svg_scene_frame *frame = svg_scene_new_frame(walk, element);
  frame->style = place.style;
  frame->next = element->first_child;
  std::copy_n(place.viewport, 2, frame->viewport);
  if (svg_scene_has_effects(walk, frame))
    svg_scene_begin_group(walk, frame, SVG_SCENE_IDENTITY, nullptr, true, nullptr);
  svg_scene_push(walk, frame);
  frame->is_listed = true;
  frame->is_active = svg_scene_enter(walk->scene, &walk->scene->active, element);
}

// ---- The walk -----------------------------------------------------------------------------------

namespace {

struct beginning {
  svg_scene_walk *walk;
  void (*start)(svg_scene_walk *walk, const void *argument);
  const void *argument;
};

} // namespace

static void run(void *argument) {
  const auto *of = static_cast<const beginning *>(argument);
  of->start(of->walk, of->argument);
  while (of->walk->top && !of->walk->is_over) advance(of->walk);
}

void svg_scene_go(svg_scene_walk *walk, void (*start)(svg_scene_walk *walk, const void *argument),
                  const void *argument) {
  svg_scene *scene = walk->scene;
  const svg_scene_mark mark = scene->top;
  walk->outer = scene->walk;
  if (!walk->outer) scene->shown = 0;
  scene->walk = walk;
  beginning of = {walk, start, argument};
  const int code = ort_protect(scene->core, run, &of);
  for (; walk->top; walk->top = walk->top->outer) leave(walk, walk->top);
  scene->walk = walk->outer;
  svg_scene_release(scene, mark);
  if (code != 0) ort_error(scene->core, -1, nullptr, nullptr, nullptr, nullptr);
}

static void advance(svg_scene_walk *walk) {
  svg_scene_frame *frame = walk->top;
  switch (frame->kind) {
  case SVG_SCENE_CHILDREN:
    while (svg_node *node = frame->next) {
      frame->next = node->next;
      if (node->id == SVG_ID_TEXT) continue;
      svg_scene_show(walk, svg_as_element(node), false, false);
      return;
    }
    break;
  case SVG_SCENE_SWITCH:
    frame->kind = SVG_SCENE_CHILDREN;
    for (svg_node *node = frame->next; node; node = node->next)
      if (const svg_e_node *child = svg_as_element(node);
          child && svg_scene_is_choice(walk, child)) {
        frame->next = nullptr;
        svg_scene_show(walk, child, false, false);
        return;
      }
    break;
  case SVG_SCENE_USE: {
    const svg_e_node *target = frame->is_done ? nullptr : svg_scene_href_of(frame->element);
    if (!target || svg_scene_is_refused(walk, target, frame->element)) break;
    frame->is_done = true;
    svg_scene_show(walk, target, false, false);
    return;
  }
  case SVG_SCENE_VIEW:
    frame->kind = SVG_SCENE_CHILDREN;
    svg_scene_show_view(walk);
    return;
  case SVG_SCENE_MARKERS:
    if (svg_scene_show_marker(walk)) return;
    break;
  }
  pop(walk);
}

static void pop(svg_scene_walk *walk) {
  svg_scene_frame *frame = walk->top;
  if (frame->group) svg_scene_end_group(walk, frame);
  leave(walk, frame);
  walk->top = frame->outer;
  svg_scene_release(walk->scene, frame->mark);
}

static void leave(svg_scene_walk *walk, const svg_scene_frame *frame) {
  if (frame->is_active) svg_scene_leave(&walk->scene->active, frame->element);
}

// ---- Frames -------------------------------------------------------------------------------------

svg_scene_frame *svg_scene_new_frame(svg_scene_walk *walk, const svg_e_node *element) {
  svg_scene *scene = walk->scene;
  const svg_scene_mark mark = scene->top;
  auto *frame = svg_scene_take_one<svg_scene_frame>(scene);
  svg_scene_frame *outer = walk->top;
  frame->outer = outer;
  frame->mark = mark;
  frame->element = element;
  std::copy_n(outer ? outer->ctm : SVG_SCENE_IDENTITY, 6, frame->ctm);
  if (!outer) return frame;
  frame->use = outer->kind == SVG_SCENE_USE ? outer->element : outer->use;
  frame->style = outer->style;
  std::copy_n(outer->viewport, 2, frame->viewport);
  return frame;
}

void svg_scene_push(svg_scene_walk *walk, svg_scene_frame *frame) { walk->top = frame; }

svg_scene_place svg_scene_place_of(const svg_scene_frame *frame) {
  return {frame->element, frame->style, {frame->viewport[0], frame->viewport[1]}};
}

void svg_scene_count(svg_scene *scene, uint64_t elements) {
  scene->shown += elements;
  if (scene->shown <= scene->limit) return;
  ort_error(scene->core, ORT_E_LIMIT, "shown elements",
            ort_errprintf(scene->core, "%ld", static_cast<long>(scene->limit)), nullptr, nullptr);
}

// Styles of so many ancestors are computed in about the time in which one element is shown.
void svg_scene_count_place(svg_scene *scene, const svg_e_node *element) {
  svg_scene_count(scene, static_cast<uint64_t>(element->level) / 8);
}

// ---- Circles ------------------------------------------------------------------------------------

bool svg_scene_is_refused(svg_scene_walk *walk, const svg_e_node *element,
                          const svg_e_node *referrer) {
  svg_scene *scene = walk->scene;
  list_frames(scene);
  const bool is_circle = svg_scene_has(scene->active, element);
  if (!is_circle && walk->depth < ORT_LIMIT_REFERENCE_DEPTH) return false;
  if (walk->purpose != SVG_SCENE_MEASURE)
    svg_scene_warn(scene, is_circle ? SVG_SCENE_CIRCLE : SVG_SCENE_DEEP, referrer);
  return true;
}

// Frames become active when a link is followed, those below a listed one are listed: so each frame
// costs this once at most, and drawings without links do without it.
static void list_frames(svg_scene *scene) {
  for (svg_scene_walk *walk = scene->walk; walk; walk = walk->outer)
    for (svg_scene_frame *frame = walk->top; frame; frame = frame->outer) {
      if (frame->is_listed) return;
      frame->is_listed = true;
      frame->is_active = frame->element && svg_scene_enter(scene, &scene->active, frame->element);
    }
}
