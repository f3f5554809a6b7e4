// groups.cpp: groups of a scene: opacity, overflow, clip paths, masks and links.
#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/svgdraw/painter.h"

static constexpr double CROSSINGS_MAX = 10000; // of a clip path that Cairo is given as a path
static constexpr uint64_t VECTOR_DEPTH = 256;  // of layers that are kept as drawings

static void luminance_to_alpha(cairo_surface_t *surface);

// The context is saved until the end of the group, whatever becomes of it.
void Painter::begin_group(const svg_scene_group &group) {
  Group record;
  record.is_hidden = group.opacity <= 0 || !enter(group.item.matrix);
  if (record.is_hidden) cairo_save(cairo_);
  if (!record.is_hidden && group.has_viewport != 0) clip_to_box(cairo_, group.viewport);
  record.is_cut = groups_.back().is_cut;
  if (!record.is_hidden && group.clip) clip_to(*group.clip, record);
  if (!record.is_hidden) {
    if (group.mask || record.is_masked || (group.opacity < 1 && group.is_single == 0))
      push_layer(group, record);
    else
      record.opacity = group.opacity;
    record.is_link = begin_link(group.link);
  }
  groups_.push_back(record);
}

void Painter::end_group(const svg_scene_group &group) {
  const Group record = groups_.back();
  groups_.pop_back();
  if (record.is_link) cairo_tag_end(cairo_, CAIRO_TAG_LINK);
  if (record.is_pushed) show_layer(group, record);
  account_.give(record.pixels);
  cairo_restore(cairo_);
}

// Clips by the one shape of a clip path, or leaves it to a mask at the end of the group.
void Painter::clip_to(const svg_scene_clip &clip, Group &record) {
  const svg_pada *segments;
  size_t count = 0;
  int32_t fill_rule = 0;
  const bool is_told = account_.attempt([&] {
    record.is_masked =
        svg_scene_get_clip_outline(scene_, &clip, &segments, &count, &fill_rule) == 0;
  });
  record.is_hidden = !is_told || (!record.is_masked && count == 0);
  if (record.is_hidden || record.is_masked) return;
  const Effort effort = effort_of(segments, count, nullptr);
  account_.spend(effort.time);
  record.is_masked = !target_.is_vector && effort.crossings > CROSSINGS_MAX;
  if (record.is_masked) return;
  record.is_cut = true;
  cairo_new_path(cairo_);
  add_segments(cairo_, segments, count);
  set_fill_rule(cairo_, fill_rule);
  cairo_clip(cairo_);
}

// Everything up to the end of the group goes to a layer. A vector target keeps it as a drawing,
// which takes no pixels, but Cairo recurses into layers within layers.
void Painter::push_layer(const svg_scene_group &group, Group &record) {
  if (!target_.is_vector && group.has_bounds != 0) clip_to_pixels_of(cairo_, group.bounds);
  const Box area = visible_pixels();
  const double pixels = area[2] * area[3];
  record.pixels = target_.is_vector ? account_.pixels_limit / VECTOR_DEPTH //
                                    : static_cast<uint64_t>(pixels);
  record.is_pushed =
      account_.take(record.pixels, 0) && account_.spend(makes_pixels() ? LAYER * pixels : 0);
  if (record.is_pushed) cairo_push_group(cairo_);
}

void Painter::show_layer(const svg_scene_group &group, const Group &record) {
  cairo_pop_group_to_source(cairo_);
  if (account_.failed) return;
  if (!group.mask && !record.is_masked) {
    cairo_paint_with_alpha(cairo_, group.opacity);
  } else if (cairo_surface_t *mask = make_mask(group, record)) {
    cairo_identity_matrix(cairo_);
    cairo_mask_surface(cairo_, mask, 0, 0);
    cairo_surface_destroy(mask);
  }
}

// The alpha by which a group is shown: its opacity times the luminance of its mask, inside of its
// clip path. Null when nothing shows.
cairo_surface_t *Painter::make_mask(const svg_scene_group &group, const Group &record) {
  const double scale = target_.pixels_per_unit;
  const Box area = visible_pixels();
  const auto pixels = static_cast<uint64_t>((record.is_masked ? 2 : 1) * area[2] * area[3]);
  if (pixels == 0 || !account_.take(pixels, LAYER)) return nullptr;
  cairo_surface_t *layer =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(area[2]), int(area[3]));
  cairo_surface_set_device_scale(layer, scale, scale);
  cairo_surface_set_device_offset(layer, -area[0], -area[1]);
  cairo_t *context = cairo_create(layer);
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo_, &matrix);
  cairo_set_matrix(context, &matrix);
  const bool was_vector = std::exchange(target_.is_vector, false);
  if (group.mask) {
    cairo_save(context);
    clip_to_box(context, group.mask->area);
    if (apply(context, group.mask->matrix))
      walk(context, [&] { svg_scene_paint_mask(scene_, group.mask, &CALLBACKS, this); });
    cairo_restore(context);
    luminance_to_alpha(layer);
  } else {
    cairo_paint(context);
  }
  if (record.is_masked) {
    cairo_push_group(context);
    if (apply(context, group.clip->matrix))
      walk(context, [&] { svg_scene_paint_clip(scene_, group.clip, &CALLBACKS, this); });
    cairo_pop_group_to_source(context);
  }
  target_.is_vector = was_vector;
  cairo_set_operator(context, CAIRO_OPERATOR_DEST_IN);
  cairo_paint_with_alpha(context, group.opacity);
  cairo_destroy(context);
  account_.give(pixels);
  return layer;
}

// Only on the page itself: Cairo 1.16 goes wrong with links in what it records, groups and
// patterns.
bool Painter::begin_link(const svg_iri *link) {
  if (!link || link->kind != SVG_IRI_NAME || !link->ref.text) return false;
  if (cairo_surface_get_type(cairo_get_group_target(cairo_)) != CAIRO_SURFACE_TYPE_PDF)
    return false;
  std::string attributes = "uri='";
  for (const char *c = link->ref.text; *c != 0; ++c) {
    if (*c == '\'' || *c == '\\') attributes += '\\';
    attributes += *c;
  }
  cairo_tag_begin(cairo_, CAIRO_TAG_LINK, (attributes + "'").c_str());
  return true;
}

// What the clip leaves, in whole pixels of the target.
Box Painter::visible_pixels() const {
  double x0, y0, x1, y1;
  cairo_save(cairo_);
  cairo_identity_matrix(cairo_);
  cairo_clip_extents(cairo_, &x0, &y0, &x1, &y1);
  cairo_restore(cairo_);
  const double scale = target_.pixels_per_unit;
  const double left = std::floor(x0 * scale), top = std::floor(y0 * scale);
  return {left, top, std::ceil(x1 * scale) - left, std::ceil(y1 * scale) - top};
}

// An edge that cuts a pixel would show twice.
void clip_to_pixels_of(cairo_t *context, const double box[4]) {
  double x0, y0, x1, y1;
  cairo_new_path(context);
  cairo_rectangle(context, box[0], box[1], box[2], box[3]);
  cairo_save(context); // the path is none of what is saved
  cairo_identity_matrix(context);
  cairo_path_extents(context, &x0, &y0, &x1, &y1);
  cairo_new_path(context);
  cairo_rectangle(context, std::floor(x0), std::floor(y0), std::ceil(x1) - std::floor(x0),
                  std::ceil(y1) - std::floor(y0));
  cairo_restore(context);
  cairo_clip(context);
}

// SVG 1.1, 14.4: luminance times alpha; the pixels hold color times alpha already.
static void luminance_to_alpha(cairo_surface_t *surface) {
  cairo_surface_flush(surface);
  unsigned char *data = cairo_image_surface_get_data(surface);
  if (!data) return;
  const int stride = cairo_image_surface_get_stride(surface);
  auto *pixel = reinterpret_cast<uint32_t *>(data);
  const auto *end =
      pixel + static_cast<ptrdiff_t>(stride / 4) * cairo_image_surface_get_height(surface);
  for (; pixel < end; ++pixel) {
    const uint32_t red = *pixel >> 16 & 255, green = *pixel >> 8 & 255, blue = *pixel & 255;
    // 0.2125, 0.7154 and 0.0721 of 2^14
    *pixel = std::min<uint32_t>((red * 3482 + green * 11721 + blue * 1181 + 8192) >> 14, 255) << 24;
  }
  cairo_surface_mark_dirty(surface);
}
