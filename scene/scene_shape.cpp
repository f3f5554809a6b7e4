// scene_shape.cpp: shapes and images, the leaves of the walk that it paints itself.
#include <algorithm>
#include <cmath>

#include "scene/scene_paint.h"
#include "scene/scene_walk.h"

static bool is_drawable(const svg_scene_path &path, const double ctm[6]);
static void measure_shape(svg_scene_walk *walk, const svg_scene_frame *frame,
                          const svg_scene_path &path);
static void paint_shape(svg_scene_walk *walk, const svg_scene_frame *frame,
                        const svg_scene_path &path, const double matrix[6]);
static void paint_image(svg_scene_walk *walk, const svg_scene_frame *frame, const svg_iri *iri,
                        const double area[4], const double matrix[6]);
static void end_leaf(svg_scene_walk *walk, svg_scene_frame *frame);

static bool is_visible(const svg_scene_frame *frame) {
  return frame->style->visibility == SVG_KW_visible;
}

// ---- Shapes -------------------------------------------------------------------------------------

bool svg_scene_show_shape(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6]) {
  if (!is_visible(frame)) return false;
  const svg_scene_path path = svg_scene_outline(walk->scene, svg_scene_place_of(frame));
  svg_scene_count(walk->scene, svg_scene_count_points(path.runs, path.count) / 64);
  if (path.count == 0 || !is_drawable(path, frame->ctm)) return false;
  const bool is_group = svg_scene_has_effects(walk, frame);
  if (is_group) {
    svg_scene_begin_group(walk, frame, matrix, nullptr, true, &path);
    matrix = SVG_SCENE_IDENTITY;
  }
  if (walk->purpose == SVG_SCENE_MEASURE)
    measure_shape(walk, frame, path);
  else
    paint_shape(walk, frame, path, matrix);
  if (svg_scene_begin_markers(walk, frame, path, matrix)) {
    svg_scene_push(walk, frame);
    return true;
  }
  end_leaf(walk, frame);
  return false;
}

// No point overflows where it is painted. Outlines are finite themselves.
static bool is_drawable(const svg_scene_path &path, const double ctm[6]) {
  const svg_scene_extent hull = svg_scene_hull(path.runs, path.count);
  const double x = std::max(-hull.left, hull.right), y = std::max(-hull.top, hull.bottom);
  return std::isfinite(std::fabs(ctm[0]) * x + std::fabs(ctm[2]) * y + std::fabs(ctm[4])) &&
         std::isfinite(std::fabs(ctm[1]) * x + std::fabs(ctm[3]) * y + std::fabs(ctm[5]));
}

static void measure_shape(svg_scene_walk *walk, const svg_scene_frame *frame,
                          const svg_scene_path &path) {
  const svg_scene_style &style = *frame->style;
  svg_scene_add_path(walk->extent, path.runs, path.count, frame->ctm);
  if (!walk->is_stroked || style.stroke.kind == SVG_PAINT_NONE) return;
  svg_scene_add_stroke(walk->extent, path.runs, path.count, svg_scene_pen_of(style), frame->ctm);
}

// A shape in a clip path is there, whatever its paints (SVG 1.1, 14.3.5).
static void paint_shape(svg_scene_walk *walk, const svg_scene_frame *frame,
                        const svg_scene_path &path, const double matrix[6]) {
  if (!walk->callbacks->shape) return;
  svg_scene_shape shape = {};
  svg_scene_find_paints(walk, frame, path, &shape.fill, &shape.stroke);
  if (shape.fill.kind == SVG_SCENE_PAINT_NONE && shape.stroke.kind == SVG_SCENE_PAINT_NONE) return;
  shape.item = svg_scene_make_item(frame, matrix);
  shape.segments = path.runs;
  shape.segment_count = path.count;
  const bool is_of_clip = walk->purpose == SVG_SCENE_CLIP;
  shape.fill_rule = is_of_clip ? frame->style->clip_rule : frame->style->fill_rule;
  walk->callbacks->shape(walk->user, &shape);
}

// ---- Paints -------------------------------------------------------------------------------------

bool svg_scene_paint_needs_box(svg_scene *scene, const svg_scene_paint_value &value) {
  return value.kind == SVG_PAINT_IRI && value.iri->kind == SVG_IRI_LINK &&
         svg_scene_needs_box(scene, value.iri->ref.target);
}

// The paint of a value; a pattern whose content is being shown gives way to its fallback.
static void find_paint(svg_scene_walk *walk, const svg_scene_frame *frame,
                       const svg_scene_paint_value &value, double opacity, const double *box,
                       svg_scene_paint *paint) {
  svg_scene *scene = walk->scene;
  svg_scene_resolve_paint(scene, value, opacity, frame->viewport, box, paint);
  if (paint->kind != SVG_SCENE_PAINT_PATTERN ||
      !svg_scene_is_refused(walk, paint->pattern->content, frame->element))
    return;
  svg_scene_paint_value fallback = {SVG_PAINT_NONE, 0, nullptr, nullptr};
  if (value.iri->fallback >= 0)
    fallback = {SVG_PAINT_RGB, static_cast<uint32_t>(value.iri->fallback), nullptr, nullptr};
  svg_scene_resolve_paint(scene, fallback, opacity, frame->viewport, box, paint);
}

void svg_scene_find_paints(svg_scene_walk *walk, const svg_scene_frame *frame,
                           const svg_scene_path &path, svg_scene_paint *fill,
                           svg_scene_paint *stroke) {
  const svg_scene_style &style = *frame->style;
  double box[4];
  const double *known = nullptr;
  if (walk->purpose != SVG_SCENE_CLIP && (svg_scene_paint_needs_box(walk->scene, style.fill) ||
                                          svg_scene_paint_needs_box(walk->scene, style.stroke))) {
    svg_scene_extent extent;
    svg_scene_add_path(&extent, path.runs, path.count, SVG_SCENE_IDENTITY);
    if (svg_scene_get_extent(extent, box)) known = box;
  }
  svg_scene_find_paints_of(walk, frame, style, known, fill, stroke);
}

void svg_scene_find_paints_of(svg_scene_walk *walk, const svg_scene_frame *frame,
                              const svg_scene_style &style, const double *box,
                              svg_scene_paint *fill, svg_scene_paint *stroke) {
  if (walk->purpose == SVG_SCENE_CLIP) {
    fill->kind = SVG_SCENE_PAINT_COLOR;
    fill->opacity = 1;
    return;
  }
  find_paint(walk, frame, style.fill, style.fill_opacity, box, fill);
  if (style.stroke_width > 0)
    find_paint(walk, frame, style.stroke, style.stroke_opacity, box, stroke);
}

// ---- Images -------------------------------------------------------------------------------------

void svg_scene_show_image(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6]) {
  if (!is_visible(frame)) return;
  const svg_scene_place place = svg_scene_place_of(frame);
  const double area[4] = {svg_scene_length_of(walk->scene, place, SVG_ATTR_x, SVG_SCENE_X, 0),
                          svg_scene_length_of(walk->scene, place, SVG_ATTR_y, SVG_SCENE_Y, 0),
                          svg_scene_length_of(walk->scene, place, SVG_ATTR_width, SVG_SCENE_X, 0),
                          svg_scene_length_of(walk->scene, place, SVG_ATTR_height, SVG_SCENE_Y, 0)};
  svg_scene_extent extent;
  double box[4];
  svg_scene_add_box(&extent, area, frame->ctm);
  if (!(area[2] > 0 && area[3] > 0) || !svg_scene_get_extent(extent, box)) return;
  if (walk->purpose == SVG_SCENE_MEASURE) {
    walk->extent->merge(extent);
    return;
  }
  const auto *href = svg_scene_find<svg_an_iri>(frame->element, SVG_ATTR_xlink_href);
  if (!href || href->iri.kind == SVG_IRI_LINK || !href->iri.ref.any) return;
  if (svg_scene_has_effects(walk, frame)) {
    svg_scene_begin_group(walk, frame, matrix, nullptr, true, nullptr);
    matrix = SVG_SCENE_IDENTITY;
  }
  paint_image(walk, frame, &href->iri, area, matrix);
  end_leaf(walk, frame);
}

static void paint_image(svg_scene_walk *walk, const svg_scene_frame *frame, const svg_iri *iri,
                        const double area[4], const double matrix[6]) {
  if (!walk->callbacks->image) return;
  svg_scene_image image = {};
  image.item = svg_scene_make_item(frame, matrix);
  std::copy_n(area, 4, image.area);
  image.iri = iri;
  if (iri->kind == SVG_IRI_DATA)
    image.data = ort_pvf_data(walk->scene->core, iri->ref.text, &image.size);
  const svg_scene_aspect aspect = svg_scene_aspect_of(frame->element);
  image.align = aspect.align;
  image.meet = aspect.meet;
  image.clipped =
      frame->style->overflow == SVG_KW_hidden || frame->style->overflow == SVG_KW_scroll;
  walk->callbacks->image(walk->user, &image);
}

static void end_leaf(svg_scene_walk *walk, svg_scene_frame *frame) {
  if (frame->group) svg_scene_end_group(walk, frame);
}
