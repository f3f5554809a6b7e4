// The passes over Expat: what is accepted, what is refused with which message, and the restarts.
#include <gtest/gtest.h>

#include "svg/parser/svg_parser.h"
#include "tests/support/gzip.h"
#include "tests/support/reader.h"

const std::string svg_start = "<svg xmlns='http://www.w3.org/2000/svg'";

static std::string utf16(const std::string &text, bool big_endian) {
  std::string result = big_endian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : text) result += big_endian ? std::string{'\0', c} : std::string{c, '\0'};
  return result;
}

TEST(Xml, AcceptsAndRefuses) {
  const std::string not_svg = "File 'test.svg' does not seem to be an SVG file\n";
  const std::string blanks(40000, ' ');
  const struct {
    const char *name;
    std::string bytes, messages; // a line each
  } inputs[] = {
      {"empty", "", not_svg},
      {"no markup", "hello", not_svg},
      {"binary", std::string("\x89PNG\r\n\x1A\n\0\0", 10), not_svg},
      {"another root", "<html/>", not_svg},
      {"svg below another element", "<g><svg/></g>", not_svg},
      {"foreign root", "<svg xmlns='urn:x'/>", not_svg},
      {"mark and blank lines", "\xEF\xBB\xBF\n\n" + svg_start + "/>", ""},
      {"declaration after blank lines", "\n<?xml version='1.0'?><svg/>",
       "XML: XML or text declaration not at start of entity in line 2, column 0\n"},
      {"mark", "\xEF\xBB\xBF" + svg_start + "/>", ""},
      {"blank lines", "\n \f" + svg_start + "/>",
       "XML: not well-formed (invalid token) in line 2, column 1\n"},
      {"UTF-16, little endian", utf16(svg_start + "/>", false), ""},
      {"UTF-16, big endian: the byte after the mark is no <", utf16(svg_start + "/>", true),
       not_svg},
      {"no end", svg_start + "><g>", "XML: no element found in line 1, column 43\n"},
      {"undeclared entity", svg_start + ">&nix;</svg>",
       "XML: undefined entity in line 1, column 40\n"},
      {"unknown encoding", "<?xml version='1.0' encoding='ISO_8859-2'?><svg/>",
       "XML: unknown encoding in line 1, column 30\n"},
      {"unknown family of encodings", "<?xml version='1.0' encoding='ISO-8858-2'?><svg/>",
       "XML: unknown encoding in line 1, column 30\n"},
      {"prefix without declaration", "<svg><a:b/></svg>",
       "XML: unbound prefix in line 1, column 5\n"},
      {"namespace error and then another one", "<svg><a:b/></svg",
       "XML: unbound prefix in line 1, column 5\n"
       "XML: unclosed token in line 1, column 11\n"},
      {"declared encoding is wrong", "<?xml version='1.0' encoding='UTF-16'?><svg/>",
       "XML: encoding specified in XML declaration is incorrect in line 1, column 30\n"},
      {"gzip", gzip(svg_start + "/>"), ""},
      {"gzip, cut", gzip(svg_start + "/>").substr(0, 30),
       "Error in compressed file 'test.svg': unexpected end of data\n"},
      {"gzip, members", gzip(svg_start + ">") + gzip("</svg>"), ""},
      {"gzip, cut late", gzip(svg_start + ">" + blanks) + gzip("</svg>").substr(0, 12),
       "Error in compressed file 'test.svg': unexpected end of data\n"},
      {"gzip, cut after another error",
       gzip(svg_start + ">" + blanks + "<<" + blanks) + gzip("</svg>").substr(0, 12),
       "XML: not well-formed (invalid token) in line 1, column 40041\n"},
  };
  for (const auto &input : inputs)
    EXPECT_EQ(Document(input.bytes).messages(), input.messages) << input.name;
}

TEST(Xml, DecodesTheIso8859Family) {
  // 0xB1 is U+0105 in ISO 8859-2; 0xA4 is U+20AC in ISO 8859-15.
  const std::pair<const char *, const char *> cases[] = {
      {"ISO-8859-2' ?><svg id='\xB1'/>", "\xC4\x85"},
      {"iso8859-15'?><svg id='\xA4'/>", "\xE2\x82\xAC"},
      {"iso-88592'?><svg id='\xB1'/>", "\xC4\x85"},
      {"ISO-8859-1'?><svg id='\xB1'/>", "\xC2\xB1"}};
  for (const auto &[text, id] : cases) {
    const Document document(std::string("<?xml version='1.0' encoding='") + text);
    EXPECT_EQ(document.messages(), "") << text;
    EXPECT_NE(document.find(id), nullptr) << text;
  }
}

// The input changes while it is read: the main pass is restarted, and what its first attempt and
// the sheets made is made again.
TEST(Xml, RestartedMainPassStartsClean) {
  std::string text =
      "<svg><style>rect{fill:url(#b)}</style><title>t</title><g id='b'/><font id='f'>"
      "<font-face font-family='F'/></font><rect id='a'/><text>x</text><a.b/></svg>";
  const auto change = [](void *user, const svg_e_node *element, const svg_a_node *, svg_source,
                         const char *) {
    auto &input = *static_cast<std::string *>(user);
    if (const size_t name = input.find("a.b");
        element->head.id == SVG_ELEM_svg && name != std::string::npos)
      input[name + 1] = ':';
  };
  AccountingCore core;
  svg_parser *parser = nullptr;
  ort_file *file = nullptr;
  EXPECT_EQ(0, core.protect([&] {
    ort_gz *gz = nullptr;
    svg_register_errtab(core);
    file = ort_fopen_memory(core, "test.svg", text.data(), text.size());
    parser = svg_parser_new(core, 0, "test.svg", nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr,
                            nullptr);
    parser->block_size = 16;
    parser->limits.recorded = 1;
    svg_set_observer(parser, change, &text);
    svg_parse(parser, file, &gz, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  }));
  ASSERT_EQ(core.messages.size(), 1u);
  EXPECT_EQ(core.messages[0].text, "XML: unbound prefix in line 1, column 141");
  EXPECT_EQ(svg_get_font_count(parser), 1u);
  EXPECT_EQ(value_text(parser, svg_find_name(parser, "a")->values[0]), "url(#b)");
  EXPECT_STREQ(svg_get_title_text(parser), "t");
  svg_parser_delete(parser);
  ort_fclose(file);
}
