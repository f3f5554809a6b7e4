// path_effort.cpp: see path_effort.h. In linear time, though edges are compared with each other: a
// few are chosen, by what the path itself is, so that no path can hide the others.
#include "tools/path_effort.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <vector>

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

PathEffort measure_effort(const svg_pada *segments, size_t count, const double matrix[6],
                          const Box &visible, double margin) {
  PathEffort effort;
  for (size_t i = 0; i < count; ++i) effort.points += segments[i].count;
  const auto step = static_cast<uint64_t>(std::max(1.0, std::sqrt(effort.points) / 2));
  const auto shown = [&](double value, int axis) {
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
        effort.length += std::hypot(right - left, bottom - top);
        const Extent edge = {shown(left - margin, 0), shown(top - margin, 1),
                             shown(right + margin, 0), shown(bottom + margin, 1)};
        whole.add(edge);
        effort.rows += edge.bottom - edge.top;
        choice = choice * 6364136223846793005U + std::bit_cast<uint64_t>(point[0]);
        if ((choice >> 32) % step == 0) chosen.push_back(edge);
      }
      last = point;
    }
  }
  for (size_t i = 0; i < chosen.size(); ++i)
    for (size_t k = 0; k < i; ++k)
      if (chosen[i].meets(chosen[k])) effort.crossings += static_cast<double>(step * step);
  if (whole.left <= whole.right)
    effort.box = {whole.left, whole.top, whole.right - whole.left, whole.bottom - whole.top};
  return effort;
}
