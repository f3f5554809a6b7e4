// effort.cpp: what it takes to draw something, known before it is done: Cairo cannot be stopped,
// and its time grows with the square of the edges that cross.
#include <algorithm>
#include <cmath>

#include "tools/path_effort.h"
#include "tools/svgdraw/painter.h"

// Times, as those of so many pixels painted with a color.
static constexpr double CALL = 256, POINT = 64, ROW = 128, DASH = 1024, CROSSING = 8;
static constexpr double LETTER = 512, LETTER_ROW = 512;
static constexpr double KEPT_POINT = 512;        // by a vector target: it takes room in the file
static constexpr double CLIPPED_CROSSING = 2000; // where Cairo intersects a path with a clip path
static constexpr double LAYER = 4;
static constexpr double SHORTEST_DASHES = 0.1; // in pixels; Cairo makes fewer of shorter ones

Effort Painter::effort_of(const svg_pada *segments, size_t count,
                          const svg_scene_style *stroke) const {
  const Box visible = visible_pixels();
  cairo_matrix_t m;
  cairo_get_matrix(cairo_, &m);
  const double scale = target_.pixels_per_unit, unit = pixels_of_unit();
  const double matrix[] = {m.xx * scale, m.yx * scale, m.xy * scale,
                           m.yy * scale, m.x0 * scale, m.y0 * scale};
  double margin = stroke ? stroke->stroke_width * unit / 2 : 0;
  if (stroke && stroke->stroke_linejoin == SVG_KW_miter) margin *= stroke->stroke_miterlimit;
  PathEffort path = measure_effort(segments, count, matrix, visible, margin);
  if (target_.is_vector) return {.time = CALL + KEPT_POINT * path.points};
  if (stroke) {
    double period = 0;
    for (size_t i = 0; i < stroke->stroke_dash_count; ++i) period += stroke->stroke_dasharray[i];
    const double dashes = static_cast<double>(stroke->stroke_dash_count) * path.length /
                          std::max(period * unit, SHORTEST_DASHES);
    path.points = 2 * path.points + DASH / POINT * dashes;
    path.rows = 2 * path.rows + dashes * std::min(2 * margin, visible[3]);
    // So many dashes cross together.
    const double together = std::max(1.0, dashes * 2 * margin / std::max(path.length, 1.0));
    path.crossings *= 4 * together * together;
  }
  Effort effort = {CALL + POINT * path.points + ROW * path.rows + CROSSING * path.crossings,
                   path.box[2] * path.box[3], path.crossings};
  if (groups_.back().is_cut) {
    const double direct = CLIPPED_CROSSING * (path.crossings + path.points);
    effort.time += std::min(direct, LAYER * effort.area);
    if (LAYER * effort.area < direct)
      effort.apart = {std::floor(path.box[0]) / scale, std::floor(path.box[1]) / scale,
                      std::ceil(path.box[2] + 1) / scale, std::ceil(path.box[3] + 1) / scale};
  }
  return effort;
}

// Letters lie where the run says, but how large they are is known.
Effort Painter::effort_of(const svg_scene_run &run, bool strokes) const {
  const Box visible = visible_pixels();
  const double size = run.item.style->font_size * pixels_of_unit();
  const double height = std::min(size, visible[3]);
  const auto letters = static_cast<double>(run.length);
  if (target_.is_vector) return {.time = CALL + KEPT_POINT * letters};
  return {.time = CALL + letters * (LETTER + (strokes ? 2 : 1) * LETTER_ROW * height),
          .area = letters * height * std::min(size, visible[2])};
}

// How many pixels a unit of user space is long, at most.
double Painter::pixels_of_unit() const {
  cairo_matrix_t m;
  cairo_get_matrix(cairo_, &m);
  return target_.pixels_per_unit * std::max(std::hypot(m.xx, m.yx), std::hypot(m.xy, m.yy));
}
