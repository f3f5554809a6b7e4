// Look-ups over the schema. What the tables hold is proved at compile time (svg/tables/proofs.cpp).
#include "svg/names/svg_schema.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "svg/values/svg_values.h"
#include "tests/support/cases.h"

static std::string element_name(const std::string &name) {
  const int id = svg_find_element(name.c_str());
  return id < 0 ? "none" : svg_elem_table[id].name;
}

static std::string property_name(const std::string &name) {
  const int row = svg_find_prop(name.c_str());
  return row < 0 ? "none" : svg_attr_table[row].name;
}

TEST(Schema, ElementsByExactNameAndPropertiesInAnyCase) {
  expect_cases(R"(
rect -> rect | svg:rect -> rect | svg -> svg | svg:svg -> svg | Rect -> none | SVG:rect -> none
svg:svg:rect -> none | svg: -> none | -> none | rec -> none | recta -> none | animate -> none)",
               element_name);
  for (const svg_elem_def &element : svg_elem_table)
    EXPECT_EQ(element_name(element.name), element.name);
  expect_cases(R"(fill -> fill | FILL -> fill | Stroke-Width -> stroke-width | x -> none
style -> none | -> none | fil -> none | font-famil\xC3\xBF -> none)",
               property_name);
  for (int row = 0; row < SVG_PROP_COUNT; row++)
    EXPECT_EQ(svg_find_prop(svg_attr_table[row].name), row);
}

// Rows as they are written and in CSS mode, where letter case does not count.
TEST(Schema, AttributesAreFoundInTheListOfTheirElement) {
  expect_cases(R"(
rect x -> 124 124 | text x -> 125 125 | mask x -> 126 126 | tspan x -> 127 127 | line x -> -1 -1
rect xml:id -> 81 81 | rect XML:ID -> -1 -1 | rect Width -> -1 121 | svg viewbox -> -1 120
svg viewBox -> 120 120 | title fill -> -1 -1)",
               [](const std::string &input) {
                 const size_t blank = input.find(' ');
                 const svg_elem_def &def =
                     svg_elem_table[svg_find_element(input.substr(0, blank).c_str())];
                 std::string rows;
                 for (const int css_mode : {0, 1}) {
                   svg_parser parser = {};
                   parser.css_mode = css_mode;
                   const int index = svg_find_esa(&parser, &input[blank + 1], def);
                   rows += std::to_string(index < 0 ? -1 : def.esa_list[index].attr) + " ";
                 }
                 return rows;
               });
}

// The slots and defaults that begin hooks and hosts count on.
TEST(Schema, RowsLeadToSlotsAndDefaults) {
  const struct {
    int element;
    const char *name;
    int slot;
    const char *required; // default text
  } cases[] = {{SVG_ELEM_font_face, "x-height", 104, nullptr}, {SVG_ELEM_circle, "cx", 0, "0"},
               {SVG_ELEM_circle, "transform", 32, nullptr},    {SVG_ELEM_mask, "x", 40, "-10%"},
               {SVG_ELEM_mask, "width", 32, "120%"},           {SVG_ELEM_svg, "width", 32, "100%"}};
  svg_parser parser = {};
  for (const auto &c : cases) {
    const svg_elem_def &def = svg_elem_table[c.element];
    const int index = svg_find_esa(&parser, c.name, def);
    ASSERT_GE(index, 0) << c.name;
    const svg_attr_def &row = svg_attr_table[def.esa_list[index].attr];
    EXPECT_EQ(row.apo[c.element], c.slot) << c.name;
    const int16_t *end = def.req_list + def.req_count;
    const bool is_required = std::find(def.req_list, end, index) != end;
    EXPECT_STREQ(is_required ? row.default_text : nullptr, c.required) << c.name;
  }
}

TEST(Schema, RecordKindsFollowTheRows) {
  for (const int row : {-1, int(SVG_ATTR_COUNT), int(SVG_PROP_font)})
    EXPECT_EQ(svg_get_record_kind(row), SVG_RECORD_NONE);
  EXPECT_EQ(svg_get_record_kind(SVG_PROP_fill), SVG_RECORD_PAINT);
  for (const int id : {-1, int(SVG_KW_COUNT)}) EXPECT_EQ(svg_get_keyword_text(id), nullptr);
}
