// Font families, the fonts of a document, their names and the choice among them.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

TEST(Fonts, FamilyLists) {
  expect_values(R"(
g font-family: Times New Roman -> "Times New Roman" | 'Times New Roman' -> "Times New Roman"
g font-family: Times   New "Roman " , Arial -> "Times New Roman ", "Arial"
g font-family: MyFont, serif -> "MyFont", serif
g font-family: SERIF,Fantasy,sans-serif -> serif, fantasy, sans-serif
g font-family: Bitstream serif -> "Bitstream serif"
g font-family: 'serif', 'inherit' -> "serif", "inherit" | inherit -> inherit
g font-family: Arial, inherit, 'x' -> inherit
g font-family: 12, 3px -> "12", "3px" | x ' -> "x " | a,,b -> ! , | a, -> ! | , -> ! ,
g font-family: serif Foo -> ! Foo
g font-family: a(b) -> ! ( | a, 'b -> !
)");
}

TEST(Fonts, Names) { // "NUMBER ATTRIBUTES"
  expect_cases(R"(0 font-family='MyFont' -> MyFont | 7 font-family='MyFont' -> MyFont-7
0 font-family='MyFont' font-weight='bold' font-style='italic' -> MyFont_700_italic___
0 font-family='MyFont' font-weight='normal, bold' -> MyFont_400,700____
2 font-family='MyFont' font-size='10, 12.5' -> MyFont-2_____10,12.5
0 font-family='My Font, serif' font-variant='normal,small-caps' -> My Font,serif____,small-caps_
0 font-family='a' font-variant='normal' font-stretch='all, condensed' -> a___,condensed__
0 id='f&quot;1' -> f"1 | 0 -> | * -> *)",
               [](const std::string &input) {
                 const Document document("<svg><font-face " + input.substr(1) + "/></svg>");
                 ort_bs *name = ort_bs_new(document.core);
                 document.parser->font_number = input[0] - '0';
                 const svg_font unknown = {};
                 if (input[0] == '*')
                   svg_create_fontname(document.parser, &unknown, name);
                 else
                   svg_get_first_font(document.parser, name);
                 const std::string result = ort_bs_text(name);
                 ort_bs_delete(name);
                 return result;
               });
}

TEST(Fonts, Choice) {
  const Document document(
      "<svg><font-face id='a' font-family='F, serif' font-weight='bold'/>"
      "<font-face id='b' font-family='F'/>"
      "<font-face id='i' font-family='I' font-style='italic' font-stretch='condensed' "
      "font-weight='900'/>"
      "<font-face id='s' font-family='S' font-size='10, 12' font-style='oblique, normal'/>"
      "<font-face id='v' font-family='V' font-variant='small-caps' font-weight='normal'/></svg>");
  struct Request {
    const char *family = "F";
    int32_t generic = 0;
    double size = 10;
    int32_t stretch = SVG_KW_normal, style = SVG_KW_normal, variant = SVG_KW_normal,
            weight = SVG_KW_400;
    const char *chosen = "(empty)";
  };
  const Request requests[] = {
      {.chosen = "b"},
      {.weight = SVG_KW_700, .chosen = "a"},
      {.weight = SVG_KW_300, .chosen = "a"}, // any weight in the second pass
      {.style = SVG_KW_italic, .chosen = "a"},
      {.variant = SVG_KW_small_caps},
      {.family = "f"},
      {.family = "serif"},
      {.family = nullptr, .generic = SVG_KW_serif, .chosen = "a"},
      {.family = nullptr, .generic = SVG_KW_cursive},
      {.family = "I"},
      {"I", 0, 10, SVG_KW_condensed, SVG_KW_oblique, SVG_KW_normal, SVG_KW_900, "i"},
      {"I", 0, 10, SVG_KW_condensed, SVG_KW_normal, SVG_KW_normal, SVG_KW_900},
      {.family = "S", .size = 12.0000005, .chosen = "s"},
      {.family = "S", .size = 12.1},
      {.family = "S", .style = SVG_KW_italic, .chosen = "s"},
      {.family = "V"},
      {.family = "V", .variant = SVG_KW_small_caps, .chosen = "v"}};
  for (const Request &r : requests)
    EXPECT_STREQ(
        svg_find_href_id(document.parser, svg_get_font(document.parser, r.family, r.generic, r.size,
                                                       r.stretch, r.style, r.variant, r.weight)),
        r.chosen)
        << "request " << &r - requests;
}

TEST(Fonts, UnicodeRanges) {
  expect_cases(R"(U+41 -> 41 41 | U+0041-007a -> 41 7A | U+4?? -> 400 4FF | U+?-12 -> 0 F
U+41- -> 41 0 | U+-7 -> 0 7 | U+10FFFF-10FFFF -> 10FFFF 10FFFF | U+4-5-6 -> 4 506
U+ -> none | u+41 -> none | -> none | U -> none)",
               [](const std::string &text) -> std::string {
                 uint32_t first = 0x99, last = 0x99;
                 const int32_t found = svg_get_urange(nullptr, text.c_str(), &first, &last);
                 EXPECT_EQ(found, first != 0x99);
                 if (last == 0x99) return "none";
                 char result[20];
                 snprintf(result, sizeof result, "%X %X", first, last);
                 return result;
               });
}
