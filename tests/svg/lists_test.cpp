// Lists: numbers, numbers with unit, keywords, names.
#include <gtest/gtest.h>

#include "svg/svg_tree.h"
#include "svg/svg_values.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

namespace {

TEST(Lists, TakeWhatTheyCanHold) {
  expect_values(R"(
polyline points: 10,20 30,40 -> 10 20 30 40 | 10,20, -> 10 20 | \s -> -
polyline points: \s10 , 20px 5%\n-.5e1 -> 10 20px 5% -5 | 10-20 -> ! 10-20
polyline points: 10,,20 -> ! , | ,10 -> ! , | 10 20 x -> ! x | 10 '20 -> !
tspan dx: 1 2em -> 1 2em
text rotate: 45deg,90 -> 45deg 90
g stroke-dasharray: none -> none | NONE -> none | 5, 10% -> 5 10% | 5 none -> ! none
g stroke-dasharray: none 5 -> none
font-face font-size: 12 14.5 -> 12 14.5 | all -> all
g text-decoration: underline, overline -> underline overline | underline,,overline -> underline
g text-decoration: Underline foo blink -> underline | foo -> ()
font-face font-weight: 100,bold 200 -> 100 bold 200
g systemLanguage: en-US, fr -> 'en-US' 'fr' | a  b, c -> 'a b' 'c' | 'a, b' "" c -> 'a, b  c'
g systemLanguage: en, -> ! | en,,fr -> ! , | en ) -> ! )
hkern u1: 5,700 -> '5' '700'
)");
}

TEST(Lists, OccupyWhatTheyHold) {
  std::string points;
  for (int i = 0; i < 1000; i++) points += std::to_string(i) + ',';
  const Document document("<svg xmlns='http://www.w3.org/2000/svg'><polyline points='" + points +
                          "'/></svg>");
  ort_tag_count counts[200];
  const size_t count = ort_get_tag_counts(document.core, counts, 200);
  uint64_t bytes = 0;
  for (size_t i = 0; i < count; i++)
    if (std::string(counts[i].tag) == "svg_ctor_an_unum_list") bytes = counts[i].bytes;
  EXPECT_EQ(bytes, 1000 * (sizeof(double) + sizeof(uint8_t)));
}

// No element has the row's attribute.
TEST(Lists, OneOrTwoNumbers) {
  Document document("<svg/>");
  expect_cases(".5 -> 0.5 | 1, 2 -> 1 2 | 1 2 3 -> 1926 | 1px -> 10004", [&](auto &text) {
    svg_parser *p = document.parser;
    p->attr_name = "baseFrequency";
    document.core.protect([&] { svg_parse_attr(p, 48, text.c_str(), 1); });
    if (p->new_value == nullptr) return std::to_string(document.core.messages.back().code);
    const std::string result = value_text(p, p->new_value);
    svg_a_node_delete(p->core, p->new_value);
    p->new_value = nullptr;
    return result;
  });
}

TEST(Lists, NamesAreLogged) {
  expect_logged("<svg systemLanguage='en, fr'/>", 6, {"\t\t\t\t 2 names: \"en\" \"fr\"\n"});
}

} // namespace
