// schema.h: the reader's schema as the tool shows it: --schema, and the names that printers need.
#ifndef TOOLS_SCHEMA_H
#define TOOLS_SCHEMA_H

#include <cstdio>

#include "svg/svg.h"

// A value as the record that svg_get_record_kind tells.
template <class Record> const Record *as(const svg_a_node *value) {
  return reinterpret_cast<const Record *>(value);
}

const char *element_name(int id);
const char *row_name(int row);

// Writes the tables as one JSON object, on one line unless pretty.
void print_schema(FILE *out, bool pretty);

#endif
