// svg_content.h: callbacks of the main pass.
#ifndef SVG_CONTENT_H
#define SVG_CONTENT_H

#include "svg/names/svg_schema.h"

// For Expat; no raise leaves them (svg_in_callback).
void svg_cb_elem_start(void *parser, const XML_Char *name, const XML_Char **attrs);
void svg_cb_elem_end(void *parser, const XML_Char *name);
void svg_cb_char_data(void *parser, const XML_Char *s, int len);
void svg_cb_namespace_start(void *parser, const XML_Char *prefix, const XML_Char *uri);
void svg_cb_namespace_end(void *parser, const XML_Char *prefix);

// For a recording. What they raise goes on.
void svg_start_element(svg_parser *p, const svg_name &name, const svg_given_attr *attrs);
void svg_end_element(svg_parser *p, const svg_name *name); // null unless names are shown
bool svg_shows_names(const svg_parser *p);
void svg_add_char_data(svg_parser *p, const char *s, int len);
void svg_start_namespace(svg_parser *p, const char *prefix, const char *uri);
void svg_end_namespace(svg_parser *p, const char *prefix);

#endif
