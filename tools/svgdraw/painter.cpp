// painter.cpp: the walk of a scene into a Cairo context, and its shapes.
#include "tools/svgdraw/painter.h"

#include <cmath>
#include <utility>

static constexpr double COMPOSED = 16; // times that of a color: a gradient or pattern

template <auto METHOD, class Record> static auto call(void *user, const Record *record) {
  return (static_cast<Painter *>(user)->*METHOD)(*record);
}

const svg_scene_callbacks Painter::CALLBACKS = {
    .begin_group = call<&Painter::begin_group>,
    .end_group = call<&Painter::end_group>,
    .shape = call<&Painter::shape>,
    .image = call<&Painter::image>,
    .text = call<&Painter::text>,
    .measure = call<&Painter::measure>,
};

const svg_scene_callbacks Painter::TEXT_ONLY = {
    nullptr, nullptr, nullptr, nullptr, call<&Painter::bound_text>, call<&Painter::measure>};

bool Account::take(uint64_t count, double times) {
  pixels += count;
  if (pixels > pixels_limit) return exceed(pixels_limit, "pixels");
  return spend(static_cast<double>(count) * times);
}

bool Account::spend(double time) {
  painted += time;
  if (painted > static_cast<double>(painted_limit)) return exceed(painted_limit, "painted pixels");
  return !failed;
}

bool Account::exceed(uint64_t limit, const char *what) {
  attempt([&] {
    ort_error(core, ORT_E_LIMIT, what, ort_errprintf(core, "%ld", static_cast<long>(limit)),
              nullptr, nullptr);
  });
  return false;
}

void Account::fail(int error, const std::string &message) {
  if (!std::exchange(failed, true)) {
    code = error;
    text = message;
  }
}

void Painter::paint(cairo_t *context, const svg_e_node *element) {
  walk(context, [&] { svg_scene_paint_element(scene_, element, &CALLBACKS, this); });
}

std::optional<Box> Painter::find_text(const svg_e_node *element) {
  cairo_surface_t *surface = cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr);
  cairo_t *context = cairo_create(surface);
  walk(context, [&] { svg_scene_paint_element(scene_, element, &TEXT_ONLY, this); });
  double x0, y0, x1, y1;
  cairo_identity_matrix(context);
  cairo_path_extents(context, &x0, &y0, &x1, &y1);
  cairo_destroy(context);
  cairo_surface_destroy(surface);
  return x0 < x1 && y0 < y1 ? std::optional(Box{x0, y0, x1 - x0, y1 - y0}) : std::nullopt;
}

// Paints onto another context. Groups that an error leaves open stay so on this context, which is
// not shown then.
void Painter::walk(cairo_t *context, const Body &body) {
  if (account_.failed) return;
  cairo_t *outer = std::exchange(cairo_, context);
  const size_t open = groups_.size();
  groups_.emplace_back(); // no group around concerns the content
  account_.attempt(body);
  groups_.resize(open);
  cairo_ = outer;
}

// Saves the context and applies a matrix. False, and nothing done, when nothing is to be drawn.
// After an error the walk ends here, where no callback has begun its work.
bool Painter::enter(const double matrix[6]) {
  if (account_.failed) ort_error(drawing_.core(), -1, nullptr, nullptr, nullptr, nullptr);
  if (groups_.back().is_hidden) return false;
  cairo_save(cairo_);
  if (apply(cairo_, matrix)) return true;
  cairo_restore(cairo_);
  return false;
}

void Painter::shape(const svg_scene_shape &shape) {
  if (!enter(shape.item.matrix)) return;
  paint(
      shape.fill, shape.stroke, *shape.item.style, shape.fill_rule,
      [&](const svg_scene_style *stroke) {
        return effort_of(shape.segments, shape.segment_count, stroke);
      },
      [&](bool) { add_segments(cairo_, shape.segments, shape.segment_count); });
  cairo_restore(cairo_);
}

// Fills and strokes what add appends to the path, or shows otherwise. The content of a pattern is
// drawn while its source is made, so the path comes after it.
void Painter::paint(const svg_scene_paint &fill, const svg_scene_paint &stroke,
                    const svg_scene_style &style, int32_t fill_rule,
                    const std::function<Effort(const svg_scene_style *stroke)> &effort_to,
                    const std::function<void(bool fills)> &add) {
  for (const bool fills : {true, false}) {
    const svg_scene_paint &paint = fills ? fill : stroke;
    if (paint.kind == SVG_SCENE_PAINT_NONE) continue;
    const Effort effort = effort_to(fills ? nullptr : &style);
    const double weight = paint.kind == SVG_SCENE_PAINT_COLOR ? 1 : COMPOSED;
    cairo_new_path(cairo_);
    if (!account_.spend(effort.time + weight * effort.area)) return;
    cairo_save(cairo_);
    if (effort.apart) {
      cairo_matrix_t matrix;
      cairo_get_matrix(cairo_, &matrix);
      cairo_identity_matrix(cairo_);
      clip_to_pixels_of(cairo_, effort.apart->data());
      cairo_set_matrix(cairo_, &matrix);
      cairo_push_group(cairo_);
      cairo_reset_clip(cairo_);
    }
    if (set_source(paint)) {
      add(fills);
      if (fills) {
        set_fill_rule(cairo_, fill_rule);
        cairo_fill(cairo_);
      } else {
        set_stroke(style);
        cairo_stroke(cairo_);
      }
    }
    if (effort.apart) {
      cairo_pop_group_to_source(cairo_);
      cairo_paint(cairo_);
    }
    cairo_restore(cairo_);
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

bool apply(cairo_t *context, const double matrix[6]) {
  cairo_matrix_t current, own = to_cairo(matrix);
  cairo_get_matrix(context, &current);
  cairo_matrix_multiply(&current, &own, &current);
  if (!std::isfinite(current.x0) || !std::isfinite(current.y0) ||
      cairo_matrix_invert(&current) != CAIRO_STATUS_SUCCESS)
    return false;
  cairo_transform(context, &own);
  return true;
}
