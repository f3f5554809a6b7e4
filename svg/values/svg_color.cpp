// svg_color.cpp: colors (SVG 1.1, 4.2 and 12.3; CSS2 system colors) with their extensions, and the
// paints made of them.
//
// Called by svg_parse_attr through the rows of svg_attr_table. A bad color is raised with
// svg_err_value; whatever goes wrong inside an extension, lack of memory included, is a warning
// and costs only the extension.
#include "svg/values/svg_color.h"

#include <cmath>
#include <cstring>

#include "svg/tables/colors.h"
#include "svg/values/svg_css_color.h"
#include "svg/values/svg_errors.h"
#include "svg/values/svg_iri.h"
#include "svg/values/svg_leniency.h"
#include "svg/values/svg_record.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

constexpr int MAX_VALUES = 40;   // of an extension, as far as they are read
constexpr int MAX_CHANNELS = 37; // of an N-channel color: the terminator always fits
constexpr double RADIANS_PER_DEGREE = 0.0174532925199433;

namespace {

struct color_values {
  int count;
  double numbers[MAX_VALUES];
};

} // namespace

static int32_t find_color(const char *name, const svg_rgb_entry *rows, int count);
static void expect(svg_scanner *p, int token, int wanted);
static bool get_fallback_keyword(svg_scanner *p, svg_iri *iri);
static uint32_t get_base_color(svg_scanner *p);
static uint32_t get_hex_color(svg_scanner *p);
static uint32_t get_rgb_color(svg_scanner *p);
static void get_extension(svg_scanner *p, svg_color *color);
static void get_extension_name(svg_scanner *p, svg_color *color);
static void get_values(svg_scanner *p, color_values *values);
static bool settle_values(int32_t *colortype, color_values *values);
static bool has_leading_slot(int32_t colortype);
static void convert_values(svg_color *color);
static void log_extension(const svg_host *p, const svg_color *color, const double *numbers,
                          int count);
static void drop_extension(ort_core *core, svg_color *color);
static svg_a_node *new_paint(svg_parser *p, uint8_t kind, size_t size);
static svg_a_node *new_color_paint(svg_parser *p);

int32_t svg_find_color(const char *name) {
  return find_color(name, svg_rgb_table, SVG_COLOR_COUNT);
}

int32_t svg_find_syscolor(const char *name) {
  return find_color(name, svg_sysrgb_table, SVG_SYSCOLOR_COUNT);
}

// Anything but an integer from 0 to 255 or a percentage from 0 to 100 is 0 and not clamped, unless
// the host wants it read leniently.
uint8_t svg_parse_color_comp(svg_scanner *p) {
  const int type = svg_ntok(p);
  if (type == SVG_TOK_INT && p->tok_int >= 0 && p->tok_int <= 255)
    return static_cast<uint8_t>(p->tok_int);
  if (type == SVG_TOK_PERCENT && p->tok_num >= 0 && p->tok_num <= 100)
    return static_cast<uint8_t>(p->tok_num * 255 / 100);
  if (p->leniency & SVG_LENIENT_COLORS) svg_err_value(p);
  return 0;
}

// The middle of the value's step of 1/256, with 0, 128 and 255 exact.
void svg_get_rgb_color_comps(double *out, double v) {
  const double whole = trunc(v);
  if (whole == 0)
    *out = 0;
  else if (whole == 128)
    *out = 0.5;
  else
    *out = whole == 255 ? 1 : fmin((whole + 0.5) * 0.00390625, 1);
}

int32_t svg_get_color(svg_scanner *p, svg_color *color) {
  *color = {.rgb = 0, .colortype = SVG_CT_NONE, .name = nullptr, .comps = nullptr};
  color->rgb = get_base_color(p);
  svg_note(p, 6, "\t\t\t[rgbcolor=#%06X]\n", color->rgb);
  if (svg_ntok(p) == SVG_TOK_END) return 0;
  expect(p, p->tok_type, SVG_TOK_STRING);
  if (ort_protected(p->core, [&] { get_extension(p, color); })) return 1;

  p->value_ok = 1;
  drop_extension(p->core, color);
  ort_warning(p->core, -1);
  return 0;
}

void svg_ctor_an_color(svg_parser *p, svg_a_node *node) {
  svg_color color;
  if (svg_ntok_nonum(p) == SVG_TOK_KEYWORD && svg_is_lenient(p, SVG_LENIENT_FALLBACKS)) {
    p->new_value = nullptr; // "inherit", for which the record has no place
    return;
  }
  svg_get_color(p, &color);
  drop_extension(p->core, &color);
  svg_record<svg_an_color>(node)->rgb = color.rgb;
}

svg_a_node *svg_anew_an_paint(svg_parser *p) {
  if (svg_ntok_nonum(p) == SVG_TOK_STRING) return new_color_paint(p);
  switch (svg_ctok_as_key(p)) {
  case SVG_KW_url: {
    svg_a_node *node = new_paint(p, SVG_PAINT_IRI, sizeof(svg_an_paint_iri));
    svg_init_iri(&svg_record<svg_an_paint_iri>(node)->iri);
    return node;
  }
  case SVG_KW_currentColor: return new_paint(p, SVG_PAINT_CURRENTCOLOR, sizeof(svg_a_node));
  case SVG_KW_inherit: return new_paint(p, SVG_PAINT_INHERIT, sizeof(svg_a_node));
  default: return new_paint(p, SVG_PAINT_NONE, sizeof(svg_a_node));
  }
}

void svg_ctor_an_paint(svg_parser *p, svg_a_node *node) {
  if (node->kind != SVG_PAINT_IRI) return;
  svg_iri *iri = &svg_record<svg_an_paint_iri>(node)->iri;
  svg_get_funciri(p, iri);
  if (svg_ntok_nonum(p) == SVG_TOK_END) return;
  if (p->tok_type == SVG_TOK_KEYWORD && get_fallback_keyword(p, iri)) return;
  svg_color fallback;
  svg_get_color(p, &fallback);
  drop_extension(p->core, &fallback);
  p->alpha = 1; // an opacity would be that of the paint server
  iri->fallback = static_cast<int32_t>(fallback.rgb);
  svg_note(p, 5, "\t\t\t[fallback color=%06X]\n", fallback.rgb);
}

static bool get_fallback_keyword(svg_scanner *p, svg_iri *iri) {
  const bool none = p->tok_key == SVG_KW_none;
  if (!none && p->tok_key != SVG_KW_currentColor) return false;
  if (!svg_is_lenient(p, SVG_LENIENT_FALLBACKS)) return false;
  iri->fallback = none ? SVG_FALLBACK_NONE : SVG_FALLBACK_CURRENTCOLOR;
  svg_note(p, 5, "\t\t\t[fallback %s]\n", p->tok_text);
  return true;
}

void svg_dtor_an_paint(ort_core *core, svg_a_node *node) {
  if (node->kind == SVG_PAINT_IRI)
    svg_dtor_iri(core, &svg_record<svg_an_paint_iri>(node)->iri);
  else if (node->kind == SVG_PAINT_COLOR)
    drop_extension(core, &svg_record<svg_an_paint_color>(node)->color);
}

static int32_t find_color(const char *name, const svg_rgb_entry *rows, int count) {
  int low = 0, high = count;
  while (low != high) {
    const int middle = (low + high) / 2;
    const int order = ort_stricmp_a(name, rows[middle].name);
    if (order == 0) return middle;
    if (order < 0)
      high = middle;
    else
      low = middle + 1;
  }
  return -1;
}

// token is the type of the current token.
static void expect(svg_scanner *p, int token, int wanted) {
  if (token != wanted) svg_err_value(p);
}

static uint32_t get_base_color(svg_scanner *p) {
  expect(p, p->tok_type, SVG_TOK_STRING);
  if (uint32_t rgb; (p->lenient & SVG_LENIENT_COLORS) && svg_get_css_color(p, &rgb)) {
    p->lenient_use |= SVG_LENIENT_COLORS;
    return rgb;
  }
  if (p->tok_text[0] == '#') return get_hex_color(p);
  if (ort_stricmp_a(p->tok_text, "rgb") == 0) return get_rgb_color(p);
  int32_t row = svg_find_color(p->tok_text);
  if (row >= 0) return svg_rgb_table[row].rgb;
  row = svg_find_syscolor(p->tok_text);
  if (row < 0) svg_err_value(p);
  return svg_sysrgb_table[row].rgb;
}

static uint32_t get_hex_color(svg_scanner *p) {
  const size_t length = strlen(p->tok_text);
  if (length != 4 && length != 7) svg_err_value(p);
  const int mode = length == 7 ? ORT_HEX_PAIR : ORT_HEX_TWICE;
  unsigned char bytes[3];
  for (size_t i = 0; i < 3; ++i)
    bytes[i] = static_cast<unsigned char>(ort_hex2bin_a(p->tok_text + 1 + i * (length / 3), mode));
  return ort_get_be_ulong3(bytes);
}

static uint32_t get_rgb_color(svg_scanner *p) {
  static constexpr int after[3] = {SVG_TOK_COMMA, SVG_TOK_COMMA, SVG_TOK_RPAREN};
  unsigned char bytes[3];
  expect(p, svg_ntok(p), SVG_TOK_LPAREN);
  for (int i = 0; i < 3; ++i) {
    bytes[i] = svg_parse_color_comp(p);
    expect(p, svg_ntok(p), after[i]);
  }
  return ort_get_be_ulong3(bytes);
}

static void get_extension(svg_scanner *p, svg_color *color) {
  color->colortype = ort_get_keycode_ci(p->tok_text, svg_colortype_keylist);
  if (color->colortype < 0) {
    svg_note(p, 5, "\t\t\t[colorspace \"%a\" %s]\n", p->tok_text, "unknown");
    svg_err_value(p);
  }
  expect(p, svg_ntok(p), SVG_TOK_LPAREN);
  svg_ntok(p);
  if (color->colortype == SVG_CT_ICC || color->colortype == SVG_CT_ICC_NAMED)
    get_extension_name(p, color);

  color_values values;
  get_values(p, &values);
  if (!settle_values(&color->colortype, &values)) svg_err_value(p);

  const bool leading = has_leading_slot(color->colortype);
  const auto count = static_cast<size_t>(values.count);
  color->comps = static_cast<double *>(
      ort_malloc(p->core, (count + leading) * sizeof(double), "svg_get_color"));
  if (leading) color->comps[0] = -1;
  memcpy(color->comps + leading, values.numbers, count * sizeof(double));
  convert_values(color);
  if (p->log_level >= 6) log_extension(p, color, color->comps + leading, values.count);
}

// The profile, or for a named color the profile, which is not kept, and the name.
static void get_extension_name(svg_scanner *p, svg_color *color) {
  expect(p, p->tok_type, SVG_TOK_STRING);
  if (color->colortype == SVG_CT_ICC_NAMED) {
    expect(p, svg_ntok(p), SVG_TOK_COMMA);
    expect(p, svg_ntok(p), SVG_TOK_STRING);
  }
  color->name = ort_strdup(p->core, p->tok_text);
  if (svg_ntok(p) == SVG_TOK_COMMA) svg_ntok(p);
}

static void get_values(svg_scanner *p, color_values *values) {
  values->count = 0;
  while (p->tok_type != SVG_TOK_RPAREN && values->count < MAX_VALUES) {
    if (values->count > 0 && p->tok_type == SVG_TOK_COMMA) svg_ntok(p);
    values->numbers[values->count++] = svg_ctok_as_num(p);
    svg_ntok(p);
  }
}

// Fits type and values to their number; false when the type cannot have that many.
static bool settle_values(int32_t *colortype, color_values *values) {
  int &count = values->count;
  switch (*colortype) {
  case SVG_CT_ICC:
    if (count == 1) *colortype = SVG_CT_ICC1;
    if (count == 3) *colortype = SVG_CT_ICC3;
    if (count == 4) *colortype = SVG_CT_ICC4;
    return count == 0 || *colortype != SVG_CT_ICC;
  case SVG_CT_ICC_NAMED:
    if (count == 0) values->numbers[count++] = 1; // the full tint
    return count == 1;
  case SVG_CT_DEVICE_NCHANNEL:
    if (count < 1 || count > MAX_CHANNELS) return false;
    values->numbers[count++] = SVG_CT_TERMINATOR;
    return true;
  case SVG_CT_CIELCH: // an infinite hue has no direction
    return count == 3 && std::isfinite(values->numbers[1]) && std::isfinite(values->numbers[2]);
  case SVG_CT_DEVICE_GRAY: return count == 1;
  case SVG_CT_DEVICE_CMYK: return count == 4;
  default: return count == 3;
  }
}

static bool has_leading_slot(int32_t colortype) {
  return (colortype >= SVG_CT_ICC && colortype <= SVG_CT_ICC4) || colortype >= SVG_CT_ICC_NAMED;
}

static void convert_values(svg_color *color) {
  double *c = color->comps;
  if (color->colortype == SVG_CT_DEVICE_RGB) {
    for (int i = 0; i < 3; ++i)
      if (c[i] != 0 && c[i] <= 1) return; // written as 0 to 1
    for (int i = 0; i < 3; ++i) svg_get_rgb_color_comps(&c[i], c[i]);
  } else if (color->colortype == SVG_CT_CIELCH) {
    const double chroma = c[1], hue = c[2] * RADIANS_PER_DEGREE;
    c[1] = chroma * cos(hue);
    c[2] = chroma * sin(hue);
    color->colortype = SVG_CT_CIELAB;
  }
}

static void log_extension(const svg_host *p, const svg_color *color, const double *numbers,
                          int count) {
  const char *keyword = ort_get_keyword(color->colortype, svg_colortype_keylist);
  ort_logg(p->core, "\t\t\t[Color extension ");
  if (color->name && color->colortype != SVG_CT_ICC)
    ort_logg(p->core, "%a(%a, ", keyword, color->name);
  else
    ort_logg(p->core, "%a(", keyword);
  for (int i = 0; i < count; ++i) ort_logg(p->core, "%g%s", numbers[i], i + 1 < count ? ", " : "");
  ort_logg(p->core, ")\n");
}

static void drop_extension(ort_core *core, svg_color *color) {
  ort_free(core, color->name);
  ort_free(core, color->comps);
  color->colortype = SVG_CT_NONE;
  color->name = nullptr;
  color->comps = nullptr;
}

// Just large enough for its kind; zeroed.
static svg_a_node *new_paint(svg_parser *p, uint8_t kind, size_t size) {
  auto *node = svg_a_node_new(p, size);
  node->kind = kind & 0x7F;
  return node;
}

static svg_a_node *new_color_paint(svg_parser *p) {
  svg_color color;
  svg_a_node *node = nullptr;
  if (!svg_get_color(p, &color)) {
    node = new_paint(p, SVG_PAINT_RGB, sizeof(svg_an_paint_rgb));
    svg_record<svg_an_paint_rgb>(node)->rgb = color.rgb;
    return node;
  }
  // Until the node exists nobody else owns the extension.
  if (!ort_protected(p->core,
                     [&] { node = new_paint(p, SVG_PAINT_COLOR, sizeof(svg_an_paint_color)); })) {
    drop_extension(p->core, &color);
    ort_rethrow(p->core);
  }
  svg_record<svg_an_paint_color>(node)->color = color;
  return node;
}
