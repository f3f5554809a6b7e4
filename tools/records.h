// records.h: what every printer needs to look at a tree: records of values, and names.
#ifndef TOOLS_RECORDS_H
#define TOOLS_RECORDS_H

#include "svg/svg.h"

// A value as the record that svg_get_record_kind says it is.
template <class Record> const Record *as(const svg_a_node *value) {
  return reinterpret_cast<const Record *>(value);
}

inline const char *element_name(int id) { return svg_get_elem_table()[id].name; }

inline const char *row_name(int row) { return svg_get_attr_table()[row].name; }

inline const char *path_command(const svg_pada &segment) {
  static constexpr const char *commands[] = {"", "M", "L", "C", "Z"};
  return commands[segment.type];
}

// The keyword that stands after a paint's IRI, or null.
inline const char *fallback_keyword(const svg_iri &iri) {
  return iri.fallback == SVG_FALLBACK_NONE           ? "none"
         : iri.fallback == SVG_FALLBACK_CURRENTCOLOR ? "currentColor"
                                                     : nullptr;
}

#endif
