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

constexpr int NO_ROW = -1;

static std::vector<int> rows_of(const Drawing &drawing, const Chain &chain);
static int find_row(const svg_e_node *element, const std::string &name);
static void explain_row(FILE *out, const Drawing &drawing, const Chain &chain, int row);
static void print_value(FILE *out, const Drawing &drawing, const Holder &holder, int row);
static Holder find_holder(const Drawing &drawing, const Chain &chain, int row);
static const svg_a_node *find_winner(const Drawing &drawing, const svg_e_node *element, int row);
static bool competes(const svg_a_node *value, int row);
static int rank(svg_source source);

bool is_known_name(const std::string &name) {
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (name == row_name(row)) return true;
  return false;
}

void print_explanation(FILE *out, const Drawing &drawing, const svg_e_node *element,
                       const std::string &name) {
  const Chain chain = chain_of(element);
  fprintf(out, "%s: %s\n", escaped(drawing.name()).c_str(),
          element_text(drawing, element, false).c_str());
  const std::vector<int> rows = rows_to_explain(drawing, chain, name);
  for (const int row : rows) explain_row(out, drawing, chain, row);
  if (rows.empty() && !name.empty())
    fprintf(out, "  %s: no attribute of %s\n", name.c_str(), element_name(element->head.id));
}

Chain chain_of(const svg_e_node *element) {
  Chain chain;
  for (; element; element = svg_get_parent(element)) chain.push_back(element);
  return chain;
}

std::vector<int> rows_to_explain(const Drawing &drawing, const Chain &chain,
                                 const std::string &name) {
  if (name.empty()) return rows_of(drawing, chain);
  const int row = find_row(chain.front(), name);
  return row != NO_ROW ? std::vector{row} : std::vector<int>();
}

Explanation explain(const Drawing &drawing, const Chain &chain, int row) {
  const svg_e_node *element = chain.front();
  Explanation result;
  result.winner = {element, find_winner(drawing, element, row)};
  for (int32_t i = element->values_num - 1; i >= 0; --i)
    if (const svg_a_node *value = element->values[i];
        value != result.winner.value && competes(value, row))
      result.overridden.push_back({element, value});
  if (result.winner.value && !svg_is_inherit(result.winner.value)) return result;
  result.inherited = find_holder(drawing, chain, row);
  if (!result.inherited.value) result.initial = svg_get_attr_table()[row].default_text;
  return result;
}

// The rows that the element has values for, then the properties that it inherits.
static std::vector<int> rows_of(const Drawing &drawing, const Chain &chain) {
  std::vector<int> rows;
  for (int32_t i = 0; i < chain.front()->values_num; ++i)
    if (const int row = chain.front()->values[i]->row; !std::ranges::count(rows, row))
      rows.push_back(row);
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (svg_is_property(row) && !std::ranges::count(rows, row) &&
        find_holder(drawing, chain, row).value)
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

static void explain_row(FILE *out, const Drawing &drawing, const Chain &chain, int row) {
  const Explanation found = explain(drawing, chain, row);
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

// The value that applies to the first element of the chain: its own, or an ancestor's.
static Holder find_holder(const Drawing &drawing, const Chain &chain, int row) {
  for (const svg_e_node *element : chain) {
    const svg_a_node *value = find_winner(drawing, element, row);
    if (value && !svg_is_inherit(value)) return {element, value};
    if (!value && !svg_is_inherited(row)) break;
  }
  return {};
}

// CSS 2.1, 6.4.1 and SVG 1.1, 6.4; among equals the last one wins.
static const svg_a_node *find_winner(const Drawing &drawing, const svg_e_node *element, int row) {
  const svg_a_node *winner = nullptr;
  int highest = -1;
  for (int32_t i = 0; i < element->values_num; ++i) {
    const svg_a_node *value = element->values[i];
    if (!competes(value, row)) continue;
    const int value_rank = rank(drawing.source(element, value).kind);
    if (value_rank < highest) continue;
    highest = value_rank;
    winner = value;
  }
  return winner;
}

static bool competes(const svg_a_node *value, int row) {
  return value->row == row || (value->row == SVG_PROP_marker && row >= SVG_PROP_marker_end &&
                               row <= SVG_PROP_marker_start);
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
