// svg_schema.cpp: look-ups in the schema by name. They run for every tag and attribute of a
// document.
//
// Called by the content callbacks, the attribute dispatch and the style subsystems. Raises
// SVG_E_ELEMENT_REFUSED and SVG_E_PROPERTY_REFUSED for names that the host does not tolerate.
#include "svg/names/svg_schema.h"

#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "svg/svg.h"
#include "svg/tables/lists.h"

static void tell_skipped(svg_parser *p, svg_skipped what, const char *name, uint32_t line);

static constexpr uint32_t hash_name(const char *name) {
  uint32_t h = 0;
  for (; *name != '\0'; ++name) h = std::rotl(h, 5) ^ (static_cast<unsigned char>(*name) | 0x20U);
  return h * 0x9E3779B1U;
}

// Rows of a table by name. Letter case is ignored, and only hashes are compared: the caller
// checks the name of the row that is found. Of equal names the first counts.
template <size_t Places> struct name_table {
  static_assert(std::has_single_bit(Places));
  uint32_t hashes[Places] = {};
  int16_t rows[Places] = {}; // counted from 1; 0: the place is free

  // The place of a hash, or the free one for it.
  constexpr size_t find_place(uint32_t h) const {
    size_t i = h >> (32 - std::bit_width(Places - 1));
    while (rows[i] != 0 && hashes[i] != h) i = (i + 1) % Places;
    return i;
  }

  template <class Table, class Filter> constexpr name_table(const Table &table, Filter is_in) {
    for (int row = static_cast<int>(std::size(table)) - 1; row >= 0; --row) {
      if (!is_in(row)) continue;
      const uint32_t h = hash_name(table[row].name);
      const size_t i = find_place(h);
      if (rows[i] != 0 && std::string_view(table[row].name) != table[rows[i] - 1].name)
        std::abort(); // stops the compiler: two names have one hash
      hashes[i] = h;
      rows[i] = static_cast<int16_t>(row + 1);
    }
  }

  // -1 when no name has this hash.
  constexpr int find(uint32_t h) const { return rows[find_place(h)] - 1; }
};

static constexpr bool is_property(int row) {
  return svg_tables::IS_PROPERTY[static_cast<size_t>(row)];
}

static const char *attribute_name(int row) { return svg_tables::ATTRIBUTES[row].name; }

static constexpr name_table<128> element_names{svg_tables::ELEMENTS, [](int) { return true; }};
static constexpr name_table<128> prop_names{svg_tables::ATTRIBUTES, is_property};
static constexpr name_table<256> attr_names{svg_tables::ATTRIBUTES,
                                            [](int row) { return !is_property(row); }};

// Places in the attribute lists, by element and by the first row of the attribute's name.
static constexpr auto esa_indexes = [] {
  std::array<std::array<int16_t, SVG_ATTR_COUNT>, SVG_ELEM_COUNT> indexes;
  for (size_t id = 0; id < indexes.size(); ++id) {
    indexes[id].fill(-1);
    int16_t i = 0;
    for (const svg_esa_entry &entry :
         svg_tables::ATTRIBUTE_LISTS.attributes(static_cast<int>(id))) {
      int16_t &place = indexes[id][static_cast<size_t>(attr_names.find(hash_name(entry.name)))];
      if (place >= 0) std::abort(); // stops the compiler: two rows of one name are in one list
      place = i++;
    }
  }
  return indexes;
}();

static int find_esa(const svg_scanner *p, const char *name, uint32_t hash, int element);
static int find_prop(const char *name, uint32_t hash);

int svg_find_element(const char *name) {
  if (*name == 's' && std::strncmp(name, "svg:", 4) == 0) name += 4;
  const int id = element_names.find(hash_name(name));
  return id >= 0 && ort_strcmp(name, svg_elem_name(id)) == 0 ? id : -1;
}

const char *svg_elem_name(int id) { return svg_tables::ELEMENTS[id].name; }

int svg_find_prop(const char *name) { return find_prop(name, hash_name(name)); }

int svg_find_esa(const svg_scanner *p, const char *name, int element) {
  return find_esa(p, name, hash_name(name), element);
}

int svg_find_esa_or_prop(const svg_scanner *p, const char *name, int element, int *prop) {
  const uint32_t hash = hash_name(name);
  const int index = find_esa(p, name, hash, element);
  *prop = index < 0 ? find_prop(name, hash) : -1;
  return index;
}

static int find_esa(const svg_scanner *p, const char *name, uint32_t hash, int element) {
  if (*name == 'x' && std::strcmp(name, "xml:id") == 0) name = "id", hash = hash_name("id");
  const int row = attr_names.find(hash);
  if (row < 0) return -1;
  const int i = esa_indexes[static_cast<size_t>(element)][static_cast<size_t>(row)];
  return i >= 0 && svg_strcmp(p, name, attribute_name(row)) == 0 ? i : -1;
}

static int find_prop(const char *name, uint32_t hash) {
  const int row = prop_names.find(hash);
  if (row < 0) return -1;
  const char *found = attribute_name(row);
  return ort_strcmp(name, found) == 0 || ort_stricmp_a(name, found) == 0 ? row : -1;
}

int svg_find_string(const char *name, const char *const *list, int32_t count) {
  int lower = 0, upper = count;
  while (lower != upper) {
    const int probe = (lower + upper) / 2;
    const int order = ort_stricmp_a(name, list[probe]);
    if (order == 0) return probe;
    if (order < 0)
      upper = probe;
    else
      lower = probe + 1;
  }
  return -1;
}

int svg_strcmp(const svg_scanner *p, const char *a, const char *b) {
  return p->css_mode ? ort_stricmp_a(a, b) : ort_strcmp(a, b);
}

void svg_skip_element_name(svg_parser *p, const char *name, uint32_t line) {
  tell_skipped(p, SVG_SKIPPED_ELEMENT, name, line);
  if (svg_find_string(name, p->nottol_elements, p->nottol_elements_num) >= 0)
    ort_ascii_error(p->core, SVG_E_ELEMENT_REFUSED, 2, p->filename, name);
}

void svg_skip_property_name(svg_parser *p, svg_skipped what, const char *name) {
  tell_skipped(p, what, name, 0);
  if (svg_find_string(name, p->nottol_props, p->nottol_props_num) >= 0)
    ort_ascii_error(p->core, SVG_E_PROPERTY_REFUSED, 2, p->filename, name);
}

static void tell_skipped(svg_parser *p, svg_skipped what, const char *name, uint32_t line) {
  if (p->skip_observer) p->skip_observer(p->skip_observer_user, what, name, line);
}

// ---- Rows ---------------------------------------------------------------------------------------

int32_t svg_is_property(int32_t row) {
  return row >= 0 && row < SVG_ATTR_COUNT && is_property(row) ? 1 : 0;
}

// ---- Values by name -----------------------------------------------------------------------------

const svg_a_node *svg_find_value(const svg_e_node *element, const char *name) {
  const svg_a_node *found = nullptr;
  for (int32_t i = element->values_num - 1; i >= 0; --i) {
    const svg_a_node *value = element->values[i];
    if (ort_strcmp(attribute_name(value->row), name) != 0) continue;
    if (value->important) return value;
    if (!found) found = value;
  }
  return found;
}

const char *svg_get_keyword_text(int32_t id) {
  return id >= 0 && id < SVG_KW_COUNT ? svg_tables::KEYWORDS[id] : nullptr;
}
