// svg_xml.h: one pass over the input.
#ifndef SVG_XML_H
#define SVG_XML_H

#include "svg/parser/svg_parser.h"

void svg_parse_xml(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass, int32_t *encoding);
void svg_reset_xml(svg_parser *p, ort_file *file, ort_gz **gz);
int svg_cb_encoding_handler(void *data, const XML_Char *name, XML_Encoding *info);

#endif
