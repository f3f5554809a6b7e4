// The style attribute and the font shorthand, wherever it is written.
#include "svg/style/svg_select.h"

#include <gtest/gtest.h>

#include "svg/values/svg_types.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

// All properties of the g element of a drawing by ascending name, then the codes of the messages.
static std::string properties(const std::string &markup) {
  const Document document("<svg xmlns='http://www.w3.org/2000/svg'>" + markup + "</svg>");
  if (!document.svg) return document.messages();
  const svg_e_node *g = nullptr;
  for (svg_node *node = document.svg->first_child; node; node = node->next)
    g = node->id == SVG_ELEM_g ? svg_as_element(node) : g;
  std::string result;
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    for (int32_t i = 0; i < g->values_num; ++i)
      if (g->values[i]->row == row)
        result += (result.empty() ? "" : "; ") + std::string(svg_attr_table[row].name) + " " +
                  value_text(document.parser, g->values[i]);
  for (const Message &message : document.core.messages)
    result += " !" + std::to_string(message.code);
  return result;
}

static std::string with_style(const std::string &style) {
  return properties("<g style=\"" + style + "\"/>");
}

TEST(Style, Declarations) {
  expect_cases(R"(
fill:red;stroke:blue -> fill #ff0000; stroke #0000ff | fill:;stroke:blue -> stroke #0000ff
\sfill red ;\n stroke\t:\tblue ; -> fill #ff0000; stroke #0000ff | FILL:Red -> fill #ff0000
/* c */fill/* d */:/* e */red;/**/stroke:blue;/* f -> fill #ff0000; stroke #0000ff
fill:red;fill:blue -> fill #ff0000; fill #0000ff | fill: ;stroke:blue -> stroke #0000ff
unknown:1;-x:2;stroke:blue -> stroke #0000ff | stroke:blue;fill -> stroke #0000ff
stroke:blue;fill: -> stroke #0000ff | -> | \s/* */\s ->
-x9_-b\xC3\xA4:1;_:2;\t\n\s/* * / */ /*/*/fill:red -> fill #ff0000 | fill:red;/*/x -> fill #ff0000
--x:1;fill:red -> | -:1;fill:red -> | -1:1;fill:red -> | / *fill:red -> | fill:red;/* * -> fill #ff0000)",
               with_style);
  // The first thing that is no declaration ends the attribute. A bad value costs one warning, and
  // only itself.
  expect_cases(R"(
fill:red;3d:x;stroke:blue -> fill #ff0000 | fill:red;;stroke:blue -> fill #ff0000
fill:nocolor;stroke:blue;stroke-width: -> stroke #0000ff !10006
fill:rgb(1,2;stroke:blue -> stroke #0000ff !10002
fill:red/* part of the value */;stroke:blue -> stroke #0000ff !10006)",
               with_style);
}

// The first of some texts that a property takes is the same value in an attribute, in the style
// attribute and in a sheet.
TEST(Style, EveryPropertyHasItsValueInEachWay) {
  for (int row = 0; row < SVG_ATTR_COUNT; ++row) {
    if (!svg_is_property(row) || row == SVG_PROP_font) continue;
    const std::string name = svg_attr_table[row].name;
    std::string value;
    for (const std::string text : {"inherit", "none", "red", "1"}) {
      value = properties("<g " + name + "='" + text + "'/>");
      if (value.find('!') != value.npos) continue;
      EXPECT_EQ(properties("<g style='" + name + ":" + text + "'/>"), value);
      EXPECT_EQ(properties("<style>g{" + name + ":" + text + "}</style><g/>"), value);
      break;
    }
    EXPECT_EQ(value.find(name + " "), 0U) << name;
  }
}

TEST(Style, ADeclarationThatBreaksOffIsNone) {
  const Document document("<svg><g style='stroke:red;unknown:'/></svg>",
                          AccountingCore::with_log(5));
  EXPECT_EQ(document.core.log.find("unsupported"), std::string::npos);
}

TEST(Style, RanksBehindAttributesAndRules) {
  expect_cases(R"(
<style>g{fill:lime;stroke:lime}</style><g style='fill:red' fill='blue' font='1px x'/> -> fill #0000ff; fill #00ff00; fill #ff0000; font-family "x"; font-size 1px; stroke #00ff00
<style>g{font-size:1px}</style><g style='font-size:2px;font:3px x'/> -> font-family "x"; font-size 1px; font-size 2px
<style>g{font-size:1px}</style><g style='FONT:3px x;fill:red'/> -> fill #ff0000; font-family "x"; font-size 1px)",
               properties);
}

// The last ones lack a word for the size or for the family, or have keywords out of their places:
// words count from the front.
TEST(Font, IsSplitIntoItsLonghands) {
  const char *cases = R"(
bold italic 12pt/14pt Times New Roman -> font-family "Times New Roman"; font-size 12pt; font-style italic; font-weight bold
small-caps 700 12px A, serif -> font-family "A", serif; font-size 12px; font-variant small-caps; font-weight 700
oblique bold normal 1px  A  B\s -> font-family "A B"; font-size 1px; font-style oblique; font-weight bold
normal 12px serif -> font-family serif; font-size 12px | 12pt -> font-family "12pt"
normal normal normal 12px x -> font-family "x"; font-size 12px
\s12pt  serif\s -> font-family serif; font-size 12pt | /14px serif -> font-family serif
1px a b c d e -> font-family "a b c d e"; font-size 1px | caption -> font-family "caption"
bold italic -> | bold 12pt -> | 12pt bold -> | normal normal -> | -> | \s\s ->
a b c d e f -> font-family "b c d e f" !10005
bold bolder 12px x -> font-family "12px x"; font-weight bold !10005
12px x bold -> font-family "bold"; font-weight bold !10005)";
  expect_cases(cases,
               [](const std::string &font) { return properties("<g font='" + font + "'/>"); });
  expect_cases(cases, [](const std::string &font) { return with_style("font:" + font); });
  expect_cases(cases, [](const std::string &font) {
    return properties("<style>g{font:" + font + "}</style><g/>");
  });
}

TEST(Font, InASheetIsThatOfCSS) {
  expect_cases(R"(
12px / 14px serif -> font-family serif; font-size 12px | 12px/ 14px a b -> font-family "a b"; font-size 12px
italic bold small-caps 12px /14px 'a / b' -> font-family "a / b"; font-size 12px; font-style italic; font-variant small-caps; font-weight bold
12px 'a / b' -> font-family "a / b"; font-size 12px
INHERIT -> font-family inherit; font-size inherit; font-style inherit; font-variant inherit; font-weight inherit)",
               [](const std::string &font) {
                 return properties("<style>g{font:" + font + "}</style><g/>");
               });
  EXPECT_EQ(with_style("font:inherit"), "font-family inherit");
}

// An attribute compares without regard to case up to the first longhand that it adds.
TEST(Font, LetterCaseOfKeywords) {
  expect_cases(R"(
<g font='Normal Bold 1px x'/> -> font-family "1px x" !10005
<g font='BOLD 1px x'/> -> font-family "x"; font-size 1px; font-weight bold
<g font='BOLD Italic 1px x'/> -> font-family "1px x"; font-weight bold !10005
<g style='font:BOLD 1px x'/> -> font-family "1px x" !10005
<g style='FONT:BOLD 1px x'/> -> font-family "x"; font-size 1px; font-weight bold
<style>g{font:BOLD Italic 1px x !Important}</style><g/> -> font-family "x"; font-size 1px; font-style italic; font-weight bold)",
               properties);
}
