// drawing.h: one drawing read for the tool: its core, its parser, its messages, and where its
// values came from.
//
// Made for each input by main.cpp; the printers only look at it.
#ifndef TOOLS_DRAWING_H
#define TOOLS_DRAWING_H

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "svg/svg.h"
#include "tools/notes.h"
#include "tools/value_text.h"

using Elements = std::vector<const svg_e_node *>;

// What the command line says about reading.
struct ReadSettings {
  int log_level = 0;
  bool strict = false; // as SVG 1.1 has it, without what the lenient reading adds
  std::string language = "en";
  int font_number = 0;
  std::vector<std::string> refused_elements; // sorted, ignoring ASCII case
  std::vector<std::string> refused_properties;
  std::vector<std::string> selectors; // of the elements to select; well-formed
  bool external_sheets = true;
  std::string style_folder; // "": the drawing's own
  bool note_sources = false;
  uint64_t memory = 0, inflated = 0; // budgets in bytes; 0: the defaults
  svg_limits limits = {};
};

// Where a value came from; selector is set for style sheets.
struct Source {
  svg_source kind = SVG_SOURCE_ATTRIBUTE;
  const std::string *selector = nullptr;
};

class Drawing final : public Surroundings {
public:
  // Reads the drawing; path "-" is standard input. ok() tells whether there is a tree.
  Drawing(std::string path, const ReadSettings &settings);
  // Reads a drawing inside of another one, on its core and as the settings say, without sheets from
  // outside; messages are among the outer one's. The data must outlive it.
  Drawing(const Drawing &outer, const unsigned char *data, size_t size);
  ~Drawing();
  Drawing(const Drawing &) = delete;
  Drawing &operator=(const Drawing &) = delete;

  bool ok() const { return svg_ != nullptr; }
  const std::string &name() const { return name_; }
  const std::vector<Message> &messages() const { return notes_.messages(); }
  const Notes &notes() const { return notes_; }
  ort_core *core() const override { return core_; }
  svg_parser *parser() const override { return parser_; }
  svg_e_node *svg() const { return svg_; }
  double viewport_width() const { return viewport_[0]; }
  double viewport_height() const { return viewport_[1]; }
  double viewbox_width() const { return viewbox_[0]; }
  double viewbox_height() const { return viewbox_[1]; }
  bool has_text() const { return has_text_ != 0; }
  bool uses(int element_id) const {
    return (elems_used_[element_id / 8] >> (element_id % 8) & 1) != 0;
  }

  Source source(const svg_e_node *element, const svg_a_node *value) const;

  // What a selector of the settings matches, in document order.
  const Elements &selected(size_t selector) const { return selected_[selector]; }

  // The id that an unresolved link refers to, or null.
  const char *waiting_name(const svg_iri *iri) const override;

  // Generated name of a font, "" when memory is short.
  std::string font_name(const svg_font *font) const;

  // Whether the element's systemLanguage, if any, accepts the user's language (SVG 1.1, 5.8.5).
  bool accepts_language(const svg_e_node *element) const;

private:
  struct ValueOfElement {
    const svg_e_node *element;
    const svg_a_node *value;
    bool operator==(const ValueOfElement &) const = default;
  };
  struct Hash {
    size_t operator()(const ValueOfElement &key) const {
      return std::hash<const void *>()(key.element) * 31 + std::hash<const void *>()(key.value);
    }
  };

  Drawing(std::string path, const ReadSettings &settings, ort_core *outer);
  Place sheet_place() const;
  bool read_standard_input();
  void read();
  void parse();
  void note_waiting_links();
  static void on_message(void *user, ort_severity severity, int code, const char *text);
  static void on_log(void *user, const char *text, size_t length);
  static void on_element(void *user, const svg_e_node *element, uint32_t line,
                         const svg_written_attr *attributes, size_t count);
  static void on_sheet(void *user, const char *href);
  static void on_skip(void *user, svg_skipped what, const char *name, uint32_t line);
  static void on_leniency(void *user, const svg_lenient_value *value);
  static void on_value(void *user, const svg_e_node *element, const svg_a_node *value,
                       svg_source source, const char *selector);
  static void on_selected(void *user, const svg_e_node *element);

  std::string path_;
  std::string name_;
  std::string folder_;
  std::string input_;      // of standard input
  std::string_view bytes_; // null: those of the file
  const ReadSettings &settings_;
  Notes notes_;
  std::vector<const char *> refused_elements_;
  std::vector<const char *> refused_properties_;
  css_context css_context_ = {};
  ort_core *core_;
  bool is_embedded_; // the core is another drawing's
  svg_parser *parser_ = nullptr;
  ort_file *file_ = nullptr;
  ort_gz *gz_ = nullptr;
  svg_e_node *svg_ = nullptr;
  double viewport_[2] = {};
  double viewbox_[2] = {};
  const unsigned char *elems_used_ = nullptr;
  int32_t has_text_ = 0;
  std::unordered_map<ValueOfElement, Source, Hash>
      sources_;                                    // of values that are not from attributes
  std::unordered_map<std::string, int> selectors_; // each text once; the keys are what sources name
  std::unordered_map<const char *, const std::string *> selector_texts_; // by the engine's own text
  std::vector<Elements> selected_;                                       // by selector
  std::unordered_map<const svg_iri *, const char *> waiting_;
};

// Where an element's value came from: "style", "sheet: SELECTOR"; "" for an attribute.
std::string source_text(const Drawing &drawing, const svg_e_node *element, const svg_a_node *value,
                        bool full);

#endif
