// proofs.cpp: what the compiler checks of the schema: orders that the look-ups rely on, numbers
// that others know, sizes of records that cross the library's border (of 64-bit hosts).
#include <algorithm>
#include <type_traits>

#include "svg/tables/schema.h"

using namespace svg_tables;

// ---- Orders -------------------------------------------------------------------------------------

static constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

static constexpr bool less(std::string_view a, std::string_view b) { return a < b; }

static constexpr bool less_ci(std::string_view a, std::string_view b) {
  return std::ranges::lexicographical_compare(a, b, {}, lower, lower);
}

// Each name sorts before the next, so that none occurs twice.
template <class Items, class Less, class Name>
static constexpr bool ascending(const Items &items, Less before, Name name) {
  return std::ranges::adjacent_find(items, [&](const auto &a, const auto &b) {
           return !before(name(a), name(b));
         }) == std::ranges::end(items);
}

static constexpr auto name_of = [](const auto &item) { return std::string_view(item.name); };
static constexpr auto text_of = [](const char *text) { return std::string_view(text); };
static constexpr std::span ELEMENT_ROWS = ELEMENT_TABLE.rows;
static constexpr std::span ATTRIBUTE_ROWS = ATTRIBUTE_TABLE.rows;
static constexpr std::span PROPERTIES = ATTRIBUTE_ROWS.first<SVG_PROP_COUNT>();
static constexpr std::span
    OTHER_ATTRIBUTES = // later ones follow behind, as their numbers must stay
    ATTRIBUTE_ROWS.subspan<SVG_PROP_COUNT, 101>();

static_assert(ascending(KEYWORDS, less, text_of));
static_assert(ascending(ELEMENT_ROWS, less, name_of));
static_assert(ascending(PROPERTIES, less_ci, name_of));
static_assert(std::ranges::is_sorted(OTHER_ATTRIBUTES, less, name_of));

// An attribute list is searched by row, and its rows are found by their names.
static_assert(std::ranges::all_of(ELEMENTS, [](const element &row) {
  const auto row_of = [](const svg_esa_entry &entry) { return entry.attr; };
  return ascending(row.attributes, std::ranges::less(), row_of) &&
         std::ranges::all_of(row.attributes, [](const svg_esa_entry &entry) {
           return std::string_view(entry.name) == ATTRIBUTES[entry.attr].name;
         });
}));

// ---- Constants of svg_names.h -------------------------------------------------------------------

struct constant {
  int value;
  std::string_view name;
};

// There is one constant for each text, and it is named like it.
template <class Constants, class Items, class Text>
static constexpr bool named(const Constants &constants, const Items &items, Text text) {
  int value = static_cast<int>(std::size(items) - std::size(constants));
  for (const constant &c : constants) {
    const std::string_view expected = text(std::data(items)[value]);
    if (c.value != value++ || !std::ranges::equal(c.name, expected, [](char a, char b) {
          return a == (b == '-' ? '_' : b);
        }))
      return false;
  }
  return true;
}

// clang-format off
#define ELEMENT(name)  constant{SVG_ELEM_##name, #name}
#define PROPERTY(name) constant{SVG_PROP_##name, #name}
#define KEYWORD(name)  constant{SVG_KW_##name, #name}
static constexpr constant ELEMENT_CONSTANTS[] = {
  ELEMENT(a), ELEMENT(circle), ELEMENT(clipPath), ELEMENT(color_profile), ELEMENT(defs),
  ELEMENT(desc), ELEMENT(ellipse), ELEMENT(font), ELEMENT(font_face), ELEMENT(font_face_src),
  ELEMENT(font_face_uri), ELEMENT(g), ELEMENT(glyph), ELEMENT(hkern), ELEMENT(image),
  ELEMENT(line), ELEMENT(linearGradient), ELEMENT(marker), ELEMENT(mask), ELEMENT(metadata),
  ELEMENT(missing_glyph), ELEMENT(path), ELEMENT(pattern), ELEMENT(polygon), ELEMENT(polyline),
  ELEMENT(radialGradient), ELEMENT(rect), ELEMENT(stop), ELEMENT(svg), ELEMENT(switch),
  ELEMENT(symbol), ELEMENT(text), ELEMENT(textPath), ELEMENT(title), ELEMENT(tref),
  ELEMENT(tspan), ELEMENT(use), ELEMENT(view), ELEMENT(vkern)};
static constexpr constant PROPERTY_CONSTANTS[] = {
  PROPERTY(background_color), PROPERTY(baseline_shift), PROPERTY(clip), PROPERTY(clip_path),
  PROPERTY(clip_rule), PROPERTY(color), PROPERTY(color_profile), PROPERTY(direction),
  PROPERTY(display), PROPERTY(fill), PROPERTY(fill_opacity), PROPERTY(fill_rule), PROPERTY(font),
  PROPERTY(font_family), PROPERTY(font_size), PROPERTY(font_size_adjust), PROPERTY(font_stretch),
  PROPERTY(font_style), PROPERTY(font_variant), PROPERTY(font_weight),
  PROPERTY(glyph_orientation_vertical), PROPERTY(kerning), PROPERTY(letter_spacing),
  PROPERTY(marker), PROPERTY(marker_end), PROPERTY(marker_mid), PROPERTY(marker_start),
  PROPERTY(mask), PROPERTY(opacity), PROPERTY(overflow), PROPERTY(stop_color),
  PROPERTY(stop_opacity), PROPERTY(stroke), PROPERTY(stroke_dasharray),
  PROPERTY(stroke_dashoffset), PROPERTY(stroke_linecap), PROPERTY(stroke_linejoin),
  PROPERTY(stroke_miterlimit), PROPERTY(stroke_opacity), PROPERTY(stroke_width),
  PROPERTY(text_anchor), PROPERTY(text_decoration), PROPERTY(unicode_bidi), PROPERTY(visibility),
  PROPERTY(word_spacing), PROPERTY(writing_mode)};
static constexpr constant KEYWORD_CONSTANTS[] = {
  KEYWORD(0), KEYWORD(100), KEYWORD(180), KEYWORD(200), KEYWORD(270), KEYWORD(300), KEYWORD(400),
  KEYWORD(500), KEYWORD(600), KEYWORD(700), KEYWORD(800), KEYWORD(90), KEYWORD(900), KEYWORD(A),
  KEYWORD(B), KEYWORD(G), KEYWORD(R), KEYWORD(all), KEYWORD(auto), KEYWORD(baseline),
  KEYWORD(bevel), KEYWORD(bidi_override), KEYWORD(blink), KEYWORD(block), KEYWORD(bold),
  KEYWORD(bolder), KEYWORD(butt), KEYWORD(caption), KEYWORD(collapse), KEYWORD(compact),
  KEYWORD(condensed), KEYWORD(currentColor), KEYWORD(cursive), KEYWORD(default), KEYWORD(defer),
  KEYWORD(discrete), KEYWORD(embed), KEYWORD(end), KEYWORD(evenodd), KEYWORD(expanded),
  KEYWORD(extra_condensed), KEYWORD(extra_expanded), KEYWORD(fantasy), KEYWORD(freeze),
  KEYWORD(gamma), KEYWORD(hidden), KEYWORD(icon), KEYWORD(identity), KEYWORD(inherit),
  KEYWORD(inline), KEYWORD(inline_table), KEYWORD(italic), KEYWORD(large), KEYWORD(larger),
  KEYWORD(lighter), KEYWORD(line_through), KEYWORD(linear), KEYWORD(list_item), KEYWORD(lr),
  KEYWORD(lr_tb), KEYWORD(ltr), KEYWORD(marker), KEYWORD(matrix), KEYWORD(medium), KEYWORD(meet),
  KEYWORD(menu), KEYWORD(message_box), KEYWORD(middle), KEYWORD(miter), KEYWORD(monospace),
  KEYWORD(narrower), KEYWORD(none), KEYWORD(nonzero), KEYWORD(normal), KEYWORD(objectBoundingBox),
  KEYWORD(oblique), KEYWORD(overline), KEYWORD(pad), KEYWORD(preserve), KEYWORD(rect),
  KEYWORD(reflect), KEYWORD(regular), KEYWORD(remove), KEYWORD(repeat), KEYWORD(rl),
  KEYWORD(rl_tb), KEYWORD(rotate), KEYWORD(round), KEYWORD(rtl), KEYWORD(run_in), KEYWORD(sRGB),
  KEYWORD(sans_serif), KEYWORD(scale), KEYWORD(scroll), KEYWORD(semi_condensed),
  KEYWORD(semi_expanded), KEYWORD(serif), KEYWORD(skewX), KEYWORD(skewY), KEYWORD(slice),
  KEYWORD(small), KEYWORD(small_caps), KEYWORD(small_caption), KEYWORD(smaller), KEYWORD(spacing),
  KEYWORD(spacingAndGlyphs), KEYWORD(square), KEYWORD(start), KEYWORD(status_bar),
  KEYWORD(strokeWidth), KEYWORD(sub), KEYWORD(super), KEYWORD(table), KEYWORD(table_caption),
  KEYWORD(table_cell), KEYWORD(table_column), KEYWORD(table_column_group),
  KEYWORD(table_footer_group), KEYWORD(table_header_group), KEYWORD(table_row),
  KEYWORD(table_row_group), KEYWORD(tb), KEYWORD(tb_rl), KEYWORD(translate), KEYWORD(transparent),
  KEYWORD(ultra_condensed), KEYWORD(ultra_expanded), KEYWORD(underline), KEYWORD(url),
  KEYWORD(userSpaceOnUse), KEYWORD(visible), KEYWORD(wider), KEYWORD(x_large), KEYWORD(x_small),
  KEYWORD(xMaxYMax), KEYWORD(xMaxYMid), KEYWORD(xMaxYMin), KEYWORD(xMidYMax), KEYWORD(xMidYMid),
  KEYWORD(xMidYMin), KEYWORD(xMinYMax), KEYWORD(xMinYMid), KEYWORD(xMinYMin), KEYWORD(xx_large),
  KEYWORD(xx_small)};
// clang-format on
static_assert(named(ELEMENT_CONSTANTS, ELEMENT_ROWS, name_of));
static_assert(named(PROPERTY_CONSTANTS, PROPERTIES, name_of));
static_assert(named(KEYWORD_CONSTANTS, KEYWORDS, text_of)); // from 1: KEYWORDS[0] is no keyword

// Numbers that drawing modules have been built with.
static_assert(SVG_ELEM_COUNT == 39 && SVG_PROP_COUNT == 46 && SVG_KW_COUNT == 1 + 145);
static_assert(SVG_KW_auto == 19 && SVG_KW_currentColor == 32 && SVG_KW_inherit == 49);
static_assert(SVG_KW_matrix == 63 && SVG_KW_none == 72 && SVG_KW_normal == 74);
static_assert(SVG_KW_rotate == 87 && SVG_KW_scale == 93 && SVG_KW_skewX == 98);
static_assert(SVG_KW_skewY == 99 && SVG_KW_translate == 124 && SVG_KW_url == 129);
static_assert(SVG_KW_xMidYMid == 139 && SVG_KW_xMinYMin == 143);
static_assert(name_of(ATTRIBUTES[SVG_ATTR_style]) == "style");
static_assert(name_of(ATTRIBUTES[SVG_ATTR_systemLanguage]) == "systemLanguage");
static_assert(name_of(ATTRIBUTES[SVG_ATTR_transform]) == "transform");

// ---- Rows ---------------------------------------------------------------------------------------

static constexpr bool any_of(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

static constexpr bool has(uint32_t flags, uint32_t flag) { return (flags & flag) != 0; }

static constexpr bool is_sound(const attribute &row) {
  const bool is_property = row.row < SVG_PROP_COUNT;
  const bool inherits = any_of(row.name, {"transform", "xml:base", "xml:space"});
  const bool has_no_slot =
      any_of(row.name, {"class", "id", "name", "style", "xml:base", "xml:id", "xml:space"});
  const std::span keys(row.keys, static_cast<size_t>(count_texts(row.keys)));
  return has(row.flags, PROP) == (is_property || inherits) &&
         has(row.flags, ATTR) != (is_property || has_no_slot) && row.prio >= 1 && row.prio <= 6 &&
         std::ranges::all_of(keys, [&](const char *key) {
           return std::ranges::count(keys, text_of(key), text_of) == 1;
         });
}

static_assert(std::ranges::all_of(ATTRIBUTES, is_sound));
static_assert([] {
  for (int i = 0; i < SVG_ATTR_COUNT; i++)
    if (ATTRIBUTES[i].row != i) return false;
  return true;
}());

// Lists hold keywords only, and every keyword is in some list.
static_assert(std::ranges::count(KEYS.entries, SVG_KW_NONE, &svg_key_entry::id) == 0);
static_assert(std::ranges::all_of(KEYWORD_CONSTANTS, [](const constant &c) {
  return std::ranges::find(KEYS.entries, c.value, &svg_key_entry::id) != std::end(KEYS.entries);
}));

// Lists name their rows rightly, leave out properties, and hold "id", as which "xml:id" is found.
static_assert(std::ranges::all_of(ELEMENTS, [](const element &row) {
  return std::ranges::all_of(row.attributes,
                             [](const svg_esa_entry &entry) {
                               return entry.attr >= SVG_PROP_COUNT &&
                                      name_of(entry) == ATTRIBUTES[entry.attr].name;
                             }) &&
         std::ranges::count(row.attributes, "id", name_of) == 1;
}));
static_assert(std::ranges::all_of(ELEMENT_ROWS, [](const svg_elem_def &row) {
  return std::ranges::adjacent_find(row.req_list, row.req_list + row.req_count,
                                    std::ranges::greater_equal()) == row.req_list + row.req_count;
}));

// The widest element is font-face, with 17 attributes, 14 of them in slots.
static_assert(std::ranges::max(ELEMENT_ROWS, {}, &svg_elem_def::esa_count).esa_count == 17);
static_assert(std::ranges::max(SLOTS.size) == SVG_HOOK_SLOTS * sizeof(svg_a_node *));
static_assert(SLOTS.size[SVG_ELEM_font_face] == 112 &&
              SLOTS.offset[128][SVG_ELEM_font_face] == 104);

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

// Parts of values, and what the parser keeps
static_assert(is_record<svg_iri>(16) && is_record<svg_color>(24) && is_record<svg_pada>(16));
static_assert(is_record<svg_font>(64) && is_record<svg_href>(16) && is_record<svg_unres_link>(24));
static_assert(is_record<svg_nsp_entry>(24) && is_record<svg_pe_entry>(16));

// Rows of the tables
static_assert(is_record<svg_elem_def>(72) && is_record<svg_attr_def>(80));
static_assert(is_record<svg_esa_entry>(16) && is_record<svg_key_entry>(16));
