// text.cpp: runs of text with Pango: how long they are, and how they are drawn.
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>

#include "tools/svgdraw/painter.h"

// Text is laid out at this size, whatever its own: Pango rounds what is small, and widens letters
// when the context's matrix makes them taller.
static constexpr double SIZE = 64;

static PangoLayout *lay_out(const svg_scene_run &run);
static PangoFontDescription *make_font(const svg_scene_style &style);
static double add_spacing(PangoLayout *layout, const svg_scene_run &run);
static void add_lines(cairo_t *context, PangoLayout *layout, int32_t lines, double width);

static double scale_of(const svg_scene_run &run) {
  return std::max(run.item.style->font_size, 1e-6) / SIZE;
}

double Painter::measure(const svg_scene_run &run) {
  PangoLayout *layout = lay_out(run);
  const double width = add_spacing(layout, run) * scale_of(run);
  g_object_unref(layout);
  return width;
}

// Where the run is laid out.
static void go_to(cairo_t *context, const svg_scene_run &run) {
  cairo_translate(context, run.x, run.y);
  cairo_rotate(context, run.rotate * (M_PI / 180));
  cairo_scale(context, run.stretch * scale_of(run), scale_of(run));
}

void Painter::bound_text(const svg_scene_run &run) {
  cairo_identity_matrix(cairo_);
  if (!apply(cairo_, run.item.ctm)) return;
  PangoLayout *layout = lay_out(run);
  add_spacing(layout, run);
  PangoRectangle ink;
  pango_layout_get_extents(layout, &ink, nullptr);
  const int baseline = pango_layout_get_baseline(layout);
  go_to(cairo_, run);
  cairo_rectangle(cairo_, pango_units_to_double(ink.x), pango_units_to_double(ink.y - baseline),
                  pango_units_to_double(ink.width), pango_units_to_double(ink.height));
  g_object_unref(layout);
}

void Painter::text(const svg_scene_run &run) {
  if (!enter(run.item.matrix)) return;
  const bool is_link = begin_link(run.link);
  PangoLayout *layout = lay_out(run); // nothing below raises
  const double width = add_spacing(layout, run);
  // Paints and strokes are those of the text's user space, in which the run has its place.
  const auto in_place = [&](const auto &add) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo_, &matrix);
    go_to(cairo_, run);
    add();
    cairo_set_matrix(cairo_, &matrix);
  };
  const auto effort = [&](const svg_scene_style *stroke) {
    return effort_of(run, stroke != nullptr);
  };
  for (size_t i = 0; i < run.decoration_count; ++i) {
    const svg_scene_decoration &decoration = run.decorations[i];
    paint(decoration.fill, decoration.stroke, *decoration.style, SVG_KW_nonzero, effort,
          [&](bool) { in_place([&] { add_lines(cairo_, layout, decoration.lines, width); }); });
  }
  paint(run.fill, run.stroke, *run.item.style, SVG_KW_nonzero, effort, [&](bool fills) {
    in_place([&] {
      cairo_move_to(cairo_, 0, 0);
      PangoLayoutLine *line = pango_layout_get_line(layout, 0);
      (fills ? pango_cairo_show_layout_line : pango_cairo_layout_line_path)(cairo_, line);
    });
  });
  g_object_unref(layout);
  if (is_link) cairo_tag_end(cairo_, CAIRO_TAG_LINK);
  cairo_restore(cairo_);
}

// One line.
static PangoLayout *lay_out(const svg_scene_run &run) {
  PangoContext *pango = pango_font_map_create_context(pango_cairo_font_map_get_default());
  PangoLayout *layout = pango_layout_new(pango);
  g_object_unref(pango); // the layout has it
  // Text has the same shape at every size: no hints, no rounding.
  cairo_font_options_t *options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(pango, options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(pango, FALSE);
  pango_context_set_base_dir(pango, run.item.style->direction == SVG_KW_rtl ? PANGO_DIRECTION_RTL
                                                                            : PANGO_DIRECTION_LTR);
  pango_layout_set_auto_dir(layout, FALSE);
  pango_layout_set_single_paragraph_mode(layout, TRUE);
  PangoFontDescription *font = make_font(*run.item.style);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  pango_layout_set_text(layout, run.text, static_cast<int>(run.length));
  return layout;
}

// After each character, as a scene wants it: Pango's own letter spacing leaves the ends of a line
// without. Returns the width of the layout.
static double add_spacing(PangoLayout *layout, const svg_scene_run &run) {
  double width = 0;
  for (GSList *item = pango_layout_get_line(layout, 0)->runs; item; item = item->next) {
    const auto *glyph_item = static_cast<PangoGlyphItem *>(item->data);
    PangoGlyphString *glyphs = glyph_item->glyphs;
    const char *text = run.text + glyph_item->item->offset;
    for (int i = 0; i < glyphs->num_glyphs; ++i) {
      PangoGlyphInfo &glyph = glyphs->glyphs[i];
      // The last glyph of its cluster, whichever way the text runs.
      const bool last =
          i + 1 == glyphs->num_glyphs || glyphs->log_clusters[i + 1] != glyphs->log_clusters[i];
      if (last) {
        double spacing = run.spacing;
        if (text[glyphs->log_clusters[i]] == ' ') spacing += run.item.style->word_spacing;
        glyph.geometry.width += static_cast<int>(spacing / scale_of(run) * PANGO_SCALE);
      }
      width += pango_units_to_double(glyph.geometry.width);
    }
  }
  return width;
}

static void add_lines(cairo_t *context, PangoLayout *layout, int32_t lines, double width) {
  PangoFontMetrics *metrics = pango_context_get_metrics(
      pango_layout_get_context(layout), pango_layout_get_font_description(layout), nullptr);
  const auto add = [&](int line, int top, int thickness) {
    if ((lines & line) != 0)
      cairo_rectangle(context, 0, -pango_units_to_double(top), width,
                      pango_units_to_double(thickness));
  };
  const int thickness = pango_font_metrics_get_underline_thickness(metrics);
  add(SVG_DECORATION_UNDERLINE, pango_font_metrics_get_underline_position(metrics), thickness);
  add(SVG_DECORATION_OVERLINE, pango_font_metrics_get_ascent(metrics), thickness);
  add(SVG_DECORATION_LINE_THROUGH, pango_font_metrics_get_strikethrough_position(metrics),
      pango_font_metrics_get_strikethrough_thickness(metrics));
  pango_font_metrics_unref(metrics);
}

static PangoFontDescription *make_font(const svg_scene_style &style) {
  std::string families;
  const svg_an_key_name_list *list = style.font_family;
  for (int32_t i = 0; list && i < list->count; ++i) {
    if (!families.empty()) families += ',';
    families += list->keys[i] != 0 ? svg_get_keyword_text(list->keys[i]) : list->names[i];
  }
  // Pango knows these keywords by the same names.
  PangoStretch stretch = PANGO_STRETCH_NORMAL;
  PangoStyle slant = PANGO_STYLE_NORMAL;
  PangoVariant variant = PANGO_VARIANT_NORMAL;
  pango_parse_stretch(svg_get_keyword_text(style.font_stretch), &stretch, FALSE);
  pango_parse_style(svg_get_keyword_text(style.font_style), &slant, FALSE);
  pango_parse_variant(svg_get_keyword_text(style.font_variant), &variant, FALSE);
  PangoFontDescription *font = pango_font_description_new();
  pango_font_description_set_family(font, families.empty() ? "serif" : families.c_str());
  pango_font_description_set_absolute_size(font, SIZE * PANGO_SCALE);
  pango_font_description_set_weight(font, static_cast<PangoWeight>(style.font_weight));
  pango_font_description_set_stretch(font, stretch);
  pango_font_description_set_style(font, slant);
  pango_font_description_set_variant(font, variant);
  return font;
}
