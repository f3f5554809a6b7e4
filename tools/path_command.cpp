// path_command.cpp: see path_command.h.
#include "tools/path_command.h"

#include <cerrno>
#include <cstring>
#include <string_view>

#include "svg/svg.h"
#include "tools/utf8.h"
#include "tools/value_text.h"

namespace {

struct PathJob {
  ort_core *core;
  const char *text;
  FILE *out;
};

} // namespace

static bool read_standard_input(std::string &text);
static void parse(void *argument);
static void print_curve(FILE *out, const double *points, const char *remark);
static std::string point_text(double x, double y);
static void print_message(void *, ort_severity severity, int code, const char *text);
static void print_caret(std::string_view text, size_t offset);

// Characters shown on either side of an error.
constexpr size_t SHOWN_CHARACTERS = 36;

int run_path_command(FILE *out, const std::string &argument) {
  std::string text = argument;
  if (argument == "-" && !read_standard_input(text)) return 1;
  ort_options options;
  ort_options_init(&options);
  options.message = print_message;
  ort_core *core = ort_core_new(&options);
  if (!core) return 1;
  svg_register_errtab(core);
  PathJob job = {core, text.c_str(), out};
  size_t offset = 0;
  const bool ok = ort_protect(core, parse, &job) == 0;
  if (svg_spp_check(text.c_str(), &offset) != 0) {
    print_caret(text, offset);
  } else if (offset < text.size()) {
    fputs("path: error: a NUL byte ends the text\n", stderr);
    print_caret(text, offset);
  }
  ort_core_delete(core);
  return ok && offset == text.size() ? 0 : 1;
}

static bool read_standard_input(std::string &text) {
  text.clear();
  char block[65536];
  for (size_t length; (length = fread(block, 1, sizeof block, stdin)) > 0;)
    text.append(block, length);
  if (ferror(stdin) == 0) return true;
  fprintf(stderr, "svgtree: cannot read standard input: %s\n", strerror(errno));
  return false;
}

// Runs inside ort_protect. The callbacks return normally, so they may have locals with destructors.
static void parse(void *argument) {
  const auto *job = static_cast<PathJob *>(argument);
  svg_spp_parse(
      job->core, 1, job->text, 0, 0, job->out,
      [](void *out) { fputs("Z\n", static_cast<FILE *>(out)); },
      [](void *out, double x1, double y1, double x2, double y2, double x3, double y3) {
        const double points[] = {x1, y1, x2, y2, x3, y3};
        print_curve(static_cast<FILE *>(out), points, "");
      },
      [](void *out, const ort_bezier_list *curves) {
        for (int i = 0; i < curves->count; ++i)
          print_curve(static_cast<FILE *>(out), curves->segments[i], "  (arc)");
      },
      [](void *out, double x, double y) {
        fprintf(static_cast<FILE *>(out), "L %s\n", point_text(x, y).c_str());
      },
      [](void *out, double x, double y) {
        fprintf(static_cast<FILE *>(out), "M %s\n", point_text(x, y).c_str());
      });
}

static void print_curve(FILE *out, const double *points, const char *remark) {
  fprintf(out, "C %s %s %s%s\n", point_text(points[0], points[1]).c_str(),
          point_text(points[2], points[3]).c_str(), point_text(points[4], points[5]).c_str(),
          remark);
}

static std::string point_text(double x, double y) {
  return number_text(x, true) + ',' + number_text(y, true);
}

static void print_message(void *, ort_severity severity, int code, const char *text) {
  fprintf(stderr, "path: %s %d: %s\n", severity == ORT_ERROR ? "error" : "warning", code, text);
}

// Each character takes one column, even one that cannot be shown.
static void print_caret(std::string_view text, size_t offset) {
  const auto inside_character = [&](size_t i) {
    return i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
  };
  size_t begin = offset;
  for (size_t i = 0; i < SHOWN_CHARACTERS && begin > 0; ++i) {
    --begin;
    while (begin > 0 && inside_character(begin)) --begin;
  }
  std::string line = begin > 0 ? "..." : "";
  size_t column = line.size(); // of the next character
  size_t caret = column;
  size_t left = SHOWN_CHARACTERS;
  size_t i = begin;
  while (i < text.size() && left > 0) {
    const size_t length = utf8_length(text.substr(i));
    const std::string_view character = text.substr(i, length);
    if (length == 0)
      line += '?';
    else
      line += escaped(character) == character ? character : " ";
    i += length > 0 ? length : 1;
    ++column;
    if (i <= offset)
      caret = column;
    else
      --left;
  }
  fprintf(stderr, "  %s%s\n  %*s^\n", line.c_str(), i < text.size() ? "..." : "",
          static_cast<int>(caret), "");
}
