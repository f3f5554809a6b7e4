// svg_css_color.cpp: colors of CSS Color 4 for the lenient reading: hexadecimal with alpha, rgb()
// and hsl() in all forms, transparent. What SVG 1.1 knows as alpha of a color is an opacity
// property beside it, so that one is added.
//
// svg_color.cpp calls it with the first word of a color; svg_attr.cpp and svg_select.cpp ask with
// each value what its alpha adds. Raises value errors.
#include "svg/values/svg_css_color.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "svg/path/svg_number.h"
#include "svg/values/svg_errors.h"
#include "svg/values/svg_record.h"

namespace {

enum component_unit { PLAIN, PERCENT, ANGLE };

struct component {
  double value; // degrees of an angle
  component_unit unit;
};

struct color_function {
  const char *name;
  bool hue;
};

constexpr color_function FUNCTIONS[] = {
    {"rgb", false}, {"rgba", false}, {"hsl", true}, {"hsla", true}};

struct color_unit {
  const char *text;
  double factor;
  component_unit unit;
};

constexpr color_unit UNITS[] = {{"%", 1, PERCENT},
                                {"deg", 1, ANGLE},
                                {"grad", 0.9, ANGLE},
                                {"rad", 57.29577951308232, ANGLE},
                                {"turn", 360, ANGLE}};

// The opacity that an alpha becomes, by the property of the color.
struct color_opacity {
  int32_t color, opacity;
  const char *name;
};

constexpr color_opacity OPACITIES[SVG_ALPHAS] = {
    {SVG_PROP_fill, SVG_PROP_fill_opacity, "fill-opacity"},
    {SVG_PROP_stroke, SVG_PROP_stroke_opacity, "stroke-opacity"},
    {SVG_PROP_stop_color, SVG_PROP_stop_opacity, "stop-opacity"}};

} // namespace

static bool get_hex_color(svg_scanner *p, uint32_t *rgb);
static void get_function(svg_scanner *p, bool hue, uint32_t *rgb);
static const char *read_component(svg_scanner *p, const char *s, component *c);
static const char *expect_mark(svg_scanner *p, const char *s, char mark);
ORT_NORETURN static void refuse(svg_scanner *p, const char *rest);
static double fraction(const component &c, double whole);
static uint32_t rgb_of(const component c[3]);
static uint32_t rgb_of_hsl(const component c[3]);
static uint32_t pack(const double bytes[3]);

static const char *skip_blanks(const char *s) {
  while (ort_isspace(*s)) ++s;
  return s;
}

// ---- Colors -------------------------------------------------------------------------------------

bool svg_get_css_color(svg_scanner *p, uint32_t *rgb) {
  if (p->tok_text[0] == '#') return get_hex_color(p, rgb);
  if (ort_stricmp_a(p->tok_text, "transparent") == 0) {
    *rgb = 0;
    p->alpha = 0;
    return true;
  }
  for (const color_function &function : FUNCTIONS) {
    if (ort_stricmp_a(p->tok_text, function.name) != 0) continue;
    get_function(p, function.hue, rgb);
    return true;
  }
  return false;
}

static bool get_hex_color(svg_scanner *p, uint32_t *rgb) {
  const size_t digits = strlen(p->tok_text + 1);
  if (digits != 4 && digits != 8) return false;
  uint32_t rgba = 0;
  const char *end = p->tok_text + 1 + digits;
  if (std::from_chars(p->tok_text + 1, end, rgba, 16).ptr != end) return false;
  if (digits == 4) // each digit stands for two
    rgba = 0x11 * ((rgba & 0xF000) << 12 | (rgba & 0xF00) << 8 | (rgba & 0xF0) << 4 | (rgba & 0xF));
  *rgb = rgba >> 8;
  p->alpha = (rgba & 0xFF) / 255.0;
  return true;
}

// Commas between all, or blanks and a "/" before the alpha.
static void get_function(svg_scanner *p, bool hue, uint32_t *rgb) {
  component c[3], alpha = {1, PLAIN};
  const char *s = expect_mark(p, p->scan_pos, '(');
  s = skip_blanks(read_component(p, s, &c[0]));
  const bool commas = *s == ',';
  for (int i = 1; i < 3; ++i) s = read_component(p, commas ? expect_mark(p, s, ',') : s, &c[i]);
  s = skip_blanks(s);
  if (*s == (commas ? ',' : '/')) s = read_component(p, s + 1, &alpha);
  for (int i = 0; i < 3; ++i)
    if (c[i].unit == ANGLE && !(hue && i == 0)) refuse(p, p->scan_pos);
  if (alpha.unit == ANGLE || (hue && c[0].unit == PERCENT)) refuse(p, p->scan_pos);
  p->scan_pos = expect_mark(p, s, ')');
  *rgb = hue ? rgb_of_hsl(c) : rgb_of(c);
  p->alpha = fraction(alpha, 1);
}

static const char *read_component(svg_scanner *p, const char *s, component *c) {
  const char *begin = skip_blanks(s);
  const bool negative = *begin == '-';
  svg_decimal number;
  s = svg_read_mantissa(begin + (negative || *begin == '+'), &number);
  if (number.valid && (*s == 'e' || *s == 'E') && svg_is_expostart(s[1]))
    s = svg_read_exponent(s + 1, &number);
  if (!number.valid) refuse(p, begin);
  const double magnitude = svg_decimal_value(&number);
  *c = {negative ? -magnitude : magnitude, PLAIN};
  for (const color_unit &unit : UNITS) {
    const size_t length = strlen(unit.text);
    if (ort_strincmp_a(s, unit.text, length) != 0) continue;
    *c = {c->value * unit.factor, unit.unit};
    return s + length;
  }
  return s;
}

static const char *expect_mark(svg_scanner *p, const char *s, char mark) {
  s = skip_blanks(s);
  if (*s != mark) refuse(p, s);
  return s + 1;
}

static void refuse(svg_scanner *p, const char *rest) {
  if (*rest == '\0') svg_err_end(p);
  svg_err_rest(p, rest);
}

// A component as a fraction, which is clipped. whole is what a plain number is a fraction of.
static double fraction(const component &c, double whole) {
  return std::clamp(c.value / (c.unit == PERCENT ? 100 : whole), 0.0, 1.0);
}

// Percentages become bytes as the strict reading makes them.
static uint32_t rgb_of(const component c[3]) {
  double bytes[3];
  for (int i = 0; i < 3; ++i)
    bytes[i] = c[i].unit == PERCENT ? floor(std::clamp(c[i].value, 0.0, 100.0) * 255 / 100)
                                    : round(fraction(c[i], 255) * 255);
  return pack(bytes);
}

// CSS Color 4, 7.1. An infinite hue has no direction, and is taken for red.
static uint32_t rgb_of_hsl(const component c[3]) {
  const double hue = std::isfinite(c[0].value) ? fmod(fmod(c[0].value, 360) + 360, 360) : 0;
  const double saturation = fraction(c[1], 100), lightness = fraction(c[2], 100);
  const double range = saturation * std::min(lightness, 1 - lightness);
  double bytes[3];
  double *byte = bytes;
  for (const int n : {0, 8, 4}) {
    const double k = fmod(n + hue / 30, 12);
    const double part = std::clamp(std::min(k - 3, 9 - k), -1.0, 1.0);
    *byte++ = round(255 * std::clamp(lightness - range * part, 0.0, 1.0));
  }
  return pack(bytes);
}

static uint32_t pack(const double bytes[3]) {
  return static_cast<uint32_t>(bytes[0]) << 16 | static_cast<uint32_t>(bytes[1]) << 8 |
         static_cast<uint32_t>(bytes[2]);
}

// ---- Alphas -------------------------------------------------------------------------------------

void svg_begin_alphas(svg_parser *p) {
  if ((p->leniency & SVG_LENIENT_COLORS) == 0) return;
  for (auto &alphas : p->alphas)
    for (svg_alpha &alpha : alphas) alpha = {};
}

static double *opacity_of(svg_a_node *value) {
  if (svg_get_record_kind(value->row) == SVG_RECORD_NUMBER)
    return &svg_record<svg_an_number>(value)->value;
  auto *record = svg_record<svg_an_key_number>(value);
  return record->key == 0 ? &record->value : nullptr;
}

// The opacity that is added comes here itself, and is multiplied then. A color without alpha after
// one with alpha undoes that one's.
const char *svg_take_alpha(svg_parser *p, svg_a_node *value, char text[SVG_ALPHA_SIZE]) {
  if ((p->leniency & SVG_LENIENT_COLORS) == 0) return nullptr;
  const double alpha = std::exchange(p->alpha, 1);
  svg_alpha *alphas = p->alphas[p->source == SVG_SOURCE_IMPORTANT];
  for (int i = 0; i < SVG_ALPHAS; ++i) {
    svg_alpha &source = alphas[i];
    if (value->row == OPACITIES[i].opacity) {
      if (double *opacity = opacity_of(value)) {
        source.given = *opacity;
        *opacity *= source.alpha;
        if (source.alpha != 1) svg_note(p, 6, "\t\t\t[times alpha=%g]\n", source.alpha);
      }
      return nullptr;
    }
    if (value->row != OPACITIES[i].color || source.alpha == alpha) continue;
    source.alpha = alpha;
    *std::to_chars(text, text + SVG_ALPHA_SIZE - 1, source.given).ptr = '\0';
    return OPACITIES[i].name;
  }
  return nullptr;
}
