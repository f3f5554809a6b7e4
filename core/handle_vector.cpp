// handle_vector.cpp: items that keep their index until they are released. The CSS engine and the
// reader call it; reclaiming may raise ORT_E_NO_MEMORY and then changes nothing.
#include <string.h>

#include "core/ort_core.h"

struct ort_hvtr {
  ort_core *core;
  const ort_item_desc *descriptor;
  char *items;
  size_t *links; // IN_USE, or the next free slot
  size_t size, capacity;
  size_t free_slot; // NO_SLOT: all slots are in use
};

namespace {
constexpr size_t IN_USE = SIZE_MAX;
constexpr size_t NO_SLOT = SIZE_MAX - 1;
} // namespace

static void grow(ort_hvtr *handles);

ort_hvtr *ort_hvtr_new(ort_core *core, const ort_item_desc *descriptor) {
  ort_hvtr *handles = ort_new<ort_hvtr>(core, "ort_hvtr_new");
  handles->core = core;
  handles->descriptor = descriptor;
  handles->free_slot = NO_SLOT;
  return handles;
}

void ort_hvtr_delete(ort_hvtr *handles) {
  if (!handles) return;
  for (size_t i = handles->size; i-- > 0;) {
    if (handles->links[i] == IN_USE) ort_hvtr_release_item(handles, i);
  }
  ort_free(handles->core, handles->items);
  ort_free(handles->core, handles->links);
  ort_free(handles->core, handles);
}

size_t ort_hvtr_reclaim_item(ort_hvtr *handles) {
  size_t i = handles->free_slot;
  if (i != NO_SLOT) {
    handles->free_slot = handles->links[i];
  } else {
    if (handles->size == handles->capacity) grow(handles);
    i = handles->size++;
  }
  handles->links[i] = IN_USE;
  if (handles->descriptor->reclaim) {
    handles->descriptor->reclaim(ort_hvtr_at(handles, i));
  } else {
    memset(ort_hvtr_at(handles, i), 0, handles->descriptor->item_size);
  }
  return i;
}

void ort_hvtr_release_item(ort_hvtr *handles, size_t i) {
  if (!ort_hvtr_check_idx(handles, i)) ort_internal_error(handles->core, __FILE__, __LINE__);
  handles->links[i] = handles->free_slot;
  handles->free_slot = i;
  if (handles->descriptor->release) {
    handles->descriptor->release(handles->core, ort_hvtr_at(handles, i));
  }
}

bool ort_hvtr_check_idx(const ort_hvtr *handles, size_t i) {
  return i < handles->size && handles->links[i] == IN_USE;
}

size_t ort_hvtr_size(const ort_hvtr *handles) { return handles->size; }

void *ort_hvtr_at(const ort_hvtr *handles, size_t i) {
  return handles->items + i * handles->descriptor->item_size;
}

static void grow(ort_hvtr *handles) {
  const size_t capacity = handles->capacity + handles->capacity / 2 + 8;
  const size_t item_size = handles->descriptor->item_size;
  handles->items = static_cast<char *>(
      ort_realloc(handles->core, handles->items, capacity * item_size, "ort_hvtr_reclaim_item"));
  handles->links = static_cast<size_t *>(ort_realloc(
      handles->core, handles->links, capacity * sizeof(size_t), "ort_hvtr_reclaim_item"));
  handles->capacity = capacity;
}
