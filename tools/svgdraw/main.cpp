// main.cpp: svgdraw, a host that draws: pictures of drawings, their messages, and the exit status.
//
// Exit status: 0 all drawings were drawn, 1 some were not, 2 the command line is wrong.
#include <unistd.h>

#include "tools/jobs.h"
#include "tools/process.h"
#include "tools/svgdraw/options.h"

int main(int argc, char **argv) {
  prepare_process("svgdraw");
  DrawOptions options;
  if (const int status = parse_draw_options(argc, argv, options); status >= 0) return status;
  const size_t count = options.inputs.size();
  Progress progress(count > 1 && isatty(STDERR_FILENO) != 0, count);
  bool ok = true;
  const auto draw = [&](size_t i) {
    return std::make_shared<Picture>(
        make_picture(options.inputs[i], options.reading, options.picture, options.outputs[i]));
  };
  run_jobs<Picture>(count, options.jobs, progress, draw, [&](const Picture &picture) {
    if (!picture.messages.empty()) progress.clear();
    for (const Message &message : picture.messages) print_message(picture.name, message);
    ok = ok && picture.is_made;
    return true;
  });
  return ok ? 0 : 1;
}
