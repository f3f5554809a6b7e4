// svg_links.h: ids and names, and the links that wait for elements still to come.
#ifndef SVG_LINKS_H
#define SVG_LINKS_H

#include "svg/parser/svg_parser.h"

void svg_add_href(svg_parser *p, const char *id, svg_e_node *target);
svg_e_node *svg_find_href(svg_parser *p, const char *id); // null: not registered
void svg_add_unres_link(svg_parser *p, const char *id, svg_iri *iri);
void svg_resolve_href(svg_parser *p, const char *id, svg_e_node *target);
void svg_set_elem_flag(svg_parser *p, svg_e_node *source, const svg_e_node *target);
int svg_href_compare(const void *a, const void *b);
// Releases the waiting link that the value being parsed has made, if any: the value is about to be
// dropped.
void svg_drop_value_link(svg_parser *p);
// Frees what waiting links need, when none is left.
void svg_drop_resolved_links(svg_parser *p);

#endif
