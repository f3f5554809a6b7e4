// svg_select.h: the reader's side of the CSS engine.
#ifndef SVG_SELECT_H
#define SVG_SELECT_H

#include "svg/names/svg_schema.h"

extern const css_callbacks svg_css_callbacks;
void svg_css_create_parser(svg_parser *p); // unless it exists
svg_e_node *svg_css_find_parent(svg_parser *p, svg_e_node *node, int16_t nid);
svg_e_node *svg_css_find_sibling(svg_parser *p, svg_e_node *node, int16_t nid);

// Selectors that the host asks about: makes them known to the engine, tells the host of the element
// that was matched last, and frees them.
void svg_css_add_queries(svg_parser *p);
void svg_css_answer_queries(svg_parser *p, const svg_e_node *node);
void svg_delete_queries(svg_parser *p);

// For the element being built; css must exist. Notes the attributes that some selector tests, and
// collects the values of the rules that match.
void svg_css_collect_attrs(svg_parser *p, svg_e_node *node, const svg_given_attr *attrs);
void svg_css_apply_rules(svg_parser *p, svg_e_node *node);

#endif
