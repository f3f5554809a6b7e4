// notes.cpp: see notes.h.
#include "tools/notes.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>

#include "tools/records.h"
#include "tools/utf8.h"

static bool is_listed(const svg_e_node *element, const char *name);

// As much of a value as is shown: many elements may share a long one.
constexpr size_t LENIENT_BYTES = 240;

void print_message(const std::string &drawing, const Message &message) {
  const std::string code = message.code != 0 ? ' ' + std::to_string(message.code) : "";
  fprintf(stderr, "%s: %s%s: %s\n", escaped(drawing).c_str(),
          message.severity == ORT_ERROR ? "error" : "warning", code.c_str(),
          escaped(message.text).c_str());
}

void Notes::on_message(ort_severity severity, int code, const char *text, const Place &sheet) {
  messages_.push_back({severity, code, text, sheet});
}

void Notes::on_element(const svg_e_node *element, uint32_t line, const svg_written_attr *attributes,
                       size_t count) {
  if (!svg_get_parent(element)) begin_tree();
  Place place = {line, 0, element_name(element->head.id), ""};
  lines_.push_back({element, line});
  auto skipped = pending_attributes_.begin();
  for (const svg_written_attr *attr = attributes; attr != attributes + count; ++attr) {
    const bool prefixed = *attr->prefix != '\0';
    const bool own = !prefixed || strcmp(attr->prefix, "xml") == 0;
    if (skipped != pending_attributes_.end() && *skipped == attr->name &&
        (prefixed || !is_listed(element, attr->name))) {
      ++skipped;
      if (keep_attributes_)
        attributes_[element].foreign.emplace_back(
            prefixed ? std::string(attr->prefix) + ':' + attr->name : attr->name, attr->value);
    } else if (own && strcmp(attr->name, "id") == 0) {
      place.id = keep(attr->value);
      note_id(element, place);
    } else if (own && strcmp(attr->name, "class") == 0) {
      if (keep_attributes_ && *attr->value) attributes_[element].classes = attr->value;
    }
  }
  pending_attributes_.clear();
  for (const std::string &name : pending_properties_) properties_.add(name, place);
  pending_properties_.clear();
  for (; lenient_placed_ < lenient_values_.size(); ++lenient_placed_)
    if (Place &known = lenient_values_[lenient_placed_].place; known.element == place.element)
      known.id = place.id;
  for (; placed_ < messages_.size(); ++placed_)
    if (messages_[placed_].place.line == 0) messages_[placed_].place = place;
}

void Notes::on_sheet(const char *href, const Place &sheet) {
  outside_sheets_.push_back({href, sheet});
}

void Notes::on_skip(svg_skipped what, const char *name, uint32_t line, const Place &sheet) {
  switch (what) {
  case SVG_SKIPPED_ELEMENT:
    if (strcmp(name, "style") != 0)
      elements_.add(name, {line, 0, keep(name), ""});
    else
      ++style_elements_;
    break;
  case SVG_SKIPPED_ATTRIBUTE: pending_attributes_.emplace_back(name); break;
  case SVG_SKIPPED_PROPERTY:
    if (sheet.line > 0)
      sheet_properties_.emplace_back(name, sheet);
    else
      pending_properties_.emplace_back(name);
    break;
  }
}

void Notes::on_leniency(const svg_lenient_value &value, const Place &sheet) {
  const std::string_view text = value.text;
  lenient_values_.push_back({value.name, std::string(text.substr(0, LENIENT_BYTES)), sheet});
  if (sheet.line == 0) lenient_values_.back().place = {value.line, 0, keep(value.element), ""};
}

void Notes::finish() {
  std::ranges::sort(lines_, std::less(), &Line::element);
  for (const auto &[name, place] : sheet_properties_) properties_.add(name, place);
}

std::set<std::string> Notes::not_drawn() const {
  static constexpr std::pair<const char *, const char *> kinds[] = {
      {"animate", "animations are"},
      {"animateColor", "animations are"},
      {"animateMotion", "animations are"},
      {"animateTransform", "animations are"},
      {"filter", "filters are"},
      {"flowRoot", "texts in flowRoot are"},
      {"foreignObject", "foreignObject is"},
      {"hatch", "hatches are"},
      {"meshgradient", "mesh gradients are"},
      {"set", "animations are"},
  };
  std::set<std::string> result;
  for (const SkippedName &element : elements_.names)
    for (const auto &[name, kind] : kinds)
      if (element.name == name) result.insert(std::string(kind) + " not drawn");
  return result;
}

uint32_t Notes::line_of(const svg_e_node *element) const {
  const auto found = std::ranges::lower_bound(lines_, element, std::less(), &Line::element);
  return found != lines_.end() && found->element == element ? found->line : 0;
}

const ElementAttributes &Notes::attributes_of(const svg_e_node *element) const {
  static const ElementAttributes none;
  const auto found = attributes_.find(element);
  return found != attributes_.end() ? found->second : none;
}

// A pass may begin again; what was told of the tree it made then is void.
void Notes::begin_tree() {
  elements_ = {};
  properties_ = {};
  ids_.clear();
  repeated_ids_.clear();
  lines_.clear();
  style_elements_ = 0;
  attributes_.clear();
}

void Notes::note_id(const svg_e_node *element, const Place &place) {
  const Line &first = ids_.try_emplace(place.id, Line{element, place.line}).first->second;
  if (first.element != element && !place.id.empty()) repeated_ids_.push_back({first.line, place});
}

void Notes::SkippedNames::add(const std::string &name, const Place &place) {
  const auto [index, is_new] = indices.try_emplace(name, names.size());
  if (is_new) names.push_back({name, place, 0});
  SkippedName &skipped = names[index->second];
  if (place.line > 0 && place.line < skipped.place.line) skipped.place = place;
  ++skipped.count;
}

static bool is_listed(const svg_e_node *element, const char *name) {
  const svg_elem_def &definition = svg_get_elem_table()[element->head.id];
  for (int32_t i = 0; i < definition.esa_count; ++i)
    if (strcmp(definition.esa_list[i].name, name) == 0) return true;
  return false;
}
