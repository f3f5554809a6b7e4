// svg_leniency.h: values that the strict reading refuses.
#ifndef SVG_LENIENCY_H
#define SVG_LENIENCY_H

#include "svg/parser/svg_parser.h"

// What of the host's leniency can serve a row; 0: reading a value again is of no use.
uint32_t svg_leniency_for(const svg_host *p, int32_t row);
// Whether the value being read may make use of a flag, which is noted.
bool svg_is_lenient(svg_scanner *p, uint32_t flag);
void svg_tell_lenient(svg_parser *p, uint32_t flags, const char *text, long line);
// Once for a document, however often it is read.
void svg_tell_encoding(svg_parser *p, const char *name);
// That of external sheets which do not tell it; null: they are read strictly.
const char *svg_sheet_encoding(const svg_parser *p);

#endif
