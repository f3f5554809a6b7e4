// Lists: numbers, numbers with unit, keywords, names.
#include <gtest/gtest.h>

#include "tests/support/reader.h"

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
g text-decoration: Underline foo blink -> underline | foo ->
font-face font-weight: 100,bold 200 -> 100 bold 200
g systemLanguage: en-US,fr -> en-US, fr | a  b,c -> a b, c | 'a,b' "" c -> a,b  c
g systemLanguage: en, -> ! | en,,fr -> ! , | en ) -> ! )
hkern u1: 5,700 -> 5, 700
)");
}

TEST(Lists, OccupyWhatTheyHold) {
  std::string points;
  for (int i = 0; i < 1000; ++i) points += std::to_string(i) + ',';
  const Document document("<svg xmlns='http://www.w3.org/2000/svg'><polyline points='" + points +
                          "'/></svg>");
  ort_tag_count counts[200];
  const size_t count = ort_get_tag_counts(document.core, counts, 200);
  uint64_t bytes = 0;
  for (size_t i = 0; i < count; ++i)
    if (std::string(counts[i].tag) == "svg_ctor_an_unum_list") bytes = counts[i].bytes;
  EXPECT_EQ(bytes, 1000 * (sizeof(double) + sizeof(uint8_t)));
}
