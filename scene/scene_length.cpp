// scene_length.cpp: the length of a path, and the point and direction at a distance along it.
// Called for text on a path. svg_scene_measure_path may raise for lack of memory.
//
// The speed of a curve is summed up by Gauss's rule over pieces that are halved until the sums of a
// piece and of its halves agree: near a cusp, where the speed has a corner, they become short. A
// piece is [n, n + 1] / 2^depth, so that the next one is known without a stack.
#include "scene/scene_length.h"

namespace {

struct measured_step {
  svg_scene_step step;
  double before; // length of the path up to it
};

struct piece {
  uint32_t number = 0;
  int depth = 0;

  double begin() const { return std::ldexp(number, -depth); }
  double middle() const { return std::ldexp(number + 0.5, -depth); }
  double end() const { return std::ldexp(number + 1.0, -depth); }
  void halve() {
    number *= 2;
    ++depth;
  }
  bool next() { // false at the end of the curve
    for (++number; depth > 0 && number % 2 == 0; --depth) number /= 2;
    return depth > 0;
  }
};

constexpr int MAX_DEPTH = 20;
constexpr double TOLERANCE = 1e-7; // of a piece, as a part of the control polygon's length

} // namespace

struct svg_scene_ruler {
  double length;
  size_t count;
  measured_step *steps; // count of them, those with a length
};

static double step_length(const svg_scene_step &step);
static double find_place(const svg_scene_step &curve, double distance);
static double piece_length(const svg_scene_step &curve, piece *p, double tolerance);
static double get_tolerance(const svg_scene_step &curve);
static double sum_speed(const svg_scene_step &curve, double from, double to);

static double distance_between(svg_scene_point a, svg_scene_point b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}

svg_scene_ruler *svg_scene_measure_path(svg_scene *scene, const svg_scene_path &path) {
  size_t room = 0;
  svg_scene_step step;
  for (svg_scene_steps steps(path.runs, path.count); steps.next(&step);)
    room += step.kind != SVG_PADA_MOVETO;
  auto *measure = svg_scene_take_one<svg_scene_ruler>(scene);
  measure->steps = svg_scene_take_array<measured_step>(scene, room);
  for (svg_scene_steps steps(path.runs, path.count); steps.next(&step);) {
    const double length = step.kind != SVG_PADA_MOVETO ? step_length(step) : 0;
    if (!(length > 0) || !std::isfinite(measure->length + length)) continue;
    measure->steps[measure->count++] = {step, measure->length};
    measure->length += length;
  }
  return measure;
}

double svg_scene_path_length(const svg_scene_ruler *measure) { return measure->length; }

bool svg_scene_point_at(const svg_scene_ruler *measure, double distance, svg_scene_point *point,
                        double *angle) {
  if (!(distance >= 0 && distance <= measure->length) || measure->count == 0) return false;
  size_t low = 0; // the last step that begins before the distance
  for (size_t high = measure->count; high - low > 1;) {
    const size_t middle = low + (high - low) / 2;
    (measure->steps[middle].before <= distance ? low : high) = middle;
  }
  const svg_scene_step &step = measure->steps[low].step;
  const double rest = distance - measure->steps[low].before;
  svg_scene_point direction, in;
  svg_scene_directions(step, &direction, &in);
  if (step.kind == SVG_PADA_CURVETO) {
    const double t = find_place(step, rest);
    const svg_scene_point v = svg_scene_curve_velocity(step, t);
    *point = svg_scene_curve_point(step, t);
    if (v.x != 0 || v.y != 0)
      direction = v;
    else if (t > 0.5)
      direction = in;
  } else {
    const double part = std::fmin(rest / distance_between(step.from, step.to), 1);
    *point = {step.from.x + part * (step.to.x - step.from.x),
              step.from.y + part * (step.to.y - step.from.y)};
  }
  *angle = std::atan2(direction.y, direction.x);
  return true;
}

static double step_length(const svg_scene_step &step) {
  if (step.kind != SVG_PADA_CURVETO) return distance_between(step.from, step.to);
  const double tolerance = get_tolerance(step);
  double length = 0;
  piece p;
  do length += piece_length(step, &p, tolerance);
  while (p.next());
  return length;
}

// The t of a curve at a distance from its start.
static double find_place(const svg_scene_step &curve, double distance) {
  const double tolerance = get_tolerance(curve);
  piece p;
  double length;
  while (length = piece_length(curve, &p, tolerance), distance > length) {
    distance -= length;
    if (!p.next()) return 1;
  }
  double low = p.begin(), high = p.end(), t = low + (high - low) * (distance / length);
  for (int i = 0; i < 30; ++i) { // Newton's steps, and halving where they lead out of the piece
    const double excess = sum_speed(curve, p.begin(), t) - distance;
    if (std::fabs(excess) <= tolerance) break;
    (excess < 0 ? low : high) = t;
    t -= excess / svg_scene_curve_speed(curve, t);
    if (!(t > low && t < high)) t = (low + high) / 2;
  }
  return t;
}

// Of *p, which is halved until its sum can be trusted.
static double piece_length(const svg_scene_step &curve, piece *p, double tolerance) {
  for (double whole = sum_speed(curve, p->begin(), p->end());; p->halve()) {
    const double left = sum_speed(curve, p->begin(), p->middle());
    const double right = sum_speed(curve, p->middle(), p->end());
    if (!(std::fabs(left + right - whole) > tolerance) || p->depth == MAX_DEPTH)
      return left + right;
    whole = left;
  }
}

static double get_tolerance(const svg_scene_step &curve) {
  return TOLERANCE * (distance_between(curve.from, curve.c1) +
                      distance_between(curve.c1, curve.c2) + distance_between(curve.c2, curve.to));
}

// The integral of the speed (Abramowitz and Stegun, 25.4.30, for 8 abscissas).
static double sum_speed(const svg_scene_step &curve, double from, double to) {
  static constexpr double abscissas[] = {0.1834346424956498, 0.5255324099163290, 0.7966664774136267,
                                         0.9602898564975363};
  static constexpr double weights[] = {0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                                       0.1012285362903763};
  const double middle = (from + to) / 2, half = (to - from) / 2;
  double sum = 0;
  for (int i = 0; i < 4; ++i)
    sum += weights[i] * (svg_scene_curve_speed(curve, middle - half * abscissas[i]) +
                         svg_scene_curve_speed(curve, middle + half * abscissas[i]));
  return half * sum;
}
