// scene_steps.cpp: the segments of a path one by one, and the geometry of a single one. Called by
// all that measures or draws paths; nothing here raises.
#include "scene/scene_geometry.h"

static bool unit(svg_scene_point from, svg_scene_point to, svg_scene_point *direction);

bool svg_scene_steps::next(svg_scene_step *step) {
  while (run_ != end_ && run_->type != SVG_PADA_CLOSEPATH && at_ >= run_->count) {
    ++run_;
    at_ = 0;
  }
  if (run_ == end_) return false;
  const auto point = [&] {
    const double *p = run_->points + 2 * at_++;
    return svg_scene_point{p[0], p[1]};
  };
  step->kind = run_->type;
  step->from = step->c1 = current_;
  step->begins = begins_;
  begins_ = false;
  switch (run_->type) {
  case SVG_PADA_CLOSEPATH:
    step->to = start_;
    begins_ = true;
    ++run_;
    break;
  case SVG_PADA_CURVETO:
    step->c1 = point();
    step->c2 = point();
    step->to = current_ = point();
    return true;
  default: step->to = point();
  }
  step->c2 = current_ = step->to;
  if (step->kind == SVG_PADA_MOVETO) {
    start_ = current_;
    step->begins = false;
    begins_ = true;
  }
  return true;
}

bool svg_scene_directions(const svg_scene_step &step, svg_scene_point *out, svg_scene_point *in) {
  if (step.kind != SVG_PADA_CURVETO) {
    if (!unit(step.from, step.to, out)) return false;
    *in = *out;
    return true;
  }
  const bool found = unit(step.from, step.c1, out) || unit(step.from, step.c2, out) ||
                     unit(step.from, step.to, out);
  return found &&
         (unit(step.c2, step.to, in) || unit(step.c1, step.to, in) || unit(step.from, step.to, in));
}

static bool unit(svg_scene_point from, svg_scene_point to, svg_scene_point *direction) {
  const double x = to.x - from.x, y = to.y - from.y, length = std::hypot(x, y);
  if (!(length > 0) || !std::isfinite(length)) return false;
  *direction = {x / length, y / length};
  return true;
}

svg_scene_point svg_scene_curve_point(const svg_scene_step &curve, double t) {
  const double s = 1 - t;
  const double b0 = s * s * s, b1 = 3 * s * s * t, b2 = 3 * s * t * t, b3 = t * t * t;
  return {b0 * curve.from.x + b1 * curve.c1.x + b2 * curve.c2.x + b3 * curve.to.x,
          b0 * curve.from.y + b1 * curve.c1.y + b2 * curve.c2.y + b3 * curve.to.y};
}

svg_scene_point svg_scene_curve_velocity(const svg_scene_step &curve, double t) {
  const double s = 1 - t;
  const double b0 = 3 * s * s, b1 = 6 * s * t, b2 = 3 * t * t;
  const auto along = [=](double p0, double p1, double p2, double p3) {
    return b0 * (p1 - p0) + b1 * (p2 - p1) + b2 * (p3 - p2);
  };
  return {along(curve.from.x, curve.c1.x, curve.c2.x, curve.to.x),
          along(curve.from.y, curve.c1.y, curve.c2.y, curve.to.y)};
}

double svg_scene_curve_speed(const svg_scene_step &curve, double t) {
  const svg_scene_point v = svg_scene_curve_velocity(curve, t);
  return std::hypot(v.x, v.y);
}
