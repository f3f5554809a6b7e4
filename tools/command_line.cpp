// command_line.cpp: see command_line.h.
#include "tools/command_line.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "tools/utf8.h"

static std::string read_limit(const std::string &text, std::string_view &name, uint64_t &number);

CommandLine::CommandLine(const char *tool, const char *description, const char *footer)
    : app_(description, tool) {
  app_.set_version_flag("--version", std::string(tool) + " " SVGREADER_VERSION);
  app_.footer(footer);
}

void CommandLine::add_list(const char *name, std::vector<std::string> &values, const char *argument,
                           const std::string &text) {
  add(name, values, argument, (text + " (repeatable)").c_str())
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void CommandLine::add_reading(ReadSettings &reading, int &jobs, const Limits &limits) {
  reading_ = &reading;
  add("--jobs", jobs, "N", "Work on so many drawings at a time")->check(CLI::Range(1, 256));
  add("--language", reading.language, "TAG", "The user's language, for systemLanguage");
  add_flag("--strict", reading.strict, "Read as SVG 1.1 says, nothing leniently");
  std::string names;
  for (const auto &[name, place] : limits) names += name + std::string(", ");
  add_list("--limit", written_limits_, "NAME=N",
           "Set " + names + "memory, inflated, recorded (bytes), growth, nodes, depth or expanded");
  limits_ = limits;
  const Limits known = {{"memory", &reading.memory},
                        {"inflated", &reading.inflated},
                        {"nodes", &reading.limits.nodes},
                        {"recorded", &reading.limits.recorded},
                        {"expanded", &reading.limits.expanded}};
  limits_.insert(limits_.end(), known.begin(), known.end());
}

int CommandLine::parse(int argc, char **argv, const std::function<std::string()> &find_mistake) {
  std::string mistake;
  try {
    app_.parse(argc, argv);
    mistake = find_mistake();
    if (mistake.empty()) mistake = take_limits();
  } catch (const CLI::ParseError &error) {
    if (error.get_exit_code() == 0) return app_.exit(error);
    mistake = error.what();
  }
  if (mistake.empty()) return -1;
  const char *tool = app_.get_name().c_str();
  fprintf(stderr, "%s: %s\nRun %s --help for more information.\n", tool, escaped(mistake).c_str(),
          tool);
  return 2;
}

std::string CommandLine::take_limits() {
  for (const std::string &text : written_limits_) {
    std::string_view name;
    uint64_t number = 0;
    if (const std::string mistake = read_limit(text, name, number); !mistake.empty())
      return std::string("--limit ").append(text).append(": ").append(mistake);
    svg_limits &limits = reading_->limits;
    const auto place =
        std::ranges::find(limits_, name, [](const auto &limit) { return limit.first; });
    if (name == "growth")
      limits.entity_factor = static_cast<float>(number);
    else if (name == "depth")
      limits.depth = static_cast<uint32_t>(std::min<uint64_t>(number, UINT32_MAX));
    else if (place != limits_.end())
      *place->second = number;
    else
      return "--limit " + text + ": no limit has the name '" + std::string(name) + "'";
  }
  return "";
}

// Reads NAME=N; returns what is wrong with it.
static std::string read_limit(const std::string &text, std::string_view &name, uint64_t &number) {
  const size_t equals = text.find('=');
  if (equals == std::string::npos) return "NAME=N is wanted";
  const char *end = text.c_str() + text.size();
  const auto [rest, error] = std::from_chars(text.c_str() + equals + 1, end, number);
  const std::string_view unit(rest, end);
  const int shift = unit.empty() ? 0 : unit == "K" ? 10 : unit == "M" ? 20 : unit == "G" ? 30 : -1;
  if (error == std::errc::result_out_of_range || (shift > 0 && number > UINT64_MAX >> shift))
    return "the number is too large";
  if (error != std::errc{} || number == 0 || shift < 0)
    return "no number above 0, with K, M or G after it or nothing";
  name = std::string_view(text.c_str(), equals);
  number <<= shift;
  return "";
}
