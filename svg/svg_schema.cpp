// svg_schema.cpp: look-ups in the schema by name. They run for every tag and attribute of a
// document.
//
// Called by the content callbacks, the attribute dispatch and the style subsystems. Raises 10020
// and 10021 for names that the host does not tolerate.
#include "svg/svg_schema.h"

#include <array>
#include <cstring>

#include "svg/tables/attributes.h"

// The i from 0 to count - 1 for which compare(i) is 0, or -1. compare(i) tells where the searched
// name sorts relative to item i.
template <class Compare> static int find(int count, Compare compare) {
  int lower = 0, upper = count;
  while (lower != upper) {
    const int probe = (lower + upper) / 2;
    const int order = compare(probe);
    if (order == 0) return probe;
    if (order < 0)
      upper = probe;
    else
      lower = probe + 1;
  }
  return -1;
}

int svg_find_element(const char *name) {
  if (std::strncmp(name, "svg:", 4) == 0) name += 4;
  return find(SVG_ELEM_COUNT, [&](int i) { return ort_strcmp(name, svg_elem_table[i].name); });
}

int svg_find_prop(const char *name) {
  return find(SVG_PROP_COUNT, [&](int i) { return ort_stricmp_a(name, svg_attr_table[i].name); });
}

int svg_find_string(const char *name, const char *const *list, int32_t count) {
  return find(count, [&](int i) { return ort_stricmp_a(name, list[i]); });
}

int svg_find_esa(const svg_parser *p, const char *name, const svg_esa_entry *esa_list,
                 int32_t esa_count) {
  if (std::strcmp(name, "xml:id") == 0) name = "id";
  return find(esa_count, [&](int i) { return svg_strcmp(p, name, esa_list[i].name); });
}

int svg_strcmp(const svg_parser *p, const char *a, const char *b) {
  return p->css_mode ? ort_stricmp_a(a, b) : ort_strcmp(a, b);
}

void svg_find_nottol_element(svg_parser *p, const char *name) {
  if (svg_find_string(name, p->nottol_elements, p->nottol_elements_num) >= 0)
    ort_ascii_error(p->core, 10020, 2, p->filename, name, nullptr, nullptr);
}

void svg_find_nottol_property(svg_parser *p, const char *name) {
  if (svg_find_string(name, p->nottol_props, p->nottol_props_num) >= 0)
    ort_ascii_error(p->core, 10021, 2, p->filename, name, nullptr, nullptr);
}

// ---- Record kinds -------------------------------------------------------------------------------

static constexpr auto KINDS = [] {
  std::array<uint8_t, SVG_ATTR_COUNT> kinds = {};
  for (size_t row = 0; row < kinds.size(); row++)
    kinds[row] = static_cast<uint8_t>(svg_tables::ATTRIBUTES[row].type.kind);
  return kinds;
}();

svg_record_kind svg_get_record_kind(int32_t row) {
  return row >= 0 && row < SVG_ATTR_COUNT
             ? static_cast<svg_record_kind>(KINDS[static_cast<size_t>(row)])
             : SVG_RECORD_NONE;
}

// ---- Values by name -----------------------------------------------------------------------------

const svg_a_node *svg_find_value(const svg_e_node *element, const char *name) {
  for (int32_t i = element->values_num - 1; i >= 0; i--)
    if (ort_strcmp(svg_attr_table[element->values[i]->row].name, name) == 0)
      return element->values[i];
  return nullptr;
}

// ---- The tables for hosts -----------------------------------------------------------------------

const svg_attr_def *svg_get_attr_table() { return svg_attr_table; }

const svg_elem_def *svg_get_elem_table() { return svg_elem_table; }

const char *svg_get_keyword_text(int32_t id) {
  return id >= 0 && id < SVG_KW_COUNT ? svg_keyword_texts[id] : nullptr;
}
