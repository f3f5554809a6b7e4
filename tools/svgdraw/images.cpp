// images.cpp: pictures embedded in a drawing: PNG, JPEG, and drawings inside of it. Nothing outside
// of the drawing is opened.
#include <turbojpeg.h>

#include <algorithm>
#include <cstring>

#include "tools/svgdraw/painter.h"

static constexpr int NESTING_MAX = 4;  // drawings in drawings
static constexpr int SIDE_MAX = 32767; // of an image in Cairo

namespace {

// What an image element shows: pixels, or a drawing that a second parser reads on the same core.
struct Picture {
  ort_core *core;
  const svg_scene_image *image;
  double width, height; // 0: there is nothing to show
  cairo_surface_t *surface;
  ort_file *file;
  ort_gz *gz;
  svg_parser *parser;
  svg_scene *scene;
};

} // namespace

static bool is_drawing(const svg_scene_image &image);
static void read_drawing(void *argument);
static uint64_t find_size(Picture &picture, int &colors);
static void read_pixels(Picture &picture, int colors);
static bool read_png(Picture &picture);
static bool read_jpeg(Picture &picture, bool inks);

void Painter::image(const svg_scene_image &image) {
  if (hidden() || !can_apply(cairo_, image.item.matrix)) return;
  Picture picture = {core_, &image, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr};
  const bool drawing = image.data && is_drawing(image);
  uint64_t pixels = 0;
  if (!image.data) {
    account_.notes.insert("images outside of the drawing are not opened");
  } else if (drawing) {
    if (account_.nesting == NESTING_MAX || ort_protect(core_, read_drawing, &picture) != 0)
      account_.notes.insert("an embedded drawing cannot be read, or lies too deep");
  } else {
    int colors = 0;
    const uint64_t count = find_size(picture, colors);
    if (count > 0 && !account_.take(pixels = count)) return;
    if (count > 0) read_pixels(picture, colors);
    if (!picture.surface)
      account_.notes.insert("an embedded image is no whole PNG, JPEG or SVG of a possible size");
  }
  double placed[6];
  if (picture.scene || picture.surface)
    svg_scene_place_image(&image, picture.width, picture.height, placed);
  if ((picture.scene || picture.surface) && picture.width > 0 && picture.height > 0 &&
      can_apply(cairo_, placed)) {
    cairo_save(cairo_);
    apply(cairo_, image.item.matrix);
    if (image.clipped != 0) {
      cairo_rectangle(cairo_, image.area[0], image.area[1], image.area[2], image.area[3]);
      cairo_clip(cairo_);
    }
    apply(cairo_, placed);
    if (drawing) {
      ++account_.nesting;
      Painter(core_, picture.scene, account_, target_).paint(cairo_, nullptr);
      --account_.nesting;
    } else {
      cairo_set_source_surface(cairo_, picture.surface, 0, 0);
      cairo_pattern_set_extend(cairo_get_source(cairo_), CAIRO_EXTEND_PAD);
      cairo_rectangle(cairo_, 0, 0, picture.width, picture.height);
      cairo_fill(cairo_);
    }
    cairo_restore(cairo_);
  }
  account_.give(pixels);
  cairo_surface_destroy(picture.surface);
  svg_scene_delete(picture.scene);
  svg_parser_delete(picture.parser);
  ort_gzclose(picture.gz);
  ort_fclose(picture.file);
}

// By the first bytes: the MIME types that drawings give are often wrong.
static bool is_drawing(const svg_scene_image &image) {
  const size_t head = std::min<size_t>(image.size, 256);
  return (image.size > 2 && image.data[0] == 0x1f && image.data[1] == 0x8b) ||
         (head > 0 && (image.data[0] & 0x80) == 0 && memchr(image.data, '<', head));
}

static void read_drawing(void *argument) {
  auto *p = static_cast<Picture *>(argument);
  p->file = ort_fopen_memory(p->core, "embedded drawing", p->image->data, p->image->size);
  if (ort_is_gzip(p->file)) p->gz = ort_gzopen(p->file);
  p->parser = svg_parser_new(p->core, 0, "embedded drawing", nullptr, nullptr, nullptr, 0, nullptr,
                             0, nullptr, nullptr);
  svg_e_node *svg =
      svg_parse(p->parser, p->file, &p->gz, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  svg_scene_options options = {};
  options.viewport_width = p->image->area[2];
  options.viewport_height = p->image->area[3];
  p->scene = svg_scene_new(p->parser, svg, &options);
  svg_scene_get_size(p->scene, &p->width, &p->height);
}

// The number of pixels; 0 when it cannot be known, or is too large.
static uint64_t find_size(Picture &picture, int &colors) {
  const unsigned char *data = picture.image->data;
  const size_t size = picture.image->size;
  int width = 0, height = 0, subsampling = 0;
  if (size >= 24 && memcmp(data, "\x89PNG\r\n\x1a\n", 8) == 0) {
    // PNG, 11.2.2: the first chunk begins with width and height.
    const auto number = [data](size_t at) {
      return data[at] << 24 | data[at + 1] << 16 | data[at + 2] << 8 | data[at + 3];
    };
    width = number(16);
    height = number(20);
    colors = -1;
  } else if (tjhandle handle = tjInitDecompress()) {
    tjDecompressHeader3(handle, data, size, &width, &height, &subsampling, &colors);
    tjDestroy(handle);
  }
  if (width < 1 || height < 1 || width > SIDE_MAX || height > SIDE_MAX) return 0;
  picture.width = width;
  picture.height = height;
  return static_cast<uint64_t>(width) * static_cast<uint64_t>(height);
}

static void read_pixels(Picture &picture, int colors) {
  const bool read = colors < 0 ? read_png(picture)
                               : read_jpeg(picture, colors == TJCS_CMYK || colors == TJCS_YCCK);
  if (read && cairo_surface_status(picture.surface) == CAIRO_STATUS_SUCCESS) return;
  cairo_surface_destroy(picture.surface);
  picture.surface = nullptr;
}

static bool read_png(Picture &picture) {
  struct Bytes {
    const unsigned char *data;
    size_t left;
  } bytes = {picture.image->data, picture.image->size};
  const auto read = [](void *user, unsigned char *buffer, unsigned length) {
    auto *source = static_cast<Bytes *>(user);
    if (length > source->left) return CAIRO_STATUS_READ_ERROR;
    memcpy(buffer, source->data, length);
    source->data += length;
    source->left -= length;
    return CAIRO_STATUS_SUCCESS;
  };
  picture.surface = cairo_image_surface_create_from_png_stream(read, &bytes);
  return true;
}

// A file that ends early is shown as far as it goes.
static bool read_jpeg(Picture &picture, bool inks) {
  const int width = static_cast<int>(picture.width), height = static_cast<int>(picture.height);
  picture.surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
  unsigned char *pixels = cairo_image_surface_get_data(picture.surface);
  const int stride = cairo_image_surface_get_stride(picture.surface);
  tjhandle handle = tjInitDecompress();
  // A pixel has four bytes either way.
  const bool read = handle && pixels &&
                    (tjDecompress2(handle, picture.image->data, picture.image->size, pixels, width,
                                   stride, height, inks ? TJPF_CMYK : TJPF_BGRX, 0) == 0 ||
                     tjGetErrorCode(handle) == TJERR_WARNING);
  if (handle) tjDestroy(handle);
  for (int y = 0; read && inks && y < height; ++y) {
    unsigned char *p = pixels + static_cast<ptrdiff_t>(y) * stride;
    for (int x = 0; x < width; ++x, p += 4) {
      // Inverted, as nearly all such files have their inks.
      const int black = p[3];
      const uint32_t rgb = static_cast<uint32_t>((p[0] * black / 255) << 16 |
                                                 (p[1] * black / 255) << 8 | p[2] * black / 255);
      memcpy(p, &rgb, 4);
    }
  }
  cairo_surface_mark_dirty(picture.surface);
  return read;
}
