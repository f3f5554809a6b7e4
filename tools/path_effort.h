// path_effort.h: how long a path takes to fill or stroke, told before it is done: what draws cannot
// be stopped, and its time grows with the square of the edges that cross.
#ifndef TOOLS_PATH_EFFORT_H
#define TOOLS_PATH_EFFORT_H

#include "tools/scene.h"

// Times are those of so many pixels painted with one color.
struct PathEffort {
  double time = 0;      // without that of the pixels inside
  Box box = {};         // around what is visible
  double points = 0;    // of the path, or of the outline of its stroke
  double crossings = 0; // about how many pairs of visible edges may cross
};

// Of a path that a matrix brings to pixels, of which only a box is visible; with a style, of its
// stroke.
PathEffort measure_effort(const svg_pada *segments, size_t count, const double matrix[6],
                          const Box &visible, const svg_scene_style *stroke);

// How many pixels a unit before the matrix is long, at most.
double longest_unit(const double matrix[6]);

#endif
