// The tree that a document becomes: what is built, skipped and linked, and the life of a parser.
#include <gtest/gtest.h>

#include "svg/svg_parser.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

namespace {

// "g(rect 'text' a())": elements, and texts in quotes.
std::string outline(const svg_e_node *element) {
  std::string result = svg_get_elem_table()[element->head.id].name;
  result += '(';
  for (svg_node *child = element->first_child; child != nullptr; child = child->next) {
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
      "<g xml:id='b'/><rect id='c' x='1' width='7' nix='0' FILL='#0f0'/></svg>");
  EXPECT_EQ(document.values(document.find("a"), "xlink:href"), "#b");
  EXPECT_EQ(document.values(document.find("a"), "xml:space"), "preserve");
  EXPECT_EQ(document.values(document.find("a"), "x"), "-");
  EXPECT_EQ(document.values(document.find("a"), "fill"),
            "#ff0000"); // a foreign name counts by its local part
  EXPECT_EQ(document.values(document.find("a"), "stroke"), "-");
  EXPECT_EQ(document.values(document.find("c"), "fill"), "#00ff00");
  EXPECT_EQ(document.values(document.find("c"), "x"), "1");
}

TEST(Tree, RefusedNamesEndTheParse) {
  static const char *const names[] = {"blink", "filter", "Script"};
  const std::string text = "<svg><g Filter='x'/><rect blink='none'/><SCRIPT/></svg>";
  const Document elements(text, AccountingCore::defaults(), [](svg_parser *p) {
    p->nottol_elements = names;
    p->nottol_elements_num = 3;
  });
  EXPECT_EQ(elements.code, 10020);
  EXPECT_EQ(elements.messages(), "File 'test.svg' contains unsupported element 'SCRIPT'\n");
  const Document properties(text, AccountingCore::defaults(), [](svg_parser *p) {
    p->nottol_props = names;
    p->nottol_props_num = 3;
  });
  EXPECT_EQ(properties.code, 10021);
  EXPECT_EQ(properties.messages(), "File 'test.svg' contains unsupported property 'Filter'\n");
}

TEST(Tree, LimitsOfNodesAndDepth) {
  static constexpr struct {
    svg_limits limits;
    const char *message;
  } cases[] = {{{4, 3, 0, 0}, ""},
               {{3, 0, 0, 0}, "Limit of 3 nodes exceeded\n"},
               {{0, 2, 0, 0}, "Limit of 2 nested elements exceeded\n"}};
  static const svg_limits *limits;
  for (const auto &[tried, message] : cases) {
    limits = &tried;
    EXPECT_EQ(Document("<svg><g><g/><g/></g></svg>", AccountingCore::defaults(),
                       [](svg_parser *p) { svg_set_limits(p, limits); })
                  .messages(),
              message);
  }
}

TEST(Tree, DepthAndWidthCostNoStack) {
  std::string deep = "<svg>", ends, wide = "<svg>";
  for (int i = 0; i < 200000; i++) deep += "<g>", ends += "</g>", wide += "<g/>";
  EXPECT_NE(Document(deep + ends + "</svg>").svg, nullptr);
  EXPECT_NE(Document(wide + "</svg>").svg, nullptr);
}

TEST(Tree, AParserThatNeverParsedIsOneBlock) {
  AccountingCore core;
  core.protect([&] {
    svg_parser *parser = svg_parser_new(core, 0, nullptr, nullptr, nullptr, nullptr, 0, nullptr, 0,
                                        nullptr, nullptr);
    EXPECT_EQ(svg_get_title_text(parser), nullptr);
    EXPECT_EQ(svg_find_name(parser, "a"), nullptr);
    EXPECT_STREQ(svg_find_href_id(parser, nullptr), "(empty)");
    svg_parser_delete(parser);
    svg_parser_delete(nullptr);
  });
}

TEST(Tree, EchoesTheDocumentIntoTheLog) {
  expect_logged("<svg a='1'>\n<g>x</g><g/></svg>", 4,
                {"[01]<svg a=\"1\"", "[02]  <g>\n", "[02]  </g>\n", "[02]  <g/>\n"});
}

// Everything that a document can make, with bad values between: any allocation may fail. Of the row
// of use some need the translation to make their list of values grow.
TEST(Tree, AllocationSweep) {
  std::string text = R"(<?xml-stylesheet type='text/css' href='nix.css'?>
<svg xmlns='http://www.w3.org/2000/svg' xmlns:svg='http://www.w3.org/2000/svg' id='s'
 xmlns:k='http://www.w3.org/1999/xlink' width='1cm' viewBox='0 0 1 1' class='a b'><title>t</title>
<desc>d</desc><metadata><x:y xmlns:x='urn:x' z='1'>m</x:y></metadata>
<style>.a &gt; rect { fill: url(#late) red; stroke: #12 } g { stroke: url(#late) bad }
rect[x] { font: bold 12px Arial !important } .c[x], g rect { stroke: url(#s); odd: 1 }</style>
<rect class='c' x='1' width='2px' fill='url(#late) none' stroke='red icc-color(p, 1)'
 style='font:1px x;x:y;color-profile:p'/><g color='red cielab(1,2,3)' stop-color='inherit'
 stroke='url(#later) red icc-named-color(p,q)' id='a' xml:id='b' class='x' svg:class='y' opacity='x'
 font='bold 1em serif, Times' systemLanguage='en, de' svg:systemLanguage='fr,' mask='url(#late)'
 clip-path='url(#late' stroke-dasharray='1,2' transform='scale(2) rotate(1)'/>
<image k:href='data:image/png;base64,AAAA' width='x'/><image k:href='data:image/png;base64,AAAA'/>
<image k:href='x.png'/><a k:href='#late' k:title='t'/><path d='M0 0 L1 1 A1 2 3 0 1 5 5z'/>
<path d='M0 0 C1'/><polygon points='1,2 3,4' svg:points='1 x'/>
<linearGradient id='late' xml:id='two' gradientTransform='scale(1 2)'><stop stop-color='blue'
 offset='1%'/></linearGradient><font/><font id='f'><font-face font-family="'A b', serif"
 font-size='10, 12' font-weight='bold'/></font><font/><text systemLanguage='de, en' dx='1 2'
 text-decoration='underline' font-family='x, y' y='3 q'>z<tspan/></text>
<use y='2' transform='rotate(3)'/>)";
  std::string attributes;
  for (const char *name : {"x", "width", "height", "opacity", "stroke-width", "stroke-opacity",
                           "fill-opacity", "font-size", "kerning"})
    text += "<use" + (attributes += std::string(" ") + name + "='1'") + "/>";
  text += "</svg>";
  const auto body = [&](AccountingCore &core) {
    const bool done = read_once(core, text);
    EXPECT_EQ(ort_pvf_count(core), 0U) << "embedded files";
    return done;
  };
  allocation_sweep(body);
  allocation_sweep(body, AccountingCore::with_log(6));
}

} // namespace
