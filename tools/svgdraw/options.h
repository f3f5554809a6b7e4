// options.h: the command line of svgdraw.
#ifndef TOOLS_SVGDRAW_OPTIONS_H
#define TOOLS_SVGDRAW_OPTIONS_H

#include <string>
#include <vector>

#include "tools/svgdraw/picture.h"

struct DrawOptions {
  ReadSettings reading;
  PictureSettings picture;
  std::vector<std::string> inputs;
  std::vector<std::string> outputs; // one for each input
  int jobs = 1;
};

// Returns the exit status, or -1 to go on.
int parse_draw_options(int argc, char **argv, DrawOptions &options);

#endif
