// svg_iri.h: IRIs as parts of values.
#ifndef SVG_IRI_H
#define SVG_IRI_H

#include "svg/parser/svg_parser.h"

void svg_init_iri(svg_iri *iri);
void svg_get_iri(svg_parser *p, svg_iri *iri, const char *start, const char *end);
void svg_get_funciri(svg_parser *p, svg_iri *iri);
void svg_dtor_iri(ort_core *core, svg_iri *iri);

#endif
