// svg_schema.h: look-ups by name over the tables of elements, attributes and keywords.
//
// Only the checks against the host's lists raise (SVG_E_ELEMENT_REFUSED, SVG_E_PROPERTY_REFUSED).
#ifndef SVG_SCHEMA_H
#define SVG_SCHEMA_H

#include "svg/parser/svg_parser.h"

// Element id of a local name, a leading "svg:" apart, or -1. Case-sensitive.
int svg_find_element(const char *name);
const char *svg_elem_name(int id);
// Row of a property, ignoring ASCII case, or -1.
int svg_find_prop(const char *name);
// Index in a list sorted ignoring ASCII case, or -1.
int svg_find_string(const char *name, const char *const *list, int32_t count);
// Index in the attribute list of an element, or -1. "xml:id" is found as "id".
int svg_find_esa(const svg_scanner *p, const char *name, int element);
int svg_get_esa_index(int element, int attribute); // of a svg_name; -1 where it has none
// Comparison of names in values: ignoring ASCII case while css_mode is set.
int svg_strcmp(const svg_scanner *p, const char *a, const char *b);

// ---- Names of the document ----------------------------------------------------------------------

// A name as Expat tells it, taken apart and looked up.
struct svg_name {
  const char *text;  // namespace, "*" and local name; without a namespace the local name
  uint32_t length;   // of the text
  uint32_t local_at; // in the text
  int16_t type;      // SVG_NS_*
  int16_t element;   // id, or -1
  int16_t attribute; // for svg_get_esa_index, or -1
  int16_t property;  // row, or -1
  const char *local() const { return text + local_at; }
};

// An attribute of a start tag. After the last one comes one without a name.
struct svg_given_attr {
  const svg_name *name;
  const char *text;
};

svg_name svg_resolve_name(svg_parser *p, const char *text); // keeps the text

// ---- Names that are skipped ---------------------------------------------------------------------

// Tell the host of a name that is skipped, and raise SVG_E_ELEMENT_REFUSED / SVG_E_PROPERTY_REFUSED
// when it does not tolerate the name.
void svg_skip_element_name(svg_parser *p, const char *name, uint32_t line);
void svg_skip_property_name(svg_parser *p, svg_skipped what, const char *name);

#endif
