// notes.cpp: see notes.h.
#include "tools/notes.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "tools/records.h"

static bool is_of_sheet(const Message &message);
static bool is_of_engine(const Message &message);
static bool is_listed(const svg_e_node *element, const char *name);
static std::unordered_set<std::string_view> words_of(std::string_view style);

// As much of a value as is shown: many elements may share a long one.
constexpr size_t LENIENT_BYTES = 240;

void Notes::on_message(ort_severity severity, int code, const char *text) {
  messages_.push_back({severity, code, text, {}});
}

void Notes::on_element(const svg_e_node *element, uint32_t line, const svg_written_attr *attributes,
                       size_t count) {
  const bool outermost = !svg_get_parent(element);
  if (outermost) begin_tree();
  Place place = {line, 0, element_name(element->head.id), ""};
  lines_.push_back({element, line});
  const char *style = "";
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
    } else if (own && strcmp(attr->name, "style") == 0) {
      style = attr->value;
    }
  }
  pending_attributes_.clear();
  place_properties(outermost, place, style);
  for (; lenient_placed_ < lenient_values_.size(); ++lenient_placed_)
    if (Place &known = lenient_values_[lenient_placed_].place; known.line > 0) known.id = place.id;
  for (; placed_ < messages_.size(); ++placed_)
    if (!outermost || !is_of_sheet(messages_[placed_])) messages_[placed_].place = place;
}

void Notes::on_skip(svg_skipped what, const char *name, uint32_t line) {
  switch (what) {
  case SVG_SKIPPED_ELEMENT:
    if (strcmp(name, "style") != 0)
      elements_.add(name, {line, 0, keep(name), ""});
    else if (++style_elements_; style_line_ == 0)
      style_line_ = line;
    break;
  case SVG_SKIPPED_ATTRIBUTE: pending_attributes_.emplace_back(name); break;
  case SVG_SKIPPED_PROPERTY: pending_properties_.emplace_back(name); break;
  }
}

void Notes::on_leniency(const svg_lenient_value &value) {
  const std::string_view text = value.text;
  lenient_values_.push_back({value.name, std::string(text.substr(0, LENIENT_BYTES)), {}});
  lenient_values_.back().place = {value.line, 0, keep(value.element), ""};
}

void Notes::finish() {
  std::ranges::sort(lines_, std::less(), &Line::element);
  for (const std::string &name : sheet_properties_) properties_.add(name, place_of_sheets());
  for (LenientValue &value : lenient_values_)
    if (value.place.line == 0 && value.name != "encoding") value.place = place_of_sheets();
  for (Message &message : messages_)
    if (message.place.line == 0 && is_of_sheet(message) && !is_of_engine(message))
      message.place = place_of_sheets();
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

// What is pending at the outermost element may also be of style sheets: then its style attribute
// lacks the name.
void Notes::place_properties(bool outermost, const Place &place, const char *style) {
  std::unordered_set<std::string_view> words;
  if (outermost && !pending_properties_.empty()) words = words_of(style);
  for (const std::string &name : pending_properties_)
    if (!outermost || words.contains(name))
      properties_.add(name, place);
    else
      sheet_properties_.push_back(name);
  pending_properties_.clear();
}

// The reader joins the texts of all style elements.
Place Notes::place_of_sheets() const {
  return style_line_ > 0 ? Place{style_line_, 0, "style", ""} : Place{};
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

// Whether a message that came before the outermost element was complete is about a style sheet:
// with "line 0", or without a place although it is about a property, or of the style-sheet engine.
static bool is_of_sheet(const Message &message) {
  const bool property =
      message.code == SVG_E_PROPERTY_INCOMPLETE || message.code == SVG_E_PROPERTY_TOKEN;
  return is_of_engine(message) || (property && (message.text.ends_with(',') ||
                                                message.text.ends_with("line 0, element ''")));
}

// About an external sheet, whose name an instruction or another sheet gives, or about all of them.
static bool is_of_engine(const Message &message) {
  return message.code >= 10200 && message.code < 10300;
}

static bool is_listed(const svg_e_node *element, const char *name) {
  const svg_elem_def &definition = svg_get_elem_table()[element->head.id];
  for (int32_t i = 0; i < definition.esa_count; ++i)
    if (strcmp(definition.esa_list[i].name, name) == 0) return true;
  return false;
}

static std::unordered_set<std::string_view> words_of(std::string_view style) {
  static constexpr std::string_view separators = " \t\n\v\f\r:;/*";
  std::unordered_set<std::string_view> words;
  for (size_t begin = 0; (begin = style.find_first_not_of(separators, begin)) != style.npos;) {
    const size_t end = std::min(style.find_first_of(separators, begin), style.size());
    words.insert(style.substr(begin, end - begin));
    begin = end;
  }
  return words;
}
