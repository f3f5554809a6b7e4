// groups.cpp: groups of a scene: opacity, overflow, clip paths, masks and links.
#include <algorithm>
#include <cmath>

#include "tools/names.h"
#include "tools/svgdraw/painter.h"

static void luminance_to_alpha(cairo_surface_t *surface);

void Painter::begin_group(const svg_scene_group &group) {
  Group record = {Layer::HIDDEN, group.opacity, 0, false, false};
  if (hidden() || group.opacity <= 0 || !can_apply(cairo_, group.item.matrix)) {
    groups_.push_back(record);
    return;
  }
  cairo_save(cairo_);
  apply(cairo_, group.item.matrix);
  if (group.has_viewport != 0) {
    const double *v = group.viewport;
    cairo_rectangle(cairo_, v[0], v[1], v[2], v[3]);
    cairo_clip(cairo_);
  }
  record.layer = Layer::PLAIN;
  if (group.clip) record.layer = clip_to(*group.clip, record.clipped_late);
  if (record.layer == Layer::HIDDEN) {
    cairo_restore(cairo_);
    groups_.push_back(record);
    return;
  }
  if (record.clipped_late || group.mask)
    record.layer = Layer::PUSHED;
  else if (group.opacity < 1)
    record.layer = is_shape(group.item.element) ? Layer::SINGLE : Layer::PUSHED;
  if (record.layer == Layer::PLAIN) record.link = begin_link(group.link);
  groups_.push_back(record);
  if (record.layer == Layer::PUSHED && !push_layer()) groups_.back().layer = Layer::PLAIN;
}

void Painter::end_group(const svg_scene_group &group) {
  const Group record = groups_.back();
  if (record.layer == Layer::HIDDEN) {
    groups_.pop_back();
    return;
  }
  if (record.link) cairo_tag_end(cairo_, CAIRO_TAG_LINK);
  if (record.layer == Layer::PUSHED) {
    cairo_pop_group_to_source(cairo_);
    if (account_.failure != 0) {
      // What there is will not be shown.
    } else if (!record.clipped_late && !group.mask) {
      cairo_paint_with_alpha(cairo_, record.opacity);
    } else {
      cairo_pattern_t *content = cairo_pattern_reference(cairo_get_source(cairo_));
      uint64_t pixels = 0;
      cairo_surface_t *mask = make_mask(group, record.clipped_late, pixels);
      if (mask) {
        cairo_set_source(cairo_, content);
        cairo_identity_matrix(cairo_);
        cairo_mask_surface(cairo_, mask, 0, 0);
        cairo_surface_destroy(mask);
      }
      account_.give(pixels);
      cairo_pattern_destroy(content);
    }
  }
  groups_.pop_back();
  account_.give(record.pixels);
  cairo_restore(cairo_);
}

// Everything up to the end of the group goes to a layer. The group's record takes its pixels; what
// a vector target keeps as a drawing costs none.
bool Painter::push_layer() {
  uint64_t pixels = 0;
  if (!target_.vector) {
    double x0, y0, x1, y1;
    cairo_save(cairo_);
    cairo_identity_matrix(cairo_);
    cairo_clip_extents(cairo_, &x0, &y0, &x1, &y1);
    cairo_restore(cairo_);
    pixels = static_cast<uint64_t>(std::ceil(x1 - x0)) * static_cast<uint64_t>(std::ceil(y1 - y0));
  }
  if (!account_.take(pixels)) return false;
  groups_.back().pixels = pixels;
  cairo_push_group(cairo_);
  return true;
}

namespace {

// What a clip path holds, as far as is needed to clip by a path.
struct ClipContent {
  cairo_t *cairo;
  int shapes;
  bool simple;
  int32_t fill_rule;
};

} // namespace

// Clips by the one shape of a clip path, or leaves it to a mask at the end of the group.
Painter::Layer Painter::clip_to(const svg_scene_clip &clip, bool &late) {
  static constexpr svg_scene_callbacks clip_callbacks = {
      .begin_group =
          [](void *user, const svg_scene_group *) {
            static_cast<ClipContent *>(user)->simple = false;
          },
      .end_group = nullptr,
      .shape =
          [](void *user, const svg_scene_shape *shape) {
            auto *content = static_cast<ClipContent *>(user);
            if (++content->shapes > 1 || !content->simple) return;
            if (!can_apply(content->cairo, shape->item.matrix)) {
              --content->shapes;
              return;
            }
            content->fill_rule = shape->fill_rule;
            cairo_save(content->cairo);
            apply(content->cairo, shape->item.matrix);
            add_segments(content->cairo, shape->segments, shape->segment_count);
            cairo_restore(content->cairo);
          },
      .image = nullptr,
      .text = [](void *user,
                 const svg_scene_run *) { static_cast<ClipContent *>(user)->simple = false; },
      .measure = nullptr,
  };
  struct Request {
    svg_scene *scene;
    const svg_scene_clip *clip;
    ClipContent content;
  } request = {scene_, &clip, {cairo_, 0, true, SVG_KW_nonzero}};
  if (!can_apply(cairo_, clip.matrix)) return Layer::HIDDEN;
  cairo_new_path(cairo_);
  cairo_save(cairo_);
  apply(cairo_, clip.matrix);
  const auto body = [](void *argument) {
    auto *r = static_cast<Request *>(argument);
    svg_scene_paint_clip(r->scene, r->clip, &clip_callbacks, &r->content);
  };
  const int code = ort_protect(core_, body, &request);
  cairo_restore(cairo_);
  if (code != 0) account_.fail(code, ort_error_text(core_));
  const ClipContent &content = request.content;
  late = !content.simple || content.shapes > 1;
  if (!late) {
    set_fill_rule(cairo_, content.fill_rule);
    cairo_clip(cairo_); // nothing shows when there was no shape
  }
  cairo_new_path(cairo_);
  return late || content.shapes > 0 ? Layer::PLAIN : Layer::HIDDEN;
}

// An image of what is inside of the clip, in the pixels of the target. Null after a failure, and
// when nothing is inside.
cairo_surface_t *Painter::make_layer(uint64_t &pixels) {
  double x0, y0, x1, y1;
  cairo_save(cairo_);
  cairo_identity_matrix(cairo_);
  cairo_clip_extents(cairo_, &x0, &y0, &x1, &y1);
  cairo_restore(cairo_);
  const double scale = target_.pixels_per_unit;
  x0 = std::floor(x0 * scale);
  y0 = std::floor(y0 * scale);
  const double width = std::ceil(x1 * scale) - x0, height = std::ceil(y1 * scale) - y0;
  if (!(width >= 1 && height >= 1)) return nullptr;
  const auto count = static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
  if (!account_.take(count)) return nullptr;
  pixels += count;
  cairo_surface_t *layer = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                                      static_cast<int>(height));
  cairo_surface_set_device_scale(layer, scale, scale);
  cairo_surface_set_device_offset(layer, -x0, -y0);
  return layer;
}

// The alpha by which a group is shown: its opacity times the luminance of its mask, inside of its
// clip path.
cairo_surface_t *Painter::make_mask(const svg_scene_group &group, bool clipped, uint64_t &pixels) {
  cairo_surface_t *result = nullptr;
  for (const bool is_clip : {false, true}) {
    if (is_clip ? !clipped : !group.mask) continue;
    cairo_surface_t *layer = make_layer(pixels);
    if (!layer) break;
    cairo_t *context = cairo_create(layer);
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo_, &matrix);
    cairo_set_matrix(context, &matrix);
    const double *m = is_clip ? group.clip->matrix : group.mask->matrix;
    if (!is_clip) {
      const double *area = group.mask->area;
      cairo_rectangle(context, area[0], area[1], area[2], area[3]);
      cairo_clip(context);
    }
    if (can_apply(context, m)) {
      apply(context, m);
      const Target target = target_;
      target_.vector = false;
      walk(context, is_clip ? Content::CLIP : Content::MASK,
           is_clip ? static_cast<const void *>(group.clip) : group.mask);
      target_ = target;
    }
    cairo_destroy(context);
    if (!is_clip) luminance_to_alpha(layer);
    if (!result) {
      result = layer;
      continue;
    }
    context = cairo_create(result);
    cairo_set_operator(context, CAIRO_OPERATOR_DEST_IN);
    cairo_set_source_surface(context, layer, 0, 0);
    cairo_paint(context);
    cairo_destroy(context);
    cairo_surface_destroy(layer);
  }
  if (result && group.opacity < 1) {
    cairo_t *context = cairo_create(result);
    cairo_set_operator(context, CAIRO_OPERATOR_DEST_IN);
    cairo_set_source_rgba(context, 0, 0, 0, group.opacity);
    cairo_paint(context);
    cairo_destroy(context);
  }
  return result;
}

bool Painter::begin_link(const svg_iri *link) {
  if (!target_.vector || !link || link->kind != SVG_IRI_NAME || !link->ref.text) return false;
  std::string attributes = "uri='";
  for (const char *c = link->ref.text; *c != 0; ++c) {
    if (*c == '\'' || *c == '\\') attributes += '\\';
    attributes += *c;
  }
  cairo_tag_begin(cairo_, CAIRO_TAG_LINK, (attributes + "'").c_str());
  return true;
}

// SVG 1.1, 14.4: luminance times alpha; the pixels hold color times alpha already.
static void luminance_to_alpha(cairo_surface_t *surface) {
  cairo_surface_flush(surface);
  unsigned char *row = cairo_image_surface_get_data(surface);
  if (!row) return;
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  for (int y = 0; y < height; ++y, row += stride) {
    auto *pixel = reinterpret_cast<uint32_t *>(row);
    for (int x = 0; x < width; ++x) {
      const uint32_t red = pixel[x] >> 16 & 255, green = pixel[x] >> 8 & 255, blue = pixel[x] & 255;
      // 0.2125, 0.7154 and 0.0721 of 2^14
      const uint32_t alpha = (red * 3482 + green * 11721 + blue * 1181 + 8192) >> 14;
      pixel[x] = std::min<uint32_t>(alpha, 255) << 24;
    }
  }
  cairo_surface_mark_dirty(surface);
}
