// scene_geometry.h: points, matrices, boxes, and what can be known of a path: its steps, its extent
// without and with a stroke, its vertices for markers.
//
// All of it works on runs of segments as the reader stores them (svg_pada) and needs no document;
// nothing raises. Matrices are multiplied and inverted by functions of the public header. A matrix
// a b c d e f maps (x, y) to (a x + c y + e, b x + d y + f).
#ifndef SCENE_GEOMETRY_H
#define SCENE_GEOMETRY_H

#include <cmath>

#include "scene/svg_scene.h"

struct svg_scene_point {
  double x, y;
};

// ---- Matrices (scene_matrix.cpp) ----------------------------------------------------------------

inline constexpr double SVG_SCENE_IDENTITY[6] = {1, 0, 0, 1, 0, 0};

inline svg_scene_point svg_scene_map(const double m[6], double x, double y) {
  return {m[0] * x + m[2] * y + m[4], m[1] * x + m[3] * y + m[5]};
}

// Every number is finite.
bool svg_scene_are_finite(const double *numbers, size_t count);

// From a viewBox or picture to the viewport that shows it (SVG 1.1, 7.7 and 7.8): align and meet as
// in svg_an_aspect. Boxes are x, y, width, height. False when a size of from is not above 0 or the
// matrix overflows.
bool svg_scene_fit(double matrix[6], const double from[4], const double to[4], int32_t align,
                   int32_t meet);

// ---- Steps (scene_steps.cpp) --------------------------------------------------------------------

// One segment of a path, with where it starts.
struct svg_scene_step {
  int16_t kind;                     // SVG_PADA_*; of SVG_PADA_NONE there is no step
  bool begins;                      // it is the first one of a subpath, after its moveto
  svg_scene_point from, c1, c2, to; // c1 and c2 are those of a curve, else from and to
};

// Goes through the segments of a path. Copies go on from the same place.
class svg_scene_steps {
public:
  svg_scene_steps(const svg_pada *runs, size_t count) : run_(runs), end_(runs + count) {}

  // False at the end of the path. A closepath leads to the start of its subpath, where what follows
  // without a moveto begins a new one.
  bool next(svg_scene_step *step);

private:
  const svg_pada *run_, *end_;
  size_t at_ = 0; // the next point of run_
  bool begins_ = true;
  svg_scene_point start_ = {}, current_ = {};
};

// The directions in which a step leaves and arrives, as unit vectors; a curve whose control points
// coincide has those of its next points. False for a step without length.
bool svg_scene_directions(const svg_scene_step &step, svg_scene_point *out, svg_scene_point *in);

svg_scene_point svg_scene_curve_point(const svg_scene_step &curve, double t);

// The derivative of a curve by t, and its length.
svg_scene_point svg_scene_curve_velocity(const svg_scene_step &curve, double t);
double svg_scene_curve_speed(const svg_scene_step &curve, double t);

// ---- Extents (scene_extent.cpp, scene_stroke.cpp) -----------------------------------------------

// What a box grows from.
struct svg_scene_extent {
  double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;
  double taint = 0;     // no number any more after a point that is not finite
  bool is_open = false; // it holds text that nobody measures

  void add(svg_scene_point p) {
    left = p.x < left ? p.x : left;
    right = p.x > right ? p.x : right;
    top = p.y < top ? p.y : top;
    bottom = p.y > bottom ? p.y : bottom;
    taint += 0 * p.x + 0 * p.y;
  }
  void merge(const svg_scene_extent &other) {
    is_open = is_open || other.is_open;
    if (other.is_empty()) return;
    add({other.left, other.top});
    add({other.right, other.bottom});
    taint += other.taint;
  }
  bool is_empty() const { return left > right; }
};

// False when nothing was added or a number overflowed; box is then untouched.
bool svg_scene_get_extent(const svg_scene_extent &extent, double box[4]);

// The corners of a box under a matrix.
void svg_scene_add_box(svg_scene_extent *extent, const double box[4], const double matrix[6]);

// A box around segments: that of all points, also those that only control a curve.
svg_scene_extent svg_scene_hull(const svg_pada *runs, size_t count);

// The tightest box around the segments under a matrix. A moveto that nothing follows counts not.
void svg_scene_add_path(svg_scene_extent *extent, const svg_pada *runs, size_t count,
                        const double matrix[6]);

// How a line is drawn (SVG 1.1, 11.4).
struct svg_scene_pen {
  double width; // 0 or less: nothing is drawn
  int32_t linecap, linejoin;
  double miterlimit;
};
svg_scene_pen svg_scene_pen_of(const svg_scene_style &style);

// The same for what the pen draws along the segments, as if without dashes.
void svg_scene_add_stroke(svg_scene_extent *extent, const svg_pada *runs, size_t count,
                          const svg_scene_pen &pen, const double matrix[6]);

// Where a curve runs along an axis: the values of t inside of (0, 1), 0 to 4 of them.
int svg_scene_turns(const svg_scene_step &curve, double t[4]);

// ---- Vertices (scene_vertices.cpp) --------------------------------------------------------------

enum svg_scene_vertex_kind : uint8_t {
  SVG_SCENE_VERTEX_START = 1,
  SVG_SCENE_VERTEX_MID = 2,
  SVG_SCENE_VERTEX_END = 4
};

// Where a marker is placed, and its direction with orient="auto" (SVG 1.1, 11.6.2 and F.5).
struct svg_scene_vertex {
  svg_scene_point at;
  double angle; // in radians
  uint8_t kind; // SVG_SCENE_VERTEX_*; a single vertex is start and end
};

// Goes through the vertices of a path, in linear time. The end of each segment and each moveto is
// one.
class svg_scene_vertices {
public:
  svg_scene_vertices(const svg_pada *runs, size_t count);
  bool next(svg_scene_vertex *vertex);

private:
  void begin_subpath(svg_scene_step step);

  svg_scene_steps steps_;      // the steps after step_
  svg_scene_step step_ = {};   // leads to the next vertex
  bool has_step_;              // else there is none
  bool is_first_ = true;       // no vertex has been told
  bool moved_ = false;         // the last vertex was that of a moveto
  svg_scene_point in_ = {};    // direction in which the last vertex was reached
  svg_scene_point first_ = {}; // direction in which the subpath starts
  svg_scene_point last_ = {};  // direction in which it comes back, when it is closed
  bool is_closed_ = false;
};

#endif
