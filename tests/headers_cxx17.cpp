// The public headers as C++17: compiled, never called.
#include "svg/svg.h"

#include "core/ort.h"
#include "css/css_context.h"
#include "svg/svg_names.h"

static_assert(__cplusplus == 201703L, "compiled as C++17");
