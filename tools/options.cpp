// options.cpp: the command line of svgtree.
#include "tools/options.h"

#include <strings.h>

#include <algorithm>

#include "tools/command_line.h"
#include "tools/explain.h"
#include "tools/records.h"

static void add_output_options(CommandLine &line, Options &options);
static void add_question_options(CommandLine &line, Options &options);
static void add_reading_options(CommandLine &line, Options &options);
static std::string find_mistake(const Options &options);
static std::string take_selections(Options &options);
static bool is_element(const std::string &name);
static bool is_property(const std::string &name);

int parse_options(int argc, char **argv, Options &options) {
  CommandLine line(
      "svgtree", "svgtree reads SVG 1.1 drawings, plain or gzip, and prints their document trees.",
      "Exit status: 0 all drawings were read, 1 some were not or --check found something,\n"
      "2 wrong usage.\n"
      "The manual page svgtree(1) tells more.");
  line.add("FILE", options.files, " ", "Drawings to read; - is standard input");
  add_output_options(line, options);
  add_question_options(line, options);
  add_reading_options(line, options);
  const int status = line.parse(argc, argv, [&] {
    options.has_query = line.has("--query");
    options.has_path = line.has("--path");
    options.has_bbox = line.has("--bbox");
    options.has_explain = line.has("--explain");
    options.text.languages = line.has("--language");
    if (options.pretty && !options.schema) options.json = true;
    const std::string mistake = find_mistake(options);
    return mistake.empty() ? take_selections(options) : mistake;
  });
  const auto ignoring_case = [](const std::string &a, const std::string &b) {
    return strcasecmp(a.c_str(), b.c_str()) < 0;
  };
  std::ranges::sort(options.reading.refused_elements, ignoring_case);
  std::ranges::sort(options.reading.refused_properties, ignoring_case);
  options.reading.note_sources = !options.check;
  options.reading.external_sheets = !options.no_external;
  if (options.reading.log_level > 0) options.jobs = 1; // logs of several drawings would mix
  return status;
}

static void add_output_options(CommandLine &line, Options &options) {
  line.begin_group("Output");
  line.add_flag("--full", options.text.full, "Print numbers, lists, paths and texts whole");
  line.add_flag("--json", options.json, "Print each drawing as JSON, on one line");
  line.add_flag("--pretty", options.pretty, "Print JSON indented");
  line.add_flag("--simplify", options.simplify,
                "Write the drawing as plain SVG: paths and attributes, without sheets, use, units");
  line.add_flag("--check", options.check,
                "Print what is wrong with each drawing, a finding a line");
  line.add_flag("--schema", options.schema,
                "Print the tables of elements, attributes, keywords and errors as JSON");
}

static void add_question_options(CommandLine &line, Options &options) {
  line.begin_group("Questions");
  line.add("--query", options.query.text, "ID|SELECTOR",
           "Print the element with this id, or those that match, and what is in them");
  line.add("--explain", options.explained.text, "[ID|SELECTOR]",
           "Tell the values of properties of elements, by default of --query's, where they come "
           "from and which one counts")
      ->expected(0, 1);
  line.add("--property", options.explain_property, "NAME",
           "Let --explain tell of this property or attribute only");
  line.add_flag("--fonts", options.fonts, "List the fonts with their generated names");
  line.add_flag("--ids", options.ids, "List the ids and names with their elements");
  line.add_flag("--links", options.links, "List the links with their targets");
  line.add_flag("--stats", options.stats, "Count elements and values; tell memory and time");
  line.add_flag("--info", options.info, "Print size, title, counts and what is skipped");
  line.add_flag("--shapes", options.shapes,
                "List what the drawing or --query's element paints, in order");
  line.add("--bbox", options.bbox_id, "[=ID]",
           "Print the box of what the drawing, --query's element or this element paints")
      ->expected(0, 0); // only "--bbox=ID" has one: what follows "--bbox" is a drawing
  line.add("--extract", options.extract_folder, "DIR",
           "Write embedded data to files in this folder");
  line.add_flag("--force", options.force, "Let --extract replace files");
  line.add("--path", options.path, "TEXT",
           "Print the segments of path data, - for those of standard input; reads no drawing");
}

static void add_reading_options(CommandLine &line, Options &options) {
  ReadSettings &reading = options.reading;
  line.begin_group("Reading");
  line.add("--font-number", reading.font_number, "N", "Number appended to generated font names");
  line.add("--style-dir", reading.style_folder, "DIR",
           "Folder that external style sheets may be read from (default: the drawing's)");
  line.add_flag("--no-external", options.no_external, "Read no external style sheets");
  line.add_list("--refuse-element", reading.refused_elements, "NAME",
                "Refuse drawings with this unsupported element");
  line.add_list("--refuse-property", reading.refused_properties, "NAME",
                "Refuse drawings with this unsupported property");
  line.add("--log", reading.log_level, "LEVEL",
           "Log to standard error: 3 markup, 5 detail, 6 everything")
      ->check(CLI::Range(0, 9));
  line.add_reading(reading, options.jobs);
}

static std::string find_mistake(const Options &options) {
  const bool questions = options.asks();
  if (options.has_path && (questions || options.json || options.check || !options.files.empty()))
    return "--path reads no drawing";
  if (options.files.empty() && !options.schema && !options.has_path) {
    const std::string &taken = options.explained.text; // of "--query X --explain FILE"
    return "no FILE given" +
           (taken.empty() ? "" : ": '" + taken + "' is what --explain is to tell of");
  }
  if (std::ranges::count(options.files, "-") > 1) return "standard input can be read only once";
  if (options.check && (questions || options.pretty)) return "--check prints findings only";
  if (options.simplify && (questions || options.json || options.check || options.files.size() > 1))
    return "--simplify writes one drawing, and nothing else";
  if (options.force && options.extract_folder.empty()) return "--force goes with --extract";
  if (options.json && !options.extract_folder.empty()) return "--extract has no answer in JSON";
  if (!options.explain_property.empty()) {
    if (!options.has_explain) return "--property goes with --explain";
    if (!is_known_name(options.explain_property))
      return "--property " + options.explain_property + ": no such property or attribute";
  }
  const char *known = ": the reader knows it, and refuses only what it does not";
  for (const std::string &name : options.reading.refused_properties)
    if (is_property(name)) return "--refuse-property " + name + known;
  for (const std::string &name : options.reading.refused_elements)
    if (is_element(name)) return "--refuse-element " + name + known;
  return "";
}

static std::string take_selections(Options &options) {
  std::string mistake = take_selection(options.query, options.reading);
  if (!mistake.empty()) return "--query: " + mistake;
  options.explains_query = options.has_explain && options.explained.text.empty();
  if (options.explains_query) {
    if (!options.has_query) return "--explain needs an ID or a SELECTOR, or --query";
    options.explained = options.query;
  } else {
    mistake = take_selection(options.explained, options.reading);
  }
  return mistake.empty() ? "" : "--explain: " + mistake;
}

static bool is_element(const std::string &name) {
  for (int id = 0; id < SVG_ELEM_COUNT; ++id)
    if (name == element_name(id)) return true;
  return false;
}

// Ignores ASCII case, as the reader does.
static bool is_property(const std::string &name) {
  for (int row = 0; row < SVG_ATTR_COUNT; ++row)
    if (svg_is_property(row) && strcasecmp(svg_get_attr_table()[row].name, name.c_str()) == 0)
      return true;
  return false;
}
