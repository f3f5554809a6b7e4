// What values mean: units, types, components, matrices, inheritance, segments.
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "tests/support/reader.h"

TEST(Facts, EveryTransformIsTheMatrixThatItsCompositionWouldBe) {
  for (const std::string form :
       {"matrix(1 2 3 4 5 6)", "rotate(30)", "rotate(30 1 2)", "scale(2)", "scale(2 3)",
        "skewX(10)", "skewY(20)", "translate(5)", "translate(5 -6)"}) {
    const Document document("<svg xmlns='http://www.w3.org/2000/svg'><g id='a' transform='" + form +
                            "'/><g id='b' transform='scale(1) " + form + "'/></svg>");
    const auto trafo = [&](const char *id) {
      return reinterpret_cast<const svg_an_trafo *>(document.find(id)->values[0]);
    };
    double matrix[6];
    svg_get_matrix(trafo("a"), matrix);
    ASSERT_EQ(trafo("b")->type, SVG_TRAFO_MATRIX);
    EXPECT_TRUE(std::ranges::equal(matrix, trafo("b")->numbers)) << form;
  }
}

TEST(Facts, InheritIsToldOfAllKindsThatKnowIt) {
  for (int row = 0; svg_is_property(row); ++row) {
    const std::string name = svg_get_attr_table()[row].name;
    const char *initial = svg_get_attr_table()[row].default_text;
    for (const std::string text : {"inherit", initial ? initial : "serif"}) {
      const Document document("<svg xmlns='http://www.w3.org/2000/svg'><g id='a' " + name + "='" +
                              text + "'/></svg>");
      const svg_a_node *value = svg_find_value(document.find("a"), name.c_str());
      if (!value) continue; // color and stop-opacity refuse it, font makes no value
      const bool told = svg_get_record_kind(row) != SVG_RECORD_IRI;
      EXPECT_EQ(svg_is_inherit(value), told && text == "inherit") << name << ' ' << text;
    }
  }
}

TEST(Facts, PropertiesInherit) {
  std::string not_inherited;
  for (int row = -1; row <= SVG_ATTR_COUNT; ++row)
    if (svg_is_inherited(row) != (svg_is_property(row) != 0))
      not_inherited += svg_get_attr_table()[row].name + std::string(" ");
  EXPECT_EQ(not_inherited, "background-color baseline-shift clip clip-path display mask opacity "
                           "overflow stop-color stop-opacity text-decoration unicode-bidi ");
}

TEST(Facts, NumbersWithoutMeaningHaveNoText) {
  for (const int number : {-3, 13}) EXPECT_EQ(svg_get_unit_text(number), nullptr);
  for (const int number : {-2, -1, 6}) EXPECT_EQ(svg_get_mime_text(number), nullptr);
  for (const int number : {-1, 11}) EXPECT_EQ(svg_get_color_space_text(number), nullptr);
}
