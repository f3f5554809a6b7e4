// What particular elements do at their start and end tags.
#include <algorithm>

#include <gtest/gtest.h>

#include "svg/svg_parser.h"
#include "svg/svg_values.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

TEST(Hooks, ViewportOfTheOutermostSvg) {
  const struct {
    const char *attributes;
    double width, height, viewbox_width, viewbox_height;
    const char *messages;
  } cases[] = {
      {"width='210mm' height='297mm'", 595.275912, 841.8902184, 0, 0, ""},
      {"width='400' height='300px' viewBox='0 0 8 6'", 400, 300, 0, 0, ""},
      {"width='2in' height='10cm'", 144, 283.46472, 0, 0, ""},
      {"width='3pc' height='5em'", 36, 5, 0, 0, ""},
      {"viewBox='0 0 800 600'", 0, 0, 800, 600, ""},
      {"width='50%' height='7' viewBox='0 0 800 600'", 0, 7, 800, 0, ""},
      {"width='0' height='-2mm' viewBox='0 0 800 600'", 0, -2, 0, 0,
       "Invalid SVG viewport (width is not available)\n"
       "Invalid SVG viewport (height is not available)\n"},
      {"width='9e-7' height='0%'", 0, 0, 0, 0,
       "Invalid SVG viewport (width is not available)\n"
       "Invalid SVG viewport (height is not available)\n"},
  };
  for (const auto &c : cases) {
    const Document document("<svg " + std::string(c.attributes) +
                            "><svg width='1' height='0' viewBox='0 0 1 1'/></svg>");
    EXPECT_DOUBLE_EQ(document.parser->viewport_width, c.width) << c.attributes;
    EXPECT_DOUBLE_EQ(document.parser->viewport_height, c.height) << c.attributes;
    EXPECT_EQ(document.parser->viewbox_width, c.viewbox_width) << c.attributes;
    EXPECT_EQ(document.parser->viewbox_height, c.viewbox_height) << c.attributes;
    EXPECT_EQ(document.messages(), c.messages);
  }
}

static const svg_an_trafo *transform_of(const svg_e_node *element) {
  for (int32_t i = element->values_num; i-- > 0;)
    if (element->values[i]->row == SVG_ATTR_transform)
      return svg_record<svg_an_trafo>(element->values[i]);
  return nullptr;
}

TEST(Hooks, UseIsTranslatedBeforeItsTransform) {
  const struct {
    const char *attributes;
    int type;
    std::vector<double> numbers;
  } cases[] = {
      {"x='10' y='20'", SVG_TRAFO_TRANSLATE_XY, {10, 20}},
      {"x='10cm' y='1e-7'", SVG_TRAFO_TRANSLATE, {10}},
      {"y='20'", SVG_TRAFO_TRANSLATE_XY, {0, 20}},
      {"x='0' y='1e-7' transform='scale(2)'", SVG_TRAFO_SCALE, {2}},
      {"x='10' y='20' transform='scale(2)'", SVG_TRAFO_MATRIX, {2, 0, 0, 2, 20, 40}},
      {"x='10' y='20' transform='scale(2 3)'", SVG_TRAFO_MATRIX, {2, 0, 0, 3, 20, 60}},
      {"x='10' y='20' transform='rotate(90)'", SVG_TRAFO_MATRIX, {0, 1, -1, 0, -20, 10}},
      {"x='10' y='20' transform='skewX(45)'", SVG_TRAFO_MATRIX, {1, 0, 1, 1, 30, 20}},
      {"x='10' y='20' transform='skewY(45)'", SVG_TRAFO_MATRIX, {1, 1, 0, 1, 10, 30}},
      {"x='10' y='20' transform='matrix(1 2 3 4 5 6)'", SVG_TRAFO_MATRIX, {1, 2, 3, 4, 75, 106}},
      {"x='10' transform='translate(5)'", SVG_TRAFO_TRANSLATE, {15}},
      {"x='10' y='20' transform='translate(5)'", SVG_TRAFO_MATRIX, {1, 0, 0, 1, 15, 20}},
      {"x='10' y='20' transform='translate(5 6)'", SVG_TRAFO_TRANSLATE_XY, {15, 26}},
  };
  for (const auto &c : cases) {
    const Document document("<svg><use id='u' " + std::string(c.attributes) + "/></svg>");
    const svg_an_trafo *trafo = transform_of(document.find("u"));
    ASSERT_NE(trafo, nullptr) << c.attributes;
    EXPECT_EQ(trafo->type, c.type) << c.attributes;
    for (size_t i = 0; i < c.numbers.size(); i++)
      EXPECT_NEAR(trafo->numbers[i], c.numbers[i], 1e-12) << c.attributes << " " << i;
  }
}

// The slot holds the later of two attributes of one name; x and y act on that one alone.
TEST(Hooks, DuplicateAttributesOfUse) {
  const Document document(
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:svg='http://www.w3.org/2000/svg'>"
      "<use id='u' transform='scale(2)' svg:transform='scale(3)' x='1' svg:x='5' y='bad'/></svg>");
  EXPECT_EQ(document.values(document.find("u"), "transform"), "3: 2; 0: 3 0 0 3 15 0");
  EXPECT_EQ(document.values(document.find("u"), "x"), "1; 5");
}

TEST(Hooks, ObserverIsToldOfEachFinalValue) {
  static std::vector<const svg_a_node *> told;
  told.clear();
  const Document document("<svg><use x='1' transform='scale(2)'/><use y='2'/></svg>",
                          AccountingCore::defaults(), [](svg_parser *p) {
                            const auto tell = [](void *, const svg_e_node *,
                                                 const svg_a_node *value, svg_source,
                                                 const char *) { told.push_back(value); };
                            svg_set_observer(p, tell, nullptr);
                          });
  for (svg_node *child = document.svg->first_child; child != nullptr; child = child->next)
    EXPECT_EQ(std::count(told.begin(), told.end(), &transform_of(svg_as_element(child))->head), 1);
}

TEST(Hooks, ElementsWhoseUsersNeedABoundingBox) {
  const Document document(
      "<svg><linearGradient id='l'/><radialGradient id='r'/><pattern id='p'/><mask id='m'/>"
      "<clipPath id='c'/><marker id='k'/></svg>");
  for (const char *id : {"l", "r", "p", "m"})
    EXPECT_EQ(document.find(id)->head.flags, SVG_EF_BBOX_USER) << id;
  EXPECT_EQ(document.find("c")->head.flags, SVG_EF_BBOX_USER | SVG_EF_BBOX_USER2);
  EXPECT_EQ(document.find("k")->head.flags, SVG_EF_NEEDS_BBOX);
}

static void last_texts(const svg_node *node, std::string *result) {
  for (; node != nullptr; node = node->next) {
    if (node->id == SVG_ID_TEXT && (node->flags & SVG_TF_LAST) != 0)
      *result += "[" + std::string(reinterpret_cast<const svg_t_node *>(node)->text) + "]";
    if (node->id != SVG_ID_TEXT)
      last_texts(reinterpret_cast<const svg_e_node *>(node)->first_child, result);
  }
}

TEST(Hooks, LastNonBlankTextOfATextElement) {
  expect_cases(R"(
a<text>b<tspan>c</tspan> </text>d -> [c] | <text>a<other>b</other></text> -> [a]
<text>a<text>b</text>c</text><text> </text> -> [b][c] | a<text/>b ->)",
               [](const std::string &text) {
                 const Document document("<svg>" + text + "</svg>");
                 std::string found;
                 last_texts(&document.svg->head, &found);
                 return found;
               });
}

TEST(Hooks, Log) {
  const Document document("<svg viewBox='0 0 8 6'><use x='1' y='2'/><use x='1' y='2' "
                          "transform='scale(2)'/><mask/></svg>",
                          AccountingCore::with_log(6));
  for (const char *line : {"\t\t\tembedded graphics, width and height will be "
                           "determined\n\t\t\tviewBox width=8, height=6\n",
                           "\t\t\t[add attribute transform type=8: translation=(1 2)]\n",
                           "\t\t\t[instead of transform type=3]\n"
                           "\t\t\t[add attribute transform type=0: matrix=(2 0 0 2 2 4)]\n",
                           "\t\t\t[mask "})
    EXPECT_NE(document.core.log.find(line), std::string::npos) << line;
  const Document plain("<svg width='1in' height='4'/>", AccountingCore::with_log(3));
  EXPECT_NE(
      plain.core.log.find("\n\t\t\tviewport width=72, height=4 in pixel, stand-alone graphics\n"),
      std::string::npos);
}
