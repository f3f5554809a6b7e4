// scene_vertices.cpp: the vertices of a path with the directions of markers (SVG 1.1, 11.6.2 and
// F.5). Called by the walk when a shape has markers; nothing here raises.
//
// A vertex between two segments looks half-way between their directions; so do the first and the
// last one of a closed subpath. A segment without length has the direction of the one before it,
// else of the next one with length, else that of the x axis. To know the latter, and whether a
// subpath is closed, it is gone through once when it begins.
#include <numbers>

#include "scene/scene_geometry.h"

static double half_way(svg_scene_point in, svg_scene_point out);

svg_scene_vertices::svg_scene_vertices(const svg_pada *runs, size_t count) : steps_(runs, count) {
  has_step_ = steps_.next(&step_);
}

bool svg_scene_vertices::next(svg_scene_vertex *vertex) {
  if (!has_step_) return false;
  const svg_scene_step step = step_;
  const bool is_moveto = step.kind == SVG_PADA_MOVETO;
  if (is_moveto || (step.begins && !moved_)) begin_subpath(step);
  moved_ = is_moveto;

  svg_scene_point unused, in, out;
  if (is_moveto)
    in = is_closed_ ? last_ : first_;
  else if (svg_scene_directions(step, &unused, &in))
    in_ = in;
  else
    in = in_;
  has_step_ = steps_.next(&step_);
  if (is_moveto || step.kind == SVG_PADA_CLOSEPATH)
    out = first_;
  else if (!has_step_ || step_.kind == SVG_PADA_MOVETO ||
           !svg_scene_directions(step_, &out, &unused))
    out = in;

  const int ends =
      (is_first_ ? SVG_SCENE_VERTEX_START : 0) | (has_step_ ? 0 : SVG_SCENE_VERTEX_END);
  *vertex = {step.to, half_way(in, out),
             static_cast<uint8_t>(ends != 0 ? ends : SVG_SCENE_VERTEX_MID)};
  is_first_ = false;
  return true;
}

// Looks ahead to its end.
void svg_scene_vertices::begin_subpath(svg_scene_step step) {
  svg_scene_steps rest = steps_;
  bool has_direction = false;
  first_ = last_ = {1, 0};
  do {
    svg_scene_point out, in;
    if (step.kind != SVG_PADA_MOVETO && svg_scene_directions(step, &out, &in)) {
      if (!has_direction) first_ = out;
      has_direction = true;
      last_ = in;
    }
    is_closed_ = step.kind == SVG_PADA_CLOSEPATH;
  } while (!is_closed_ && rest.next(&step) && step.kind != SVG_PADA_MOVETO);
  in_ = first_;
}

// The mean of both angles, on the side where they are nearer to each other.
static double half_way(svg_scene_point in, svg_scene_point out) {
  double a = std::atan2(in.y, in.x), b = std::atan2(out.y, out.x);
  if (std::fabs(a - b) > std::numbers::pi) (a < b ? a : b) += 2 * std::numbers::pi;
  return (a + b) / 2;
}
