// scene_group.cpp: groups, with what is applied to them as a whole: opacity, clip, mask, link.
// Called by the walk for elements and by those who show leaves that have such effects.
#include <algorithm>
#include <numbers>

#include "scene/scene_paint.h"
#include "scene/scene_walk.h"

static void add_effects(svg_scene_walk *walk, const svg_scene_frame *frame,
                        const svg_scene_path *path, svg_scene_group *group);
static void describe_shape(const svg_scene_style &style, const svg_scene_path &path,
                           svg_scene_group *group);
static double farthest_of_stroke(const svg_scene_style &style);
static const double *find_box(svg_scene_walk *walk, const svg_scene_frame *frame,
                              const svg_scene_path *path, double room[4]);

// Masks have no opacity of their own (SVG 1.1, 14.5).
static double opacity_of(const svg_scene_frame *frame) {
  return frame->element->head.id == SVG_ELEM_mask ? 1 : frame->style->opacity;
}

// In a clip path only clips count.
bool svg_scene_has_effects(const svg_scene_walk *walk, const svg_scene_frame *frame) {
  const svg_scene_style *style = frame->style;
  switch (walk->purpose) {
  case SVG_SCENE_MEASURE: return false;
  case SVG_SCENE_CLIP: return style->clip_path != nullptr;
  case SVG_SCENE_PAINT: break;
  }
  return opacity_of(frame) < 1 || style->clip_path || style->mask ||
         svg_scene_link_of(frame->element);
}

void svg_scene_begin_group(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6],
                           const double *viewport, bool has_effects, const svg_scene_path *path) {
  if (walk->purpose == SVG_SCENE_MEASURE) return;
  auto *group = svg_scene_take_one<svg_scene_group>(walk->scene);
  group->item = svg_scene_make_item(frame, matrix);
  group->opacity = 1;
  group->has_viewport = viewport != nullptr;
  if (viewport) std::copy_n(viewport, 4, group->viewport);
  if (has_effects) add_effects(walk, frame, path, group);
  frame->group = group;
  if (walk->callbacks->begin_group) walk->callbacks->begin_group(walk->user, group);
}

void svg_scene_end_group(svg_scene_walk *walk, const svg_scene_frame *frame) {
  if (walk->callbacks->end_group) walk->callbacks->end_group(walk->user, frame->group);
}

svg_scene_item svg_scene_make_item(const svg_scene_frame *frame, const double matrix[6]) {
  svg_scene_item item = {frame->element, frame->use, frame->style, {}, {}};
  std::copy_n(matrix, 6, item.matrix);
  std::copy_n(frame->ctm, 6, item.ctm);
  return item;
}

// A reference that leads back into what is shown is dropped.
static void add_effects(svg_scene_walk *walk, const svg_scene_frame *frame,
                        const svg_scene_path *path, svg_scene_group *group) {
  svg_scene *scene = walk->scene;
  const bool is_of_clip = walk->purpose == SVG_SCENE_CLIP;
  const svg_e_node *clip = frame->style->clip_path;
  const svg_e_node *mask = is_of_clip ? nullptr : frame->style->mask;
  if (clip && svg_scene_is_refused(walk, clip, frame->element)) clip = nullptr;
  if (mask && svg_scene_is_refused(walk, mask, frame->element)) mask = nullptr;
  double room[4];
  const double *known = nullptr;
  if (svg_scene_needs_box(scene, clip) || svg_scene_needs_box(scene, mask))
    known = find_box(walk, frame, path, room);
  if (clip) group->clip = svg_scene_resolve_clip(scene, clip, known);
  if (mask) group->mask = svg_scene_resolve_mask(scene, mask, frame->viewport, known);
  if (is_of_clip) return;
  group->opacity = opacity_of(frame);
  group->link = svg_scene_link_of(frame->element);
  if (path) describe_shape(*frame->style, *path, group);
}

static void describe_shape(const svg_scene_style &style, const svg_scene_path &path,
                           svg_scene_group *group) {
  if (style.marker_start || style.marker_mid || style.marker_end) return;
  const bool is_stroked = style.stroke.kind != SVG_PAINT_NONE && style.stroke_width > 0;
  group->is_single = !is_stroked || style.fill.kind == SVG_PAINT_NONE;
  // Where exactly curves and strokes end would cost more than all else of a walk.
  if (!svg_scene_get_extent(svg_scene_hull(path.runs, path.count), group->bounds)) return;
  const double reach = is_stroked ? farthest_of_stroke(style) : 0;
  group->bounds[0] -= reach;
  group->bounds[1] -= reach;
  group->bounds[2] += 2 * reach;
  group->bounds[3] += 2 * reach;
  group->has_bounds = svg_scene_are_finite(group->bounds, 4);
}

// How far from the path it can reach: as far as a miter, or the corner of a square cap.
static double farthest_of_stroke(const svg_scene_style &style) {
  const double miter = style.stroke_linejoin == SVG_KW_miter ? style.stroke_miterlimit : 1;
  return style.stroke_width / 2 * std::max(miter, std::numbers::sqrt2);
}

static const double *find_box(svg_scene_walk *walk, const svg_scene_frame *frame,
                              const svg_scene_path *path, double room[4]) {
  if (!path) return svg_scene_measure(walk, frame, room);
  svg_scene_extent extent;
  svg_scene_add_path(&extent, path->runs, path->count, SVG_SCENE_IDENTITY);
  return svg_scene_get_extent(extent, room) ? room : nullptr;
}
