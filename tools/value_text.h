// value_text.h: values as a person would write them.
#ifndef TOOLS_VALUE_TEXT_H
#define TOOLS_VALUE_TEXT_H

#include <string>
#include <string_view>

#include "tools/drawing.h"

// A number: exact, as the shortest text that reads back to the same double, else with the nine
// digits that a person can use.
std::string number_text(double value, bool exact);

// "#1a2b3c"
std::string rgb_text(uint32_t rgb);

// The beginning of a text that is shown: some 200 bytes of whole characters, all of it when full.
std::string_view shown_part(std::string_view text, bool full);

// Text in quotes on one line, cut after some 200 bytes unless full.
std::string quoted_text(std::string_view text, bool full);

// Text with its control bytes escaped, cut after some 200 bytes unless full: a name that many
// elements refer to must not be printed whole for each.
std::string short_text(std::string_view text, bool full);

// The IRI that a value holds, or null; "none" is none.
const svg_iri *value_iri(const svg_a_node *value);

// "#id", the text of an outside IRI, or "data: " with the type and size of embedded data.
std::string iri_text(const Drawing &drawing, const svg_iri &iri, bool full);

// "image/png, 79 bytes"
std::string data_text(const Drawing &drawing, const svg_iri &iri);

// Type of embedded data (SVG_MIME_*) for a person.
const char *mime_text(int mime);

// A value. Numbers and long lists, paths and names are shortened unless full.
std::string value_text(const Drawing &drawing, const svg_a_node *value, bool full);

// Where an element's value came from: "style", "sheet: SELECTOR"; "" for an attribute.
std::string source_text(const Drawing &drawing, const svg_e_node *element, const svg_a_node *value,
                        bool full);

#endif
