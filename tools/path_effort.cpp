// path_effort.cpp: see path_effort.h. The edges are those of the control polygon. It takes linear
// time, though edges are compared with each other: a few are chosen, by what the path itself is, so
// that no path can hide the others.
#include "tools/path_effort.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

static constexpr double CALL = 256, POINT = 128, ROW = 128, DASH = 1024, CROSSING = 8;
static constexpr double SHORTEST_DASHES = 0.1; // pixels of a period; shorter ones are not drawn

namespace {

struct Extent {
  double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;

  void add(const Extent &e) {
    left = std::min(left, e.left), right = std::max(right, e.right);
    top = std::min(top, e.top), bottom = std::max(bottom, e.bottom);
  }
  bool meets(const Extent &e) const {
    return left <= e.right && e.left <= right && top < e.bottom && e.top < bottom;
  }
};

} // namespace

static double half_width(const svg_scene_style &stroke);
static double count_dashes(const svg_scene_style &stroke, double length, double unit);

PathEffort measure_effort(const svg_pada *segments, size_t count, const double matrix[6],
                          const Box &visible, const svg_scene_style *stroke) {
  const double unit = longest_unit(matrix);
  const double margin = stroke ? half_width(*stroke) * unit : 0;
  double points = 0, length = 0, rows = 0, crossings = 0;
  for (size_t i = 0; i < count; ++i) points += segments[i].count;
  const auto step = static_cast<uint64_t>(std::max(1.0, std::sqrt(points) / 2));
  const auto shown = [&](double value, size_t axis) {
    return std::clamp(value, visible[axis], visible[axis] + visible[axis + 2]);
  };
  uint64_t choice = 0;
  std::vector<Extent> chosen;
  Extent whole;
  Point last = {};
  for (const svg_pada *run = segments; run < segments + count; ++run) {
    for (const double *p = run->points; p < run->points + 2 * size_t{run->count}; p += 2) {
      const Point point = map(matrix, p[0], p[1]);
      const auto [left, right] = std::minmax(last[0], point[0]);
      const auto [top, bottom] = std::minmax(last[1], point[1]);
      if (run->type != SVG_PADA_MOVETO) {
        length += std::hypot(right - left, bottom - top);
        const Extent edge = {shown(left - margin, 0), shown(top - margin, 1),
                             shown(right + margin, 0), shown(bottom + margin, 1)};
        whole.add(edge);
        rows += edge.bottom - edge.top;
        choice = choice * 6364136223846793005U + std::bit_cast<uint64_t>(point[0]);
        if ((choice >> 32) % step == 0) chosen.push_back(edge);
      }
      last = point;
    }
  }
  for (size_t i = 0; i < chosen.size(); ++i)
    for (size_t k = 0; k < i; ++k)
      if (chosen[i].meets(chosen[k])) crossings += static_cast<double>(step * step);

  double dashes = 0;
  if (stroke) { // its outline has two sides
    dashes = count_dashes(*stroke, length, unit);
    points *= 2;
    rows = 2 * rows + dashes * std::min(2 * margin, visible[3]);
    const double together = std::max(1.0, dashes * 2 * margin / std::max(length, 1.0));
    crossings *= 4 * together * together;
  }
  PathEffort effort = {.points = points + dashes, .crossings = crossings};
  effort.time = CALL + POINT * points + DASH * dashes + ROW * rows + CROSSING * crossings;
  if (whole.left <= whole.right)
    effort.box = {whole.left, whole.top, whole.right - whole.left, whole.bottom - whole.top};
  return effort;
}

double longest_unit(const double m[6]) {
  return std::max(std::hypot(m[0], m[1]), std::hypot(m[2], m[3]));
}

// How far from the path the stroke reaches.
static double half_width(const svg_scene_style &stroke) {
  return stroke.stroke_width / 2 *
         (stroke.stroke_linejoin == SVG_KW_miter ? stroke.stroke_miterlimit : 1);
}

static double count_dashes(const svg_scene_style &stroke, double length, double unit) {
  double period = 0;
  for (size_t i = 0; i < stroke.stroke_dash_count; ++i) period += stroke.stroke_dasharray[i];
  return static_cast<double>(stroke.stroke_dash_count) * length /
         std::max(period * unit, SHORTEST_DASHES);
}
