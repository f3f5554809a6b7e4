// schema.h: the reader's schema as the tool shows it: --schema, and the names that printers need.
#ifndef TOOLS_SCHEMA_H
#define TOOLS_SCHEMA_H

#include <cstdio>

#include "svg/svg.h"

const char *element_name(int id);
const char *row_name(int row);

// Text of a color extension's space ("icc-color").
const char *color_space_name(int colortype);

// MIME type of embedded data (SVG_MIME_*).
const char *mime_text(int mime);

// The values of a color extension, without leading slot and terminator.
struct ColorValues {
  const double *first;
  int count;
};
ColorValues color_values(const svg_color &color);

// Writes the tables as one JSON object.
void print_schema(FILE *out);

#endif
