// lists.h: the attributes of each element, computed from elements.h, and where a begin hook finds
// their values.
//
// Both are in the order of rows: what a new row adds to an element comes last and moves nothing.
#ifndef SVG_TABLES_LISTS_H
#define SVG_TABLES_LISTS_H

#include <cstdlib>
#include <span>

#include "svg/tables/elements.h"

namespace svg_tables {

// ---- Who has what -------------------------------------------------------------------------------

// The one row of a name that is no property.
constexpr int find_row(const char *name) {
  int found = -1;
  for (const attribute &row : ATTRIBUTES)
    if (is_attribute(row, name)) {
      if (found >= 0) std::abort(); // stops the compiler: one of several rows must be chosen
      found = row.row;
    }
  if (found < 0) std::abort(); // no attribute has this name
  return found;
}

inline constexpr auto NEEDS = [] {
  std::array<std::array<need, SVG_ATTR_COUNT>, SVG_ELEM_COUNT> needs = {};
  const auto set = [&](const element &of, int row, need is) {
    need &known = needs[static_cast<size_t>(of.id)][static_cast<size_t>(row)];
    if (known != ABSENT) std::abort(); // an attribute is listed twice
    known = is;
  };
  for (const attribute_group &group : GROUPS)
    for (const char *name : group.names)
      if (const int row = name ? find_row(name) : -1; row >= 0)
        for (const element &of : ELEMENTS)
          if ((of.groups & group.bit) != 0) set(of, row, OPTIONAL);
  for (const element &of : ELEMENTS)
    for (const own_attribute &own : of.own)
      if (own.name) set(of, own.row < 0 ? find_row(own.name) : own.row, own.is);
  return needs;
}();

// ---- Lists --------------------------------------------------------------------------------------

inline constexpr size_t LISTED = [] {
  size_t total = 0;
  for (const auto &rows : NEEDS)
    for (const need is : rows) total += is != ABSENT;
  return total;
}();

// The lists one after the other. Required attributes are indexes into the list of their element.
struct attribute_lists {
  svg_esa_entry entries[LISTED];
  int16_t required[LISTED];
  struct {
    size_t first, count, first_required, required_count;
  } of[SVG_ELEM_COUNT];

  constexpr std::span<const svg_esa_entry> attributes(int id) const {
    return {entries + of[id].first, of[id].count};
  }
};

inline constexpr attribute_lists ATTRIBUTE_LISTS = [] {
  attribute_lists lists = {};
  size_t entries = 0, required = 0;
  for (size_t id = 0; id < NEEDS.size(); ++id) {
    auto &range = lists.of[id] = {entries, 0, required, 0};
    for (size_t row = 0; row < SVG_ATTR_COUNT; ++row) {
      const need is = NEEDS[id][row];
      if (is == ABSENT) continue;
      if (is == REQUIRED) lists.required[required++] = static_cast<int16_t>(range.count);
      lists.entries[entries++] = {ATTRIBUTES[row].name, static_cast<int16_t>(row)};
      ++range.count;
    }
    range.required_count = required - range.first_required;
  }
  return lists;
}();

// ---- Slots --------------------------------------------------------------------------------------

// Every element has an area of slots, one pointer for each of its attributes with
// SVG_AF_ATTRIBUTE.
struct slot_areas {
  int16_t offset[SVG_ATTR_COUNT][SVG_ELEM_COUNT]; // in bytes, -1 for none
  uint32_t size[SVG_ELEM_COUNT];
};

inline constexpr slot_areas SLOTS = [] {
  slot_areas slots = {};
  for (auto &row : slots.offset)
    for (int16_t &offset : row) offset = -1;
  for (int id = 0; id < SVG_ELEM_COUNT; ++id)
    for (const svg_esa_entry &entry : ATTRIBUTE_LISTS.attributes(id))
      if ((ATTRIBUTES[entry.attr].flags & SVG_AF_ATTRIBUTE) != 0) {
        slots.offset[entry.attr][id] = static_cast<int16_t>(slots.size[id]);
        slots.size[id] += sizeof(svg_a_node *);
      }
  return slots;
}();

} // namespace svg_tables

#endif
