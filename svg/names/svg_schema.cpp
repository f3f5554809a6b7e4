// svg_schema.cpp: look-ups in the schema by name.
//
// Names recur: those of a recording are resolved when they are new (svg_recording.cpp).
//
// Called by the content callbacks, the attribute dispatch and the style subsystems. Raises
// SVG_E_ELEMENT_REFUSED and SVG_E_PROPERTY_REFUSED for names that the host does not tolerate.
#include "svg/names/svg_schema.h"

#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "svg/names/svg_namespace.h"
#include "svg/svg.h"
#include "svg/tables/lists.h"

static void tell_skipped(svg_parser *p, svg_skipped what, const char *name, uint32_t line);

static constexpr uint32_t hash_name(const char *name) {
  uint32_t h = 0;
  for (; *name != '\0'; ++name) h = std::rotl(h, 5) ^ (static_cast<unsigned char>(*name) | 0x20U);
  return h * 0x9E3779B1U;
}

static const char *attribute_name(int row) { return svg_tables::ATTRIBUTES[row].name; }

namespace {

// What a name is the name of: ids and rows counted from 1; 0 is nothing.
struct meaning {
  int16_t element, attribute, property;
};

// All names of the schema. Letter case is ignored, and only hashes are compared: the caller
// checks the name of what is found. Of equal names in one table the first counts.
struct name_table {
  static constexpr size_t PLACES = 512;
  uint32_t hashes[PLACES] = {};
  meaning meanings[PLACES] = {};

  // The place of a hash, or the free one for it.
  constexpr size_t find_place(uint32_t h) const {
    size_t i = h >> (32 - std::bit_width(PLACES - 1));
    while (hashes[i] != 0 && hashes[i] != h) i = (i + 1) % PLACES;
    return i;
  }

  constexpr meaning find(const char *name) const { return meanings[find_place(hash_name(name))]; }

  // Stops the compiler when two names have one hash, or when it is that of free places.
  template <class Table>
  constexpr void add(const Table &table, int16_t meaning::*kind, auto is_in) {
    for (int row = static_cast<int>(std::size(table)) - 1; row >= 0; --row) {
      if (!is_in(row)) continue;
      const uint32_t h = hash_name(table[row].name);
      const size_t i = find_place(h);
      int16_t &known = meanings[i].*kind;
      if (h == 0 || (known != 0 && std::string_view(table[row].name) != table[known - 1].name))
        std::abort();
      hashes[i] = h;
      known = static_cast<int16_t>(row + 1);
    }
  }
};

} // namespace

static constexpr bool is_property(int row) {
  return svg_tables::IS_PROPERTY[static_cast<size_t>(row)];
}

static constexpr name_table names = [] {
  name_table all;
  all.add(svg_tables::ELEMENTS, &meaning::element, [](int) { return true; });
  all.add(svg_tables::ATTRIBUTES, &meaning::attribute, [](int row) { return !is_property(row); });
  all.add(svg_tables::ATTRIBUTES, &meaning::property, is_property);
  return all;
}();

// Places in the attribute lists, by element and by the first row of the attribute's name.
static constexpr auto esa_indexes = [] {
  std::array<std::array<int16_t, SVG_ATTR_COUNT>, SVG_ELEM_COUNT> indexes;
  for (size_t id = 0; id < indexes.size(); ++id) {
    indexes[id].fill(-1);
    int16_t i = 0;
    for (const svg_esa_entry &entry :
         svg_tables::ATTRIBUTE_LISTS.attributes(static_cast<int>(id))) {
      int16_t &place = indexes[id][static_cast<size_t>(names.find(entry.name).attribute - 1)];
      if (place >= 0) std::abort(); // stops the compiler: two rows of one name are in one list
      place = i++;
    }
  }
  return indexes;
}();

static int element_of(meaning found, const char *name);
static int attribute_of(meaning found, const char *name);
static int property_of(meaning found, const char *name);

int svg_find_element(const char *name) {
  if (*name == 's' && std::strncmp(name, "svg:", 4) == 0) name += 4;
  return element_of(names.find(name), name);
}

const char *svg_elem_name(int id) { return svg_tables::ELEMENTS[id].name; }

int svg_find_prop(const char *name) { return property_of(names.find(name), name); }

int svg_find_esa(const svg_scanner *p, const char *name, int element) {
  if (std::strcmp(name, "xml:id") == 0) name = "id";
  const int row = names.find(name).attribute - 1;
  return row >= 0 && svg_strcmp(p, name, attribute_name(row)) == 0 ? svg_get_esa_index(element, row)
                                                                   : -1;
}

int svg_get_esa_index(int element, int attribute) {
  return attribute < 0 ? -1
                       : esa_indexes[static_cast<size_t>(element)][static_cast<size_t>(attribute)];
}

svg_name svg_resolve_name(svg_parser *p, const char *text) {
  const char *local;
  const int32_t type = svg_decomp_fullname(p, text, nullptr, &local);
  const meaning found = names.find(local);
  int element = -1, attribute = -1;
  if (type == SVG_NS_SVG)
    element = *local == 's' ? svg_find_element(local) : element_of(found, local);
  if (type != SVG_NS_OTHER) {
    const char *internal = svg_get_internal_name(type, local);
    attribute = attribute_of(internal == local ? found : names.find(internal), internal);
  }
  return {.text = text,
          .length = static_cast<uint32_t>(std::strlen(text)),
          .local_at = static_cast<uint32_t>(local - text),
          .type = static_cast<int16_t>(type),
          .element = static_cast<int16_t>(element),
          .attribute = static_cast<int16_t>(attribute),
          .property = static_cast<int16_t>(property_of(found, local))};
}

static int element_of(meaning found, const char *name) {
  const int id = found.element - 1;
  return id >= 0 && ort_strcmp(name, svg_elem_name(id)) == 0 ? id : -1;
}

static int attribute_of(meaning found, const char *name) {
  const int row = found.attribute - 1;
  return row >= 0 && ort_strcmp(name, attribute_name(row)) == 0 ? row : -1;
}

static int property_of(meaning found, const char *name) {
  const int row = found.property - 1;
  return row >= 0 && ort_stricmp_a(name, attribute_name(row)) == 0 ? row : -1;
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
