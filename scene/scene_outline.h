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

#endif
