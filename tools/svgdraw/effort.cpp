// effort.cpp: what it takes to draw something with Cairo, told before it is done.
#include <algorithm>
#include <cmath>

#include "tools/svgdraw/painter.h"

// Times, as those of so many pixels painted with a color.
static constexpr double LETTER = 512, LETTER_ROW = 512;
static constexpr double KEPT_POINT = 512;        // by a vector target: it takes room in the file
static constexpr double CLIPPED_CROSSING = 2000; // where Cairo intersects a path with a clip path

Effort Painter::effort_of(const svg_pada *segments, size_t count,
                          const svg_scene_style *stroke) const {
  const PathEffort path =
      measure_effort(segments, count, to_pixels().data(), visible_pixels(), stroke);
  if (!makes_pixels()) return {.time = path.time + KEPT_POINT * path.points};
  Effort effort = {path.time, path.box[2] * path.box[3], path.crossings};
  if (groups_.back().is_cut && !target_.is_vector) {
    const double direct = CLIPPED_CROSSING * (path.crossings + path.points);
    effort.time += std::min(direct, LAYER * effort.area);
    const double scale = target_.pixels_per_unit;
    if (LAYER * effort.area < direct)
      effort.apart = {path.box[0] / scale, path.box[1] / scale, path.box[2] / scale,
                      path.box[3] / scale};
  }
  return effort;
}

// Letters lie where the run says, but how large they are is known.
Effort Painter::effort_of(const svg_scene_run &run, bool strokes) const {
  const auto letters = static_cast<double>(run.length);
  if (!makes_pixels()) return {.time = KEPT_POINT * (1 + letters)};
  const Box visible = visible_pixels();
  const double size = run.item.style->font_size * longest_unit(to_pixels().data());
  const double height = std::min(size, visible[3]);
  return {.time = letters * (LETTER + (strokes ? 2 : 1) * LETTER_ROW * height),
          .area = letters * height * std::min(size, visible[2])};
}

// PostScript has no opacity: Cairo makes pixels of what needs it, and of all below.
bool Painter::makes_pixels() const {
  return !target_.is_vector ||
         cairo_surface_get_type(cairo_get_target(cairo_)) == CAIRO_SURFACE_TYPE_PS;
}

// From user space.
std::array<double, 6> Painter::to_pixels() const {
  cairo_matrix_t m;
  cairo_get_matrix(cairo_, &m);
  const double scale = target_.pixels_per_unit;
  return {m.xx * scale, m.yx * scale, m.xy * scale, m.yy * scale, m.x0 * scale, m.y0 * scale};
}
