// Lenient reading: what each flag takes, beside what the strict reading says of it.
#include <gtest/gtest.h>

#include "tests/support/cases.h"
#include "tests/support/reader.h"

namespace {

struct Told {
  uint32_t flags = 0;
  std::string lines;
};

void allow(svg_parser *p, uint32_t flags, Told *told) {
  svg_set_leniency(p, flags);
  svg_set_leniency_observer(
      p,
      [](void *user, const svg_lenient_value *value) {
        auto *to = static_cast<Told *>(user);
        to->flags |= value->flags;
        to->lines += std::to_string(value->flags) + ' ' + std::to_string(value->line) + ' ' +
                     value->element + ' ' + value->name + '=' + value->text + '\n';
      },
      told);
}

// Lines "ELEMENT ATTRIBUTE: TEXT -> STRICT => LENIENT", the latter left out where it is the same.
// Only the one flag makes a difference, and only a value that is taken for its sake is told of.
void expect_leniency(uint32_t flag, const char *table) {
  std::istringstream lines(table);
  for (std::string element, attribute, cases; lines >> element >> attribute;) {
    SCOPED_TRACE(element + ' ' + attribute);
    attribute.pop_back();
    std::getline(lines, cases);
    expect_cases(cases, [&](const std::string &text) {
      const auto read = [&](uint32_t flags, Told *told) {
        return value_of(element.c_str(), attribute.c_str(), text,
                        [=](svg_parser *p) { allow(p, flags, told); });
      };
      Told told, none;
      const std::string strict = value_of(element.c_str(), attribute.c_str(), text);
      EXPECT_EQ(read(SVG_LENIENT_ALL & ~flag, &none), strict);
      EXPECT_EQ(none.lines, "");
      const std::string lenient = read(flag, &told);
      EXPECT_EQ(told.flags, lenient != strict && lenient[0] != '!' ? flag : 0);
      return lenient == strict ? strict : strict + " => " + lenient;
    });
  }
}

TEST(Leniency, NumbersEndWhereAnotherBegins) {
  expect_leniency(SVG_LENIENT_NUMBERS, R"(
g transform: translate(-532-414.36) -> ! -532-414.36 => translate(-532 -414.36)
g transform: matrix(.68966.727-1+1 1e2-3e-1-.5) -> ! .68966.727-1+1 => ! -.5
g transform: matrix(.68966.727-1+1 1e2-3) -> ! .68966.727-1+1 => matrix(0.68966 0.727 -1 1 100 -3)
g transform: translate(1-2)scale(2) -> ! 1-2 => matrix(2 0 0 2 1 -2) | rotate(1-2) -> ! 1-2 => ! )
g transform: translate(1-2x) -> ! 1-2x => ! -2x | translate(1--2) -> ! 1--2 => ! --2 | skewX(1px-2) -> ! 1px-2 => ! 1px
svg viewBox: 0-1.5.5 7 -> ! 0-1.5.5 => 0 -1.5 0.5 7 | 0-1.5.5 -> ! 0-1.5.5 => !
polyline points: 10-20-30+40 -> ! 10-20-30+40 => 10 -20 -30 40 | 1.5.5.5 x -> ! 1.5.5.5 => ! x
polyline points: 1-2,,3 -> ! 1-2 => ! , | 1e1.5 -> ! 1e1.5 => 10 0.5 | 1e-2-3 -> ! 1e-2-3 => 0.01 -3
tspan dx: 1em-2ex.5 -> ! 1em-2ex.5 => 1em -2ex 0.5 | 1%-2 -> 1% | 1-2%-3 -> ! 1-2%-3 => 1 -2% -3
tspan dx: 1em5 -> ! 1em5 | 1- -> ! 1- => ! -
g stroke-dasharray: 1.5.5 -> ! 1.5.5 => 1.5 0.5 | none-1 -> ! none-1
rect x: 1-2 -> ! 1-2 | 1.5.5 -> ! 1.5.5
g clip: rect(1-2 3 4 5) -> ! 1-2
)");
}

TEST(Leniency, OpacitiesInPercent) {
  expect_leniency(SVG_LENIENT_PERCENT, R"(
g opacity: 50% -> ! 50% => 0.5 | 250% -> ! 250% => 2.5 | 5 % -> 5 | x% -> ! x%
g fill-opacity: 12.5% -> ! 12.5% => 0.125
g stroke-opacity: 1e1% -> ! 1e1% => 0.1
stop stop-opacity: 0% -> ! 0% => 0
g stroke-miterlimit: 50% -> ! 50%
font-face slope: 50% -> ! 50%
)");
}

TEST(Leniency, FallbacksOfPaintsAndInherit) {
  expect_leniency(SVG_LENIENT_FALLBACKS, R"(
rect fill: url(#x) none -> ! none => url(#x (no such element)) none | url(#x) CurrentColor -> ! CurrentColor => url(#x (no such element)) currentColor
rect fill: url(#x)none red -> ! none => url(#x (no such element)) none | url(#x) inherit -> ! inherit | url(#x) x -> ! x
rect stroke: url(#x) red -> url(#x (no such element)) #ff0000 | url(a) none -> ! none => url(a) none
g color: inherit -> ! inherit => - | INHERIT -> ! INHERIT => - | inherited -> ! inherited
stop stop-opacity: inherit -> ! inherit => -
)");
}

TEST(Leniency, LengthsThatHaveAnEqual) {
  expect_leniency(SVG_LENIENT_LENGTHS, R"(
rect x: 10Q -> ! 10Q => 2.5mm | 10q -> ! 10q | 1rem -> ! 1rem | 1vw -> ! 1vw | 1ch -> ! 1ch
rect width: 1vw -> ! 1vw | 1vmin -> ! 1vmin | 1vmax -> ! 1vmax
g stroke-width: -1e1q -> ! -1e1q => -2.5mm | 1REM -> ! 1REM
tspan dx: 1Q 2 -> ! 1Q => 0.25mm 2 | 1Q-2 -> ! 1Q-2
g opacity: 1Q -> ! 1Q
)");
  const auto outermost = [](const std::string &attribute) {
    Told told;
    const Document document("<svg xmlns='http://www.w3.org/2000/svg' " + attribute + "/>",
                            AccountingCore::defaults(),
                            [&](svg_parser *p) { allow(p, SVG_LENIENT_LENGTHS, &told); });
    return document.values(document.svg, attribute.substr(0, attribute.find('=')).c_str());
  };
  expect_cases(R"(
width='90vw' -> 90% | width='90vh' -> 100% | height='50vh' -> 50% | height='50vw' -> 100%
width='90vmin' -> 100% | font-size='2rem' -> 2em | stroke-width='.5rem' -> 0.5em | y='1vh' -> -
)",
               outermost);
}

TEST(Leniency, ColorsOfCss) {
  expect_leniency(SVG_LENIENT_COLORS, R"(
rect fill: #f08c -> ! #f08c => #ff0088 | #12345680 -> ! #12345680 => #123456 | #ff08g -> ! #ff08g
rect fill: #f08g -> ! #f08g | #12345 -> ! #12345 | Transparent -> ! Transparent => #000000
rect fill: rgb(255 128 0) -> ! 128 => #ff8000 | rgb(1,2,3,.5) -> ! , => #010203 | rgb(1 2 3/.5) -> ! 2 => #010203
rect fill: RGBA( 1 , 2 , 3 , 50% ) -> ! RGBA => #010203 | rgba(50%,0%,100%,1) -> ! rgba => #7f00ff
rect fill: rgba(1,2,3) -> ! rgba => #010203 | rgba(1 2 3 / 1e999) -> ! rgba => #010203
rect fill: rgb(300,-5,127.5) -> #000000 => #ff0080 | rgb(150%,50%,-1%) -> #007f00 => #ff7f00
rect fill: rgb(1,foo,3) -> #010003 => ! foo,3) | rgb(1,2px,3) -> #010003 => ! px,3) | rgb(0%,100%,0) -> #00ff00 | rgb(1,2,255) -> #0102ff
rect fill: rgb(1 2,3) -> ! 2 => ! ,3) | rgb(1,2 3) -> ! 3 => ! 3) | rgba(1,2,3/.5) -> ! rgba => ! /.5)
rect fill: rgba(1 2 3 .5) -> ! rgba => ! .5) | rgba(1,2,3,.5 -> ! rgba => ! | rgba 1 -> ! rgba => ! 1
rect fill: rgb(1deg,2,3) -> #000203 => ! (1deg,2,3) | hsl(10%,2%,3%) -> ! hsl => ! (10%,2%,3%)
rect fill: hsl(120,100%,50%) -> ! hsl => #00ff00 | hsl(-240deg 100 25) -> ! hsl => #008000
rect fill: hsla(.5turn,100%,50%,.2) -> ! hsla => #00ffff | hsl(200grad 100% 50% / 5%) -> ! hsl => #00ffff
rect fill: hsl(6.283185307179586rad,200%,50%) -> ! hsl => #ff0000 | HSL(30,50%,150%) -> ! HSL => #ffffff
rect fill: hsl(1e999,100%,50%) -> ! hsl => #ff0000 | hsl(210 40% 60%) -> ! hsl => #7099c2
rect fill: #f008 icc-color(p, 1) -> ! #f008 => #ff0000 icc-color(p, 1) | #f008 5 -> ! #f008 => ! 5
rect fill: url(#x) #f008 -> ! #f008 => url(#x (no such element)) #ff0000 | lab(1 2 3) -> ! lab
g color: rgba(1,2,3,.5) -> ! rgba => #010203 | transparent -> ! transparent => #000000
stop stop-color: hsl(240,100%,50%) -> ! hsl => #0000ff
svg background-color: transparent -> none | #f008 -> ! #f008 => #ff0000
)");
}

// By attributes of a rect in a drawing with a sheet: its opacities of fill; stroke; stop-color.
TEST(Leniency, AlphaIsAnOpacityOfItsSource) {
  const auto opacities = [](const std::string &attributes) {
    Told told;
    const Document document(
        "<svg xmlns='http://www.w3.org/2000/svg'><style>.a{fill:#f003;fill-opacity:.5}"
        ".b{fill-opacity:.5;fill:#f003}.c{fill:#f003!important;fill-opacity:.5}"
        ".d{fill:#f003} .d{stroke-opacity:.5;fill-opacity:x} .e{fill:#f003;fill:red}</style>"
        "<rect id='other' fill='#f003'/><rect id='r' " +
            attributes + "/></svg>",
        AccountingCore::defaults(), [&](svg_parser *p) { allow(p, SVG_LENIENT_COLORS, &told); });
    const svg_e_node *r = document.find("r");
    std::string result;
    for (const char *name : {"fill-opacity", "stroke-opacity", "stop-opacity"})
      result += (result.empty() ? "" : ", ") + document.values(r, name);
    return result;
  };
  expect_cases(R"(
fill='#f003' -> 0.2, -, - | stroke='rgba(1,2,3,.2)' stop-color='transparent' -> -, 0.2, 0
fill='#f003' fill-opacity='.5' -> 0.2; 0.1, -, - | fill-opacity='.5' fill='#f003' -> 0.5; 0.1, -, -
fill='#f00f' -> -, -, - | fill='#f003 5' stroke='red' -> -, -, - | fill='red' -> -, -, - | fill='url(#x) #f003' -> -, -, -
fill='#f003' fill-opacity='inherit' -> 0.2; inherit, -, -
fill='#f003' style='fill-opacity:.5' -> 0.2; 0.5, -, - | fill-opacity='.5' style='fill:#f003' -> 0.5; 0.2, -, -
style='fill:#f003;fill:red' -> 0.2; 1, -, - | style='fill-opacity:.5;fill:#f003;fill:#00f' -> 0.5; 0.1; 0.5, -, -
style='fill:#f003;fill:#0f06;fill-opacity:.5;fill-opacity:.1' -> 0.2; 0.4; 0.2; 0.04000000000000001, -, -
style='color:#f003;fill:red;fill-opacity:.5' -> 0.5, -, -
class='a' -> 0.1, -, - | class='b' -> 0.1, -, - | class='d' -> 0.2, 0.5, - | class='e' -> 1, -, -
class='a' style='fill-opacity:.7' -> 0.1; 0.7, -, -
)",
               opacities);
}

TEST(Leniency, PlainHref) {
  const std::string drawing =
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:svg='http://www.w3.org/2000/svg' "
      "xmlns:x='http://www.w3.org/1999/xlink' xmlns:y='urn:y'><g id='a'/>"
      "<use id='plain' href='#a'/><use id='both' href='#a' x:href='#both'/>"
      "<use id='bothtoo' x:href='#both' href='#a'/><g id='g' href='#a'/>"
      "<use id='other' y:href='#a'/><use id='empty' href=''/>\n"
      "<linearGradient id='late' href='#later'/><g id='later'/></svg>";
  Told told;
  const Document strict(drawing);
  const Document lenient(drawing, AccountingCore::defaults(),
                         [&](svg_parser *p) { allow(p, SVG_LENIENT_HREF, &told); });
  EXPECT_EQ(told.lines, "2 1 use href=#a\n2 2 linearGradient href=#later\n");
  expect_cases(
      "plain -> - #a | both -> #both #both | bothtoo -> #both #both | g -> - - | other -> - -\n"
      "empty -> - - | late -> - #later",
      [&](const std::string &id) {
        return strict.values(strict.find(id.c_str()), "xlink:href") + ' ' +
               lenient.values(lenient.find(id.c_str()), "xlink:href");
      });
  EXPECT_EQ(strict.messages() + lenient.messages(), "");
}

// Every source is read leniently, and told of with its line.
TEST(Leniency, ReachesEverySource) {
  const std::string drawing = "<svg xmlns='http://www.w3.org/2000/svg'><style>.a{opacity:10%}\n"
                              ".b{stroke-dasharray:1-2 !important; color: inherit}</style>\n"
                              "<g id='g' class='a b' opacity='20%' color='red'\n"
                              "style='opacity:30%;fill-opacity:x%;fill:url(#n) none'/></svg>";
  Told told;
  const Document document(drawing, AccountingCore::defaults(),
                          [&](svg_parser *p) { allow(p, SVG_LENIENT_ALL, &told); });
  EXPECT_EQ(told.lines, "4 0  opacity=10%\n1 0  stroke-dasharray=1-2\n8 0  color=inherit\n"
                        "4 3 g opacity=20%\n4 3 g opacity=30%\n8 3 g fill=url(#n) none\n");
  EXPECT_EQ(document.messages(),
            "attribute 'style', property 'fill-opacity': unexpected token 'x%', "
            "in file 'test.svg', line 3, element 'g'\n");
  const svg_e_node *g = document.find("g");
  EXPECT_EQ(document.values(g, "opacity"), "0.2; 0.1; 0.3");
  EXPECT_EQ(document.values(g, "stroke-dasharray"), "1 -2");
  EXPECT_EQ(document.values(g, "color"), "#ff0000");
  EXPECT_EQ(document.values(g, "fill"), "url(#n (no such element)) none");
  EXPECT_EQ(svg_get_unresolved_count(document.parser), 1u);
}

} // namespace
