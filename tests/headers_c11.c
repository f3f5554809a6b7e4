/* The public headers as C11: compiled, never called. */
#include "svg/svg.h"

#include "core/ort.h"
#include "css/css_context.h"
#include "svg/svg_names.h"

_Static_assert(__STDC_VERSION__ == 201112L, "compiled as C11");
