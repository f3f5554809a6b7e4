// painter.cpp: the walk of a scene into a Cairo context, and its shapes.
#include "tools/svgdraw/painter.h"

#include <cmath>

// One walk of the scene: the drawing, or the content of a pattern, clip path or mask within it.
struct Painter::Walk {
  Painter *painter;
  Content content;
  const void *what;
};

const svg_scene_callbacks Painter::CALLBACKS = {
    .begin_group = [](void *user,
                      const svg_scene_group *g) { static_cast<Painter *>(user)->begin_group(*g); },
    .end_group = [](void *user,
                    const svg_scene_group *g) { static_cast<Painter *>(user)->end_group(*g); },
    .shape = [](void *user,
                const svg_scene_shape *shape) { static_cast<Painter *>(user)->shape(*shape); },
    .image = [](void *user,
                const svg_scene_image *image) { static_cast<Painter *>(user)->image(*image); },
    .text = [](void *user, const svg_scene_run *run) { static_cast<Painter *>(user)->text(*run); },
    .measure = [](void *user,
                  const svg_scene_run *run) { return static_cast<Painter *>(user)->measure(*run); },
};

bool Account::take(uint64_t count) {
  if (failure != 0) return false;
  if (pixels_limit != 0 && (pixels + count > pixels_limit || layers + count > layers_limit)) {
    const bool alive = pixels + count > pixels_limit;
    fail(ORT_E_LIMIT, "Limit of " + std::to_string(alive ? pixels_limit : layers_limit) +
                          (alive ? " pixels" : " pixels of layers") + " exceeded");
    return false;
  }
  pixels += count;
  layers += count;
  return true;
}

void Account::fail(int code, const std::string &text) {
  if (failure != 0) return;
  failure = code;
  failure_text = text;
}

void Painter::paint(cairo_t *context, const svg_e_node *element) {
  walk(context, Content::ELEMENT, element);
}

// Paints onto another context, and comes back to the one before whatever happens.
void Painter::walk(cairo_t *context, Content content, const void *what) {
  if (account_.failure != 0) return;
  cairo_t *outer = cairo_;
  groups_.push_back({Layer::PLAIN, 1, 0, false, false}); // no group around concerns the content
  const size_t open = groups_.size();
  Walk request = {this, content, what};
  cairo_ = context;
  const int code = ort_protect(core_, walk_protected, &request);
  if (code != 0) {
    account_.fail(code, ort_error_text(core_));
    while (groups_.size() > open) {
      if (groups_.back().layer == Layer::PUSHED) cairo_pattern_destroy(cairo_pop_group(cairo_));
      if (groups_.back().layer != Layer::HIDDEN) cairo_restore(cairo_);
      account_.give(groups_.back().pixels);
      groups_.pop_back();
    }
  }
  groups_.pop_back();
  cairo_ = outer;
}

void Painter::walk_protected(void *argument) {
  const Walk &walk = *static_cast<Walk *>(argument);
  Painter *painter = walk.painter;
  svg_scene *scene = painter->scene_;
  switch (walk.content) {
  case Content::ELEMENT:
    svg_scene_paint_element(scene, static_cast<const svg_e_node *>(walk.what), &CALLBACKS, painter);
    break;
  case Content::PATTERN:
    svg_scene_paint_pattern(scene, static_cast<const svg_scene_pattern *>(walk.what), &CALLBACKS,
                            painter);
    break;
  case Content::CLIP:
    svg_scene_paint_clip(scene, static_cast<const svg_scene_clip *>(walk.what), &CALLBACKS,
                         painter);
    break;
  case Content::MASK:
    svg_scene_paint_mask(scene, static_cast<const svg_scene_mask *>(walk.what), &CALLBACKS,
                         painter);
    break;
  }
}

// Nothing is drawn after a failure, nor in a group that shows nothing.
bool Painter::hidden() const {
  return account_.failure != 0 || groups_.back().layer == Layer::HIDDEN;
}

void Painter::shape(const svg_scene_shape &shape) {
  if (hidden() || !can_apply(cairo_, shape.item.matrix)) return;
  cairo_save(cairo_);
  apply(cairo_, shape.item.matrix);
  const bool single = groups_.back().layer == Layer::SINGLE;
  const double opacity = single ? groups_.back().opacity : 1;
  double box[4];
  if (!single || shape.fill.kind == SVG_SCENE_PAINT_NONE ||
      shape.stroke.kind == SVG_SCENE_PAINT_NONE) {
    fill_and_stroke(shape, opacity);
  } else if (svg_scene_get_shape_box(&shape, 1, box) != 0) {
    // Fill and stroke overlap: together they are as opaque as one of them.
    cairo_rectangle(cairo_, box[0], box[1], box[2], box[3]);
    cairo_clip(cairo_);
    groups_.push_back({Layer::PUSHED, opacity, 0, false, false});
    if (push_layer()) {
      fill_and_stroke(shape, 1);
      cairo_pop_group_to_source(cairo_);
      cairo_paint_with_alpha(cairo_, opacity);
    }
    account_.give(groups_.back().pixels);
    groups_.pop_back();
  }
  cairo_restore(cairo_);
}

void Painter::fill_and_stroke(const svg_scene_shape &shape, double opacity) {
  cairo_new_path(cairo_);
  const bool fills = shape.fill.kind != SVG_SCENE_PAINT_NONE;
  const bool strokes = shape.stroke.kind != SVG_SCENE_PAINT_NONE;
  // A pattern's content is drawn while its source is made, so the path comes after it.
  if (fills && set_source(shape.fill, opacity)) {
    add_segments(cairo_, shape.segments, shape.segment_count);
    set_fill_rule(cairo_, shape.fill_rule);
    cairo_fill(cairo_);
  }
  if (strokes && set_source(shape.stroke, opacity)) {
    add_segments(cairo_, shape.segments, shape.segment_count);
    set_stroke(*shape.item.style);
    cairo_stroke(cairo_);
  }
}

void set_fill_rule(cairo_t *context, int32_t keyword) {
  cairo_set_fill_rule(context, keyword == SVG_KW_evenodd ? CAIRO_FILL_RULE_EVEN_ODD
                                                         : CAIRO_FILL_RULE_WINDING);
}

void add_segments(cairo_t *context, const svg_pada *segments, size_t count) {
  for (const svg_pada *run = segments; run < segments + count; ++run) {
    const double *p = run->points;
    const double *end = p + 2 * static_cast<size_t>(run->count);
    switch (run->type) {
    case SVG_PADA_MOVETO: cairo_move_to(context, p[0], p[1]); break;
    case SVG_PADA_LINETO:
      for (; p < end; p += 2) cairo_line_to(context, p[0], p[1]);
      break;
    case SVG_PADA_CURVETO:
      for (; p < end; p += 6) cairo_curve_to(context, p[0], p[1], p[2], p[3], p[4], p[5]);
      break;
    case SVG_PADA_CLOSEPATH: cairo_close_path(context); break;
    default: break;
    }
  }
}

bool can_apply(cairo_t *context, const double matrix[6]) {
  cairo_matrix_t current;
  cairo_get_matrix(context, &current);
  const cairo_matrix_t own = to_cairo(matrix);
  cairo_matrix_multiply(&current, &own, &current);
  return std::isfinite(current.x0) && std::isfinite(current.y0) &&
         cairo_matrix_invert(&current) == CAIRO_STATUS_SUCCESS;
}
