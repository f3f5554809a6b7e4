// svg_tree.h: the nodes of the document tree.
#ifndef SVG_TREE_H
#define SVG_TREE_H

#include "svg/names/svg_schema.h"

svg_e_node *svg_e_node_new(svg_parser *p, int id);
void svg_add_e_node(svg_parser *p, int id, const svg_given_attr *attrs);
void svg_add_t_node(svg_parser *p);
// Frees what the values of a tree own; the nodes go with p->kept. Null is allowed; not recursive.
void svg_del_e_node(ort_core *core, svg_e_node *root);

#endif
