// svg_tree.h: the nodes of the document tree, the construction of an element from its start tag,
// the hooks that particular elements run, and the ids and links between elements.
#ifndef SVG_TREE_H
#define SVG_TREE_H

#include "svg/parser/svg_parser.h"

// ---- svg_lifecycle.cpp, svg_parse.cpp --------------------------------------------------------------------------------

void svg_clear_document(
    svg_parser *p); // frees all that the main pass and the parsed style sheets made
void svg_make_work_space(svg_parser *p); // what only reading needs
void svg_delete_work_space(svg_parser *p);
void svg_prepare_document(
    svg_parser *p); // parses the gathered style sheets and makes the root: before a main pass

// ---- svg_tree.cpp ---------------------------------------------------------------------------------------------------

extern const ort_item_desc pe_ced;
svg_e_node *svg_e_node_new(ort_core *core, int id);
void svg_add_e_node(svg_parser *p, int id, const XML_Char **attrs);
void svg_add_t_node(svg_parser *p);
void svg_del_e_node(ort_core *core, svg_e_node *root);     // null is allowed; not recursive
void svg_a_node_delete(ort_core *core, svg_a_node *value); // null is allowed
svg_css_attr *svg_css_attr_new(ort_core *core, int16_t nid);
void svg_css_attr_delete(ort_core *core, svg_css_attr *attr);

// Adds a value to those of the element being built and tells the observer. new_value, which may
// have been its owner, is null afterwards.
void svg_collect_value(svg_parser *p, svg_a_node *value, const char *selector);

// ---- svg_hooks.cpp --------------------------------------------------------------------------------------------------

void svg_beg_clipPath(svg_parser *p, svg_e_node *node);
void svg_beg_font(svg_parser *p, svg_e_node *node);
void svg_beg_font_face(svg_parser *p, svg_e_node *node);
void svg_end_font_face(svg_parser *p);
void svg_beg_linearGradient(svg_parser *p, svg_e_node *node);
void svg_beg_mask(svg_parser *p, svg_e_node *node);
void svg_beg_pattern(svg_parser *p, svg_e_node *node);
void svg_beg_radialGradient(svg_parser *p, svg_e_node *node);
void svg_beg_svg(svg_parser *p, svg_e_node *node);
void svg_beg_text(svg_parser *p, svg_e_node *node);
void svg_end_text(svg_parser *p);
void svg_beg_use(svg_parser *p, svg_e_node *node);
double svg_unit2pt(int unit, double value);

// ---- svg_links.cpp --------------------------------------------------------------------------------------------------

extern const ort_item_desc href_ced;
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
// Forgets all ids and links: before a restarted pass and at deletion.
void svg_clear_links(svg_parser *p);

#endif
