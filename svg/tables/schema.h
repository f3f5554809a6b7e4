// schema.h: the tables as the reader and its hosts see them, computed from the facts of the other
// headers, but for the functions: svg/values/svg_types.cpp and svg/tree/svg_elements.cpp add them.
#ifndef SVG_TABLES_SCHEMA_H
#define SVG_TABLES_SCHEMA_H

#include "svg/tables/lists.h"

namespace svg_tables {

// The number of texts in a list that null fills up.
template <size_t Capacity> constexpr int count_texts(const char *const (&texts)[Capacity]) {
  int count = 0;
  for (const char *text : texts) count += text != nullptr;
  return count;
}

// ---- Attributes ---------------------------------------------------------------------------------

constexpr int KEY_TOTAL = [] {
  int total = 0;
  for (const attribute &row : ATTRIBUTES) total += count_texts(row.keys);
  return total;
}();

// The keyword lists of all rows, one after the other.
struct key_lists {
  svg_key_entry entries[KEY_TOTAL];
};

constexpr key_lists make_keys() {
  key_lists lists = {};
  svg_key_entry *entry = lists.entries;
  for (const attribute &row : ATTRIBUTES)
    for (int i = 0; i < count_texts(row.keys); ++i) {
      const int id = keyword_id(row.keys[i]);
      *entry++ = {KEYWORDS[id], id};
    }
  return lists;
}

inline constexpr key_lists KEYS = make_keys();

struct attribute_table {
  svg_attr_def rows[SVG_ATTR_COUNT];
};

constexpr attribute_table make_attribute_table() {
  attribute_table table = {};
  const svg_key_entry *keys = KEYS.entries;
  for (int i = 0; i < SVG_ATTR_COUNT; ++i) {
    const attribute &row = ATTRIBUTES[i];
    const int key_count = count_texts(row.keys);
    table.rows[i] = {.name = row.name,
                     .default_text = row.default_text,
                     .value_size = 0,
                     .anew = nullptr,
                     .ctor = nullptr,
                     .dtor = nullptr,
                     .prio = row.prio,
                     .key_count = static_cast<uint32_t>(key_count),
                     .keys = key_count > 0 ? keys : nullptr,
                     .flags = row.flags,
                     .group = row.group,
                     .apo = row.flags & SVG_AF_ATTRIBUTE ? SLOTS.offset[i] : nullptr};
    keys += key_count;
  }
  return table;
}

inline constexpr attribute_table ATTRIBUTE_TABLE = make_attribute_table();

// ---- Elements -----------------------------------------------------------------------------------

struct element_table {
  svg_elem_def rows[SVG_ELEM_COUNT];
};

constexpr element_table make_element_table() {
  element_table table = {};
  for (int id = 0; id < SVG_ELEM_COUNT; ++id) {
    const element &row = ELEMENTS[id];
    const auto &range = ATTRIBUTE_LISTS.of[id];
    const int16_t *required = ATTRIBUTE_LISTS.required + range.first_required;
    table.rows[id] = {.name = row.name,
                      .beg_hook = nullptr,
                      .end_hook = nullptr,
                      .esa_count = static_cast<int32_t>(range.count),
                      .esa_list = ATTRIBUTE_LISTS.entries + range.first,
                      .req_count = static_cast<int32_t>(range.required_count),
                      .req_list = range.required_count > 0 ? required : nullptr,
                      .slot_size = SLOTS.size[id],
                      .category = row.category,
                      .kind = row.kind};
  }
  return table;
}

inline constexpr element_table ELEMENT_TABLE = make_element_table();

} // namespace svg_tables

#endif
