// Colors, color extensions and paints.
#include <gtest/gtest.h>

#include "svg/tables/colors.h"
#include "svg/values/svg_color.h"
#include "svg/values/svg_record.h"
#include "tests/support/cases.h"
#include "tests/support/reader.h"

static const svg_color *color_of(const Document &document, const char *id) {
  const svg_e_node *element = document.find(id);
  for (int32_t i = 0; i < element->values_num; ++i)
    if (svg_a_node *value = element->values[i]; value->row == SVG_PROP_fill)
      return &svg_record<svg_an_paint_color>(value)->color;
  return nullptr;
}

TEST(Color, PaintsInAllForms) {
  expect_values(R"(
rect fill: #f00 -> #ff0000 | #FB0 -> #ffbb00 | #12aBcD -> #12abcd | #ff00 -> ! #ff00 | # -> ! #
rect fill: Red -> #ff0000 | 'red' -> #ff0000 | LightGoldenrodYellow -> #fafad2 | grey -> #808080
rect fill: ActiveBorder -> #c0c0c0 | windowtext -> #000000 | greenish -> ! greenish | ( -> ! (
rect fill: transparent -> ! transparent | red 5 -> ! 5 | red none -> ! none | red, green -> ! ,
rect fill: RGB(255,0,0) -> #ff0000 | rgb ( 255 , 128 , 0 ) -> #ff8000
rect fill: rgb(100%, 50%, 0%) -> #ff7f00
rect fill: rgb(99.9%, 0.4%, 100.1%) -> #fe0100 | rgb(300, -5, 256) -> #000000
rect fill: rgb(1.5, 1px, foo) -> #000000 | rgb -> ! | rgb 1 -> ! 1 | rgb(1,2) -> ! )
rect fill: rgb(1 2 3) -> ! 2 | rgb(1,2,3,4) -> ! , | rgb(1,2, -> ! | rgb(1,2,3 -> !
rect fill: none -> none | none of this is read -> none | inherit -> inherit
rect fill: CurrentColor -> currentColor | url(#later) -> url(#later (no such element)) | url(#later) #00ff00 -> url(#later (no such element)) #00ff00
rect fill: url('a b.svg#c')Red -> url(a b.svg#c) #ff0000 | url(#later) none -> ! none
rect fill: url(#later) currentColor -> ! currentColor
svg background-color: transparent -> none
stop stop-color: currentColor -> currentColor | none -> ! none
g color: navy device-gray(0.5) -> #000080 | inherit -> ! inherit
)");
}

static std::string numbers(int count, const char *separator) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += (i > 1 ? separator : "") + std::to_string(i);
  return text;
}

TEST(Color, Extensions) {
  expect_values((R"(
rect fill: red device-gray(0.5) -> #ff0000 device-gray(0.5)
rect fill: red device-rgb(255, 128, 100) -> #ff0000 device-rgb(1, 0.5, 0.392578125)
rect fill: red device-rgb(300 0 1e300) -> #ff0000 device-rgb(1, 0, 1)
rect fill: red device-rgb(1, 0, 255) -> #ff0000 device-rgb(1, 0, 255)
rect fill: red device-rgb(255, 128, -1) -> #ff0000 device-rgb(255, 128, -1)
rect fill: #0f0 DEVICE-CMYK(0.1 0.2,0.25 , 0.4) rest -> #00ff00 device-cmyk(0.1, 0.2, 0.25, 0.4)
rect fill: red icc-color(myprof) -> #ff0000 icc-color(myprof)
rect fill: red icc-color(myprof,) -> #ff0000 icc-color(myprof)
rect fill: red icc-color(myprof 7) -> #ff0000 icc-color(myprof, 7)
rect fill: red icc-color('my prof', 0.1, 0.2, 0.25) -> #ff0000 icc-color(my prof, 0.1, 0.2, 0.25)
rect fill: red icc-color(myprof, 255 255 255 255) -> #ff0000 icc-color(myprof, 255, 255, 255, 255)
rect fill: red cielab(50, -1, 2) -> #ff0000 cielab(50, -1, 2)
rect fill: red cielch(50, 10, 0) -> #ff0000 cielab(50, 10, 0)
rect fill: red icc-named-color(prof, spot1) -> #ff0000 icc-named-color(spot1, 1)
rect fill: red icc-named-color(prof, spot1, 0.25) -> #ff0000 icc-named-color(spot1, 0.25)
rect fill: red device-nchannel(0.2, 0.4) -> #ff0000 device-nchannel(0.2, 0.4)
rect fill: red device-nchannel()" +
                 numbers(37, ",") + ") -> #ff0000 device-nchannel(" + numbers(37, ", ") + ")")
                    .c_str());

  const Document document("<svg><rect id='h' fill='red cielchab(50, 2, 90)'/>"
                          "<rect id='n' fill='red device-nchannel(5)'/></svg>");
  const double *lab = color_of(document, "h")->comps;
  EXPECT_NEAR(lab[1], 0, 1e-14);
  EXPECT_DOUBLE_EQ(lab[2], 2);
  const double *channels = color_of(document, "n")->comps;
  EXPECT_EQ(channels[0], -1);
  EXPECT_EQ(channels[1], 5);
  EXPECT_EQ(channels[2], SVG_CT_TERMINATOR);
  for (const auto &[extension, first] :
       std::initializer_list<std::pair<std::string, double>>{{"icc-color(p)", -1},
                                                             {"icc-color(p, 1)", -1},
                                                             {"icc-color(p, 1 2 3 4)", -1},
                                                             {"icc-named-color(p, n, 7)", -1},
                                                             {"cielab(7 8 9)", 7},
                                                             {"device-cmyk(7 8 9 0)", 7},
                                                             {"device-gray(7)", 7}}) {
    const Document one("<svg><g id='a' fill='red " + extension + "'/></svg>");
    EXPECT_EQ(color_of(one, "a")->comps[0], first) << extension;
  }
}

// By extension: the unexpected token in the warning.
TEST(Color, BadExtensionCostsOnlyItself) {
  const auto token = [](const std::string &extension) {
    const Document document("<svg><g id='a' style=\"fill: red " + extension + "\"/></svg>");
    EXPECT_EQ(document.parser->value_ok, 1);
    EXPECT_EQ(document.values(document.find("a"), "fill"), "#ff0000");
    const std::string text = document.messages();
    const std::string start = "attribute 'style', property 'fill': unexpected token '";
    return text.starts_with(start) ? text.substr(start.size(), text.rfind("',") - start.size())
                                   : text;
  };
  expect_cases(R"(
foo(1) -> foo | device-gray 1 -> 1 | device-gray() -> ) | device-gray(1, 2) -> )
device-rgb(1, 2) -> ) | device-cmyk(1, 2, 3) -> ) | cielab(50%, 0, 0) -> 50%
cielab(50,, 0, 0) -> , | cielch(50, 10, 1e999) -> ) | icc-color(7) -> 7
icc-color(myprof, 1, 2) -> ) | icc-color(myprof, 1, 2, 3, 4, 5) -> ) | device-nchannel() -> )
icc-named-color(prof) -> ) | icc-named-color(prof, spot1, 1, 2) -> )
device-gray(1 -> attribute 'style', property 'fill': incomplete value,\n
cielab('50 -> attribute 'style', property 'fill': incomplete value,\n)",
               token);
  EXPECT_EQ(token("device-nchannel(" + numbers(38, " ") + ")"), ")");
  EXPECT_EQ(token("device-nchannel(" + numbers(41, " ") + ")"), "41");
}

TEST(Color, ByteValuesAsFractions) {
  expect_cases(R"(0 -> 0.000000 | 0.9 -> 0.000000 | 1 -> 0.005859 | 127 -> 0.498047
128.9 -> 0.500000 | 129 -> 0.505859 | 254 -> 0.994141 | 255 -> 1.000000 | 1e308 -> 1.000000)",
               [](const std::string &value) {
                 double out = -1;
                 svg_get_rgb_color_comps(&out, std::stod(value));
                 return std::to_string(out);
               });
}

TEST(Color, EveryNameIsFoundInAnyCase) {
  const auto upper = [](std::string name) {
    for (char &c : name) c = static_cast<char>(toupper(c));
    return name;
  };
  for (int i = 0; i < SVG_COLOR_COUNT; ++i)
    EXPECT_EQ(svg_find_color(upper(svg_rgb_table[i].name).c_str()), i);
  for (int i = 0; i < SVG_SYSCOLOR_COUNT; ++i)
    EXPECT_EQ(svg_find_syscolor(upper(svg_sysrgb_table[i].name).c_str()), i);
  for (const char *name : {"", "a", "aliceblu", "aliceblues", "zzz"})
    EXPECT_EQ(svg_find_color(name), -1);
}
