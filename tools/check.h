// check.h: --check: what is wrong with a drawing, or questionable, one finding a line.
#ifndef TOOLS_CHECK_H
#define TOOLS_CHECK_H

#include <cstdio>

#include "tools/drawing.h"
#include "tools/progress.h"

struct CheckOptions {
  bool json = false; // JSON Lines
  bool full = false; // long names are not shortened
};

// Prints the findings in the order of their lines and, as text, their number. Returns the number.
// The line of progress is removed when there are any.
size_t print_check(FILE *out, const Drawing &drawing, const CheckOptions &options,
                   Progress &progress);

#endif
