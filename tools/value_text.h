// value_text.h: values as a person would write them.
#ifndef TOOLS_VALUE_TEXT_H
#define TOOLS_VALUE_TEXT_H

#include <string>
#include <string_view>

#include "tools/drawing.h"

// Shortest text that reads back to the same double.
std::string number_text(double value);

// "px", "%", ...; "" for none.
const char *unit_text(int unit);

// "#1a2b3c"
std::string rgb_text(uint32_t rgb);

// Text in double quotes on one line: control bytes, quotes and backslashes escaped.
std::string quoted(std::string_view text);

// A value. Long lists and paths are shortened unless full.
std::string value_text(const Drawing &drawing, const svg_a_node *value, bool full);

#endif
