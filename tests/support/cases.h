// cases.h: tables of cases as text, so that many short ones fit on a line.
#ifndef TESTS_SUPPORT_CASES_H
#define TESTS_SUPPORT_CASES_H

#include <gtest/gtest.h>
#include <sstream>
#include <string>

inline std::string without_blanks(const std::string &text) {
  const size_t first = text.find_first_not_of(' ');
  return first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

// \s, \t, \n and \xHH stand for a byte.
inline std::string unescaped(std::string text) {
  for (size_t at = 0; (at = text.find('\\', at)) != text.npos; ++at) {
    const char c = text[at + 1];
    if (c == 's' || c == 't' || c == 'n')
      text.replace(at, 2, 1, c == 's' ? ' ' : c == 't' ? '\t' : '\n');
    if (c == 'x')
      text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
  }
  return text;
}

// Expects of each case "INPUT -> EXPECTED" that actual(INPUT) is EXPECTED, but for blanks around
// them. A case ends with its line or with " | ".
template <class Actual> void expect_cases(const std::string &table, Actual actual) {
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);)
    for (size_t at = 0, end = 0; end != line.npos && !line.empty(); at = end + 3) {
      end = line.find(" | ", at);
      const std::string text = line.substr(at, end == line.npos ? end : end - at);
      const size_t arrow = (" " + text).find(" ->");
      ASSERT_NE(arrow, text.npos) << "no case: " << text;
      const std::string input = unescaped(without_blanks(text.substr(0, arrow)));
      EXPECT_EQ(without_blanks(actual(input)), unescaped(without_blanks(text.substr(arrow + 2))))
          << text;
    }
}

#endif
