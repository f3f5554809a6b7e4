// Encodings of the lenient reading, beside what the strict reading says.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

namespace {

std::string read(const std::string &bytes, uint32_t flags) {
  std::string told;
  for (const uint64_t recorded : {1, 1 << 20}) {
    std::string of_pass;
    const Document document(bytes, AccountingCore::defaults(), [&](svg_parser *p) {
      p->limits.recorded = recorded;
      svg_set_leniency(p, flags);
      svg_set_leniency_observer(
          p,
          [](void *user, const svg_lenient_value *value) {
            *static_cast<std::string *>(user) += std::string(value->text) + ' ';
          },
          &of_pass);
    });
    of_pass += document.svg ? svg_find_href_id(document.parser, document.svg)
                            : document.messages().substr(0, 25);
    EXPECT_TRUE(told.empty() || told == of_pass) << told << " or " << of_pass;
    told = of_pass;
  }
  return told;
}

std::string wide(const std::string &text, bool big_endian) {
  std::string result;
  for (const char c : text) result += big_endian ? std::string{'\0', c} : std::string{c, '\0'};
  return result;
}

// By mark and what stands before the rest of the drawing. Strict: whether it is read at all.
TEST(Leniency, Utf16InEitherOrder) {
  const std::string refused = "File 'test.svg' does not";
  for (const bool big_endian : {false, true})
    for (const char *mark : {"", big_endian ? "\xFE\xFF" : "\xFF\xFE"})
      for (const std::string &start : std::initializer_list<std::string>{
               "", "\n \t", "<?xml version='1.0' encoding='UTF-16'?>"}) {
        const std::string bytes = mark + wide(start + "<svg id='a'><g/></svg>", big_endian);
        const bool strict = !big_endian && start[0] != '\n';
        SCOPED_TRACE(std::string(mark) + start + (big_endian ? " big" : " little"));
        EXPECT_EQ(read(bytes, SVG_LENIENT_ALL & ~SVG_LENIENT_ENCODING).substr(0, 24),
                  strict ? "a" : refused);
        EXPECT_EQ(read(bytes, SVG_LENIENT_ENCODING), strict       ? "a"
                                                     : big_endian ? "UTF-16BE a"
                                                                  : "UTF-16LE a");
      }
  for (const std::string &bytes : {wide(" ", true), wide(" x<svg/>", false), std::string(1, '\0')})
    EXPECT_EQ(read(bytes, SVG_LENIENT_ENCODING).substr(0, 24), refused);
}

TEST(Leniency, RestartsKeepTheOrder) {
  EXPECT_EQ(read(wide(" <svg id='a'><x:g/></svg>", true), SVG_LENIENT_ENCODING), "UTF-16BE a");
}

// 0x80 in windows-1250 to -1258, by their last digit; of 1255 and 1258 also letters that a mark may
// follow.
TEST(Leniency, WindowsEncodings) {
  expect_cases(
      "0\\x80 -> windows-1250 \\xE2\\x82\\xAC | 1\\x80 -> windows-1251 \\xD0\\x82\n"
      "2\\x80 -> windows-1252 \\xE2\\x82\\xAC | 5\\xE0 -> windows-1255 \\xD7\\x90\n"
      "8A -> windows-1258 A | 8\\xD0 -> windows-1258 \\xC4\\x90\n"
      "2\\x81 -> windows-1252 XML: not well-formed (inv | 9A -> XML: unknown encoding in\n",
      [](const std::string &input) {
        const std::string bytes = "<?xml version='1.0' encoding='windows-125" + input.substr(0, 1) +
                                  "'?><svg id='" + input.substr(1) + "'/>";
        EXPECT_EQ(read(bytes, SVG_LENIENT_ALL & ~SVG_LENIENT_ENCODING).substr(0, 21),
                  "XML: unknown encoding");
        return read(bytes, SVG_LENIENT_ENCODING);
      });
}

// A sheet that does not tell its encoding has that of a drawing that is read leniently.
TEST(Leniency, SheetsOfWindowsEncodings) {
  const auto family = [](const std::string &encoding, uint32_t flags) {
    const css_context context = {nullptr,
                                 [](void *, const char *, css_sheet_text *text) {
                                   const char sheet[] = "text{font-family:a\x80}";
                                   return css_context_append(text, sheet, sizeof sheet - 1);
                                 },
                                 nullptr};
    const Document document("<?xml version='1.0' encoding='" + encoding +
                                "'?><?xml-stylesheet href='a' type='text/css'?><svg><style>"
                                "@import 'b'; </style><text id='a'/></svg>",
                            AccountingCore::defaults(), [&](svg_parser *p) {
                              p->css_context_ = &context;
                              svg_set_leniency(p, flags);
                            });
    return document.values(document.find("a"), "font-family");
  };
  EXPECT_EQ(family("windows-1252", SVG_LENIENT_ENCODING), "\"a\xE2\x82\xAC\"");
  EXPECT_EQ(family("utf-8", SVG_LENIENT_ENCODING), "\"a\xEF\xBF\xBD\"");
  EXPECT_EQ(family("iso-8859-1", SVG_LENIENT_ALL & ~SVG_LENIENT_ENCODING), "\"a\xEF\xBF\xBD\"");
}

} // namespace
