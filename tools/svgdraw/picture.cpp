// picture.cpp: see picture.h.
#include "tools/svgdraw/picture.h"

#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>
#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "tools/svgdraw/painter.h"

static constexpr double LAYER_RESOLUTION = 300; // dots an inch, of what a vector target cannot keep
static constexpr double POINTS_PER_INCH = 72;

namespace {

// What is drawn, and how large.
struct Frame {
  const svg_e_node *element = nullptr; // null: the drawing
  Box area = {};                       // in the space that it is painted in
  double width = 0, height = 0;        // of the picture, in pixels that need not be whole ones
};

} // namespace

static bool find_frame(const Scene &scene, const PictureSettings &settings, Account &account,
                       Frame &frame);
static void write_picture(const Scene &scene, const PictureSettings &settings, const Frame &frame,
                          Account &account, const std::string &path);
static cairo_status_t write_bytes(void *file, const unsigned char *bytes, unsigned length);
static void remove_file(const std::string &path);

// A part of a pixel counts, what rounding leaves does not.
static int whole(double side) { return std::max(1, static_cast<int>(std::ceil(side - 1e-6))); }

const PictureFormat *find_format(const std::string &name) {
  static constexpr PictureFormat formats[] = {{"png", nullptr},
                                              {"pdf", cairo_pdf_surface_create_for_stream},
                                              {"ps", cairo_ps_surface_create_for_stream},
                                              {"svg", cairo_svg_surface_create_for_stream}};
  for (const PictureFormat &format : formats)
    if (strcasecmp(format.name, name.c_str()) == 0) return &format;
  return nullptr;
}

Picture make_picture(const std::string &input, const ReadSettings &reading,
                     const PictureSettings &settings, const std::string &output) {
  const Drawing drawing(input, reading);
  Account account = {drawing.core(), settings.pixels, settings.painted};
  if (drawing.ok()) {
    const Scene scene(drawing, {settings.dpi, 0, 0, 0});
    Frame frame;
    if (scene.get() && find_frame(scene, settings, account, frame))
      write_picture(scene, settings, frame, account, output);
  }
  account.notes.merge(drawing.notes().not_drawn());
  Picture picture = {drawing.name(), drawing.messages(), drawing.ok() && !account.failed};
  for (const std::string &note : account.notes)
    picture.messages.push_back({ORT_WARNING, 0, note, {}});
  // An error that reached the outermost call of the library is among the messages.
  if (account.failed && (picture.messages.empty() || picture.messages.back().text != account.text))
    picture.messages.push_back({ORT_ERROR, account.code, account.text, {}});
  return picture;
}

static std::optional<Box> around(const std::optional<Box> &a, const std::optional<Box> &b) {
  if (!a || !b) return a ? a : b;
  const auto &[x, y, width, height] = *b;
  Box box = {std::min((*a)[0], x), std::min((*a)[1], y)};
  box[2] = std::max((*a)[0] + (*a)[2], x + width) - box[0];
  box[3] = std::max((*a)[1] + (*a)[3], y + height) - box[1];
  return box;
}

static bool find_frame(const Scene &scene, const PictureSettings &settings, Account &account,
                       Frame &frame) {
  const auto fail = [&](const std::string &text) {
    account.fail(0, text);
    return false;
  };
  const Drawing &drawing = scene.drawing();
  const Point size = scene.size();
  std::optional<Box> area = Box{0, 0, size[0], size[1]};
  if (settings.id) {
    frame.element = svg_find_name(drawing.parser(), settings.id->c_str());
    if (!frame.element) return fail("no element has the id '" + *settings.id + "'");
    if (!scene.measure(frame.element, svg_get_parent(frame.element), true, area)) return fail("");
    area = around(area, Painter(scene, account, {}).find_text(frame.element));
    if (!area) return fail("the element shows nothing that can be measured");
  }
  frame.area = *area;
  const double width = frame.area[2], height = frame.area[3];
  if (!(width > 0 && height > 0)) return fail("there is nothing to draw: it has no size");
  double x = settings.width > 0 ? settings.width / width : settings.scale;
  double y = settings.height > 0 ? settings.height / height : settings.scale;
  if (settings.width <= 0 && settings.height > 0) x = y;
  if (settings.height <= 0 && settings.width > 0) y = x;
  if (settings.keep_aspect) x = y = std::min(x, y);
  frame.width = width * x;
  frame.height = height * y;
  if (settings.format->make)
    return (std::isfinite(frame.width) && std::isfinite(frame.height)) || fail("it is too large");
  if (!(frame.width <= SIDE_MAX && frame.height <= SIDE_MAX))
    return fail("a picture of " + std::to_string(std::llround(frame.width)) + " x " +
                std::to_string(std::llround(frame.height)) + " pixels is too large");
  return account.take(uint64_t(whole(frame.width)) * uint64_t(whole(frame.height)), 1);
}

static void write_picture(const Scene &scene, const PictureSettings &settings, const Frame &frame,
                          Account &account, const std::string &path) {
  const auto fail = [&] {
    const std::string name = path == "-" ? "standard output" : "'" + path + "'";
    account.fail(0, "cannot write " + name + ": " + strerror(errno));
  };
  FILE *file = path == "-" ? stdout : fopen(path.c_str(), "wb");
  if (!file) return fail();
  const bool is_vector = settings.format->make != nullptr;
  const double unit = is_vector ? POINTS_PER_INCH / settings.dpi : 1;
  const Box &area = frame.area;
  cairo_surface_t *surface =
      is_vector ? settings.format->make(write_bytes, file, frame.width * unit, frame.height * unit)
                : cairo_image_surface_create(CAIRO_FORMAT_ARGB32, whole(frame.width),
                                             whole(frame.height));
  // Of what a vector target cannot keep, a sixteenth of the pixels will do: a page of A4.
  const double pixels = double(settings.pixels) / 16 / frame.width / frame.height;
  const double resolution = std::min(LAYER_RESOLUTION, settings.dpi * std::sqrt(pixels));
  cairo_surface_set_fallback_resolution(surface, resolution, resolution);
  cairo_t *context = cairo_create(surface);
  if (settings.background[3] > 0) {
    const double *b = settings.background;
    cairo_set_source_rgba(context, b[0], b[1], b[2], b[3]);
    cairo_paint(context);
  }
  cairo_scale(context, frame.width * unit / area[2], frame.height * unit / area[3]);
  cairo_translate(context, -area[0], -area[1]);
  if (is_vector) clip_to_box(context, area.data());
  Painter painter(scene, account, {is_vector, is_vector ? resolution / POINTS_PER_INCH : 1.0});
  painter.paint(context, frame.element);
  cairo_status_t status = cairo_status(context);
  cairo_destroy(context);
  if (!account.failed && status == CAIRO_STATUS_SUCCESS && !is_vector)
    status = cairo_surface_write_to_png_stream(surface, write_bytes, file);
  cairo_surface_finish(surface);
  if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface);
  cairo_surface_destroy(surface);
  const bool is_written = (path == "-" ? fflush(file) : fclose(file)) == 0;
  if (status == CAIRO_STATUS_WRITE_ERROR || !is_written)
    fail();
  else if (status != CAIRO_STATUS_SUCCESS)
    account.fail(0, std::string("cannot draw: ") + cairo_status_to_string(status));
  if (account.failed && path != "-") remove_file(path);
}

// Devices and links stay: the user made them, not this program.
static void remove_file(const std::string &path) {
  std::error_code error;
  if (is_regular_file(std::filesystem::symlink_status(path, error))) remove(path.c_str());
}

static cairo_status_t write_bytes(void *file, const unsigned char *bytes, unsigned length) {
  return fwrite(bytes, 1, length, static_cast<FILE *>(file)) == length ? CAIRO_STATUS_SUCCESS
                                                                       : CAIRO_STATUS_WRITE_ERROR;
}
