// scene_view.h: viewports: how the content of svg, symbol and marker lies in what is around it.
// Nothing here raises.
#ifndef SCENE_VIEW_H
#define SCENE_VIEW_H

#include "scene/scene.h"

struct svg_scene_view {
  double matrix[6];   // from the content's user space to that around
  double viewport[2]; // what percentages within are of
  double clip[4];     // nothing shows outside of it, in the content's user space
  bool is_clipped;
};

// The view of an svg or symbol, whose size may be given by the use that refers to it (null: none).
// False when it shows nothing.
bool svg_scene_find_view(const svg_scene *scene, const svg_scene_place &place,
                         const svg_scene_place *use, svg_scene_view *view);

// The view of a marker, with its reference point at the origin. False when it shows nothing.
bool svg_scene_find_marker_view(const svg_scene *scene, const svg_scene_place &place,
                                svg_scene_view *view);

#endif
