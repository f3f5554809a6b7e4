// svg_schema.h: the constant tables of elements, attributes and keywords, and the look-ups over
// them.
//
// Tables are in svg/tables/, look-ups in svg_schema.cpp. Only the checks against the host's lists
// raise (SVG_E_ELEMENT_REFUSED, SVG_E_PROPERTY_REFUSED).
#ifndef SVG_SCHEMA_H
#define SVG_SCHEMA_H

#include "svg/parser/svg_parser.h"

// References to constants that the compiler computes and proves (svg/tables/schema.h).
extern const svg_elem_def (&svg_elem_table)[SVG_ELEM_COUNT];
extern const svg_attr_def (&svg_attr_table)[SVG_ATTR_COUNT];
extern const char *const (&svg_keyword_texts)[SVG_KW_COUNT]; // by id; [0] is ""

// Element id of a local name, a leading "svg:" apart, or -1. Case-sensitive.
int svg_find_element(const char *name);
// Row of a property, ignoring ASCII case, or -1.
int svg_find_prop(const char *name);
// Index in a list sorted ignoring ASCII case, or -1.
int svg_find_string(const char *name, const char *const *list, int32_t count);
// Index in the attribute list of an element of svg_elem_table, or -1. "xml:id" is found as "id".
int svg_find_esa(const svg_parser *p, const char *name, const svg_elem_def &element);
// The same, and when it is -1 the row of the property of this name, or -1.
int svg_find_esa_or_prop(const svg_parser *p, const char *name, const svg_elem_def &element,
                         int *prop);
// Comparison of names in values: ignoring ASCII case while css_mode is set.
int svg_strcmp(const svg_parser *p, const char *a, const char *b);

// Raise SVG_E_ELEMENT_REFUSED / SVG_E_PROPERTY_REFUSED when the host does not tolerate the name.
void svg_find_nottol_element(svg_parser *p, const char *name);
void svg_find_nottol_property(svg_parser *p, const char *name);

#endif
