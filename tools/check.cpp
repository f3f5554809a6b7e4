// check.cpp: see check.h. Findings are the reader's messages, and what it does not report: links
// without a target, repeated ids, elements and properties that it skips, references to the outside.
#include "tools/check.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_set>
#include <vector>

#include "tools/json_writer.h"
#include "tools/records.h"
#include "tools/utf8.h"
#include "tools/value_text.h"
#include "tools/walk.h"

namespace {

// Codes of the tool's own findings, beyond those of the reader.
enum FindingCode {
  LINK_WITHOUT_TARGET = 10300,
  ID_REPEATED = 10301,
  ELEMENT_SKIPPED = 10302,
  PROPERTY_UNKNOWN = 10303,
  OUTSIDE_REFERENCE = 10304,
  VALUE_LENIENT = 10305
};

struct Finding {
  ort_severity severity;
  int code;
  Place place;
  std::string text; // escaped
};

using Findings = std::vector<Finding>;

} // namespace

static Findings find_all(const Drawing &drawing, bool full);
static Finding of_message(const Message &message);
static bool split_number(std::string &text, const char *label, uint32_t &number);
static std::string_view known_element(const std::string &name);
static void find_links(const Drawing &drawing, bool full, Findings &findings);
static void find_sheets(const Notes &notes, bool full, Findings &findings);
static void find_skipped(const Notes &notes, bool full, Findings &findings);
static bool is_known_property(const std::string &name);
static std::string times(size_t count);
static void print_line(FILE *out, const Drawing &drawing, const Finding &finding, bool full);
static void write_line(FILE *out, const Drawing &drawing, const Finding &finding, bool full);

size_t print_check(FILE *out, const Drawing &drawing, const CheckOptions &options,
                   Progress &progress) {
  const Findings findings = find_all(drawing, options.full);
  if (!findings.empty()) progress.clear();
  for (const Finding &finding : findings)
    (options.json ? write_line : print_line)(out, drawing, finding, options.full);
  if (!options.json && !findings.empty())
    fprintf(out, "%s: %zu finding%s\n", escaped(drawing.name()).c_str(), findings.size(),
            findings.size() == 1 ? "" : "s");
  return findings.size();
}

static Findings find_all(const Drawing &drawing, bool full) {
  const Notes &notes = drawing.notes();
  Findings findings;
  for (const Message &message : notes.messages()) findings.push_back(of_message(message));
  find_sheets(notes, full, findings);
  if (drawing.ok()) find_links(drawing, full, findings);
  for (const RepeatedId &repeated : notes.repeated_ids())
    findings.push_back({ORT_WARNING, ID_REPEATED, repeated.place,
                        "the id '" + short_text(repeated.place.id, full) + "' stands in line " +
                            std::to_string(repeated.first_line) + " already"});
  for (const LenientValue &value : notes.lenient_values())
    findings.push_back({ORT_WARNING, VALUE_LENIENT, value.place,
                        value.name + ": SVG 1.1 does not allow '" + short_text(value.text, full) +
                            "', which is read leniently"});
  find_skipped(notes, full, findings);
  std::ranges::stable_sort(findings, {}, [](const Finding &f) { return f.place.line; });
  return findings;
}

// What the text tells about the place goes where editors look for it.
static Finding of_message(const Message &message) {
  Finding finding = {message.severity, message.code, message.place, message.text};
  std::string &text = finding.text;
  if (message.code == ORT_E_XML) {
    if (split_number(text, ", column ", finding.place.column)) ++finding.place.column; // from 0
    split_number(text, " in line ", finding.place.line);
  } else if (const size_t position = text.rfind(", in file '"); position != text.npos) {
    std::string tail = text.substr(position); // ", in file 'X', line N, element 'E'"
    text.erase(position);
    const size_t element = tail.rfind(", element '");
    if (finding.place.line == 0 && element != tail.npos) { // of an element that was not finished
      finding.place.element = known_element(tail.substr(element + 11, tail.size() - element - 12));
      tail.erase(element);
      split_number(tail, ", line ", finding.place.line);
    }
  }
  if (text.ends_with(',')) text.pop_back();
  return finding;
}

static std::string_view known_element(const std::string &name) {
  for (int id = 0; id < SVG_ELEM_COUNT; ++id)
    if (name == element_name(id)) return element_name(id);
  return "";
}

// Cuts "LABEL NUMBER" from the end of a text.
static bool split_number(std::string &text, const char *label, uint32_t &number) {
  const size_t position = text.rfind(label);
  if (position == text.npos) return false;
  number =
      static_cast<uint32_t>(std::strtoul(text.c_str() + position + strlen(label), nullptr, 10));
  text.erase(position);
  return true;
}

// Elements share the values of a rule: each link is a finding at the first of them. What "a" leads
// to is no part of the drawing (SVG 1.1, 17.1).
static void find_links(const Drawing &drawing, bool full, Findings &findings) {
  std::unordered_set<const svg_iri *> found;
  each_element(drawing.svg(), [&](const svg_e_node *element) {
    for (int32_t i = 0; i < element->values_num; ++i) {
      const svg_a_node *value = element->values[i];
      const svg_iri *iri = value_iri(value);
      const bool waits = iri && iri->kind == SVG_IRI_LINK && !iri->ref.target;
      const bool outside = iri && iri->kind == SVG_IRI_NAME && element->head.id != SVG_ELEM_a;
      if ((!waits && !outside) || !found.insert(iri).second) continue;
      const std::string_view name = svg_find_href_id(drawing.parser(), element);
      const Place place = {drawing.notes().line_of(element), 0, element_name(element->head.id),
                           name != "(empty)" ? name : ""};
      const char *target = waits ? drawing.waiting_name(iri) : iri->ref.text;
      std::string text = std::string(row_name(value->row)) + ": ";
      text += waits ? "no element has the id '" : "'";
      text += short_text(target ? target : "", full);
      text += waits ? "'" : "' lies outside of the drawing";
      findings.push_back(
          {ORT_WARNING, waits ? LINK_WITHOUT_TARGET : OUTSIDE_REFERENCE, place, text});
    }
  });
}

// A name may also be that of the drawing itself, or be the sheet (RFC 2397).
static void find_sheets(const Notes &notes, bool full, Findings &findings) {
  for (const OutsideSheet &sheet : notes.outside_sheets())
    if (!sheet.href.empty() && !sheet.href.starts_with('#') &&
        strncasecmp(sheet.href.c_str(), "data:", 5) != 0)
      findings.push_back(
          {ORT_WARNING, OUTSIDE_REFERENCE, sheet.place,
           "style sheet '" + short_text(sheet.href, full) + "' lies outside of the drawing"});
}

static void find_skipped(const Notes &notes, bool full, Findings &findings) {
  for (const SkippedName &element : notes.skipped_elements())
    findings.push_back({ORT_WARNING, ELEMENT_SKIPPED, element.place,
                        "the element '" + short_text(element.name, full) +
                            "' is skipped with its content" + times(element.count)});
  for (const SkippedName &property : notes.skipped_properties())
    if (!is_known_property(property.name))
      findings.push_back({ORT_WARNING, PROPERTY_UNKNOWN, property.place,
                          "SVG 1.1 has no property '" + short_text(property.name, full) + "'" +
                              times(property.count)});
}

// Properties of SVG 1.1 that the reader does not need, and those of vendors (CSS 2.1, 4.1.2.1).
static bool is_known_property(const std::string &name) {
  static constexpr const char *names[] = {"alignment-baseline",
                                          "color-interpolation",
                                          "color-interpolation-filters",
                                          "color-rendering",
                                          "cursor",
                                          "dominant-baseline",
                                          "enable-background",
                                          "filter",
                                          "flood-color",
                                          "flood-opacity",
                                          "glyph-orientation-horizontal",
                                          "image-rendering",
                                          "lighting-color",
                                          "pointer-events",
                                          "shape-rendering",
                                          "text-rendering"};
  return name.starts_with('-') || std::ranges::any_of(names, [&](const char *known) {
           return strcasecmp(known, name.c_str()) == 0;
         });
}

static std::string times(size_t count) {
  return count > 1 ? " (" + std::to_string(count) + " times)" : "";
}

static void print_line(FILE *out, const Drawing &drawing, const Finding &finding, bool full) {
  const Place &place = finding.place;
  std::string line = escaped(drawing.name()) + ':';
  if (place.line > 0) line += std::to_string(place.line) + ':';
  if (place.column > 0) line += std::to_string(place.column) + ':';
  line += finding.severity == ORT_ERROR ? " error " : " warning ";
  line += std::to_string(finding.code) + ": ";
  if (!place.element.empty() && finding.code != ELEMENT_SKIPPED)
    line += std::string(place.element) +
            (place.id.empty() ? "" : " #" + short_text(place.id, full)) + ": ";
  fprintf(out, "%s%s\n", line.c_str(), escaped(finding.text).c_str());
}

static void write_line(FILE *out, const Drawing &drawing, const Finding &finding, bool full) {
  const Place &place = finding.place;
  JsonWriter json(out, false);
  const auto field = [&](const char *name, bool known, auto value) {
    json.key(name);
    if (known)
      json.value(value);
    else
      json.null();
  };
  json.begin_object();
  json.field("file", drawing.name());
  field("line", place.line > 0, place.line);
  field("column", place.column > 0, place.column);
  json.field("severity", finding.severity == ORT_ERROR ? "error" : "warning");
  json.field("code", finding.code);
  field("element", !place.element.empty(), place.element);
  field("id", !place.id.empty(), shown_part(place.id, full));
  json.field("message", finding.text);
  json.end_object();
}
