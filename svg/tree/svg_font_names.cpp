// svg_font_names.cpp: the names of fonts, made of their families and descriptors.
//
// Called by hosts, by the driver and by the hook of font-face for the log. Raises at most for lack
// of memory.
#include "svg/parser/svg_parser.h"
#include "svg/svg.h"

static void append_text(ort_bs *name, const char *text);
static void append_family(ort_bs *name, const svg_font *font);
template <class Map> static void append_keys(ort_bs *name, const svg_an_key_list *list, Map map);
static void append_sizes(svg_host *p, ort_bs *name, const svg_an_key_unum_list *sizes);

// clang-format off
static const ort_keyword svg_font_keylist[] = { // "all", "bold" and "inherit" have no text in names
    {"cursive",         SVG_KW_cursive},
    {"fantasy",         SVG_KW_fantasy},
    {"monospace",       SVG_KW_monospace},
    {"sans-serif",      SVG_KW_sans_serif},
    {"serif",           SVG_KW_serif},
    {"100",             SVG_KW_100},
    {"200",             SVG_KW_200},
    {"300",             SVG_KW_300},
    {"400",             SVG_KW_400},
    {"500",             SVG_KW_500},
    {"600",             SVG_KW_600},
    {"700",             SVG_KW_700},
    {"800",             SVG_KW_800},
    {"900",             SVG_KW_900},
    {"normal",          SVG_KW_normal},
    {"italic",          SVG_KW_italic},
    {"oblique",         SVG_KW_oblique},
    {"ultra-condensed", SVG_KW_ultra_condensed},
    {"extra-condensed", SVG_KW_extra_condensed},
    {"condensed",       SVG_KW_condensed},
    {"semi-condensed",  SVG_KW_semi_condensed},
    {"semi-expanded",   SVG_KW_semi_expanded},
    {"expanded",        SVG_KW_expanded},
    {"extra-expanded",  SVG_KW_extra_expanded},
    {"ultra-expanded",  SVG_KW_ultra_expanded},
    {"small-caps",      SVG_KW_small_caps},
    {nullptr,           0},
};
// clang-format on

svg_e_node *svg_get_first_font(svg_parser *p, ort_bs *name) {
  const svg_font *font = svg_get_font_at(p, 0);
  if (!font) return nullptr;
  if (name) svg_create_fontname(p, font, name);
  return font->node;
}

void svg_create_fontname(svg_parser *p, const svg_font *font, ort_bs *name) {
  constexpr size_t underscores = 5; // of a name without descriptors
  const auto same = [](int32_t key) { return key; };
  append_family(name, font);
  if (p->font_number > 0) {
    ort_bs_append_byte(name, '-');
    ort_bs_append_text(name, ort_errprintf(p->core, "%d", p->font_number));
  }
  const size_t length = ort_bs_length(name);
  append_keys(name, font->weight, svg_normalize_font_weight);
  append_keys(name, font->style, same);
  append_keys(name, font->stretch, same);
  append_keys(name, font->variant,
              [](int32_t key) { return key == SVG_KW_normal ? SVG_KW_NONE : key; });
  append_sizes(p, name, font->size);
  if (ort_bs_length(name) == length + underscores) ort_bs_shorten(name, length);
}

static void append_text(ort_bs *name, const char *text) {
  if (text) ort_bs_append_escaped(name, text);
}

static void append_family(ort_bs *name, const svg_font *font) {
  const svg_an_key_name_list *list = font->family;
  if (!list || list->count == 0) {
    append_text(name, font->id ? font->id : "*");
    return;
  }
  for (int32_t i = 0; i < list->count; ++i) {
    if (i > 0) ort_bs_append_byte(name, ',');
    const char *text = list->names[i];
    append_text(name, text ? text : ort_get_keyword(list->keys[i], svg_font_keylist));
  }
}

// A keyword without text leaves its separator behind.
template <class Map> static void append_keys(ort_bs *name, const svg_an_key_list *list, Map map) {
  ort_bs_append_byte(name, '_');
  for (int32_t i = 0; list && i < list->count; ++i) {
    if (i > 0) ort_bs_append_byte(name, ',');
    append_text(name, ort_get_keyword(map(list->keys[i]), svg_font_keylist));
  }
}

static void append_sizes(svg_host *p, ort_bs *name, const svg_an_key_unum_list *sizes) {
  ort_bs_append_byte(name, '_');
  if (!sizes || sizes->key != SVG_KW_NONE) return;
  for (int32_t i = 0; i < sizes->count; ++i) {
    if (i > 0) ort_bs_append_byte(name, ',');
    ort_bs_append_text(name, ort_errprintf(p->core, "%g", sizes->values[i]));
  }
}
