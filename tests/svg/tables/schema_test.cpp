// Look-ups in the schema. What the tables hold is proved at compile time (svg/tables/proofs.cpp)
// and compared, cell by cell, with tests/tools/golden/schema.txt.
#include "svg/names/svg_schema.h"

#include <gtest/gtest.h>

#include "svg/tables/colors.h"
#include "svg/tree/svg_elements.h"
#include "svg/values/svg_color.h"
#include "svg/values/svg_types.h"
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
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (svg_is_property(row)) EXPECT_EQ(svg_find_prop(svg_attr_table[row].name), row);
}

// As written and in CSS mode, where letter case does not count.
TEST(Schema, AttributesAreFoundInTheListOfTheirElement) {
  const auto find = [](int css_mode, const char *name, const svg_elem_def &element) {
    svg_parser parser = {};
    parser.css_mode = css_mode;
    const int index = svg_find_esa(&parser, name, static_cast<int>(&element - svg_elem_table));
    return index < 0 ? "none" : element.esa_list[index].name;
  };
  for (const svg_elem_def &element : svg_elem_table)
    for (int i = 0; i < element.esa_count; ++i)
      EXPECT_STREQ(find(0, element.esa_list[i].name, element), element.esa_list[i].name);
  expect_cases(R"(
line x -> none none | rect xml:id -> id id | rect XML:ID -> none none | rect Width -> none width
title fill -> none none)",
               [&](const std::string &input) {
                 const size_t blank = input.find(' ');
                 const svg_elem_def &element =
                     svg_elem_table[svg_find_element(input.substr(0, blank).c_str())];
                 return find(0, &input[blank + 1], element) + std::string(" ") +
                        find(1, &input[blank + 1], element);
               });
}

TEST(Schema, NumbersOutsideOfTheTablesAreNothing) {
  for (const int row : {-1, int(SVG_ATTR_COUNT)}) {
    EXPECT_EQ(svg_get_record_kind(row), SVG_RECORD_NONE);
    EXPECT_FALSE(svg_is_property(row));
  }
  for (const int id : {-1, int(SVG_KW_COUNT)}) EXPECT_EQ(svg_get_keyword_text(id), nullptr);
}
