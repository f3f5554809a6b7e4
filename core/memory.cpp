// memory.cpp: tagged blocks with live counts, a hard budget and failures on demand. Everything in
// the library allocates here. Raises ORT_E_NO_MEMORY, also when the budget is exceeded.
//
// Small blocks lie in chunks (chunks.h). Others come from malloc, after their label; a temporary
// block has list links before the header. The sanitizers need malloc for every block
// (ORT_SANITIZE).
#include <stdlib.h>
#include <string.h>

#include "core/ort_state.h"

struct ort_temporary {
  ort_temporary *newer, *older;
};

namespace {

static_assert(sizeof(ort_label) % 8 == 0 && sizeof(ort_temporary) % 8 == 0);

constexpr uint64_t MAX_SIZE = (1ULL << 47) - 1;
constexpr uint32_t NO_TAG = UINT32_MAX;
#ifdef ORT_SANITIZE
constexpr size_t MAX_SMALL = 0;
#else
constexpr size_t MAX_SMALL = ORT_SMALL_GRAINS * ORT_GRAIN;
#endif

} // namespace

static inline void *try_malloc(ort_core *core, size_t size, const char *tag);
static void *allocate(ort_core *core, size_t size, const char *tag);
static void make_way(ort_core *core, uint64_t wanted);
static void *place(ort_memory *memory, ort_label label);
static void *place_after_label(size_t prefix, ort_label label);
static inline ort_label remove(ort_memory *memory, void *block);
static inline bool admit(ort_core *core, uint64_t released, uint64_t wanted);
static inline void count_in(ort_memory *memory, ort_label label);
static inline void count_out(ort_memory *memory, ort_label label);
static uint32_t find_tag(ort_memory *memory, const char *literal);
static uint32_t add_literal(ort_memory *memory, const char *literal);
static uint32_t add_tag(ort_memory *memory, const char *text);
static inline ort_tag_place *find_place(const ort_memory *memory, const char *literal);

static ort_label *label_before(void *block) { return static_cast<ort_label *>(block) - 1; }

// A size of 0 is not small.
static bool is_small(size_t size) { return size - 1 < MAX_SMALL; }

// ---- Blocks -------------------------------------------------------------------------------------

void *ort_try_malloc(ort_core *core, size_t size, const char *tag) {
  return try_malloc(core, size, tag);
}

void *ort_malloc(ort_core *core, size_t size, const char *tag) {
  void *block = try_malloc(core, size, tag);
  if (!block) ort_raise_no_memory(core);
  return block;
}

void *ort_calloc(ort_core *core, size_t count, size_t size, const char *tag) {
  size_t total;
  if (__builtin_mul_overflow(count, size, &total)) ort_raise_no_memory(core);
  void *block = ort_malloc(core, total, tag);
  memset(block, 0, total);
  return block;
}

void *ort_realloc(ort_core *core, void *block, size_t size, const char *tag) {
  void *moved = ort_try_realloc(core, block, size, tag);
  if (!moved) ort_raise_no_memory(core);
  return moved;
}

void *ort_try_realloc(ort_core *core, void *block, size_t size, const char *tag) {
  if (!block) return try_malloc(core, size, tag);
  make_way(core, size);
  ort_memory *memory = &core->memory;
  const ort_chunk *chunk = ort_chunks_find(&memory->chunks, block);
  const ort_label old =
      chunk ? ort_chunk_label(chunk, ort_chunk_index(chunk, block)) : *label_before(block);
  const ort_label label = {size, find_tag(memory, tag)};
  if (label.tag == NO_TAG || !admit(core, old.size, size)) return nullptr;
  void *moved;
  if (chunk || is_small(size)) {
    moved = place(memory, label);
    if (!moved) return nullptr;
    memcpy(moved, block, old.size < size ? old.size : size);
    remove(memory, block);
  } else {
    moved = realloc(label_before(block), sizeof label + size);
    if (!moved) return nullptr;
    *static_cast<ort_label *>(moved) = label;
    moved = static_cast<ort_label *>(moved) + 1;
  }
  count_out(memory, old);
  count_in(memory, label);
  return moved;
}

void ort_free(ort_core *core, void *block) {
  if (block) count_out(&core->memory, remove(&core->memory, block));
}

void *ort_malloc_tmp(ort_core *core, size_t size, const char *tag) {
  make_way(core, size);
  ort_memory *memory = &core->memory;
  const ort_label label = {size, find_tag(memory, tag)};
  if (label.tag == NO_TAG || !admit(core, 0, size)) ort_raise_no_memory(core);
  void *block = place_after_label(sizeof(ort_temporary), label);
  if (!block) ort_raise_no_memory(core);
  count_in(memory, label);
  ort_temporary *links = reinterpret_cast<ort_temporary *>(label_before(block)) - 1;
  links->newer = nullptr;
  links->older = memory->temporaries;
  if (links->older) links->older->newer = links;
  memory->temporaries = links;
  return block;
}

void ort_free_tmp(ort_core *core, void *block) {
  if (!block) return;
  ort_temporary *links = reinterpret_cast<ort_temporary *>(label_before(block)) - 1;
  (links->newer ? links->newer->older : core->memory.temporaries) = links->older;
  if (links->older) links->older->newer = links->newer;
  count_out(&core->memory, *label_before(block));
  free(links);
}

void *ort_own_realloc(ort_core *core, void *block, size_t old_size, size_t size) {
  if (size == 0) {
    free(block);
  } else {
    make_way(core, size);
    block = admit(core, old_size, size) ? realloc(block, size) : nullptr;
    if (!block) return nullptr;
  }
  core->memory.own_bytes += size - old_size;
  return size == 0 ? nullptr : block;
}

void ort_offer_spare(ort_core *core, ort_spare *spare) {
  spare->next = core->memory.spares;
  core->memory.spares = spare;
}

void ort_withdraw_spare(ort_core *core, ort_spare *spare) {
  ort_spare **link = &core->memory.spares;
  while (*link && *link != spare) link = &(*link)->next;
  if (*link) *link = spare->next;
}

void ort_memory_delete(ort_core *core) {
  while (core->memory.temporaries) {
    ort_free_tmp(core, reinterpret_cast<ort_label *>(core->memory.temporaries + 1) + 1);
  }
  ort_chunks_delete(&core->memory.chunks);
  free(core->memory.tags);
  free(core->memory.tag_order);
  free(core->memory.literals.places);
}

// ---- Statistics ---------------------------------------------------------------------------------

void ort_get_statistics(const ort_core *core, ort_statistics *statistics) {
  const ort_memory &memory = core->memory;
  *statistics = memory.statistics;
  for (uint32_t i = 0; i < memory.tag_count; ++i) statistics->live_blocks += memory.tags[i].blocks;
}

size_t ort_get_tag_counts(const ort_core *core, ort_tag_count *counts, size_t capacity) {
  const ort_memory &memory = core->memory;
  for (size_t i = 0; i < memory.tag_count && i < capacity; ++i) {
    counts[i] = memory.tags[memory.tag_order[i]];
  }
  return memory.tag_count;
}

uint64_t ort_memory_budget(const ort_core *core) { return core->options.memory_budget; }

uint64_t ort_memory_left(const ort_core *core) {
  const ort_memory &memory = core->memory;
  return core->options.memory_budget - memory.statistics.live_bytes - memory.own_bytes;
}

void ort_reset_peak(ort_core *core) {
  core->memory.statistics.peak_bytes = core->memory.statistics.live_bytes;
}

// ---- Helpers ------------------------------------------------------------------------------------

// Nearly always the tag is known and a chunk has room; then nothing is called.
static void *try_malloc(ort_core *core, size_t size, const char *tag) {
  ort_memory *memory = &core->memory;
  const ort_tag_place *place = find_place(memory, tag);
  ort_chunk *chunk = is_small(size) ? memory->chunks.room[ort_grains(size)] : nullptr;
  if (!chunk || !place || place->is_free() || size > ort_memory_left(core))
    return allocate(core, size, tag);
  if (!admit(core, 0, size)) return nullptr;
  const ort_label label = {size, place->tag};
  count_in(memory, label);
  return ort_chunks_take(&memory->chunks, chunk, label);
}

static void *allocate(ort_core *core, size_t size, const char *tag) {
  make_way(core, size);
  ort_memory *memory = &core->memory;
  const ort_label label = {size, find_tag(memory, tag)};
  if (label.tag == NO_TAG || !admit(core, 0, size)) return nullptr;
  void *block = place(memory, label);
  if (block) count_in(memory, label);
  return block;
}

// Frees what can be spared when the budget would refuse the wanted bytes.
static void make_way(ort_core *core, uint64_t wanted) {
  while (wanted > ort_memory_left(core) && core->memory.spares) {
    ort_spare *spare = core->memory.spares;
    core->memory.spares = spare->next;
    spare->drop(spare);
  }
}

// A block that is not counted yet; null: memory is short.
static void *place(ort_memory *memory, ort_label label) {
  if (!is_small(label.size)) return place_after_label(0, label);
  ort_chunk *chunk = memory->chunks.room[ort_grains(label.size)];
  if (!chunk) chunk = ort_chunks_add(&memory->chunks, ort_grains(label.size));
  return chunk ? ort_chunks_take(&memory->chunks, chunk, label) : nullptr;
}

static void *place_after_label(size_t prefix, ort_label label) {
  void *start = malloc(prefix + sizeof label + label.size);
  if (!start) return nullptr;
  void *block = static_cast<char *>(start) + prefix + sizeof label;
  *label_before(block) = label;
  return block;
}

// What place made; it is still counted.
static ort_label remove(ort_memory *memory, void *block) {
  if (ort_chunk *chunk = ort_chunks_find(&memory->chunks, block)) {
    const uint32_t i = ort_chunk_index(chunk, block);
    const ort_label label = ort_chunk_label(chunk, i);
    ort_chunks_give(&memory->chunks, chunk, i);
    return label;
  }
  const ort_label label = *label_before(block);
  free(label_before(block));
  return label;
}

// Counts an allocation and says whether it may be made.
static bool admit(ort_core *core, uint64_t released, uint64_t wanted) {
  const ort_failures &failures = core->failures;
  ort_memory &memory = core->memory;
  const uint64_t number = ++memory.statistics.allocations;
  // A number of 0 becomes the largest one: one comparison answers both questions.
  if (number - 1 >= failures.at - 1 && (failures.on || number == failures.at)) return false;
  return wanted <= MAX_SIZE && wanted <= ort_memory_left(core) + released;
}

static void count_in(ort_memory *memory, ort_label label) {
  ort_tag_count &count = memory->tags[label.tag];
  ++count.blocks;
  count.bytes += label.size;
  ort_statistics &all = memory->statistics;
  all.live_bytes += label.size;
  if (all.live_bytes > all.peak_bytes) all.peak_bytes = all.live_bytes;
}

static void count_out(ort_memory *memory, ort_label label) {
  ort_tag_count &count = memory->tags[label.tag];
  --count.blocks;
  count.bytes -= label.size;
  memory->statistics.live_bytes -= label.size;
}

// ---- Tags ---------------------------------------------------------------------------------------

// Number of a tag; NO_TAG: no memory for a new one.
static uint32_t find_tag(ort_memory *memory, const char *literal) {
  const ort_tag_place *place = find_place(memory, literal);
  return place && !place->is_free() ? place->tag : add_literal(memory, literal);
}

// The place of a literal, or the free one for it; null: there are no places yet.
static ort_tag_place *find_place(const ort_memory *memory, const char *literal) {
  if (memory->literals.capacity == 0) return nullptr;
  return memory->literals.find(ort_tag_place::home_of(literal), [=](const ort_tag_place &place) {
    return place.literal == literal;
  });
}

static uint32_t add_literal(ort_memory *memory, const char *literal) {
  if (memory->literal_count * 2 >= memory->literals.capacity && !memory->literals.grow(256))
    return NO_TAG;
  const uint32_t tag = add_tag(memory, literal);
  if (tag == NO_TAG) return NO_TAG;
  *find_place(memory, literal) = {literal, tag};
  ++memory->literal_count;
  return tag;
}

// Number of the tag with this text, a new one if need be.
static uint32_t add_tag(ort_memory *memory, const char *text) {
  uint32_t low = 0, high = memory->tag_count;
  while (low < high) {
    const uint32_t middle = (low + high) / 2;
    const int order = strcmp(memory->tags[memory->tag_order[middle]].tag, text);
    if (order == 0) return memory->tag_order[middle];
    if (order < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  if (memory->tag_count == memory->tag_capacity) {
    const uint32_t capacity = memory->tag_capacity ? memory->tag_capacity * 2 : 128;
    if (capacity > ORT_MAX_TAGS) return NO_TAG;
    void *tags = realloc(memory->tags, capacity * sizeof *memory->tags);
    if (!tags) return NO_TAG;
    memory->tags = static_cast<ort_tag_count *>(tags);
    void *order = realloc(memory->tag_order, capacity * sizeof *memory->tag_order);
    if (!order) return NO_TAG;
    memory->tag_order = static_cast<uint32_t *>(order);
    memory->tag_capacity = capacity;
  }
  const uint32_t number = memory->tag_count++;
  memory->tags[number] = {text, 0, 0};
  memmove(memory->tag_order + low + 1, memory->tag_order + low,
          (number - low) * sizeof *memory->tag_order);
  memory->tag_order[low] = number;
  return number;
}
