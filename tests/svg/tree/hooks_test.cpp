// What particular elements do at their start and end tags.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "svg/values/svg_record.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

static std::string numbers(std::initializer_list<double> values) {
  std::string result;
  for (const double value : values) {
    char text[40];
    snprintf(text, sizeof text, " %.11g", std::round(value * 1e9) / 1e9 + 0.0); // no -0
    result += text;
  }
  return result;
}

// Width and height of the viewport and of the viewBox, and what is not available.
TEST(Hooks, ViewportOfTheOutermostSvg) {
  expect_cases(R"(
width='210mm' height='297mm' -> 595.275912 841.8902184 0 0 | width='3pc' height='5em' -> 36 5 0 0
width='400' height='300px' viewBox='0 0 8 6' -> 400 300 0 0 | viewBox='0 0 800 600' -> 0 0 800 600
width='2in' height='10cm' -> 144 283.46472 0 0 | width='50%' height='7' viewBox='0 0 8 6' -> 0 7 8 0
width='0' height='-2mm' viewBox='0 0 800 600' -> 0 -2 0 0 without width height
width='9e-7' height='0%' -> 0 0 0 0 without width height)",
               [](const std::string &attributes) {
                 const Document document("<svg " + attributes +
                                         "><svg width='1' height='0' viewBox='0 0 1 1'/></svg>");
                 const svg_parser *p = document.parser;
                 std::string result = numbers(
                     {p->viewport_width, p->viewport_height, p->viewbox_width, p->viewbox_height});
                 if (document.messages() == "Invalid SVG viewport (width is not available)\n"
                                            "Invalid SVG viewport (height is not available)\n")
                   return result + " without width height";
                 return result + document.messages();
               });
}

static const svg_an_trafo *transform_of(const svg_e_node *element) {
  for (int32_t i = element->values_num; i-- > 0;)
    if (element->values[i]->row == SVG_ATTR_transform)
      return svg_record<svg_an_trafo>(element->values[i]);
  return nullptr;
}

TEST(Hooks, UseIsTranslatedBeforeItsTransform) {
  static constexpr size_t counts[] = {6, 1, 0, 1, 2, 1, 1, 1, 2};
  expect_cases(R"(
x='10' y='20' -> 8: 10 20 | x='10cm' y='1e-7' -> 7: 10 | y='20' -> 8: 0 20
x='0' y='1e-7' transform='scale(2)' -> 3: 2 | x='10' y='20' transform='scale(2)' -> 0: 2 0 0 2 20 40
x='10' y='20' transform='scale(2 3)' -> 0: 2 0 0 3 20 60
x='10' y='20' transform='rotate(90)' -> 0: 0 1 -1 0 -20 10
transform='skewX(45)' x='10' y='20' -> 0: 1 0 1 1 30 20
x='10' y='20' transform='skewY(45)' -> 0: 1 1 0 1 10 30
x='10' y='20' transform='scale(1e999)' -> 3: inf | x='1e999' transform='matrix(1 0 0 1 0 0)' -> 0: 1 0 0 1 0 0
x='1e999' transform='translate(-1e999)' -> 7: -inf | x='1' y='1e999' transform='translate(2 -1e999)' -> 8: 2 -inf
x='1e999' transform='translate(5)' -> 7: inf
x='10' y='20' transform='matrix(1 2 3 4 5 6)' -> 0: 1 2 3 4 75 106
x='10' transform='translate(5)' -> 7: 15
x='10' y='20' transform='translate(5)' -> 0: 1 0 0 1 15 20
x='10' y='20' transform='translate(5 6)' -> 8: 15 26)",
               [](const std::string &attributes) {
                 const Document document("<svg><use id='u' " + attributes + "/></svg>");
                 const svg_an_trafo *trafo = transform_of(document.find("u"));
                 std::string result = std::to_string(trafo->type) + ":";
                 for (size_t i = 0; i < counts[trafo->type]; ++i)
                   result += numbers({trafo->numbers[i]});
                 return result;
               });
}

// The slot holds the later of two attributes of one name; x and y act on that one alone.
TEST(Hooks, DuplicateAttributesOfUse) {
  const Document document(
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:svg='http://www.w3.org/2000/svg'>"
      "<use id='u' transform='scale(2)' svg:transform='scale(3)' x='1' svg:x='5' y='bad'/></svg>");
  EXPECT_EQ(document.values(document.find("u"), "transform"), "scale(2); matrix(3 0 0 3 15 0)");
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
  for (svg_node *child = document.svg->first_child; child; child = child->next)
    EXPECT_EQ(std::count(told.begin(), told.end(), &transform_of(svg_as_element(child))->head), 1);
}

// The header forbids it; still, nothing has two owners then.
TEST(Hooks, ObserverThatRaisesEndsTheParse) {
  static int calls, last;
  for (last = 1; last <= 6; ++last) {
    calls = 0;
    const Document document("<svg><style>use{fill:red}</style><use x='1' transform='scale(2)' "
                            "opacity='1' style='stroke:red'/><use y='2'/></svg>",
                            AccountingCore::defaults(), [](svg_parser *p) {
                              const auto raise = [](void *core, const svg_e_node *,
                                                    const svg_a_node *, svg_source, const char *) {
                                if (++calls == last)
                                  ort_error(static_cast<ort_core *>(core), ORT_E_CALL_FAILED, "x");
                              };
                              svg_set_observer(p, raise, p->core);
                            });
    EXPECT_EQ(document.code, ORT_E_CALL_FAILED) << last;
  }
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
