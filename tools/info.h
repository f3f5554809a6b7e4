// info.h: a drawing in a few lines.
#ifndef TOOLS_INFO_H
#define TOOLS_INFO_H

#include <cstdio>
#include <map>
#include <optional>
#include <string>

#include "tools/drawing.h"
#include "tools/scene.h"

// What a drawing is and holds. Elements are counted where they stand, whatever is painted.
struct Info {
  const char *title = nullptr; // null: none
  Point size = {};             // in pixels, 96 to the inch
  std::optional<Box> viewbox;
  size_t shapes = 0, texts = 0, images = 0, fonts = 0, links = 0, sheets = 0;
  // What the reader skips, by name.
  using Counts = std::map<std::string, size_t>;
  Counts elements, attributes, properties;
};
Info info_of(const Drawing &drawing);

double millimetres(double pixels);

void print_info(FILE *out, const Drawing &drawing, bool full);

#endif
