// Values that are not lists: what each constructor takes, and what it refuses.
#include <gtest/gtest.h>

#include "tests/support/reader.h"

namespace {

TEST(Values, Keywords) {
  expect_values({
      {"g", "display", "none", "none"},
      {"g", "display", " inline  none", "inline"},
      {"g", "display", "NONE", "none"},
      {"g", "display", "nome", "property 'display': unexpected token 'nome'"},
      {"g", "display", "'none'", "property 'display': unexpected token 'none'"},
      {"g", "display", ", none", "property 'display': unexpected token ','"},
      {"g", "display", "'none", "property 'display': incomplete value"},
      {"g", "font-weight", "700", "700"},
      {"g", "glyph-orientation-vertical", "90", "90"},
      {"clipPath", "clipPathUnits", "objectBoundingBox", "objectBoundingBox"},
      {"clipPath", "clipPathUnits", "OBJECTBOUNDINGBOX",
       "attribute 'clipPathUnits': unexpected token 'OBJECTBOUNDINGBOX'"},
  });
}

TEST(Values, Numbers) {
  expect_values({
      {"rect", "x", "5 6", "5"},
      {"rect", "x", "1.5e1mm", "15mm"},
      {"rect", "x", "-50%", "-50%"},
      {"rect", "x", "5PX", "attribute 'x': unexpected token '5PX'"},
      {"rect", "x", "abc", "attribute 'x': unexpected token 'abc'"},
      {"rect", "x", "(5)", "attribute 'x': unexpected token '('"},
      {"rect", "x", "3000000000", "2147483647"},
      {"rect", "x", "3000000000px", "3e+09px"},
      {"g", "stop-opacity", "0.5", "0.5"},
      {"g", "stop-opacity", "inherit", "property 'stop-opacity': unexpected token 'inherit'"},
      {"g", "stop-opacity", "5%", "property 'stop-opacity': unexpected token '5%'"},
      {"g", "opacity", "0.5", "0.5"},
      {"g", "opacity", "inherit", "inherit"},
      {"g", "opacity", "50%", "property 'opacity': unexpected token '50%'"},
      {"g", "stroke-width", "2MM", "2mm"},
      {"g", "stroke-width", "2 mm", "2"},
      {"g", "font-size", "larger", "larger"},
      {"g", "font-size", "120%", "120%"},
      {"marker", "orient", "45deg", "45deg"},
      {"marker", "orient", "auto", "auto"},
      {"marker", "orient", "Auto", "attribute 'orient': unexpected token 'Auto'"},
  });
}

TEST(Values, AspectViewBoxAndClip) {
  expect_values({
      {"svg", "preserveAspectRatio", "xMidYMid slice", "0 0 xMidYMid"},
      {"svg", "preserveAspectRatio", "slice", "0 0 xMinYMin"},
      {"svg", "preserveAspectRatio", "defer none", "1 1 none"},
      {"svg", "preserveAspectRatio", "slice xMaxYMin meet none", "0 0 none"},
      {"svg", "preserveAspectRatio", "xMidYMid foo",
       "attribute 'preserveAspectRatio': unexpected token 'foo'"},
      {"svg", "viewBox", "0,0,100,50", "0 0 100 50"},
      {"svg", "viewBox", " 0 , 0 100\t50 7", "0 0 100 50"},
      {"svg", "viewBox", "0 0 100", "attribute 'viewBox': incomplete value"},
      {"svg", "viewBox", "0,,0 1 1", "attribute 'viewBox': unexpected token ','"},
      {"svg", "viewBox", "0 0 100px 50", "attribute 'viewBox': unexpected token '100px'"},
      {"g", "clip", "rect(1, 2, 3, 4)", "rect 1 2 3 4"},
      {"g", "clip", "RECT (1 2,3 -4.5) x", "rect 1 2 3 -4.5"},
      {"g", "clip", "auto", "auto 0 0 0 0"},
      {"g", "clip", "rect(1px 2 3 4)", "property 'clip': unexpected token '1px'"},
      {"g", "clip", "rect 1 2 3 4", "property 'clip': unexpected token '1'"},
      {"g", "clip", "rect(1 2 3)", "property 'clip': unexpected token ')'"},
      {"g", "clip", "rect(1 2 3 4", "property 'clip': incomplete value"},
      {"g", "clip", "rect(1 2 3 4 5)", "property 'clip': unexpected token '5'"},
  });
}

TEST(Values, TextsStayAsWritten) {
  expect_values({
      {"glyph", "unicode", " a", "' a'"},
      {"glyph", "unicode", " ", "' '"},
      {"glyph", "unicode", "", "-"},
      {"glyph", "unicode", "a,(b)\"", "'a,(b)\"'"},
      {"a", "xlink:title", " \"x\" y ", "' \"x\" y '"},
      {"a", "xlink:title", "  ", "-"},
      {"glyph", "unicode", "'ab", "attribute 'unicode': incomplete value"},
  });
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

} // namespace
