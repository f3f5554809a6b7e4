// names.cpp: see names.h.
#include "tools/names.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "tools/records.h"
#include "tools/utf8.h"
#include "tools/value_text.h"
#include "tools/walk.h"

NodeNumbers::NodeNumbers(const Drawing &drawing, const std::vector<const svg_e_node *> &others) {
  svg_e_node *element = nullptr;
  for (size_t i = 0; svg_get_href(drawing.parser(), i, &element); ++i) numbers_[element] = 0;
  for (size_t i = 0; i < svg_get_font_count(drawing.parser()); ++i)
    numbers_[svg_get_font_at(drawing.parser(), i)->node] = 0;
  for (const svg_e_node *other : others) numbers_[other] = 0;
  if (numbers_.empty()) return;
  int64_t number = 0;
  each_element(drawing.svg(), [&](const svg_e_node *node) {
    ++number;
    if (const auto found = numbers_.find(node); found != numbers_.end()) found->second = number;
  });
}

std::vector<NamedElement> named_elements(const Drawing &drawing, const NodeNumbers &numbers) {
  std::vector<NamedElement> result;
  NamedElement named = {};
  for (size_t i = 0; (named.name = svg_get_href(drawing.parser(), i, &named.element)); ++i)
    result.push_back(named);
  std::ranges::stable_sort(result, {},
                           [&](const NamedElement &entry) { return numbers.of(entry.element); });
  return result;
}

const char *id_of(const Drawing &drawing, const svg_e_node *element) {
  const char *id = svg_find_href_id(drawing.parser(), element);
  return std::string_view(id) != "(empty)" ? id : nullptr;
}

bool is_shape(const svg_e_node *element) {
  switch (element->head.id) {
  case SVG_ELEM_circle:
  case SVG_ELEM_ellipse:
  case SVG_ELEM_line:
  case SVG_ELEM_path:
  case SVG_ELEM_polygon:
  case SVG_ELEM_polyline:
  case SVG_ELEM_rect: return true;
  default: return false;
  }
}

std::string element_text(const Drawing &drawing, const svg_e_node *element, bool full) {
  const char *id = id_of(drawing, element);
  return element_name(element->head.id) + (id ? " #" + short_text(id, full) : "");
}
