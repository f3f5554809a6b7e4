// matrix.cpp: affine matrices. The reader's transforms and arcs call it; nothing here raises.
#include <initializer_list>
#include <math.h>
#include <numbers>

#include "core/ort_core.h"

static double radians(double degrees) { return degrees * std::numbers::pi / 180; }

void ort_translation_matrix(ort_matrix *m, double tx, double ty) { *m = {1, 0, 0, 1, tx, ty}; }

void ort_scale_matrix(ort_matrix *m, double sx, double sy) { *m = {sx, 0, 0, sy, 0, 0}; }

void ort_rotation_matrix(ort_matrix *m, double degrees) {
  const double c = cos(radians(degrees)), s = sin(radians(degrees));
  *m = {c, s, -s, c, 0, 0};
}

void ort_skew_matrix(ort_core * /*core*/, ort_matrix *m, double alpha, double beta) {
  *m = {1, tan(radians(alpha)), tan(radians(beta)), 1, 0, 0};
}

void ort_multiply_matrix(const ort_matrix *m, ort_matrix *n) {
  const ort_matrix &p = *m, q = *n;
  *n = {q.a * p.a + q.c * p.b, q.b * p.a + q.d * p.b,       q.a * p.c + q.c * p.d,
        q.b * p.c + q.d * p.d, q.a * p.e + q.c * p.f + q.e, q.b * p.e + q.d * p.f + q.f};
}

bool ort_is_matrix(const ort_matrix *m) {
  for (const double number : {m->a, m->b, m->c, m->d, m->e, m->f})
    if (isnan(number)) return false;
  return true;
}

ort_vector ort_get_vector(const ort_matrix *m, double x, double y) {
  if (!m) return {x, y};
  return {m->a * x + m->c * y + m->e, m->b * x + m->d * y + m->f};
}
