// text.cpp: runs of text with Pango: how long they are, and how they are drawn.
#include <pango/pangocairo.h>

#include <cstring>

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
  // Adds the glyphs to the context's path, or shows them, from the current origin.
  void add_outlines(cairo_t *context) const { place(context, pango_cairo_glyph_string_path); }
  void show(cairo_t *context) const { place(context, pango_cairo_show_glyph_string); }
  // The same for lines (SVG_DECORATION_*), over the whole width.
  void add_lines(cairo_t *context, int32_t lines) const;

private:
  using Draw = void (*)(cairo_t *, PangoFont *, PangoGlyphString *);
  void add_spacing(const svg_scene_run &run);
  void place(cairo_t *context, Draw draw) const;

  PangoLayout *layout_;
  PangoLayoutLine *line_; // of the layout
  double width_ = 0;
};

} // namespace

static PangoFontDescription *make_font(const svg_scene_style &style);

double Painter::measure(const svg_scene_run &run) { return Line(cairo_, run).width(); }

void Painter::text(const svg_scene_run &run) {
  if (hidden() || !can_apply(cairo_, run.item.matrix)) return;
  cairo_save(cairo_);
  apply(cairo_, run.item.matrix);
  const bool has_link = begin_link(run.link);
  // Paints are those of the text's user space, so they are set before the run has its place.
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo_, &matrix);
  const auto place = [&] {
    cairo_translate(cairo_, run.x, run.y);
    cairo_rotate(cairo_, run.rotate * (3.14159265358979323846 / 180));
    cairo_scale(cairo_, run.stretch, 1);
    cairo_new_path(cairo_);
  };
  place();
  const Line line(cairo_, run); // walk() lets no error of a pattern's content jump past it
  cairo_set_matrix(cairo_, &matrix);
  for (size_t i = 0; i < run.decoration_count; ++i) {
    const svg_scene_decoration &decoration = run.decorations[i];
    if (decoration.fill.kind != SVG_SCENE_PAINT_NONE && set_source(decoration.fill, 1)) {
      place();
      line.add_lines(cairo_, decoration.lines);
      set_fill_rule(cairo_, SVG_KW_nonzero);
      cairo_fill(cairo_);
      cairo_set_matrix(cairo_, &matrix);
    }
    if (decoration.stroke.kind != SVG_SCENE_PAINT_NONE && set_source(decoration.stroke, 1)) {
      place();
      line.add_lines(cairo_, decoration.lines);
      set_stroke(*decoration.style);
      cairo_stroke(cairo_);
      cairo_set_matrix(cairo_, &matrix);
    }
  }
  if (run.fill.kind != SVG_SCENE_PAINT_NONE && set_source(run.fill, 1)) {
    place();
    line.show(cairo_);
    cairo_set_matrix(cairo_, &matrix);
  }
  if (run.stroke.kind != SVG_SCENE_PAINT_NONE && set_source(run.stroke, 1)) {
    place();
    line.add_outlines(cairo_);
    set_stroke(*run.item.style);
    cairo_stroke(cairo_);
  }
  if (has_link) cairo_tag_end(cairo_, CAIRO_TAG_LINK);
  cairo_new_path(cairo_);
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
      width_ += glyph.geometry.width / double{PANGO_SCALE};
    }
  }
}

void Line::place(cairo_t *context, Draw draw) const {
  double x = 0;
  for (GSList *item = line_->runs; item; item = item->next) {
    const auto *glyph_item = static_cast<PangoGlyphItem *>(item->data);
    cairo_move_to(context, x, 0);
    draw(context, glyph_item->item->analysis.font, glyph_item->glyphs);
    for (int i = 0; i < glyph_item->glyphs->num_glyphs; ++i)
      x += glyph_item->glyphs->glyphs[i].geometry.width / double{PANGO_SCALE};
  }
}

void Line::add_lines(cairo_t *context, int32_t lines) const {
  PangoFontMetrics *metrics = pango_context_get_metrics(
      pango_layout_get_context(layout_), pango_layout_get_font_description(layout_), nullptr);
  const auto add = [&](int line, int top, int thickness) {
    if ((lines & line) != 0)
      cairo_rectangle(context, 0, -top / double{PANGO_SCALE}, width_,
                      thickness / double{PANGO_SCALE});
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
  static constexpr struct {
    int32_t keyword;
    PangoStretch stretch;
  } stretches[] = {
      {SVG_KW_ultra_condensed, PANGO_STRETCH_ULTRA_CONDENSED},
      {SVG_KW_extra_condensed, PANGO_STRETCH_EXTRA_CONDENSED},
      {SVG_KW_condensed, PANGO_STRETCH_CONDENSED},
      {SVG_KW_semi_condensed, PANGO_STRETCH_SEMI_CONDENSED},
      {SVG_KW_semi_expanded, PANGO_STRETCH_SEMI_EXPANDED},
      {SVG_KW_expanded, PANGO_STRETCH_EXPANDED},
      {SVG_KW_extra_expanded, PANGO_STRETCH_EXTRA_EXPANDED},
      {SVG_KW_ultra_expanded, PANGO_STRETCH_ULTRA_EXPANDED},
  };
  std::string families;
  const svg_an_key_name_list *list = style.font_family;
  for (int32_t i = 0; list && i < list->count; ++i) {
    if (!families.empty()) families += ',';
    families += list->keys[i] != 0 ? svg_get_keyword_text(list->keys[i]) : list->names[i];
  }
  PangoFontDescription *font = pango_font_description_new();
  pango_font_description_set_family(font, families.empty() ? "serif" : families.c_str());
  pango_font_description_set_absolute_size(font, style.font_size * PANGO_SCALE);
  pango_font_description_set_weight(font, static_cast<PangoWeight>(style.font_weight));
  pango_font_description_set_style(font, style.font_style == SVG_KW_italic    ? PANGO_STYLE_ITALIC
                                         : style.font_style == SVG_KW_oblique ? PANGO_STYLE_OBLIQUE
                                                                              : PANGO_STYLE_NORMAL);
  if (style.font_variant == SVG_KW_small_caps)
    pango_font_description_set_variant(font, PANGO_VARIANT_SMALL_CAPS);
  for (const auto &[keyword, stretch] : stretches)
    if (style.font_stretch == keyword) pango_font_description_set_stretch(font, stretch);
  return font;
}
