// jobs.h: reads many drawings, several at a time, and shows them in order.
#ifndef TOOLS_JOBS_H
#define TOOLS_JOBS_H

#include <functional>
#include <string>
#include <vector>

#include "tools/drawing.h"

// Reads each file, up to jobs at a time, and calls show for each in the order of files, from the
// calling thread. Stops when show returns false.
void read_drawings(const std::vector<std::string> &files, const ReadSettings &settings, int jobs,
                   const std::function<bool(const Drawing &)> &show);

#endif
