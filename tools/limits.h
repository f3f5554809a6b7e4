// limits.h: --limit NAME=N of the tools.
#ifndef TOOLS_LIMITS_H
#define TOOLS_LIMITS_H

#include <initializer_list>
#include <string>
#include <utility>

#include "tools/drawing.h"

// Takes a limit of reading, or one of those that the tool has beside them. Returns what is wrong
// with it; "" when it was taken.
std::string take_limit(const std::string &text, ReadSettings &reading,
                       std::initializer_list<std::pair<const char *, uint64_t *>> others = {});

#endif
