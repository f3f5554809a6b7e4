// css_href.h: relative names of sheets.
#ifndef CSS_HREF_H
#define CSS_HREF_H

#include "core/ort_core.h"

// Appends href, resolved against the name of the sheet that contains it (null: none), by RFC 3986,
// 5.2. The fragment is dropped. A relative result keeps each ".." that leads out of the base.
void css_resolve_href(ort_bs *result, const char *base, const char *href);

#endif
