// path_effort.h: what makes a path slow to fill or stroke, whatever draws it.
#ifndef TOOLS_PATH_EFFORT_H
#define TOOLS_PATH_EFFORT_H

#include "tools/scene.h"

// All in pixels of the surface, of the edges of the control polygon.
struct PathEffort {
  double points = 0;
  double length = 0;    // of all edges
  double rows = 0;      // that the edges go through where they are visible, added up
  double crossings = 0; // how many pairs of visible edges may cross, nearly
  Box box = {};         // of what is visible
};

// Measures a path that a matrix brings to the surface, of which only a box is visible. Edges are
// wider by a margin on each side.
PathEffort measure_effort(const svg_pada *segments, size_t count, const double matrix[6],
                          const Box &visible, double margin);

#endif
