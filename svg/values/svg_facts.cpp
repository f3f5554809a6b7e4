// svg_facts.cpp: what records and numbers of the format mean, for hosts that do not want to write
// it down again. Nothing here allocates or raises.
#include <cstring>
#include <initializer_list>

#include "svg/svg.h"
#include "svg/tables/colors.h"
#include "svg/values/svg_record.h"

static uint32_t hex_number(const char *text, const char *end, char joker);

const char *svg_get_color_space_text(int32_t colortype) {
  return ort_get_keyword(colortype, svg_colortype_keylist);
}

const double *svg_get_components(const svg_color *color, int32_t *count) {
  const double *components = color->comps;
  *count = 0;
  switch (color->colortype) {
  case SVG_CT_DEVICE_GRAY: *count = 1; return components;
  case SVG_CT_DEVICE_RGB:
  case SVG_CT_CIELAB: *count = 3; return components;
  case SVG_CT_DEVICE_CMYK: *count = 4; return components;
  case SVG_CT_ICC1:
  case SVG_CT_ICC_NAMED: *count = 1; return components + 1;
  case SVG_CT_ICC3: *count = 3; return components + 1;
  case SVG_CT_ICC4: *count = 4; return components + 1;
  case SVG_CT_DEVICE_NCHANNEL:
    for (++components; components[*count] != SVG_CT_TERMINATOR;) ++*count;
    return components;
  default: return nullptr;
  }
}

int32_t svg_get_trafo_count(int32_t type) {
  switch (type) {
  case SVG_TRAFO_MATRIX: return 6;
  case SVG_TRAFO_SCALE_XY:
  case SVG_TRAFO_TRANSLATE_XY: return 2;
  default: return 1;
  }
}

void svg_get_matrix(const svg_an_trafo *trafo, double matrix[6]) {
  const double *numbers = trafo->numbers;
  ort_matrix m = {};
  switch (trafo->type) {
  case SVG_TRAFO_ROTATE: ort_rotation_matrix(&m, numbers[0]); break;
  case SVG_TRAFO_SCALE: ort_scale_matrix(&m, numbers[0], numbers[0]); break;
  case SVG_TRAFO_SCALE_XY: ort_scale_matrix(&m, numbers[0], numbers[1]); break;
  case SVG_TRAFO_SKEW_X: ort_skew_matrix(nullptr, &m, 0, numbers[0]); break;
  case SVG_TRAFO_SKEW_Y: ort_skew_matrix(nullptr, &m, numbers[0], 0); break;
  case SVG_TRAFO_TRANSLATE: ort_translation_matrix(&m, numbers[0], 0); break;
  case SVG_TRAFO_TRANSLATE_XY: ort_translation_matrix(&m, numbers[0], numbers[1]); break;
  default: m = {numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
  }
  for (const double number : {m.a, m.b, m.c, m.d, m.e, m.f}) *matrix++ = number;
}

int32_t svg_is_inherit(const svg_a_node *value) {
  switch (svg_get_record_kind(value->row)) {
  case SVG_RECORD_KEYWORD: return svg_record<svg_an_keyword>(value)->key == SVG_KW_inherit;
  case SVG_RECORD_KEY_NUMBER: return svg_record<svg_an_key_number>(value)->key == SVG_KW_inherit;
  case SVG_RECORD_KEY_UNUM: return svg_record<svg_an_key_unum>(value)->key == SVG_KW_inherit;
  case SVG_RECORD_CLIP: return svg_record<svg_an_clip>(value)->key == SVG_KW_inherit;
  case SVG_RECORD_KEY_LIST: {
    const auto *list = svg_record<svg_an_key_list>(value);
    return list->count == 1 && list->keys[0] == SVG_KW_inherit;
  }
  case SVG_RECORD_KEY_UNUM_LIST:
    return svg_record<svg_an_key_unum_list>(value)->key == SVG_KW_inherit;
  case SVG_RECORD_KEY_NAME_LIST: {
    const auto *list = svg_record<svg_an_key_name_list>(value);
    return list->count == 1 && list->keys[0] == SVG_KW_inherit;
  }
  case SVG_RECORD_PAINT: return value->kind == SVG_PAINT_INHERIT;
  case SVG_RECORD_COLOR_PROFILE:
    return svg_record<svg_an_color_profile>(value)->keyword == SVG_KW_inherit;
  case SVG_RECORD_NONE: // the rest have no keyword, or like IRIs and colors none of this name
  case SVG_RECORD_NUMBER:
  case SVG_RECORD_UNUM:
  case SVG_RECORD_ASPECT:
  case SVG_RECORD_VIEWBOX:
  case SVG_RECORD_STRING:
  case SVG_RECORD_NAME_LIST:
  case SVG_RECORD_NUM_LIST:
  case SVG_RECORD_UNUM_LIST:
  case SVG_RECORD_TRAFO:
  case SVG_RECORD_COLOR:
  case SVG_RECORD_IRI:
  case SVG_RECORD_PATH_DATA: return 0;
  }
  return 0;
}

int32_t svg_is_inherited(int32_t row) {
  switch (row) {
  case SVG_PROP_background_color: // of CSS 2.1, 14.2.1
  case SVG_PROP_baseline_shift:
  case SVG_PROP_clip:
  case SVG_PROP_clip_path:
  case SVG_PROP_display:
  case SVG_PROP_mask:
  case SVG_PROP_opacity:
  case SVG_PROP_overflow:
  case SVG_PROP_stop_color:
  case SVG_PROP_stop_opacity:
  case SVG_PROP_text_decoration:
  case SVG_PROP_unicode_bidi: return 0;
  default: return svg_is_property(row);
  }
}

const svg_pada *svg_get_segments(const svg_an_path_data *path, size_t *count) {
  *count = ort_vtr_count(path->segments);
  return *count > 0 ? static_cast<const svg_pada *>(ort_vtr_at(path->segments, 0)) : nullptr;
}

// ---- Ranges of characters (CSS 2, 15.3.6) --------------------------------------------------------

int32_t svg_get_urange(ort_core *, const char *text, uint32_t *first, uint32_t *last) {
  if (text[0] != 'U' || text[1] != '+' || text[2] == '\0') return 0;
  text += 2;
  const char *end = text + strcspn(text, "-");
  *first = *last = hex_number(text, end, '0');
  if (memchr(text, '?', static_cast<size_t>(end - text)))
    *last = hex_number(text, end, 'F'); // whatever follows the dash
  else if (*end == '-')
    *last = hex_number(end + 1, end + strlen(end), '0');
  return 1;
}

// joker stands for each "?". A byte that is no digit counts as 0.
static uint32_t hex_number(const char *text, const char *end, char joker) {
  uint32_t number = 0;
  for (; text < end; ++text) {
    const char digit[2] = {*text == '?' ? joker : *text, '\0'};
    number = number * 16 + static_cast<uint32_t>(ort_hex2bin_a(digit, ORT_HEX_DIGIT));
  }
  return number;
}
