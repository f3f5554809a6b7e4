// svg_document.h: what a document owns while it is read and afterwards.
#ifndef SVG_DOCUMENT_H
#define SVG_DOCUMENT_H

#include "svg/parser/svg_parser.h"

void svg_make_work_space(svg_parser *p);   // the containers that every document needs
void svg_delete_work_space(svg_parser *p); // those that only reading needs
void svg_delete_document(svg_parser *p);   // everything

// Before a main pass: parses the gathered style sheets and makes the root.
void svg_prepare_document(svg_parser *p);

// Drop what a pass made, so that the pass can be restarted.
void svg_restart_sheets(svg_parser *p);
void svg_restart_document(svg_parser *p); // and prepares it again

#endif
