// svg_sheets.h: the style-sheet pass.
#ifndef SVG_SHEETS_H
#define SVG_SHEETS_H

#include "svg/parser/svg_parser.h"

void svg_cb_proc_instr_css(void *parser, const XML_Char *target, const XML_Char *data);
int32_t svg_css_split_itemlist(svg_parser *p, char *text);
void svg_cb_elem_start_css(void *parser, const XML_Char *name, const XML_Char **attrs);
void svg_cb_elem_end_css(void *parser, const XML_Char *name);
void svg_cb_char_data_css(void *parser, const XML_Char *s, int len);
int32_t svg_css_style(svg_parser *p, const char *name, const XML_Char **attrs);
size_t svg_css_sheet_bytes(const svg_sheet_pass *p); // of all sheets but the imported ones

#endif
