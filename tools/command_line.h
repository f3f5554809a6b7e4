// command_line.h: what the command lines of the tools have in common; it is read with CLI11.
#ifndef TOOLS_COMMAND_LINE_H
#define TOOLS_COMMAND_LINE_H

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tools/drawing.h"

class CommandLine {
public:
  CommandLine(const char *tool, const char *description, const char *footer);

  CLI::App &app() { return app_; }
  bool has(const char *name) const { return app_.count(name) > 0; }

  // Each takes a name as CLI11 has it, where the value goes, and a text for the help.
  CLI::Option *add_flag(const char *name, bool &value, const char *text) {
    return app_.add_flag(name, value, text)->group(group_);
  }
  template <class Value>
  CLI::Option *add(const char *name, Value &value, const char *argument, const char *text) {
    return app_.add_option(name, value, text)->option_text(argument)->group(group_);
  }
  // An option that may be given many times.
  void add_list(const char *name, std::vector<std::string> &values, const char *argument,
                const std::string &text);
  void begin_group(const char *group) { group_ = group; } // of what is added from now on

  // The options of all tools that read drawings, and of --limit those that a tool has of its own.
  using Limits = std::vector<std::pair<const char *, uint64_t *>>;
  void add_reading(ReadSettings &reading, int &jobs, const Limits &limits = {});

  // Reads the command line; find_mistake, called when it is well-formed, takes what was written and
  // tells what is wrong with it, "" when nothing is. Returns the exit status, or -1 to go on.
  int parse(int argc, char **argv, const std::function<std::string()> &find_mistake);

private:
  std::string take_limits();

  CLI::App app_;
  const char *group_ = "Options";
  ReadSettings *reading_ = nullptr;
  std::vector<std::string> written_limits_;
  Limits limits_; // of --limit that are plain numbers
};

#endif
