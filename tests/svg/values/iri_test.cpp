// IRIs: links, other names, embedded data as virtual files, color profiles.
#include <gtest/gtest.h>

#include "tests/support/cases.h"
#include "tests/support/reader.h"

constexpr const char *OPEN =
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>";

// The value of an attribute of an element that comes after the targets g1, "g1'" and "a b"; or the
// message.
static std::string read(const std::string &attribute, const std::string &text) {
  const Document document(std::string(OPEN) +
                          "<g id='g1'/><g id=\"g1'\"/><g id='a b'/><use id='u' " + attribute +
                          "=\"" + text + "\"/></svg>");
  return document.messages() +
         (document.svg ? document.values(document.find("u"), attribute.c_str()) : "");
}

TEST(Iri, BareAndFunctionalForms) {
  const auto read_as = [](const char *attribute) {
    return [=](const std::string &text) { return read(attribute, text); };
  };
  expect_cases(
      R"(#g1 -> #g1 | #a b -> #a b | # g1 -> # g1 (no such element) | # -> # (no such element) | \s#g2 -> #g2
url(#g1) -> url(#g1) | dat:, -> dat:, | DATA:image/png,QUJD -> DATA:image/png,QUJD)",
      read_as("xlink:href"));
  expect_cases(
      R"(url(#g1) -> url(#g1) | url (&quot;#g1&quot;) -> url(#g1) | URL('#g1') ignored -> url(#g1)
url(#g1') -> url(#g1') | url(a,b 'c) -> url(a,b 'c) | url( #g1) -> url( #g1) | url() -> url() | none -> none
inherit -> none)",
      read_as("clip-path"));
  expect_values(R"(
g mask: none -> none | #g1 -> ! #g1 | url -> ! | url #g1 -> ! #g1 | url(#g1 -> ! | url('#g1) -> !
g mask: url('#g1' -> ! | url('#g1' ) -> !  ) | url('a'123456789a123456789b123456789c123456789d -> ! 123456789a123456789b123456789c123456789d
g mask: url('a'1123456789a123456789b123456789c123456789d -> ! 1123456789a123456789b123456789c123456789... | url( -> ! | url(') -> !
g marker-mid: inherit -> none
g color-profile: myprofile -> "myprofile" | sRGB -> sRGB | url(#g1) -> "url" | (x -> ! (
)");
}

TEST(Iri, EmbeddedData) {
  // The value as text, the name of the type in the file's name, the bytes
  expect_cases(
      R"(
image/png;base64,QUJD -> image/png, 3 bytes PNG ABC | image/gif;x,QUJD -> image/gif, 3 bytes GIF ABC
image/tiff;base64,= -> image/tiff, 0 bytes TIFF | image/jpeg;base64, Q U&#10;J -> image/jpeg, 2 bytes JPEG AB
image/svg+xml;charset=x;base64,QUI=QUI= -> image/svg+xml, 2 bytes SVG+XML AB
text/css;base64,QUJD -> text/css, 3 bytes CSS ABC | image/png,QUJD -> unknown type, 3 bytes Unknown ABC
,QUJD -> unknown type, 3 bytes Unknown ABC | image/pngx;base64,QUJD -> unknown type, 3 bytes Unknown ABC
Image/png;base64,QUJD -> unknown type, 3 bytes Unknown ABC)",
      [](const std::string &text) {
        const Document document(std::string(OPEN) + "<image id='i' xlink:href='data:" + text +
                                "'/></svg>");
        EXPECT_EQ(ort_pvf_count(document.core), 1U);
        const std::string name = ort_pvf_name(document.core, 0);
        EXPECT_EQ(name.find_first_not_of("0123456789abcdef"), 32U) << name;
        size_t size = 0;
        const auto *data =
            reinterpret_cast<const char *>(ort_pvf_data(document.core, name.c_str(), &size));
        const size_t end = name.find(" file embedded in SVG)");
        return document.values(document.find("i"), "xlink:href").substr(6) + " " +
               name.substr(34, end - 34) + " " + std::string(data, size);
      });
  EXPECT_EQ(read("xlink:href", "data:image/png;base64,"), "data: (empty)");
}

// The file goes with the last record that names it, and not with a value that is dropped.
TEST(Iri, RecordsShareTheFileOfEqualData) {
  const std::string text =
      std::string(OPEN) +
      "<image xlink:href='data:image/png;base64,QUJD'/>"
      "<g fill='url(data:image/png;base64,QUJD)' stroke='url(data:image/png;base64,QUJD) none'/>"
      "<g stroke='url(data:image/png;base64,QQ==) none'/><g "
      "mask='url(data:image/png;base64,QUJE)'/></svg>";
  Document document(text);
  EXPECT_EQ(document.core.messages.size(), 2U);
  ASSERT_EQ(ort_pvf_count(document.core), 2U);
  EXPECT_STRNE(ort_pvf_name(document.core, 0), ort_pvf_name(document.core, 1));
  const Document other(text); // another parser, other names
  EXPECT_STRNE(ort_pvf_name(document.core, 0), ort_pvf_name(other.core, 0));

  svg_parser_delete(document.parser);
  document.parser = nullptr;
  EXPECT_EQ(ort_pvf_count(document.core), 0U);
}

TEST(Iri, DataWithoutDataEndTheParse) {
  expect_cases(R"(
xlink:href='data:' -> 10000 attribute 'xlink:href': incomplete value,
xlink:href='data:image/png;base64' -> 10000 attribute 'xlink:href': incomplete value,
fill='url(data:),x' -> 10001 property 'fill': incomplete value,
mask='url(data:image/png),x' -> 10001 property 'mask': incomplete value,
style='fill:url(data:)' -> 10002 attribute 'style', property 'fill': incomplete value,)",
               [](const std::string &text) {
                 const Document document(std::string(OPEN) + "<use " + text +
                                         "/><g id='later'/></svg>");
                 std::string result = std::to_string(document.code) + " " + document.messages();
                 const std::string place = " in file 'test.svg', line 1, element 'use'\n";
                 EXPECT_TRUE(result.ends_with(place));
                 return result.substr(0, result.size() - place.size());
               });
  const Document document(
      std::string(OPEN) +
      "<style>use { fill: url(data:); stroke: red }</style><use id='u'/></svg>");
  EXPECT_EQ(document.code, 0);
  EXPECT_EQ(document.values(document.find("u"), "fill") +
                document.values(document.find("u"), "stroke"),
            "-#ff0000");
}

TEST(Iri, EqualIrisReferToTheSame) {
  AccountingCore core;
  svg_e_node node = {};
  char text[] = "a", copy[] = "a";
  const svg_iri link = {SVG_IRI_LINK, SVG_MIME_NOT_DATA, -1, {.target = &node}},
                other_link = {SVG_IRI_LINK, SVG_MIME_NOT_DATA, 0xff, {.target = &node}},
                name = {SVG_IRI_NAME, SVG_MIME_NOT_DATA, -1, {.text = text}},
                other_name = {SVG_IRI_NAME, SVG_MIME_NOT_DATA, -1, {.text = copy}},
                data = {SVG_IRI_DATA, SVG_MIME_PNG, -1, {.text = text}}, none = {};
  EXPECT_TRUE(svg_equal_iri(core, &link, &other_link) && svg_equal_iri(core, &data, &data));
  EXPECT_FALSE(svg_equal_iri(core, &name, &other_name) || svg_equal_iri(core, &name, &data));
  EXPECT_EQ(core.protect([&] { svg_equal_iri(core, &none, &none); }), ORT_E_INTERNAL);
}
