// scene_stroke.cpp: the tightest box around the stroke of a path (SVG 1.1, 11.4), as if it had no
// dashes. Called for boxes with stroke; nothing here raises.
//
// A stroke reaches farthest at few places, which are computed in user space and then mapped: the
// corners of its ends, joins and caps; where its edge runs along an axis of the result; and where
// the edge of a curve turns back because the curve is as bent as the pen is wide. The farthest
// points of a mapped circle, seen from its center, are the poles.
#include <algorithm>

#include "scene/scene_geometry.h"

namespace {

struct stroker {
  svg_scene_extent *extent;
  const double *matrix;
  svg_scene_pen pen;
  double radius;
  svg_scene_point poles[4]; // unit vectors in user space; 0 where the matrix is flat

  bool moved = false;          // the subpath began with a moveto
  bool drawn = false;          // and has segments
  bool directed = false;       // of which one has a length
  svg_scene_point start = {};  // of the subpath
  svg_scene_point end = {};    // of the last segment
  svg_scene_point first = {};  // direction of the first segment with length
  svg_scene_point latest = {}; // direction in which the last one of them arrived
};

} // namespace

static void add_step(stroker *s, const svg_scene_step &step);
static void end_subpath(stroker *s);
static void add_curve(stroker *s, const svg_scene_step &curve);
static void add_returns(stroker *s, const svg_scene_step &curve);
static double excess(const svg_scene_step &curve, double t, double radius);
static double slowest(const svg_scene_step &curve, double low, double high);
static void add_curve_sides(stroker *s, const svg_scene_step &curve, double t);
static void add_join(stroker *s, svg_scene_point at, svg_scene_point in, svg_scene_point out);
static void add_cap(stroker *s, svg_scene_point at, svg_scene_point direction);
static void add_dot(stroker *s, svg_scene_point at);
static void add_sides(stroker *s, svg_scene_point at, svg_scene_point direction);
static void add_poles(stroker *s, svg_scene_point at, svg_scene_point direction, double cosine);
static void add_offset(stroker *s, svg_scene_point at, double dx, double dy);

static double dot(svg_scene_point a, svg_scene_point b) { return a.x * b.x + a.y * b.y; }
static double cross(svg_scene_point a, svg_scene_point b) { return a.x * b.y - a.y * b.x; }

void svg_scene_add_stroke(svg_scene_extent *extent, const svg_pada *runs, size_t count,
                          const svg_scene_pen &pen, const double matrix[6]) {
  if (!(pen.width > 0)) return;
  stroker s = {
      .extent = extent, .matrix = matrix, .pen = pen, .radius = pen.width / 2, .poles = {}};
  for (int axis = 0; axis < 2; ++axis) {
    const double x = matrix[axis], y = matrix[axis + 2], length = std::hypot(x, y);
    if (!(length > 0)) continue;
    s.poles[2 * axis] = {x / length, y / length};
    s.poles[2 * axis + 1] = {-x / length, -y / length};
  }
  svg_scene_steps steps(runs, count);
  for (svg_scene_step step; steps.next(&step);) add_step(&s, step);
  end_subpath(&s);
}

static void add_step(stroker *s, const svg_scene_step &step) {
  if (step.kind == SVG_PADA_MOVETO) {
    end_subpath(s);
    s->moved = true;
    return;
  }
  if (step.begins) s->start = step.from;
  s->drawn |= s->moved || step.kind != SVG_PADA_CLOSEPATH; // a second closepath draws nothing
  s->end = step.to;
  svg_scene_point out, in;
  if (svg_scene_directions(step, &out, &in)) {
    if (s->directed)
      add_join(s, step.from, s->latest, out);
    else
      s->first = out;
    add_sides(s, step.from, out);
    add_sides(s, step.to, in);
    if (step.kind == SVG_PADA_CURVETO) add_curve(s, step);
    s->directed = true;
    s->latest = in;
  }
  if (step.kind != SVG_PADA_CLOSEPATH) return;
  if (s->directed) {
    add_join(s, step.to, s->latest, s->first);
    s->drawn = false;
  }
  end_subpath(s);
}

// Of an open subpath, or of one without length, which looks the same closed.
static void end_subpath(stroker *s) {
  if (s->drawn && s->directed) {
    add_cap(s, s->start, {-s->first.x, -s->first.y});
    add_cap(s, s->end, s->latest);
  } else if (s->drawn) {
    add_dot(s, s->start);
  }
  s->moved = s->drawn = s->directed = false;
}

// ---- Curves -------------------------------------------------------------------------------------

static void add_curve(stroker *s, const svg_scene_step &curve) {
  svg_scene_step mapped = curve;
  svg_scene_extent hull; // nothing of the curve's stroke is outside
  for (svg_scene_point *p : {&mapped.from, &mapped.c1, &mapped.c2, &mapped.to}) {
    *p = svg_scene_map(s->matrix, p->x, p->y);
    hull.add(*p);
  }
  const double reach_x = s->radius * std::hypot(s->matrix[0], s->matrix[2]);
  const double reach_y = s->radius * std::hypot(s->matrix[1], s->matrix[3]);
  const svg_scene_extent &known = *s->extent;
  if (hull.left - reach_x >= known.left && hull.right + reach_x <= known.right &&
      hull.top - reach_y >= known.top && hull.bottom + reach_y <= known.bottom)
    return;
  double t[4];
  const int turns = svg_scene_turns(mapped, t);
  for (int i = 0; i < turns; ++i) add_curve_sides(s, curve, t[i]);
  add_returns(s, curve);
}

// Where the curve's radius is that of the pen. A sharp bend would lie between two samples, but then
// the curve is slow there.
static void add_returns(stroker *s, const svg_scene_step &curve) {
  constexpr int SAMPLES = 16;
  double places[2 * SAMPLES] = {0};
  int count = 1;
  for (int i = 1; i <= SAMPLES; ++i) {
    const double step = 1.0 / SAMPLES, t = i * step;
    const double before = svg_scene_curve_speed(curve, t - step),
                 here = svg_scene_curve_speed(curve, t);
    if (i < SAMPLES && here <= before && here <= svg_scene_curve_speed(curve, t + step))
      places[count++] = slowest(curve, t - step, t + step);
    else
      places[count++] = t;
  }
  for (const double radius : {s->radius, -s->radius})
    for (int i = 1; i < count; ++i) {
      double low = places[i - 1], high = places[i];
      const bool above = excess(curve, low, radius) > 0;
      if ((excess(curve, high, radius) > 0) == above) continue;
      for (int k = 0; k < 50; ++k) {
        const double middle = (low + high) / 2;
        ((excess(curve, middle, radius) > 0) == above ? low : high) = middle;
      }
      add_curve_sides(s, curve, low);
    }
}

// Above 0 where the radius of the curve is smaller than this one; its sign tells the side.
static double excess(const svg_scene_step &curve, double t, double radius) {
  const svg_scene_point v = svg_scene_curve_velocity(curve, t);
  const auto second = [t](double p0, double p1, double p2, double p3) {
    return 6 * ((1 - t) * (p2 - 2 * p1 + p0) + t * (p3 - 2 * p2 + p1));
  };
  const svg_scene_point bend = {second(curve.from.x, curve.c1.x, curve.c2.x, curve.to.x),
                                second(curve.from.y, curve.c1.y, curve.c2.y, curve.to.y)};
  const double length = std::hypot(v.x, v.y);
  return radius * cross(v, bend) - length * length * length;
}

static double slowest(const svg_scene_step &curve, double low, double high) {
  for (int k = 0; k < 60; ++k) {
    const double a = low + (high - low) / 3, b = high - (high - low) / 3;
    if (svg_scene_curve_speed(curve, a) < svg_scene_curve_speed(curve, b))
      high = b;
    else
      low = a;
  }
  return (low + high) / 2;
}

static void add_curve_sides(stroker *s, const svg_scene_step &curve, double t) {
  const svg_scene_point v = svg_scene_curve_velocity(curve, t);
  const double length = std::hypot(v.x, v.y);
  if (length > 0) add_sides(s, svg_scene_curve_point(curve, t), {v.x / length, v.y / length});
}

// ---- Joins and caps -----------------------------------------------------------------------------

static void add_join(stroker *s, svg_scene_point at, svg_scene_point in, svg_scene_point out) {
  const double cosine = dot(in, out); // of the turn
  const svg_scene_point outward = {in.x - out.x, in.y - out.y};
  const double length = std::hypot(outward.x, outward.y); // twice the sine of half the turn
  if (!(length > 1e-9)) return;
  const svg_scene_point bisector = {outward.x / length, outward.y / length};
  const double half = std::sqrt(std::fmax(1 + cosine, 0) / 2); // cosine of half the turn
  if (s->pen.linejoin == SVG_KW_round) {
    add_poles(s, at, bisector, half);
  } else if (s->pen.linejoin == SVG_KW_miter && s->pen.miterlimit * half >= 1 - 1e-12) {
    const double tip = s->radius / half;
    add_offset(s, at, tip * bisector.x, tip * bisector.y);
  }
}

static void add_cap(stroker *s, svg_scene_point at, svg_scene_point direction) {
  if (s->pen.linecap == SVG_KW_round)
    add_poles(s, at, direction, 0);
  else if (s->pen.linecap == SVG_KW_square)
    add_sides(s, {at.x + s->radius * direction.x, at.y + s->radius * direction.y}, direction);
}

// A subpath without length (SVG 1.1, F.5): its direction is the x axis.
static void add_dot(stroker *s, svg_scene_point at) {
  add_cap(s, at, {1, 0});
  add_cap(s, at, {-1, 0});
}

// The two points beside the path.
static void add_sides(stroker *s, svg_scene_point at, svg_scene_point direction) {
  const double dx = -direction.y * s->radius, dy = direction.x * s->radius;
  add_offset(s, at, dx, dy);
  add_offset(s, at, -dx, -dy);
}

// The poles of a sector of a circle, whose half angle has this cosine.
static void add_poles(stroker *s, svg_scene_point at, svg_scene_point direction, double cosine) {
  for (const svg_scene_point pole : s->poles)
    if (dot(pole, direction) >= cosine && (pole.x != 0 || pole.y != 0))
      add_offset(s, at, s->radius * pole.x, s->radius * pole.y);
}

static void add_offset(stroker *s, svg_scene_point at, double dx, double dy) {
  s->extent->add(svg_scene_map(s->matrix, at.x + dx, at.y + dy));
}
