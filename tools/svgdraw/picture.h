// picture.h: one picture of one drawing: its size, its surface, its file.
#ifndef TOOLS_SVGDRAW_PICTURE_H
#define TOOLS_SVGDRAW_PICTURE_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/drawing.h"

enum class PictureFormat { UNKNOWN, PNG, PDF, PS, SVG };

struct PictureSettings {
  PictureFormat format = PictureFormat::UNKNOWN;
  double width = 0, height = 0; // of the picture, in pixels; 0: as the drawing says
  bool keep_aspect = false;     // fit into width and height
  double scale = 1;
  double dpi = 96;
  double background[4] = {}; // red, green, blue, alpha, 0 to 1
  bool has_id = false;
  std::string id;               // of the one element to draw
  uint64_t pixels = 1 << 27;    // of the picture and its layers at a time
  uint64_t layers = 1ull << 32; // pixels of all layers ever made
};

// Draws a drawing into a file, "-" being standard output. What went wrong, and what was not drawn,
// is added to messages, with code 0 where it is no error of the library. False when there is no
// picture; then there is no file, either.
bool make_picture(const Drawing &drawing, const PictureSettings &settings, const std::string &path,
                  std::vector<Message> &messages);

#endif
