// Style sheets: how they are found, what becomes of their declarations, which elements they reach.
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "svg/names/svg_schema.h"
#include "svg/style/svg_select.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

namespace {

// A drawing read with a host that serves the sheets "red.css" and "lime.css", notes which sheets
// are asked for, and listens to the values.
class Drawing {
public:
  explicit Drawing(const std::string &text, const CoreOptions &options = AccountingCore::defaults())
      : document(text, options, [this](svg_parser *p) {
          static const char *const refused[] = {"refused"};
          parser = p;
          p->css_context_ = &context;
          p->nottol_props = refused;
          p->nottol_props_num = 1;
          svg_set_observer(p, observe, this);
        }) {}

  // Codes of the messages.
  std::string codes() const {
    std::string result;
    for (const Message &message : document.core.messages)
      result += " " + std::to_string(message.code);
    return result;
  }

  std::string asked;                // names of sheets
  std::string observed;             // values of fill with their sources
  std::set<const char *> selectors; // by their addresses
  int walks = 0;
  svg_parser *parser = nullptr;
  const css_context context = {nullptr, read, this};
  const Document document; // after what its parse needs

private:
  static int read(void *user, const char *href, css_sheet_text *text) {
    const std::string name = href;
    static_cast<Drawing *>(user)->asked += name + " ";
    const std::string sheet = name == "red.css"    ? "rect{fill:red}"
                              : name == "lime.css" ? "rect{fill:lime}"
                                                   : "";
    return !sheet.empty() && css_context_append(text, sheet.data(), sheet.size());
  }

  static void observe(void *user, const svg_e_node *element, const svg_a_node *value,
                      svg_source source, const char *selector);
};

} // namespace

static svg_e_node *walk_to_parent(const svg_e_node *node, int16_t nid) {
  for (svg_e_node *other = node->prev; other; other = other->prev)
    if (other->level == node->level - 1)
      return nid == -1 || other->head.id == nid ? other : nullptr;
  return nullptr;
}

static svg_e_node *walk_to_sibling(const svg_e_node *node, int16_t nid) {
  svg_e_node *other = node->prev;
  for (; other && other->level >= node->level; other = other->prev)
    if (other->level == node->level && (nid == -1 || other->head.id == nid)) return other;
  return nullptr;
}

void Drawing::observe(void *user, const svg_e_node *element, const svg_a_node *value,
                      svg_source source, const char *selector) {
  auto *self = static_cast<Drawing *>(user);
  if (selector) self->selectors.insert(selector);
  if (value->row == SVG_PROP_fill) {
    static constexpr const char *sources[] = {"attribute", "sheet", "style", "default",
                                              "important"};
    self->observed += value_text(self->parser, value) + " " + sources[source] +
                      (selector ? " " + std::string(selector) : "") + "\n";
  }
  // The open elements must give what the walk over the elements built so far gives.
  for (auto *node = const_cast<svg_e_node *>(element); node; node = node->prev)
    for (const int id : {-1, int(SVG_ELEM_g), int(SVG_ELEM_rect), int(SVG_ELEM_svg)}) {
      const auto nid = static_cast<int16_t>(id);
      EXPECT_EQ(svg_css_find_parent(self->parser, node, nid), walk_to_parent(node, nid));
      EXPECT_EQ(svg_css_find_sibling(self->parser, node, nid), walk_to_sibling(node, nid));
      ++self->walks;
    }
}

TEST(Sheets, Instructions) {
  const auto asked = [](const std::string &data) {
    const Drawing drawing("<?xml-stylesheet " + data + "?><svg/>");
    return drawing.asked + drawing.codes();
  };
  expect_cases(R"(
href='red.css' type='text/css' -> red.css | \s\stype =\t"text/css"\nhref= 'red.css'\s -> red.css
type='text/css'href='a'href='red.css' -> red.css | type='text/css' href='red.css -> red.css
type='x' type='text/css' href='red.css' -> red.css | href='red.css' -> | type='text/css' -> | ->
type='text/css' title='a="b" c' href="it's.css" -> it's.css  10200
href='red.css' type='text/xsl' -> | href='red.css' type='text/CSS' ->)",
               asked);
  // Malformed: one warning, no sheet.
  expect_cases(R"(
='text/css' href='red.css' -> 10003 | href='red.css' type='text/css' alternate -> 10000
href='red.css' type='text/css' alternate\s -> 10000 | type='' href='red.css' -> 10000
href='red.css' type='text/css' a=' -> 10000 | type=text/css href='red.css' -> 10004
type 'text/css' href='red.css' -> 10004 | href='red.css' type='text/css' a= -> 10004)",
               asked);
  EXPECT_EQ(Drawing("<?XML-stylesheet href='red.css' type='text/css'?><svg/>").asked, "");
  const Drawing malformed("<svg>\n<?xml-stylesheet type=text/css?></svg>");
  EXPECT_EQ(malformed.document.core.messages.at(0).text,
            "attribute 'type': unexpected token 't', in file 'test.svg', line 2, element ''");
}

TEST(Sheets, InternalSheetIsTheTextOfAllStyleElements) {
  // The last one: the pass starts over without namespaces, and nothing is gathered twice.
  expect_cases(R"(
<g/> -> none | <s:style xmlns:s='http://www.w3.org/2000/svg'>a{}</s:style> -> a{} | <style/> ->
<style>a{}</style><g><style type='text/css'>b{}<![CDATA[c>d{}]]></style></g> -> a{}b{}c>d{}
<style type='text/ecmascript'>a{}</style>b<style type='TEXT/CSS'>b{}</style> -> none
<svg type='x'><style>a{}</style><svg><style>b{}</style></svg><style type='text/css'>c{}</style></svg><style>d{}</style> -> c{}d{}
<svg type='x'><svg type='text/css'><style>a{}</style></svg></svg> -> a{}
<f:style xmlns:f='urn:f'>a{}</f:style><f:g xmlns:f='urn:f'><style>b{}</style></f:g> -> b{}
<svg type='x'><style type='text/css'>a{}</style><style>b{}<u:u/></style></svg> -> a{})",
               [](const std::string &content) {
                 const Drawing drawing("<svg xmlns='http://www.w3.org/2000/svg'>" + content +
                                       "</svg>");
                 EXPECT_EQ(drawing.document.code, 0);
                 const ort_bs *sheet = drawing.parser->style_sheet;
                 return std::string(sheet ? ort_bs_text(sheet) : "none");
               });
}

TEST(Sheets, ExternalSheetsComeFirstAndOnce) {
  const Drawing drawing("<?xml-stylesheet type='text/css' href='red.css'?>"
                        "<?xml-stylesheet type='text/css' href='lime.css'?>"
                        "<svg><rect fill='#000001' style='fill:#000002'/>"
                        "<style>#a{fill:blue} rect{stroke:red}</style><rect id='a'/><u:u/></svg>");
  EXPECT_EQ(drawing.asked, "red.css lime.css red.css lime.css "); // restarted for the prefix
  EXPECT_EQ(drawing.observed, "#000001 attribute\n#00ff00 sheet rect\n#000002 style\n"
                              "#0000ff sheet #a\n");
}

TEST(Sheets, Declarations) {
  const auto fill = [](const std::string &declarations) {
    const Document document("<svg><style>rect{" + declarations +
                            "}</style><rect id='r'/><rect/></svg>");
    return document.values(document.find("r"), "fill") + " " +
           document.messages().substr(0, document.messages().find(','));
  };
  // Elsewhere the last two would end the parse.
  expect_cases(R"(
fill:red -> #ff0000 | FILL:RED!important -> #ff0000 | fill:url(#r) -> url(#r)
fill:none;fill:red -> #ff0000 | fill:r\65 d -> #ff0000 | fill:\23 f00;fill:u\72l(#r) -> url(#r)
fill:red;fill:foo -> #ff0000 property 'fill': unexpected token 'foo'
font:foo x;fill:red -> #ff0000 property 'font-size': unexpected token 'foo'
fill:red;mask:url(data:);stroke:blue -> #ff0000 | fill:red;refused:1 -> #ff0000)",
               fill);
  EXPECT_EQ(Drawing("<svg><style>none{refused:1}</style></svg>").document.code,
            SVG_E_PROPERTY_REFUSED);
}

// And so is the text of the selector.
TEST(Sheets, AValueIsSharedByAllElements) {
  const Drawing drawing("<svg><style>rect{fill:url(#later) red}</style><rect id='a'/>"
                        "<rect id='b'/><g id='later'/></svg>");
  EXPECT_EQ(drawing.selectors.size(), 1U);
  const Document &document = drawing.document;
  const svg_e_node *a = document.find("a"), *b = document.find("b");
  ASSERT_EQ(a->values_num, 1);
  EXPECT_EQ(document.values(a, "fill"), "url(#later) #ff0000");
  EXPECT_EQ(a->values[0], b->values[0]);
}

// The drawing's elements answer through the callbacks; selectors in general are the engine's.
TEST(Sheets, SelectorsReachElements) {
  const std::string drawing =
      "<g id='g1'><rect id='r1' class='p q' x='1'/><a><circle id='c1' r='1'/></a>"
      "<rect id='r2' class=' q'/></g><rect id='r3' xml:space='preserve'/><g id='g2' x='1'>"
      "<foreign><rect id='never'/></foreign><circle id='c2' r='2' class='q'/></g>";
  expect_cases(R"(
rect -> r1 r2 r3 | svg > rect -> r3 | g > rect -> r1 r2 | g circle -> c1 c2
svg > g > circle -> c2 | a + rect -> r2 | g + rect, rect + g -> r3 g2
rect + circle, g > a + circle -> | rect ~ rect -> r2 | :first-child -> g1 r1 c1 c2
rect.q -> r1 r2 | .q.p, .q.r -> r1 | #r2, g#c2, #never -> r2 | [x] -> r1 g2
[r='2'], [space=preserve], [class~=p] -> r1 r3 c2 | unknown, unknown rect ->
root, :root > :root ->)",
               [&](const std::string &selector) {
                 const Document document("<svg xmlns='http://www.w3.org/2000/svg'><style>" +
                                         selector + "{stroke:red}</style>" + drawing + "</svg>");
                 std::string ids;
                 for (const char *id : {"g1", "r1", "c1", "r2", "r3", "g2", "c2"})
                   if (document.values(document.find(id), "stroke") != "-")
                     ids += std::string(id) + " ";
                 return ids;
               });
}

TEST(Sheets, OpenElementsAgreeWithTheWalk) {
  const Drawing drawing("<svg x='1'><g><g><rect x='1'/></g><unknown><g/></unknown><rect x='1'/>"
                        "<g fill='red'><a/><rect/></g></g><rect/><g/><rect/><g><g><g x='1'/></g>"
                        "</g><svg><rect/></svg><g fill='red'/></svg>");
  EXPECT_GT(drawing.walks, 100);
  svg_parser *p = drawing.parser;
  EXPECT_EQ(svg_css_callbacks.get_parent(p, nullptr, -1), nullptr);
  EXPECT_EQ(svg_css_callbacks.get_siblng(p, nullptr, -1), nullptr);
  EXPECT_EQ(svg_css_callbacks.get_attr_value(p, nullptr, 0), nullptr);
  EXPECT_FALSE(svg_css_callbacks.check_class(p, nullptr, 0) ||
               svg_css_callbacks.check_id(p, nullptr, 0));
}

// "SELECTOR ; SELECTOR ... IN CONTENT": the ids of the elements that the host is told of, after the
// number of the selector; or the message.
TEST(Selectors, TellOfElementsInDocumentOrder) {
  struct Question {
    std::string selector;
    std::vector<std::pair<const Question *, const svg_e_node *>> *told;
  };
  expect_cases(R"(
g > rect IN <g id='a'><rect id='b'/><g><path/><rect id='c'/></g></g><rect id='d'/> -> 0b 0c
.x IN <g class='x y' id='a'/><style>g{fill:red}.y{fill:blue}</style><g id='b' class='x'/> -> 0a 0b
g, #b, rect IN <g id='a'/><rect id='b'/> -> 0a 0b | [k^=v] IN <g id='a' k='vw'/><g k='w'/> -> 0a
g ; [id] ; g.x IN <g id='a'><g class='x' id='b'/></g> -> 0a 1a 0b 1b 2b
g ; g IN <g id='a'/> -> 0a 1a | :hover, zzz, rect g IN <g id='a'/><rect/> ->
:root > :first-child + * IN <g id='a'/><g id='b'/> -> 0b
g[fill] IN <style>g[fill]{stroke:red}</style><g id='a' fill='red'/><g id='b'/> -> 0a
g rect, IN -> Selector 'g rect,' is malformed at byte 8 | a{} IN -> Selector 'a{}' is malformed at byte 2
g ; g[k IN <g id='a'/> -> Selector 'g[k' is malformed at byte 4
g:not(a b) IN -> Selector 'g:not(a b)' is malformed at byte 9
g:not(.a IN -> Selector 'g:not(.a' is malformed at byte 9 | a:lang(en IN -> Selector 'a:lang(en' is malformed at byte 10)",
               [](const std::string &input) {
                 const size_t in = input.find(" IN");
                 std::istringstream selectors(input.substr(0, in));
                 std::vector<std::pair<const Question *, const svg_e_node *>> told;
                 std::vector<Question> questions;
                 for (std::string selector; std::getline(selectors, selector, ';');)
                   questions.push_back({without_blanks(selector), &told});
                 const Document document("<svg>" + input.substr(in + 3) + "</svg>",
                                         AccountingCore::defaults(), [&](svg_parser *p) {
                                           for (Question &question : questions)
                                             svg_set_selector(
                                                 p, question.selector.c_str(),
                                                 [](void *user, const svg_e_node *element) {
                                                   const auto *asked =
                                                       static_cast<Question *>(user);
                                                   asked->told->emplace_back(asked, element);
                                                 },
                                                 &question);
                                         });
                 std::string result = document.messages();
                 if (!result.empty()) result.pop_back();
                 for (const auto &[question, element] : told)
                   result += std::to_string(question - questions.data()) +
                             svg_find_href_id(document.parser, element) + " ";
                 return result;
               });
}

TEST(Sheets, NumberOfInstructionsHasALimit) {
  std::string text;
  for (int i = 0; i <= ORT_LIMIT_IMPORTS; ++i)
    text += "<?xml-stylesheet type='text/css' href='red.css'?>";
  const Drawing drawing(text + "<svg/>");
  EXPECT_EQ(drawing.asked.size(), ORT_LIMIT_IMPORTS * strlen("red.css "));
  EXPECT_EQ(drawing.codes(), " " + std::to_string(ORT_E_LIMIT));
}

// The unknown property "zz" and the sheet "far.css" are told with their places: where they stand.
TEST(Sheets, ArePlacedInTheDrawing) {
  struct Told {
    svg_parser *parser = nullptr;
    std::string text;
    void add(const char *name) {
      uint32_t line = 0, column = 0;
      const svg_sheet_origin origin = svg_get_sheet_place(parser, &line, &column);
      text += std::string(name) + " " + "-is"[origin] + std::to_string(line) + ":" +
              std::to_string(column) + "\n";
    }
  };
  const auto tell = [](const std::string &bytes, int block_size) {
    Told told;
    const Document document(bytes, AccountingCore::defaults(), [&](svg_parser *p) {
      told.parser = p;
      p->block_size = block_size;
      svg_set_sheet_observer(
          p, [](void *user, const char *href) { static_cast<Told *>(user)->add(href); }, &told);
      svg_set_skip_observer(
          p,
          [](void *user, svg_skipped what, const char *name, uint32_t) {
            if (what == SVG_SKIPPED_PROPERTY) static_cast<Told *>(user)->add(name);
          },
          &told);
    });
    EXPECT_TRUE(document.svg);
    return told.text;
  };
  const std::pair<std::string, std::string> drawings[] = {
      {"<svg><style>a{zz:1}</style>\n<style>\n a { zz:2;zz:3 }\n</style><g/><style> b{zz:4}"
       "</style></svg>",
       "zz s1:15\nzz s3:6\nzz s3:11\nzz s4:23\n"},
      {"<svg><style>\n<![CDATA[a{zz:1}\nb{ zz:2}]]><!--\n--> c{/*\n*/zz:3}&#10;d&gt;e{zz:4}"
       "</style></svg>",
       "zz s2:12\nzz s3:4\nzz s5:3\nzz s5:20\n"},
      {"<svg><style>\n@import 'far.css';\na{ fill:'\u00e4\U0001f600'; zz:1 }</style>"
       "<g style='zz:2'/></svg>",
       "far.css s2:1\nzz s3:15\nzz -0:0\n"},
      {"<!---->\n<?xml-stylesheet href='far.css' type='text/css'?><svg/>", "far.css i2:1\n"},
      {"<!DOCTYPE svg [<!ENTITY e 'a{zz:1}\n b{zz:2}\n c{'>]>\n<svg><style>&e; zz:3}</style></svg>",
       "zz s4:13\nzz s4:13\nzz s4:17\n"}};
  for (const auto &[text, places] : drawings)
    for (const int block_size : {1, SVG_BLOCK_SIZE}) {
      EXPECT_EQ(tell(text, block_size), places) << text;
      std::string returns = text;
      for (size_t i = 0; (i = returns.find('\n', i)) != returns.npos; i += 2)
        returns.insert(i, "\r");
      if (text.find("<!DOCTYPE") == text.npos) EXPECT_EQ(tell(returns, block_size), places) << text;
    }
}
