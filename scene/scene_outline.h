// scene_outline.h: shapes as path segments, in the record form of stored paths (SVG 1.1, chapter
// 9).
//
// What is made lies on the scene's stack (scene.h); all of it raises ORT_E_NO_MEMORY. Lengths are
// in user units. A shape that is not rendered, or has a number that is not finite, has no runs.
#ifndef SCENE_OUTLINE_H
#define SCENE_OUTLINE_H

#include "scene/scene.h"

struct svg_scene_path {
  const svg_pada *runs;
  size_t count;
};

// The outline of an element; of one that is no basic shape, path or glyph, none.
svg_scene_path svg_scene_outline(svg_scene *scene, const svg_scene_place &place);

// A path under a matrix; it has no runs when a number overflows. 64 points count as a shown element
// and raise ORT_E_LIMIT.
svg_scene_path svg_scene_map_path(svg_scene *scene, const svg_scene_path &path,
                                  const double matrix[6]);

// The same into arrays that have room for runs and numbers; false when a number overflows.
size_t svg_scene_count_points(const svg_pada *runs, size_t count);
bool svg_scene_map_runs(const svg_scene_path &path, const double matrix[6], svg_pada *runs,
                        double *numbers);

#endif
