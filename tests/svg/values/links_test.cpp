// Ids, names and the links between elements.
#include <gtest/gtest.h>
#include <memory>
#include <set>
#include <sstream>

#include "tests/support/reader.h"

const std::string svg_begin =
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>";

TEST(Links, LeadToTheFirstElementOfAName) {
  const Document document(svg_begin +
                          "<use id='u1' xlink:href='#a'/><use id='u2' xlink:href='#a'/>"
                          "<use id='u3' xlink:href='#id1'/><use id='u4' xlink:href='#id2'/>"
                          "<use id='u5' xlink:href='#p'/><use id='u6' xlink:href='#u6'/>"
                          "<use id='u7' xlink:href='#A'/><use id='u8' xlink:href='# a'/>"
                          "<g id='a'/><g id='a'><rect id=' a'/></g><g id='id1' xml:id='id2'/>"
                          "<color-profile name='p'/><use id='v1' xlink:href='#a'/></svg>");
  std::string targets;
  for (const char *use : {"u1", "u2", "u3", "u4", "u5", "u6", "u7", "u8", "v1"})
    targets += document.values(document.find(use), "xlink:href");
  const std::string either = svg_find_href_id(document.parser, document.find("id1"));
  EXPECT_EQ(targets, "#a#a#" + either + "#" + either + "#p#u6#A (no such element)# a#a");
  EXPECT_EQ(document.find("a")->first_child, nullptr) << "the first of two";
  EXPECT_EQ(document.find("id1"), document.find("id2"));
}

TEST(Links, QuestionsAboutNames) {
  const Document document(svg_begin + "<g id='b'/><g/><g id='a' xml:id='c'/><g id='a'/></svg>");
  const svg_parser *p = document.parser;
  ASSERT_EQ(svg_get_href_count(p), 3U);
  const svg_e_node *last = nullptr;
  for (size_t i = 0; i < 3; ++i) {
    svg_e_node *element = nullptr;
    const char *name = svg_get_href(p, i, &element);
    EXPECT_LE(last, element);
    EXPECT_EQ(svg_find_name(p, name), element);
    EXPECT_EQ(svg_find_name(p, svg_find_href_id(p, element)), element);
    last = element;
  }
  EXPECT_EQ(svg_get_href(p, 3, nullptr), nullptr);
  EXPECT_EQ(svg_find_name(p, "d"), nullptr);
  EXPECT_STREQ(svg_find_href_id(p, document.svg), "(empty)");
  EXPECT_STREQ(svg_find_href_id(p, nullptr), "(empty)");
  EXPECT_EQ(svg_get_unresolved_count(p), 0U);

  const Document nameless("<svg/>");
  EXPECT_EQ(svg_get_href_count(nameless.parser), 0U);
  EXPECT_EQ(svg_find_name(nameless.parser, "a"), nullptr);
  EXPECT_EQ(svg_get_unresolved(nameless.parser, 0, nullptr, nullptr), nullptr);
}

// The links that wait, sorted: "SOURCE#NAME ".
static std::string waiting(const Document &document) {
  std::multiset<std::string> links;
  for (size_t i = 0; i < svg_get_unresolved_count(document.parser); ++i) {
    const svg_iri *iri = nullptr;
    svg_e_node *source = nullptr;
    const char *name = svg_get_unresolved(document.parser, i, &iri, &source);
    if (!name) continue;
    EXPECT_EQ(iri->ref.target, nullptr) << name;
    const char *holder = source ? svg_find_href_id(document.parser, source) : "sheet";
    links.insert(std::string(holder) + '#' + name + ' ');
  }
  std::string result;
  for (const std::string &link : links) result += link;
  return result;
}

// A dropped value takes its link along, whichever of the links of its name it is.
TEST(Links, WaitWhileTheirValueLives) {
  for (const bool defined : {false, true}) {
    const Document document(
        svg_begin +
        "<style>.x { fill: url(#t) bad; mask: url(#t) }</style>"
        "<g id='g1' fill='url(#t) bad'/><g id='g2' fill='url(#t) red' stroke='url(#t) bad'/>"
        "<g id='g3' fill='url(#t)' style='stroke:url(#none) bad' stroke='url(#t)'/>"
        "<g id='g4' class='x' mask='url(#none)'/>"
        "<g id='g5' fill='url(#t)' stroke='bad' mask='' opacity='bad'/>" +
        (defined ? "<linearGradient id='t'/>" : "") + "</svg>");
    EXPECT_EQ(waiting(document), defined ? "g4#none " : "g2#t g3#t g3#t g4#none g5#t sheet#t ");
    const std::string target = defined ? "url(#t)" : "url(#t (no such element))";
    EXPECT_EQ(document.values(document.find("g1"), "fill"), "-");
    EXPECT_EQ(document.values(document.find("g2"), "fill"), target + " #ff0000");
    EXPECT_EQ(document.values(document.find("g3"), "stroke"), target);
    EXPECT_EQ(document.values(document.find("g4"), "mask"),
              "url(#none (no such element)); " + target);
  }
}

TEST(Links, PassTheNeedOfABoundingBox) {
  const std::string targets = "<linearGradient id='grad'/><clipPath id='clip'/><g id='plain'/>";
  const std::string sources = "<g id='s1' fill='url(#grad)'/><g id='s2' clip-path='url(#clip)'/>"
                              "<g id='s3' fill='url(#plain)'/><use id='s4' xlink:href='#clip' "
                              "width='1' height='1'/>";
  const auto flags = [](const std::string &content) {
    const Document document(svg_begin + content + "</svg>");
    std::string result;
    for (const char *source : {"s1", "s2", "s3", "s4"}) {
      const uint16_t found = document.find(source)->head.flags;
      result += found & SVG_EF_NEEDS_BBOX ? found & SVG_EF_NEEDS_BBOX2 ? "both " : "first " : "- ";
    }
    return result;
  };
  EXPECT_EQ(flags(sources + targets), "first both - both ");
  // A link back from xlink:href passes nothing.
  EXPECT_EQ(flags(targets + sources), "first both - - ");
}

TEST(Links, AreResolvedInTheOrderOfTheirSlots) {
  const Document document(svg_begin +
                              "<g fill='url(#x)'/><g id='second' fill='url(#t)'/><pattern id='x'/>"
                              "<g id='first' fill='url(#t)'/><pattern id='t'/></svg>",
                          AccountingCore::with_log(6));
  const auto told = [&](const char *id) {
    std::ostringstream text;
    text << "[source " << document.find(id) << " needs bbox";
    return document.core.log.find(text.str());
  };
  EXPECT_LT(told("first"), told("second"));
  EXPECT_NE(told("second"), std::string::npos);
}
