// notes.h: what is told while a drawing is read and is not in its tree: which element a message
// belongs to, lines, attributes that the reader skips, ids that occur again.
//
// Filled by the observers of drawing.cpp, which tell where a style sheet stands that is being read.
// A message comes while its element is being built, thus before the element itself is told.
#ifndef TOOLS_NOTES_H
#define TOOLS_NOTES_H

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "svg/svg.h"

// Where something stands. What is not known is 0 or "". The texts are kept by the notes or the
// parser: many places may name one long id.
struct Place {
  uint32_t line = 0, column = 0; // from 1
  std::string_view element, id;
};

struct Message {
  ort_severity severity;
  int code;
  std::string text;
  Place place;
};

// Prints "DRAWING: warning CODE: TEXT", without a code that is 0, to standard error.
void print_message(const std::string &drawing, const Message &message);

// A name that the reader skips, and its first place.
struct SkippedName {
  std::string name;
  Place place;
  size_t count = 0;
};

// A value that only the lenient reading took.
struct LenientValue {
  std::string name; // of its attribute or property
  std::string text; // its beginning, as it is written
  Place place;
};

// A style sheet outside of the drawing.
struct OutsideSheet {
  std::string href;
  Place place;
};

struct RepeatedId {
  uint32_t first_line;
  Place place; // of the element that bears it again
};

// What an element's start tag has and its values do not show.
struct ElementAttributes {
  std::string classes;                                      // the class attribute as written
  std::vector<std::pair<std::string, std::string>> foreign; // attributes that the reader skips
};

class Notes {
public:
  // Attributes are kept only when wanted.
  explicit Notes(bool attributes) : keep_attributes_(attributes) {}
  void on_message(ort_severity severity, int code, const char *text, const Place &sheet);
  void on_element(const svg_e_node *element, uint32_t line, const svg_written_attr *attributes,
                  size_t count);
  void on_sheet(const char *href, const Place &sheet);
  void on_skip(svg_skipped what, const char *name, uint32_t line, const Place &sheet);
  void on_leniency(const svg_lenient_value &value, const Place &sheet);
  void finish(); // the reading has ended

  const std::vector<Message> &messages() const { return messages_; }
  const std::vector<LenientValue> &lenient_values() const { return lenient_values_; }
  const std::vector<OutsideSheet> &outside_sheets() const { return outside_sheets_; }
  const std::vector<SkippedName> &skipped_elements() const { return elements_.names; }
  const std::vector<SkippedName> &skipped_properties() const { return properties_.names; }
  const std::vector<RepeatedId> &repeated_ids() const { return repeated_ids_; }
  // What would be seen of the skipped elements, by kind, as sentences.
  std::set<std::string> not_drawn() const;
  size_t style_elements() const { return style_elements_; }
  uint32_t line_of(const svg_e_node *element) const;
  const ElementAttributes &attributes_of(const svg_e_node *element) const;

private:
  // Names in the order of their first places.
  struct SkippedNames {
    std::vector<SkippedName> names;
    std::unordered_map<std::string, size_t> indices;
    void add(const std::string &name, const Place &place);
  };

  std::string_view keep(const char *text) { return *texts_.emplace(text).first; }
  void begin_tree();
  void note_id(const svg_e_node *element, const Place &place);

  bool keep_attributes_;
  std::unordered_set<std::string> texts_;
  std::vector<Message> messages_;
  size_t placed_ = 0; // messages whose place is known
  std::vector<std::string> pending_attributes_, pending_properties_; // of the element being built
  std::vector<std::pair<std::string, Place>> sheet_properties_;
  std::vector<OutsideSheet> outside_sheets_;
  size_t style_elements_ = 0;
  SkippedNames elements_, properties_;
  std::vector<LenientValue> lenient_values_;
  size_t lenient_placed_ = 0; // those whose place is known
  struct Line {
    const svg_e_node *element;
    uint32_t line;
  };
  std::unordered_map<std::string_view, Line> ids_; // with their first elements
  std::vector<RepeatedId> repeated_ids_;
  std::vector<Line> lines_; // of all elements; sorted by their addresses when the reading has ended
  std::unordered_map<const svg_e_node *, ElementAttributes> attributes_; // of those that have any
};

#endif
