// Dispatch: what a bad value costs, which source a value has, who owns it when something fails.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "svg/values/svg_types.h"
#include "tests/support/reader.h"

const std::string svg_begin = "<svg xmlns='http://www.w3.org/2000/svg' "
                              "xmlns:svg='http://www.w3.org/2000/svg' "
                              "xmlns:xlink='http://www.w3.org/1999/xlink'>";

TEST(Attr, ABadValueCostsOneWarningWithItsPosition) {
  const Document document("<svg xmlns='http://www.w3.org/2000/svg'>\n\n"
                          "<circle id='c' cx='abc' r='2' fill='foo' stroke='red'\n"
                          "  style='stroke-width:x;display:none;font:foo x;opacity:\"a'/>"
                          "<style>g { opacity: 50% }</style></svg>");
  EXPECT_EQ(
      document.messages(),
      "property 'opacity': unexpected token '50%', in file 'test.svg', line 0, element ''\n"
      "attribute 'cx': unexpected token 'abc', in file 'test.svg', line 3, element 'circle'\n"
      "property 'fill': unexpected token 'foo', in file 'test.svg', line 3, element 'circle'\n"
      "attribute 'style', property 'stroke-width': unexpected token 'x', in file 'test.svg', "
      "line 3, element 'circle'\n"
      "property 'font-size': unexpected token 'foo', in file 'test.svg', line 3, element 'circle'\n"
      "attribute 'style', property 'opacity': incomplete value, in file 'test.svg', line 3, "
      "element 'circle'\n");
  const svg_e_node *circle = document.find("c");
  EXPECT_EQ(document.values(circle, "cx"), "0") << "default of a required attribute";
  EXPECT_EQ(document.values(circle, "r"), "2");
  EXPECT_EQ(document.values(circle, "fill"), "-");
  EXPECT_EQ(document.values(circle, "stroke"), "#ff0000");
  EXPECT_EQ(document.values(circle, "display"), "none");
}

TEST(Attr, ValuesKeepTheOrderOfTheirSources) {
  const Document document(
      svg_begin + "<style>rect { fill: #010101; stroke-dasharray: 1 } .x { fill: #020202 }</style>"
                  "<rect id='r' class='x' style='fill:#030303;fill:#040404;mask:none' "
                  "stroke-dasharray='2' FILL='#050505' x='1' svg:x='2' opacity=' ' "
                  "clip-path='none' foo='1'/></svg>",
      AccountingCore::with_log(5));
  EXPECT_EQ(document.messages(), "");
  const svg_e_node *rect = document.find("r");
  EXPECT_EQ(document.values(rect, "fill"), "#050505; #020202; #030303; #040404");
  EXPECT_EQ(document.values(rect, "stroke-dasharray"), "2; 1");
  EXPECT_EQ(document.values(rect, "x"), "1; 2");
  EXPECT_EQ(document.values(rect, "opacity"), "-");
  EXPECT_EQ(rect->values[0]->row, SVG_PROP_mask);
  for (int32_t i = 1; i < rect->values_num; ++i)
    EXPECT_GE(svg_attr_table[rect->values[i]->row].prio,
              svg_attr_table[rect->values[i - 1]->row].prio);
  EXPECT_NE(document.core.log.find("\t\t\t[property \"foo\" unsupported]\n"), std::string::npos);
}

TEST(Attr, TheLastOfDuplicateAttributesReachesTheHook) {
  const Document once("<svg xmlns='http://www.w3.org/2000/svg' width='20px' height='5in'/>");
  const Document twice("<svg xmlns='http://www.w3.org/2000/svg' "
                       "xmlns:svg='http://www.w3.org/2000/svg' svg:width='10px' width='20px' "
                       "height='5in' svg:height='bad'/>");
  EXPECT_EQ(twice.values(twice.svg, "width"), "10px; 20px");
  EXPECT_EQ(twice.values(twice.svg, "height"), "5in");
  EXPECT_EQ(twice.parser->viewport_width, once.parser->viewport_width);
  EXPECT_EQ(twice.parser->viewport_height, once.parser->viewport_height);
}

// In a class of its own.
TEST(Attr, ALogLineIsEndedBeforeAWarning) {
  const CoreOptions options = AccountingCore::with_log(1, ORT_LOG_LINES);
  EXPECT_EQ(Document(svg_begin + "<rect y='z'/></svg>", options).core.log, "\n");
}
