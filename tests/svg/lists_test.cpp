// Lists: numbers, numbers with unit, keywords, names.
#include <gtest/gtest.h>

#include "tests/support/reader.h"

namespace {

TEST(Lists, TakeWhatTheyCanHold) {
  expect_values({
      {"polyline", "points", "10,20 30,40", "10 20 30 40"},
      {"polyline", "points", "10,20,", "10 20"},
      {"polyline", "points", " 10 , 20px 5%\n-.5e1", "10 20px 5% -5"},
      {"polyline", "points", "10,,20", "attribute 'points': unexpected token ','"},
      {"polyline", "points", ",10", "attribute 'points': unexpected token ','"},
      {"polyline", "points", "10 20 x", "attribute 'points': unexpected token 'x'"},
      {"polyline", "points", "10-20", "attribute 'points': unexpected token '10-20'"},
      {"polyline", "points", "10 '20", "attribute 'points': incomplete value"},
      {"polyline", "points", " ", "-"},
      {"tspan", "dx", "1 2em", "1 2em"},
      {"text", "rotate", "45deg,90", "45deg 90"},
      {"g", "stroke-dasharray", "none", "none"},
      {"g", "stroke-dasharray", "NONE", "none"},
      {"g", "stroke-dasharray", "5, 10%", "5 10%"},
      {"g", "stroke-dasharray", "5 none", "property 'stroke-dasharray': unexpected token 'none'"},
      {"g", "stroke-dasharray", "none 5", "none"},
      {"font-face", "font-size", "12 14.5", "12 14.5"},
      {"font-face", "font-size", "all", "all"},
      {"g", "text-decoration", "underline, overline", "underline overline"},
      {"g", "text-decoration", "underline,,overline", "underline"},
      {"g", "text-decoration", "Underline foo blink", "underline"},
      {"g", "text-decoration", "foo", "()"},
      {"font-face", "font-weight", "100,bold 200", "100 bold 200"},
      {"g", "systemLanguage", "en-US, fr", "'en-US' 'fr'"},
      {"g", "systemLanguage", "a  b, c", "'a b' 'c'"},
      {"g", "systemLanguage", "'a, b' \"\" c", "'a, b  c'"},
      {"g", "systemLanguage", "en,", "attribute 'systemLanguage': incomplete value"},
      {"g", "systemLanguage", "en,,fr", "attribute 'systemLanguage': unexpected token ','"},
      {"g", "systemLanguage", "en )", "attribute 'systemLanguage': unexpected token ')'"},
      {"hkern", "u1", "5,700", "'5' '700'"},
  });
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

TEST(Lists, NamesAreLogged) {
  const Document document("<svg xmlns='http://www.w3.org/2000/svg' systemLanguage='en, fr'/>",
                          AccountingCore::with_log(6));
  EXPECT_NE(document.core.log.find("\t\t\t\t 2 names: \"en\" \"fr\"\n"), std::string::npos);
}

} // namespace
