// svg_sheet_place.h: where the style sheets of a drawing stand in it.
#ifndef SVG_SHEET_PLACE_H
#define SVG_SHEET_PLACE_H

#include "svg/parser/svg_parser.h"

// For callbacks of Expat: where its event begins.
svg_place svg_place_here(const svg_input *p);

// Notes where a piece of text stands that is about to be added to the joined style sheet.
void svg_note_sheet_text(svg_parser *p, const char *text, size_t length);

#endif
