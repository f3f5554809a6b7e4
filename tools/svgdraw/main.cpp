// main.cpp: svgdraw, a host that draws: pictures of drawings, their messages, and the exit status.
//
// Exit status: 0 all drawings were drawn, 1 some were not, 2 the command line is wrong.
#include <unistd.h>

#include <cstdio>
#include <memory>

#include "tools/jobs.h"
#include "tools/process.h"
#include "tools/progress.h"
#include "tools/svgdraw/options.h"
#include "tools/utf8.h"

namespace {

struct Result {
  bool ok;
  std::string name;
  std::vector<Message> messages;
};

} // namespace

static Result draw(const DrawOptions &options, size_t i);
static void print_messages(const Result &result);

int main(int argc, char **argv) {
  prepare_process("svgdraw");
  DrawOptions options;
  if (const int status = parse_draw_options(argc, argv, options); status >= 0) return status;
  const size_t count = options.inputs.size();
  Progress progress(count > 1 && isatty(STDERR_FILENO) != 0, count);
  progress.show(0);
  size_t done = 0;
  bool ok = true;
  const auto make = [&](size_t i) { return std::make_shared<Result>(draw(options, i)); };
  run_jobs<Result>(count, options.jobs, make, [&](const Result &result) {
    if (!result.messages.empty()) progress.clear();
    print_messages(result);
    progress.show(++done);
    ok = ok && result.ok;
    return true;
  });
  progress.clear();
  return ok ? 0 : 1;
}

static Result draw(const DrawOptions &options, size_t i) {
  const Drawing drawing(options.inputs[i], options.reading);
  Result result = {drawing.ok(), drawing.name(), {}};
  if (drawing.ok())
    result.ok = make_picture(drawing, options.picture, options.outputs[i], result.messages);
  result.messages.insert(result.messages.begin(), drawing.messages().begin(),
                         drawing.messages().end());
  return result;
}

static void print_messages(const Result &result) {
  for (const Message &message : result.messages)
    fprintf(stderr, "%s: %s%s: %s\n", escaped(result.name).c_str(),
            message.severity == ORT_ERROR ? "error" : "warning",
            message.code != 0 ? (" " + std::to_string(message.code)).c_str() : "",
            escaped(message.text).c_str());
}
