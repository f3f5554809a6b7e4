// The scanner of values: tokens and numbers.
#include "svg/values/svg_scan.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>

#include "svg/path/svg_number.h"
#include "svg/tree/svg_document.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

namespace {

class Scan : public testing::Test {
protected:
  Scan() {
    p_->attr_name = "a";
    svg_make_work_space(p_);
  }

  // All tokens: punctuation and numbers as they are, r and the value of a real, 'string',
  // <keyword>; the error's code ends it.
  std::string tokens(const std::string &text, bool numbers = true) {
    p_->scan_start = p_->scan_pos = text.c_str();
    std::string result;
    const auto add = [&](const std::string &token) {
      result += (result.empty() ? "" : " ") + token;
    };
    for (int type = 0; type != SVG_TOK_END;) {
      const int code = core_.protect([&] { type = numbers ? svg_ntok(p_) : svg_ntok_nonum(p_); });
      if (code != 0) add(std::to_string(code));
      if (code != 0) break;
      const std::string number = std::to_string(p_->tok_num).substr(0, 6);
      switch (type) {
      case SVG_TOK_END: break;
      case SVG_TOK_STRING: add("'" + std::string(p_->tok_text) + "'"); break;
      case SVG_TOK_KEYWORD: add("<" + std::to_string(p_->tok_key) + ">"); break;
      case SVG_TOK_INT: add(std::to_string(p_->tok_int)); break;
      case SVG_TOK_REAL: add("r" + number + ":" + std::to_string(p_->tok_unit)); break;
      case SVG_TOK_UNUM:
      case SVG_TOK_PERCENT: add(number + ":" + std::to_string(p_->tok_unit)); break;
      default: add(p_->tok_text);
      }
    }
    return result;
  }

  // The value of a text that is one plain number.
  double number(const std::string &text) {
    p_->scan_start = p_->scan_pos = text.c_str();
    double value = NAN;
    core_.protect([&] { value = svg_get_num(p_); });
    return value;
  }

  Document document_{"<svg/>"};
  AccountingCore &core_ = document_.core;
  svg_parser *p_ = document_.parser;
};

} // namespace

TEST_F(Scan, SplitsTextIntoTokens) {
  expect_cases(
      R"( -> | \s\t\n\x0b\x0c\x0d -> | rgb(1,2) -> 'rgb' ( 1 , 2 ) | \sa,,b\s -> 'a' , , 'b'
10px 10 px -> 10.000:6 10 'px' | 1e3 2em 3ex 4e5em -> r1000.0:0 2.0000:4 3.0000:5 400000:4
1e 1e+ 1e-x -> '1e' '1e+' '1e-x' | - . + -. +- ..5 -> '-' '.' '+' '-.' '+-' '..5'
5. .5 5.px +.5 -2 -> r5.0000:0 r0.5000:0 5.0000:6 r0.5000:0 -2
50% 50%abc 5.5% -> 50.000:12 50.000:12 5.5000:12
1deg 1grad 1rad 1in 1cm -> 1.0000:1 1.0000:2 1.0000:3 1.0000:7 1.0000:8
1mm 1pt 1pc -> 1.0000:9 1.0000:10 1.0000:11
12PX 1q 1pxx 10-5 1.5.5 -> '12PX' '1q' '1pxx' '10-5' '1.5.5' | x ' -> 'x' '' | '' -> ''
'a "b' "c'd"e -> 'a "b' 'c'd' 'e' | ab'c 'd'e -> 'ab'c' 'd' 'e' | x 'abc -> 'x' 10000 | " -> ''
\xC3\xA4\xA0 1 -> '\xC3\xA4\xA0' 1)",
      [&](const std::string &text) { return tokens(text); });
  EXPECT_EQ(tokens("10px 5 a", false), "'10px' '5' 'a'");
  p_->css_mode = 1;
  EXPECT_EQ(tokens("12PX 5EM 1E3"), "12.000:6 5.0000:4 r1000.0:0");
}

TEST_F(Scan, KeywordsComeBeforeNumbersAndInListOrder) {
  const svg_key_entry keys[] = {{"700", 10}, {"bold", 25}, {"Bold", 1}, {"inherit", 49}};
  p_->keys = keys;
  p_->key_count = std::size(keys);
  EXPECT_EQ(tokens("700 701 bold Bold BOLD bol boldx 'bold'"),
            "<10> 701 <25> <1> 'BOLD' 'bol' 'boldx' 'bold'");
  p_->css_mode = 1;
  EXPECT_EQ(tokens("BOLD Bold inHERIT \x02old"), "<25> <25> <49> '\x02old'");
}

TEST_F(Scan, ReadsNumbersAsWritten) { // Z: 400 zeros
  expect_cases(R"(3000000000 -> 2147483647 | 2147483646 -> 2147483646 | -3000000000 -> -2147483647
3000000000.0 -> 3e+09 | -2147483648 -> -2147483647 | 0.3 -> 0.3 | 1e308 -> 1e+308
1e309 -> inf | -1e309 -> -inf | 1e-323 -> 1e-323 | 1e-324 -> 0 | 1e99999999999999999999 -> inf
1e-99999999999999999999 -> 0 | 0e99999999999999999999 -> 0 | 0e+0 -> 0 | -0.0 -> -0
1Z -> 2147483647 | 1Z. -> inf | 0.Z1 -> 0 | 0.Z1e401 -> 1 | Z7 -> 7)",
               [&](std::string text) {
                 if (const size_t at = text.find('Z'); at != text.npos)
                   text.replace(at, 1, std::string(400, '0'));
                 char written[32];
                 return std::string(written,
                                    std::to_chars(written, written + 32, number(text)).ptr);
               });
  // A mantissa beyond the range of doubles.
  const std::string zeros(400, '0');
  for (const std::string &text : {"1." + zeros, "1" + zeros + "e-400", "1" + zeros + ".0e-400"})
    EXPECT_NEAR(number(text), 1, 1e-12) << text;
}

// A million numbers of all shapes, as the path parser and the scanner read them, are the doubles
// that the C library finds.
TEST(Number, IsTheNearestDouble) {
  std::mt19937 random(20);
  const auto pick = [&](unsigned n) { return static_cast<int>(random() % n); };
  const auto digits = [&](int count) {
    std::string result;
    while (count-- > 0) result += static_cast<char>('0' + pick(10));
    return result;
  };
  int shorts = 0, infinite = 0, none = 0;
  for (int i = 0; i < 1000000; ++i) {
    const int lengths = pick(100) == 0 ? 330 : 12;
    std::string text = pick(8) == 0 ? std::string(static_cast<size_t>(pick(3)), '0')
                                    : digits(pick(static_cast<unsigned>(lengths)));
    if (text.empty() || pick(2)) text += '.' + digits(text.empty() + pick(lengths * 2U));
    if (pick(4) == 0) {
      text += pick(2) ? 'e' : 'E';
      if (const int sign = pick(3)) text += sign == 1 ? '-' : '+';
      text += digits(1 + pick(3));
    }
    const svg_short_number brief = svg_read_short(text.c_str());
    svg_decimal number;
    const char *end = svg_read_mantissa(text.c_str(), &number);
    if (*end != 0) end = svg_read_exponent(end + 1, &number);
    const double expected = std::strtod(text.c_str(), nullptr);
    ASSERT_TRUE(number.valid && *end == 0) << text;
    ASSERT_EQ(svg_decimal_value(&number), expected) << text;
    if (brief.valid) ASSERT_EQ(brief.value, expected) << text;
    shorts += brief.valid;
    infinite += std::isinf(expected);
    none += expected == 0;
  }
  EXPECT_GT(std::min({shorts, infinite, none}), 1000);
}
