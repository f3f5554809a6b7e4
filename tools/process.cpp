// process.cpp: see process.h.
#include "tools/process.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <initializer_list>
#include <new>

static const char *tool_name; // as it was called until main names it

[[gnu::constructor(101)]] static void prepare_for_little_memory();
static void end_without_memory();

// A closed pipe becomes an error of the write. A closed standard stream must not become the first
// file that is opened: its place is taken by something that cannot be used.
void prepare_process(const char *name) {
  tool_name = name;
  signal(SIGPIPE, SIG_IGN);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
      open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

// Runs before the objects of other files are made, which may take memory.
static void prepare_for_little_memory() {
  tool_name = program_invocation_short_name;
  std::set_new_handler(end_without_memory);
}

// The tool's own memory is not the core's: no budget covers it, and an exception must not cross the
// library.
static void end_without_memory() {
  for (const char *text : {tool_name, ": out of memory\n"})
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, strlen(text));
  _exit(1); // whoever closed standard error misses the message
}
