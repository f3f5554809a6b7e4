// svg_fonts.cpp: the fonts that a document defines, and the search for one of them.
//
// svg_font_new is called by the hooks of font and font-face, which fill the list; hosts count and
// search it. Raises at most for lack of memory.
#include "svg/tree/svg_fonts.h"

#include <cmath>

namespace {

struct font_request {
  const char *family; // null: the generic family is asked for
  int32_t generic;
  double size;
  int32_t stretch, style, variant, weight;
};

} // namespace

static bool fits(const svg_font *font, const font_request &wanted, int32_t relaxed);
static bool fits_family(const svg_font *font, const font_request &wanted);
static bool fits_size(const svg_font *font, double size);
template <class Accepts> static bool any_key(const svg_an_key_list *list, Accepts accepts);
static int32_t svg_match_condition(int32_t relaxed, int32_t font_value, int32_t wanted);
static int32_t slanted(int32_t style);

svg_font *svg_font_new(svg_parser *p, svg_e_node *node) {
  auto *font = ort_new<svg_font>(p->core, "svg_font_new");
  font->id = p->cur_href;
  font->node = node;
  return font;
}

int32_t svg_normalize_font_weight(int32_t weight) {
  if (weight == SVG_KW_normal) return SVG_KW_400;
  return weight == SVG_KW_bold ? SVG_KW_700 : weight;
}

size_t svg_get_font_count(const svg_parser *p) { return ort_vtr_count(p->fonts); }

const svg_font *svg_get_font_at(const svg_parser *p, size_t i) {
  return i < ort_vtr_count(p->fonts) ? ort_item<svg_font *>(p->fonts, i) : nullptr;
}

svg_e_node *svg_get_font(const svg_parser *p, const char *family, int32_t generic, double size,
                         int32_t stretch, int32_t style, int32_t variant, int32_t weight) {
  const font_request wanted = {family, generic, size, stretch, style, variant, weight};
  for (int32_t relaxed = 0; relaxed <= 1; ++relaxed)
    for (size_t i = 0; i < ort_vtr_count(p->fonts); ++i)
      if (const auto *font = ort_item<svg_font *>(p->fonts, i); fits(font, wanted, relaxed))
        return font->node;
  return nullptr;
}

static bool fits(const svg_font *font, const font_request &wanted, int32_t relaxed) {
  return fits_family(font, wanted) && fits_size(font, wanted.size) &&
         any_key(
             font->stretch,
             [&](int32_t key) { return svg_match_condition(relaxed, key, wanted.stretch) != 0; }) &&
         any_key(font->style,
                 [&](int32_t key) {
                   return svg_match_condition(relaxed, slanted(key), slanted(wanted.style)) != 0;
                 }) &&
         any_key(font->variant, [&](int32_t key) { return key == wanted.variant; }) &&
         (relaxed || any_key(font->weight, [&](int32_t key) {
            return svg_match_condition(0, svg_normalize_font_weight(key), wanted.weight) != 0;
          }));
}

static bool fits_family(const svg_font *font, const font_request &wanted) {
  const svg_an_key_name_list *list = font->family;
  for (int32_t i = 0; list && i < list->count; ++i) {
    const char *name = list->names[i];
    if (!wanted.family ? list->keys[i] == wanted.generic
                       : name && ort_strcmp(name, wanted.family) == 0)
      return true;
  }
  return false;
}

static bool fits_size(const svg_font *font, double size) {
  const svg_an_key_unum_list *list = font->size;
  if (!list || list->key != SVG_KW_NONE) return true;
  for (int32_t i = 0; i < list->count; ++i)
    if (fabs(list->values[i] - size) < 1e-6) return true;
  return false;
}

// A font without the descriptor has any value; one with an empty list has none.
template <class Accepts> static bool any_key(const svg_an_key_list *list, Accepts accepts) {
  if (!list) return true;
  for (int32_t i = 0; i < list->count; ++i)
    if (accepts(list->keys[i])) return true;
  return false;
}

// "all" fits what is normal; in the relaxed pass it fits anything.
static int32_t svg_match_condition(int32_t relaxed, int32_t font_value, int32_t wanted) {
  if (font_value != SVG_KW_all) return font_value == wanted;
  return relaxed == 1 || wanted == SVG_KW_400 || wanted == SVG_KW_normal;
}

static int32_t slanted(int32_t style) { return style == SVG_KW_oblique ? SVG_KW_italic : style; }
