// vector.cpp: vectors of fixed-size items, and the stable sort. Everyone calls it; growing and long
// sorts raise ORT_E_NO_MEMORY and leave the vector as it was.
#include <string.h>

#include "core/ort_state.h"

namespace {

constexpr size_t MIN_CAPACITY = 4;

// Arrays up to this size are sorted in place, longer ones are merged from runs of this size.
constexpr size_t RUN = 12;

struct sort_order {
  int (*compare)(const void *, const void *);
  size_t item_size;
  bool descending;
};

} // namespace

static ort_vtr *new_vector(ort_core *core, const ort_item_desc *descriptor, size_t capacity,
                           size_t room);
static char *first_items(ort_vtr *vector);
static void reserve(ort_vtr *vector, size_t count);
static bool in_order(const sort_order &order, const char *a, const char *b);
static void sort_run(const sort_order &order, char *items, size_t count);
static void merge(const sort_order &order, char *to, const char *a, const char *b, const char *end);
static void swap_bytes(char *a, char *b, size_t size);

// ---- Vectors ------------------------------------------------------------------------------------

ort_vtr *ort_vtr_new(ort_core *core, const ort_item_desc *descriptor, size_t capacity,
                     size_t increment) {
  ort_vtr *vector = new_vector(core, descriptor, capacity, 0);
  vector->increment = increment;
  return vector;
}

ort_vtr *ort_vtr_take(ort_vtr *vector, const ort_item_desc *descriptor, size_t room) {
  ort_vtr *taken = new_vector(vector->core, descriptor, vector->count, room);
  memcpy(taken->items, vector->items, vector->count * vector->descriptor->item_size);
  taken->count = vector->count;
  vector->count = 0;
  return taken;
}

void ort_vtr_delete(ort_vtr *vector) {
  if (!vector) return;
  ort_vtr_shorten(vector, 0);
  if (vector->items != first_items(vector)) ort_free(vector->core, vector->items);
  ort_free(vector->core, vector);
}

size_t ort_vtr_count(const ort_vtr *vector) { return vector ? vector->count : 0; }

void *ort_vtr_at(const ort_vtr *vector, size_t i) {
  return vector->items + i * vector->descriptor->item_size;
}

void *ort_vtr_grow(ort_vtr *vector) {
  if (vector->count == vector->capacity) reserve(vector, vector->count + 1);
  return vector->items + vector->descriptor->item_size * vector->count++;
}

void *ort_vtr_push(ort_vtr *vector) {
  void *item = ort_vtr_grow(vector);
  if (vector->descriptor->reclaim) {
    vector->descriptor->reclaim(item);
  } else {
    memset(item, 0, vector->descriptor->item_size);
  }
  return item;
}

void ort_vtr_resize(ort_vtr *vector, size_t count) {
  if (count < vector->count) ort_vtr_shorten(vector, count);
  if (count > vector->capacity) reserve(vector, count);
  while (vector->count < count) ort_vtr_push(vector);
}

void ort_vtr_release(ort_vtr *vector, size_t count) {
  while (vector->count > count) {
    --vector->count;
    vector->descriptor->release(vector->core, ort_vtr_at(vector, vector->count));
  }
}

void ort_vtr_sort_c(ort_vtr *vector, int (*compare)(const void *, const void *)) {
  ort_qsort_sc(vector->core, vector->items, vector->count, vector->descriptor->item_size, compare,
               0);
}

static ort_vtr *new_vector(ort_core *core, const ort_item_desc *descriptor, size_t capacity,
                           size_t room) {
  if (capacity == 0) capacity = 1;
  size_t bytes;
  if (__builtin_mul_overflow(capacity, descriptor->item_size, &bytes) ||
      __builtin_add_overflow(bytes, sizeof(ort_vtr) + room, &bytes)) {
    bytes = SIZE_MAX;
  }
  ort_vtr *vector = static_cast<ort_vtr *>(ort_malloc(core, bytes, "ort_vtr_new"));
  *vector = {core, descriptor, first_items(vector), 0, capacity, 0};
  return vector;
}

static char *first_items(ort_vtr *vector) { return reinterpret_cast<char *>(vector + 1); }

// Makes room for count items, at least half as much again as there is now.
static void reserve(ort_vtr *vector, size_t count) {
  const size_t half = vector->capacity / 2;
  size_t capacity = vector->capacity + (half > vector->increment ? half : vector->increment);
  if (capacity < MIN_CAPACITY) capacity = MIN_CAPACITY;
  if (capacity < count) capacity = count;
  size_t bytes;
  if (__builtin_mul_overflow(capacity, vector->descriptor->item_size, &bytes)) bytes = SIZE_MAX;
  const bool first = vector->items == first_items(vector);
  void *items = ort_realloc(vector->core, first ? nullptr : vector->items, bytes, "ort_vtr_push");
  if (first) memcpy(items, vector->items, vector->count * vector->descriptor->item_size);
  vector->items = static_cast<char *>(items);
  vector->capacity = capacity;
}

// ---- Sorting ------------------------------------------------------------------------------------

void ort_qsort_sc(ort_core *core, void *base, size_t count, size_t item_size,
                  int (*compare)(const void *, const void *), int descending) {
  const sort_order order = {compare, item_size, descending != 0};
  char *items = static_cast<char *>(base);
  for (size_t i = 0; i < count; i += RUN) {
    sort_run(order, items + i * item_size, count - i < RUN ? count - i : RUN);
  }
  if (count <= RUN) return;

  const size_t bytes = count * item_size;
  char *copy = static_cast<char *>(ort_malloc_tmp(core, bytes, "ort_qsort_sc"));
  char *from = items, *to = copy;
  for (size_t run = RUN * item_size; run < bytes; run *= 2) {
    for (size_t i = 0; i < bytes; i += 2 * run) {
      const size_t middle = bytes - i < run ? bytes : i + run;
      const size_t end = bytes - i < 2 * run ? bytes : i + 2 * run;
      merge(order, to + i, from + i, from + middle, from + end);
    }
    char *sorted = to;
    to = from;
    from = sorted;
  }
  if (from != items) memcpy(items, from, bytes);
  ort_free_tmp(core, copy);
}

static bool in_order(const sort_order &order, const char *a, const char *b) {
  const int result = order.compare(a, b);
  return order.descending ? result >= 0 : result <= 0;
}

static void sort_run(const sort_order &order, char *items, size_t count) {
  const size_t size = order.item_size;
  for (size_t i = 1; i < count; ++i) {
    for (char *item = items + i * size; item > items; item -= size) {
      if (in_order(order, item - size, item)) break;
      swap_bytes(item - size, item, size);
    }
  }
}

// Merges the runs from a to b and from b to end.
static void merge(const sort_order &order, char *to, const char *a, const char *b,
                  const char *end) {
  const char *const middle = b;
  if (b < end && in_order(order, b - order.item_size, b)) { // much was made in its order
    memcpy(to, a, static_cast<size_t>(end - a));
    return;
  }
  while (a < middle && b < end) {
    const char *&next = in_order(order, a, b) ? a : b;
    memcpy(to, next, order.item_size);
    to += order.item_size;
    next += order.item_size;
  }
  memcpy(to, a, static_cast<size_t>(middle - a));
  memcpy(to + (middle - a), b, static_cast<size_t>(end - b));
}

static void swap_bytes(char *a, char *b, size_t size) {
  if (size == sizeof(void *)) { // most items are pointers
    void *x, *y;
    memcpy(&x, a, sizeof x);
    memcpy(&y, b, sizeof y);
    memcpy(a, &y, sizeof y);
    memcpy(b, &x, sizeof x);
    return;
  }
  char part[64];
  while (size > 0) {
    const size_t n = size < sizeof part ? size : sizeof part;
    memcpy(part, a, n);
    memcpy(a, b, n);
    memcpy(b, part, n);
    a += n;
    b += n;
    size -= n;
  }
}
