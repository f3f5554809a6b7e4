// Look-ups over the schema. What the tables hold is proved at compile time (svg/tables/proofs.cpp).
#include "svg/svg_schema.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "svg/svg_values.h"
#include "tests/support/accounting_core.h"

TEST(Schema, ElementsAreFoundByExactNameWithOrWithoutPrefix) {
  const struct {
    const char *name;
    int id;
  } cases[] = {
      {"rect", SVG_ELEM_rect},
      {"svg:rect", SVG_ELEM_rect},
      {"svg", SVG_ELEM_svg},
      {"svg:svg", SVG_ELEM_svg},
      {"Rect", -1},
      {"SVG:rect", -1},
      {"svg:svg:rect", -1},
      {"svg:", -1},
      {"", -1},
      {"rec", -1},
      {"recta", -1},
      {"animate", -1},
      {"zzz", -1},
  };
  for (const auto &c : cases) EXPECT_EQ(svg_find_element(c.name), c.id) << c.name;
  for (int id = 0; id < SVG_ELEM_COUNT; id++)
    EXPECT_EQ(svg_find_element(svg_elem_table[id].name), id);
}

TEST(Schema, PropertiesAreFoundInAnyLetterCase) {
  const struct {
    const char *name;
    int row;
  } cases[] = {
      {"fill", SVG_PROP_fill},
      {"FILL", SVG_PROP_fill},
      {"Stroke-Width", SVG_PROP_stroke_width},
      {"x", -1},
      {"style", -1},
      {"", -1},
      {"fil", -1},
      {"font-famil\xC3\xBF", -1},
  };
  for (const auto &c : cases) EXPECT_EQ(svg_find_prop(c.name), c.row) << c.name;
  for (int row = 0; row < SVG_PROP_COUNT; row++)
    EXPECT_EQ(svg_find_prop(svg_attr_table[row].name), row);
}

TEST(Schema, AttributesAreFoundInTheListOfTheirElement) {
  svg_parser parser = {};
  const auto row_of = [&](int element, const char *name) {
    const svg_elem_def &def = svg_elem_table[element];
    const int index = svg_find_esa(&parser, name, def.esa_list, def.esa_count);
    return index < 0 ? -1 : def.esa_list[index].attr;
  };
  const struct {
    int element;
    const char *name;
    int row, row_in_css_mode;
  } cases[] = {
      {SVG_ELEM_rect, "x", 124, 124},     {SVG_ELEM_text, "x", 125, 125},
      {SVG_ELEM_mask, "x", 126, 126},     {SVG_ELEM_tspan, "x", 127, 127},
      {SVG_ELEM_line, "x", -1, -1},       {SVG_ELEM_rect, "xml:id", 81, 81},
      {SVG_ELEM_rect, "XML:ID", -1, -1},  {SVG_ELEM_rect, "Width", -1, 121},
      {SVG_ELEM_svg, "viewbox", -1, 120}, {SVG_ELEM_svg, "viewBox", 120, 120},
      {SVG_ELEM_title, "fill", -1, -1},
  };
  for (const auto &c : cases) {
    parser.css_mode = 0;
    EXPECT_EQ(row_of(c.element, c.name), c.row) << c.name;
    parser.css_mode = 1;
    EXPECT_EQ(row_of(c.element, c.name), c.row_in_css_mode) << c.name;
  }
  EXPECT_EQ(svg_find_esa(&parser, "id", nullptr, 0), -1);
}

TEST(Schema, RefusedNamesRaise) {
  AccountingCore core;
  svg_register_errtab(core);
  const char *const elements[] = {"animate", "filter", "Script"};
  const char *const properties[] = {"enable-background", "FILTER"};
  svg_parser parser = {};
  parser.core = core;
  parser.filename = "a.svg";

  // Without lists everything is tolerated.
  EXPECT_EQ(core.protect([&] { svg_find_nottol_element(&parser, "filter"); }), 0);
  EXPECT_EQ(core.protect([&] { svg_find_nottol_property(&parser, "filter"); }), 0);

  parser.nottol_elements = elements;
  parser.nottol_elements_num = 3;
  parser.nottol_props = properties;
  parser.nottol_props_num = 2;
  const struct {
    void (*check)(svg_parser *parser, const char *name);
    const char *name;
    int code;
    const char *text;
  } cases[] = {
      {svg_find_nottol_element, "script", 10020,
       "File 'a.svg' contains unsupported element 'script'"},
      {svg_find_nottol_element, "ANIMATE", 10020,
       "File 'a.svg' contains unsupported element 'ANIMATE'"},
      {svg_find_nottol_element, "set", 0, nullptr},
      {svg_find_nottol_property, "Filter", 10021,
       "File 'a.svg' contains unsupported property 'Filter'"},
      {svg_find_nottol_property, "animate", 0, nullptr},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(core.protect([&] { c.check(&parser, c.name); }), c.code) << c.name;
    if (c.code != 0) {
      EXPECT_STREQ(ort_error_text(core), c.text);
    }
  }
}

// The slots and defaults that begin hooks and hosts count on.
TEST(Schema, RowsLeadToSlotsAndDefaults) {
  const struct {
    int element;
    const char *name;
    int slot;
    const char *required; // default text
  } cases[] = {
      {SVG_ELEM_font_face, "x-height", 104, nullptr}, {SVG_ELEM_circle, "cx", 0, "0"},
      {SVG_ELEM_circle, "transform", 32, nullptr},    {SVG_ELEM_mask, "x", 40, "-10%"},
      {SVG_ELEM_mask, "width", 32, "120%"},           {SVG_ELEM_svg, "width", 32, "100%"},
  };
  svg_parser parser = {};
  for (const auto &c : cases) {
    const svg_elem_def &def = svg_elem_table[c.element];
    const int index = svg_find_esa(&parser, c.name, def.esa_list, def.esa_count);
    ASSERT_GE(index, 0) << c.name;
    const svg_attr_def &row = svg_attr_table[def.esa_list[index].attr];
    EXPECT_EQ(row.apo[c.element], c.slot) << c.name;
    const int16_t *end = def.req_list + def.req_count;
    const bool is_required = std::find(def.req_list, end, index) != end;
    EXPECT_STREQ(is_required ? row.default_text : nullptr, c.required) << c.name;
  }
}

TEST(Schema, RecordKindsFollowTheRows) {
  EXPECT_EQ(svg_get_record_kind(-1), SVG_RECORD_NONE);
  EXPECT_EQ(svg_get_record_kind(SVG_ATTR_COUNT), SVG_RECORD_NONE);
  EXPECT_EQ(svg_get_record_kind(SVG_PROP_font), SVG_RECORD_NONE);
  EXPECT_EQ(svg_get_record_kind(SVG_PROP_fill), SVG_RECORD_PAINT);
  EXPECT_EQ(svg_get_record_kind(SVG_ATTR_transform), SVG_RECORD_TRAFO);
  EXPECT_EQ(svg_get_record_kind(146), SVG_RECORD_KEYWORD);
}
