// main.cpp: svgtree, the command-line host: options, the loop over the inputs, the exit status.
//
// Exit status: 0 all inputs were read, 1 some were not readable as SVG, 2 the command line is
// wrong.
#include <CLI/CLI.hpp>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <strings.h>

#include "tools/drawing.h"
#include "tools/schema.h"
#include "tools/tree_text.h"

namespace {

struct Options {
  ReadSettings reading;
  std::vector<std::string> files;
  bool check = false;
  bool full = false;
  bool schema = false;
};

} // namespace

static int parse_options(int argc, char **argv, Options &options);
static bool read_and_print(const std::string &file, const Options &options);
static void print_messages(const Drawing &drawing);
static bool flush_output();

int main(int argc, char **argv) {
  signal(SIGPIPE, SIG_IGN); // a closed pipe is an error of the write, told below
  Options options;
  if (const int status = parse_options(argc, argv, options); status >= 0) return status;
  bool ok = true;
  if (options.schema) print_schema(stdout);
  for (const std::string &file : options.files) ok = read_and_print(file, options) && ok;
  return flush_output() && ok ? 0 : 1;
}

// Returns the exit status, or -1 to go on.
static int parse_options(int argc, char **argv, Options &options) {
  CLI::App app("svgtree reads SVG 1.1 drawings, plain or gzip, and prints their document trees.",
               "svgtree");
  app.set_version_flag("--version", "svgtree " SVGREADER_VERSION);
  app.add_option("FILE", options.files, "Drawings to read; - is standard input");
  app.add_flag("--check", options.check, "Print messages only");
  app.add_flag("--full", options.full, "Print long lists, paths and texts whole");
  app.add_flag("--schema", options.schema,
               "Print the tables of elements, attributes, keywords and errors as JSON");
  app.add_option("--log", options.reading.log_level,
                 "Log to standard error: 3 markup, 5 detail, 6 everything")
      ->check(CLI::Range(0, 9))
      ->option_text("LEVEL");
  app.add_option("--language", options.reading.language, "The user's language, for systemLanguage")
      ->option_text("TAG");
  app.add_option("--font-number", options.reading.font_number,
                 "Number appended to generated font names")
      ->option_text("N");
  app.add_option("--refuse-element", options.reading.refused_elements,
                 "Refuse drawings with this unsupported element (repeatable)")
      ->option_text("NAME")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--refuse-property", options.reading.refused_properties,
                 "Refuse drawings with this unsupported property (repeatable)")
      ->option_text("NAME")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_option("--style-dir", options.reading.style_folder,
                 "Folder that external style sheets may be read from (default: the drawing's)")
      ->option_text("DIR");
  app.add_flag_callback(
      "--no-external", [&] { options.reading.external_sheets = false; },
      "Read no external style sheets");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  if (options.files.empty() && !options.schema) {
    fputs("svgtree: no FILE given\nRun svgtree --help for more information.\n", stderr);
    return 2;
  }
  const auto ignoring_case = [](const std::string &a, const std::string &b) {
    return strcasecmp(a.c_str(), b.c_str()) < 0;
  };
  std::ranges::sort(options.reading.refused_elements, ignoring_case);
  std::ranges::sort(options.reading.refused_properties, ignoring_case);
  options.reading.note_sources = !options.check;
  return -1;
}

static bool read_and_print(const std::string &file, const Options &options) {
  const Drawing drawing(file, options.reading);
  print_messages(drawing);
  if (drawing.ok() && !options.check) print_document(stdout, drawing, options.full);
  return drawing.ok();
}

static void print_messages(const Drawing &drawing) {
  for (const Message &message : drawing.messages())
    fprintf(stderr, "%s: %s %d: %s\n", drawing.name().c_str(),
            message.severity == ORT_ERROR ? "error" : "warning", message.code,
            message.text.c_str());
}

static bool flush_output() {
  if (fflush(stdout) == 0 && ferror(stdout) == 0) return true;
  if (errno != EPIPE) // whoever closed the pipe has seen enough
    fprintf(stderr, "svgtree: cannot write: %s\n", strerror(errno));
  return false;
}
