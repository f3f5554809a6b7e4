// scene_matrix.cpp: affine matrices, and how a viewBox or a picture lies in its viewport. Called by
// the whole scene; nothing here raises.
#include <algorithm>

#include "scene/scene_geometry.h"
#include "scene/svg_scene.h"

static double aligned(double from, double size, double to, double room, int place);

bool svg_scene_are_finite(const double *numbers, size_t count) {
  return std::all_of(numbers, numbers + count, [](double number) { return std::isfinite(number); });
}

void svg_scene_multiply(double result[6], const double outer[6], const double inner[6]) {
  const double *o = outer, *i = inner;
  const double product[6] = {o[0] * i[0] + o[2] * i[1],        o[1] * i[0] + o[3] * i[1],
                             o[0] * i[2] + o[2] * i[3],        o[1] * i[2] + o[3] * i[3],
                             o[0] * i[4] + o[2] * i[5] + o[4], o[1] * i[4] + o[3] * i[5] + o[5]};
  std::copy_n(product, 6, result);
}

// The linear part is scaled to 1 before its determinant is taken, which then neither overflows nor
// vanishes because of units.
int32_t svg_scene_invert(double inverse[6], const double m[6]) {
  double size = 0;
  for (int i = 0; i < 4; ++i) size = std::fmax(size, std::fabs(m[i]));
  if (!(size > 0) || !svg_scene_are_finite(m, 6)) return 0;
  const double a = m[0] / size, b = m[1] / size, c = m[2] / size, d = m[3] / size;
  const double determinant = a * d - b * c;
  if (determinant == 0) return 0;
  const double scale = 1 / determinant / size;
  const double linear[4] = {d * scale, -b * scale, -c * scale, a * scale};
  const double result[6] = {linear[0],
                            linear[1],
                            linear[2],
                            linear[3],
                            -(linear[0] * m[4] + linear[2] * m[5]),
                            -(linear[1] * m[4] + linear[3] * m[5])};
  std::copy_n(result, 6, inverse);
  return svg_scene_are_finite(inverse, 6);
}

bool svg_scene_fit(double matrix[6], const double from[4], const double to[4], int32_t align,
                   int32_t meet) {
  if (!(from[2] > 0 && from[3] > 0)) return false;
  double sx = to[2] / from[2], sy = to[3] / from[3];
  int x = 0, y = 0; // in halves of the room that is left
  if (align != SVG_KW_none) {
    sx = sy = meet != 0 ? std::min(sx, sy) : std::max(sx, sy);
    // Numbered in the order of their texts: Max, Mid, Min for x, and for y within each.
    static_assert(SVG_KW_xMinYMin - SVG_KW_xMaxYMax == 8);
    const int place = SVG_KW_xMinYMin - align;
    x = place / 3;
    y = place % 3;
  }
  const double fitted[6] = {sx,
                            0,
                            0,
                            sy,
                            aligned(from[0] * sx, from[2] * sx, to[0], to[2], x),
                            aligned(from[1] * sy, from[3] * sy, to[1], to[3], y)};
  std::copy_n(fitted, 6, matrix);
  return svg_scene_are_finite(matrix, 6);
}

void svg_scene_place_image(const svg_scene_image *image, double width, double height,
                           double matrix[6]) {
  const double picture[4] = {0, 0, width, height};
  if (!svg_scene_fit(matrix, picture, image->area, image->align, image->meet))
    std::copy_n(SVG_SCENE_IDENTITY, 6, matrix);
}

// The translation that puts a stretch at from, of this size, into the room at to. What only
// rounding leaves of the room is not shared out.
static double aligned(double from, double size, double to, double room, int place) {
  const double rest = std::fabs(room - size) > 1e-12 * room ? room - size : 0;
  return to - from + rest * place / 2;
}
