// scene_outline.cpp: shapes as path segments (SVG 1.1, chapter 9). Called by hosts, and by the walk
// for all that it paints, measures or clips.
#include <algorithm>
#include <initializer_list>
#include <span>

#include "scene/scene_geometry.h"
#include "scene/scene_outline.h"
#include "scene/scene_walk.h"

namespace {

constexpr size_t POINTS_OF_RUN = 5000;           // as path data have at most
constexpr double KAPPA = 0.55228474983079339840; // 4/3 tan(pi/8): a quarter of a circle

// A closed shape with room for a rounded rectangle, the longest one.
struct builder {
  svg_pada runs[10];
  double points[2 * 17];
  size_t run_count, point_count;
};

} // namespace

static svg_scene_path find_points(svg_scene *scene, const svg_scene_place &place, bool closed);
static svg_scene_path make_polyline(svg_scene *scene, const double *numbers, size_t count,
                                    bool closed);
static svg_scene_path make_rect(svg_scene *scene, const double box[4], double rx, double ry);
static svg_scene_path make_ellipse(svg_scene *scene, double cx, double cy, double rx, double ry);
static void add(builder *shape, int16_t type, std::initializer_list<svg_scene_point> points);
static void add_quarter(builder *shape, svg_scene_point from, svg_scene_point corner,
                        svg_scene_point to);
static svg_scene_path finish(builder *shape);

size_t svg_scene_get_outline(svg_scene *scene, const svg_e_node *element,
                             const svg_pada **segments) {
  svg_scene_begin_result(scene);
  svg_scene_place place;
  svg_scene_find_place(scene, element, &place);
  const svg_scene_path path = svg_scene_outline(scene, place);
  svg_scene_end_result(scene);
  *segments = path.runs;
  return path.count;
}

svg_scene_path svg_scene_outline(svg_scene *scene, const svg_scene_place &place) {
  const auto x = [&](int row, double otherwise = 0) {
    return svg_scene_length_of(scene, place, row, SVG_SCENE_X, otherwise);
  };
  const auto y = [&](int row, double otherwise = 0) {
    return svg_scene_length_of(scene, place, row, SVG_SCENE_Y, otherwise);
  };
  switch (place.element->head.id) {
  case SVG_ELEM_glyph:
  case SVG_ELEM_missing_glyph:
  case SVG_ELEM_path: {
    const auto *data = svg_scene_find<svg_an_path_data>(place.element, SVG_ATTR_d);
    svg_scene_path path = {};
    if (data) path.runs = svg_get_segments(data, &path.count);
    return path;
  }
  case SVG_ELEM_rect: {
    const double box[4] = {x(SVG_ATTR_x), y(SVG_ATTR_y), x(SVG_ATTR_width), y(SVG_ATTR_height)};
    return make_rect(scene, box, x(SVG_ATTR_rx, -1), y(SVG_ATTR_ry, -1));
  }
  case SVG_ELEM_circle: {
    const double r = svg_scene_length_of(scene, place, SVG_ATTR_r, SVG_SCENE_OTHER, 0);
    return make_ellipse(scene, x(SVG_ATTR_cx), y(SVG_ATTR_cy), r, r);
  }
  case SVG_ELEM_ellipse:
    return make_ellipse(scene, x(SVG_ATTR_cx), y(SVG_ATTR_cy), x(SVG_ATTR_ellipse_rx),
                        y(SVG_ATTR_ellipse_ry));
  case SVG_ELEM_line: {
    auto *ends = svg_scene_take_array<double>(scene, 4);
    const double line[4] = {x(SVG_ATTR_x1), y(SVG_ATTR_y1), x(SVG_ATTR_x2), y(SVG_ATTR_y2)};
    std::copy_n(line, 4, ends);
    return make_polyline(scene, ends, 4, false);
  }
  case SVG_ELEM_polyline: return find_points(scene, place, false);
  case SVG_ELEM_polygon: return find_points(scene, place, true);
  default: return {};
  }
}

// The list of numbers itself when none has a unit.
svg_scene_path svg_scene_map_path(svg_scene *scene, const svg_scene_path &path,
                                  const double matrix[6]) {
  const size_t points = svg_scene_count_points(path.runs, path.count);
  svg_scene_count(scene, points / 64);
  auto *runs = svg_scene_take_array<svg_pada>(scene, path.count);
  auto *numbers = svg_scene_take_array<double>(scene, 2 * points);
  const bool is_finite = svg_scene_map_runs(path, matrix, runs, numbers);
  return {runs, is_finite ? path.count : 0};
}

size_t svg_scene_count_points(const svg_pada *runs, size_t count) {
  size_t points = 0;
  for (const svg_pada &run : std::span(runs, count)) points += run.count;
  return points;
}

bool svg_scene_map_runs(const svg_scene_path &path, const double matrix[6], svg_pada *runs,
                        double *numbers) {
  double *next = numbers;
  for (const svg_pada &run : std::span(path.runs, path.count)) {
    *runs++ = {run.type, run.count, next};
    for (int32_t k = 0; k < run.count; ++k, next += 2) {
      const svg_scene_point p = svg_scene_map(matrix, run.points[2 * k], run.points[2 * k + 1]);
      next[0] = p.x;
      next[1] = p.y;
    }
  }
  return svg_scene_are_finite(numbers, static_cast<size_t>(next - numbers));
}

static svg_scene_path find_points(svg_scene *scene, const svg_scene_place &place, bool closed) {
  const auto *list = svg_scene_find<svg_an_unum_list>(place.element, SVG_ATTR_points);
  if (!list) return {};
  const auto count = static_cast<size_t>(list->count);
  const bool plain = std::all_of(list->units, list->units + count,
                                 [](uint8_t unit) { return unit == SVG_UNIT_NONE; });
  if (plain) return make_polyline(scene, list->values, count, closed);
  auto *numbers = svg_scene_take_array<double>(scene, count);
  for (size_t i = 0; i < count; ++i)
    numbers[i] = svg_scene_get_length(scene, list->values[i], list->units[i],
                                      i % 2 == 0 ? SVG_SCENE_X : SVG_SCENE_Y,
                                      place.style->font_size, place.viewport);
  return make_polyline(scene, numbers, count, closed);
}

// A line or polyline, or a polygon when closed. numbers holds x and y in turn; a last x alone is
// left out.
static svg_scene_path make_polyline(svg_scene *scene, const double *numbers, size_t count,
                                    bool closed) {
  const size_t points = count / 2;
  if (points < (closed ? 1 : 2) || !svg_scene_are_finite(numbers, 2 * points)) return {};
  const size_t long_runs = (points - 1 + POINTS_OF_RUN - 1) / POINTS_OF_RUN;
  auto *runs = svg_scene_take_array<svg_pada>(scene, 2 + long_runs);
  svg_pada *run = runs;
  auto *point = const_cast<double *>(numbers); // nothing changes what segments point to
  *run++ = {SVG_PADA_MOVETO, 1, point};
  for (size_t rest = points - 1, length = 1; rest > 0; rest -= length) {
    point += 2 * length;
    length = std::min(rest, POINTS_OF_RUN);
    *run++ = {SVG_PADA_LINETO, static_cast<uint16_t>(length), point};
  }
  if (closed) *run++ = {SVG_PADA_CLOSEPATH, 0, nullptr};
  return {runs, static_cast<size_t>(run - runs)};
}

// rx and ry below 0 are not given (SVG 1.1, 9.2).
static svg_scene_path make_rect(svg_scene *scene, const double box[4], double rx, double ry) {
  const double x = box[0], y = box[1], width = box[2], height = box[3];
  if (!(width > 0 && height > 0)) return {};
  if (!(rx >= 0)) rx = std::max(ry, 0.0);
  if (!(ry >= 0)) ry = rx;
  rx = std::min(rx, width / 2);
  ry = std::min(ry, height / 2);
  const double right = x + width, bottom = y + height;
  auto *shape = svg_scene_take_one<builder>(scene);
  if (!(rx > 0 && ry > 0)) {
    add(shape, SVG_PADA_MOVETO, {{x, y}});
    add(shape, SVG_PADA_LINETO, {{right, y}, {right, bottom}, {x, bottom}});
    return finish(shape);
  }
  const bool has_width = rx < width / 2, has_height = ry < height / 2;
  add(shape, SVG_PADA_MOVETO, {{x + rx, y}});
  if (has_width) add(shape, SVG_PADA_LINETO, {{right - rx, y}});
  add_quarter(shape, {right - rx, y}, {right, y}, {right, y + ry});
  if (has_height) add(shape, SVG_PADA_LINETO, {{right, bottom - ry}});
  add_quarter(shape, {right, bottom - ry}, {right, bottom}, {right - rx, bottom});
  if (has_width) add(shape, SVG_PADA_LINETO, {{x + rx, bottom}});
  add_quarter(shape, {x + rx, bottom}, {x, bottom}, {x, bottom - ry});
  if (has_height) add(shape, SVG_PADA_LINETO, {{x, y + ry}});
  add_quarter(shape, {x, y + ry}, {x, y}, {x + rx, y});
  return finish(shape);
}

// It begins at the right and goes on downwards.
static svg_scene_path make_ellipse(svg_scene *scene, double cx, double cy, double rx, double ry) {
  if (!(rx > 0 && ry > 0)) return {};
  const double left = cx - rx, top = cy - ry, right = cx + rx, bottom = cy + ry;
  auto *shape = svg_scene_take_one<builder>(scene);
  add(shape, SVG_PADA_MOVETO, {{right, cy}});
  add_quarter(shape, {right, cy}, {right, bottom}, {cx, bottom});
  add_quarter(shape, {cx, bottom}, {left, bottom}, {left, cy});
  add_quarter(shape, {left, cy}, {left, top}, {cx, top});
  add_quarter(shape, {cx, top}, {right, top}, {right, cy});
  return finish(shape);
}

// ---- Parts --------------------------------------------------------------------------------------

// Goes on with the last run when it is of the same type.
static void add(builder *shape, int16_t type, std::initializer_list<svg_scene_point> points) {
  double *point = shape->points + 2 * shape->point_count;
  if (shape->run_count == 0 || shape->runs[shape->run_count - 1].type != type)
    shape->runs[shape->run_count++] = {type, 0, point};
  svg_pada &run = shape->runs[shape->run_count - 1];
  run.count = static_cast<uint16_t>(run.count + points.size());
  shape->point_count += points.size();
  for (const svg_scene_point &p : points) {
    *point++ = p.x;
    *point++ = p.y;
  }
}

// A quarter of an ellipse inside of the corner that its tangents make.
static void add_quarter(builder *shape, svg_scene_point from, svg_scene_point corner,
                        svg_scene_point to) {
  const auto towards_corner = [&](svg_scene_point p) -> svg_scene_point {
    return {p.x + KAPPA * (corner.x - p.x), p.y + KAPPA * (corner.y - p.y)};
  };
  add(shape, SVG_PADA_CURVETO, {towards_corner(from), towards_corner(to), to});
}

static svg_scene_path finish(builder *shape) {
  if (!svg_scene_are_finite(shape->points, 2 * shape->point_count)) return {};
  shape->runs[shape->run_count++] = {SVG_PADA_CLOSEPATH, 0, nullptr};
  return {shape->runs, shape->run_count};
}
