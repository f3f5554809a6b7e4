// picture.h: one picture of one drawing: its size, its surface, its file.
#ifndef TOOLS_SVGDRAW_PICTURE_H
#define TOOLS_SVGDRAW_PICTURE_H

#include <cairo.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/drawing.h"

struct PictureFormat {
  const char *name; // also the ending of a file's
  // Makes a surface of so many points that keeps what is drawn; null: pixels are drawn.
  cairo_surface_t *(*make)(cairo_write_func_t, void *, double, double);
};

// Null when there is none of that name, whatever its case.
const PictureFormat *find_format(const std::string &name);

struct PictureSettings {
  const PictureFormat *format = nullptr;
  double width = 0, height = 0; // of the picture, in pixels; 0: as the drawing says
  bool keep_aspect = false;     // fit into width and height
  double scale = 1;
  double dpi = 96;
  double background[4] = {};     // red, green, blue, alpha, 0 to 1
  std::optional<std::string> id; // of the one element to draw
  uint64_t pixels = 1 << 28;     // of the picture and its layers at a time
  uint64_t painted = 1ULL << 33; // pixels of one color that could be painted in all the time
};

// What became of a picture. The messages tell what went wrong and what was not drawn; their code is
// 0 where it is no error of the library.
struct Picture {
  std::string name; // of the drawing
  std::vector<Message> messages;
  bool is_made = false; // else there is no file
};

// Draws a drawing into a file; "-" is standard input, and standard output.
Picture make_picture(const std::string &input, const ReadSettings &reading,
                     const PictureSettings &settings, const std::string &output);

#endif
