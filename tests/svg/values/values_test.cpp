// Values that are not lists: what each constructor takes, and what it refuses.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/reader.h"

TEST(Values, Keywords) {
  expect_values(R"(
g display: none -> none | \sinline  none -> inline | NONE -> none | nome -> ! nome
g display: 'none' -> ! none | , none -> ! , | 'none -> !
g font-weight: 700 -> 700
g glyph-orientation-vertical: 90 -> 90
clipPath clipPathUnits: objectBoundingBox -> objectBoundingBox
clipPath clipPathUnits: OBJECTBOUNDINGBOX -> ! OBJECTBOUNDINGBOX
)");
}

TEST(Values, Numbers) {
  expect_values(R"(
rect x: 5 6 -> 5 | 1.5e1mm -> 15mm | -50% -> -50% | 5PX -> ! 5PX | abc -> ! abc | (5) -> ! (
rect x: 3000000000 -> 2147483647 | 3000000000px -> 3e+09px
g stop-opacity: 0.5 -> 0.5 | inherit -> ! inherit | 5% -> ! 5%
g opacity: 0.5 -> 0.5 | inherit -> inherit | 50% -> ! 50%
g stroke-width: 2MM -> 2mm | 2 mm -> 2
g font-size: larger -> larger | 120% -> 120%
marker orient: 45deg -> 45deg | auto -> auto | Auto -> ! Auto
)");
}

TEST(Values, AspectViewBoxAndClip) {
  expect_values(R"(
svg preserveAspectRatio: xMidYMid slice -> xMidYMid slice | slice -> xMinYMin slice
svg preserveAspectRatio: defer none -> defer none | slice xMaxYMin meet none -> none slice
svg preserveAspectRatio: xMidYMid foo -> ! foo
svg viewBox: 0,0,100,50 -> 0 0 100 50 | \s0 , 0 100\t50 7 -> 0 0 100 50
svg viewBox: 0 0 100 -> ! | 0,,0 1 1 -> ! , | 0 0 100px 50 -> ! 100px
g clip: rect(1, 2, 3, 4) -> rect(1, 2, 3, 4) | RECT (1 2,3 -4.5) x -> rect(1, 2, 3, -4.5)
g clip: auto -> auto | rect(1px 2 3 4) -> ! 1px | rect 1 2 3 4 -> ! 1
g clip: rect(1 2 3) -> ! ) | rect(1 2 3 4 -> ! | rect(1 2 3 4 5) -> ! 5
)");
}

TEST(Values, TextsStayAsWritten) {
  expect_values(R"t(
glyph unicode: \sa -> " a" | \s -> " " | -> - | a,(b)" -> "a,(b)\"" | 'ab -> !
a xlink:title: \s"x" y\s -> " \"x\" y " | \s\s -> -
)t");
}

// The record, what it points to, and its place among the element's values. Records are aligned.
TEST(Values, TakeNoMoreThanTheyHold) {
  const auto bytes = [](const std::string &attribute) {
    const Document document("<svg><g " + attribute + "/></svg>");
    ort_statistics statistics;
    ort_get_statistics(document.core, &statistics);
    uint64_t bytes = statistics.live_bytes;
    for (auto *block = document.parser->kept.first; block; block = block->next)
      bytes -= sizeof *block + block->size - block->used;
    return bytes;
  };
  constexpr size_t trafo = offsetof(svg_an_trafo, numbers);
  const std::pair<const char *, size_t> cases[] = {
      {"transform='rotate(1)'", trafo + sizeof(double)},
      {"transform='translate(1)'", trafo + sizeof(double)},
      {"transform='translate(1 2)'", trafo + 2 * sizeof(double)},
      {"transform='scale(1)scale(2)'", trafo + 6 * sizeof(double)},
      {"display='none'", sizeof(svg_an_keyword)},
      {"clip-path='url(a)'", sizeof(svg_an_iri) + 2},
      {"fill='red'", sizeof(svg_an_paint_rgb)},
      {"fill='red device-gray(1)'", sizeof(svg_an_paint_color) + sizeof(double)},
      {"stroke-dasharray='1 2 3'", sizeof(svg_an_key_unum_list) + 3 * (sizeof(double) + 1)},
      {"font-family='abc'", sizeof(svg_an_key_name_list) + sizeof(int32_t) + sizeof(char *) + 4}};
  for (const auto &[attribute, expected] : cases)
    EXPECT_LT(bytes(attribute) - bytes("") - expected - sizeof(svg_a_node *), alignof(double))
        << attribute;
}

// class, id and name make no values; their effect is seen in the element and among the ids.
TEST(Values, ClassesAreKeptWhenASelectorNamesThem) {
  const Document document("<svg xmlns='http://www.w3.org/2000/svg' "
                          "xmlns:svg='http://www.w3.org/2000/svg'><style>.b{} .c{} #r{}</style>"
                          "<g id='r' class=' a b,c  b'/><g id='s' class='a'/>"
                          "<g id='t' class='a c' svg:class='b'/></svg>");
  EXPECT_EQ(document.messages(), "");
  const svg_e_node *r = document.find("r"), *s = document.find("s"), *t = document.find("t");
  EXPECT_EQ(r->class_num, 3);
  EXPECT_EQ(r->class_nids[0], r->class_nids[2]);
  EXPECT_NE(r->class_nids[0], r->class_nids[1]);
  EXPECT_NE(r->id_nid, -1);
  EXPECT_EQ(s->class_num, 0);
  EXPECT_EQ(s->class_nids, nullptr);
  EXPECT_EQ(s->id_nid, -1);
  EXPECT_EQ(t->class_num, 1);
  EXPECT_EQ(t->class_nids[0], r->class_nids[0]);
}
