// css_match.h: buckets of selectors, and the end of a document.
#ifndef CSS_MATCH_H
#define CSS_MATCH_H

#include "css/css_select.h"

void css_enter_bucket(css_selector *selector); // tries it on the elements that fit its bucket
void css_end_document(css_parser *css);        // undoes all notes

#endif
