// What follows "data:" in an IRI, bare and as url(...). The embedded file is what a plain decoder
// makes of it, and goes with its parser.
#include <gtest/gtest.h>

#include "fuzz/support/fuzz.h"

static std::string without_escapes(const std::string &text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '%' && i + 2 < text.size() &&
                        isxdigit(static_cast<unsigned char>(text[i + 1])) &&
                        isxdigit(static_cast<unsigned char>(text[i + 2]));
    result += escape ? static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16)) : text[i];
    if (escape) i += 2;
  }
  return result;
}

static std::string decoded(const std::string &base64) {
  static const std::string digits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string result;
  unsigned bits = 0;
  int count = 0;
  for (const char c : base64.substr(0, base64.find('='))) {
    const size_t digit = c == '\0' ? std::string::npos : digits.find(c);
    if (digit == std::string::npos) continue;
    bits = bits << 6 | static_cast<unsigned>(digit);
    if ((count += 6) >= 8) result += static_cast<char>(bits >> (count -= 8));
  }
  return result;
}

void fuzz_data_iri(const std::string &input) {
  const FuzzInput parts(input);
  const std::string text = fuzz_escape(parts.text);
  fuzz_read("<?xml version='1.0' encoding='ISO-8859-1'?><svg><image xlink:href='data:" + text +
                "'/><g fill='url(data:" + text + ")' style='mask:url(data:" + text + ")'/></svg>",
            parts);

  Document document("<svg xmlns='http://www.w3.org/2000/svg' "
                    "xmlns:l='http://www.w3.org/1999/xlink'><use l:href='data:" +
                    text + "'/></svg>");
  fuzz_check(document, false);
  const size_t comma = parts.text.find(',');
  if (!document.svg || comma == std::string::npos) return;
  ASSERT_EQ(ort_pvf_count(document.core), comma + 1 < parts.text.size() ? 1U : 0U);
  if (ort_pvf_count(document.core) == 0) return;
  size_t size = 0;
  const unsigned char *bytes = ort_pvf_data(document.core, ort_pvf_name(document.core, 0), &size);
  EXPECT_EQ(std::string(reinterpret_cast<const char *>(bytes), size),
            decoded(without_escapes(parts.text.substr(comma + 1))));
  svg_parser_delete(document.parser);
  document.parser = nullptr;
  EXPECT_EQ(ort_pvf_count(document.core), 0U);
}
