// svg_record.h: the record of a value node. The node's row tells which it is.
#ifndef SVG_RECORD_H
#define SVG_RECORD_H

#include "svg/svg_records.h"

template <class Record> Record *svg_record(svg_a_node *node) {
  return reinterpret_cast<Record *>(node);
}
template <class Record> const Record *svg_record(const svg_a_node *node) {
  return reinterpret_cast<const Record *>(node);
}

#endif
