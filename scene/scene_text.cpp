// scene_text.cpp: gathers the characters of a text element with all that is given for them: white
// space by xml:space (SVG 1.1, 10.15), positions by the lists of the elements around each character
// (10.4, 10.5), what tref refers to (10.6), links, lengths and paths. Goes through the text without
// recursion, in linear time.
#include "scene/scene_text.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace {

enum list_kind { X, Y, DX, DY, ROTATE, LISTS };

// A list of positions that characters still take from.
struct list {
  list *outer;
  const svg_scene_span *span;
  const svg_an_unum_list *values;
  size_t start; // number of the character that takes the first value
};

// An element whose children are being gathered.
struct level {
  level *outer;
  const svg_node *next;
  svg_scene_span *span;
  svg_scene_piece *before; // the last piece before the element
  bool is_text_only;       // below a tref: what it refers to gives its characters only
};

struct gathering {
  svg_scene_text *text;
  svg_scene *scene;
  level *top;
  list *lists[LISTS];
  size_t characters;
  bool after_blank; // a blank now would follow another one, or begin the text
  bool is_open;     // the last piece may go on
};

} // namespace

static void enter(gathering *g, const svg_e_node *element);
static void enter_reference(gathering *g, const svg_e_node *element);
static void leave(gathering *g);
static svg_scene_span *make_span(gathering *g, const svg_e_node *element);
static void add_length(gathering *g, svg_scene_span *span);
static const svg_scene_track *make_track(gathering *g, const svg_scene_span *span);
static svg_scene_path transformed_path(svg_scene *scene, const svg_scene_place &place);
static double shift_of(const svg_scene_style *style, double font_size);
static void push_lists(gathering *g, svg_scene_span *span);
static void add_text(gathering *g, const char *characters);
static void add_character(gathering *g, const char *bytes, size_t size, char **room);
static void turn(const svg_scene_style *style, const char *character, svg_scene_piece *piece);
static bool take_value(gathering *g, list_kind kind, double *value);
static void drop_last_blank(gathering *g);

static svg_scene_place place_of(const gathering *g, const svg_scene_span *span) {
  const double *viewport = g->text->frame->viewport;
  return {span->element, span->style, {viewport[0], viewport[1]}};
}

void svg_scene_gather_text(svg_scene_text *text) {
  gathering g = {};
  g.text = text;
  g.scene = text->walk->scene;
  g.after_blank = true;
  enter(&g, text->frame->element);
  while (level *level = g.top) {
    const svg_node *node = level->next;
    if (!node) {
      leave(&g);
      continue;
    }
    level->next = node->next;
    if (node->id == SVG_ID_TEXT) {
      add_text(&g, reinterpret_cast<const svg_t_node *>(node)->text);
      continue;
    }
    const auto *element = reinterpret_cast<const svg_e_node *>(node);
    if (level->is_text_only) {
      enter_reference(&g, element);
      continue;
    }
    switch (node->id) {
    case SVG_ELEM_a:
    case SVG_ELEM_textPath:
    case SVG_ELEM_tref:
    case SVG_ELEM_tspan:
      if (svg_scene_has_language(g.scene, element)) enter(&g, element);
      break;
    default: break;
    }
  }
  drop_last_blank(&g);
}

// ---- Elements -----------------------------------------------------------------------------------

static void enter(gathering *g, const svg_e_node *element) {
  svg_scene_count(g->scene, 1);
  svg_scene_span *span = make_span(g, element);
  if (span->style->display == SVG_KW_none) return;
  auto *entered = svg_scene_take_one<level>(g->scene);
  *entered = {g->top, element->first_child, span, g->text->last, false};
  g->top = entered;
  if (element->head.id != SVG_ELEM_textPath && element->head.id != SVG_ELEM_a) push_lists(g, span);
  if (element->head.id != SVG_ELEM_tref) return;
  const svg_e_node *target = svg_scene_href_of(element);
  entered->next = nullptr;
  if (target) enter_reference(g, target);
}

// What a tref refers to gives only its characters, whatever the elements are.
static void enter_reference(gathering *g, const svg_e_node *element) {
  svg_scene_count(g->scene, 1);
  auto *entered = svg_scene_take_one<level>(g->scene);
  *entered = {g->top, element->first_child, g->top->span, g->text->last, true};
  g->top = entered;
}

static void leave(gathering *g) {
  const level *left = g->top;
  const svg_scene_span *span = left->span;
  g->top = left->outer;
  if (left->is_text_only) return;
  for (list *&top : g->lists)
    if (top && top->span == span) top = top->outer;
  svg_scene_text *text = g->text;
  if (!span->length || span->length->element != span->element || text->last == left->before) return;
  auto *stretch = svg_scene_take_one<svg_scene_stretch>(g->scene);
  *stretch = {nullptr, span->length, left->before, text->last};
  svg_scene_stretch **end = &text->stretches;
  if (text->last_stretch) end = &text->last_stretch->next;
  *end = text->last_stretch = stretch;
}

static svg_scene_span *make_span(gathering *g, const svg_e_node *element) {
  auto *span = svg_scene_take_one<svg_scene_span>(g->scene);
  const svg_scene_frame *frame = g->text->frame;
  const svg_scene_span *outer = g->top ? g->top->span : nullptr;
  span->outer = outer;
  span->element = element;
  if (outer) {
    auto *style = svg_scene_take_one<svg_scene_style>(g->scene);
    svg_scene_compute_style(g->scene, element, outer->style, frame->viewport, style);
    style->writing_mode = outer->style->writing_mode; // it applies to the text as a whole
    span->style = style;
    span->track = outer->track;
    span->length = outer->length;
    span->link = svg_scene_link_of(element) ? element : outer->link;
    span->baseline = outer->baseline + shift_of(style, outer->style->font_size);
    span->preserves_space = outer->preserves_space;
  } else {
    span->style = frame->style;
  }
  int32_t key = svg_scene_keyword_of(element, SVG_ATTR_xml_space, SVG_KW_NONE);
  const svg_e_node *around = outer ? nullptr : svg_get_parent(element);
  for (uint64_t depth = 1; around && key == SVG_KW_NONE; around = svg_get_parent(around), ++depth) {
    key = svg_scene_keyword_of(around, SVG_ATTR_xml_space, SVG_KW_NONE);
    if (depth % 16 == 0) svg_scene_count(g->scene, 1);
  }
  if (key != SVG_KW_NONE) span->preserves_space = key == SVG_KW_preserve;
  span->font = svg_scene_find_font(g->scene, span->style);
  if (element->head.id == SVG_ELEM_textPath) span->track = make_track(g, span);
  add_length(g, span);
  return span;
}

static void add_length(gathering *g, svg_scene_span *span) {
  const double length =
      svg_scene_length_of(g->scene, place_of(g, span), SVG_ATTR_textLength, SVG_SCENE_X, 0);
  if (!(length > 0) || !std::isfinite(length)) return;
  auto *added = svg_scene_take_one<svg_scene_text_length>(g->scene);
  *added = {span->length, span->element, length,
            svg_scene_keyword_of(span->element, SVG_ATTR_lengthAdjust, SVG_KW_spacing)};
  span->length = added;
}

// The path of a textPath; one without path shows nothing (SVG 1.1, 10.13.2).
static const svg_scene_track *make_track(gathering *g, const svg_scene_span *span) {
  auto *track = svg_scene_take_one<svg_scene_track>(g->scene);
  const svg_e_node *target = svg_scene_href_of(span->element);
  if (!target || target->head.id != SVG_ELEM_path) return track;
  svg_scene_place place = place_of(g, span);
  place.element = target;
  const svg_scene_path path = transformed_path(g->scene, place);
  if (path.count == 0) return track;
  // To measure a curve takes as long as to show a dozen elements.
  svg_scene_count(g->scene, 4 * svg_scene_count_points(path.runs, path.count));
  const svg_scene_ruler *measure = svg_scene_measure_path(g->scene, path);
  const double length = svg_scene_path_length(measure);
  const auto *offset = svg_scene_find<svg_an_unum>(span->element, SVG_ATTR_startOffset);
  place.element = span->element;
  double start = 0;
  if (offset && offset->head.unit == SVG_UNIT_PERCENT) // of the path's length
    start = offset->value / 100 * length;
  else if (offset)
    start = svg_scene_length_of(g->scene, place, SVG_ATTR_startOffset, SVG_SCENE_OTHER, 0);
  track->path = {span->element, path.runs, path.count, std::isfinite(start) ? start : 0};
  track->measure = measure;
  return track;
}

// The path's own transform counts, those around it do not (SVG 1.1, 10.13.3).
static svg_scene_path transformed_path(svg_scene *scene, const svg_scene_place &place) {
  double matrix[6];
  svg_scene_matrix_of(place.element, SVG_ATTR_transform, matrix);
  return svg_scene_map_path(scene, svg_scene_outline(scene, place), matrix);
}

// By how much baseline-shift moves down (SVG 1.1, 10.9.2). Without tables of a font, sub and super
// are a fifth of an em below and two fifths above.
static double shift_of(const svg_scene_style *style, double font_size) {
  switch (style->baseline_shift.key) {
  case 0: return -style->baseline_shift.value;
  case SVG_KW_sub: return 0.2 * font_size;
  case SVG_KW_super: return -0.4 * font_size;
  default: return 0;
  }
}

static void push_lists(gathering *g, svg_scene_span *span) {
  const bool is_text = span->element->head.id == SVG_ELEM_text;
  const int rows[LISTS] = {is_text ? SVG_ATTR_text_x : SVG_ATTR_tspan_x,
                           is_text ? SVG_ATTR_text_y : SVG_ATTR_tspan_y, SVG_ATTR_dx, SVG_ATTR_dy,
                           SVG_ATTR_rotate};
  for (int kind = 0; kind < LISTS; ++kind) {
    const auto *values = svg_scene_find<svg_an_unum_list>(span->element, rows[kind]);
    if (!values || values->count == 0) continue;
    auto *pushed = svg_scene_take_one<list>(g->scene);
    *pushed = {g->lists[kind], span, values, g->characters};
    g->lists[kind] = pushed;
  }
}

// ---- Characters ---------------------------------------------------------------------------------

// Each piece ends with a NUL, so that the text of a node needs at most twice its bytes.
static void add_text(gathering *g, const char *characters) {
  const size_t size = strlen(characters);
  if (size == 0) return;
  svg_scene_count(g->scene, size / 64);
  auto *room = svg_scene_take_array<char>(g->scene, 2 * size + 1);
  const bool preserves = g->top->span->preserves_space;
  // A piece goes on within one text node only: its bytes lie together.
  g->is_open = false;
  for (size_t at = 0; at < size;) {
    const auto lead = static_cast<unsigned char>(characters[at]);
    const size_t length = svg_scene_character_length(characters + at, size - at);
    const char *bytes = characters + at;
    at += length;
    const bool is_line_end = lead == '\n' || lead == '\r';
    if (is_line_end && !preserves) continue;
    const bool is_blank = is_line_end || lead == ' ' || lead == '\t';
    if (is_blank && !preserves && g->after_blank) continue;
    g->after_blank = is_blank && !preserves;
    add_character(g, is_blank ? " " : bytes, length, &room);
  }
}

static void add_character(gathering *g, const char *bytes, size_t size, char **room) {
  svg_scene_text *text = g->text;
  svg_scene_span *span = g->top->span;
  svg_scene_piece given = {};
  if (take_value(g, X, &given.x)) given.flags |= SVG_RUN_X | SVG_RUN_CHUNK;
  if (take_value(g, Y, &given.y)) given.flags |= SVG_RUN_Y | SVG_RUN_CHUNK;
  take_value(g, DX, &given.dx);
  take_value(g, DY, &given.dy);
  take_value(g, ROTATE, &given.rotate);
  ++g->characters;
  const bool is_placed = span->font || text->is_measured;
  if (is_placed && !span->track && text->is_vertical) turn(span->style, bytes, &given);
  const bool is_alone = given.flags != 0 || given.dx != 0 || given.dy != 0 || given.rotate != 0 ||
                        // Each character stands on the path for itself.
                        (span->track && is_placed) || (given.turn != 0 && given.turn != 90);
  svg_scene_piece *piece = text->last;
  if (!g->is_open || is_alone || piece->span != span || piece->rotate != 0 || piece->is_upright ||
      given.is_upright || piece->turn != given.turn) {
    svg_scene_count(g->scene, 1);
    if (g->is_open) ++*room; // the NUL of the piece before
    piece = svg_scene_take_one<svg_scene_piece>(g->scene);
    *piece = given;
    piece->span = span;
    piece->text = *room;
    piece->stretch = 1;
    if (text->last)
      text->last->next = piece;
    else
      text->first = piece;
    text->last = piece;
    g->is_open = true;
  }
  memcpy(*room, bytes, size);
  *room += size;
  piece->size += size;
  ++piece->characters;
}

// How a character of vertical text is turned (SVG 1.1, 10.7.3): ideographs, kana, Hangul and wide
// forms stand upright, others lie along the line, unless the property says otherwise.
static void turn(const svg_scene_style *style, const char *character, svg_scene_piece *piece) {
  static constexpr uint32_t upright[][2] = {{0x1100, 0x11FF}, {0x2E80, 0xA4CF},  {0xAC00, 0xD7FF},
                                            {0xF900, 0xFAFF}, {0xFE30, 0xFE4F},  {0xFF01, 0xFF60},
                                            {0xFFE0, 0xFFE6}, {0x20000, 0x3FFFD}};
  const uint32_t code = svg_scene_decode(character);
  const bool is_wide = std::any_of(std::begin(upright), std::end(upright),
                                   [code](const auto &r) { return r[0] <= code && code <= r[1]; });
  switch (style->glyph_orientation_vertical) {
  case SVG_KW_0: piece->turn = 0; break;
  case SVG_KW_90: piece->turn = 90; break;
  case SVG_KW_180: piece->turn = 180; break;
  case SVG_KW_270: piece->turn = 270; break;
  default: piece->turn = is_wide ? 0 : 90; break;
  }
  piece->is_upright = piece->turn == 0 || piece->turn == 180;
}

// The value of a list for the character that comes next: that of the innermost element that still
// has one for it (SVG 1.1, 10.5); rotate goes on with its last one.
static bool take_value(gathering *g, list_kind kind, double *value) {
  list *&top = g->lists[kind];
  const auto count = [&top] { return static_cast<size_t>(top->values->count); };
  while (top && kind != ROTATE && g->characters - top->start >= count()) top = top->outer;
  if (!top) return false;
  const size_t i = std::min(g->characters - top->start, count() - 1);
  const svg_scene_axis axis = kind == X || kind == DX ? SVG_SCENE_X : SVG_SCENE_Y;
  *value = svg_scene_get_length(g->scene, top->values->values[i], top->values->units[i], axis,
                                top->span->style->font_size, g->text->frame->viewport);
  if (!std::isfinite(*value)) *value = 0;
  return true;
}

// Blanks at the end of the text go, unless they are preserved.
static void drop_last_blank(gathering *g) {
  svg_scene_piece *piece = g->text->last;
  if (!piece || !g->after_blank) return;
  --piece->size;
  --piece->characters;
  piece->text[piece->size] = 0;
}
