// Text as it is painted, as tables: a drawing of a few texts, and the list of
// tests/support/scene_list.h, without and with a host that measures.
#include <gtest/gtest.h>

#include "tests/support/scene_list.h"

namespace {

struct TextCase {
  const char *name, *content;
  bool measured;
  const char *expected;
};

// clang-format off
const TextCase cases[] = {
    {"white space",
     "<text>  a\n b <tspan> c\t</tspan> d  </text><text xml:space='preserve'> a\n<tspan>b</tspan> </text>"
     "<g xml:space='preserve'><text>x  <tspan xml:space='default'>  y </tspan> </text></g><text> </text>", false, R"(
text text 'a b ' x=0 y=0 chunk first fill=#000000
text tspan 'c ' fill=#000000
text text 'd' last fill=#000000
text text ' a ' x=0 y=0 chunk first fill=#000000
text tspan 'b' fill=#000000
text text ' ' last fill=#000000
text text 'x  ' x=0 y=0 chunk first fill=#000000
text tspan ' y ' fill=#000000
text text ' ' last fill=#000000
)"},
    {"positions of characters",
     "<text x='1 2' dx='0 0 5'>ab<tspan x='9' rotate='30 40'>cd</tspan>é<tspan display='none'>no</tspan>f</text>"
     "<text x='10%' y='1em' font-size='10' rotate='5'>ab</text>", false, R"(
text text 'a' x=1 y=0 chunk first fill=#000000
text text 'b' x=2 chunk fill=#000000
text tspan 'c' x=9 chunk dx=5 rotate=30 fill=#000000
text tspan 'd' rotate=40 fill=#000000
text text 'é' fill=#000000
text text 'f' last fill=#000000
text text 'a' x=20 y=10 chunk first rotate=5 fill=#000000
text text 'b' last rotate=5 fill=#000000
)"},
    {"anchors and chunks",
     "<text x='100' y='5' font-size='10' text-anchor='middle'>abcd<tspan dx='10' font-size='20'>e</tspan>"
     "<tspan x='50' text-anchor='end'>fg</tspan>h</text>"
     "<text x='100' text-anchor='start' direction='rtl' font-size='10'>ab</text><text x='100' text-anchor='end' direction='rtl' font-size='10'>ab</text>", true, R"(
text text 'abcd' x=80 y=5 chunk first advance=20 fill=#000000
text tspan 'e' x=110 y=5 advance=10 fill=#000000
text tspan 'fg' x=35 y=5 chunk advance=10 fill=#000000
text text 'h' x=45 y=5 last advance=5 fill=#000000
text text 'ab' x=90 y=0 chunk first last advance=10 fill=#000000
text text 'ab' x=100 y=0 chunk first last advance=10 fill=#000000
)"},
    {"lengths and spacing",
     "<text font-size='10' textLength='40' letter-spacing='1'>abc</text>"
     "<text font-size='10' textLength='40' lengthAdjust='spacingAndGlyphs'>ab<tspan>cd</tspan></text>", true, R"(
text text 'abc' x=0 y=0 chunk first last spacing=12 advance=51 fill=#000000
text text 'ab' x=0 y=0 chunk first stretch=2 advance=10 fill=#000000
text tspan 'cd' x=20 y=0 last stretch=2 advance=10 fill=#000000
)"},
    {"styles",
     "<text font-size='10' text-decoration='underline' fill='url(#l)' stroke='red'>a<tspan baseline-shift='super' fill='blue' "
     "stroke='none' text-decoration='overline'>b<tspan baseline-shift='-2'>c</tspan></tspan><tspan visibility='hidden'>d</tspan>e</text>"
     "<linearGradient id='l'><stop offset='0'/><stop offset='1' stop-color='white'/></linearGradient>"
     "<text font-size='10' opacity='.5' clip-path='url(#c)'>x</text><clipPath id='c'><text font-size='10'>y</text></clipPath>", true, R"(
text text 'a' x=0 y=0 chunk first advance=5 fill=linear(0 0 1 0 matrix=25 0 0 14 0 -12 0 #000000 1 #ffffff) stroke=#ff0000 decoration=1 linear(0 0 1 0 matrix=25 0 0 14 0 -12 0 #000000 1 #ffffff)
text tspan 'b' x=5 y=-4 advance=5 fill=#0000ff decoration=1 linear(0 0 1 0 matrix=25 0 0 14 0 -12 0 #000000 1 #ffffff) decoration=2 #0000ff
text tspan 'c' x=10 y=-2 advance=5 fill=#0000ff decoration=1 linear(0 0 1 0 matrix=25 0 0 14 0 -12 0 #000000 1 #ffffff) decoration=2 #0000ff
text text 'e' x=20 y=0 last advance=5 fill=linear(0 0 1 0 matrix=25 0 0 14 0 -12 0 #000000 1 #ffffff) stroke=#ff0000 decoration=1 linear(0 0 1 0 matrix=25 0 0 14 0 -12 0 #000000 1 #ffffff)
group text opacity=0.5
  clip c
    text text 'y' x=0 y=0 chunk first last fill=#000000
  text text 'x' x=0 y=0 chunk first last advance=5 fill=#000000
)"},
    {"tref, and what is no part of a text",
     "<defs><text id='t'>one <tspan>two</tspan></text></defs><text>a<tref id='r' xlink:href='#t' fill='red'>not</tref>"
     "<tref xlink:href='#none'/><rect width='1' height='1'/><a xlink:href='http://x/' baseline-shift='sub'>b</a></text>", false, R"(
text text 'a' x=0 y=0 chunk first fill=#000000
text r 'one ' fill=#ff0000
text r 'two' fill=#ff0000
text a 'b' last baseline=2.4 fill=#000000 link=http://x/
)"},
    {"a path",
     "<path id='p' d='M0 10H10V40' transform='translate(1)' fill='none'/>"
     "<text font-size='8'><textPath xlink:href='#p' startOffset='4'>abc</textPath>d</text>"
     "<text font-size='8' text-anchor='end'><textPath xlink:href='#p' startOffset='100%'>a<tspan dy='2'>b</tspan></textPath></text>"
     "<text font-size='8'><textPath xlink:href='#none'>abc</textPath></text>", true, R"(
text textPath 'a' x=5 y=10 chunk first advance=4 fill=#000000
text textPath 'b' x=11 y=8 rotate=90 advance=4 fill=#000000
text textPath 'c' x=11 y=12 rotate=90 advance=4 fill=#000000
text text 'd' x=11 y=16 chunk last advance=4 fill=#000000
text textPath 'a' x=11 y=32 chunk first rotate=90 advance=4 fill=#000000
text tspan 'b' x=9 y=36 last rotate=90 advance=4 fill=#000000
)"},
    {"lengths and paths that the host sees to",
     "<path id='p' d='M0 10H10' transform='translate(1)' fill='none'/>"
     "<text textLength='40'>a<tspan textLength='2em' lengthAdjust='spacingAndGlyphs'>b</tspan>"
     "<textPath xlink:href='#p' startOffset='50%'>cd<tspan dx='2' textLength='-1'>e</tspan></textPath></text>", false, R"(
text text 'a' x=0 y=0 chunk first fill=#000000 length=text 40
text tspan 'b' fill=#000000 length=tspan 24 glyphs length=text 40
text textPath 'cd' chunk fill=#000000 path=5 M1 10 L11 10 length=text 40
text tspan 'e' last dx=2 fill=#000000 path=5 M1 10 L11 10 length=text 40
)"},
    {"boxes that only the host knows",
     "<linearGradient id='l' y2='1' gradientTransform='scale(.5)'><stop/><stop offset='1'/></linearGradient>"
     "<pattern id='p' width='.5' height='.5' patternContentUnits='objectBoundingBox'><path d='M0 0h1'/></pattern>"
     "<clipPath id='c' clipPathUnits='objectBoundingBox' transform='scale(.5)'><path d='M0 0h1'/></clipPath><mask id='m'><path d='M0 0h1'/></mask>"
     "<text fill='url(#l)' stroke='url(#p)'>a<tspan baseline-shift='2'>b<tspan baseline-shift='super' dy='3'>c</tspan></tspan></text>"
     "<text clip-path='url(#c)'>d</text><g mask='url(#m)'><text>e</text><rect width='1' height='1'/></g>"
     "<g mask='url(#m)'><text textLength='1'/><rect width='1' height='1'/></g>", false, R"(
text text 'a' x=0 y=0 chunk first fill=linear(0 0 1 1 matrix=0.5 0 0 0.5 0 0 of box 0 #000000 1 #000000) stroke=pattern(p)
text tspan 'b' baseline=-2 fill=linear(0 0 1 1 matrix=0.5 0 0 0.5 0 0 of box 0 #000000 1 #000000) stroke=pattern(p)
text tspan 'c' last dy=3 baseline=-6.8 fill=linear(0 0 1 1 matrix=0.5 0 0 0.5 0 0 of box 0 #000000 1 #000000) stroke=pattern(p)
group text
  clip c matrix=0.5 0 0 0.5 0 0 of box outline M0 0 L0.5 0
    shape path fill=#000000 M0 0 L1 0
  text text 'd' x=0 y=0 chunk first last fill=#000000
group g
  mask m area=-0.1 -0.1 1.2 1.2 of box
    shape path fill=#000000 M0 0 L1 0
  text text 'e' x=0 y=0 chunk first last fill=#000000
  shape rect fill=#000000 M0 0 L1 0 1 1 0 1 Z
group g
  mask m area=-0.1 -0.1 1.2 1.2
    shape path fill=#000000 M0 0 L1 0
  shape rect fill=#000000 M0 0 L1 0 1 1 0 1 Z
)"},
    {"links and decorations from around",
     "<g text-decoration='underline' fill='red' stroke='url(#l)'><text fill='blue' stroke='none'>a<a xlink:href='#l'>b<a>c</a>"
     "<a xlink:href='http://x/' text-decoration='overline'>d</a></a></text></g>"
     "<linearGradient id='l'><stop/><stop offset='1'/></linearGradient>", true, R"(
text text 'a' x=0 y=0 chunk first advance=6 fill=#0000ff decoration=1 #ff0000
text a 'b' x=6 y=0 advance=6 fill=#0000ff decoration=1 #ff0000 link=#l
text a 'c' x=12 y=0 advance=6 fill=#0000ff decoration=1 #ff0000 link=#l
text a 'd' x=18 y=0 last advance=6 fill=#0000ff decoration=1 #ff0000 decoration=2 #0000ff link=http://x/
)"},
    {"the first and the last run",
     "<font horiz-adv-x='500'><font-face font-family='F'/><glyph unicode='f' d='M0 0V200'/></font>"
     "<text font-family='F' font-size='10'>f<a xlink:href='http://x/'>zf<tspan>f</tspan></a><tspan x='5' font-family='G' visibility='hidden'>a</tspan>"
     "<tspan font-family='G'>b</tspan>f<textPath xlink:href='#none' font-family='G'>c</textPath></text>", false, R"(
shape glyph fill=#000000 M0 0 L0 -2
group a link=http://x/
  shape glyph fill=#000000 M10 0 L10 -2
  shape glyph fill=#000000 M15 0 L15 -2
text tspan 'a' x=5 chunk first fill=none
text tspan 'b' fill=#000000
text text 'f' last fill=#000000
)"},
    {"lines that go down",
     "<font horiz-adv-x='500' horiz-origin-x='300' horiz-origin-y='400'><font-face font-family='F' units-per-em='1000' descent='-300'/><glyph unicode='f' d='M0 0V200'/></font>"
     "<text writing-mode='tb' x='50' y='10' font-size='10' textLength='50'>ab漢字<tspan baseline-shift='2' text-decoration='underline'>cあ</tspan></text>"
     "<text writing-mode='tb-rl' x='50' y='10' font-size='10' text-anchor='middle' glyph-orientation-vertical='180'>a<tspan glyph-orientation-vertical='270' dx='1' dy='2'>bc</tspan>"
     "<tspan glyph-orientation-vertical='0' letter-spacing='1'>d</tspan><tspan y='90' font-family='F' writing-mode='lr'>f</tspan></text>", true, R"(
text text 'ab' x=47 y=10 chunk first rotate=90 spacing=1 advance=12 fill=#000000
text text '漢' x=47.5 y=30 spacing=1 advance=6 fill=#000000
text text '字' x=47.5 y=41 spacing=1 advance=6 fill=#000000
text tspan 'c' x=49 y=44 rotate=90 spacing=1 advance=6 fill=#000000 decoration=1 #000000
text tspan 'あ' x=49.5 y=58 last spacing=1 advance=6 fill=#000000
text text 'a' x=52.5 y=-4.5 chunk first rotate=180 advance=5 fill=#000000
text tspan 'b' x=54 y=10.5 rotate=270 advance=5 fill=#000000
text tspan 'c' x=54 y=15.5 rotate=270 advance=5 fill=#000000
text tspan 'd' x=48.5 y=23.5 last spacing=1 advance=6 fill=#000000
shape glyph fill=#000000 M56.5 84 L56.5 86
)"},
    {"lines that go down, not measured", "<text writing-mode='tb' y='10'>a漢</text>", false, R"(
text text 'a漢' x=0 y=10 chunk first last fill=#000000
)"},
    {"a font of the drawing",
     "<font horiz-adv-x='500'><font-face font-family='F' units-per-em='1000' descent='-300'/>"
     "<missing-glyph d='M0 0H100'/><glyph unicode='fi' horiz-adv-x='900' d='M0 0V100'/><glyph unicode='f' d='M0 0V200'/>"
     "<glyph unicode='i' glyph-name='i' d='M0 0V300'/><glyph unicode='x'/><hkern u1='x,U+66' g2='i' k='100'/>"
     "<hkern u1='X+66,U-66,U+6G,U+67-65,U+66-,U+5?,U+66-66-66,U+6x' u2='f' k='5000'/><hkern u1='u+60-6f' u2='f' k='9'/></font>"
     "<text x='20' y='10' font-family='none, F' font-size='10' text-anchor='end' text-decoration='underline overline line-through'>fixi?ff</text>"
     "<text x='0' y='0' font-family='F' font-size='10' rotate='90' stroke='red' stroke-width='2'>ii</text>", false, R"(
shape text fill=#000000 M-12.91 11 L20 11 20 11.5 -12.91 11.5 Z
shape text fill=#000000 M-12.91 2 L20 2 20 2.5 -12.91 2.5 Z
shape text fill=#000000 M-12.91 7.2 L20 7.2 20 7.7 -12.91 7.7 Z
shape glyph fill=#000000 M-12.91 10 L-12.91 9
shape glyph fill=#000000 M0.09 10 L0.09 7
shape missing-glyph fill=#000000 M5.09 10 L6.09 10
shape glyph fill=#000000 M10.09 10 L10.09 8
shape glyph fill=#000000 M15 10 L15 8
shape glyph fill=#000000 stroke=#ff0000 width=2 M0 0 L3 0
shape glyph fill=#000000 stroke=#ff0000 width=2 M5 0 L8 0
)"},
};
// clang-format on

std::string list_of(const std::string &content, bool measured) {
  const Document document("<svg xmlns='http://www.w3.org/2000/svg' "
                          "xmlns:xlink='http://www.w3.org/1999/xlink' width='200' height='100' "
                          "overflow='visible'>" +
                          content + "</svg>");
  const Scene scene(document);
  return scene_list(scene, nullptr, measured) + document.messages();
}

TEST(SceneText, Lists) {
  for (const TextCase &test : cases)
    EXPECT_EQ("\n" + list_of(test.content, test.measured), test.expected) << test.name;
}

TEST(SceneText, EachOfManyGlyphsIsFound) {
  std::string glyphs, text, lines;
  for (int c = 'A'; c <= 'z'; ++c) {
    const std::string number = std::to_string(c);
    glyphs += "<glyph unicode='&#" + number + ";' d='M0 0H" + number + "'/>";
    text += static_cast<char>(c);
    lines += "shape glyph fill=#000000 M0 0 L" + number + " 0\n";
  }
  EXPECT_EQ(list_of("<font horiz-adv-x='0'><font-face font-family='F'/>" + glyphs +
                        "</font><text font-family='F' font-size='1000'>" + text + "</text>",
                    false),
            lines);
}

TEST(SceneText, SixteenElementsDecorate) {
  std::string text = "<text>x</text>", lines;
  for (int i = 0; i < 20; ++i) text = "<g text-decoration='overline'>" + text + "</g>";
  for (int i = 0; i < 16; ++i) lines += " decoration=2 #000000";
  EXPECT_EQ(list_of(text, false),
            "text text 'x' x=0 y=0 chunk first last fill=#000000" + lines + "\n");
}

} // namespace
