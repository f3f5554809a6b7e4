// svg_style.h: styling. The style attribute and the font shorthand, the pass that collects style
// sheets, and the reader's side of the CSS engine.
#ifndef SVG_STYLE_H
#define SVG_STYLE_H

#include "svg/parser/svg_parser.h"

// ---- svg_style.cpp --------------------------------------------------------------------------------------------------

bool svg_css_isspace(char c);
bool svg_css_isnmstart(char c);
bool svg_css_isnmchar(char c);
const char *svg_css_skip_wsp(const char *s);
bool svg_css_is_cmnt_beg(const char *s);
bool svg_css_is_cmnt_end(const char *s);
const char *svg_css_skip_wsp_c(const char *s);
const char *svg_css_skip_ident(const char *s);

void svg_parse_style(svg_parser *p, const char *text);

// Splits a font shorthand and hands each longhand to add(p, name, value), in the order weight,
// style, variant (as written), size, family. An incomplete shorthand adds nothing.
void svg_split_font(svg_parser *p, const char *text,
                    void (*add)(svg_parser *p, const char *name, const char *value));
// Adds the longhands to the element being built.
void svg_parse_font_prop(svg_parser *p, const char *text);

// ---- svg_sheets.cpp: the style-sheet pass ---------------------------------------------------------------------------

extern const ort_item_desc ext_sheet_ced;
void svg_cb_proc_instr_css(void *parser, const XML_Char *target, const XML_Char *data);
int32_t svg_css_split_itemlist(svg_parser *p, char *text);
void svg_cb_elem_start_css(void *parser, const XML_Char *name, const XML_Char **attrs);
void svg_cb_elem_end_css(void *parser, const XML_Char *name);
void svg_cb_char_data_css(void *parser, const XML_Char *s, int len);
int32_t svg_css_style(svg_parser *p, const char *name, const XML_Char **attrs);
void svg_css_create_parser(svg_parser *p);
size_t svg_css_sheet_bytes(const svg_parser *p); // of all sheets but the imported ones
void svg_css_clear_sheets(svg_parser *p);        // undoes what a failed style-sheet pass gathered

// ---- svg_select.cpp: callbacks of the CSS engine, rules of an element ------------------------------------------------

extern const css_callbacks svg_css_callbacks;
svg_e_node *svg_css_find_parent(svg_parser *p, svg_e_node *node, int16_t nid);
svg_e_node *svg_css_find_sibling(svg_parser *p, svg_e_node *node, int16_t nid);

// For the element being built; css must exist. Notes the attributes that some selector tests, and
// collects the values of the rules that match.
void svg_css_collect_attrs(svg_parser *p, svg_e_node *node, const XML_Char **attrs);
void svg_css_apply_rules(svg_parser *p, svg_e_node *node);

#endif
