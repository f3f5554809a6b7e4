// path_command.h: --path, the segments of one path text.
#ifndef TOOLS_PATH_COMMAND_H
#define TOOLS_PATH_COMMAND_H

#include <cstdio>
#include <string>

// Prints the segments of a path text ("-": of standard input), one a line, in absolute coordinates.
// For a faulty text it prints those before the fault, and on standard error the message and the
// text with a caret under the offending byte. Returns the exit status.
int run_path_command(FILE *out, const std::string &argument);

#endif
