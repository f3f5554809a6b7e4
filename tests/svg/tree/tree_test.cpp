// The tree that a document becomes: what is built, skipped and linked, and the life of a parser.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

// "g(rect 'text' a())": elements, and texts in quotes.
static std::string outline(const svg_e_node *element) {
  std::string result = svg_get_elem_table()[element->head.id].name;
  result += '(';
  for (svg_node *child = element->first_child; child; child = child->next) {
    if (result.back() != '(') result += ' ';
    if (const svg_e_node *below = svg_as_element(child))
      result += outline(below);
    else
      result += std::string("'") + svg_as_text(child)->text + "'";
  }
  return result + ')';
}

TEST(Tree, BuildsSupportedElementsAndSkipsOthersWhole) {
  expect_cases(R"(
<rect/> <g><g/></g> -> svg(rect() ' ' g(g()))
<text>x&lt;<![CDATA[<y>]]><!-- c -->z</text> -> svg(text('x<<y>z'))
<foo>a<rect/>b<foo/>c</foo><rect/> -> svg('' '' '' rect())
<style>rect{}</style><rect/> -> svg('' rect())
<text>a<x:b xmlns:x='urn:x'>skipped</x:b>c</text> -> svg(text('a' '' 'c'))
<a xmlns='urn:x'><rect xmlns='http://www.w3.org/2000/svg'/></a><g/> -> svg(g())
<l:a xmlns:l='http://www.w3.org/1999/xlink'/><v:g xmlns:v='http://www.w3.org/2000/svg'/> -> svg(g())
<g xmlns=''><rect/></g> -> svg(g(rect())) | <RECT/><svg:rect xmlns:svg='urn:y'/> -> svg())",
               [](const std::string &content) {
                 const Document document("<svg xmlns='http://www.w3.org/2000/svg'>" + content +
                                         "</svg>");
                 EXPECT_EQ(document.messages(), "");
                 return outline(document.svg);
               });
}

TEST(Tree, AttributesAreKnownByNamespaceAndName) {
  const Document document(
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:k='http://www.w3.org/1999/xlink' "
      "xmlns:o='urn:o'>"
      "<use id='a' k:href='#b' xml:space='preserve' o:x='5' o:fill='red' o:style='stroke:blue'/>"
      "<g xml:id='b'/><rect id='c' x='1' width='7' nix='0' FILL='#0f0'/>"
      "<view id='d' style='fill:blue'/><view xmlns:v='http://www.w3.org/2000/svg' id='e' "
      "v:style='fill:blue'/></svg>");
  EXPECT_EQ(document.values(document.find("a"), "xlink:href"), "#b");
  EXPECT_EQ(document.values(document.find("a"), "xml:space"), "preserve");
  EXPECT_EQ(document.values(document.find("a"), "x"), "-");
  EXPECT_EQ(document.values(document.find("a"), "fill"),
            "#ff0000"); // a foreign name counts by its local part
  EXPECT_EQ(document.values(document.find("a"), "stroke"), "-");
  EXPECT_EQ(document.values(document.find("c"), "fill"), "#00ff00");
  EXPECT_EQ(document.values(document.find("c"), "x"), "1");
  for (const char *id : {"d", "e"}) // a view lists no style
    EXPECT_EQ(document.values(document.find(id), "fill"), "#0000ff");
}

// Names of keywords count by their case, and messages name the attribute, whatever was read before.
TEST(Tree, PropertiesLeaveNoTraceForAttributes) {
  expect_cases(R"(
<style>g{fill:red}</style><pattern patternUnits='Userspaceonuse' -> attribute 'patternUnits': unexpected token 'Userspaceonuse'
<pattern fill='red' patternUnits='Userspaceonuse' -> attribute 'patternUnits': unexpected token 'Userspaceonuse'
<pattern style='fill:red'/><pattern patternUnits='Userspaceonuse' -> attribute 'patternUnits': unexpected token 'Userspaceonuse'
<pattern fill='red' X='2' y='b' -> attribute 'y': unexpected token 'b')",
               [](const std::string &content) {
                 const Document document("<svg>" + content + "/></svg>");
                 EXPECT_EQ(document.core.messages.size(), 1U);
                 const std::string text = document.messages();
                 return text.substr(0, text.find(", in file"));
               });
}

TEST(Tree, AParserThatNeverParsedIsOneBlock) {
  AccountingCore core;
  core.protect([&] {
    svg_parser *parser = svg_parser_new(core, 0, nullptr, nullptr, nullptr, nullptr, 0, nullptr, 0,
                                        nullptr, nullptr);
    EXPECT_EQ(svg_get_title_text(parser), nullptr);
    EXPECT_EQ(svg_find_name(parser, "a"), nullptr);
    EXPECT_STREQ(svg_find_href_id(parser, nullptr), "(empty)");
    svg_limits limits = {0, 0, 0, 4, 5, 0};
    svg_set_limits(parser, &limits);
    svg_get_limits(parser, &limits);
    EXPECT_EQ(limits.nodes, uint64_t{ORT_LIMIT_NODES});
    EXPECT_EQ(limits.entity_start, 4U);
    EXPECT_EQ(limits.recorded, 5U);
    svg_parser_delete(parser);
    svg_parser_delete(nullptr);
  });
}

// But for the elements used, and two vectors: ids and values of properties.
TEST(Tree, NoWorkSpaceIsLeftAfterReading) {
  const Document document("<svg><title>a<b xmlns='b'/></title><g style='font:9px x'/></svg>");
  const std::string left = document.core.live_blocks();
  EXPECT_NE(left.find("ort_bitarr_new: 1 "), left.npos);
  EXPECT_NE(left.find("ort_vtr_new: 2 "), left.npos);
  EXPECT_EQ(left.find("ort_bs_new"), left.npos);
}

// Otherwise the log would grow with the square of the depth.
TEST(Tree, DeepElementsAreIndentedNoFurther) {
  std::string deep = "<svg>", ends;
  for (int i = 0; i < 100; ++i) deep += "<g>", ends += "</g>";
  const Document document(deep + "x" + ends + "</svg>", AccountingCore::with_log(5));
  EXPECT_NE(document.core.log.find("]" + std::string(80, ' ') + "x\n"), std::string::npos);
  EXPECT_EQ(document.core.log.find(std::string(81, ' ')), std::string::npos);
}
