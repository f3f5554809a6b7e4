// scene_extent.cpp: the tightest box around a path. Called for boxes of elements and for units of
// bounding boxes; nothing here raises.
#include <algorithm>
#include <span>

#include "scene/scene_geometry.h"
#include "scene/svg_scene.h"

static int add_turns(double p0, double p1, double p2, double p3, double *t);

bool svg_scene_get_extent(const svg_scene_extent &extent, double box[4]) {
  if (extent.is_empty() || extent.taint != 0) return false;
  const double result[4] = {extent.left, extent.top, extent.right - extent.left,
                            extent.bottom - extent.top};
  if (!svg_scene_are_finite(result, 4)) return false;
  std::copy_n(result, 4, box);
  return true;
}

void svg_scene_add_box(svg_scene_extent *extent, const double box[4], const double matrix[6]) {
  for (int corner = 0; corner < 4; ++corner)
    extent->add(svg_scene_map(matrix, box[0] + (corner & 1 ? box[2] : 0),
                              box[1] + (corner & 2 ? box[3] : 0)));
}

// In variables of its own, which need not be stored for each point.
svg_scene_extent svg_scene_hull(const svg_pada *runs, size_t count) {
  double left = HUGE_VAL, top = HUGE_VAL, right = -HUGE_VAL, bottom = -HUGE_VAL;
  for (const svg_pada &run : std::span(runs, count))
    for (const double *p = run.points; p != run.points + 2 * run.count; p += 2) {
      left = std::min(left, p[0]);
      right = std::max(right, p[0]);
      top = std::min(top, p[1]);
      bottom = std::max(bottom, p[1]);
    }
  return {left, top, right, bottom};
}

void svg_scene_add_path(svg_scene_extent *extent, const svg_pada *runs, size_t count,
                        const double matrix[6]) {
  svg_scene_steps steps(runs, count);
  for (svg_scene_step step; steps.next(&step);) {
    if (step.kind == SVG_PADA_MOVETO) continue;
    svg_scene_step mapped = step;
    for (svg_scene_point *p : {&mapped.from, &mapped.c1, &mapped.c2, &mapped.to})
      *p = svg_scene_map(matrix, p->x, p->y);
    if (step.begins) extent->add(mapped.from);
    extent->add(mapped.to);
    if (step.kind != SVG_PADA_CURVETO) continue;
    double t[4];
    const int turns = svg_scene_turns(mapped, t);
    for (int i = 0; i < turns; ++i) extent->add(svg_scene_curve_point(mapped, t[i]));
  }
}

int32_t svg_scene_get_shape_box(const svg_scene_shape *shape, const double *matrix, int32_t stroked,
                                double box[4]) {
  svg_scene_extent extent;
  if (!matrix) matrix = SVG_SCENE_IDENTITY;
  svg_scene_add_path(&extent, shape->segments, shape->segment_count, matrix);
  if (stroked != 0 && shape->stroke.kind != SVG_SCENE_PAINT_NONE)
    svg_scene_add_stroke(&extent, shape->segments, shape->segment_count,
                         svg_scene_pen_of(*shape->item.style), matrix);
  return svg_scene_get_extent(extent, box);
}

svg_scene_pen svg_scene_pen_of(const svg_scene_style &style) {
  return {style.stroke_width, style.stroke_linecap, style.stroke_linejoin, style.stroke_miterlimit};
}

int svg_scene_turns(const svg_scene_step &curve, double t[4]) {
  const int count = add_turns(curve.from.x, curve.c1.x, curve.c2.x, curve.to.x, t);
  return count + add_turns(curve.from.y, curve.c1.y, curve.c2.y, curve.to.y, t + count);
}

// The roots of a t^2 + 2 b t + c, a third of the derivative. The larger one comes from a sum
// without cancellation, the other one from it. What has no root gives values outside, or none.
static int add_turns(double p0, double p1, double p2, double p3, double *t) {
  const double c = p1 - p0, b = (p2 - p1) - c, a = (p3 - p2) - (p2 - p1) - b;
  const double q = -(b + std::copysign(std::sqrt(b * b - a * c), b));
  int count = 0;
  for (const double root : {q / a, c / q})
    if (root > 0 && root < 1) t[count++] = root;
  return count;
}
