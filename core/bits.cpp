// bits.cpp: bit arrays. The reader calls it; making one may raise ORT_E_NO_MEMORY.
#include "core/ort_core.h"

static size_t bytes_for(size_t bits) { return bits / 8 + (bits % 8 != 0); }

unsigned char *ort_bitarr_new(ort_core *core, size_t bits) {
  return ort_new_array<unsigned char>(core, bytes_for(bits), "ort_bitarr_new");
}
