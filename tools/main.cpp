// main.cpp: svgtree, the command-line host: what is printed for each drawing, and the exit status.
//
// Exit status: 0 all inputs were read, 1 some were not readable as SVG, --check found something, or
// an answer could not be given or written; 2 the command line is wrong.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>

#include "tools/check.h"
#include "tools/explain.h"
#include "tools/extract.h"
#include "tools/info.h"
#include "tools/jobs.h"
#include "tools/json_answers.h"
#include "tools/json_document.h"
#include "tools/names.h"
#include "tools/options.h"
#include "tools/path_command.h"
#include "tools/process.h"
#include "tools/progress.h"
#include "tools/questions.h"
#include "tools/schema.h"
#include "tools/shapes.h"
#include "tools/simplify.h"
#include "tools/tree_text.h"
#include "tools/utf8.h"

static bool print_drawing(const Drawing &drawing, const Options &options, Extractor *extractor,
                          Progress &progress);
static bool print_asked(const Drawing &drawing, const Options &options, Extractor *extractor);
static bool print_answers_as_json(const Drawing &drawing, const Options &options,
                                  const svg_e_node *top);
static bool print_answers(const Drawing &drawing, const Options &options, const svg_e_node *top,
                          Extractor *extractor);
static const svg_e_node *element_to_measure(const Drawing &drawing, const Options &options,
                                            const svg_e_node *top);
static void print_messages(const Drawing &drawing, size_t first);
static bool flush_output();

int main(int argc, char **argv) {
  prepare_process("svgtree");
  Options options;
  if (const int status = parse_options(argc, argv, options); status >= 0) return status;
  if (options.has_path) {
    const int status = run_path_command(stdout, options.path);
    return flush_output() ? status : 1;
  }
  if (options.schema) print_schema(stdout, options.pretty);
  std::optional<Extractor> extractor;
  if (!options.extract_folder.empty()) {
    extractor.emplace(options.extract_folder, options.force);
    if (!extractor->open()) return 1;
  }
  const bool quiet = options.check || isatty(STDOUT_FILENO) == 0;
  Progress progress(options.files.size() > 1 && isatty(STDERR_FILENO) != 0 && quiet,
                    options.files.size());
  progress.show(0);
  size_t done = 0;
  bool ok = true;
  bool written = flush_output();
  const auto read = [&](size_t i) {
    return std::make_shared<Drawing>(options.files[i], options.reading);
  };
  run_jobs<Drawing>(options.files.size(), options.jobs, read, [&](const Drawing &drawing) {
    ok = print_drawing(drawing, options, extractor ? &*extractor : nullptr, progress) && ok;
    written = flush_output();
    progress.show(++done);
    return written;
  });
  progress.clear();
  return written && ok ? 0 : 1;
}

static bool print_drawing(const Drawing &drawing, const Options &options, Extractor *extractor,
                          Progress &progress) {
  if (options.check)
    return print_check(stdout, drawing, {options.json, options.text.full}, progress) == 0;
  const size_t known = drawing.messages().size();
  if (known > 0) progress.clear();
  print_messages(drawing, 0);
  const bool ok = options.simplify ? drawing.ok() && print_simplified(stdout, drawing)
                                   : print_asked(drawing, options, extractor);
  if (drawing.messages().size() > known) progress.clear();
  print_messages(drawing, known); // what was found only now
  return ok;
}

static bool print_asked(const Drawing &drawing, const Options &options, Extractor *extractor) {
  const svg_e_node *top = drawing.svg();
  if (drawing.ok() && options.has_query) top = find_element(drawing, options.query);
  if (options.json && options.wants_tree())
    print_json(stdout, drawing, top, {options.pretty, options.text.full});
  else if (top && options.wants_tree())
    options.has_query ? print_subtree(stdout, drawing, top, options.text)
                      : print_document(stdout, drawing, options.text);
  if (options.json) return print_answers_as_json(drawing, options, top) && top;
  return drawing.ok() && print_answers(drawing, options, top, extractor) && top;
}

static bool print_answers_as_json(const Drawing &drawing, const Options &options,
                                  const svg_e_node *top) {
  Asked asked = {.fonts = options.fonts,
                 .ids = options.ids,
                 .links = options.links,
                 .stats = options.stats,
                 .info = options.info,
                 .explain = options.has_explain,
                 .property = options.explain_property,
                 .shapes = options.shapes,
                 .shown = top,
                 .boxes = options.has_bbox};
  if (drawing.ok() && asked.explain) asked.element = find_element(drawing, options.explain_id);
  if (drawing.ok() && asked.boxes) asked.measured = element_to_measure(drawing, options, top);
  if (asked.fonts || asked.ids || asked.links || asked.stats || asked.info || asked.explain ||
      asked.shapes || asked.boxes)
    if (!print_json_answers(stdout, drawing, asked, {options.pretty, options.text.full}))
      return false;
  return drawing.ok() && (!asked.explain || asked.element) && (!asked.boxes || asked.measured);
}

static bool print_answers(const Drawing &drawing, const Options &options, const svg_e_node *top,
                          Extractor *extractor) {
  bool ok = true;
  if (options.info) print_info(stdout, drawing, options.text.full);
  if (options.has_explain) {
    const svg_e_node *element = find_element(drawing, options.explain_id);
    ok = element != nullptr;
    if (ok) print_explanation(stdout, drawing, element, options.explain_property);
  }
  if (options.fonts) print_answers(stdout, drawing, "font", answer_fonts, options.text.full);
  if (options.ids) print_answers(stdout, drawing, "id", answer_ids, options.text.full);
  if (options.links) print_answers(stdout, drawing, "link", answer_links, options.text.full);
  if (options.stats) print_statistics(stdout, drawing);
  if (options.has_bbox) {
    const svg_e_node *element = element_to_measure(drawing, options, top);
    ok = element && print_boxes(stdout, drawing, element, options.text.full) && ok;
  }
  if (options.shapes && top) ok = print_shapes(stdout, drawing, top, options.text.full) && ok;
  return (!extractor || extractor->extract(stdout, drawing)) && ok;
}

static const svg_e_node *element_to_measure(const Drawing &drawing, const Options &options,
                                            const svg_e_node *top) {
  return options.bbox_id.empty() ? top : find_element(drawing, options.bbox_id);
}

static void print_messages(const Drawing &drawing, size_t first) {
  for (size_t i = first; i < drawing.messages().size(); ++i) {
    const Message &message = drawing.messages()[i];
    fprintf(stderr, "%s: %s %d: %s\n", escaped(drawing.name()).c_str(),
            message.severity == ORT_ERROR ? "error" : "warning", message.code,
            escaped(message.text).c_str());
  }
}

static bool flush_output() {
  if (fflush(stdout) == 0 && ferror(stdout) == 0) return true;
  if (errno == EPIPE) return false; // the reader has seen enough, as with "| head"
  fprintf(stderr, "svgtree: cannot write standard output: %s\n", strerror(errno));
  return false;
}
