// svg_text.h: values as plain SVG writes them: numbers as short as the precision of a float allows.
#ifndef TOOLS_SVG_TEXT_H
#define TOOLS_SVG_TEXT_H

#include <string>
#include <string_view>

#include "scene/svg_scene.h"

void append_number(std::string &out, double value);
std::string svg_number(double value);

// With a blank between each and the next one.
std::string svg_numbers(const double *values, size_t count);

// " NAME="VALUE"", escaped.
void append_attribute(std::string &out, std::string_view name, std::string_view value);
void append_attribute(std::string &out, std::string_view name, double value);

// Nothing for the identity.
void append_matrix(std::string &out, std::string_view name, const double matrix[6]);

// The markup of character data.
std::string escaped_text(std::string_view text);

// The value of "d". Numbers that path data cannot hold become the nearest ones that it can.
std::string path_text(const svg_pada *runs, size_t count);

// "#rgb" or "#rrggbb", with the extension; a named color is written without it, because its profile
// is not known.
std::string svg_color_text(uint32_t rgb, const svg_color *color);

// Attributes of a stroke that is not none, and of a font, where they are not initial. Lengths are
// in user units.
void append_stroke_style(std::string &out, const svg_scene_style &style);
void append_text_style(std::string &out, const svg_scene_style &style);

// "data:image/png;base64,..."
std::string data_uri(int mime, const unsigned char *data, size_t size);

#endif
