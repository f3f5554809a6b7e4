// scene_length.h: paths measured, for text that follows them.
//
// A measure lies on the scene's stack (scene.h).
#ifndef SCENE_LENGTH_H
#define SCENE_LENGTH_H

#include "scene/scene_geometry.h"
#include "scene/scene_outline.h"

struct svg_scene_ruler;

// Measures a path, which must outlive the result. Raises ORT_E_NO_MEMORY.
svg_scene_ruler *svg_scene_measure_path(svg_scene *scene, const svg_scene_path &path);

// Its length, movetos left out (SVG 1.1, 8.4).
double svg_scene_path_length(const svg_scene_ruler *measure);

// The point at a distance from its start, and the direction there in radians. False outside of the
// path.
bool svg_scene_point_at(const svg_scene_ruler *measure, double distance, svg_scene_point *point,
                        double *angle);

#endif
