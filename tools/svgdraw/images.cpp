// images.cpp: pictures embedded in a drawing: PNG, JPEG, and drawings inside of it. Nothing outside
// of the drawing is opened.
#include <turbojpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "tools/svgdraw/painter.h"

static constexpr int NESTING_MAX = 4; // drawings in drawings
static constexpr double IMAGE = 64;   // times a color: to read a picture and to show it smaller

using Bytes = std::string_view;

static constexpr Bytes PNG = "\x89PNG\r\n\x1a\n", GZIP = "\x1f\x8b";

static bool is_drawing(Bytes data);
static cairo_surface_t *read_png(Bytes data, Account &account);
static std::string needed_chunks(Bytes data);
static cairo_surface_t *read_jpeg(Bytes data, Account &account);
static void inks_to_colors(unsigned char *pixel, const unsigned char *end);

static const unsigned char *bytes_of(Bytes data) {
  return reinterpret_cast<const unsigned char *>(data.data());
}

static uint32_t number_at(Bytes data, size_t at) {
  const unsigned char *b = bytes_of(data) + at;
  return static_cast<uint32_t>(b[0]) << 24 | static_cast<uint32_t>(b[1] << 16 | b[2] << 8 | b[3]);
}

void Painter::image(const svg_scene_image &image) {
  if (!enter(image.item.matrix)) return;
  if (image.clipped != 0) clip_to_box(cairo_, image.area);
  const uint64_t held = account_.pixels;
  const Bytes data(reinterpret_cast<const char *>(image.data), image.size);
  if (!image.data)
    account_.notes.insert("images outside of the drawing are not opened");
  else if (is_drawing(data))
    draw_drawing(image);
  else
    draw_pixels(image,
                data.starts_with(PNG) ? read_png(data, account_) : read_jpeg(data, account_));
  account_.pixels = held;
  cairo_restore(cairo_);
}

void Painter::draw_drawing(const svg_scene_image &image) {
  if (account_.nesting == NESTING_MAX) {
    account_.notes.insert("drawings inside of each other are drawn 4 deep");
    return;
  }
  const Drawing inner(drawing_, image.data, image.size);
  account_.notes.merge(inner.notes().not_drawn());
  if (!inner.ok()) {
    account_.notes.insert("an embedded drawing cannot be read");
    return;
  }
  const Scene scene(inner, {0, 0, image.area[2], image.area[3]});
  const Point size = scene.size();
  if (!place(image, size[0], size[1])) return;
  ++account_.nesting;
  Painter(scene, account_, target_).paint(cairo_, nullptr);
  --account_.nesting;
}

// Draws a picture, which is destroyed, or null.
void Painter::draw_pixels(const svg_scene_image &image, cairo_surface_t *picture) {
  if (account_.failed) return;
  if (!picture || cairo_surface_status(picture) != CAIRO_STATUS_SUCCESS) {
    account_.notes.insert("an embedded image is no whole PNG, JPEG or SVG of a possible size");
    return cairo_surface_destroy(picture);
  }
  const int width = cairo_image_surface_get_width(picture);
  const int height = cairo_image_surface_get_height(picture);
  if (place(image, width, height)) {
    cairo_set_source_surface(cairo_, picture, 0, 0);
    cairo_pattern_set_extend(cairo_get_source(cairo_), CAIRO_EXTEND_PAD);
    cairo_rectangle(cairo_, 0, 0, width, height);
    cairo_fill(cairo_);
  }
  cairo_surface_destroy(picture);
}

// Applies the matrix from a picture to the user space of its image element.
bool Painter::place(const svg_scene_image &image, double width, double height) {
  double matrix[6];
  if (!(width > 0 && height > 0)) return false;
  svg_scene_place_image(&image, width, height, matrix);
  return apply(cairo_, matrix);
}

// By the first bytes: the MIME types that drawings give are often wrong.
static bool is_drawing(Bytes data) {
  const bool is_text = !data.empty() && (data[0] & 0x80) == 0;
  return data.starts_with(GZIP) || (is_text && data.substr(0, 256).find('<') != Bytes::npos);
}

// Whether a picture of this size can be held, and may be.
static bool take(Account &account, int64_t width, int64_t height, uint64_t passes) {
  return width > 0 && height > 0 && width <= SIDE_MAX && height <= SIDE_MAX &&
         account.take(static_cast<uint64_t>(width * height), IMAGE * static_cast<double>(passes));
}

static cairo_surface_t *read_png(Bytes data, Account &account) {
  // The first chunk begins with width and height (PNG, 11.2.2).
  if (data.size() < 24 || !take(account, number_at(data, 16), number_at(data, 20), 1))
    return nullptr;
  const std::string chunks = needed_chunks(data);
  Bytes left = chunks;
  const auto read = [](void *user, unsigned char *buffer, unsigned length) {
    Bytes &source = *static_cast<Bytes *>(user);
    if (length > source.size()) return CAIRO_STATUS_READ_ERROR;
    memcpy(buffer, source.data(), length);
    source.remove_prefix(length);
    return CAIRO_STATUS_SUCCESS;
  };
  return cairo_image_surface_create_from_png_stream(read, &left);
}

// Leaves out texts and profiles, which may inflate to gigabytes.
static std::string needed_chunks(Bytes data) {
  constexpr size_t around = 12; // length, name and sum of a chunk
  std::string result(PNG);
  for (data.remove_prefix(PNG.size()); data.size() >= around;) {
    const size_t length = std::min<size_t>(number_at(data, 0) + around, data.size());
    const bool is_critical = (data[4] & 0x20) == 0;
    if (is_critical || data.substr(4).starts_with("tRNS")) result += data.substr(0, length);
    data.remove_prefix(length);
  }
  return result;
}

// A file that ends early is shown as far as it goes.
static cairo_surface_t *read_jpeg(Bytes data, Account &account) {
  const std::unique_ptr<void, int (*)(tjhandle)> handle(tjInitDecompress(), tjDestroy);
  int width = 0, height = 0, sampling = 0, colors = 0;
  // A progressive picture goes through its pixels with each scan, which may be a few bytes.
  uint64_t scans = 1;
  for (size_t at = 0; (at = data.find("\xFF\xDA", at)) != Bytes::npos; ++at) ++scans;
  if (!handle ||
      tjDecompressHeader3(handle.get(), bytes_of(data), data.size(), &width, &height, &sampling,
                          &colors) != 0 ||
      !take(account, width, height, scans))
    return nullptr;
  cairo_surface_t *picture = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
  unsigned char *pixels = cairo_image_surface_get_data(picture);
  const int stride = cairo_image_surface_get_stride(picture);
  const bool is_inks = colors == TJCS_CMYK || colors == TJCS_YCCK; // a pixel has four bytes, too
  const bool is_read =
      pixels && (tjDecompress2(handle.get(), bytes_of(data), data.size(), pixels, width, stride,
                               height, is_inks ? TJPF_CMYK : TJPF_BGRX, 0) == 0 ||
                 tjGetErrorCode(handle.get()) == TJERR_WARNING);
  if (is_read && is_inks) inks_to_colors(pixels, pixels + static_cast<ptrdiff_t>(stride) * height);
  cairo_surface_mark_dirty(picture);
  if (is_read) return picture;
  cairo_surface_destroy(picture);
  return nullptr;
}

// Inks are inverted, as in nearly all such files.
static void inks_to_colors(unsigned char *pixel, const unsigned char *end) {
  for (; pixel < end; pixel += 4) {
    const int black = pixel[3];
    const auto rgb = static_cast<uint32_t>((pixel[0] * black / 255) << 16 |
                                           (pixel[1] * black / 255) << 8 | pixel[2] * black / 255);
    memcpy(pixel, &rgb, sizeof rgb);
  }
}
