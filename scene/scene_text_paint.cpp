// scene_text_paint.cpp: paints the pieces of a text: runs in fonts of the host, shapes for the
// glyphs and lines in fonts of the drawing.
#include <algorithm>
#include <cmath>
#include <iterator>

#include "scene/scene_paint.h"
#include "scene/scene_text.h"

static constexpr size_t DECORATIONS = 16; // of one span; those of more elements around do not show

static void add_cells(svg_scene_extent *extent, const svg_scene_text &text, const double matrix[6]);
static void paint(svg_scene_text *text, const double matrix[6]);
static void begin_link(const svg_scene_text *text, const svg_scene_span *span,
                       const double matrix[6], svg_scene_group *group);
static void resolve(svg_scene_text *text, svg_scene_span *span);
static const double *box_of(svg_scene_text *text, const svg_scene_style &style);
static void add_decorations(svg_scene_text *text, svg_scene_span *span);
static void paint_run(const svg_scene_text *text, const svg_scene_piece *piece,
                      const double matrix[6], bool is_first, bool is_last);
static void paint_glyphs(const svg_scene_text *text, const svg_scene_piece *piece,
                         const double matrix[6]);
static void paint_outline(const svg_scene_text *text, const svg_scene_span *span,
                          const svg_e_node *element, const svg_scene_path &path,
                          const double to_text[6], const double matrix[6]);
static void paint_lines(const svg_scene_text *text, const svg_scene_piece *piece,
                        const double to_text[6], const double matrix[6]);

void svg_scene_show_text(svg_scene_walk *walk, svg_scene_frame *frame, const double matrix[6]) {
  svg_scene_text text = {};
  text.walk = walk;
  text.frame = frame;
  text.is_measured = walk->callbacks && walk->callbacks->measure;
  const int32_t mode = frame->style->writing_mode;
  text.is_vertical = mode == SVG_KW_tb || mode == SVG_KW_tb_rl;
  svg_scene_gather_text(&text);
  svg_scene_place_text(&text);
  if (walk->purpose == SVG_SCENE_MEASURE) {
    add_cells(walk->extent, text, frame->ctm);
    return;
  }
  if (svg_scene_has_effects(walk, frame)) {
    svg_scene_begin_group(walk, frame, matrix, nullptr, true, nullptr);
    matrix = SVG_SCENE_IDENTITY;
  }
  paint(&text, matrix);
  if (frame->group) svg_scene_end_group(walk, frame);
}

static bool is_visible(const svg_scene_piece *piece) {
  return piece->span->style->visibility == SVG_KW_visible;
}

// From a piece's line, its origin at its first character, to the text's user space.
static void matrix_of(const svg_scene_piece *piece, double matrix[6]) {
  const double angle = piece->rotate * (M_PI / 180), c = std::cos(angle), s = std::sin(angle);
  const double result[6] = {c * piece->stretch,   s * piece->stretch,  -s, c,
                            piece->x + piece->dx, piece->y + piece->dy};
  std::copy_n(result, 6, matrix);
}

static void add_cells(svg_scene_extent *extent, const svg_scene_text &text,
                      const double matrix[6]) {
  for (const svg_scene_piece *piece = text.first; piece; piece = piece->next) {
    if (piece->size == 0 || piece->is_off) continue;
    if (!piece->is_placed) {
      extent->is_open = true;
      continue;
    }
    const svg_scene_font *font = piece->span->font;
    const double size = piece->span->style->font_size;
    const double up = font ? font->ascent / font->units : 0.8;
    const double down = font ? font->descent / font->units : 0.2;
    const double cell[4] = {0, -up * size, piece->advance, (up + down) * size};
    double to_text[6];
    matrix_of(piece, to_text);
    svg_scene_multiply(to_text, matrix, to_text);
    svg_scene_add_box(extent, cell, to_text);
  }
}

// A piece in a font of the drawing whose place is not known is left to the host, too.
static bool is_run(const svg_scene_piece *piece) {
  return piece->size != 0 && !piece->is_off &&
         (piece->is_placed ? !piece->span->font && is_visible(piece) : true);
}

static bool is_glyphs(const svg_scene_piece *piece) {
  return piece->size != 0 && !piece->is_off && piece->is_placed && piece->span->font &&
         is_visible(piece);
}

static void paint(svg_scene_text *text, const double matrix[6]) {
  const svg_scene_walk *walk = text->walk;
  const svg_scene_piece *first = nullptr, *last = nullptr;
  for (const svg_scene_piece *piece = text->first; piece; piece = piece->next) {
    if (!is_run(piece)) continue;
    if (!first) first = piece;
    last = piece;
  }
  const svg_e_node *link = nullptr; // of the group that has begun
  svg_scene_group group;
  for (svg_scene_piece *piece = text->first; piece; piece = piece->next) {
    const bool has_glyphs = is_glyphs(piece);
    const svg_e_node *wanted =
        has_glyphs && walk->purpose == SVG_SCENE_PAINT ? piece->span->link : nullptr;
    if (link && link != wanted && walk->callbacks->end_group)
      walk->callbacks->end_group(walk->user, &group);
    if (has_glyphs || is_run(piece)) resolve(text, piece->span);
    if (wanted && link != wanted) begin_link(text, piece->span, matrix, &group);
    link = wanted;
    if (has_glyphs)
      paint_glyphs(text, piece, link ? SVG_SCENE_IDENTITY : matrix);
    else if (is_run(piece))
      paint_run(text, piece, matrix, piece == first, piece == last);
  }
  if (link && walk->callbacks->end_group) walk->callbacks->end_group(walk->user, &group);
}

// The group of glyphs in an a within the text.
static void begin_link(const svg_scene_text *text, const svg_scene_span *span,
                       const double matrix[6], svg_scene_group *group) {
  const svg_scene_walk *walk = text->walk;
  *group = {};
  group->item = svg_scene_make_item(text->frame, matrix);
  group->item.element = span->link;
  group->opacity = 1;
  group->link = svg_scene_link_of(span->link);
  if (walk->callbacks->begin_group) walk->callbacks->begin_group(walk->user, group);
}

// ---- Paints -------------------------------------------------------------------------------------

static void resolve(svg_scene_text *text, svg_scene_span *span) {
  if (span->is_resolved) return;
  span->is_resolved = true;
  svg_scene_find_paints_of(text->walk, text->frame, *span->style, box_of(text, *span->style),
                           &span->fill, &span->stroke);
  if (text->walk->purpose != SVG_SCENE_CLIP) add_decorations(text, span);
}

// The box of the whole text, measured when a paint first is relative to it; else null.
static const double *box_of(svg_scene_text *text, const svg_scene_style &style) {
  svg_scene *scene = text->walk->scene;
  if (!svg_scene_paint_needs_box(scene, style.fill) &&
      !svg_scene_paint_needs_box(scene, style.stroke))
    return nullptr;
  if (!text->has_looked) {
    svg_scene_extent extent;
    add_cells(&extent, *text, SVG_SCENE_IDENTITY);
    if (extent.is_open)
      text->box = SVG_SCENE_UNIT_BOX;
    else if (svg_scene_get_extent(extent, text->room))
      text->box = text->room;
    text->has_looked = true;
  }
  return text->box;
}

// Lines of elements around come first, within the text and outside of it (CSS 2.1, 16.3.1).
static void add_decorations(svg_scene_text *text, svg_scene_span *span) {
  const svg_scene_style *chain[DECORATIONS];
  const svg_scene_style *style = span->style;
  if (style->text_decoration == 0) style = style->decorated;
  size_t count = 0;
  for (; style && count < DECORATIONS; style = style->decorated) chain[count++] = style;
  if (count == 0) return;
  auto *decorations = svg_scene_take_array<svg_scene_decoration>(text->walk->scene, count);
  for (size_t i = 0; i < count; ++i) {
    style = chain[count - 1 - i];
    decorations[i].lines = style->text_decoration;
    decorations[i].style = style;
    svg_scene_find_paints_of(text->walk, text->frame, *style, box_of(text, *style),
                             &decorations[i].fill, &decorations[i].stroke);
  }
  span->decorations = decorations;
  span->decoration_count = count;
}

// ---- Fonts of the host --------------------------------------------------------------------------

void svg_scene_make_run(const svg_scene_text *text, const svg_scene_piece *piece,
                        svg_scene_run *run) {
  const svg_scene_span *span = piece->span;
  run->item = svg_scene_make_item(text->frame, SVG_SCENE_IDENTITY);
  run->item.element = span->element;
  run->item.style = span->style;
  run->text = piece->text;
  run->length = piece->size;
  run->flags = piece->flags;
  run->x = piece->x;
  run->y = piece->y;
  run->dx = piece->dx;
  run->dy = piece->dy;
  run->baseline = piece->is_placed ? 0 : span->baseline;
  run->rotate = piece->rotate;
  run->stretch = piece->stretch;
  run->spacing = span->style->letter_spacing + piece->spacing / piece->stretch;
  run->advance = piece->advance;
  if (span->link) run->link = svg_scene_link_of(span->link);
}

static void paint_run(const svg_scene_text *text, const svg_scene_piece *piece,
                      const double matrix[6], bool is_first, bool is_last) {
  const svg_scene_walk *walk = text->walk;
  if (!walk->callbacks->text) return;
  const svg_scene_span *span = piece->span;
  svg_scene_run run = {};
  svg_scene_make_run(text, piece, &run);
  std::copy_n(matrix, 6, run.item.matrix);
  if (is_first) run.flags |= SVG_RUN_FIRST;
  if (is_last) run.flags |= SVG_RUN_LAST;
  if (piece->is_placed) {
    run.flags |= SVG_RUN_PLACED;
    run.advance += piece->spacing / piece->stretch * static_cast<double>(piece->characters);
  } else {
    run.advance = 0;
    run.path = span->track ? &span->track->path : nullptr;
    run.text_length = span->length;
  }
  run.fill = span->fill;
  run.stroke = span->stroke;
  if (!is_visible(piece)) run.fill.kind = run.stroke.kind = SVG_SCENE_PAINT_NONE;
  run.decorations = span->decorations;
  run.decoration_count = piece->is_upright ? 0 : span->decoration_count;
  walk->callbacks->text(walk->user, &run);
}

// ---- Fonts of the drawing -----------------------------------------------------------------------

static void paint_glyphs(const svg_scene_text *text, const svg_scene_piece *piece,
                         const double matrix[6]) {
  svg_scene *scene = text->walk->scene;
  const svg_scene_span *span = piece->span;
  const double scale = span->style->font_size / span->font->units;
  double line[6];
  matrix_of(piece, line);
  if (!piece->is_upright) paint_lines(text, piece, line, matrix);
  svg_scene_glyph_run glyphs(scene, *piece);
  const svg_scene_glyph *glyph;
  double x;
  while (glyphs.next(&glyph, &x)) {
    if (!glyph->element) continue;
    const svg_scene_place place = {glyph->element, span->style, {0, 0}};
    const double *origin = span->font->origin;
    const double up[6] = {scale, 0, 0, -scale, x - origin[0] * scale, origin[1] * scale};
    double to_text[6];
    svg_scene_multiply(to_text, line, up);
    paint_outline(text, span, glyph->element, svg_scene_outline(scene, place), to_text, matrix);
  }
}

// The outline is mapped to the text's user space, in which strokes and paints are.
static void paint_outline(const svg_scene_text *text, const svg_scene_span *span,
                          const svg_e_node *element, const svg_scene_path &path,
                          const double to_text[6], const double matrix[6]) {
  const svg_scene_walk *walk = text->walk;
  svg_scene *scene = walk->scene;
  if (!walk->callbacks->shape) return;
  const svg_scene_mark mark = scene->top;
  svg_scene_count(scene, 1);
  const svg_scene_path mapped = svg_scene_map_path(scene, path, to_text);
  svg_scene_shape shape = {};
  shape.item = svg_scene_make_item(text->frame, matrix);
  shape.item.element = element;
  shape.item.style = span->style;
  shape.segments = mapped.runs;
  shape.segment_count = mapped.count;
  shape.fill = span->fill;
  shape.fill_rule =
      walk->purpose == SVG_SCENE_CLIP ? span->style->clip_rule : span->style->fill_rule;
  shape.stroke = span->stroke;
  if (mapped.count != 0) walk->callbacks->shape(walk->user, &shape);
  svg_scene_release(scene, mark);
}

// Underline, overline and line-through of a piece as rectangles.
static void paint_lines(const svg_scene_text *text, const svg_scene_piece *piece,
                        const double to_text[6], const double matrix[6]) {
  const svg_scene_font &font = *piece->span->font;
  const double scale = piece->span->style->font_size / font.units;
  const double thick = font.underline[1] * scale;
  const struct {
    int32_t line;
    double top;
  } lines[] = {{SVG_DECORATION_UNDERLINE, -font.underline[0] * scale},
               {SVG_DECORATION_OVERLINE, -font.ascent * scale},
               {SVG_DECORATION_LINE_THROUGH, -0.35 * font.ascent * scale}};
  for (size_t i = 0; i < piece->span->decoration_count; ++i) {
    const svg_scene_decoration &decoration = piece->span->decorations[i];
    svg_scene_span painted = *piece->span;
    painted.style = decoration.style;
    painted.fill = decoration.fill;
    painted.stroke = decoration.stroke;
    for (const auto &[line, top] : lines) {
      if ((decoration.lines & line) == 0) continue;
      double corner[] = {0, top};
      double rest[] = {piece->advance, top, piece->advance, top + thick, 0, top + thick};
      const svg_pada runs[] = {{SVG_PADA_MOVETO, 1, corner},
                               {SVG_PADA_LINETO, 3, rest},
                               {SVG_PADA_CLOSEPATH, 0, nullptr}};
      paint_outline(text, &painted, piece->span->element, {runs, std::size(runs)}, to_text, matrix);
    }
  }
}
