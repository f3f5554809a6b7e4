// What is painted, as tables: a drawing of a few elements, and the list of
// tests/support/scene_list.h with the messages after it.
#include <algorithm>
#include <gtest/gtest.h>

#include "core/ort_state.h"
#include "svg/parser/svg_parser.h"
#include "tests/support/documents.h"
#include "tests/support/scene_list.h"

namespace {

struct WalkCase {
  const char *name, *attributes, *content, *expected;
};

const char *const USUAL = "width='20' height='10'";

// clang-format off
const WalkCase cases[] = {
    {"groups",
     USUAL,
     R"(<g id='a'><g id='b' fill='red'><rect id='r' width='5' height='4' transform='translate(1 2)'/></g></g>
<g id='c' transform='scale(2)' opacity='.5'><rect id='k' width='1' height='1' opacity='.25' transform='translate(3)'/></g>
<a id='l' xlink:href='http://x/'><line id='n' x2='3' stroke='blue' stroke-width='2'/></a>)",
     R"(
group svg viewport=0 0 20 10
  shape r matrix=1 0 0 1 1 2 fill=#ff0000 M0 0 L5 0 5 4 0 4 Z
  group c matrix=2 0 0 2 0 0 opacity=0.5
    group k matrix=1 0 0 1 3 0 opacity=0.25 single bounds=0 0 1 1
      shape k fill=#000000 M0 0 L1 0 1 1 0 1 Z
  group l link=http://x/
    shape n fill=#000000 stroke=#0000ff width=2 M0 0 L3 0
)"},
    {"what shows nothing",
     USUAL,
     R"(<g display='none'><rect width='5' height='4'/></g>
<g visibility='hidden'><rect id='a' width='5' height='4'/><rect id='b' width='5' height='4' visibility='visible'/></g>
<rect id='c' width='0' height='4'/><rect id='d' width='1' height='4' fill='none'/>
<rect id='e' width='1' height='4' transform='scale(0)'/><defs><rect id='f' width='1' height='4'/></defs>
<symbol><rect id='g' width='1' height='4'/></symbol><rect id='h' width='1' height='1' stroke='red' stroke-width='0'/>)",
     R"(
group svg viewport=0 0 20 10
  shape b fill=#000000 M0 0 L5 0 5 4 0 4 Z
  shape h fill=#000000 M0 0 L1 0 1 1 0 1 Z
)"},
    {"use",
     USUAL,
     R"(<defs><g id='t' stroke='red'><rect id='r' width='5' height='4'/></g><use id='w' xlink:href='#r' fill='blue'/></defs>
<use id='u' xlink:href='#t' x='10%' y='3' fill='lime' opacity='.5'/>
<use id='v' xlink:href='#w' transform='scale(2)' x='1'/>
<use xlink:href='#nothing'/><use xlink:href='other.svg#r'/><use xlink:href='#k'/><clipPath id='k'/>)",
     R"(
group svg viewport=0 0 20 10
  group u matrix=1 0 0 1 2 3 opacity=0.5
    shape r use=u fill=#00ff00 stroke=#ff0000 width=1 M0 0 L5 0 5 4 0 4 Z
  group v matrix=2 0 0 2 2 0
    shape r use=w fill=#0000ff M0 0 L5 0 5 4 0 4 Z
)"},
    {"viewports",
     "width='200' height='100'",
     R"(<symbol id='s' viewBox='0 0 10 10' opacity='.5' display='none'><rect id='r' width='50%' height='4'/></symbol>
<use id='u' xlink:href='#s' width='40' height='20'/>
<svg id='n' x='10' y='20' width='50%' height='30' viewBox='0 0 10 10' preserveAspectRatio='xMaxYMin slice' overflow='visible'>
<rect id='q' width='100%' height='4'/></svg>
<svg id='m' width='10' height='10' clip='rect(1 2 3 4)'><rect id='p' width='50%' height='4'/></svg>
<use id='x' xlink:href='#m' width='25%'/>
<svg id='h' width='.5' height='.5'><rect width='1' height='1'/></svg><svg width='0'><rect width='1' height='1'/></svg><svg viewBox='0 0 0 1'><rect width='1' height='1'/></svg><svg viewBox='0 0 1 0'><rect width='1' height='1'/></svg>)",
     R"(
group svg viewport=0 0 200 100
  group s use=u opacity=0.5
    group s use=u matrix=2 0 0 2 10 0 viewport=-5 0 20 10
      shape r use=u fill=#000000 M0 0 L5 0 5 4 0 4 Z
  group n matrix=10 0 0 10 10 20
    shape q fill=#000000 M0 0 L10 0 10 4 0 4 Z
  group m viewport=4 1 4 6
    shape p fill=#000000 M0 0 L5 0 5 4 0 4 Z
  group m use=x viewport=4 1 44 6
    shape p use=x fill=#000000 M0 0 L25 0 25 4 0 4 Z
  group h viewport=0 0 0.5 0.5
    shape rect fill=#000000 M0 0 L1 0 1 1 0 1 Z
)"},
    {"outermost viewBox",
     "width='200' height='100' viewBox='10 20 50 50' x='7'",
     R"(<rect id='r' width='50%' height='50%'/>)",
     R"(
group svg matrix=2 0 0 2 30 -40 viewport=-15 20 100 50
  shape r fill=#000000 M0 0 L25 0 25 25 0 25 Z
)"},
    {"no size",
     "width='0' height='10'",
     R"(<rect id='r' width='5' height='5'/>)",
     R"(
Invalid SVG viewport (width is not available)
)"},
    {"circles of use",
     USUAL,
     R"(<g id='a'><use id='u' xlink:href='#a'/><rect id='r' width='1' height='1'/></g>
<g id='b'><use id='v' xlink:href='#c'/></g><g id='c'><use id='w' xlink:href='#b'/></g><use id='x' xlink:href='#x'/>
<g id='d'><rect id='s' width='1' height='1'/></g><use xlink:href='#d'/><use xlink:href='#d'/>
<g id='e'><use
 xlink:href='#e'/></g><use xlink:href='#e'/>)",
     R"(
group svg viewport=0 0 20 10
  shape r fill=#000000 M0 0 L1 0 1 1 0 1 Z
  shape s fill=#000000 M0 0 L1 0 1 1 0 1 Z
  shape s use=use fill=#000000 M0 0 L1 0 1 1 0 1 Z
  shape s use=use fill=#000000 M0 0 L1 0 1 1 0 1 Z
Element 'use #u' in line 1: reference in a circle is ignored
Element 'use #w' in line 2: reference in a circle is ignored
Element 'use #v' in line 2: reference in a circle is ignored
Element 'use #x' in line 2: reference in a circle is ignored
Element 'use' in line 4: reference in a circle is ignored
)"},
    {"clip paths",
     USUAL,
     R"(<clipPath id='c' clip-path='url(#d)' opacity='.5'><rect id='r' width='5' height='4' fill='none' clip-rule='evenodd' stroke='red'/>
<use id='u' xlink:href='#k'/><use xlink:href='#g'/>
<rect id='o' width='2' height='2' clip-path='url(#d)' opacity='.5' mask='url(#m)'/><rect id='f' width='3' height='3' clip-path='url(#c)'/></clipPath><mask id='m'/>
<clipPath id='d' clipPathUnits='objectBoundingBox'><rect id='e' width='.5' height='.5'/></clipPath>
<rect id='k' width='2' height='2' visibility='hidden'/>
<g id='g' clip-path='url(#c)'><rect id='q' width='8' height='8' clip-path='url(#d)' transform='translate(1 1)'/></g>)",
     R"(
group svg viewport=0 0 20 10
  group g
    clip c
      group c
        clip d matrix=9 0 0 9 0 0 outline M0 0 L4.5 0 4.5 4.5 0 4.5 Z
          shape e fill=#000000 M0 0 L0.5 0 0.5 0.5 0 0.5 Z
        shape r fill=#000000 rule=evenodd M0 0 L5 0 5 4 0 4 Z
        group o
          clip d matrix=2 0 0 2 0 0 outline M0 0 L1 0 1 1 0 1 Z
            shape e fill=#000000 M0 0 L0.5 0 0.5 0.5 0 0.5 Z
          shape o fill=#000000 M0 0 L2 0 2 2 0 2 Z
        group f
          shape f fill=#000000 M0 0 L3 0 3 3 0 3 Z
    group q matrix=1 0 0 1 1 1 single bounds=0 0 8 8
      clip d matrix=8 0 0 8 0 0 outline M0 0 L4 0 4 4 0 4 Z
        shape e fill=#000000 M0 0 L0.5 0 0.5 0.5 0 0.5 Z
      shape q fill=#000000 M0 0 L8 0 8 8 0 8 Z
Element 'rect #f' in line 3: reference in a circle is ignored
)"},
    {"outlines of clip paths, groups of one shape",
     USUAL,
     R"(<clipPath id='c' transform='scale(2)' clip-rule='evenodd'><use xlink:href='#k' transform='translate(1 1)'/></clipPath><clipPath id='n'><text>x</text></clipPath>
<clipPath id='e'><g><rect id='k' width='2' height='1'/></g></clipPath><clipPath id='t'><rect id='i' width='2' height='1'/><rect id='j' width='1' height='2'/></clipPath>
<g id='a' clip-path='url(#c)'/><g id='b' clip-path='url(#e)'/><g id='d' clip-path='url(#t)'/><g id='f' clip-path='url(#n)'/>
<path id='p' d='M0 0H4' opacity='.5' stroke='red' stroke-width='2'/><path id='q' d='M0 0H4' opacity='.5' fill='none' stroke='red' stroke-width='2' marker-end='url(#m)'/><marker id='m'/>
<g opacity='.5'><path id='r' d='M0 0H4' opacity='.5' fill='none' stroke='red' stroke-width='2' stroke-linejoin='round'/><path id='s' d='M0 0H4' opacity='.5' stroke='red' stroke-width='0'/></g>)",
     R"(
group svg viewport=0 0 20 10
  group a
    clip c matrix=2 0 0 2 0 0 outline evenodd M2 2 L6 2 6 4 2 4 Z
      group use matrix=1 0 0 1 1 1
        shape k use=use fill=#000000 rule=evenodd M0 0 L2 0 2 1 0 1 Z
  group b
    clip e outline
  group d
    clip t
      shape i fill=#000000 M0 0 L2 0 2 1 0 1 Z
      shape j fill=#000000 M0 0 L1 0 1 2 0 2 Z
  group f
    clip n
      text text 'x' x=0 y=0 chunk first last fill=#000000
  group p opacity=0.5 bounds=-4 -4 12 8
    shape p fill=#000000 stroke=#ff0000 width=2 M0 0 L4 0
  group q opacity=0.5
    shape q stroke=#ff0000 width=2 M0 0 L4 0
    group m matrix=2 0 0 2 4 0 viewport=0 0 3 3
  group g opacity=0.5
    group r opacity=0.5 single bounds=-1.41421 -1.41421 6.82843 2.82843
      shape r stroke=#ff0000 width=2 M0 0 L4 0
    group s opacity=0.5 single bounds=0 0 4 0
      shape s fill=#000000 M0 0 L4 0
)"},
    {"masks",
     USUAL,
     R"(<clipPath id='k'/><mask id='m' opacity='.5' clip-path='url(#k)'><rect id='r' width='5' height='4' fill='white'/></mask>
<mask id='n' maskUnits='userSpaceOnUse' x='1' y='1' width='50%' height='2' maskContentUnits='objectBoundingBox'>
<rect id='s' width='5' height='4' mask='url(#n)'/></mask>
<g id='g' mask='url(#m)' transform='translate(1 1)'><rect id='q' width='10' height='8' transform='translate(2 2)'/></g>
<rect id='p' width='10' height='5' mask='url(#n)'/>)",
     R"(
group svg viewport=0 0 20 10
  group g matrix=1 0 0 1 1 1
    mask m area=1 1.2 12 9.6
      group m
        clip k outline
        shape r fill=#ffffff M0 0 L5 0 5 4 0 4 Z
    shape q matrix=1 0 0 1 2 2 fill=#000000 M0 0 L10 0 10 8 0 8 Z
  group p single bounds=0 0 10 5
    mask n area=1 1 10 2 matrix=10 0 0 5 0 0
      group s single bounds=0 0 5 4
        shape s fill=#000000 M0 0 L5 0 5 4 0 4 Z
    shape p fill=#000000 M0 0 L10 0 10 5 0 5 Z
Element 'rect #s' in line 3: reference in a circle is ignored
)"},
    {"paints",
     USUAL,
     R"(<linearGradient id='l'><stop offset='0'/><stop offset='1' stop-color='red' stop-opacity='.5'/></linearGradient>
<pattern id='p' xlink:href='#o' width='2' height='3' patternUnits='userSpaceOnUse'/>
<pattern id='o' opacity='.5'><rect id='t' width='1' height='1' fill='url(#p) lime' stroke='url(#p) #000'/></pattern>
<rect id='a' width='4' height='4' fill='url(#l)' stroke='url(#p)' fill-opacity='.5'/>
<rect id='b' width='4' height='4' fill='url(#none) blue' stroke='url(#m)' stroke-opacity='.5' fill-rule='evenodd'/>)",
     R"(
group svg viewport=0 0 20 10
  shape a fill=linear(0 0 1 0 matrix=4 0 0 4 0 0 0 #000000 1 #ff0000/0.5)/0.5 stroke=pattern(p) width=1 M0 0 L4 0 4 4 0 4 Z
    pattern p tile=0 0 2 3 content=o
      group o opacity=0.5
        shape t fill=#00ff00 stroke=#000000 width=1 M0 0 L1 0 1 1 0 1 Z
  shape b fill=#0000ff rule=evenodd M0 0 L4 0 4 4 0 4 Z
Element 'rect #t' in line 3: reference in a circle is ignored
)"},
    {"markers",
     USUAL,
     R"(<marker id='m' viewBox='0 0 10 10' refX='5' refY='5' orient='auto' markerWidth='2' markerHeight='2' fill='red'>
<rect id='r' width='10' height='10'/></marker>
<marker id='n' markerUnits='userSpaceOnUse' orient='180' overflow='visible' opacity='.5'>
<path id='q' d='M0 0L1 1' marker-end='url(#n)' stroke='red'/></marker>
<path id='p' d='M0 0L5 0 9 0' fill='none' stroke='blue' stroke-width='2' marker-start='url(#m)' marker-end='url(#m)' marker-mid='url(#n)' transform='translate(1 1)'/>
<path id='o' d='M0 0L5 0' opacity='.5' marker-end='url(#n)' transform='translate(1 1)'/>
<rect marker='url(#m)' id='x' width='1' height='1'/><line stroke-width='0' marker='url(#m)' id='y' x2='1'/>
<marker id='k' markerUnits='userSpaceOnUse' overflow='visible' orient='100grad'/><marker id='l' markerUnits='userSpaceOnUse' overflow='visible' orient='3.1415926535897932rad'/>
<line marker-start='url(#k)' x2='1'/><polyline marker-start='url(#k)' points='2 0 3 0'/><polygon marker-start='url(#l)' points='4 0 5 0'/>)",
     R"(
group svg viewport=0 0 20 10
  shape p matrix=1 0 0 1 1 1 stroke=#0000ff width=2 M0 0 L5 0 9 0
  group m matrix=0.4 0 0 0.4 -1 -1 viewport=0 0 10 10
    shape r fill=#ff0000 M0 0 L10 0 10 10 0 10 Z
  group n matrix=-1 0 0 -1 6 1 opacity=0.5
    shape q fill=#000000 stroke=#ff0000 width=1 M0 0 L1 1
  group m matrix=0.4 0 0 0.4 8 -1 viewport=0 0 10 10
    shape r fill=#ff0000 M0 0 L10 0 10 10 0 10 Z
  group o matrix=1 0 0 1 1 1 opacity=0.5
    shape o fill=#000000 M0 0 L5 0
    group n matrix=-1 0 0 -1 5 0 opacity=0.5
      shape q fill=#000000 stroke=#ff0000 width=1 M0 0 L1 1
  shape x fill=#000000 M0 0 L1 0 1 1 0 1 Z
  shape y fill=#000000 M0 0 L1 0
  shape line fill=#000000 M0 0 L1 0
  group k matrix=0 1 -1 0 0 0
  shape polyline fill=#000000 M2 0 L3 0
  group k matrix=0 1 -1 0 2 0
  shape polygon fill=#000000 M4 0 L5 0 Z
  group l matrix=-1 0 0 -1 4 0
Element 'path #q' in line 4: reference in a circle is ignored
)"},
    {"switch and language",
     USUAL,
     R"(<switch><title>t</title><rect id='a' width='1' height='1' systemLanguage='de'/>
<rect id='b' width='1' height='1' systemLanguage='fr, en'/><rect id='c' width='1' height='1'/></switch>
<switch><g display='none'/><rect id='d' width='1' height='1'/></switch>
<rect id='e' width='1' height='1' systemLanguage='fr'/>)",
     R"(
group svg viewport=0 0 20 10
  shape b fill=#000000 M0 0 L1 0 1 1 0 1 Z
)"},
    {"images",
     USUAL,
     R"(<image id='a' width='4' height='2' xlink:href='a.png' transform='scale(2)'/>
<image id='b' width='50%' height='2' xlink:href='data:image/png;base64,AAAA' preserveAspectRatio='xMinYMin slice' overflow='visible' opacity='.5'/>
<image width='0' height='2' xlink:href='a.png'/><image width='2' height='0' xlink:href='a.png'/><image id='d' width='1' height='1' xlink:href='#a'/>)",
     R"(
group svg viewport=0 0 20 10
  image a matrix=2 0 0 2 0 0 area=0 0 4 2 a.png align=xMidYMid
  group b opacity=0.5
    image b area=0 0 10 2 bytes=3 align=xMinYMin slice visible
)"},
    {"numbers past the largest",
     USUAL,
     R"(<path id='a' d='M100000 1L1 1' transform='scale(1e307)'/><path d='M100000 1L1 1' transform='matrix(1 1e307 0 1 0 0)'/><path d='M1-100000L1 1' transform='matrix(1 0 1e307 1 0 0)'/>
<g transform='scale(1e200)'><g transform='scale(1e200)'><rect id='b' width='1' height='1'/></g></g>
<rect id='d' x='1.7e308' width='1.7e308' height='1'/><rect id='f' width='1' height='1e308' transform='translate(0 1e308)'/>
<rect id='g' width='1e308' height='1' transform='translate(1e308)'/><rect id='e' width='1' height='1' transform='translate(1e999)'/>)",
     R"(
group svg viewport=0 0 20 10
  group g matrix=1e+200 0 0 1e+200 0 0
)"},
};
// clang-format on

std::string drawing(const std::string &attributes, const std::string &content) {
  return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' " +
         attributes + ">" + content + "</svg>";
}

TEST(SceneWalk, Table) {
  for (const WalkCase &c : cases) {
    const Document document(drawing(c.attributes, c.content), AccountingCore::defaults(),
                            [](svg_parser *p) { p->language = "en_US"; });
    ASSERT_NE(document.svg, nullptr) << c.name << document.messages();
    const Scene scene(document);
    const std::string list = scene_list(scene);
    EXPECT_EQ("\n" + list + document.messages(), c.expected) << c.name;
  }
}

// An element by itself lies in its parent's space and inherits from its ancestors.
TEST(SceneWalk, AnElementAlone) {
  const Document document(
      drawing("width='200' height='100'",
              "<g fill='red' transform='scale(2)'><svg width='50' height='50' viewBox='0 0 10 10'>"
              "<rect id='a' width='50%' height='1' transform='translate(1)'/></svg></g>"
              "<marker id='m' stroke='red'><rect id='b' width='1' height='1'/></marker>"));
  const Scene scene(document);
  EXPECT_EQ(scene_list(scene, document.find("a")),
            "shape a matrix=1 0 0 1 1 0 fill=#ff0000 M0 0 L5 0 5 1 0 1 Z\n");
  EXPECT_EQ(scene_list(scene, document.find("m")),
            "shape b fill=#000000 stroke=#ff0000 width=1 M0 0 L1 0 1 1 0 1 Z\n");
}

// Boxes by element, ancestor and stroke.
TEST(SceneWalk, Boxes) {
  const Document document(drawing(
      "width='200' height='100' viewBox='0 0 100 50'",
      "<g id='g' transform='scale(2)' opacity='.5' clip-path='url(#c)'>"
      "<rect id='a' x='1' y='2' width='4' height='3' transform='rotate(90)' stroke='red'"
      " stroke-width='2' fill='none'/><use id='u' xlink:href='#s' width='10' height='10'/></g>"
      "<symbol id='s' viewBox='0 0 1 1'><circle r='1' id='k'/></symbol><clipPath id='c'/>"
      "<g id='e'><rect visibility='hidden' width='1' height='1'/></g><svg width='0'><path id='z' "
      "d='M0 0h1'/></svg>"
      "<path id='p' d='M0 0C0 4 4 4 4 0' marker-end='url(#m)'/>"
      "<marker id='m' overflow='visible'><rect width='9' height='9'/></marker>"));
  const Scene scene(document);
  const auto box = [&](const char *of, const char *in, bool stroked) {
    return scene_box(scene, of, in, stroked);
  };
  EXPECT_EQ(box("a", "a", false), "1 2 4 3");
  EXPECT_EQ(box("a", "a", true), "0 1 6 5");
  EXPECT_EQ(box("a", "g", false), "-5 1 3 4");
  EXPECT_EQ(box("a", "", false), "-20 4 12 16");
  EXPECT_EQ(box("u", "u", false), "-10 -10 20 20");
  EXPECT_EQ(box("g", "", true), "-40 -40 80 80");
  EXPECT_EQ(box("s", "s", false), "-1 -1 2 2");
  EXPECT_EQ(box("e", "", false), "none");
  EXPECT_EQ(box("z", "", false), "none");
  EXPECT_EQ(box("p", "p", false), "0 0 4 3");
  EXPECT_EQ(box("p", "p", true), "0 0 13 9");
  EXPECT_EQ(box("", "", false), "-40 -40 80 80");
}

std::string times(int number, const std::string &text) {
  std::string result;
  for (int i = 0; i < number; i++) result += text;
  return result;
}

// Ten levels of ten uses each, and references nested deeper than the stack would bear.
TEST(SceneWalk, ExpansionHasABudget) {
  std::string uses = "<g id='l0'><rect width='1' height='1'/></g>", masks;
  for (int level = 1; level <= 10; level++) {
    uses += "<g id='l" + std::to_string(level) + "'>" +
            times(10, "<use xlink:href='#l" + std::to_string(level - 1) + "'/>") + "</g>";
  }
  const auto limit = [](svg_parser *p) {
    const svg_limits limits = {0, 0, 0, 0, 0, 10000};
    svg_set_limits(p, &limits);
  };
  const Document many(drawing(USUAL, uses), AccountingCore::defaults(), limit);
  const Scene scene(many);
  const std::string list = scene_list(scene);
  EXPECT_TRUE(list.ends_with("error 1930\n"));
  EXPECT_EQ(many.messages(), "Limit of 10000 shown elements exceeded\n");
  EXPECT_EQ(scene_box(scene, "l1", "", false), "0 0 1 1");
  // What takes long counts, too: markers, points, what is measured for a clip and for those around
  // it, paths that text follows, parts of texts in others, and styles of elements that are referred
  // to, far down.
  const std::string path = "<path id='p' d='M0 0" + times(10000, " 1 1") + "'";
  const std::string gradient = "<linearGradient id='l' gradientUnits='userSpaceOnUse' x1='1em'>"
                               "<stop/><stop offset='1'/></linearGradient>";
  for (const std::string &content : {
           "<marker id='m'/>" + path + " marker-mid='url(#m)'/>",
           path + "/>" + times(70, "<use xlink:href='#p'/>"),
           path + " display='none'/><text><textPath xlink:href='#p'>a</textPath></text>",
           "<clipPath id='c' clipPathUnits='objectBoundingBox'/>" +
               times(150, "<g clip-path='url(#c)'>") + "<rect width='1' height='1'/>" +
               times(150, "</g>"),
           "<font horiz-adv-x='9'><font-face font-family='F'/></font><text font-family='F'>" +
               times(600, "<tspan textLength='9'>f") + times(600, "</tspan>") + "</text>",
           times(1000, "<g>") + gradient + times(1000, "</g>") +
               times(80, "<rect width='1' height='1' fill='url(#l)'/>"),
       }) {
    const Document costly(drawing(USUAL, content), AccountingCore::defaults(), limit);
    EXPECT_TRUE(scene_list(Scene(costly)).ends_with("error 1930\n")) << content.substr(0, 100);
  }

  for (int level = 0; level < 100; level++)
    masks += "<mask id='m" + std::to_string(level) +
             "' maskUnits='userSpaceOnUse'>"
             "<rect width='1' height='1' mask='url(#m" +
             std::to_string(level + 1) + ")'/></mask>";
  const Document deep(drawing(USUAL, masks + "<rect width='1' height='1' mask='url(#m0)'/>"));
  EXPECT_EQ(std::ranges::count(scene_list(Scene(deep)), '\n'), 2 + 3 * 64 - 2);
  EXPECT_EQ(deep.messages(),
            "Element 'rect' in line 1: reference is nested too deep and is ignored\n");
}

// Each allocation of the scene fails, alone or with all later ones.
TEST(SceneWalk, FailingAllocationsLeaveNothing) {
  for (const NamedBytes &seed : files_below("fuzz/seeds/scene")) {
    if (!seed.name.ends_with("everything")) continue;
    for (const bool on : {false, true}) {
      bool failed = true;
      for (uint64_t at = 1; failed; at++) {
        AccountingCore core;
        read_once(core, seed.bytes, [&](svg_parser *parser, svg_e_node *svg) {
          const uint64_t fail_at = core.allocations() + at;
          ort_fail_at(core, fail_at, on);
          const int code = scene_all(core, parser, svg);
          failed = core.allocations() >= fail_at;
          EXPECT_EQ(code, failed ? ORT_E_NO_MEMORY : 0) << seed.name << ' ' << at;
          return code;
        });
      }
    }
  }
}

} // namespace
