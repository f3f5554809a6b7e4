// elements.h: the elements, the attributes that each accepts, and those that get their default when
// they are absent.
//
// The number of an element is its place in the table, SVG_ELEM_* of svg_names.h.
#ifndef SVG_TABLES_ELEMENTS_H
#define SVG_TABLES_ELEMENTS_H

#include <span>

#include "svg/tree/svg_tree.h"

namespace svg_tables {

// clang-format off

// The attributes of each element, by name, with the row of attributes.h that describes them there.
inline constexpr svg_esa_entry svg_esa_list_a[] = {
  {"class", 50}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112}, {"xlink:href", 133},
  {"xlink:title", 134}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_circle[] = {
  {"class", 50}, {"cx", 52}, {"cy", 54}, {"id", 81}, {"r", 97}, {"style", 109}, {"systemLanguage", 110},
  {"transform", 112}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_clipPath[] = {
  {"class", 50}, {"clipPathUnits", 51}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112},
  {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_color_profile[] = {
  {"id", 81}, {"name", 89}, {"xlink:href", 133}, {"xlink:title", 134}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_defs[] = {
  {"class", 50}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112}, {"xml:base", 135},
  {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_desc[] = {
  {"class", 50}, {"id", 81}, {"style", 109}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_ellipse[] = {
  {"class", 50}, {"cx", 52}, {"cy", 54}, {"id", 81}, {"rx", 102}, {"ry", 104}, {"style", 109}, {"systemLanguage", 110},
  {"transform", 112}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_font[] = {
  {"class", 50}, {"horiz-adv-x", 77}, {"horiz-origin-x", 79}, {"horiz-origin-y", 80}, {"id", 81}, {"style", 109},
  {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_font_face[] = {
  {"ascent", 47}, {"cap-height", 49}, {"descent", 57}, {"font-family", 61}, {"font-size", 62}, {"font-stretch", 63},
  {"font-style", 64}, {"font-variant", 65}, {"font-weight", 66}, {"id", 81}, {"slope", 106},
  {"underline-position", 116}, {"underline-thickness", 117}, {"units-per-em", 119}, {"x-height", 128},
  {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_font_face_src[] = {
  {"id", 81}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_font_face_uri[] = {
  {"id", 81}, {"xlink:href", 133}, {"xlink:title", 134}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_g[] = {
  {"class", 50}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112}, {"xml:base", 135},
  {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_glyph[] = {
  {"class", 50}, {"d", 56}, {"glyph-name", 71}, {"horiz-adv-x", 78}, {"id", 81}, {"style", 109}, {"unicode", 118},
  {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_hkern[] = {
  {"g1", 69}, {"g2", 70}, {"id", 81}, {"k", 82}, {"u1", 114}, {"u2", 115}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_image[] = {
  {"class", 50}, {"height", 74}, {"id", 81}, {"preserveAspectRatio", 96}, {"style", 109}, {"systemLanguage", 110},
  {"transform", 112}, {"width", 121}, {"x", 124}, {"xlink:href", 133}, {"xlink:title", 134}, {"xml:base", 135},
  {"xml:space", 137}, {"y", 138}};
inline constexpr svg_esa_entry svg_esa_list_line[] = {
  {"class", 50}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112}, {"x1", 129}, {"x2", 131},
  {"xml:base", 135}, {"xml:space", 137}, {"y1", 142}, {"y2", 144}};
inline constexpr svg_esa_entry svg_esa_list_linearGradient[] = {
  {"class", 50}, {"gradientTransform", 72}, {"gradientUnits", 73}, {"id", 81}, {"spreadMethod", 107}, {"style", 109},
  {"x1", 130}, {"x2", 132}, {"xlink:href", 133}, {"xlink:title", 134}, {"xml:base", 135}, {"xml:space", 137},
  {"y1", 143}, {"y2", 145}};
inline constexpr svg_esa_entry svg_esa_list_marker[] = {
  {"class", 50}, {"id", 81}, {"markerHeight", 84}, {"markerUnits", 85}, {"markerWidth", 86}, {"orient", 91},
  {"preserveAspectRatio", 96}, {"refX", 99}, {"refY", 100}, {"style", 109}, {"viewBox", 120}, {"xml:base", 135},
  {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_mask[] = {
  {"class", 50}, {"height", 76}, {"id", 81}, {"maskContentUnits", 87}, {"maskUnits", 88}, {"style", 109},
  {"systemLanguage", 110}, {"width", 123}, {"x", 126}, {"xml:base", 135}, {"xml:space", 137}, {"y", 140}};
inline constexpr svg_esa_entry svg_esa_list_metadata[] = {
  {"id", 81}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_missing_glyph[] = {
  {"class", 50}, {"d", 56}, {"horiz-adv-x", 78}, {"id", 81}, {"style", 109}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_path[] = {
  {"class", 50}, {"d", 56}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112}, {"xml:base", 135},
  {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_pattern[] = {
  {"class", 50}, {"height", 74}, {"id", 81}, {"patternContentUnits", 92}, {"patternTransform", 93},
  {"patternUnits", 94}, {"preserveAspectRatio", 96}, {"style", 109}, {"systemLanguage", 110}, {"viewBox", 120},
  {"width", 121}, {"x", 124}, {"xlink:href", 133}, {"xlink:title", 134}, {"xml:base", 135}, {"xml:space", 137},
  {"y", 138}};
inline constexpr svg_esa_entry svg_esa_list_polygon[] = {
  {"class", 50}, {"id", 81}, {"points", 95}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112},
  {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_polyline[] = {
  {"class", 50}, {"id", 81}, {"points", 95}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112},
  {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_radialGradient[] = {
  {"class", 50}, {"cx", 53}, {"cy", 55}, {"fx", 67}, {"fy", 68}, {"gradientTransform", 72}, {"gradientUnits", 73},
  {"id", 81}, {"r", 98}, {"spreadMethod", 107}, {"style", 109}, {"xlink:href", 133}, {"xlink:title", 134},
  {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_rect[] = {
  {"class", 50}, {"height", 74}, {"id", 81}, {"rx", 103}, {"ry", 105}, {"style", 109}, {"systemLanguage", 110},
  {"transform", 112}, {"width", 121}, {"x", 124}, {"xml:base", 135}, {"xml:space", 137}, {"y", 138}};
inline constexpr svg_esa_entry svg_esa_list_stop[] = {
  {"class", 50}, {"id", 81}, {"offset", 90}, {"style", 109}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_svg[] = {
  {"class", 50}, {"height", 75}, {"id", 81}, {"preserveAspectRatio", 96}, {"style", 109}, {"systemLanguage", 110},
  {"viewBox", 120}, {"width", 122}, {"x", 124}, {"xml:base", 135}, {"xml:space", 137}, {"y", 138}};
inline constexpr svg_esa_entry svg_esa_list_switch[] = {
  {"class", 50}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112}, {"xml:base", 135},
  {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_symbol[] = {
  {"class", 50}, {"id", 81}, {"preserveAspectRatio", 96}, {"style", 109}, {"viewBox", 120}, {"xml:base", 135},
  {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_text[] = {
  {"class", 50}, {"dx", 58}, {"dy", 59}, {"id", 81}, {"lengthAdjust", 83}, {"rotate", 101}, {"style", 109},
  {"systemLanguage", 110}, {"textLength", 111}, {"transform", 112}, {"x", 125}, {"xml:base", 135}, {"xml:space", 137},
  {"y", 139}};
inline constexpr svg_esa_entry svg_esa_list_textPath[] = {
  {"class", 50}, {"id", 81}, {"lengthAdjust", 83}, {"startOffset", 108}, {"style", 109}, {"systemLanguage", 110},
  {"textLength", 111}, {"xlink:href", 133}, {"xlink:title", 134}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_title[] = {
  {"class", 50}, {"id", 81}, {"style", 109}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_tref[] = {
  {"class", 50}, {"dx", 58}, {"dy", 59}, {"id", 81}, {"lengthAdjust", 83}, {"rotate", 101}, {"style", 109},
  {"systemLanguage", 110}, {"textLength", 111}, {"x", 127}, {"xlink:href", 133}, {"xlink:title", 134},
  {"xml:base", 135}, {"xml:space", 137}, {"y", 141}};
inline constexpr svg_esa_entry svg_esa_list_tspan[] = {
  {"class", 50}, {"dx", 58}, {"dy", 59}, {"id", 81}, {"lengthAdjust", 83}, {"rotate", 101}, {"style", 109},
  {"systemLanguage", 110}, {"textLength", 111}, {"x", 127}, {"xml:base", 135}, {"xml:space", 137}, {"y", 141}};
inline constexpr svg_esa_entry svg_esa_list_use[] = {
  {"class", 50}, {"height", 74}, {"id", 81}, {"style", 109}, {"systemLanguage", 110}, {"transform", 112},
  {"width", 121}, {"x", 124}, {"xlink:href", 133}, {"xlink:title", 134}, {"xml:base", 135}, {"xml:space", 137},
  {"y", 138}};
inline constexpr svg_esa_entry svg_esa_list_view[] = {
  {"id", 81}, {"preserveAspectRatio", 96}, {"viewBox", 120}, {"xml:base", 135}, {"xml:space", 137}};
inline constexpr svg_esa_entry svg_esa_list_vkern[] = {
  {"g1", 69}, {"g2", 70}, {"id", 81}, {"k", 82}, {"u1", 114}, {"u2", 115}, {"xml:base", 135}, {"xml:space", 137}};
// clang-format on

struct element {
  const char *name;
  void (*beg_hook)(svg_parser *parser, svg_e_node *node);
  void (*end_hook)(svg_parser *parser);
  uint32_t category;
  int32_t kind;
  std::span<const svg_esa_entry> attributes;
  const char *required[7] = {}; // by name
};

// clang-format off
inline constexpr element ELEMENTS[SVG_ELEM_COUNT] = {
// name              begin hook              end hook    category kind attributes, required ones
  {"a",              nullptr,                nullptr,            0, 3, svg_esa_list_a},
  {"circle",         nullptr,                nullptr,            8, 1, svg_esa_list_circle, {"cx", "cy", "r"}},
  {"clipPath",       svg_beg_clipPath,       nullptr,            5, 0, svg_esa_list_clipPath, {"clipPathUnits"}},
  {"color-profile",  nullptr,                nullptr,            4, 0, svg_esa_list_color_profile},
  {"defs",           nullptr,                nullptr,            1, 0, svg_esa_list_defs},
  {"desc",           nullptr,                nullptr,            5, 0, svg_esa_list_desc},
  {"ellipse",        nullptr,                nullptr,            8, 1, svg_esa_list_ellipse, {"cx", "cy", "rx", "ry"}},
  {"font",           svg_beg_font,           nullptr,            0, 0, svg_esa_list_font, {"horiz-origin-x", "horiz-origin-y"}},
  {"font-face",      svg_beg_font_face,      svg_end_font_face,  4, 0, svg_esa_list_font_face,
        {"font-size", "font-stretch", "font-style", "font-variant", "font-weight", "slope", "units-per-em"}},
  {"font-face-src",  nullptr,                nullptr,            4, 0, svg_esa_list_font_face_src},
  {"font-face-uri",  nullptr,                nullptr,            4, 0, svg_esa_list_font_face_uri},
  {"g",              nullptr,                nullptr,            0, 5, svg_esa_list_g},
  {"glyph",          nullptr,                nullptr,            4, 0, svg_esa_list_glyph},
  {"hkern",          nullptr,                nullptr,            4, 0, svg_esa_list_hkern, {"k"}},
  {"image",          nullptr,                nullptr,            0, 1, svg_esa_list_image, {"height", "width"}},
  {"line",           nullptr,                nullptr,            8, 1, svg_esa_list_line, {"x1", "x2", "y1", "y2"}},
  {"linearGradient", svg_beg_linearGradient, nullptr,           20, 0, svg_esa_list_linearGradient},
  {"marker",         nullptr,                nullptr,           20, 0, svg_esa_list_marker,
        {"markerHeight", "markerUnits", "markerWidth", "orient", "refX", "refY"}},
  {"mask",           svg_beg_mask,           nullptr,           20, 0, svg_esa_list_mask,
        {"height", "maskContentUnits", "maskUnits", "width", "x", "y"}},
  {"metadata",       nullptr,                nullptr,            5, 0, svg_esa_list_metadata},
  {"missing-glyph",  nullptr,                nullptr,            4, 0, svg_esa_list_missing_glyph},
  {"path",           nullptr,                nullptr,            8, 1, svg_esa_list_path},
  {"pattern",        svg_beg_pattern,        nullptr,           20, 0, svg_esa_list_pattern, {"height", "width"}},
  {"polygon",        nullptr,                nullptr,            8, 1, svg_esa_list_polygon, {"points"}},
  {"polyline",       nullptr,                nullptr,            8, 1, svg_esa_list_polyline, {"points"}},
  {"radialGradient", svg_beg_radialGradient, nullptr,           20, 0, svg_esa_list_radialGradient},
  {"rect",           nullptr,                nullptr,            8, 1, svg_esa_list_rect, {"height", "width"}},
  {"stop",           nullptr,                nullptr,            4, 0, svg_esa_list_stop},
  {"svg",            svg_beg_svg,            nullptr,            0, 0, svg_esa_list_svg, {"height", "width"}},
  {"switch",         nullptr,                nullptr,            0, 0, svg_esa_list_switch},
  {"symbol",         nullptr,                nullptr,            1, 0, svg_esa_list_symbol},
  {"text",           svg_beg_text,           svg_end_text,      10, 3, svg_esa_list_text, {"lengthAdjust", "x", "y"}},
  {"textPath",       nullptr,                nullptr,            0, 3, svg_esa_list_textPath, {"lengthAdjust", "startOffset"}},
  {"title",          nullptr,                nullptr,            5, 0, svg_esa_list_title},
  {"tref",           nullptr,                nullptr,            0, 3, svg_esa_list_tref, {"lengthAdjust"}},
  {"tspan",          nullptr,                nullptr,            0, 3, svg_esa_list_tspan, {"lengthAdjust"}},
  {"use",            svg_beg_use,            nullptr,            0, 1, svg_esa_list_use, {"height", "width"}},
  {"view",           nullptr,                nullptr,            0, 0, svg_esa_list_view},
  {"vkern",          nullptr,                nullptr,            4, 0, svg_esa_list_vkern, {"k"}},
};
// clang-format on

} // namespace svg_tables

#endif
