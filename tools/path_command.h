// path_command.h: --path, the segments of one path text.
#ifndef TOOLS_PATH_COMMAND_H
#define TOOLS_PATH_COMMAND_H

#include <cstdio>
#include <string>

// Prints the segments of the path text in argument ("-": standard input), one on a line, in
// absolute coordinates. After an error those before it are printed, and the message with the text
// and a caret under the offending byte goes to standard error. Returns the exit status.
int run_path_command(FILE *out, const std::string &argument);

#endif
