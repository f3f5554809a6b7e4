// utf8.cpp: checks and escapes text before it is printed.
#include "tools/utf8.h"

#include "core/ort.h"

size_t utf8_length(std::string_view text) {
  const auto within = [&](size_t i, unsigned char low = 0x80, unsigned char high = 0xBF) {
    const auto byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
    return byte >= low && byte <= high;
  };
  if (within(0, 0x00, 0x7F)) return text.empty() ? 0 : 1;
  if (within(0, 0xC2, 0xDF)) return within(1) ? 2 : 0;
  size_t length = 0;
  if (within(0, 0xE0, 0xEF)) length = 3;
  if (within(0, 0xF0, 0xF4)) length = 4;
  // Overlong forms, surrogates and what lies above U+10FFFF show in the second byte.
  if (length == 0 || !within(1) || !within(length - 2) || !within(length - 1)) return 0;
  if (within(0, 0xE0, 0xE0) && !within(1, 0xA0)) return 0;
  if (within(0, 0xED, 0xED) && !within(1, 0x80, 0x9F)) return 0;
  if (within(0, 0xF0, 0xF0) && !within(1, 0x90)) return 0;
  if (within(0, 0xF4, 0xF4) && !within(1, 0x80, 0x8F)) return 0;
  return length;
}

std::string utf8_cleaned(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const size_t length = utf8_length(text);
    result += length > 0 ? text.substr(0, length) : "\uFFFD";
    text.remove_prefix(length > 0 ? length : 1);
  }
  return result;
}

std::string escaped(std::string_view text) {
  const std::string source(text);
  std::string result(ort_escape(nullptr, source.c_str()), '\0');
  ort_escape(result.data(), source.c_str());
  return result;
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (size_t end; (end = text.find_first_of("\"\\")) != text.npos; text.remove_prefix(end + 1))
    result += escaped(text.substr(0, end)) + '\\' + text[end];
  return result + escaped(text) + '"';
}
