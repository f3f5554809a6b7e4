// scene_paint.h: what a paint, a clip path and a mask come to on what they are applied to.
//
// The walk calls these. Their results lie on the scene's stack (scene.h) and are valid until it is
// released. All of them raise ORT_E_NO_MEMORY.
//
// box is the bounding box without stroke, in user space, of what is painted, clipped or masked
// (SVG 1.1, 7.11); null when it shows nothing or when svg_scene_needs_box told that it is not
// needed.
#ifndef SCENE_PAINT_H
#define SCENE_PAINT_H

#include "scene/scene.h"

// Stands for a box that is not known: what is relative to it is resolved for this one, and says so.
inline constexpr double SVG_SCENE_UNIT_BOX[4] = {0, 0, 1, 1};

// True when a gradient, pattern, clip path or mask is relative to the bounding box of what refers
// to it. False for other elements and null.
bool svg_scene_needs_box(svg_scene *scene, const svg_e_node *element);

// The paint of a fill or stroke.
// value     the computed fill or stroke
// opacity   fill-opacity or stroke-opacity
// viewport  width and height of the nearest viewport of what is painted
void svg_scene_resolve_paint(svg_scene *scene, const svg_scene_paint_value &value, double opacity,
                             const double viewport[2], const double *box, svg_scene_paint *paint);

// The clip of a clipPath element; null when it does not apply: its units are those of a box that is
// flat or absent.
const svg_scene_clip *svg_scene_resolve_clip(svg_scene *scene, const svg_e_node *element,
                                             const double *box);

// The mask of a mask element; null as above. An area without width or height shows nothing.
const svg_scene_mask *svg_scene_resolve_mask(svg_scene *scene, const svg_e_node *element,
                                             const double viewport[2], const double *box);

#endif
