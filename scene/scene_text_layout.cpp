// scene_text_layout.cpp: places the pieces of a text: how long they are, textLength, where chunks
// begin and how text-anchor moves them (SVG 1.1, 10.5 and 10.9.1), lines that go down (10.7), text
// on a path (10.13.3).
//
// A chunk with a piece in a font that the host does not measure stays as it is given: the host
// places it.
#include <algorithm>
#include <cmath>
#include <iterator>

#include "scene/scene_text.h"

namespace {

// Where the next piece begins.
struct pen {
  double x, y;
  bool is_known;
  const svg_scene_track *track; // that the last piece followed
  double base;                  // along it, of positions
  double along;                 // it, of the next piece
  double aside;                 // by dy
};

} // namespace

static void measure(svg_scene_text *text, svg_scene_piece *piece);
static void stretch(svg_scene_text *text, const svg_scene_stretch &stretch);
static const svg_scene_piece *find_chunk_end(const svg_scene_piece *first);
static void place_chunk(const svg_scene_text *text, svg_scene_piece *first,
                        const svg_scene_piece *end, pen *pen);
static double width_of(const svg_scene_text *text, const svg_scene_piece *first,
                       const svg_scene_piece *end);
static void place_on_line(const svg_scene_text *text, svg_scene_piece *piece, double shift,
                          pen *pen);
static void turn_down(svg_scene_piece *piece);
static void place_on_track(svg_scene_piece *piece, pen *pen);

// An upright character of a vertical line takes an em of it.
static double length_of(const svg_scene_piece &piece) {
  const svg_scene_style &style = *piece.span->style;
  const double advance =
      piece.is_upright ? style.font_size + style.letter_spacing : piece.advance * piece.stretch;
  return advance + piece.spacing * static_cast<double>(piece.characters);
}

// What it is moved along the line.
static double move_of(const svg_scene_text *text, const svg_scene_piece &piece) {
  return text->is_vertical && !piece.span->track ? piece.dy : piece.dx;
}

void svg_scene_place_text(svg_scene_text *text) {
  for (svg_scene_piece *piece = text->first; piece; piece = piece->next) measure(text, piece);
  for (svg_scene_stretch *each = text->stretches; each; each = each->next) stretch(text, *each);
  pen pen = {0, 0, true, nullptr, 0, 0, 0};
  for (svg_scene_piece *piece = text->first; piece;) {
    const svg_scene_piece *end = find_chunk_end(piece);
    place_chunk(text, piece, end, &pen);
    for (; piece != end; piece = piece->next) {
      const double numbers[] = {piece->x,      piece->y,       piece->dx,      piece->dy,
                                piece->rotate, piece->stretch, piece->spacing, piece->advance};
      piece->is_off = piece->is_off || !svg_scene_are_finite(numbers, std::size(numbers));
    }
  }
}

// The advance holds letter and word spacing already.
static void measure(svg_scene_text *text, svg_scene_piece *piece) {
  if (piece->size == 0) {
    piece->is_measured = true;
  } else if (piece->span->font) {
    svg_scene_glyph_run glyphs(text->walk->scene, *piece);
    const svg_scene_glyph *glyph;
    double x;
    while (glyphs.next(&glyph, &x)) {
    }
    piece->advance = glyphs.end();
    piece->is_measured = true;
  } else if (text->is_measured) {
    svg_scene_run run = {};
    svg_scene_make_run(text, piece, &run);
    piece->advance = text->walk->callbacks->measure(text->walk->user, &run);
    piece->is_measured = true;
  }
  if (!std::isfinite(piece->advance)) piece->advance = 0;
}

bool svg_scene_glyph_run::next(const svg_scene_glyph **glyph, double *x) {
  if (at_ >= piece_.size) return false;
  const svg_scene_span &span = *piece_.span;
  const svg_scene_style &style = *span.style;
  const double scale = style.font_size / span.font->units;
  size_t length;
  *glyph = svg_scene_find_glyph(scene_, span.font, piece_.text + at_, piece_.size - at_, &length);
  if (left_ && style.kerning.key != 0)
    x_ -= svg_scene_get_kern(scene_, span.font, left_, *glyph) * scale;
  else if (left_)
    x_ += style.kerning.value;
  *x = x_;
  x_ += (*glyph)->advance * scale + style.letter_spacing + piece_.spacing / piece_.stretch;
  if (piece_.text[at_] == ' ') x_ += style.word_spacing;
  left_ = *glyph;
  at_ += length;
  return true;
}

// textLength either widens the gaps between the characters or all of it (SVG 1.1, 10.5); upright
// characters keep their shape.
static void stretch(svg_scene_text *text, const svg_scene_stretch &stretch) {
  svg_scene_piece *const first = stretch.before ? stretch.before->next : text->first;
  const svg_scene_piece *const end = stretch.last->next;
  double length = 0, characters = 0;
  bool has_upright = false;
  uint64_t pieces = 0; // which parts of parts have in common
  for (const svg_scene_piece *piece = first; piece != end; piece = piece->next) {
    if (++pieces % 16 == 0) svg_scene_count(text->walk->scene, 1);
    if (!piece->is_measured) return;
    has_upright = has_upright || piece->is_upright;
    length += length_of(*piece) + (piece == first ? 0 : move_of(text, *piece));
    characters += static_cast<double>(piece->characters);
  }
  const bool glyphs = stretch.to->adjust == SVG_KW_spacingAndGlyphs && !has_upright;
  const double factor = length > 0 ? stretch.to->length / length : 1;
  const double spacing = characters > 1 ? (stretch.to->length - length) / (characters - 1) : 0;
  if (!std::isfinite(factor) || !std::isfinite(spacing)) return;
  for (svg_scene_piece *piece = first; piece != end; piece = piece->next) {
    if (glyphs) {
      piece->stretch *= factor;
      piece->spacing *= factor;
      if (piece == first) continue;
      (text->is_vertical && !piece->span->track ? piece->dy : piece->dx) *= factor;
    } else {
      piece->spacing += spacing;
    }
  }
}

// A chunk goes on until a character with a position of its own, or until text begins or ends to
// follow a path.
static const svg_scene_piece *find_chunk_end(const svg_scene_piece *first) {
  const svg_scene_piece *piece = first->next;
  while (piece && (piece->span->track == first->span->track) &&
         ((piece->flags & SVG_RUN_CHUNK) == 0 || piece->span->track))
    piece = piece->next;
  return piece;
}

static void place_chunk(const svg_scene_text *text, svg_scene_piece *first,
                        const svg_scene_piece *end, pen *pen) {
  const svg_scene_track *track = first->span->track;
  const double width = width_of(text, first, end);
  const bool is_placed = std::isfinite(width);
  double shift = 0;
  if (is_placed) {
    const svg_scene_style &style = *first->span->style;
    const bool is_backward = style.direction == SVG_KW_rtl && !text->is_vertical;
    if (style.text_anchor == SVG_KW_middle) shift = -width / 2;
    if (style.text_anchor == (is_backward ? SVG_KW_start : SVG_KW_end)) shift = -width;
  }
  if (track && track != pen->track) {
    pen->along = pen->base = track->path.start + shift;
    pen->aside = 0;
  }
  pen->track = track;
  first->flags |= SVG_RUN_CHUNK;
  for (svg_scene_piece *piece = first; piece != end; piece = piece->next) {
    piece->is_placed = is_placed;
    piece->is_off = track && !track->measure;
    if (track && is_placed) {
      place_on_track(piece, pen);
    } else if (track) {
      pen->is_known = false;
    } else {
      place_on_line(text, piece, piece == first ? shift : 0, pen);
    }
  }
}

// No number when something in it is not measured.
static double width_of(const svg_scene_text *text, const svg_scene_piece *first,
                       const svg_scene_piece *end) {
  double width = 0;
  for (const svg_scene_piece *piece = first; piece != end; piece = piece->next)
    width += piece->is_measured ? length_of(*piece) + move_of(text, *piece) : NAN;
  return width;
}

static void place_on_line(const svg_scene_text *text, svg_scene_piece *piece, double shift,
                          pen *pen) {
  const bool is_down = text->is_vertical;
  double &along = is_down ? pen->y : pen->x;
  if ((piece->flags & SVG_RUN_X) != 0) pen->x = piece->x;
  if ((piece->flags & SVG_RUN_Y) != 0) pen->y = piece->y;
  if ((piece->flags & (is_down ? SVG_RUN_Y : SVG_RUN_X)) != 0) pen->is_known = true;
  if (!pen->is_known) {
    piece->is_placed = false;
    return;
  }
  along += shift;
  pen->x += piece->dx;
  pen->y += piece->dy;
  if (piece->is_placed) {
    piece->x = pen->x - (is_down ? piece->span->baseline : 0);
    piece->y = pen->y + (is_down ? 0 : piece->span->baseline);
    piece->dx = piece->dy = 0;
    if (is_down) turn_down(piece);
  } else { // The host adds dx and dy, and goes on from where the piece ends.
    piece->x = pen->x - piece->dx;
    piece->y = pen->y - piece->dy;
  }
  pen->is_known = piece->is_placed;
  along += length_of(*piece);
}

// The middle of the characters lies on the line (SVG 1.1, 10.9.2: central).
static void turn_down(svg_scene_piece *piece) {
  const svg_scene_style &style = *piece->span->style;
  const svg_scene_font *font = piece->span->font;
  const double up = style.font_size * (font ? font->ascent / font->units : 0.8);
  const double down = style.font_size * (font ? font->descent / font->units : 0.2);
  const double half = (piece->advance - style.letter_spacing) / 2, middle = (up - down) / 2;
  if (piece->turn == 0) {
    piece->x -= half;
    piece->y += up;
  } else if (piece->turn == 180) {
    piece->x += half;
    piece->y += down;
  } else if (piece->turn == 270) {
    piece->x += middle;
    piece->y += length_of(*piece);
  } else {
    piece->x -= middle;
  }
  piece->rotate += piece->turn;
}

// The middle of a character lies on the path, which it is turned along.
static void place_on_track(svg_scene_piece *piece, pen *pen) {
  const svg_scene_track &track = *piece->span->track;
  if ((piece->flags & SVG_RUN_X) != 0) pen->along = pen->base + piece->x;
  pen->along += piece->dx;
  pen->aside += piece->dy;
  const double length = length_of(*piece);
  svg_scene_point middle;
  double angle;
  piece->is_off = !track.measure ||
                  !svg_scene_point_at(track.measure, pen->along + length / 2, &middle, &angle);
  pen->along += length;
  if (piece->is_off) return;
  const double c = std::cos(angle), s = std::sin(angle);
  const double back = piece->advance * piece->stretch / 2;
  const double down = pen->aside + piece->span->baseline;
  piece->x = middle.x - back * c - down * s;
  piece->y = middle.y - back * s + down * c;
  piece->rotate += angle * (180 / M_PI);
  piece->dx = piece->dy = 0;
  pen->x = middle.x + back * c;
  pen->y = middle.y + back * s;
  pen->is_known = piece->is_measured;
}
