// options.cpp: reads the command line with CLI11.
#include "tools/options.h"

#include <CLI/CLI.hpp>
#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <tuple>

#include "tools/explain.h"
#include "tools/limits.h"
#include "tools/records.h"
#include "tools/utf8.h"

static void add_output_options(CLI::App &app, Options &options);
static void add_question_options(CLI::App &app, Options &options);
static void add_reading_options(CLI::App &app, Options &options);
static int refuse_usage(const std::string &mistake);
static std::string find_mistake(const Options &options);
static std::string take_selections(Options &options);
static bool is_element(const std::string &name);
static bool is_property(const std::string &name);

int parse_options(int argc, char **argv, Options &options) {
  CLI::App app("svgtree reads SVG 1.1 drawings, plain or gzip, and prints their document trees.",
               "svgtree");
  app.set_version_flag("--version", "svgtree " SVGREADER_VERSION);
  app.add_option("FILE", options.files, "Drawings to read; - is standard input")->option_text(" ");
  add_output_options(app, options);
  add_question_options(app, options);
  add_reading_options(app, options);
  app.footer("Exit status: 0 all drawings were read, 1 some were not or --check found something,\n"
             "2 wrong usage.\n"
             "The manual page svgtree(1) tells more.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return error.get_exit_code() == 0 ? app.exit(error) : refuse_usage(error.what());
  }
  options.has_bbox = app.count("--bbox") > 0;
  options.has_explain = app.count("--explain") > 0;
  if (options.pretty && !options.schema) options.json = true;
  std::string mistake = find_mistake(options);
  if (mistake.empty()) mistake = take_selections(options);
  for (const std::string &limit : options.limits)
    if (mistake.empty()) mistake = take_limit(limit, options.reading);
  if (!mistake.empty()) return refuse_usage(mistake);
  const auto ignoring_case = [](const std::string &a, const std::string &b) {
    return strcasecmp(a.c_str(), b.c_str()) < 0;
  };
  std::ranges::sort(options.reading.refused_elements, ignoring_case);
  std::ranges::sort(options.reading.refused_properties, ignoring_case);
  options.reading.note_sources = !options.check;
  if (options.reading.log_level > 0) options.jobs = 1; // logs of several drawings would mix
  return -1;
}

static void add_output_options(CLI::App &app, Options &options) {
  const auto flag = [&](const char *name, bool &value, const char *text) {
    app.add_flag(name, value, text)->group("Output");
  };
  flag("--full", options.text.full, "Print numbers, lists, paths and texts whole");
  flag("--json", options.json, "Print each drawing as JSON, on one line");
  flag("--pretty", options.pretty, "Print JSON indented");
  flag("--simplify", options.simplify,
       "Write the drawing as plain SVG: paths and attributes, without sheets, use, units");
  flag("--check", options.check, "Print what is wrong with each drawing, a finding a line");
  flag("--schema", options.schema,
       "Print the tables of elements, attributes, keywords and errors as JSON");
}

static void add_question_options(CLI::App &app, Options &options) {
  const auto flag = [&](const char *name, bool &value, const char *text) {
    app.add_flag(name, value, text)->group("Questions");
  };
  const auto option = [&](const char *name, auto &value, const char *argument, const char *text) {
    return app.add_option(name, value, text)->option_text(argument)->group("Questions");
  };
  option("--query", options.query.text, "ID|SELECTOR",
         "Print the element with this id, or those that match, and what is in them")
      ->each([&](const std::string &) { options.has_query = true; });
  option("--explain", options.explained.text, "[ID|SELECTOR]",
         "Tell the values of properties of elements, by default of --query's, where they come from "
         "and which one counts")
      ->expected(0, 1);
  option("--property", options.explain_property, "NAME",
         "Let --explain tell of this property or attribute only");
  flag("--fonts", options.fonts, "List the fonts with their generated names");
  flag("--ids", options.ids, "List the ids and names with their elements");
  flag("--links", options.links, "List the links with their targets");
  flag("--stats", options.stats, "Count elements and values; tell memory and time");
  flag("--info", options.info, "Print size, title, counts and what is skipped");
  flag("--shapes", options.shapes, "List what the drawing or --query's element paints, in order");
  option("--bbox", options.bbox_id, "[=ID]",
         "Print the box of what the drawing, --query's element or this element paints")
      ->expected(0, 0); // only "--bbox=ID" has one: what follows "--bbox" is a drawing
  option("--extract", options.extract_folder, "DIR", "Write embedded data to files in this folder");
  flag("--force", options.force, "Let --extract replace files");
  option("--path", options.path, "TEXT",
         "Print the segments of path data, - for those of standard input; reads no drawing")
      ->each([&](const std::string &) { options.has_path = true; });
}

static void add_reading_options(CLI::App &app, Options &options) {
  ReadSettings &reading = options.reading;
  const auto option = [&](const char *name, auto &value, const char *argument, const char *text) {
    return app.add_option(name, value, text)->option_text(argument)->group("Reading");
  };
  option("--jobs", options.jobs, "N", "Read so many drawings at a time")->check(CLI::Range(1, 256));
  option("--language", reading.language, "TAG",
         "The user's language, for systemLanguage; the tree marks what it accepts")
      ->each([&](const std::string &) { options.text.languages = true; });
  option("--font-number", reading.font_number, "N", "Number appended to generated font names");
  option("--style-dir", reading.style_folder, "DIR",
         "Folder that external style sheets may be read from (default: the drawing's)");
  app.add_flag("--strict", reading.strict, "Read as SVG 1.1 says, nothing leniently")
      ->group("Reading");
  app.add_flag_callback(
         "--no-external", [&] { reading.external_sheets = false; }, "Read no external style sheets")
      ->group("Reading");
  for (const auto &[name, values, argument, text] :
       {std::tuple("--refuse-element", &reading.refused_elements, "NAME",
                   "Refuse drawings with this unsupported element (repeatable)"),
        std::tuple("--refuse-property", &reading.refused_properties, "NAME",
                   "Refuse drawings with this unsupported property (repeatable)"),
        std::tuple("--limit", &options.limits, "NAME=N",
                   "Set memory, inflated, recorded (bytes), growth, nodes, depth or expanded "
                   "(repeatable)")})
    option(name, *values, argument, text)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  option("--log", reading.log_level, "LEVEL",
         "Log to standard error: 3 markup, 5 detail, 6 everything")
      ->check(CLI::Range(0, 9));
}

static int refuse_usage(const std::string &mistake) {
  fprintf(stderr, "svgtree: %s\nRun svgtree --help for more information.\n",
          escaped(mistake).c_str());
  return 2;
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
