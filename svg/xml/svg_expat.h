// svg_expat.h: Expat under the core's memory.
//
// A pass is begun with svg_expat_create; blocks of p->block_size bytes or less are read into
// svg_expat_room, of *size bytes, and taken from there. Expat sees them later, but in order:
// svg_expat_flush hands over what it has not seen. Raises for lack of memory, and again what a
// callback raised.
#ifndef SVG_EXPAT_H
#define SVG_EXPAT_H

#include "svg/parser/svg_parser.h"

void svg_expat_create(svg_parser *p, const char *encoding);
void svg_expat_set_encoding(svg_parser *p, const char *name); // before the first byte
char *svg_expat_room(svg_parser *p, size_t *size);
XML_Status svg_expat_take(svg_parser *p, size_t length, bool last);
XML_Status svg_expat_flush(svg_parser *p);
uint32_t svg_expat_line(svg_input *p); // of the current event
void svg_expat_delete(svg_parser *p);

// Runs the body of an Expat callback in a frame, because no jump may cross Expat. An error stays
// pending, the pass is stopped, and callbacks that still arrive do nothing; svg_parse_xml raises
// the error again.
template <class Body> void svg_in_callback(svg_parser *p, Body &&body) {
  if (p->callback_failed || ort_protected(p->core, body)) return;
  p->callback_failed = 1;
  if (p->xml) XML_StopParser(p->xml, XML_FALSE);
}

#endif
