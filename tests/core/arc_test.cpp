#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <random>

#include "core/ort_core.h"

constexpr double pi = std::numbers::pi;

namespace {

// An ellipse and a stretch of it, from which an arc's operands follow.
struct Ellipse {
  double cx, cy, rx, ry, phi, from, sweep; // angles in radians

  ort_vector at(double angle) const {
    const double x = rx * std::cos(angle), y = ry * std::sin(angle);
    return {cx + x * std::cos(phi) - y * std::sin(phi), cy + x * std::sin(phi) + y * std::cos(phi)};
  }
  // The point where the ellipse is a unit circle about the origin.
  ort_vector on_circle(double px, double py) const {
    const double x = px - cx, y = py - cy;
    return {(x * std::cos(phi) + y * std::sin(phi)) / rx,
            (y * std::cos(phi) - x * std::sin(phi)) / ry};
  }
};

struct Curves {
  int32_t count;
  double segments[4][6];
};

} // namespace

static int convert(Curves *list, ort_vector from, ort_vector to, double rx, double ry,
                   double phi = 0, int large = 0, int sweep = 1,
                   const ort_matrix *matrix = nullptr) {
  return ort_elliarc_to_bezier(list->segments, &list->count, matrix, from, to, rx, ry, phi, large,
                               sweep, 1);
}

static double cubic(double a, double b, double c, double d, double t) {
  const double s = 1 - t;
  return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
}

// Every point of the curves is near the ellipse, and they run once through the stretch and nothing
// else.
static void expect_follows(const Ellipse &e, const Curves &list) {
  ort_vector start = e.at(e.from);
  double angle = e.from;
  for (int i = 0; i < list.count; ++i) {
    const double *s = list.segments[i];
    for (int k = 1; k <= 64; ++k) {
      const double x = cubic(start.x, s[0], s[2], s[4], k / 64.0);
      const double y = cubic(start.y, s[1], s[3], s[5], k / 64.0);
      const ort_vector p = e.on_circle(x, y);
      ASSERT_LT(std::abs(std::hypot(p.x, p.y) - 1), 3e-4) << i << " " << k;
      const double step = std::remainder(std::atan2(p.y, p.x) - angle, 2 * pi);
      ASSERT_GT(step / e.sweep, 0) << i << " " << k;
      angle += step;
    }
    start = {s[4], s[5]};
  }
  EXPECT_NEAR(angle, e.from + e.sweep, 1e-6);
}

TEST(Arc, FollowsTheEllipse) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> exponent(-3, 3), turn(-pi, pi);
  for (double degrees : {0.5, 45.0, 89.9, 90.0, 90.1, 135.0, 179.0, 181.0, 270.0, 271.0, 359.0})
    for (int i = 0; i < 80; ++i) {
      const double rx = std::pow(10, exponent(random)), ry = std::pow(10, exponent(random));
      const double sweep = (i % 2 ? degrees : -degrees) * pi / 180;
      const Ellipse e = {0, 0, rx, ry, turn(random) * 3, turn(random), sweep};
      Curves list;
      ASSERT_EQ(convert(&list, e.at(e.from), e.at(e.from + sweep), rx, ry, e.phi, degrees > 180,
                        sweep > 0),
                0);
      EXPECT_EQ(list.count, std::ceil(degrees / 90)) << degrees;
      expect_follows(e, list);
      const ort_vector end = e.at(e.from + sweep);
      EXPECT_EQ(list.segments[list.count - 1][4], end.x);
      EXPECT_EQ(list.segments[list.count - 1][5], end.y);
    }
}

// Far from the origin the ends of a small arc are rounded coarsely, and half circles suffer most.
TEST(Arc, CutsWholeQuartersIntoAsManyCurves) {
  std::mt19937 random(2);
  std::uniform_int_distribution<int> tenths(1, 9999);
  for (int quarters : {1, 2, 3})
    for (int i = 0; i < 4000; ++i) {
      const double x = tenths(random) / 10.0, y = tenths(random) / 10.0, r = tenths(random) / 10.0;
      const ort_vector ends[] = {{x + r, y + r}, {x + r + r, y}, {x + r, y + r}};
      Curves list;
      const bool large = quarters == 3 || (quarters == 2 && i % 2);
      ASSERT_EQ(convert(&list, {x, y}, ends[quarters - 1], r, r, 0, large, i % 3 == 0), 0);
      ASSERT_EQ(list.count, quarters) << x << ' ' << y << ' ' << r;
    }
}

TEST(Arc, ScalesRadiiThatAreTooSmall) {
  for (const auto &[rx, ry, expected_ry] : {std::array{1.0, 1.0, 5.0}, {1e-6, 2e-6, 10}, {5, 5, 5}})
    for (int large : {0, 1}) {
      Curves list;
      ASSERT_EQ(convert(&list, {0, 0}, {10, 0}, rx, ry, 0, large), 0);
      EXPECT_EQ(list.count, 2);
      expect_follows({5, 0, 5, expected_ry, 0, pi, pi}, list);
    }
}

// A tiny piece of a huge circle: computed by way of the center it would lose all digits.
TEST(Arc, KeepsPrecisionFarFromTheCenter) {
  Curves list;
  ASSERT_EQ(convert(&list, {100, 100}, {101, 100}, 1e12, 1e12), 0);
  ASSERT_EQ(list.count, 1);
  EXPECT_NEAR(list.segments[0][0], 100 + 1 / 3.0, 1e-12);
  EXPECT_NEAR(list.segments[0][2], 101 - 1 / 3.0, 1e-12);
  EXPECT_NEAR(list.segments[0][1], 100, 1e-12);
}

// Whatever the operands, the result is an error or points that can be drawn, ending where they
// should.
TEST(Arc, GivesOnlyFinitePoints) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const double lengths[] = {0, -5e-324, 1e-300, -1e-6, 1, 3e9, -1e155, 1.7e308, nan, -HUGE_VAL};
  const double radii[] = {0, 5e-324, 1e-150, 1e-6, 1, 1e10, 1e300, 1.7e308, nan, HUGE_VAL};
  int converted = 0;
  for (double x0 : lengths)
    for (double x1 : lengths)
      for (double y1 : lengths)
        for (double rx : radii)
          for (double ry : radii)
            for (double phi : {0.7, 1e300, nan, HUGE_VAL})
              for (int flags = 0; flags < 4; ++flags) {
                Curves list;
                const int result =
                    convert(&list, {x0, 0}, {x1, y1}, rx, ry, phi, flags & 1, flags >> 1);
                if (result != 0 ||
                    std::isnan(0 * x0 + 0 * x1 + 0 * y1 + 0 * rx + 0 * ry + 0 * phi)) {
                  ASSERT_TRUE(result == ORT_E_ARC && list.count == 0);
                }
                for (int i = 0; i < list.count; ++i)
                  for (double value : list.segments[i]) ASSERT_TRUE(std::isfinite(value));
                if (list.count == 0) continue;
                ASSERT_EQ(list.segments[list.count - 1][4], x1);
                ASSERT_EQ(list.segments[list.count - 1][5], y1);
                ++converted;
              }
  EXPECT_GT(converted, 10000);
}

TEST(Arc, AppliesTheMatrix) {
  const ort_matrix matrix = {2, 1, -1, 3, 10, 20};
  Curves plain, mapped;
  ASSERT_EQ(convert(&plain, {1, 2}, {9, 4}, 8, 5, 1, 1, 0), 0);
  ASSERT_EQ(convert(&mapped, {1, 2}, {9, 4}, 8, 5, 1, 1, 0, &matrix), 0);
  ASSERT_EQ(plain.count, mapped.count);
  for (int k = 0; k < 6 * plain.count; k += 2) {
    const double *p = &plain.segments[k / 6][k % 6], *m = &mapped.segments[k / 6][k % 6];
    EXPECT_DOUBLE_EQ(m[0], 2 * p[0] - p[1] + 10);
    EXPECT_DOUBLE_EQ(m[1], p[0] + 3 * p[1] + 20);
  }
}
