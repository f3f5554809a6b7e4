// arc.cpp: elliptical arcs as cubic curves (SVG 1.1, 8.3.8 and appendix F.6). Called by the path
// data parser. Never raises.
//
// The arc is seen from its chord, in the space where its ellipse is a unit circle: h is half
// the chord's length, u its direction, n the normal towards the side where the arc bulges, and the
// arc runs from -half_angle to half_angle on both sides of n, with sin(half_angle) = h. Neither the
// center nor absolute angles are needed, so that nothing cancels when the radii are huge or the
// chord is tiny.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/ort_core.h"

namespace {

struct arc_point {
  ort_vector position, tangent; // tangent: derivative by the angle
};

} // namespace

static bool put(double *xy, const ort_matrix *matrix, const arc_point &point,
                double along_tangent) {
  const ort_vector mapped =
      ort_get_vector(matrix, point.position.x + along_tangent * point.tangent.x,
                     point.position.y + along_tangent * point.tangent.y);
  xy[0] = mapped.x;
  xy[1] = mapped.y;
  return std::isfinite(mapped.x) && std::isfinite(mapped.y);
}

int ort_elliarc_to_bezier(double (*segments)[6], int32_t *count, const ort_matrix *matrix,
                          ort_vector start, ort_vector end, double rx, double ry, double phi,
                          int large_arc, int sweep, int /*mode*/) {
  *count = 0;
  for (double operand : {start.x, start.y, end.x, end.y, rx, ry, phi})
    if (!std::isfinite(operand)) return ORT_E_ARC;
  if (start.x == end.x && start.y == end.y) return 0;

  const double sine = std::sin(phi), cosine = std::cos(phi);
  const double dx = end.x / 2 - start.x / 2, dy = end.y / 2 - start.y / 2;
  const double chord_x = (dx * cosine + dy * sine) / rx, chord_y = (dy * cosine - dx * sine) / ry;
  const double length = std::hypot(chord_x, chord_y);
  if (!(length > 0) || !std::isfinite(length)) return ORT_E_ARC; // out of the range of doubles

  const double h = std::min(length, 1.0);
  const double scale = std::max(length, 1.0); // radii too small for the chord: half an ellipse
  const double to_center = std::sqrt((1 - h) * (1 + h));
  const double half_angle = std::atan2(h, large_arc != 0 ? -to_center : to_center);

  const auto from_circle = [&](double x, double y) -> ort_vector {
    x *= rx * scale;
    y *= ry * scale;
    return {x * cosine - y * sine, x * sine + y * cosine};
  };
  const double ux = chord_x / length, uy = chord_y / length, side = sweep != 0 ? 1 : -1;
  const ort_vector u = from_circle(ux, uy), n = from_circle(side * uy, -side * ux);
  const ort_vector middle = {start.x / 2 + end.x / 2, start.y / 2 + end.y / 2};

  const auto position = [&](double angle) -> ort_vector {
    const double along = std::sin(angle);
    // cos(angle) - cos(half_angle), written as a product so that it is exact near the ends.
    const double bulge =
        2 * std::sin((half_angle + angle) / 2) * std::sin((half_angle - angle) / 2);
    return {middle.x + along * u.x + bulge * n.x, middle.y + along * u.y + bulge * n.y};
  };
  const auto tangent = [&](double angle) -> ort_vector {
    const double along = std::sin(angle), slope = std::cos(angle);
    return {slope * u.x - along * n.x, slope * u.y - along * n.y};
  };

  // At most a quarter each. Near a half circle the angle magnifies the rounding of the chord,
  // because to_center is a square root. The tolerance covers that and costs no precision: the
  // curve's distance from the arc grows with the sixth power of the angle.
  constexpr double TOLERANCE = 1e-4;
  const double quarters = 2 * half_angle / (std::numbers::pi / 2);
  const int needed = std::clamp(static_cast<int>(std::ceil(quarters - TOLERANCE)), 1, 4);
  const double step = 2 * half_angle / needed;
  const double handle = 4.0 / 3.0 * std::tan(step / 4);

  bool finite = true;
  arc_point from = {start, tangent(-half_angle)};
  for (int i = 1; i <= needed; ++i) {
    const double angle = i * step - half_angle;
    const arc_point to = {i == needed ? end : position(angle), tangent(angle)};
    double *segment = segments[i - 1];
    finite &= put(segment, matrix, from, handle);
    finite &= put(segment + 2, matrix, to, -handle);
    finite &= put(segment + 4, matrix, to, 0);
    from = to;
  }
  if (!finite) return ORT_E_ARC;
  *count = needed;
  return 0;
}
