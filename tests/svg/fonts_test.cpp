// Font families, the fonts of a document, their names and the choice among them.
#include <gtest/gtest.h>

#include "svg/svg_parser.h"
#include "tests/support/reader.h"

TEST(Fonts, FamilyLists) {
  const struct {
    const char *text, *expected;
  } cases[] = {
      {"Times New Roman", "'Times New Roman'"},
      {"'Times New Roman'", "'Times New Roman'"},
      {"Times   New &quot;Roman &quot; , Arial", "'Times New Roman ' 'Arial'"},
      {"MyFont, serif", "'MyFont' serif"},
      {"SERIF,Fantasy,sans-serif", "serif fantasy sans-serif"},
      {"Bitstream serif", "'Bitstream serif'"},
      {"'serif', 'inherit'", "'serif' 'inherit'"},
      {"inherit", "inherit"},
      {"Arial, inherit, 'x'", "inherit"},
      {"12, 3px", "'12' '3px'"},
      {"x '", "'x '"},
      {"a,,b", "property 'font-family': unexpected token ','"},
      {"a,", "property 'font-family': incomplete value"},
      {",", "property 'font-family': unexpected token ','"},
      {"serif Foo", "property 'font-family': unexpected token 'Foo'"},
      {"a(b)", "property 'font-family': unexpected token '('"},
      {"a, 'b", "property 'font-family': incomplete value"},
  };
  for (const auto &[text, expected] : cases) {
    const Document document("<svg><g id='g' font-family=\"" + std::string(text) + "\"/></svg>");
    const std::string messages = document.messages();
    EXPECT_EQ(messages.empty() ? document.values(document.find("g"), "font-family")
                               : messages.substr(0, messages.rfind(", in")),
              expected)
        << text;
  }
}

TEST(Fonts, Names) {
  const struct {
    const char *attributes;
    int32_t number;
    const char *name;
  } cases[] = {
      {"font-family='MyFont'", 0, "MyFont"},
      {"font-family='MyFont'", 7, "MyFont-7"},
      {"font-family='MyFont' font-weight='bold' font-style='italic'", 0, "MyFont_700_italic___"},
      {"font-family='MyFont' font-weight='normal, bold'", 0, "MyFont_400,700____"},
      {"font-family='MyFont' font-size='10, 12.5'", 2, "MyFont-2_____10,12.5"},
      {"font-family='My Font, serif' font-variant='normal,small-caps'", 0,
       "My Font,serif____,small-caps_"},
      {"font-family='a' font-variant='normal' font-stretch='all, condensed'", 0,
       "a___,condensed__"},
      {"id='f&quot;1'", 0, "f\"1"},
      {"", 0, ""},
  };
  for (const auto &c : cases) {
    const Document document("<svg><font-face " + std::string(c.attributes) + "/></svg>");
    document.parser->font_number = c.number;
    ort_bs *name = ort_bs_new(document.core);
    svg_get_first_font(document.parser, name);
    EXPECT_STREQ(ort_bs_text(name), c.name) << c.attributes;
    ort_bs_delete(name);
  }
  const svg_font unknown = {};
  const Document document("<svg/>");
  ort_bs *name = ort_bs_new(document.core);
  svg_create_fontname(document.parser, &unknown, name);
  EXPECT_STREQ(ort_bs_text(name), "*");
  ort_bs_delete(name);
}

// Each font as "element id: family size", in the order of the registry.
static std::string registry(const std::string &content, std::string *log = nullptr) {
  const Document document("<svg>" + content + "</svg>", AccountingCore::with_log(6));
  std::string result;
  for (size_t i = 0; i < svg_get_font_count(document.parser); i++) {
    const svg_font *font = svg_get_font_at(document.parser, i);
    const auto text = [&](const auto *value) {
      return value ? value_text(document.parser, &value->head) : "-";
    };
    result += std::to_string(font->node->head.id) + " " + (font->id ? font->id : "-") + ": " +
              text(font->family) + " " + text(font->size) + "\n";
  }
  EXPECT_EQ(svg_get_font_at(document.parser, svg_get_font_count(document.parser)), nullptr);
  if (log != nullptr) *log = document.core.log;
  return result;
}

TEST(Fonts, Registry) {
  EXPECT_EQ(registry("<font id='a'><font-face font-family='A' id='x'/></font><font-face "
                     "font-family='B' font-size='9'/>"),
            "7 a: 'A' all\n8 -: 'B' 9\n");
  EXPECT_EQ(registry("<font id='a'/>"), "");
  EXPECT_EQ(registry("<font id='a'/><font id='b'><font-face/></font>"), "7 b: - all\n");
  // A nameless record waits for a font-face that completes it.
  EXPECT_EQ(registry("<font><font-face font-size='9'/></font><font-face id='x' font-family='X'/>"),
            "7 -: 'X' all\n");
  // Duplicate and bad values: the last good one counts.
  EXPECT_EQ(registry("<s:font-face xmlns:s='http://www.w3.org/2000/svg' font-family='A' "
                     "s:font-family='B' s:font-size='?'/>"),
            "8 -: 'B' all\n");
  std::string log;
  registry("<font id='f'><font-face font-weight='bold'/></font>", &log);
  for (const char *line : {": \"f_700____\"]\n", "\t\t\t[insert new SVG font 0]\n"})
    EXPECT_NE(log.find(line), std::string::npos) << line;
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
      {.family = "I",
       .stretch = SVG_KW_condensed,
       .style = SVG_KW_oblique,
       .weight = SVG_KW_900,
       .chosen = "i"},
      {.family = "I", .stretch = SVG_KW_condensed, .style = SVG_KW_normal, .weight = SVG_KW_900},
      {.family = "S", .size = 12.0000005, .chosen = "s"},
      {.family = "S", .size = 12.1},
      {.family = "S", .style = SVG_KW_italic, .chosen = "s"},
      {.family = "V"},
      {.family = "V", .variant = SVG_KW_small_caps, .chosen = "v"},
  };
  for (const Request &r : requests)
    EXPECT_STREQ(
        svg_find_href_id(document.parser, svg_get_font(document.parser, r.family, r.generic, r.size,
                                                       r.stretch, r.style, r.variant, r.weight)),
        r.chosen)
        << "request " << &r - requests;
}

TEST(Fonts, UnicodeRanges) {
  const struct {
    const char *text;
    int32_t result;
    uint32_t first, last;
  } cases[] = {
      {"U+41", 1, 0x41, 0x41},
      {"U+0041-007a", 1, 0x41, 0x7A},
      {"U+4??", 1, 0x400, 0x4FF},
      {"U+?-12", 1, 0, 0xF},
      {"U+41-", 1, 0x41, 0},
      {"U+-7", 1, 0, 7},
      {"U+10FFFF-10FFFF", 1, 0x10FFFF, 0x10FFFF},
      {"U+4-5-6", 1, 4, 0x506},
      {"U+", 0, 99, 99},
      {"u+41", 0, 99, 99},
      {"", 0, 99, 99},
      {"U", 0, 99, 99},
  };
  for (const auto &c : cases) {
    uint32_t first = 99, last = 99;
    EXPECT_EQ(svg_get_urange(nullptr, c.text, &first, &last), c.result) << c.text;
    EXPECT_EQ(first, c.first) << c.text;
    EXPECT_EQ(last, c.last) << c.text;
  }
}
