// limits.cpp: see limits.h.
#include "tools/limits.h"

#include <algorithm>
#include <charconv>
#include <string_view>

std::string take_limit(const std::string &text, ReadSettings &reading,
                       std::initializer_list<std::pair<const char *, uint64_t *>> others) {
  const size_t equals = std::min(text.find('='), text.size());
  const char *begin = text.c_str() + std::min(equals + 1, text.size());
  const char *end = text.c_str() + text.size();
  uint64_t number = 0;
  const auto [rest, error] = std::from_chars(begin, end, number);
  const std::string_view name(text.data(), equals), unit(rest, end);
  const int shift = unit.empty() ? 0 : unit == "K" ? 10 : unit == "M" ? 20 : unit == "G" ? 30 : -1;
  if (equals == text.size()) return "--limit " + text + ": NAME=N is wanted";
  if (error == std::errc::result_out_of_range || (shift > 0 && number > UINT64_MAX >> shift))
    return "--limit " + text + ": the number is too large";
  if (error != std::errc{} || number == 0 || shift < 0)
    return "--limit " + text + ": no number above 0, with K, M or G after it or nothing";
  number <<= shift;
  svg_limits &limits = reading.limits;
  if (name == "growth") {
    limits.entity_factor = static_cast<float>(number);
    return "";
  }
  if (name == "depth") {
    limits.depth = static_cast<uint32_t>(std::min<uint64_t>(number, UINT32_MAX));
    return "";
  }
  const std::pair<const char *, uint64_t *> known[] = {
      {"memory", &reading.memory},    {"inflated", &reading.inflated}, {"nodes", &limits.nodes},
      {"recorded", &limits.recorded}, {"expanded", &limits.expanded},
  };
  for (const auto &[limit, place] : known)
    if (name == limit) return *place = number, "";
  for (const auto &[limit, place] : others)
    if (name == limit) return *place = number, "";
  return "--limit " + text + ": no limit has the name '" + std::string(name) + "'";
}
