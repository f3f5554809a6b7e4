#include "tests/support/scene.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>

Scene::Scene(const Document &of, const svg_scene_options *options) : document(of) {
  auto &core = const_cast<AccountingCore &>(of.core);
  EXPECT_EQ(core.protect([&] { scene_ = svg_scene_new(of.parser, of.svg, options); }), 0);
}

Scene::~Scene() { svg_scene_delete(scene_); }

std::string Scene::size() const {
  double size[2];
  svg_scene_get_size(scene_, &size[0], &size[1]);
  return short_numbers(size, 2);
}

std::string short_number(double value) {
  char buffer[32];
  EXPECT_TRUE(std::isfinite(value));
  snprintf(buffer, sizeof buffer, "%.6g", std::fabs(value) < 1e-12 ? 0 : value);
  return buffer;
}

std::string short_numbers(const double *values, size_t count) {
  std::string result;
  for (size_t i = 0; i < count; i++) result += (i > 0 ? " " : "") + short_number(values[i]);
  return result;
}

std::string color_text(uint32_t rgb, const svg_color *color) {
  char buffer[16];
  snprintf(buffer, sizeof buffer, "#%06x", rgb);
  if (color == nullptr || color->colortype == SVG_CT_NONE) return buffer;
  return buffer + std::string(" ") + svg_get_color_space_text(color->colortype);
}

std::string id_text(const svg_parser *parser, const svg_e_node *element) {
  return element == nullptr ? "none" : svg_find_href_id(parser, element);
}

static std::string keyword(int32_t key) { return svg_get_keyword_text(key); }

static std::string number(const svg_scene_number &number) {
  return number.key != 0 ? keyword(number.key) : short_number(number.value);
}

static std::string decoration(int32_t lines) {
  std::string result;
  for (const auto &[bit, name] :
       {std::pair(1, "underline"), {2, "overline"}, {4, "line-through"}, {8, "blink"}})
    if (lines & bit) result += (result.empty() ? "" : " ") + std::string(name);
  return result.empty() ? "none" : result;
}

std::string Scene::style(const std::string &id, const std::string &property) const {
  svg_scene_style s;
  const svg_e_node *element = document.find(id.c_str());
  auto &core = const_cast<AccountingCore &>(document.core);
  EXPECT_EQ(core.protect([&] { svg_scene_get_style(scene_, element, &s); }), 0);
  const auto paint = [&](const svg_scene_paint_value &value) -> std::string {
    if (value.kind == SVG_PAINT_NONE) return "none";
    if (value.kind != SVG_PAINT_IRI) return color_text(value.rgb, value.color);
    const int32_t fallback = value.iri->fallback;
    return id_text(document.parser, value.iri->ref.target) +
           (fallback < 0 ? "" : " " + color_text(uint32_t(fallback), nullptr));
  };
  const auto link = [&](const svg_e_node *target) { return id_text(document.parser, target); };
  std::string families;
  for (int32_t i = 0; s.font_family != nullptr && i < s.font_family->count; i++)
    families += (i > 0 ? " " : "") + (s.font_family->keys[i] != 0
                                          ? keyword(s.font_family->keys[i])
                                          : "'" + std::string(s.font_family->names[i]) + "'");
  const std::map<std::string, std::string> values = {
      {"color", color_text(s.color, nullptr)},
      {"background-color", paint(s.background_color)},
      {"fill", paint(s.fill)},
      {"stroke", paint(s.stroke)},
      {"stop-color", paint(s.stop_color)},
      {"fill-opacity", short_number(s.fill_opacity)},
      {"stroke-opacity", short_number(s.stroke_opacity)},
      {"stop-opacity", short_number(s.stop_opacity)},
      {"opacity", short_number(s.opacity)},
      {"fill-rule", keyword(s.fill_rule)},
      {"clip-rule", keyword(s.clip_rule)},
      {"stroke-width", short_number(s.stroke_width)},
      {"stroke-linecap", keyword(s.stroke_linecap)},
      {"stroke-linejoin", keyword(s.stroke_linejoin)},
      {"stroke-miterlimit", short_number(s.stroke_miterlimit)},
      {"stroke-dashoffset", short_number(s.stroke_dashoffset)},
      {"stroke-dasharray", s.stroke_dasharray == nullptr
                               ? "none"
                               : short_numbers(s.stroke_dasharray, s.stroke_dash_count)},
      {"clip-path", link(s.clip_path)},
      {"mask", link(s.mask)},
      {"marker-start", link(s.marker_start)},
      {"marker-mid", link(s.marker_mid)},
      {"marker-end", link(s.marker_end)},
      {"clip", s.clip_key == SVG_KW_rect ? short_numbers(s.clip_rect, 4) : keyword(s.clip_key)},
      {"display", keyword(s.display)},
      {"visibility", keyword(s.visibility)},
      {"overflow", keyword(s.overflow)},
      {"font-family", families.empty() ? "none" : families},
      {"font-size", short_number(s.font_size)},
      {"font-size-adjust", number(s.font_size_adjust)},
      {"font-stretch", keyword(s.font_stretch)},
      {"font-style", keyword(s.font_style)},
      {"font-variant", keyword(s.font_variant)},
      {"font-weight", short_number(s.font_weight)},
      {"baseline-shift", number(s.baseline_shift)},
      {"kerning", number(s.kerning)},
      {"letter-spacing", short_number(s.letter_spacing)},
      {"word-spacing", short_number(s.word_spacing)},
      {"text-anchor", keyword(s.text_anchor)},
      {"direction", keyword(s.direction)},
      {"unicode-bidi", keyword(s.unicode_bidi)},
      {"writing-mode", keyword(s.writing_mode)},
      {"glyph-orientation-vertical", keyword(s.glyph_orientation_vertical)},
      {"text-decoration", decoration(s.text_decoration)},
      {"color-profile", s.color_profile == nullptr ? "auto"
                        : s.color_profile->name    ? s.color_profile->name
                                                   : keyword(s.color_profile->keyword)},
  };
  const auto found = values.find(property);
  return found == values.end() ? "no property" : found->second;
}
