// svg_namespace.h: namespace declarations in scope, and the parts of Expat's names.
#ifndef SVG_NAMESPACE_H
#define SVG_NAMESPACE_H

#include "svg/parser/svg_parser.h"

enum { SVG_NS_SVG = 0, SVG_NS_XLINK = 1, SVG_NS_XML = 2, SVG_NS_OTHER = 3 };

int32_t svg_get_nsp_type(const char *uri);
void svg_push_nsp_entry(svg_parser *p, const char *uri, const char *prefix);
void svg_pop_nsp_entry(svg_parser *p);

// Splits one of Expat's names into namespace type (returned), prefix (prefix_out may be null) and
// local name. The texts point into the name, into the namespace stack, or to a constant.
int32_t svg_decomp_fullname(svg_parser *p, const char *fullname, const char **prefix_out,
                            const char **local_out);
// The schema's name of an attribute ("xlink:href").
const char *svg_get_internal_name(int32_t type, const char *local);

#endif
