// explain.cpp: the cascade and inheritance of SVG 1.1 and CSS 2.1 over a finished tree (--explain).
//
// The tree keeps side by side what an element's attribute, the style sheets and its style attribute
// say. Of the rules that match, it keeps the winner only.
#include "tools/explain.h"

#include <algorithm>
#include <vector>

#include "tools/names.h"
#include "tools/records.h"
#include "tools/utf8.h"
#include "tools/value_text.h"
#include "tools/walk.h"

constexpr int NO_ROW = -1;

namespace {

// The values that apply at the place that a walk has reached. An element costs its own values only,
// however deep it lies.
class Cascade {
public:
  explicit Cascade(const Drawing &drawing) : drawing_(drawing) {}
  void enter(const svg_e_node *element, int64_t node);
  void leave(const svg_e_node *element);

  // The winner among the element's own values, and what applies to it: that, or an ancestor's.
  // element is the one that was entered last, or its parent.
  Holder own(const svg_e_node *element, int row) const;
  Holder applied(const svg_e_node *element, int row) const;

private:
  struct Entry {
    Holder own;
    int rank;     // of its source
    Holder above; // what applied to the parent
  };
  const Drawing &drawing_;
  std::vector<Entry> entries_[SVG_ATTR_COUNT]; // by row, of the open elements with one
};

} // namespace

static Explanation explain_row(const Cascade &cascade, const svg_e_node *element, int64_t node,
                               int row);
static std::vector<int> rows_of(const Cascade &cascade, const svg_e_node *element);
static int find_row(const svg_e_node *element, const std::string &name);
static void print_explanation(FILE *out, const Drawing &drawing, const Explanation &found);
static void print_value(FILE *out, const Drawing &drawing, const Holder &holder, int row);
static bool competes(const svg_a_node *value, int row);
static int rank(svg_source source);

// Calls found(row) for each row that a value competes for: the shorthand marker does for four.
template <class Found> static void each_row(const svg_a_node *value, Found found) {
  found(value->row);
  if (value->row != SVG_PROP_marker) return;
  for (int row = SVG_PROP_marker_end; row <= SVG_PROP_marker_start; ++row) found(row);
}

bool is_known_name(const std::string &name) {
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (name == row_name(row)) return true;
  return false;
}

void explain(const Drawing &drawing, const Elements &elements, const std::string &name,
             const Explained &explained) {
  Cascade cascade(drawing);
  size_t next = 0;
  int64_t node = 0;
  const auto enter = [&](const svg_e_node *element, int) {
    if (next == elements.size()) return;
    cascade.enter(element, ++node);
    if (element != elements[next]) return;
    ++next;
    std::vector<int> rows;
    if (name.empty())
      rows = rows_of(cascade, element);
    else if (const int row = find_row(element, name); row != NO_ROW)
      rows = {row};
    std::vector<Explanation> explanations;
    explanations.reserve(rows.size());
    for (const int row : rows) explanations.push_back(explain_row(cascade, element, node, row));
    explained(element, node, explanations);
  };
  walk(
      drawing.svg(), enter, [](const svg_t_node *, int) {},
      [&](const svg_e_node *element) { cascade.leave(element); });
}

void print_explanations(FILE *out, const Drawing &drawing, const Elements &elements,
                        const std::string &name) {
  explain(drawing, elements, name,
          [&](const svg_e_node *element, int64_t, const std::vector<Explanation> &rows) {
            if (ferror(out) != 0) return;
            fprintf(out, "%s: %s\n", escaped(drawing.name()).c_str(),
                    element_text(drawing, element, false).c_str());
            for (const Explanation &row : rows) print_explanation(out, drawing, row);
            if (rows.empty() && !name.empty())
              fprintf(out, "  %s: no attribute of %s\n", name.c_str(),
                      element_name(element->head.id));
          });
}

// CSS 2.1, 6.4.1 and SVG 1.1, 6.4; among equals the last one wins.
void Cascade::enter(const svg_e_node *element, int64_t node) {
  const svg_e_node *parent = svg_get_parent(element);
  for (int32_t i = 0; i < element->values_num; ++i) {
    const Holder holder = {element, element->values[i], node};
    const int value_rank = rank(drawing_.source(element, holder.value).kind);
    each_row(holder.value, [&](int row) {
      std::vector<Entry> &entries = entries_[row];
      if (entries.empty() || entries.back().own.element != element)
        entries.push_back({holder, value_rank, applied(parent, row)});
      else if (value_rank >= entries.back().rank)
        entries.back() = {holder, value_rank, entries.back().above};
    });
  }
}

void Cascade::leave(const svg_e_node *element) {
  for (int32_t i = 0; i < element->values_num; ++i)
    each_row(element->values[i], [&](int row) {
      std::vector<Entry> &entries = entries_[row];
      if (!entries.empty() && entries.back().own.element == element) entries.pop_back();
    });
}

Holder Cascade::own(const svg_e_node *element, int row) const {
  const std::vector<Entry> &entries = entries_[row];
  const bool has = !entries.empty() && entries.back().own.element == element;
  return has ? entries.back().own : Holder();
}

Holder Cascade::applied(const svg_e_node *element, int row) const {
  const std::vector<Entry> &entries = entries_[row];
  if (entries.empty()) return {};
  const Entry &nearest = entries.back();
  if (nearest.own.element != element && !svg_is_inherited(row)) return {};
  return svg_is_inherit(nearest.own.value) ? nearest.above : nearest.own;
}

static Explanation explain_row(const Cascade &cascade, const svg_e_node *element, int64_t node,
                               int row) {
  Explanation result;
  result.row = row;
  result.winner = cascade.own(element, row);
  for (int32_t i = element->values_num - 1; i >= 0; --i)
    if (const svg_a_node *value = element->values[i];
        value != result.winner.value && competes(value, row))
      result.overridden.push_back({element, value, node});
  if (result.winner.value && !svg_is_inherit(result.winner.value)) return result;
  result.inherited = cascade.applied(element, row);
  if (!result.inherited.value) result.initial = svg_get_attr_table()[row].default_text;
  return result;
}

// The rows that the element has values for, then the properties that it inherits.
static std::vector<int> rows_of(const Cascade &cascade, const svg_e_node *element) {
  std::vector<int> rows;
  for (int32_t i = 0; i < element->values_num; ++i)
    if (const int row = element->values[i]->row; !std::ranges::count(rows, row))
      rows.push_back(row);
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (svg_is_property(row) && cascade.applied(element, row).value &&
        !std::ranges::count(rows, row))
      rows.push_back(row);
  return rows;
}

// An attribute of this element takes precedence: some attributes of font-face are named like
// properties.
static int find_row(const svg_e_node *element, const std::string &name) {
  const svg_elem_def &definition = svg_get_elem_table()[element->head.id];
  for (int32_t i = 0; i < definition.esa_count; ++i)
    if (name == definition.esa_list[i].name) return definition.esa_list[i].attr;
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (svg_is_property(row) && name == row_name(row)) return row;
  return NO_ROW;
}

static void print_explanation(FILE *out, const Drawing &drawing, const Explanation &found) {
  const int row = found.row;
  fprintf(out, "  %s: ", row_name(row));
  if (found.winner.value)
    print_value(out, drawing, found.winner, row);
  else
    fputs("no value\n", out);
  for (const Holder &holder : found.overridden) {
    fputs("    overrides ", out);
    print_value(out, drawing, holder, row);
  }
  if (found.inherited.value) {
    fprintf(out, "    inherited from %s: ",
            element_text(drawing, found.inherited.element, false).c_str());
    print_value(out, drawing, found.inherited, row);
  } else if (found.initial) {
    fprintf(out, "    initial value: %s\n", found.initial);
  } else if (svg_is_property(row) && (!found.winner.value || svg_is_inherit(found.winner.value))) {
    fputs("    initial value: the program's own\n", out);
  }
}

static void print_value(FILE *out, const Drawing &drawing, const Holder &holder, int row) {
  const std::string text = value_text(drawing, holder.value, false);
  const std::string source = source_text(drawing, holder.element, holder.value, false);
  // The record of an IRI does not tell the two keywords apart.
  const bool iri = svg_get_record_kind(holder.value->row) == SVG_RECORD_IRI;
  fprintf(out, "%s%s  (%s%s)\n", text.c_str(),
          iri && svg_is_property(row) && !value_iri(holder.value) ? " or inherit" : "",
          source.empty() ? "attribute" : source.c_str(),
          holder.value->row != row ? ", through marker" : "");
}

static bool competes(const svg_a_node *value, int row) {
  bool found = false;
  each_row(value, [&](int candidate) { found = found || candidate == row; });
  return found;
}

// A presentation attribute counts as a rule of specificity 0 before all sheets (SVG 1.1, 6.4).
static int rank(svg_source source) {
  switch (source) {
  case SVG_SOURCE_DEFAULT: return 0;
  case SVG_SOURCE_ATTRIBUTE: return 1;
  case SVG_SOURCE_SHEET: return 2;
  case SVG_SOURCE_STYLE: return 3;
  case SVG_SOURCE_IMPORTANT: return 4;
  }
  return 0;
}
