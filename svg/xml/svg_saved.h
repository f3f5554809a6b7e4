// svg_saved.h: the text of title, desc and metadata.
#ifndef SVG_SAVED_H
#define SVG_SAVED_H

#include "svg/names/svg_schema.h"

void svg_savelem_open(svg_parser *p, int id);
void svg_savelem_namespace(svg_parser *p, const char *prefix, const char *uri);
void svg_savelem_start(svg_parser *p, const char *prefix, const char *local,
                       const svg_given_attr *attrs);
void svg_savelem_char_data(svg_capture *p, const char *s, int len);
void svg_savelem_end(svg_parser *p, int32_t type, const char *prefix, const char *local);

#endif
