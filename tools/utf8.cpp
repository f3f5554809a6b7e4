// utf8.cpp: checks and escapes text before it is printed.
#include "tools/utf8.h"

#include <cstdio>

static bool turns_direction(std::string_view character);
static std::string escape(std::string_view text, std::string_view also);

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

std::string escaped(std::string_view text) { return escape(text, ""); }

std::string quoted(std::string_view text) { return '"' + escape(text, "\"\\") + '"'; }

// Unicode Standard Annex 9, 2: explicit directional formatting, which reaches beyond the text.
static bool turns_direction(std::string_view character) {
  return (character >= "\u202A" && character <= "\u202E") ||
         (character >= "\u2066" && character <= "\u2069");
}

static std::string escape(std::string_view text, std::string_view also) {
  std::string result;
  const auto append_code = [&](const char *format, unsigned code) {
    char hex[8];
    snprintf(hex, sizeof hex, format, code);
    result += hex;
  };
  const auto low_bits = [&](size_t i) { return static_cast<unsigned char>(text[i]) & 0x3FU; };
  while (!text.empty()) {
    const size_t length = utf8_length(text);
    const auto byte = static_cast<unsigned char>(text[0]);
    const bool high_control =
        byte == 0xC2 && length == 2 && static_cast<unsigned char>(text[1]) < 0xA0;
    if (byte == '\n')
      result += "\\n";
    else if (byte == '\t')
      result += "\\t";
    else if (byte == '\r')
      result += "\\r";
    else if (byte < 0x20 || byte == 0x7F || length == 0)
      append_code("\\x%02X", byte);
    else if (high_control)
      append_code("\\x%02X", static_cast<unsigned char>(text[1])); // U+0080 to U+009F
    else if (turns_direction(text.substr(0, length)))
      append_code("\\u%04X", 0x2000U | low_bits(1) << 6 | low_bits(2));
    else
      result += (also.find(text[0]) != also.npos ? "\\" : "") + std::string(text.substr(0, length));
    text.remove_prefix(length > 0 ? length : 1);
  }
  return result;
}
