// text.cpp: runs of text with Pango: how long they are, and how they are drawn.
#include <pango/pangocairo.h>

#include <cmath>

#include "tools/svgdraw/painter.h"

namespace {

// A run laid out as one line.
class Line {
public:
  explicit Line(cairo_t *context, const svg_scene_run &run);
  ~Line() { g_object_unref(layout_); }
  Line(const Line &) = delete;
  Line &operator=(const Line &) = delete;

  double width() const { return width_; }
  // Shows the glyphs from the origin on, or adds them to the context's path.
  void draw(cairo_t *context, bool shows) const;
  // Adds lines (SVG_DECORATION_*), over the whole width.
  void add_lines(cairo_t *context, int32_t lines) const;

private:
  void add_spacing(const svg_scene_run &run);

  PangoLayout *layout_;
  PangoLayoutLine *line_; // of the layout
  double width_ = 0;
};

} // namespace

static PangoFontDescription *make_font(const svg_scene_style &style);

double Painter::measure(const svg_scene_run &run) { return Line(cairo_, run).width(); }

void Painter::text(const svg_scene_run &run) {
  if (!enter(run.item.matrix)) return;
  const bool is_link = begin_link(run.link);
  const Line line(cairo_, run);
  // Paints and strokes are those of the text's user space, in which the run has its place.
  const auto in_place = [&](const auto &add) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cairo_, &matrix);
    cairo_translate(cairo_, run.x, run.y);
    cairo_rotate(cairo_, run.rotate * (M_PI / 180));
    cairo_scale(cairo_, run.stretch, 1);
    add();
    cairo_set_matrix(cairo_, &matrix);
  };
  for (size_t i = 0; i < run.decoration_count; ++i) {
    const svg_scene_decoration &decoration = run.decorations[i];
    paint(decoration.fill, decoration.stroke, *decoration.style, SVG_KW_nonzero,
          [&](bool) { in_place([&] { line.add_lines(cairo_, decoration.lines); }); });
  }
  paint(run.fill, run.stroke, *run.item.style, SVG_KW_nonzero,
        [&](bool fills) { in_place([&] { line.draw(cairo_, fills); }); });
  if (is_link) cairo_tag_end(cairo_, CAIRO_TAG_LINK);
  cairo_restore(cairo_);
}

namespace {

Line::Line(cairo_t *context, const svg_scene_run &run)
    : layout_(pango_cairo_create_layout(context)) {
  const svg_scene_style &style = *run.item.style;
  PangoContext *pango = pango_layout_get_context(layout_);
  // Text has the same shape at every size: no hints, no rounding.
  cairo_font_options_t *options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(pango, options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(pango, FALSE);
  pango_context_set_base_dir(pango, style.direction == SVG_KW_rtl ? PANGO_DIRECTION_RTL
                                                                  : PANGO_DIRECTION_LTR);
  pango_layout_set_auto_dir(layout_, FALSE);
  pango_layout_set_single_paragraph_mode(layout_, TRUE);
  PangoFontDescription *font = make_font(style);
  pango_layout_set_font_description(layout_, font);
  pango_font_description_free(font);
  pango_layout_set_text(layout_, run.text, static_cast<int>(run.length));
  line_ = pango_layout_get_line(layout_, 0);
  add_spacing(run);
}

// After each character, as a scene wants it: Pango's own letter spacing leaves the ends of a line
// without.
void Line::add_spacing(const svg_scene_run &run) {
  for (GSList *item = line_->runs; item; item = item->next) {
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
        glyph.geometry.width += static_cast<int>(spacing * PANGO_SCALE);
      }
      width_ += pango_units_to_double(glyph.geometry.width);
    }
  }
}

void Line::draw(cairo_t *context, bool shows) const {
  double x = 0;
  for (GSList *item = line_->runs; item; item = item->next) {
    const auto *glyph_item = static_cast<PangoGlyphItem *>(item->data);
    cairo_move_to(context, x, 0);
    (shows ? pango_cairo_show_glyph_string : pango_cairo_glyph_string_path)(
        context, glyph_item->item->analysis.font, glyph_item->glyphs);
    x += pango_units_to_double(pango_glyph_string_get_width(glyph_item->glyphs));
  }
  if (shows) cairo_new_path(context);
}

void Line::add_lines(cairo_t *context, int32_t lines) const {
  PangoFontMetrics *metrics = pango_context_get_metrics(
      pango_layout_get_context(layout_), pango_layout_get_font_description(layout_), nullptr);
  const auto add = [&](int line, int top, int thickness) {
    if ((lines & line) != 0)
      cairo_rectangle(context, 0, -pango_units_to_double(top), width_,
                      pango_units_to_double(thickness));
  };
  const int thickness = pango_font_metrics_get_underline_thickness(metrics);
  add(SVG_DECORATION_UNDERLINE, pango_font_metrics_get_underline_position(metrics), thickness);
  add(SVG_DECORATION_OVERLINE, pango_font_metrics_get_ascent(metrics), thickness);
  add(SVG_DECORATION_LINE_THROUGH, pango_font_metrics_get_strikethrough_position(metrics),
      pango_font_metrics_get_strikethrough_thickness(metrics));
  pango_font_metrics_unref(metrics);
}

} // namespace

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
  pango_font_description_set_absolute_size(font, style.font_size * PANGO_SCALE);
  pango_font_description_set_weight(font, static_cast<PangoWeight>(style.font_weight));
  pango_font_description_set_stretch(font, stretch);
  pango_font_description_set_style(font, slant);
  pango_font_description_set_variant(font, variant);
  return font;
}
