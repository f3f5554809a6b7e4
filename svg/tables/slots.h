// slots.h: where a begin hook finds the values of its element's attributes.
//
// Every element has an area of slots, one pointer for each of its attributes with SVG_AF_ATTRIBUTE,
// in the order of its attribute list.
#ifndef SVG_TABLES_SLOTS_H
#define SVG_TABLES_SLOTS_H

#include "svg/tables/attributes.h"
#include "svg/tables/elements.h"

namespace svg_tables {

struct slot_areas {
  int16_t offset[SVG_ATTR_COUNT][SVG_ELEM_COUNT]; // in bytes, -1 for none
  uint32_t size[SVG_ELEM_COUNT];
};

constexpr slot_areas make_slots() {
  slot_areas slots = {};
  for (auto &row : slots.offset)
    for (int16_t &offset : row) offset = -1;
  for (int id = 0; id < SVG_ELEM_COUNT; id++)
    for (const svg_esa_entry &entry : ELEMENTS[id].attributes)
      if (ATTRIBUTES[entry.attr].flags & SVG_AF_ATTRIBUTE) {
        slots.offset[entry.attr][id] = static_cast<int16_t>(slots.size[id]);
        slots.size[id] += sizeof(svg_a_node *);
      }
  return slots;
}

inline constexpr slot_areas SLOTS = make_slots();

} // namespace svg_tables

#endif
