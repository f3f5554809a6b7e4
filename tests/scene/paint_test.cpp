#include "scene/scene_paint.h"

#include <gtest/gtest.h>
#include <string>

#include "tests/support/cases.h"
#include "tests/support/scene.h"

namespace {

// What is written short in the tables.
std::string drawing_of(std::string text) {
  const std::pair<std::string, std::string> longer[] = {
      {"STOPS", "<stop stop-color='red'/><stop offset='1' stop-color='blue'/>"},
      {"<lin", "<linearGradient"},
      {"</lin", "</linearGradient"},
      {"<rad", "<radialGradient"},
      {"</rad", "</radialGradient"},
      {"<pat", "<pattern"},
      {"</pat", "</pattern"},
      {" to=", " xlink:href="},
      {"USER", "gradientUnits='userSpaceOnUse'"},
      {"TURN", "gradientTransform='matrix(0 1 -1 0 3 4)'"}};
  for (const auto &[from, to] : longer)
    for (size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
      text.replace(at, from.size(), to);
  return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
         "font-size='10'>" +
         text + "</svg>";
}

constexpr double VIEWPORT[2] = {200, 100};
constexpr double BOX[4] = {10, 20, 100, 50};

std::string stops_text(const svg_scene_gradient &gradient) {
  std::string result;
  for (size_t i = 0; i < gradient.stop_count; ++i) {
    const svg_scene_stop &stop = gradient.stops[i];
    result += " " + short_number(stop.offset) + " " + color_text(stop.rgb, stop.color);
    if (stop.opacity != 1) result += "/" + short_number(stop.opacity);
  }
  return result;
}

std::string matrix_text(const double *matrix) { return "[" + short_numbers(matrix, 6) + "]"; }

std::string paint_text(const svg_parser *parser, const svg_scene_paint &paint) {
  const std::string opacity = paint.opacity != 1 ? "/" + short_number(paint.opacity) : "";
  if (paint.kind == SVG_SCENE_PAINT_NONE) return "none";
  if (paint.kind == SVG_SCENE_PAINT_COLOR) return color_text(paint.rgb, paint.color) + opacity;
  if (paint.kind == SVG_SCENE_PAINT_PATTERN) {
    const svg_scene_pattern &p = *paint.pattern;
    return short_numbers(p.tile, 4) + " " + matrix_text(p.matrix) + " " +
           id_text(parser, p.content) + " " + matrix_text(p.content_matrix) +
           (p.clipped ? "" : " open") + opacity;
  }
  const svg_scene_gradient &g = *paint.gradient;
  const double linear[] = {g.x1, g.y1, g.x2, g.y2}, radial[] = {g.cx, g.cy, g.r, g.fx, g.fy};
  return (g.radial ? short_numbers(radial, 5) : short_numbers(linear, 4)) + " " +
         matrix_text(g.matrix) + (g.spread == SVG_KW_pad ? "" : svg_get_keyword_text(g.spread)) +
         stops_text(g) + opacity;
}

// The fill of a rectangle of this box, by url(#a).
std::string fill(const std::string &text, const double *box) {
  Document document(drawing_of(text + "<rect id='e' fill='url(#a) #abcdef'/>"));
  const Scene scene(document);
  std::string result;
  EXPECT_EQ(document.core.protect([&] {
    svg_scene_place place;
    svg_scene_paint paint;
    svg_scene_find_place(scene, document.find("e"), &place);
    svg_scene_resolve_paint(scene, place.style->fill, 1, VIEWPORT, box, &paint);
    result = paint_text(document.parser, paint);
  }),
            0);
  const std::string messages = document.messages();
  return messages.empty() ? result : result + " ! " + messages;
}

TEST(ScenePaint, ResolvesGradients) {
  const auto filled = [](const std::string &text) { return fill(text, BOX); };
  expect_cases(R"(
<lin id='a'>STOPS</lin> -> 0 0 1 0 [100 0 0 50 10 20] 0 #ff0000 1 #0000ff
<lin id='a' x1='10%' y1='0.5' x2='-1' TURN>STOPS</lin> -> 0.1 0.5 -1 0 [0 50 -100 0 310 220] 0 #ff0000 1 #0000ff
<lin id='a' USER y2='10%' x1='1em' spreadMethod='repeat'>STOPS</lin> -> 10 0 200 10 [1 0 0 1 0 0]repeat 0 #ff0000 1 #0000ff
<rad id='a'>STOPS</rad> -> 0.5 0.5 0.5 0.5 0.5 [100 0 0 50 10 20] 0 #ff0000 1 #0000ff
<rad id='a' USER cx='50%' cy='50%' r='10%' fy='5' TURN>STOPS</rad> -> 100 50 15.8114 100 34.1886 [0 1 -1 0 3 4] 0 #ff0000 1 #0000ff
<rad id='a' USER cx='5' cy='5' r='5' fx='8' fy='9'>STOPS</rad> -> 5 5 5 8 9 [1 0 0 1 0 0] 0 #ff0000 1 #0000ff
<rad id='a' USER cx='5' cy='5' r='5' fx='5' fy='99'>STOPS</rad> -> 5 5 5 5 10 [1 0 0 1 0 0] 0 #ff0000 1 #0000ff)",
               filled);
  // what is no gradient: no, one or equal stops, a point, bad numbers
  expect_cases(R"(
<lin id='a'/> -> none | <lin id='a'><stop stop-color='red' stop-opacity='.5'/></lin> -> #ff0000/0.5
<lin id='a' x2='0'>STOPS</lin> -> #0000ff | <rad id='a' r='0'>STOPS</rad> -> #0000ff | <rad id='a' r='-1'>STOPS</rad> -> #abcdef
<lin id='a' gradientTransform='scale(0)'>STOPS</lin> -> #abcdef | <lin id='a' x1='1e308in'>STOPS</lin> -> #abcdef
<g id='a'/> -> #abcdef | -> #abcdef)",
               filled);
  // stops
  expect_cases(R"(
<lin id='a'><stop offset='50%'/><stop offset='.2'/><stop offset='7'/><stop offset='-1'/></lin> -> 0 0 1 0 [100 0 0 50 10 20] 0.5 #000000 0.5 #000000 1 #000000 1 #000000
<g color='lime'><lin id='a' stop-color='aqua'><stop stop-color='currentColor'/><g/><stop stop-opacity='2' stop-color='inherit'/><stop color='red' style='stop-color:currentColor'/></lin></g> -> 0 0 1 0 [100 0 0 50 10 20] 0 #00ff00 0 #00ffff 0 #ff0000)",
               filled);
  // boxes that are flat or absent
  const double flat[4] = {10, 20, 100, 0};
  for (const double *box : {flat, static_cast<const double *>(nullptr)}) {
    EXPECT_EQ(fill("<lin id='a'>STOPS</lin>", box), "#abcdef");
    EXPECT_EQ(fill("<lin id='a' USER x2='9'>STOPS</lin>", box),
              "0 0 9 0 [1 0 0 1 0 0] 0 #ff0000 1 #0000ff");
    EXPECT_EQ(fill("<pat id='a' width='1' height='1'><g/></pat>", box), "#abcdef");
  }
}

TEST(ScenePaint, FollowsChains) {
  const auto filled = [](const std::string &text) { return fill(text, BOX); };
  expect_cases(R"(
<lin id='a' to='#b' x1='1'/><lin id='b' to='#c' x1='2' y1='2' spreadMethod='reflect'/><lin id='c' USER y1='3' x2='4'>STOPS</lin> -> 1 2 4 0 [1 0 0 1 0 0]reflect 0 #ff0000 1 #0000ff
<lin id='a' to='#b' USER x2='9'/><rad id='b' to='#c' TURN cx='5'/><lin id='c' x1='5'>STOPS</lin> -> 0 0 9 0 [0 1 -1 0 3 4] 0 #ff0000 1 #0000ff
<rad id='a' to='#b' fy='.25'/><rad id='b' cy='.75' r='1'>STOPS</rad> -> 0.5 0.75 1 0.5 0.25 [100 0 0 50 10 20] 0 #ff0000 1 #0000ff
<lin id='a' to='#b'><stop/><stop/></lin><lin id='b'>STOPS</lin> -> 0 0 1 0 [100 0 0 50 10 20] 0 #000000 0 #000000
<lin id='a' to='#b'/><pat id='b'/> -> none | <lin id='a' to='#none'>STOPS</lin> -> 0 0 1 0 [100 0 0 50 10 20] 0 #ff0000 1 #0000ff
<lin id='a' to='#b'/><lin id='b' to='#c' x2='9'/><lin id='c' to='#b' USER>STOPS</lin> -> 0 0 9 0 [1 0 0 1 0 0] 0 #ff0000 1 #0000ff ! Element 'linearGradient #c' in line 1: reference in a circle is ignored
<pat id='a' to='#a'/> -> none ! Element 'pattern #a' in line 1: reference in a circle is ignored
<pat id='a' to='#b' width='1'/><pat id='b' to='#c' width='3' height='2' patternContentUnits='objectBoundingBox'><desc/></pat><pat id='c' patternUnits='userSpaceOnUse' x='7'><g/></pat> -> 7 0 1 2 [1 0 0 1 0 0] b [100 0 0 50 7 0])",
               [&](const std::string &text) {
                 std::string result = filled(text);
                 while (!result.empty() && result.back() == '\n') result.pop_back();
                 return result;
               });
}

TEST(ScenePaint, ResolvesPatterns) {
  expect_cases(R"(
<pat id='a' x='.1' y='10%' width='.5' height='1'><g/></pat> -> 20 25 50 50 [1 0 0 1 0 0] a [1 0 0 1 20 25]
<pat id='a' patternUnits='userSpaceOnUse' x='1em' width='10%' height='10%' patternTransform='scale(2)' overflow='visible'><g/></pat> -> 10 0 20 10 [2 0 0 2 0 0] a [1 0 0 1 10 0] open
<pat id='a' width='1' height='1' viewBox='0 0 10 10' patternContentUnits='objectBoundingBox'><g/></pat> -> 10 20 100 50 [1 0 0 1 0 0] a [5 0 0 5 35 20]
<pat id='a' width='1' height='1' viewBox='0 0 10 10' preserveAspectRatio='none'><g/></pat> -> 10 20 100 50 [1 0 0 1 0 0] a [10 0 0 5 10 20]
<pat id='a' width='1' height='1'/> -> none | <pat id='a' width='1' height='0'><g/></pat> -> none | <pat id='a' width='0' height='1'><g/></pat> -> none | <pat id='a' width='1'><g/></pat> -> none
<pat id='a' width='1' height='1' viewBox='0 0 0 1'><g/></pat> -> none | <pat id='a' width='1' height='1' patternTransform='scale(0)'><g/></pat> -> #abcdef
<pat id='a' width='1e308' height='1e308'><g/></pat> -> #abcdef)",
               [](const std::string &text) { return fill(text, BOX); });
}

TEST(ScenePaint, ResolvesClipsAndMasks) {
  const double flat[4] = {10, 20, 0, 50};
  const auto applied = [](const std::string &text, const double *box) {
    Document document(drawing_of(text));
    const Scene scene(document);
    const svg_e_node *element = document.find("a");
    std::string result;
    EXPECT_EQ(document.core.protect([&] {
      if (!svg_scene_needs_box(scene, element)) box = nullptr;
      if (element->head.id == SVG_ELEM_clipPath) {
        const svg_scene_clip *clip = svg_scene_resolve_clip(scene, element, box);
        result = clip ? matrix_text(clip->matrix) : "not";
      } else {
        const svg_scene_mask *mask = svg_scene_resolve_mask(scene, element, VIEWPORT, box);
        result = mask ? short_numbers(mask->area, 4) + " " + matrix_text(mask->matrix) : "not";
      }
    }),
              0);
    return result;
  };
  expect_cases(
      R"(
<clipPath id='a'/> -> [1 0 0 1 0 0], [1 0 0 1 0 0]
<clipPath id='a' transform='translate(1 2)'/> -> [1 0 0 1 1 2], [1 0 0 1 1 2]
<clipPath id='a' transform='translate(1 2)' clipPathUnits='objectBoundingBox'/> -> [100 0 0 50 110 120], not
<mask id='a'/> -> 0 15 120 60 [1 0 0 1 0 0], not
<mask id='a' x='0' y='.5' width='1' height='-1' maskContentUnits='objectBoundingBox'/> -> 10 45 100 0 [100 0 0 50 10 20], not
<mask id='a' maskUnits='userSpaceOnUse'/> -> -20 -10 240 120 [1 0 0 1 0 0], -20 -10 240 120 [1 0 0 1 0 0]
<mask id='a' maskUnits='userSpaceOnUse' x='1em' maskContentUnits='objectBoundingBox'/> -> 10 -10 240 120 [100 0 0 50 10 20], not)",
      [&](const std::string &text) { return applied(text, BOX) + ", " + applied(text, flat); });
}

// A long chain is followed once, however many shapes refer to its parts.
TEST(ScenePaint, IsLinearInChains) {
  constexpr int length = 20000;
  std::string text = "<lin id='g0' x1='.5'>STOPS</lin>";
  for (int i = 1; i < length; ++i)
    text += "<lin id='g" + std::to_string(i) + "' to='#g" + std::to_string(i - 1) + "'/>";
  Document document(drawing_of(text));
  const Scene scene(document);
  EXPECT_EQ(document.core.protect([&] {
    for (int i = length - 1; i >= 0; --i) {
      svg_iri iri = {
          SVG_IRI_LINK, SVG_MIME_NOT_DATA, -1, {document.find(("g" + std::to_string(i)).c_str())}};
      svg_scene_paint paint;
      svg_scene_resolve_paint(scene, {SVG_PAINT_IRI, 0, nullptr, &iri}, 1, VIEWPORT, BOX, &paint);
      ASSERT_EQ(paint.kind, SVG_SCENE_PAINT_GRADIENT);
      ASSERT_EQ(paint.gradient->x1, 0.5);
    }
  }),
            0);
}

} // namespace
