// Colors, color extensions and paints.
#include <gtest/gtest.h>

#include "svg/svg_values.h"
#include "tests/support/reader.h"

struct Case {
  const char *text, *expected;
};

static const svg_color *color_of(const Document &document, const char *id) {
  const svg_e_node *element = document.find(id);
  for (int32_t i = 0; i < element->values_num; i++)
    if (svg_a_node *value = element->values[i]; value->row == SVG_PROP_fill)
      return &svg_record<svg_an_paint_color>(value)->color;
  return nullptr;
}

TEST(Color, PaintsInAllForms) {
  static const Case cases[] = {
      {"#f00", "#ff0000"},
      {"#FB0", "#ffbb00"},
      {"#12aBcD", "#12abcd"},
      {"Red", "#ff0000"},
      {"'red'", "#ff0000"},
      {"LightGoldenrodYellow", "#fafad2"},
      {"grey", "#808080"},
      {"ButtonFace", "#f5f5dc"},
      {"windowtext", "#000000"},
      {"RGB(255,0,0)", "#ff0000"},
      {"rgb ( 255 , 128 , 0 )", "#ff8000"},
      {"rgb(100%, 50%, 0%)", "#ff7f00"},
      {"rgb(99.9%, 0.4%, 100.1%)", "#fe0100"},
      {"rgb(300, -5, 256)", "#000000"},
      {"rgb(1.5, 1px, foo)", "#000000"},
      {"none", "none"},
      {"none of this is read", "none"},
      {"inherit", "inherit"},
      {"CurrentColor", "currentColor"},
      {"#ff00", "property 'fill': unexpected token '#ff00'"},
      {"#", "property 'fill': unexpected token '#'"},
      {"transparent", "property 'fill': unexpected token 'transparent'"},
      {"greenish", "property 'fill': unexpected token 'greenish'"},
      {"(", "property 'fill': unexpected token '('"},
      {"red 5", "property 'fill': unexpected token '5'"},
      {"red none", "property 'fill': unexpected token 'none'"},
      {"red, green", "property 'fill': unexpected token ','"},
      {"rgb", "property 'fill': incomplete value"},
      {"rgb 1", "property 'fill': unexpected token '1'"},
      {"rgb(1,2)", "property 'fill': unexpected token ')'"},
      {"rgb(1 2 3)", "property 'fill': unexpected token '2'"},
      {"rgb(1,2,3,4)", "property 'fill': unexpected token ','"},
      {"rgb(1,2,", "property 'fill': incomplete value"},
      {"rgb(1,2,3", "property 'fill': incomplete value"},
      {"url(#later)", "#?"},
      {"url(#later) #00ff00", "#? #00ff00"},
      {"url('a b.svg#c')Red", "'a b.svg#c' #ff0000"},
      {"url(#later) none", "property 'fill': unexpected token 'none'"},
      {"url(#later) currentColor", "property 'fill': unexpected token 'currentColor'"},
  };
  for (const auto &[text, expected] : cases)
    EXPECT_EQ(value_of("rect", "fill", text), expected) << text;
}

TEST(Color, EachPropertyHasItsOwnKeywords) {
  EXPECT_EQ(value_of("svg", "background-color", "transparent"), "none");
  EXPECT_EQ(value_of("stop", "stop-color", "currentColor"), "currentColor");
  EXPECT_EQ(value_of("stop", "stop-color", "none"),
            "property 'stop-color': unexpected token 'none'");
  EXPECT_EQ(value_of("g", "color", "navy device-gray(0.5)"), "#000080");
  EXPECT_EQ(value_of("g", "color", "inherit"), "property 'color': unexpected token 'inherit'");
}

static std::string numbers(int count, const char *separator) {
  std::string text;
  for (int i = 1; i <= count; i++) text += (i > 1 ? separator : "") + std::to_string(i);
  return text;
}

TEST(Color, Extensions) {
  const struct {
    std::string text, expected;
  } cases[] = {
      {"red device-gray(0.5)", "#ff0000 type 0 0.5"},
      {"red device-rgb(255, 128, 100)", "#ff0000 type 1 1 0.5 0.392578125"},
      {"red device-rgb(300 0 1e300)", "#ff0000 type 1 1 0 1"},
      {"red device-rgb(1, 0, 255)", "#ff0000 type 1 1 0 255"},
      {"red device-rgb(255, 128, -1)", "#ff0000 type 1 255 128 -1"},
      {"#0f0 DEVICE-CMYK(0.1 0.2,0.25 , 0.4) rest", "#00ff00 type 2 0.1 0.2 0.25 0.4"},
      {"red icc-color(myprof)", "#ff0000 type 3 'myprof' ()"},
      {"red icc-color(myprof,)", "#ff0000 type 3 'myprof' ()"},
      {"red icc-color(myprof 7)", "#ff0000 type 4 'myprof' 7"},
      {"red icc-color('my prof', 0.1, 0.2, 0.25)", "#ff0000 type 5 'my prof' 0.1 0.2 0.25"},
      {"red icc-color(myprof, 255 255 255 255)", "#ff0000 type 6 'myprof' 255 255 255 255"},
      {"red cielab(50, -1, 2)", "#ff0000 type 7 50 -1 2"},
      {"red cielch(50, 10, 0)", "#ff0000 type 7 50 10 0"},
      {"red icc-named-color(prof, spot1)", "#ff0000 type 9 'spot1' 1"},
      {"red icc-named-color(prof, spot1, 0.25)", "#ff0000 type 9 'spot1' 0.25"},
      {"red device-nchannel(0.2, 0.4)", "#ff0000 type 10 0.2 0.4"},
      {"red device-nchannel(" + numbers(37, ",") + ")", "#ff0000 type 10 " + numbers(37, " ")},
  };
  for (const auto &[text, expected] : cases)
    EXPECT_EQ(value_of("rect", "fill", text), expected) << text;

  const Document document("<svg><rect id='h' fill='red cielchab(50, 2, 90)'/>"
                          "<rect id='n' fill='red device-nchannel(5)'/></svg>");
  const double *lab = color_of(document, "h")->comps;
  EXPECT_NEAR(lab[1], 0, 1e-14);
  EXPECT_DOUBLE_EQ(lab[2], 2);
  const double *channels = color_of(document, "n")->comps;
  EXPECT_EQ(channels[0], -1);
  EXPECT_EQ(channels[1], 5);
  EXPECT_EQ(channels[2], SVG_CT_TERMINATOR);
}

TEST(Color, BadExtensionCostsOnlyItself) {
  const struct {
    std::string extension, message;
  } cases[] = {
      {"foo(1)", "unexpected token 'foo',"},
      {"device-gray 1", "unexpected token '1',"},
      {"device-gray()", "unexpected token ')',"},
      {"device-gray(1, 2)", "unexpected token ')',"},
      {"device-gray(1", "incomplete value,"},
      {"device-rgb(1, 2)", "unexpected token ')',"},
      {"device-cmyk(1, 2, 3)", "unexpected token ')',"},
      {"cielab(50%, 0, 0)", "unexpected token '50%',"},
      {"cielab(50,, 0, 0)", "unexpected token ',',"},
      {"cielch(50, 10, 1e999)", "unexpected token ')',"},
      {"cielab('50", "incomplete value,"},
      {"icc-color(7)", "unexpected token '7',"},
      {"icc-color(myprof, 1, 2)", "unexpected token ')',"},
      {"icc-color(myprof, 1, 2, 3, 4, 5)", "unexpected token ')',"},
      {"icc-named-color(prof)", "unexpected token ')',"},
      {"icc-named-color(prof, spot1, 1, 2)", "unexpected token ')',"},
      {"device-nchannel()", "unexpected token ')',"},
      {"device-nchannel(" + numbers(38, " ") + ")", "unexpected token ')',"},
      {"device-nchannel(" + numbers(41, " ") + ")", "unexpected token '41',"},
  };
  for (const auto &[extension, message] : cases) {
    const Document document("<svg><rect id='a' style=\"fill: red " + extension + "\"/></svg>");
    EXPECT_EQ(document.messages(), "attribute 'style', property 'fill': " + message + "\n");
    EXPECT_EQ(document.parser->value_ok, 1);
    EXPECT_EQ(document.values(document.find("a"), "fill"), "#ff0000") << extension;
  }
}

TEST(Color, ByteValuesAsFractions) {
  const struct {
    double value, expected;
  } cases[] = {{0, 0},       {0.9, 0},           {1, 0.005859375},   {127, 0.498046875},
               {128.9, 0.5}, {129, 0.505859375}, {254, 0.994140625}, {255, 1},
               {256, 1},     {1e308, 1}};
  for (const auto &[value, expected] : cases) {
    double out = -1;
    get_rgb_color_comps(&out, value);
    EXPECT_EQ(out, expected) << value;
  }
}

TEST(Color, EveryNameIsFoundInAnyCase) {
  const auto upper = [](std::string name) {
    for (char &c : name) c = static_cast<char>(toupper(c));
    return name;
  };
  for (int i = 0; i < SVG_COLOR_COUNT; i++)
    EXPECT_EQ(svg_find_color(upper(svg_rgb_table[i].name).c_str()), i);
  for (int i = 0; i < SVG_SYSCOLOR_COUNT; i++)
    EXPECT_EQ(svg_find_syscolor(upper(svg_sysrgb_table[i].name).c_str()), i);
  for (const char *name : {"", "a", "aliceblu", "aliceblues", "zzz"})
    EXPECT_EQ(svg_find_color(name), -1);
}

TEST(Color, LogTellsColorsAndExtensions) {
  const Document document(
      "<svg><g fill='red icc-color(p, 1, 2.5, 3)'/><g fill='#010203 icc-color(p)'/>"
      "<g fill='red device-nchannel(1,2)'/><g stroke='red foo(1)'/><g stroke='url(#a) "
      "blue'/></svg>",
      AccountingCore::with_log(6));
  for (const char *line :
       {"\t\t\t[rgbcolor=#FF0000]\n", "\t\t\t[Color extension icc-color(p, 1, 2.5, 3)\n",
        "\t\t\t[Color extension icc-color()\n",
        "\t\t\t[Color extension device-nchannel(1, 2, -1e+18)\n",
        "\t\t\t[colorspace \"foo\" unknown]\n", "\t\t\t[fallback color=0000FF]\n"})
    EXPECT_NE(document.core.log.find(line), std::string::npos) << line;
}

TEST(Color, LackOfMemoryLeavesNothingBehind) {
  allocation_sweep([](AccountingCore &core) {
    return read_once(core,
                     "<svg><g color='red cielab(1,2,3)' fill='red icc-color(p,1)' stroke='#fff'>"
                     "<stop stop-color='inherit' fill='url(#later) red icc-named-color(p,q)' "
                     "stroke='url(#later) none'/></g></svg>");
  });
}
