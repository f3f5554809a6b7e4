// core.cpp: makes and deletes cores. Hosts call it; nothing here raises.
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "core/ort_state.h"

void ort_options_init(ort_options *options) { memset(options, 0, sizeof *options); }

ort_core *ort_core_new(const ort_options *options) {
  ort_core *core = static_cast<ort_core *>(calloc(1, sizeof(ort_core)));
  if (!core) return nullptr;
  if (options) core->options = *options;
  if (core->options.memory_budget == 0) core->options.memory_budget = ORT_LIMIT_MEMORY;
  if (core->options.inflate_budget == 0) core->options.inflate_budget = ORT_LIMIT_INFLATED;
  if (getentropy(&core->secret, sizeof core->secret) != 0)
    core->secret = reinterpret_cast<uintptr_t>(core); // less to guess than nothing
  if (ort_memory_new(core)) return core;
  ort_core_delete(core);
  return nullptr;
}

void ort_core_delete(ort_core *core) {
  if (!core) return;
  ort_pvf_delete_all(core);
  ort_memory_delete(core);
  free(core);
}

uint64_t ort_get_secret(const ort_core *core) { return core->secret; }
