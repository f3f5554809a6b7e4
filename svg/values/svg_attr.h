// svg_attr.h: from the text of one attribute or property to a value of the element being built.
#ifndef SVG_ATTR_H
#define SVG_ATTR_H

#include "svg/parser/svg_parser.h"

constexpr uint32_t SVG_LINE_BEING_READ = UINT32_MAX;

// Parses text by its row; the result is new_value (null for none), which the caller takes over. A
// bad value is a warning.
void svg_parse_attr(svg_parser *p, int32_t row, const char *text, uint32_t line);
void svg_add_attr(svg_parser *p, const svg_elem_def *element, int esa_index, const char *text);
void svg_add_prop(svg_parser *p, const char *name, const char *text);
void svg_add_prop_row(svg_parser *p, int32_t row, const char *name, const char *text);

// Takes over new_value, which is one of a property: the parser owns it, because elements may share
// it.
void svg_keep_prop(svg_parser *p, svg_a_node *value);

// Adds a value to those of the element being built and tells the observer. new_value, which may
// have been its owner, is null afterwards.
void svg_collect_value(svg_parser *p, svg_a_node *value, const char *selector);

#endif
