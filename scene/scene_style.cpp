// scene_style.cpp: computed values (SVG 1.1, 6.2). One row for each property says where its value
// lies and how it is computed; what holds of several declarations is found before.
//
// The walk computes each element's style from that of its parent, svg_scene_get_style and
// svg_scene_find_place go down from the outermost element to the one that is asked for. Raises for
// lack of memory.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "scene/scene.h"
#include "scene/scene_view.h"

namespace {

// A style in the making.
struct computation {
  svg_scene *scene;
  const svg_scene_style *parent;
  const double *viewport;
  svg_scene_style *style;
};

// Puts a value that is not "inherit" into its field. A value that is out of range leaves the field
// as it is without one.
using compute_fn = void (*)(const computation &of, const svg_a_node *value, void *field);

struct property {
  int row;
  compute_fn compute;
  uint16_t offset, size; // of the field
};

// The declarations of one element that hold, by the places of their properties in PROPERTIES.
struct winners {
  uint64_t given;
  const svg_a_node *values[64];
};

} // namespace

static void set_keyword(const computation &of, const svg_a_node *value, void *field);
static void set_color(const computation &of, const svg_a_node *value, void *field);
static void set_paint(const computation &of, const svg_a_node *value, void *field);
static void set_opacity(const computation &of, const svg_a_node *value, void *field);
static void set_stop_opacity(const computation &of, const svg_a_node *value, void *field);
static void set_miter_limit(const computation &of, const svg_a_node *value, void *field);
static void set_stroke_width(const computation &of, const svg_a_node *value, void *field);
static void set_length(const computation &of, const svg_a_node *value, void *field);
static void set_dashes(const computation &of, const svg_a_node *value, void *field);
template <int ID> static void set_link(const computation &of, const svg_a_node *value, void *field);
static void set_clip(const computation &of, const svg_a_node *value, void *field);
static void set_family(const computation &of, const svg_a_node *value, void *field);
static void set_font_size(const computation &of, const svg_a_node *value, void *field);
static void set_size_adjust(const computation &of, const svg_a_node *value, void *field);
static void set_stretch(const computation &of, const svg_a_node *value, void *field);
static void set_weight(const computation &of, const svg_a_node *value, void *field);
static void set_baseline_shift(const computation &of, const svg_a_node *value, void *field);
static void set_kerning(const computation &of, const svg_a_node *value, void *field);
static void set_decoration(const computation &of, const svg_a_node *value, void *field);
static void set_profile(const computation &of, const svg_a_node *value, void *field);
static void find_winners(const svg_e_node *element, winners *found);
static void compute(const computation &of, const winners &found, int place);
static void reset(svg_scene_style *style);
static void set_initial(const svg_scene *scene, svg_scene_style *style);
static void enter_viewport(const svg_scene *scene, svg_scene_place *place);

template <class Record> static const Record &as(const svg_a_node *value) {
  return *reinterpret_cast<const Record *>(value);
}

namespace {

#define FIELD(name) offsetof(svg_scene_style, name), sizeof(svg_scene_style::name)
// Two fields that follow each other.
#define FIELDS(first, second)                                                                      \
  offsetof(svg_scene_style, first), offsetof(svg_scene_style, second) +                            \
                                        sizeof(svg_scene_style::second) -                          \
                                        offsetof(svg_scene_style, first)
// clang-format off
// What others are computed from comes first.
constexpr property PROPERTIES[] = {
    {SVG_PROP_font_size,         set_font_size,               FIELD(font_size)},
    {SVG_PROP_color,             set_color,                   FIELD(color)},
    {SVG_PROP_background_color,  set_paint,                   FIELD(background_color)},
    {SVG_PROP_baseline_shift,    set_baseline_shift,          FIELD(baseline_shift)},
    {SVG_PROP_clip,              set_clip,                    FIELDS(clip_key, clip_rect)},
    {SVG_PROP_clip_path,         set_link<SVG_ELEM_clipPath>, FIELD(clip_path)},
    {SVG_PROP_clip_rule,         set_keyword,                 FIELD(clip_rule)},
    {SVG_PROP_color_profile,     set_profile,                 FIELD(color_profile)},
    {SVG_PROP_direction,         set_keyword,                 FIELD(direction)},
    {SVG_PROP_display,           set_keyword,                 FIELD(display)},
    {SVG_PROP_fill,              set_paint,                   FIELD(fill)},
    {SVG_PROP_fill_opacity,      set_opacity,                 FIELD(fill_opacity)},
    {SVG_PROP_fill_rule,         set_keyword,                 FIELD(fill_rule)},
    {SVG_PROP_font_family,       set_family,                  FIELD(font_family)},
    {SVG_PROP_font_size_adjust,  set_size_adjust,             FIELD(font_size_adjust)},
    {SVG_PROP_font_stretch,      set_stretch,                 FIELD(font_stretch)},
    {SVG_PROP_font_style,        set_keyword,                 FIELD(font_style)},
    {SVG_PROP_font_variant,      set_keyword,                 FIELD(font_variant)},
    {SVG_PROP_font_weight,       set_weight,                  FIELD(font_weight)},
    {SVG_PROP_glyph_orientation_vertical, set_keyword,        FIELD(glyph_orientation_vertical)},
    {SVG_PROP_kerning,           set_kerning,                 FIELD(kerning)},
    {SVG_PROP_letter_spacing,    set_length,                  FIELD(letter_spacing)},
    {SVG_PROP_marker_end,        set_link<SVG_ELEM_marker>,   FIELD(marker_end)},
    {SVG_PROP_marker_mid,        set_link<SVG_ELEM_marker>,   FIELD(marker_mid)},
    {SVG_PROP_marker_start,      set_link<SVG_ELEM_marker>,   FIELD(marker_start)},
    {SVG_PROP_mask,              set_link<SVG_ELEM_mask>,     FIELD(mask)},
    {SVG_PROP_opacity,           set_opacity,                 FIELD(opacity)},
    {SVG_PROP_overflow,          set_keyword,                 FIELD(overflow)},
    {SVG_PROP_stop_color,        set_paint,                   FIELD(stop_color)},
    {SVG_PROP_stop_opacity,      set_stop_opacity,            FIELD(stop_opacity)},
    {SVG_PROP_stroke,            set_paint,                   FIELD(stroke)},
    {SVG_PROP_stroke_dasharray,  set_dashes,                  FIELDS(stroke_dasharray, stroke_dash_count)},
    {SVG_PROP_stroke_dashoffset, set_length,                  FIELD(stroke_dashoffset)},
    {SVG_PROP_stroke_linecap,    set_keyword,                 FIELD(stroke_linecap)},
    {SVG_PROP_stroke_linejoin,   set_keyword,                 FIELD(stroke_linejoin)},
    {SVG_PROP_stroke_miterlimit, set_miter_limit,             FIELD(stroke_miterlimit)},
    {SVG_PROP_stroke_opacity,    set_opacity,                 FIELD(stroke_opacity)},
    {SVG_PROP_stroke_width,      set_stroke_width,            FIELD(stroke_width)},
    {SVG_PROP_text_anchor,       set_keyword,                 FIELD(text_anchor)},
    {SVG_PROP_text_decoration,   set_decoration,              FIELD(text_decoration)},
    {SVG_PROP_unicode_bidi,      set_keyword,                 FIELD(unicode_bidi)},
    {SVG_PROP_visibility,        set_keyword,                 FIELD(visibility)},
    {SVG_PROP_word_spacing,      set_length,                  FIELD(word_spacing)},
    {SVG_PROP_writing_mode,      set_keyword,                 FIELD(writing_mode)},
};
// clang-format on
#undef FIELD
#undef FIELDS

// The shorthands have no field: "marker" stands for its three properties, and the reader makes the
// longhands of "font".
constexpr int PROPERTY_COUNT = std::size(PROPERTIES);
static_assert(PROPERTY_COUNT <= 64);

// The places of properties in PROPERTIES by their rows; -1 for other rows.
struct place_table {
  int16_t places[SVG_ATTR_COUNT];

  constexpr place_table() : places() {
    for (int16_t &place : places) place = -1;
    for (int i = 0; i < PROPERTY_COUNT; ++i) places[PROPERTIES[i].row] = static_cast<int16_t>(i);
  }
};
constexpr place_table PLACES;

} // namespace

void svg_scene_get_style(svg_scene *scene, const svg_e_node *element, svg_scene_style *style) {
  svg_scene_begin_result(scene);
  svg_scene_place place;
  svg_scene_find_place(scene, element, &place);
  *style = *place.style;
  svg_scene_end_result(scene);
}

void svg_scene_find_place(svg_scene *scene, const svg_e_node *element, svg_scene_place *place) {
  svg_scene_go_down(
      scene, element, place, [](void *, const svg_scene_place &) {}, nullptr);
}

// The ancestors are listed from the element up, then their styles are computed from the top down;
// those with decorations stay.
void svg_scene_go_down(svg_scene *scene, const svg_e_node *element, svg_scene_place *place,
                       void (*visit)(void *user, const svg_scene_place &around), void *user) {
  auto *style = svg_scene_take_one<svg_scene_style>(scene);
  auto *parent_style = svg_scene_take_one<svg_scene_style>(scene);
  const auto depth = static_cast<size_t>(element ? element->level : 0);
  auto *chain = svg_scene_take_array<const svg_e_node *>(scene, depth);
  size_t count = 0;
  for (const svg_e_node *e = element; e && count < depth; e = svg_get_parent(e)) chain[count++] = e;
  set_initial(scene, style);
  *place = {nullptr, style, {scene->size[0], scene->size[1]}};
  while (count-- > 0) {
    if (place->element) {
      visit(user, *place);
      enter_viewport(scene, place);
    }
    std::swap(style, parent_style);
    if (style->text_decoration != 0) style = svg_scene_take_one<svg_scene_style>(scene);
    svg_scene_compute_style(scene, chain[count], parent_style, place->viewport, style);
    place->element = chain[count];
    place->style = style;
  }
}

void svg_scene_find_inside(svg_scene *scene, const svg_e_node *element, svg_scene_place *place) {
  svg_scene_find_place(scene, element, place);
  if (element) enter_viewport(scene, place);
}

bool svg_scene_has_properties(const svg_e_node *element) {
  for (int32_t i = 0; i < element->values_num; ++i)
    if (svg_is_property(element->values[i]->row)) return true;
  return false;
}

bool svg_scene_compute_style(svg_scene *scene, const svg_e_node *element,
                             const svg_scene_style *parent, const double viewport[2],
                             svg_scene_style *style) {
  svg_scene_style initial;
  if (!parent) {
    set_initial(scene, &initial);
    parent = &initial;
  }
  *style = *parent;
  if (parent->text_decoration != 0) style->decorated = parent;
  reset(style);
  winners found;
  find_winners(element, &found);
  const computation of = {scene, parent, viewport, style};
  for (uint64_t rest = found.given; rest != 0; rest &= rest - 1)
    compute(of, found, std::countr_zero(rest));
  return found.given != 0;
}

// The last declaration holds, unless one before it is more important.
static void find_winners(const svg_e_node *element, winners *found) {
  found->given = 0;
  const auto declare = [found](int row, const svg_a_node *value) {
    const int place = PLACES.places[row];
    if (place < 0) return;
    const uint64_t bit = uint64_t{1} << place;
    if ((found->given & bit) != 0 && found->values[place]->important && !value->important) return;
    found->given |= bit;
    found->values[place] = value;
  };
  for (int32_t i = 0; i < element->values_num; ++i) {
    const svg_a_node *value = element->values[i];
    if (value->row == SVG_PROP_marker)
      for (const int row : {SVG_PROP_marker_start, SVG_PROP_marker_mid, SVG_PROP_marker_end})
        declare(row, value);
    else
      declare(value->row, value);
  }
}

static void compute(const computation &of, const winners &found, int place) {
  const property &property = PROPERTIES[place];
  const svg_a_node *value = found.values[place];
  char *field = reinterpret_cast<char *>(of.style) + property.offset;
  if (svg_is_inherit(value))
    std::copy_n(reinterpret_cast<const char *>(of.parent) + property.offset, property.size, field);
  else
    property.compute(of, value, field);
}

// The initial values of what is not inherited.
static void reset(svg_scene_style *style) {
  style->background_color = {SVG_PAINT_NONE, 0, nullptr, nullptr};
  style->stop_color = {SVG_PAINT_RGB, 0, nullptr, nullptr};
  style->stop_opacity = style->opacity = 1;
  style->clip_path = style->mask = nullptr;
  style->clip_key = SVG_KW_auto;
  std::fill_n(style->clip_rect, 4, 0.0);
  style->display = SVG_KW_inline;
  style->overflow = SVG_KW_hidden;
  style->baseline_shift = {SVG_KW_baseline, 0};
  style->unicode_bidi = SVG_KW_normal;
  style->text_decoration = 0;
}

// The initial values of all properties.
static void set_initial(const svg_scene *scene, svg_scene_style *style) {
  *style = {};
  reset(style);
  style->fill.kind = SVG_PAINT_RGB;
  style->fill_opacity = style->stroke_opacity = style->stroke_width = 1;
  style->fill_rule = style->clip_rule = SVG_KW_nonzero;
  style->stroke_linecap = SVG_KW_butt;
  style->stroke_linejoin = SVG_KW_miter;
  style->stroke_miterlimit = 4;
  style->visibility = SVG_KW_visible;
  style->font_size = scene->options.medium;
  style->font_size_adjust.key = SVG_KW_none;
  style->font_stretch = style->font_style = style->font_variant = SVG_KW_normal;
  style->font_weight = 400;
  style->kerning.key = SVG_KW_auto;
  style->text_anchor = SVG_KW_start;
  style->direction = SVG_KW_ltr;
  style->writing_mode = SVG_KW_lr_tb;
  style->glyph_orientation_vertical = SVG_KW_auto;
}

// What is in an svg element refers to its viewport, in the units of its viewBox (SVG 1.1, 7.10).
static void enter_viewport(const svg_scene *scene, svg_scene_place *place) {
  svg_scene_view view;
  if (place->element->head.id == SVG_ELEM_svg && svg_scene_find_view(scene, *place, nullptr, &view))
    std::copy_n(view.viewport, 2, place->viewport);
}

// ---- Values -------------------------------------------------------------------------------------

static void set_keyword(const computation &, const svg_a_node *value, void *field) {
  *static_cast<int32_t *>(field) = as<svg_an_keyword>(value).key;
}

static double length(const computation &of, double value, int unit) {
  return svg_scene_get_length(of.scene, value, unit, SVG_SCENE_OTHER, of.style->font_size,
                              of.viewport);
}

// Keywords stand for 0: none of stroke-dashoffset, normal of spacings.
static void set_length(const computation &of, const svg_a_node *value, void *field) {
  const auto &given = as<svg_an_key_unum>(value);
  const double result = given.key ? 0 : length(of, given.value, given.head.unit);
  if (std::isfinite(result)) *static_cast<double *>(field) = result;
}

static void set_opacity(const computation &, const svg_a_node *value, void *field) {
  *static_cast<double *>(field) = std::clamp(as<svg_an_key_number>(value).value, 0.0, 1.0);
}

static void set_stop_opacity(const computation &, const svg_a_node *value, void *field) {
  *static_cast<double *>(field) = std::clamp(as<svg_an_number>(value).value, 0.0, 1.0);
}

static void set_color(const computation &, const svg_a_node *value, void *field) {
  *static_cast<uint32_t *>(field) = as<svg_an_color>(value).rgb;
}

static void set_paint(const computation &of, const svg_a_node *value, void *field) {
  svg_scene_paint_value paint = {value->kind, 0, nullptr, nullptr};
  switch (value->kind) {
  case SVG_PAINT_CURRENTCOLOR:
    paint.kind = SVG_PAINT_RGB;
    paint.rgb = of.style->color;
    break;
  case SVG_PAINT_RGB: paint.rgb = as<svg_an_paint_rgb>(value).rgb; break;
  case SVG_PAINT_IRI: paint.iri = &as<svg_an_paint_iri>(value).iri; break;
  case SVG_PAINT_COLOR:
    paint.color = &as<svg_an_paint_color>(value).color;
    paint.rgb = paint.color->rgb;
    break;
  default: break;
  }
  *static_cast<svg_scene_paint_value *>(field) = paint;
}

// A link to an element of another kind is one that does not exist (SVG 1.1, 5.3.2).
template <int ID> static void set_link(const computation &, const svg_a_node *value, void *field) {
  const svg_iri &iri = as<svg_an_iri>(value).iri;
  const svg_e_node *target = iri.kind == SVG_IRI_LINK ? iri.ref.target : nullptr;
  *static_cast<const svg_e_node **>(field) = target && target->head.id == ID ? target : nullptr;
}

static void set_clip(const computation &of, const svg_a_node *value, void *) {
  const auto &clip = as<svg_an_clip>(value);
  if (!std::all_of(clip.rect, clip.rect + 4, [](double side) { return std::isfinite(side); }))
    return;
  of.style->clip_key = clip.key;
  std::copy_n(clip.rect, 4, of.style->clip_rect);
}

static void set_profile(const computation &, const svg_a_node *value, void *field) {
  const auto *profile = &as<svg_an_color_profile>(value);
  *static_cast<const svg_an_color_profile **>(field) =
      profile->keyword == SVG_KW_auto ? nullptr : profile;
}

// ---- Strokes ------------------------------------------------------------------------------------

static void set_miter_limit(const computation &, const svg_a_node *value, void *field) {
  const double limit = as<svg_an_key_number>(value).value;
  if (limit >= 1 && std::isfinite(limit)) *static_cast<double *>(field) = limit;
}

static void set_stroke_width(const computation &of, const svg_a_node *value, void *field) {
  const auto &given = as<svg_an_key_unum>(value);
  const double width = length(of, given.value, given.head.unit);
  if (width >= 0 && std::isfinite(width)) *static_cast<double *>(field) = width;
}

// A list with an odd number of dashes counts twice (SVG 1.1, 11.4); one with a negative dash is
// void.
static void set_dashes(const computation &of, const svg_a_node *value, void *) {
  const auto &list = as<svg_an_key_unum_list>(value);
  const auto given = static_cast<size_t>(list.count);
  const size_t count = given % 2 == 0 ? given : 2 * given;
  const svg_scene_mark mark = of.scene->top;
  auto *dashes = svg_scene_take_array<double>(of.scene, count);
  double sum = 0;
  for (size_t i = 0; i < count; ++i) {
    dashes[i] = length(of, list.values[i % given], list.units[i % given]);
    sum = dashes[i] >= 0 ? sum + dashes[i] : HUGE_VAL;
  }
  const bool is_void = !std::isfinite(sum);
  if (is_void || sum == 0) svg_scene_release(of.scene, mark);
  if (is_void) return;
  of.style->stroke_dasharray = sum > 0 ? dashes : nullptr;
  of.style->stroke_dash_count = sum > 0 ? count : 0;
}

// ---- Fonts and text -----------------------------------------------------------------------------

static void set_family(const computation &, const svg_a_node *value, void *field) {
  *static_cast<const svg_an_key_name_list **>(field) = &as<svg_an_key_name_list>(value);
}

// Keywords by the factors of CSS 2.1, 15.7; em, ex and percentages are of the parent's size.
static void set_font_size(const computation &of, const svg_a_node *value, void *field) {
  static constexpr struct {
    int32_t key;
    double numerator, denominator;
  } keywords[] = {{SVG_KW_xx_small, 3, 5}, {SVG_KW_x_small, 3, 4}, {SVG_KW_small, 8, 9},
                  {SVG_KW_medium, 1, 1},   {SVG_KW_large, 6, 5},   {SVG_KW_x_large, 3, 2},
                  {SVG_KW_xx_large, 2, 1}};
  const auto &given = as<svg_an_key_unum>(value);
  const double of_parent = of.parent->font_size;
  double size = of_parent;
  if (given.key == 0)
    size = given.head.unit == SVG_UNIT_PERCENT
               ? given.value / 100 * of_parent
               : svg_scene_get_length(of.scene, given.value, given.head.unit, SVG_SCENE_OTHER,
                                      of_parent, of.viewport);
  if (given.key == SVG_KW_larger) size = of_parent * 1.2;
  if (given.key == SVG_KW_smaller) size = of_parent / 1.2;
  for (const auto &known : keywords)
    if (known.key == given.key)
      size = of.scene->options.medium * known.numerator / known.denominator;
  if (size >= 0 && std::isfinite(size)) *static_cast<double *>(field) = size;
}

static void set_size_adjust(const computation &, const svg_a_node *value, void *field) {
  const auto &given = as<svg_an_key_number>(value);
  if (std::isfinite(given.value))
    *static_cast<svg_scene_number *>(field) = {given.key, given.key ? 0 : given.value};
}

// wider and narrower are the next one after the parent's (CSS 2, 15.2.3).
static void set_stretch(const computation &of, const svg_a_node *value, void *field) {
  static constexpr int32_t stretches[] = {
      SVG_KW_ultra_condensed, SVG_KW_extra_condensed, SVG_KW_condensed,
      SVG_KW_semi_condensed,  SVG_KW_normal,          SVG_KW_semi_expanded,
      SVG_KW_expanded,        SVG_KW_extra_expanded,  SVG_KW_ultra_expanded};
  int32_t key = as<svg_an_keyword>(value).key;
  const int step = key == SVG_KW_wider ? 1 : key == SVG_KW_narrower ? -1 : 0;
  if (step != 0) {
    const auto *inherited =
        std::find(std::begin(stretches), std::end(stretches), of.parent->font_stretch);
    const ptrdiff_t place = inherited - stretches + step;
    key = stretches[std::clamp<ptrdiff_t>(place, 0, std::ssize(stretches) - 1)];
  }
  *static_cast<int32_t *>(field) = key;
}

// bolder and lighter by the table of CSS 2.1, 15.6.
static int32_t get_weight(int32_t key, int32_t parent) {
  switch (key) {
  case SVG_KW_100: return 100;
  case SVG_KW_200: return 200;
  case SVG_KW_300: return 300;
  case SVG_KW_500: return 500;
  case SVG_KW_600: return 600;
  case SVG_KW_bold:
  case SVG_KW_700: return 700;
  case SVG_KW_800: return 800;
  case SVG_KW_900: return 900;
  case SVG_KW_bolder: return parent < 400 ? 400 : parent < 600 ? 700 : 900;
  case SVG_KW_lighter: return parent < 600 ? 100 : parent < 800 ? 400 : 700;
  default: return 400;
  }
}

static void set_weight(const computation &of, const svg_a_node *value, void *field) {
  *static_cast<int32_t *>(field) =
      get_weight(as<svg_an_keyword>(value).key, of.parent->font_weight);
}

// A percentage is of the line-height (SVG 1.1, 10.9.2), which is the font-size.
static void set_baseline_shift(const computation &of, const svg_a_node *value, void *field) {
  const auto &given = as<svg_an_key_unum>(value);
  const bool is_percent = given.head.unit == SVG_UNIT_PERCENT;
  const double shift = is_percent ? given.value / 100 * of.style->font_size
                                  : length(of, given.value, given.head.unit);
  if (given.key != 0 || std::isfinite(shift))
    *static_cast<svg_scene_number *>(field) = {given.key, given.key ? 0 : shift};
}

static void set_kerning(const computation &of, const svg_a_node *value, void *field) {
  const auto &given = as<svg_an_key_unum>(value);
  const double kern = given.key ? 0 : length(of, given.value, given.head.unit);
  if (std::isfinite(kern)) *static_cast<svg_scene_number *>(field) = {given.key, kern};
}

static void set_decoration(const computation &, const svg_a_node *value, void *field) {
  const auto &list = as<svg_an_key_list>(value);
  int32_t lines = 0;
  for (int32_t i = 0; i < list.count; ++i) {
    switch (list.keys[i]) {
    case SVG_KW_underline: lines |= SVG_DECORATION_UNDERLINE; break;
    case SVG_KW_overline: lines |= SVG_DECORATION_OVERLINE; break;
    case SVG_KW_line_through: lines |= SVG_DECORATION_LINE_THROUGH; break;
    case SVG_KW_blink: lines |= SVG_DECORATION_BLINK; break;
    default: break;
    }
  }
  *static_cast<int32_t *>(field) = lines;
}
