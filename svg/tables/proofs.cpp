// proofs.cpp: what the compiler checks of the schema: that its parts agree, that no published
// number has moved, and the sizes of records that cross the library's border (of 64-bit hosts).
#include <type_traits>

#include "svg/svg.h"
#include "svg/tables/schema.h"

using namespace svg_tables;

static constexpr bool has(uint32_t flags, uint32_t flag) { return (flags & flag) != 0; }

static constexpr bool any_of(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

// ---- Rows ---------------------------------------------------------------------------------------

// A row stands at its number.
static_assert([] {
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (ATTRIBUTES[row].row != row) return false;
  for (int id = 0; id < SVG_ELEM_COUNT; ++id)
    if (ELEMENTS[id].id != id) return false;
  return true;
}());

static constexpr bool is_sound(const attribute &row) {
  const bool is_property = IS_PROPERTY[static_cast<size_t>(row.row)];
  const bool inherits = any_of(row.name, {"transform", "xml:base", "xml:space"});
  const bool has_no_slot =
      any_of(row.name, {"class", "id", "name", "style", "xml:base", "xml:id", "xml:space"});
  const std::span keys(row.keys, static_cast<size_t>(count_texts(row.keys)));
  return has(row.flags, PROP) == (is_property || inherits) &&
         has(row.flags, ATTR) != (is_property || has_no_slot) && row.prio >= 1 && row.prio <= 6 &&
         std::ranges::all_of(keys, [&](std::string_view key) {
           return std::ranges::count(keys, key, [](auto k) { return std::string_view(k); }) == 1;
         });
}

static_assert(std::ranges::all_of(ATTRIBUTES, is_sound));

// The numbers that svg_names.h knows are those of the rows so named.
static constexpr bool is_named(int row, std::string_view name) {
  return ATTRIBUTES[row].name == name;
}

#define SVG_ASSERT_NAME(property, row) static_assert(is_named(row, DASHED<#property>.text));
SVG_PROPERTIES(SVG_ASSERT_NAME)

// The name of an attribute, or its end where a name of elements stands before it.
static constexpr bool ends_like(int row, std::string_view name) {
  const std::string_view full = ATTRIBUTES[row].name;
  if (IS_PROPERTY[static_cast<size_t>(row)] || full.size() > name.size()) return false;
  const auto same_or_underscore = [](char a, char b) {
    return a == b || (b == '_' && (a == '-' || a == ':'));
  };
  const size_t before = name.size() - full.size();
  return (before == 0 || name[before - 1] == '_') &&
         std::ranges::equal(full, name.substr(before), same_or_underscore);
}

#define SVG_ASSERT_ATTRIBUTE(name, row) static_assert(ends_like(row, #name));
SVG_ATTRIBUTES(SVG_ASSERT_ATTRIBUTE)

// Lists of keywords hold keywords only, and every keyword is in some list.
static_assert([] {
  bool is_listed[SVG_KW_COUNT] = {};
  for (const svg_key_entry &entry : KEYS.entries) is_listed[entry.id] = true;
  return std::ranges::find(is_listed + 1, std::end(is_listed), false) == std::end(is_listed) &&
         !is_listed[SVG_KW_NONE];
}());

// ---- Elements -----------------------------------------------------------------------------------

// A row that an element names has the name beside it; and "id", as which "xml:id" is found, is in
// every list.
static_assert(std::ranges::all_of(ELEMENTS, [](const element &row) {
  return has(row.groups, CORE) && std::ranges::all_of(row.own, [](const own_attribute &own) {
           return own.row < 0 || is_attribute(ATTRIBUTES[own.row], own.name);
         });
}));

// ---- Published numbers --------------------------------------------------------------------------

namespace {

// Drawing modules are built with the numbers of rows, elements and keywords, and with the places of
// attributes in lists and slots. What comes later must leave all of them as they are.
struct digest { // FNV-1a
  uint64_t value = 0xCBF29CE484222325;

  constexpr void add(std::string_view text) {
    for (const char c : text) value = (value ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  }
  constexpr void add(int number) {
    const char bytes[] = {static_cast<char>(number), static_cast<char>(number >> 8)};
    add({bytes, 2});
  }
};

} // namespace

static constexpr uint64_t PUBLISHED = [] {
  digest published;
  for (int row = 0; row < 147; ++row) published.add(ATTRIBUTES[row].name);
  for (int id = 0; id < 146; ++id) published.add(KEYWORDS[id]);
  for (int id = 0; id < 39; ++id) {
    const svg_elem_def &element = ELEMENT_TABLE.rows[id];
    published.add(element.name);
    for (int i = 0; i < element.esa_count; ++i) {
      const int row = element.esa_list[i].attr;
      if (row >= 147) continue;
      published.add(row);
      published.add(i);
      published.add(SLOTS.offset[row][id]);
      published.add(std::count(element.req_list, element.req_list + element.req_count, i) != 0);
    }
  }
  return published.value;
}();

static_assert(PUBLISHED == 0x25D16B7C13A72F2D);

// ---- Records ------------------------------------------------------------------------------------

// Records are plain data of a fixed size: hosts in C read them, and errors jump over them.
template <class Record> static constexpr bool is_record(size_t size) {
  return sizeof(Record) == size && std::is_standard_layout_v<Record> &&
         std::is_trivially_copyable_v<Record>;
}

// Nodes
static_assert(is_record<svg_e_node>(88) && is_record<svg_t_node>(24) && is_record<svg_a_node>(4));
static_assert(is_record<svg_css_attr>(24));

// Values
static_assert(is_record<svg_an_keyword>(8) && is_record<svg_an_color>(8));
static_assert(is_record<svg_an_number>(16) && is_record<svg_an_unum>(16));
static_assert(is_record<svg_an_key_number>(24) && is_record<svg_an_key_unum>(24));
static_assert(is_record<svg_an_aspect>(16) && is_record<svg_an_viewbox>(40));
static_assert(is_record<svg_an_clip>(48) && is_record<svg_an_string>(16));
static_assert(is_record<svg_an_name_list>(24) && is_record<svg_an_num_list>(24));
static_assert(is_record<svg_an_key_list>(24) && is_record<svg_an_unum_list>(32));
static_assert(is_record<svg_an_key_unum_list>(32) && is_record<svg_an_key_name_list>(32));
static_assert(is_record<svg_an_iri>(24) && is_record<svg_an_color_profile>(40));
static_assert(is_record<svg_an_path_data>(24) && is_record<svg_an_trafo>(56));
static_assert(is_record<svg_an_paint_rgb>(8) && is_record<svg_an_paint_iri>(24));
static_assert(is_record<svg_an_paint_color>(32));

// Parts of values, and fonts
static_assert(is_record<svg_iri>(16) && is_record<svg_color>(24) && is_record<svg_pada>(16));
static_assert(is_record<svg_font>(64));

// Rows of the tables
static_assert(is_record<svg_elem_def>(72) && is_record<svg_attr_def>(80));
static_assert(is_record<svg_esa_entry>(16) && is_record<svg_key_entry>(16));
