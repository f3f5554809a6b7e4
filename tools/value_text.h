// value_text.h: values as a person would write them.
#ifndef TOOLS_VALUE_TEXT_H
#define TOOLS_VALUE_TEXT_H

#include <span>
#include <string>
#include <string_view>

#include "svg/svg.h"

// What the text of a value takes from the drawing around it.
class Surroundings {
public:
  virtual ort_core *core() const = 0;
  virtual const svg_parser *parser() const = 0;
  virtual const char *waiting_name(const svg_iri *iri) const = 0; // the id of no element, or null

protected:
  ~Surroundings() = default;
};

// A number with nine digits, or exact: the shortest text that reads back to the same double.
std::string number_text(double value, bool exact);

// Numbers of one kind, such as a box, to six digits of the largest one, or exact.
std::string numbers_text(std::span<const double> values, const char *separator, bool exact);

// "#1a2b3c"
std::string rgb_text(uint32_t rgb);

// The part of a text that is shown: about 200 bytes of whole characters, all of it when full.
std::string_view shown_part(std::string_view text, bool full);

// Text in quotes on one line, cut after about 200 bytes unless full.
std::string quoted_text(std::string_view text, bool full);

// Escaped text, cut after about 200 bytes unless full: a name that many elements refer to must not
// be printed whole each time.
std::string short_text(std::string_view text, bool full);

// The IRI that a value holds; null also for "none".
const svg_iri *value_iri(const svg_a_node *value);

// "#id", the text of an outside IRI, or "data: " with the type and size of embedded data.
std::string iri_text(const Surroundings &drawing, const svg_iri &iri, bool full);

// "image/png, 79 bytes"
std::string data_text(const Surroundings &drawing, const svg_iri &iri);

// Type of embedded data (SVG_MIME_*), or "unknown type".
const char *mime_text(int mime);

// A value. Numbers and long lists, paths and names are shortened unless full.
std::string value_text(const Surroundings &drawing, const svg_a_node *value, bool full);

#endif
