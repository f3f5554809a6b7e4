// svg_sheet_place.cpp: where the style sheets of a drawing stand in it.
//
// The style-sheet pass notes where the text of the style elements, which is joined, stands: once
// for as long as its lines and characters follow each other as in the file. Those who ask go
// forward through the text, and so does the search. Raises for lack of memory while noting.
#include "svg/xml/svg_sheet_place.h"

static svg_place advance(svg_place place, const char *text, size_t length);
static svg_place find(svg_parser *p, size_t offset);

constexpr ort_item_desc piece_ced = {sizeof(svg_sheet_piece), nullptr, nullptr};

svg_place svg_place_here(const svg_input *p) {
  return {static_cast<uint32_t>(XML_GetCurrentLineNumber(p->xml)),
          static_cast<uint32_t>(XML_GetCurrentColumnNumber(p->xml)) + 1};
}

void svg_note_sheet_text(svg_parser *p, const char *text, size_t length) {
  if (!p->sheet_pieces) p->sheet_pieces = ort_vtr_new(p->core, &piece_ced, 0, 0);
  const svg_place here = svg_place_here(p);
  const size_t count = ort_vtr_count(p->sheet_pieces);
  svg_sheet_piece *last =
      count > 0 ? &ort_item<svg_sheet_piece>(p->sheet_pieces, count - 1) : nullptr;
  if (last && here == last->place) { // the text of an entity goes on
    last->fixed = true;
    p->next_place = {};
    return;
  }
  if (!last || here != p->next_place)
    ort_push(p->sheet_pieces, svg_sheet_piece{ort_bs_length(p->style_sheet), here, false});
  p->next_place = advance(here, text, length);
}

svg_sheet_origin svg_get_sheet_place(svg_parser *p, uint32_t *line, uint32_t *column) {
  if (p->origin == SVG_SHEET_STYLE) {
    const char *place = css_get_place(p->css); // null when there is no memory to begin
    p->sheet_place = find(p, place ? static_cast<size_t>(place - ort_bs_text(p->style_sheet)) : 0);
  }
  if (p->origin != SVG_SHEET_NONE) {
    *line = p->sheet_place.line;
    *column = p->sheet_place.column;
  }
  return p->origin;
}

// What comes after a new line begins at its first character.
static svg_place advance(svg_place place, const char *text, size_t length) {
  for (const char *s = text; s < text + length; ++s) {
    const auto byte = static_cast<unsigned char>(*s);
    if (byte == '\n')
      place = {place.line + 1, 1};
    else if ((byte & 0xC0) != 0x80)
      ++place.column;
  }
  return place;
}

static svg_place find(svg_parser *p, size_t offset) {
  const char *text = ort_bs_text(p->style_sheet);
  const size_t count = ort_vtr_count(p->sheet_pieces);
  const auto piece = [p](size_t i) -> const svg_sheet_piece & {
    return ort_item<svg_sheet_piece>(p->sheet_pieces, i);
  };
  while (p->next_piece < count && piece(p->next_piece).offset <= offset) {
    p->found_offset = piece(p->next_piece).offset;
    p->found_place = piece(p->next_piece++).place;
  }
  if (p->next_piece > 0 && !piece(p->next_piece - 1).fixed)
    p->found_place = advance(p->found_place, text + p->found_offset, offset - p->found_offset);
  p->found_offset = offset;
  return p->found_place;
}
