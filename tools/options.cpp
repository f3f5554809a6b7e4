// options.cpp: reads the command line with CLI11.
#include "tools/options.h"

#include <CLI/CLI.hpp>
#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <tuple>

#include "tools/explain.h"

static void add_output_options(CLI::App &app, Options &options);
static void add_question_options(CLI::App &app, Options &options);
static void add_reading_options(CLI::App &app, Options &options);
static bool take_limit(const std::string &text, ReadSettings &reading);
static std::string take_property(std::vector<std::string> &arguments);
static const char *find_mistake(const Options &options);

int parse_options(int argc, char **argv, Options &options) {
  CLI::App app("svgtree reads SVG 1.1 drawings, plain or gzip, and prints their document trees.",
               "svgtree");
  std::vector<std::string> arguments(argv + 1, argv + argc);
  options.explain_property = take_property(arguments);
  app.set_version_flag("--version", "svgtree " SVGREADER_VERSION);
  app.add_option("FILE", options.files, "Drawings to read; - is standard input")->option_text(" ");
  add_output_options(app, options);
  add_question_options(app, options);
  add_reading_options(app, options);
  app.footer("Exit status: 0 all drawings were read, 1 some were not, 2 wrong usage.\n"
             "The manual page svgtree(1) tells more.");
  try {
    std::ranges::reverse(arguments); // as CLI11 wants them
    app.parse(arguments);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  if (options.pretty && !options.schema) options.json = true;
  const auto bad = std::ranges::find_if_not(
      options.limits, [&](const std::string &limit) { return take_limit(limit, options.reading); });
  const char *mistake = bad != options.limits.end() ? "bad --limit" : find_mistake(options);
  if (mistake != nullptr) {
    fprintf(stderr, "svgtree: %s\nRun svgtree --help for more information.\n", mistake);
    return 2;
  }
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
  flag("--check", options.check, "Print messages only");
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
  option("--query", options.query, "ID", "Print the element with this id and what is in it")
      ->each([&](const std::string &) { options.has_query = true; });
  option("--explain", options.explain_id, "ID [PROPERTY]",
         "Tell the values of an element's properties, where they come from and which one counts")
      ->each([&](const std::string &) { options.has_explain = true; });
  flag("--fonts", options.fonts, "List the fonts with their generated names");
  flag("--ids", options.ids, "List the ids and names with their elements");
  flag("--links", options.links, "List the links with their targets");
  flag("--stats", options.stats, "Count elements and values; tell memory and time");
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
  app.add_flag_callback(
         "--no-external", [&] { reading.external_sheets = false; }, "Read no external style sheets")
      ->group("Reading");
  for (const auto &[name, values, argument, text] :
       {std::tuple("--refuse-element", &reading.refused_elements, "NAME",
                   "Refuse drawings with this unsupported element (repeatable)"),
        std::tuple("--refuse-property", &reading.refused_properties, "NAME",
                   "Refuse drawings with this unsupported property (repeatable)"),
        std::tuple("--limit", &options.limits, "NAME=N",
                   "Set memory, inflated, recorded (bytes), growth, nodes or depth (repeatable)")})
    option(name, *values, argument, text)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  option("--log", reading.log_level, "LEVEL",
         "Log to standard error: 3 markup, 5 detail, 6 everything")
      ->check(CLI::Range(0, 9));
}

static bool take_limit(const std::string &text, ReadSettings &reading) {
  const size_t equals = std::min(text.find('='), text.size());
  const char *begin = text.c_str() + std::min(equals + 1, text.size());
  const char *end = text.c_str() + text.size();
  uint64_t number = 0;
  const auto [rest, error] = std::from_chars(begin, end, number);
  const std::string_view name(text.data(), equals), unit(rest, end);
  const int shift = unit.empty() ? 0 : unit == "K" ? 10 : unit == "M" ? 20 : unit == "G" ? 30 : -1;
  if (error != std::errc{} || number == 0 || shift < 0 || number > UINT64_MAX >> shift)
    return false;
  number <<= shift;
  svg_limits &limits = reading.limits;
  if (name == "memory")
    reading.memory = number;
  else if (name == "inflated")
    reading.inflated = number;
  else if (name == "growth")
    limits.entity_factor = static_cast<float>(number);
  else if (name == "nodes")
    limits.nodes = number;
  else if (name == "depth")
    limits.depth = static_cast<uint32_t>(std::min<uint64_t>(number, UINT32_MAX));
  else if (name == "recorded")
    limits.recorded = number;
  else
    return false;
  return true;
}

// The word behind --explain ID, when it is the name of a property, is taken out of the arguments:
// any other word there is a drawing.
static std::string take_property(std::vector<std::string> &arguments) {
  for (size_t i = 0; i < arguments.size() && arguments[i] != "--"; i++) {
    if (!arguments[i].starts_with("--explain")) continue;
    const size_t next = i + (arguments[i] == "--explain" ? 2 : 1);
    if (next >= arguments.size() || !is_property_name(arguments[next])) continue;
    std::string property = arguments[next];
    arguments.erase(arguments.begin() + static_cast<ptrdiff_t>(next));
    return property;
  }
  return "";
}

static const char *find_mistake(const Options &options) {
  const bool questions = options.asks();
  if (options.has_path && (questions || options.json || options.check || !options.files.empty()))
    return "--path reads no drawing";
  if (options.files.empty() && !options.schema && !options.has_path) return "no FILE given";
  if (std::ranges::count(options.files, "-") > 1) return "standard input can be read only once";
  if (options.check && (questions || options.json)) return "--check prints messages only";
  if (options.force && options.extract_folder.empty()) return "--force goes with --extract";
  Options others = options;
  others.has_query = false;
  if (options.json && others.asks()) return "of the questions only --query has an answer in JSON";
  return nullptr;
}
