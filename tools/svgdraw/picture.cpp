// picture.cpp: see picture.h.
#include "tools/svgdraw/picture.h"

#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "tools/svgdraw/painter.h"

static constexpr double SIDE_MAX = 32767;       // of an image in Cairo
static constexpr double LAYER_RESOLUTION = 300; // dots an inch, of what a vector target cannot keep
static constexpr double POINTS_PER_INCH = 72;

namespace {

// What is drawn, and where it lies in the picture.
struct Frame {
  ort_core *core;
  svg_parser *parser;
  svg_e_node *svg;
  const svg_e_node *element; // null: the drawing
  svg_scene_options options;
  svg_scene *scene;
  double area[4];
};

} // namespace

static void find_area(void *argument);
static bool scale_area(const Frame &frame, const PictureSettings &settings, double &width,
                       double &height);
static cairo_surface_t *make_surface(PictureFormat format, double width, double height, FILE *file);
static cairo_status_t write_bytes(void *file, const unsigned char *bytes, unsigned length);

// A part of a pixel counts, what rounding leaves does not.
static int whole(double side) { return std::max(1, static_cast<int>(std::ceil(side - 1e-6))); }

bool make_picture(const Drawing &drawing, const PictureSettings &settings, const std::string &path,
                  std::vector<Message> &messages) {
  const auto fail = [&](int code, const std::string &text) {
    messages.push_back({ORT_ERROR, code, text, {}});
    return false;
  };
  Frame frame = {};
  frame.core = drawing.core();
  frame.parser = drawing.parser();
  frame.svg = drawing.svg();
  frame.options.dpi = settings.dpi;
  if (settings.has_id) {
    frame.element = svg_find_name(drawing.parser(), settings.id.c_str());
    if (!frame.element) return fail(0, "no element has the id '" + settings.id + "'");
  }
  const int code = ort_protect(frame.core, find_area, &frame);
  if (code != 0) {
    svg_scene_delete(frame.scene);
    return false; // the core has told it
  }
  double width = 0, height = 0;
  Account account;
  account.pixels_limit = settings.pixels;
  account.layers_limit = settings.layers;
  const bool vector = settings.format != PictureFormat::PNG;
  FILE *file = nullptr;
  if (!scale_area(frame, settings, width, height)) {
    account.fail(0, settings.has_id ? "the element shows nothing" : "the drawing has no size");
  } else if (!vector && (width > SIDE_MAX || height > SIDE_MAX)) {
    account.fail(0, "a picture of " + std::to_string(std::llround(width)) + " x " +
                        std::to_string(std::llround(height)) + " pixels is too large");
  } else if (vector || account.take(uint64_t(whole(width)) * uint64_t(whole(height)))) {
    file = path == "-" ? stdout : fopen(path.c_str(), "wb");
    if (!file) account.fail(0, "cannot write '" + path + "': " + strerror(errno));
  }
  if (file) {
    const double unit = vector ? POINTS_PER_INCH / settings.dpi : 1;
    cairo_surface_t *surface = make_surface(settings.format, width * unit, height * unit, file);
    cairo_t *context = cairo_create(surface);
    if (settings.background[3] > 0) {
      const double *b = settings.background;
      cairo_set_source_rgba(context, b[0], b[1], b[2], b[3]);
      cairo_paint(context);
    }
    cairo_scale(context, width * unit / frame.area[2], height * unit / frame.area[3]);
    cairo_rectangle(context, 0, 0, frame.area[2], frame.area[3]);
    if (vector) cairo_clip(context);
    cairo_new_path(context);
    cairo_translate(context, -frame.area[0], -frame.area[1]);
    Painter painter(frame.core, frame.scene, account,
                    {vector, vector ? LAYER_RESOLUTION / POINTS_PER_INCH : 1.0});
    painter.paint(context, frame.element);
    cairo_status_t status = cairo_status(context);
    cairo_destroy(context);
    if (account.failure == 0 && status == CAIRO_STATUS_SUCCESS && !vector)
      status = cairo_surface_write_to_png_stream(surface, write_bytes, file);
    cairo_surface_finish(surface);
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    const bool written = (path == "-" ? fflush(file) : fclose(file)) == 0;
    if (status == CAIRO_STATUS_WRITE_ERROR || !written)
      account.fail(0, "cannot write '" + path + "': " + strerror(errno));
    else if (status != CAIRO_STATUS_SUCCESS)
      account.fail(0, std::string("cannot draw: ") + cairo_status_to_string(status));
    if (account.failure != 0 || !account.failure_text.empty())
      if (path != "-") remove(path.c_str());
  }
  svg_scene_delete(frame.scene);
  for (const std::string &note : account.notes) messages.push_back({ORT_WARNING, 0, note, {}});
  return account.failure_text.empty() || fail(account.failure, account.failure_text);
}

static void find_area(void *argument) {
  auto *frame = static_cast<Frame *>(argument);
  frame->scene = svg_scene_new(frame->parser, frame->svg, &frame->options);
  if (frame->element)
    svg_scene_get_box(frame->scene, frame->element, svg_get_parent(frame->element), 1, frame->area);
  else
    svg_scene_get_size(frame->scene, &frame->area[2], &frame->area[3]);
}

// Size of the picture in pixels, which need not be whole ones. False when there is none.
static bool scale_area(const Frame &frame, const PictureSettings &settings, double &width,
                       double &height) {
  const double *area = frame.area;
  if (!(area[2] > 0 && area[3] > 0)) return false;
  double x = settings.scale, y = settings.scale;
  if (settings.width > 0) x = settings.width / area[2];
  if (settings.height > 0) y = settings.height / area[3];
  if (settings.width <= 0 && settings.height > 0) x = y;
  if (settings.height <= 0 && settings.width > 0) y = x;
  if (settings.keep_aspect) x = y = std::min(x, y);
  width = area[2] * x;
  height = area[3] * y;
  return std::isfinite(width) && std::isfinite(height);
}

static cairo_surface_t *make_surface(PictureFormat format, double width, double height,
                                     FILE *file) {
  switch (format) {
  case PictureFormat::PDF:
    return cairo_pdf_surface_create_for_stream(write_bytes, file, width, height);
  case PictureFormat::PS:
    return cairo_ps_surface_create_for_stream(write_bytes, file, width, height);
  case PictureFormat::SVG:
    return cairo_svg_surface_create_for_stream(write_bytes, file, width, height);
  default: return cairo_image_surface_create(CAIRO_FORMAT_ARGB32, whole(width), whole(height));
  }
}

static cairo_status_t write_bytes(void *file, const unsigned char *bytes, unsigned length) {
  return fwrite(bytes, 1, length, static_cast<FILE *>(file)) == length ? CAIRO_STATUS_SUCCESS
                                                                       : CAIRO_STATUS_WRITE_ERROR;
}
