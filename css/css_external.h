// css_external.h: the engine's warnings, and the limit on the names of external sheets.
#ifndef CSS_EXTERNAL_H
#define CSS_EXTERNAL_H

#include "core/ort_core.h"

enum {
  CSS_E_REFUSED = 10200,
  CSS_E_UNREADABLE = 10201,
  CSS_E_CYCLE = 10202,
  CSS_E_ENCODING = 10203,
  CSS_E_NAMES = 10204,
  CSS_E_SELECTOR = 10205
};

void css_register_errtab(ort_core *core);

// Returns true, after a warning, for a name that is too long.
bool css_refuse_long_href(ort_core *core, const char *href);

#endif
