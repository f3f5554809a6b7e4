// scene_clip.cpp: clip paths as outlines. Called by hosts; raises as every walk does.
#include <algorithm>

#include "scene/scene_geometry.h"
#include "scene/scene_outline.h"
#include "scene/scene_walk.h"

namespace {

// What is in a clip path, for as long as it is no more than one shape.
struct content {
  svg_scene *scene;
  size_t things; // more than 1: no outline is enough
  size_t runs, points;
  int32_t fill_rule;
  double matrix[6];  // to the user space of what is clipped
  svg_pada *to_runs; // where the shape goes, or null
  double *to_numbers;
  bool is_finite;
};

} // namespace

static constexpr size_t MANY = 2;

static void walk(const svg_scene_clip *clip, content *found);

// One walk finds how much room the outline takes, another one fills it: while a walk goes on, all
// that is laid on the scene's stack is the walk's.
int32_t svg_scene_get_clip_outline(svg_scene *scene, const svg_scene_clip *clip,
                                   const svg_pada **segments, size_t *count, int32_t *fill_rule) {
  svg_scene_begin_result(scene);
  content found = {};
  found.scene = scene;
  found.fill_rule = SVG_KW_nonzero;
  walk(clip, &found);
  const size_t things = found.things;
  found.things = 0;
  if (things == 1) {
    found.to_runs = svg_scene_take_array<svg_pada>(scene, found.runs);
    found.to_numbers = svg_scene_take_array<double>(scene, 2 * found.points);
    walk(clip, &found);
  }
  svg_scene_end_result(scene);
  *segments = found.to_runs;
  *count = found.is_finite ? found.runs : 0;
  *fill_rule = found.fill_rule;
  return things < MANY;
}

static void add_things(content *found, size_t number) {
  found->things += number;
  found->scene->walk->is_over = found->things >= MANY;
}

static void begin_group(void *user, const svg_scene_group *group) {
  if (group->clip) add_things(static_cast<content *>(user), MANY);
}

static void add_shape(void *user, const svg_scene_shape *shape) {
  auto *found = static_cast<content *>(user);
  add_things(found, 1);
  found->runs = shape->segment_count;
  found->points = svg_scene_count_points(shape->segments, shape->segment_count);
  found->fill_rule = shape->fill_rule;
  if (!found->to_runs) return;
  double matrix[6];
  svg_scene_multiply(matrix, found->matrix, shape->item.ctm);
  found->is_finite = svg_scene_map_runs({shape->segments, shape->segment_count}, matrix,
                                        found->to_runs, found->to_numbers);
}

static void add_text(void *user, const svg_scene_run *) {
  add_things(static_cast<content *>(user), MANY);
}

static void walk(const svg_scene_clip *clip, content *found) {
  svg_scene_callbacks callbacks = {};
  callbacks.begin_group = begin_group;
  callbacks.shape = add_shape;
  callbacks.text = add_text;
  std::copy_n(clip->matrix, 6, found->matrix);
  svg_scene_paint_clip(found->scene, clip, &callbacks, found);
}
