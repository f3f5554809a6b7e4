// elements.h: the elements, the attributes that each accepts, and those that get their default when
// they are absent.
//
// The number of an element is its place in the table, SVG_ELEM_* of svg_names.h.
#ifndef SVG_TABLES_ELEMENTS_H
#define SVG_TABLES_ELEMENTS_H

#include "svg/tables/attributes.h"

namespace svg_tables {

// ---- Groups of attributes -----------------------------------------------------------------------

// The collections of the DTD (SVG 1.1, appendix A), as far as the reader knows their attributes.
struct attribute_group {
  uint32_t bit;
  const char *names[3];
};

enum : uint32_t {
  CORE = 1,
  STYLING = 2,
  CONDITIONAL = 4,
  TRANSFORM = 8,
  XLINK = 16,
  GRAPHIC = CORE | STYLING | CONDITIONAL | TRANSFORM
};

// clang-format off
inline constexpr attribute_group GROUPS[] = {
  {CORE,        {"id", "xml:base", "xml:space"}},
  {STYLING,     {"class", "style"}},
  {CONDITIONAL, {"systemLanguage"}},
  {TRANSFORM,   {"transform"}},
  {XLINK,       {"xlink:href", "xlink:title"}},
};
// clang-format on

// ---- Elements ---------------------------------------------------------------------------------------

enum need : uint8_t { ABSENT, OPTIONAL, REQUIRED }; // required: gets its default when it is absent

// An attribute of an element's own. Its row is named where several rows share the name.
struct own_attribute {
  const char *name = nullptr;
  int row = -1;
  need is = OPTIONAL;

  constexpr own_attribute() = default;
  constexpr own_attribute(const char *of, need n = OPTIONAL) : name(of), is(n) {}
  constexpr own_attribute(const char *of, int number, need n = OPTIONAL)
      : name(of), row(number), is(n) {}
};

struct element {
  int id;
  const char *name;
  uint32_t category;
  int32_t kind;
  uint32_t groups;
  own_attribute own[14] = {};
};

// clang-format off
#define ELEMENT(name) SVG_ELEM_##name, DASHED<#name>.text
inline constexpr element ELEMENTS[SVG_ELEM_COUNT] = {
// id, name        category kind groups, own attributes
  {ELEMENT(a),                 0, 3, GRAPHIC | XLINK},
  {ELEMENT(circle),            8, 1, GRAPHIC,
        {{"cx", 52, REQUIRED}, {"cy", 54, REQUIRED}, {"r", 97, REQUIRED}}},
  {ELEMENT(clipPath),          5, 0, GRAPHIC,
        {{"clipPathUnits", REQUIRED}}},
  {ELEMENT(color_profile),     4, 0, CORE | XLINK, {{"name"}}},
  {ELEMENT(defs),              1, 0, GRAPHIC},
  {ELEMENT(desc),              5, 0, CORE | STYLING},
  {ELEMENT(ellipse),           8, 1, GRAPHIC,
        {{"cx", 52, REQUIRED}, {"cy", 54, REQUIRED}, {"rx", 102, REQUIRED}, {"ry", 104, REQUIRED}}},
  {ELEMENT(font),              0, 0, CORE | STYLING,
        {{"horiz-adv-x", 77}, {"horiz-origin-x", REQUIRED}, {"horiz-origin-y", REQUIRED}}},
  {ELEMENT(font_face),         4, 0, CORE,
        {{"ascent"}, {"cap-height"}, {"descent"}, {"font-family"}, {"font-size", REQUIRED},
         {"font-stretch", REQUIRED}, {"font-style", REQUIRED}, {"font-variant", REQUIRED},
         {"font-weight", REQUIRED}, {"slope", REQUIRED}, {"underline-position"}, {"underline-thickness"},
         {"units-per-em", REQUIRED}, {"x-height"}}},
  {ELEMENT(font_face_src),     4, 0, CORE},
  {ELEMENT(font_face_uri),     4, 0, CORE | XLINK},
  {ELEMENT(g),                 0, 5, GRAPHIC},
  {ELEMENT(glyph),             4, 0, CORE | STYLING,
        {{"d"}, {"glyph-name"}, {"horiz-adv-x", 78}, {"unicode"}}},
  {ELEMENT(hkern),             4, 0, CORE,
        {{"g1"}, {"g2"}, {"k", REQUIRED}, {"u1"}, {"u2"}}},
  {ELEMENT(image),             0, 1, GRAPHIC | XLINK,
        {{"height", 74, REQUIRED}, {"preserveAspectRatio"}, {"width", 121, REQUIRED}, {"x", 124}, {"y", 138}}},
  {ELEMENT(line),              8, 1, GRAPHIC,
        {{"x1", 129, REQUIRED}, {"x2", 131, REQUIRED}, {"y1", 142, REQUIRED}, {"y2", 144, REQUIRED}}},
  {ELEMENT(linearGradient),   20, 0, CORE | STYLING | XLINK,
        {{"gradientTransform"}, {"gradientUnits"}, {"spreadMethod"}, {"x1", 130}, {"x2", 132}, {"y1", 143},
         {"y2", 145}}},
  {ELEMENT(marker),           20, 0, CORE | STYLING,
        {{"markerHeight", REQUIRED}, {"markerUnits", REQUIRED}, {"markerWidth", REQUIRED}, {"orient", REQUIRED},
         {"preserveAspectRatio"}, {"refX", REQUIRED}, {"refY", REQUIRED}, {"viewBox"}}},
  {ELEMENT(mask),             20, 0, CORE | STYLING | CONDITIONAL,
        {{"height", 76, REQUIRED}, {"maskContentUnits", REQUIRED}, {"maskUnits", REQUIRED},
         {"width", 123, REQUIRED}, {"x", 126, REQUIRED}, {"y", 140, REQUIRED}}},
  {ELEMENT(metadata),          5, 0, CORE},
  {ELEMENT(missing_glyph),     4, 0, CORE | STYLING,
        {{"d"}, {"horiz-adv-x", 78}}},
  {ELEMENT(path),              8, 1, GRAPHIC, {{"d"}}},
  {ELEMENT(pattern),          20, 0, CORE | STYLING | CONDITIONAL | XLINK,
        {{"height", 74, REQUIRED}, {"patternContentUnits"}, {"patternTransform"}, {"patternUnits"},
         {"preserveAspectRatio"}, {"viewBox"}, {"width", 121, REQUIRED}, {"x", 124}, {"y", 138}}},
  {ELEMENT(polygon),           8, 1, GRAPHIC, {{"points", REQUIRED}}},
  {ELEMENT(polyline),          8, 1, GRAPHIC, {{"points", REQUIRED}}},
  {ELEMENT(radialGradient),   20, 0, CORE | STYLING | XLINK,
        {{"cx", 53}, {"cy", 55}, {"fx"}, {"fy"}, {"gradientTransform"}, {"gradientUnits"}, {"r", 98},
         {"spreadMethod"}}},
  {ELEMENT(rect),              8, 1, GRAPHIC,
        {{"height", 74, REQUIRED}, {"rx", 103}, {"ry", 105}, {"width", 121, REQUIRED}, {"x", 124}, {"y", 138}}},
  {ELEMENT(stop),              4, 0, CORE | STYLING, {{"offset"}}},
  {ELEMENT(svg),               0, 0, CORE | STYLING | CONDITIONAL,
        {{"height", 75, REQUIRED}, {"preserveAspectRatio"}, {"viewBox"}, {"width", 122, REQUIRED}, {"x", 124},
         {"y", 138}}},
  {ELEMENT(switch),            0, 0, GRAPHIC},
  {ELEMENT(symbol),            1, 0, CORE | STYLING,
        {{"preserveAspectRatio"}, {"viewBox"}}},
  {ELEMENT(text),             10, 3, GRAPHIC,
        {{"dx"}, {"dy"}, {"lengthAdjust", REQUIRED}, {"rotate"}, {"textLength"}, {"x", 125, REQUIRED},
         {"y", 139, REQUIRED}}},
  {ELEMENT(textPath),          0, 3, CORE | STYLING | CONDITIONAL | XLINK,
        {{"lengthAdjust", REQUIRED}, {"startOffset", REQUIRED}, {"textLength"}}},
  {ELEMENT(title),             5, 0, CORE | STYLING},
  {ELEMENT(tref),              0, 3, CORE | STYLING | CONDITIONAL | XLINK,
        {{"dx"}, {"dy"}, {"lengthAdjust", REQUIRED}, {"rotate"}, {"textLength"}, {"x", 127}, {"y", 141}}},
  {ELEMENT(tspan),             0, 3, CORE | STYLING | CONDITIONAL,
        {{"dx"}, {"dy"}, {"lengthAdjust", REQUIRED}, {"rotate"}, {"textLength"}, {"x", 127}, {"y", 141}}},
  {ELEMENT(use),               0, 1, GRAPHIC | XLINK,
        {{"height", 74, REQUIRED}, {"width", 121, REQUIRED}, {"x", 124}, {"y", 138}}},
  {ELEMENT(view),              0, 0, CORE,
        {{"preserveAspectRatio"}, {"viewBox"}}},
  {ELEMENT(vkern),             4, 0, CORE,
        {{"g1"}, {"g2"}, {"k", REQUIRED}, {"u1"}, {"u2"}}},
};
#undef ELEMENT
// clang-format on

} // namespace svg_tables

#endif
