// images.cpp: pictures embedded in a drawing: PNG, JPEG, and drawings inside of it. Nothing outside
// of the drawing is opened.
#include <turbojpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "tools/svgdraw/painter.h"

static constexpr int NESTING_MAX = 4;  // drawings in drawings
static constexpr int SIDE_MAX = 32767; // of an image in Cairo

namespace {

using Bytes = std::string_view;

// What the head of a picture tells.
struct Head {
  bool is_png = false;
  int width = 0, height = 0; // 0: it is no picture that can be read
  int colors = 0;            // of JPEG
  uint64_t passes = 1;       // in which its pixels are read
};

} // namespace

static bool is_drawing(Bytes data);
static Head read_head(Bytes data);
static cairo_surface_t *read_png(Bytes data);
static std::string needed_chunks(Bytes data);
static cairo_surface_t *read_jpeg(Bytes data, const Head &head);

static const unsigned char *bytes_of(Bytes data) {
  return reinterpret_cast<const unsigned char *>(data.data());
}

static Bytes data_of(const svg_scene_image &image) {
  return {reinterpret_cast<const char *>(image.data), image.size};
}

static uint32_t number_at(Bytes data, size_t at) {
  const unsigned char *b = bytes_of(data) + at;
  return static_cast<uint32_t>(b[0]) << 24 | static_cast<uint32_t>(b[1] << 16 | b[2] << 8 | b[3]);
}

void Painter::image(const svg_scene_image &image) {
  if (!enter(image.item.matrix)) return;
  if (image.clipped != 0) clip_to_box(cairo_, image.area);
  if (!image.data)
    account_.notes.insert("images outside of the drawing are not opened");
  else if (is_drawing(data_of(image)))
    draw_drawing(image);
  else
    draw_pixels(image);
  cairo_restore(cairo_);
}

void Painter::draw_drawing(const svg_scene_image &image) {
  if (account_.nesting == NESTING_MAX) {
    account_.notes.insert("drawings inside of each other are drawn 4 deep");
    return;
  }
  const Drawing inner(drawing_, image.data, image.size);
  account_.note_skipped(inner.notes());
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

void Painter::draw_pixels(const svg_scene_image &image) {
  const Bytes data = data_of(image);
  const Head head = read_head(data);
  const uint64_t pixels = static_cast<uint64_t>(head.width) * static_cast<uint64_t>(head.height);
  if (!account_.take(pixels, head.passes)) return;
  cairo_surface_t *picture = pixels == 0   ? nullptr
                             : head.is_png ? read_png(data)
                                           : read_jpeg(data, head);
  if (!picture || cairo_surface_status(picture) != CAIRO_STATUS_SUCCESS) {
    account_.notes.insert("an embedded image is no whole PNG, JPEG or SVG of a possible size");
  } else if (place(image, head.width, head.height)) {
    cairo_set_source_surface(cairo_, picture, 0, 0);
    cairo_pattern_set_extend(cairo_get_source(cairo_), CAIRO_EXTEND_PAD);
    cairo_rectangle(cairo_, 0, 0, head.width, head.height);
    cairo_fill(cairo_);
  }
  cairo_surface_destroy(picture);
  account_.give(pixels);
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
  return data.starts_with("\x1f\x8b") || (is_text && data.substr(0, 256).find('<') != Bytes::npos);
}

static Head read_head(Bytes data) {
  Head head;
  head.is_png = data.size() >= 24 && data.starts_with("\x89PNG\r\n\x1a\n");
  if (head.is_png) { // the first chunk begins with width and height (PNG, 11.2.2)
    head.width = static_cast<int>(number_at(data, 16));
    head.height = static_cast<int>(number_at(data, 20));
  } else if (tjhandle handle = tjInitDecompress()) {
    int subsampling = 0;
    tjDecompressHeader3(handle, bytes_of(data), data.size(), &head.width, &head.height,
                        &subsampling, &head.colors);
    tjDestroy(handle);
    // A progressive picture goes through its pixels with each scan, which may be a few bytes.
    for (size_t at = 0; (at = data.find("\xFF\xDA", at)) != Bytes::npos; ++at) ++head.passes;
  }
  if (head.width < 1 || head.height < 1 || head.width > SIDE_MAX || head.height > SIDE_MAX)
    head.width = head.height = 0;
  return head;
}

static cairo_surface_t *read_png(Bytes data) {
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
  constexpr size_t head = 8, around = 12; // length, name, sum
  std::string result(data.substr(0, head));
  for (data.remove_prefix(head); data.size() >= around;) {
    const size_t length = std::min<size_t>(number_at(data, 0) + around, data.size());
    const bool is_needed = (data[4] & 0x20) == 0 || data.substr(4).starts_with("tRNS");
    if (is_needed) result.append(data.substr(0, length));
    data.remove_prefix(length);
  }
  return result;
}

// A file that ends early is shown as far as it goes.
static cairo_surface_t *read_jpeg(Bytes data, const Head &head) {
  cairo_surface_t *picture =
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, head.width, head.height);
  unsigned char *pixels = cairo_image_surface_get_data(picture);
  const int stride = cairo_image_surface_get_stride(picture);
  const bool is_inks = head.colors == TJCS_CMYK || head.colors == TJCS_YCCK;
  const std::unique_ptr<void, int (*)(tjhandle)> handle(tjInitDecompress(), tjDestroy);
  // A pixel has four bytes either way.
  const bool is_read =
      handle && pixels &&
      (tjDecompress2(handle.get(), bytes_of(data), data.size(), pixels, head.width, stride,
                     head.height, is_inks ? TJPF_CMYK : TJPF_BGRX, 0) == 0 ||
       tjGetErrorCode(handle.get()) == TJERR_WARNING);
  if (!is_read) {
    cairo_surface_destroy(picture);
    return nullptr;
  }
  const unsigned char *end = pixels + static_cast<ptrdiff_t>(stride) * head.height;
  for (unsigned char *p = pixels; is_inks && p < end; p += 4) {
    // Inverted, as nearly all such files have their inks.
    const int black = p[3];
    const auto rgb = static_cast<uint32_t>((p[0] * black / 255) << 16 | (p[1] * black / 255) << 8 |
                                           p[2] * black / 255);
    memcpy(p, &rgb, 4);
  }
  cairo_surface_mark_dirty(picture);
  return picture;
}
