// paints.cpp: colors, gradients, patterns and stroke parameters as Cairo has them.
#include <algorithm>
#include <cmath>

#include "tools/svgdraw/painter.h"

static constexpr int TILE_MAX = 4096; // pixels of a tile's side; a larger one is drawn coarser
static constexpr double STOP = 64;    // times as long as a pixel

// Red, green or blue of a color, by its place.
static double channel(uint32_t rgb, int shift) { return (rgb >> shift & 255) / 255.0; }

static cairo_pattern_t *make_gradient(const svg_scene_gradient &gradient, double opacity);

// Makes the paint the source; false when there is nothing to paint with.
bool Painter::set_source(const svg_scene_paint &paint) {
  const double opacity = paint.opacity * groups_.back().opacity;
  cairo_pattern_t *pattern = nullptr;
  switch (paint.kind) {
  case SVG_SCENE_PAINT_NONE: return false;
  case SVG_SCENE_PAINT_COLOR:
    pattern = cairo_pattern_create_rgba(channel(paint.rgb, 16), channel(paint.rgb, 8),
                                        channel(paint.rgb, 0), opacity);
    break;
  case SVG_SCENE_PAINT_GRADIENT:
    if (!account_.spend(STOP * static_cast<double>(paint.gradient->stop_count))) return false;
    pattern = make_gradient(*paint.gradient, opacity);
    break;
  case SVG_SCENE_PAINT_PATTERN: pattern = make_pattern(*paint.pattern, opacity); break;
  }
  if (!pattern) return false;
  cairo_set_source(cairo_, pattern);
  cairo_pattern_destroy(pattern);
  return true;
}

void Painter::set_stroke(const svg_scene_style &style) {
  const int32_t cap = style.stroke_linecap, join = style.stroke_linejoin;
  cairo_set_line_width(cairo_, style.stroke_width);
  cairo_set_line_cap(cairo_, cap == SVG_KW_round    ? CAIRO_LINE_CAP_ROUND
                             : cap == SVG_KW_square ? CAIRO_LINE_CAP_SQUARE
                                                    : CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(cairo_, join == SVG_KW_round   ? CAIRO_LINE_JOIN_ROUND
                              : join == SVG_KW_bevel ? CAIRO_LINE_JOIN_BEVEL
                                                     : CAIRO_LINE_JOIN_MITER);
  cairo_set_miter_limit(cairo_, style.stroke_miterlimit);
  cairo_set_dash(cairo_, style.stroke_dasharray, static_cast<int>(style.stroke_dash_count),
                 style.stroke_dashoffset);
}

static cairo_pattern_t *make_gradient(const svg_scene_gradient &gradient, double opacity) {
  const svg_scene_gradient &g = gradient;
  cairo_pattern_t *pattern = g.radial != 0
                                 ? cairo_pattern_create_radial(g.fx, g.fy, 0, g.cx, g.cy, g.r)
                                 : cairo_pattern_create_linear(g.x1, g.y1, g.x2, g.y2);
  for (size_t i = 0; i < g.stop_count; ++i) {
    const svg_scene_stop &stop = g.stops[i];
    cairo_pattern_add_color_stop_rgba(pattern, stop.offset, channel(stop.rgb, 16),
                                      channel(stop.rgb, 8), channel(stop.rgb, 0),
                                      stop.opacity * opacity);
  }
  cairo_matrix_t matrix = to_cairo(g.matrix);
  cairo_matrix_invert(&matrix);
  cairo_pattern_set_matrix(pattern, &matrix);
  cairo_pattern_set_extend(pattern, g.spread == SVG_KW_reflect  ? CAIRO_EXTEND_REFLECT
                                    : g.spread == SVG_KW_repeat ? CAIRO_EXTEND_REPEAT
                                                                : CAIRO_EXTEND_PAD);
  return pattern;
}

// A tile, in pixels of the target or as a drawing, that repeats.
cairo_pattern_t *Painter::make_pattern(const svg_scene_pattern &pattern, double opacity) {
  const double *tile = pattern.tile;
  cairo_matrix_t outer, matrix;
  cairo_get_matrix(cairo_, &outer);
  if (!apply(cairo_, pattern.matrix)) return nullptr;
  cairo_get_matrix(cairo_, &matrix);
  cairo_set_matrix(cairo_, &outer);
  const auto side = [&](double length, double x, double y) {
    const double pixels = length * std::hypot(x, y) * target_.pixels_per_unit;
    return static_cast<int>(std::ceil(std::clamp(pixels - 1e-6, 1.0, double{TILE_MAX})));
  };
  const int width = side(tile[2], matrix.xx, matrix.yx);
  const int height = side(tile[3], matrix.xy, matrix.yy);
  const uint64_t pixels =
      target_.is_vector ? 0 : static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
  if (!account_.take(pixels, 1)) return nullptr;

  const cairo_rectangle_t extents = {0, 0, double(width), double(height)};
  cairo_surface_t *surface =
      target_.is_vector ? cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &extents)
                        : cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  cairo_t *context = cairo_create(surface);
  cairo_matrix_t to_pixels;
  cairo_matrix_init_scale(&to_pixels, width / tile[2], height / tile[3]);
  cairo_matrix_translate(&to_pixels, -tile[0], -tile[1]);
  if (opacity < 1) cairo_push_group(context);
  // Content that is not cut reaches into the tiles around it.
  const int around = pattern.clipped != 0 ? 0 : 1;
  for (int i = -around; i <= around; ++i) {
    for (int k = -around; k <= around; ++k) {
      cairo_set_matrix(context, &to_pixels);
      cairo_translate(context, i * tile[2], k * tile[3]);
      if (apply(context, pattern.content_matrix))
        walk(context, [&] { svg_scene_paint_pattern(scene_, &pattern, &CALLBACKS, this); });
    }
  }
  if (opacity < 1) {
    cairo_pop_group_to_source(context);
    cairo_paint_with_alpha(context, opacity);
  }
  cairo_destroy(context);
  account_.give(pixels);

  cairo_pattern_t *result = cairo_pattern_create_for_surface(surface);
  cairo_surface_destroy(surface);
  cairo_matrix_t from_user = to_cairo(pattern.matrix);
  cairo_matrix_invert(&from_user);
  cairo_matrix_multiply(&from_user, &from_user, &to_pixels);
  cairo_pattern_set_matrix(result, &from_user);
  cairo_pattern_set_extend(result, CAIRO_EXTEND_REPEAT);
  return result;
}
