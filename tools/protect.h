// protect.h: calls of the library that may raise, as any expression.
#ifndef TOOLS_PROTECT_H
#define TOOLS_PROTECT_H

#include "core/ort.h"

// Calls body inside of ort_protect. An error leaves it at once: it must not hold an object with a
// destructor meanwhile. Returns 0, or the error's code.
template <class Body> int protect(ort_core *core, const Body &body) {
  return ort_protect(
      core, [](void *argument) { (*static_cast<const Body *>(argument))(); },
      const_cast<void *>(static_cast<const void *>(&body)));
}

#endif
