// Computed styles as a table: a drawing, and for elements of it property -> value.
#include <gtest/gtest.h>

#include "tests/support/cases.h"
#include "tests/support/scene.h"

namespace {

// Lines "ID PROPERTY -> VALUE" about one drawing.
struct StyleCase {
  const char *drawing; // within an svg element of 200 by 100
  const char *expected;
};

const StyleCase cases[] = {
    {"<rect id='a'/>",
     "a color -> #000000 | a background-color -> none | a fill -> #000000 | a stroke -> none\n"
     "a stop-color -> #000000 | a fill-opacity -> 1 | a stroke-opacity -> 1 | a opacity -> 1\n"
     "a stop-opacity -> 1 | a fill-rule -> nonzero | a clip-rule -> nonzero\n"
     "a stroke-width -> 1 | a stroke-linecap -> butt | a stroke-linejoin -> miter\n"
     "a stroke-miterlimit -> 4 | a stroke-dashoffset -> 0 | a stroke-dasharray -> none\n"
     "a clip-path -> none | a mask -> none | a marker-start -> none | a clip -> auto\n"
     "a display -> inline | a visibility -> visible | a overflow -> hidden\n"
     "a font-family -> none | a font-size -> 12 | a font-size-adjust -> none\n"
     "a font-stretch -> normal | a font-style -> normal | a font-variant -> normal\n"
     "a font-weight -> 400 | a baseline-shift -> baseline | a kerning -> auto\n"
     "a letter-spacing -> 0 | a word-spacing -> 0 | a text-anchor -> start\n"
     "a direction -> ltr | a unicode-bidi -> normal | a writing-mode -> lr-tb\n"
     "a glyph-orientation-vertical -> auto | a text-decoration -> none | a color-profile -> auto"},
    // What is inherited, what is not, and "inherit".
    {"<g fill='red' opacity='.5' stop-color='lime' overflow='visible' text-decoration='underline'"
     " clip='rect(1 2 3 4)' display='block' baseline-shift='3' unicode-bidi='embed'"
     " background-color='red' color-profile='sRGB' font-family='A, serif' id='g'>"
     "<g id='a'/><g id='b' opacity='inherit' stop-color='inherit' overflow='inherit'"
     " text-decoration='inherit' clip='inherit' display='inherit' baseline-shift='inherit'"
     " unicode-bidi='inherit' background-color='inherit' fill='none' font-family='inherit'/>"
     "<g fill='none'><g id='c' fill='inherit' color-profile='auto'/></g></g>",
     "a fill -> #ff0000 | a opacity -> 1 | a stop-color -> #000000 | a overflow -> hidden\n"
     "a text-decoration -> none | a clip -> auto | a display -> inline\n"
     "a baseline-shift -> baseline | a unicode-bidi -> normal | a background-color -> none\n"
     "a color-profile -> sRGB | a font-family -> 'A' serif\n"
     "b fill -> none | b opacity -> 0.5 | b stop-color -> #00ff00 | b overflow -> visible\n"
     "b text-decoration -> underline | b clip -> 1 2 3 4 | b display -> block\n"
     "b baseline-shift -> 3 | b unicode-bidi -> embed | b background-color -> #ff0000\n"
     "b font-family -> 'A' serif | c fill -> none | c color-profile -> auto"},
    // Attribute, sheet, style and importance.
    {"<style>g{stroke:red;fill:blue !important;opacity:.25 !important}#b{marker:url(#m)}</style>"
     "<marker id='m'/><g id='a' stroke='lime' fill='red' style='fill:lime;opacity:.5'/>"
     "<g id='b' style='stroke:lime; marker-end:none'/>"
     "<g id='c' style='marker-end:none; marker: url(#m)'><g id='d' marker-mid='none'/></g>",
     "a stroke -> #ff0000 | a fill -> #0000ff | a opacity -> 0.25 | b stroke -> #00ff00\n"
     "b marker-start -> m | b marker-end -> none | c marker-end -> m | d marker-mid -> none\n"
     "d marker-start -> m"},
    // Colors and paints.
    {"<g color='red' fill='currentColor' id='g' stroke='url(#p) blue'><g color='lime' id='a'"
     " stroke='currentColor' stop-color='currentColor'/><g id='b' stroke='inherit'/></g>"
     "<g id='c' fill='red device-cmyk(0,1,1,0)' color='inherit'/><pattern id='p'/>",
     "a fill -> #ff0000 | a stroke -> #00ff00 | a stop-color -> #00ff00 | b stroke -> p #0000ff\n"
     "c fill -> #ff0000 device-cmyk | c color -> #000000"},
    // Links to elements of the wrong kind, or to none.
    {"<mask id='m'/><clipPath id='c'/><marker id='k'/>"
     "<g id='a' mask='url(#m)' clip-path='url(#c)' marker-start='url(#k)'/>"
     "<g id='b' mask='url(#c)' clip-path='url(#m)' marker-start='url(#m)'/>"
     "<g id='d' mask='url(#x)' clip-path='url(other.svg#c)' marker-mid='inherit'/>",
     "a mask -> m | a clip-path -> c | a marker-start -> k | b mask -> none\n"
     "b clip-path -> none | b marker-start -> none | d mask -> none | d clip-path -> none"},
    // Lengths: units, font-size, viewports.
    {"<g id='a' font-size='20' stroke-width='1.5em' letter-spacing='1ex' word-spacing='2pt'"
     " kerning='1in' stroke-dashoffset='10mm' baseline-shift='50%'><g id='b' font-size='2em'/></g>"
     "<g id='c' stroke-width='10%' letter-spacing='1pc' word-spacing='1cm' kerning='3px'/>"
     "<svg viewBox='0 0 30 40'><g id='d' stroke-width='10%' stroke-dashoffset='none'/></svg>"
     "<svg width='50%' height='100' id='v' stroke-width='100%'><g id='e' "
     "stroke-width='100%'/></svg>",
     "a stroke-width -> 30 | a letter-spacing -> 10 | a word-spacing -> 2.66667\n"
     "a kerning -> 96 | a stroke-dashoffset -> 37.7953 | a baseline-shift -> 10\n"
     "b font-size -> 40 | b stroke-width -> 30 | b letter-spacing -> 10\n"
     "c stroke-width -> 15.8114 | c letter-spacing -> 16 | c word-spacing -> 37.7953\n"
     "c kerning -> 3 | d stroke-width -> 3.53553 | d stroke-dashoffset -> 0\n"
     "v stroke-width -> 158.114 | e stroke-width -> 100"},
    // Font sizes, weights, stretches.
    {"<g id='p' font-size='x-small'/><g id='q' font-size='small' text-decoration='line-through "
     "blink'/>"
     "<g id='r' font-size='medium' font-weight='bolder'/><g id='s' font-size='xx-large'/>"
     "<g font-weight='600'><g id='t' font-weight='bolder'/><g id='u' font-weight='lighter'/></g>"
     "<g font-weight='800'><g id='v' font-weight='lighter'/></g>"
     "<g id='a' font-size='xx-small'/><g id='b' font-size='x-large'><g id='c' font-size='larger'/>"
     "<g id='d' font-size='smaller'/><g id='e' font-size='50%'/><g id='f' font-size='2ex'/>"
     "<g id='h' font-size='-1'/></g>"
     "<g id='i' font-weight='bold' font-stretch='condensed' font-size-adjust='.5'><g id='j' "
     "font-weight='bolder'"
     " font-stretch='wider'/><g id='k' font-weight='lighter' font-stretch='narrower'/></g>"
     "<g font-weight='300'><g id='l' font-weight='bolder'/><g id='m' font-weight='lighter'/></g>"
     "<g font-stretch='ultra-expanded'><g id='n' font-stretch='wider'/></g>"
     "<g id='o' font='italic small-caps bold 10pt/2 \"B C\", monospace'/>",
     "p font-size -> 9 | q font-size -> 10.6667 | q text-decoration -> line-through blink\n"
     "r font-size -> 12 | r font-weight -> 700 | s font-size -> 24 | t font-weight -> 900\n"
     "u font-weight -> 400 | v font-weight -> 700\n"
     "a font-size -> 7.2 | b font-size -> 18 | c font-size -> 21.6 | d font-size -> 15\n"
     "e font-size -> 9 | f font-size -> 18 | h font-size -> 18\n"
     "i font-size-adjust -> 0.5 | i font-weight -> 700 | j font-weight -> 900 | j font-stretch -> "
     "semi-condensed\n"
     "k font-weight -> 400 | k font-stretch -> extra-condensed | l font-weight -> 400\n"
     "m font-weight -> 100 | n font-stretch -> ultra-expanded | o font-size -> 13.3333\n"
     "o font-style -> italic | o font-variant -> small-caps | o font-weight -> 700\n"
     "o font-family -> 'B C' monospace"},
    // Dashes.
    {"<g id='a' stroke-dasharray='1 2em 10%' font-size='3'><g id='b'/>"
     "<g id='c' stroke-dasharray='none'/><g id='d' stroke-dasharray='1 -2'/>"
     "<g id='e' stroke-dasharray='0 0'/><g id='f' stroke-dasharray='inherit' font-size='9'/></g>",
     "a stroke-dasharray -> 1 6 15.8114 1 6 15.8114 | b stroke-dasharray -> 1 6 15.8114 1 6 "
     "15.8114\n"
     "c stroke-dasharray -> none | d stroke-dasharray -> 1 6 15.8114 1 6 15.8114\n"
     "e stroke-dasharray -> none | f stroke-dasharray -> 1 6 15.8114 1 6 15.8114"},
    // Out of range, and past the largest number.
    {"<g stroke-width='3' stroke-miterlimit='2' fill-opacity='.5'><g id='a' stroke-width='-1'"
     " stroke-miterlimit='.5' fill-opacity='7' opacity='-1' stop-opacity='2'/>"
     "<g id='b' font-size='1e308' stroke-width='1e308in' letter-spacing='9em'/></g>",
     "a stroke-width -> 3 | a stroke-miterlimit -> 2 | a fill-opacity -> 1 | a opacity -> 0\n"
     "a stop-opacity -> 1 | b stroke-width -> 3 | b letter-spacing -> 0"},
};

TEST(SceneStyle, Table) {
  for (const StyleCase &c : cases) {
    const Document document("<svg width='200' height='100'>" + std::string(c.drawing) + "</svg>");
    ASSERT_NE(document.svg, nullptr) << document.messages();
    const Scene scene(document);
    SCOPED_TRACE(c.drawing);
    expect_cases(c.expected, [&](const std::string &text) {
      const size_t blank = text.find(' ');
      return scene.style(text.substr(0, blank), text.substr(blank + 1));
    });
  }
}

TEST(SceneStyle, OptionsOfTheHost) {
  const Document document("<svg width='50%' height='2in' viewBox='0 0 30 40'><g id='a'"
                          " font-size='large' stroke-width='1in' kerning='20%'/></svg>");
  const svg_scene_options options = {72, 10, 500, 0};
  const Scene scene(document, &options);
  EXPECT_EQ(scene.size(), "250 144");
  EXPECT_EQ(scene.style("a", "font-size"), "12");
  EXPECT_EQ(scene.style("a", "stroke-width"), "72");
  EXPECT_EQ(scene.style("a", "kerning"), "7.07107");
}

} // namespace
