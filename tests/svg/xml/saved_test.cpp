// The texts of title, desc and metadata.
#include <gtest/gtest.h>

#include "tests/support/cases.h"
#include "tests/support/reader.h"

// Title, description and metadata of a drawing with this content, "|" between; "-" for none.
static std::string saved(const std::string &content) {
  const Document document("<svg xmlns='http://www.w3.org/2000/svg' xmlns:o='urn:o'>" + content +
                          "</svg>");
  if (!document.svg) return document.messages();
  std::string result;
  for (const char *text : {svg_get_title_text(document.parser), svg_get_desc_text(document.parser),
                           svg_get_metadata(document.parser)})
    result += (result.empty() ? "" : "|") + std::string(text ? text : "-");
  return result;
}

// Elements inside are written, not captured; the first end tag of the same kind ends it.
TEST(Saved, TheFirstTextThatIsNotEmptyCounts) {
  expect_cases(R"(
-> -|-|- | <title>a<desc>b</desc><tspan/></title> -> a<desc>b</desc><tspan/>|-|-
<title>\na\n</title><desc>\n\n b \n\n</desc><metadata> </metadata> -> a|\n b \n|
<desc/><desc></desc><desc>\n</desc><desc>&#10;&#10;</desc><desc>b</desc><desc>c</desc> -> -|b|-
<g><g><title>deep</title><metadata>not taken</metadata></g></g> -> deep|-|-
<g><metadata>a</metadata></g><metadata>b</metadata><metadata>c</metadata> -> -|-|b
<title>a&lt;b <![CDATA[&c;]]>&#228;</title> -> a<b &c;ä|-|-
<title>a<title>b</title>c</title><desc>d</desc> -> a<title>b|d|-
<title><title></title></title><desc>d</desc> -> <title|d|-
<metadata><title>in</title></metadata><title>out</title> -> out|-|<title>in</title>
<unknown><title>skipped</title></unknown> -> -|-|-
<title xmlns='other'>foreign</title> -> -|-|-)",
               saved);
}

TEST(Saved, MarkupIsWrittenWithPrefixesAndDeclarations) {
  expect_cases(R"t(
<r:a xmlns:r='urn:r' r:x='1' y='&lt;&quot;'><r:b/> c </r:a> -> <r:a xmlns:r="urn:r" r:x="1" y="<""><r:b/> c </r:a>
<a xmlns='urn:r'><b xmlns=''/></a> -> <a xmlns="urn:r"><b xmlns=""/></a>
<o:a o:x='1'><i:b xmlns:i='urn:o'/><o:b/></o:a> -> <o:a o:x="1"><i:b xmlns:i="urn:o"/><o:b/></o:a>
<o:a><!-- c --><?p i?></o:a>\n\n<o:b></o:b> -> <o:a/>\n\n<o:b/> | <o:a>\n</o:a> -> <o:a>\n</o:a>
<g><rect x='1'/></g> -> <g><rect x="1"/></g>)t",
               [](const std::string &metadata) {
                 return saved("<metadata>" + metadata + "</metadata>").substr(4);
               });
}

// An undeclared prefix turns it off; declarations are then attributes.
TEST(Saved, WithoutNamespaceProcessing) {
  const Document document("<svg><title>a</title><desc>b<y:c xmlns:y='urn:y' y:z='1'/></desc>"
                          "<metadata>d<x:e/></metadata></svg>");
  EXPECT_STREQ(svg_get_title_text(document.parser), "a");
  EXPECT_STREQ(svg_get_desc_text(document.parser), "b<y:c xmlns:y=\"urn:y\" y:z=\"1\"/>");
  EXPECT_STREQ(svg_get_metadata(document.parser), "d<x:e/>");
}

TEST(Saved, CutByAnError) {
  const Document document("<svg><title>a</title><desc>b<g mask='url(data:)'/></desc></svg>");
  EXPECT_EQ(document.code, SVG_E_PROPERTY_INCOMPLETE);
  EXPECT_STREQ(svg_get_title_text(document.parser), "a");
  EXPECT_EQ(svg_get_desc_text(document.parser), nullptr);
}
