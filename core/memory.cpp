// memory.cpp: tagged blocks with live counts, a hard budget and failures on demand. Everything in
// the library allocates here. Raises ORT_E_NO_MEMORY, also when the budget is exceeded.
//
// Small blocks lie in chunks (chunks.h). Others come from malloc, after their label; a temporary
// block has list links before the header. The sanitizers need malloc for every block
// (ORT_SANITIZE).
#include <algorithm>
#include <stdlib.h>
#include <string.h>

#include "core/ort_state.h"

struct ort_temporary {
  ort_temporary *newer, *older;
};

namespace {

static_assert(sizeof(ort_label) % 8 == 0 && sizeof(ort_temporary) % 8 == 0);

constexpr uint64_t MAX_BUDGET = (1ULL << 47) - 1;
constexpr uint64_t NEVER = UINT64_MAX;
constexpr uint32_t NO_TAG = UINT32_MAX;
constexpr size_t FEWEST_PLACES = 256; // of literals
#ifdef ORT_SANITIZE
constexpr size_t MAX_SMALL = 0;
#else
constexpr size_t MAX_SMALL = ORT_SMALL_GRAINS * ORT_GRAIN;
#endif

} // namespace

static inline void *take_small(ort_core *core, size_t size, const char *tag);
[[gnu::noinline]] static void *allocate_or_raise(ort_core *core, size_t size, const char *tag);
[[gnu::noinline]] static void *allocate(ort_core *core, size_t size, const char *tag);
static void make_way(ort_core *core, uint64_t wanted);
static inline bool admit(ort_memory *memory, uint64_t released, uint64_t wanted);
static inline bool is_to_fail(ort_memory *memory);
static bool fail(ort_memory *memory);
static void aim(ort_memory *memory, uint64_t allocations, uint64_t failing);
static inline void take(ort_memory *memory, uint64_t bytes);
static void *place(ort_memory *memory, ort_label label);
static void *place_outside(ort_memory *memory, size_t prefix, ort_label label);
static inline void remove(ort_memory *memory, void *block);
[[gnu::noinline]] static void remove_outside(ort_memory *memory, void *block, size_t prefix);
static void count(ort_memory *memory, ort_label label, int blocks);
static uint32_t find_tag(ort_memory *memory, const char *literal);
static uint32_t add_literal(ort_memory *memory, const char *literal);
static uint32_t add_tag(ort_memory *memory, const char *text);
static inline ort_tag_place *find_place(const ort_memory *memory, const char *literal);

static ort_label *label_before(void *block) { return static_cast<ort_label *>(block) - 1; }

// A size of 0 is not small.
static bool is_small(size_t size) { return size - 1 < MAX_SMALL; }

// ---- Blocks -------------------------------------------------------------------------------------

void *ort_try_malloc(ort_core *core, size_t size, const char *tag) {
  void *block = take_small(core, size, tag);
  return block ? block : allocate(core, size, tag);
}

void *ort_malloc(ort_core *core, size_t size, const char *tag) {
  void *block = take_small(core, size, tag);
  return block ? block : allocate_or_raise(core, size, tag);
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
  if (!block) return ort_try_malloc(core, size, tag);
  make_way(core, size);
  ort_memory *memory = &core->memory;
  const ort_chunk *chunk = ort_chunks_find(&memory->chunks, block);
  const ort_label old =
      chunk ? ort_chunk_label(chunk, ort_chunk_index(chunk, block)) : *label_before(block);
  const ort_label label = {size, find_tag(memory, tag)};
  if (label.tag == NO_TAG || !admit(memory, old.size, size)) return nullptr;
  void *moved;
  if (chunk || is_small(size)) {
    moved = place(memory, label);
    if (!moved) return nullptr;
    memcpy(moved, block, old.size < size ? old.size : size);
    remove(memory, block); // and gives its bytes back
    take(memory, size);
  } else {
    moved = realloc(label_before(block), sizeof label + size);
    if (!moved) return nullptr;
    *static_cast<ort_label *>(moved) = label;
    moved = static_cast<ort_label *>(moved) + 1;
    count(memory, old, -1);
    count(memory, label, 1);
    take(memory, size - old.size);
  }
  return moved;
}

void ort_free(ort_core *core, void *block) {
  if (block) remove(&core->memory, block);
}

void *ort_malloc_tmp(ort_core *core, size_t size, const char *tag) {
  make_way(core, size);
  ort_memory *memory = &core->memory;
  const ort_label label = {size, find_tag(memory, tag)};
  if (label.tag == NO_TAG || !admit(memory, 0, size)) ort_raise_no_memory(core);
  void *block = place_outside(memory, sizeof(ort_temporary), label);
  if (!block) ort_raise_no_memory(core);
  take(memory, size);
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
  remove_outside(&core->memory, block, sizeof *links);
}

void *ort_own_realloc(ort_core *core, void *block, size_t old_size, size_t size) {
  if (size == 0) {
    free(block);
  } else {
    make_way(core, size);
    block = admit(&core->memory, old_size, size) ? realloc(block, size) : nullptr;
    if (!block) return nullptr;
  }
  core->memory.own_bytes += size - old_size;
  core->memory.left -= size - old_size;
  core->memory.peak_left -= static_cast<int64_t>(size - old_size);
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

bool ort_memory_new(ort_core *core) {
  ort_memory *memory = &core->memory;
  core->options.memory_budget = std::min(core->options.memory_budget, MAX_BUDGET);
  memory->left = core->options.memory_budget;
  ort_reset_peak(core);
  aim(memory, 0, NEVER);
  return memory->literals.grow(FEWEST_PLACES) && ort_chunks_new(&memory->chunks);
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

void ort_fail_at(ort_core *core, uint64_t at, bool on) {
  ort_memory *memory = &core->memory;
  const uint64_t allocations = memory->failing - memory->until_failing;
  memory->fail_on = on && at > 0;
  if (at <= allocations) at = memory->fail_on ? allocations + 1 : NEVER;
  aim(memory, allocations, at);
}

// ---- Statistics ---------------------------------------------------------------------------------

void ort_get_statistics(const ort_core *core, ort_statistics *statistics) {
  const ort_memory &memory = core->memory;
  const uint64_t given = core->options.memory_budget - memory.own_bytes;
  *statistics = {ort_chunks_used(&memory.chunks), given - memory.left,
                 given - static_cast<uint64_t>(memory.peak_left),
                 memory.failing - memory.until_failing};
  for (uint32_t i = 0; i < memory.tag_count; ++i)
    statistics->live_blocks += memory.tags[i].outside.blocks;
}

size_t ort_get_tag_counts(const ort_core *core, ort_tag_count *counts, size_t capacity) {
  const ort_memory &memory = core->memory;
  for (uint32_t i = 0; i < memory.tag_count; ++i) memory.tags[i].all = memory.tags[i].outside;
  ort_chunks_count(&memory.chunks, memory.tags);
  for (size_t i = 0; i < memory.tag_count && i < capacity; ++i) {
    const ort_tag &tag = memory.tags[memory.tag_order[i]];
    counts[i] = {tag.text, tag.all.blocks, tag.all.bytes};
  }
  return memory.tag_count;
}

uint64_t ort_memory_budget(const ort_core *core) { return core->options.memory_budget; }

uint64_t ort_memory_left(const ort_core *core) { return core->memory.left; }

void ort_reset_peak(ort_core *core) {
  core->memory.peak_left = static_cast<int64_t>(core->memory.left);
}

// ---- Helpers ------------------------------------------------------------------------------------

// Nearly always the tag is known, a chunk has room, the budget allows it, and no test wants it to
// fail. Null: it must be allocated.
static void *take_small(ort_core *core, size_t size, const char *tag) {
  ort_memory *memory = &core->memory;
  ort_chunk *chunk = is_small(size) ? memory->chunks.room[ort_grains(size)] : nullptr;
  if (!chunk || size > memory->left || memory->until_failing == 1) return nullptr;
  const ort_tag_place *place = find_place(memory, tag);
  if (place->literal != tag) return nullptr;
  --memory->until_failing;
  take(memory, size);
  return ort_chunks_take(&memory->chunks, chunk, {size, place->tag});
}

static void *allocate_or_raise(ort_core *core, size_t size, const char *tag) {
  void *block = allocate(core, size, tag);
  if (!block) ort_raise_no_memory(core);
  return block;
}

static void *allocate(ort_core *core, size_t size, const char *tag) {
  make_way(core, size);
  ort_memory *memory = &core->memory;
  const ort_label label = {size, find_tag(memory, tag)};
  if (label.tag == NO_TAG || !admit(memory, 0, size)) return nullptr;
  void *block = place(memory, label);
  if (block) take(memory, size);
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

// Counts an allocation and says whether it may be made.
static bool admit(ort_memory *memory, uint64_t released, uint64_t wanted) {
  return !is_to_fail(memory) && wanted <= memory->left + released;
}

static bool is_to_fail(ort_memory *memory) { return --memory->until_failing == 0 && fail(memory); }

static bool fail(ort_memory *memory) {
  aim(memory, memory->failing, memory->fail_on ? memory->failing + 1 : NEVER);
  return true;
}

// So many allocations have been made, and which one fails next.
static void aim(ort_memory *memory, uint64_t allocations, uint64_t failing) {
  memory->failing = failing;
  memory->until_failing = failing - allocations;
}

// Takes bytes out of the budget; where a block shrank, the difference is below zero.
static void take(ort_memory *memory, uint64_t bytes) {
  memory->left -= bytes;
  const auto left = static_cast<int64_t>(memory->left);
  if (left < memory->peak_left) memory->peak_left = left;
}

// A block that is not taken out of the budget yet; null: memory is short.
static void *place(ort_memory *memory, ort_label label) {
  if (!is_small(label.size)) return place_outside(memory, 0, label);
  ort_chunk *chunk = memory->chunks.room[ort_grains(label.size)];
  if (!chunk) chunk = ort_chunks_add(&memory->chunks, ort_grains(label.size));
  return chunk ? ort_chunks_take(&memory->chunks, chunk, label) : nullptr;
}

static void *place_outside(ort_memory *memory, size_t prefix, ort_label label) {
  void *start = malloc(prefix + sizeof label + label.size);
  if (!start) return nullptr;
  void *block = static_cast<char *>(start) + prefix + sizeof label;
  *label_before(block) = label;
  count(memory, label, 1);
  return block;
}

// Removes what place made, and gives its bytes back to the budget.
static void remove(ort_memory *memory, void *block) {
  ort_chunk *chunk = ort_chunks_find(&memory->chunks, block);
  if (!chunk) return remove_outside(memory, block, 0);
  const uint32_t i = ort_chunk_index(chunk, block);
  memory->left += ort_chunk_label(chunk, i).size;
  ort_chunks_give(&memory->chunks, chunk, i);
}

static void remove_outside(ort_memory *memory, void *block, size_t prefix) {
  const ort_label label = *label_before(block);
  memory->left += label.size;
  count(memory, label, -1);
  free(reinterpret_cast<char *>(label_before(block)) - prefix);
}

// One block outside of chunks more, or less.
static void count(ort_memory *memory, ort_label label, int blocks) {
  ort_count &count = memory->tags[label.tag].outside;
  count.blocks += static_cast<uint64_t>(blocks);
  count.bytes += static_cast<uint64_t>(blocks) * label.size;
}

// ---- Tags ---------------------------------------------------------------------------------------

// Number of a tag; NO_TAG: no memory for a new one.
static uint32_t find_tag(ort_memory *memory, const char *literal) {
  const ort_tag_place *place = find_place(memory, literal);
  return place->literal == literal ? place->tag : add_literal(memory, literal);
}

// The place of a literal, or the free one for it.
static ort_tag_place *find_place(const ort_memory *memory, const char *literal) {
  return memory->literals.find(ort_tag_place::home_of(literal), [=](const ort_tag_place &place) {
    return place.literal == literal;
  });
}

static uint32_t add_literal(ort_memory *memory, const char *literal) {
  if (memory->literal_count * 2 >= memory->literals.capacity &&
      !memory->literals.grow(FEWEST_PLACES))
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
    const int order = strcmp(memory->tags[memory->tag_order[middle]].text, text);
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
    memory->tags = static_cast<ort_tag *>(tags);
    void *order = realloc(memory->tag_order, capacity * sizeof *memory->tag_order);
    if (!order) return NO_TAG;
    memory->tag_order = static_cast<uint32_t *>(order);
    memory->tag_capacity = capacity;
  }
  const uint32_t number = memory->tag_count++;
  memory->tags[number] = {text, {}, {}};
  memmove(memory->tag_order + low + 1, memory->tag_order + low,
          (number - low) * sizeof *memory->tag_order);
  memory->tag_order[low] = number;
  return number;
}
