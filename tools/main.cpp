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
#include "tools/selection.h"
#include "tools/shapes.h"
#include "tools/simplify.h"
#include "tools/tree_text.h"
#include "tools/utf8.h"

namespace {

// The elements of a drawing that the command line asks for.
struct Found {
  Elements queried;
  Elements tops; // the queried ones that are in no other; the outermost svg without a query
  Elements explained, shown, measured;
};

} // namespace

constexpr int64_t MOST_ANCESTORS = 100'000'000; // of all elements that are shown or measured

static bool print_drawing(const Drawing &drawing, const Options &options, Extractor *extractor,
                          Progress &progress);
static bool print_asked(const Drawing &drawing, const Options &options, Extractor *extractor);
static Found find(const Drawing &drawing, const Options &options);
static bool are_reachable(const Drawing &drawing, const Elements &elements);
static bool print_answers_as_json(const Drawing &drawing, const Options &options,
                                  const Found &found);
static bool print_answers(const Drawing &drawing, const Options &options, const Found &found,
                          Extractor *extractor);
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
  bool ok = true;
  bool written = flush_output();
  const auto read = [&](size_t i) {
    return std::make_shared<Drawing>(options.files[i], options.reading);
  };
  run_jobs<Drawing>(
      options.files.size(), options.jobs, progress, read, [&](const Drawing &drawing) {
        ok = print_drawing(drawing, options, extractor ? &*extractor : nullptr, progress) && ok;
        written = flush_output();
        return written;
      });
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
  const Found found = find(drawing, options);
  if (options.json && options.wants_tree())
    print_json(stdout, drawing, found.tops, options.query.many ? &found.queried : nullptr,
               {options.pretty, options.text.full});
  else if (options.has_query && options.wants_tree())
    for (const svg_e_node *top : found.tops) print_subtree(stdout, drawing, top, options.text);
  else if (drawing.ok() && options.wants_tree())
    print_document(stdout, drawing, options.text);
  const bool ok = options.json ? print_answers_as_json(drawing, options, found)
                               : print_answers(drawing, options, found, extractor);
  return ok && drawing.ok() && !found.tops.empty() &&
         (!options.has_explain || !found.explained.empty()) &&
         (!options.shapes || !found.shown.empty()) &&
         (!options.has_bbox || !found.measured.empty());
}

static Found find(const Drawing &drawing, const Options &options) {
  Found found;
  if (!drawing.ok()) return found;
  if (options.has_query) found.queried = find_elements(drawing, options.query);
  found.tops = options.has_query ? outermost_of(drawing, found.queried) : Elements{drawing.svg()};
  if (options.has_explain)
    found.explained =
        options.explains_query ? found.queried : find_elements(drawing, options.explained);
  const bool reachable =
      !(options.shapes || options.has_bbox) || are_reachable(drawing, found.tops);
  if (options.shapes && reachable) found.shown = found.tops;
  if (options.has_bbox && !options.bbox_id.empty())
    found.measured = find_elements(drawing, {.text = options.bbox_id});
  else if (options.has_bbox && reachable)
    found.measured = found.tops;
  return found;
}

// A scene looks at all ancestors of each element that it is asked about, and each match is shown or
// measured with all that is in it, other matches included: the time must not grow with the square
// of the drawing.
static bool are_reachable(const Drawing &drawing, const Elements &elements) {
  int64_t ancestors = 0;
  for (const svg_e_node *element : elements) ancestors += element->level;
  if (ancestors <= MOST_ANCESTORS) return true;
  fprintf(stderr, "%s: too many elements match, too deep in the tree, for --shapes and --bbox\n",
          escaped(drawing.name()).c_str());
  return false;
}

static bool print_answers_as_json(const Drawing &drawing, const Options &options,
                                  const Found &found) {
  const Asked asked = {.fonts = options.fonts,
                       .ids = options.ids,
                       .links = options.links,
                       .stats = options.stats,
                       .info = options.info,
                       .explain = options.has_explain,
                       .explain_many = options.explained.many,
                       .explained = found.explained,
                       .property = options.explain_property,
                       .shapes = options.shapes,
                       .shown = found.shown,
                       .boxes = options.has_bbox,
                       .measure_many = options.bbox_id.empty() && options.query.many,
                       .measured = found.measured};
  const bool any = asked.fonts || asked.ids || asked.links || asked.stats || asked.info ||
                   asked.explain || asked.shapes || asked.boxes;
  return !any || print_json_answers(stdout, drawing, asked, {options.pretty, options.text.full});
}

static bool print_answers(const Drawing &drawing, const Options &options, const Found &found,
                          Extractor *extractor) {
  if (!drawing.ok()) return false;
  bool ok = true;
  if (options.info) print_info(stdout, drawing, options.text.full);
  if (!found.explained.empty())
    print_explanations(stdout, drawing, found.explained, options.explain_property);
  if (options.fonts) print_answers(stdout, drawing, "font", answer_fonts, options.text.full);
  if (options.ids) print_answers(stdout, drawing, "id", answer_ids, options.text.full);
  if (options.links) print_answers(stdout, drawing, "link", answer_links, options.text.full);
  if (options.stats) print_statistics(stdout, drawing);
  if (!found.measured.empty())
    ok = print_boxes(stdout, drawing, found.measured, options.text.full) && ok;
  if (!found.shown.empty())
    ok = print_shapes(stdout, drawing, found.shown, options.text.full) && ok;
  return (!extractor || extractor->extract(stdout, drawing)) && ok;
}

static void print_messages(const Drawing &drawing, size_t first) {
  for (size_t i = first; i < drawing.messages().size(); ++i)
    print_message(drawing.name(), drawing.messages()[i]);
}

static bool flush_output() {
  if (fflush(stdout) == 0 && ferror(stdout) == 0) return true;
  if (errno == EPIPE) return false; // the reader has seen enough, as with "| head"
  fprintf(stderr, "svgtree: cannot write standard output: %s\n", strerror(errno));
  return false;
}
