// svg_content.h: callbacks of the main pass.
#ifndef SVG_CONTENT_H
#define SVG_CONTENT_H

#include "svg/parser/svg_parser.h"

void svg_cb_elem_start(void *parser, const XML_Char *name, const XML_Char **attrs);
void svg_cb_elem_end(void *parser, const XML_Char *name);
void svg_cb_char_data(void *parser, const XML_Char *s, int len);
void svg_cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri);
void svg_cb_namespace_end(void *parser, const XML_Char *prefix);

#endif
