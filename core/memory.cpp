// memory.cpp: tagged blocks with live counts, a hard budget and failures on demand. Everything in
// the library allocates here. Raises ORT_E_NO_MEMORY, also when the budget is exceeded.
//
// A block is preceded by a header of 8 bytes; a temporary block has list links before the header.
// Sizes are known when a block is released, so that another allocator can take the place of malloc
// in acquire, resize and release. The sanitizers need malloc itself (ORT_SANITIZE).
#include <stdlib.h>
#include <string.h>

#include "core/ort_state.h"

struct ort_temporary {
  ort_temporary *newer, *older;
};

namespace {

struct block_header {
  uint64_t size : 48; // as requested
  uint64_t tag : 16;
};
static_assert(sizeof(block_header) == 8 && sizeof(ort_temporary) % 8 == 0);

constexpr uint64_t MAX_SIZE = (1ULL << 47) - 1;
constexpr uint32_t MAX_TAGS = 1U << 16;
constexpr uint32_t NO_TAG = UINT32_MAX;

} // namespace

static void *allocate(ort_core *core, size_t prefix, size_t size, const char *tag);
static bool admit(ort_core *core, uint64_t released, uint64_t wanted);
static void count_in(ort_core *core, block_header *header, size_t size, uint32_t tag);
static void count_out(ort_core *core, const block_header *header);
static uint32_t find_tag(ort_memory *memory, const char *literal);
static uint32_t add_literal(ort_memory *memory, const char *literal);
static uint32_t add_tag(ort_memory *memory, const char *text);
static ort_tag_slot *find_slot(const ort_memory *memory, const char *literal);

static block_header *header_of(void *block) { return static_cast<block_header *>(block) - 1; }

// ---- Blocks -------------------------------------------------------------------------------------

void *ort_try_malloc(ort_core *core, size_t size, const char *tag) {
  return allocate(core, 0, size, tag);
}

void *ort_malloc(ort_core *core, size_t size, const char *tag) {
  void *block = allocate(core, 0, size, tag);
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
  if (!block) return ort_malloc(core, size, tag);
  block_header *header = header_of(block);
  const uint32_t number = find_tag(&core->memory, tag);
  if (number == NO_TAG || !admit(core, header->size, size)) ort_raise_no_memory(core);
  const block_header old = *header;
  header = static_cast<block_header *>(realloc(header, sizeof *header + size));
  if (!header) ort_raise_no_memory(core);
  count_out(core, &old);
  count_in(core, header, size, number);
  return header + 1;
}

void ort_free(ort_core *core, void *block) {
  if (!block) return;
  block_header *header = header_of(block);
  count_out(core, header);
  free(header);
}

void *ort_malloc_tmp(ort_core *core, size_t size, const char *tag) {
  void *block = allocate(core, sizeof(ort_temporary), size, tag);
  if (!block) ort_raise_no_memory(core);
  ort_temporary *links = reinterpret_cast<ort_temporary *>(header_of(block)) - 1;
  links->newer = nullptr;
  links->older = core->memory.temporaries;
  if (links->older) links->older->newer = links;
  core->memory.temporaries = links;
  return block;
}

void ort_free_tmp(ort_core *core, void *block) {
  if (!block) return;
  ort_temporary *links = reinterpret_cast<ort_temporary *>(header_of(block)) - 1;
  (links->newer ? links->newer->older : core->memory.temporaries) = links->older;
  if (links->older) links->older->newer = links->newer;
  count_out(core, header_of(block));
  free(links);
}

void *ort_own_realloc(ort_core *core, void *block, size_t old_size, size_t size) {
  if (size == 0) {
    free(block);
  } else {
    block = admit(core, old_size, size) ? realloc(block, size) : nullptr;
    if (!block) return nullptr;
  }
  core->memory.own_bytes += size - old_size;
  return size == 0 ? nullptr : block;
}

size_t ort_count_temporaries(const ort_core *core) {
  size_t count = 0;
  for (const ort_temporary *t = core->memory.temporaries; t; t = t->older) ++count;
  return count;
}

void ort_memory_delete(ort_core *core) {
  while (core->memory.temporaries) {
    ort_free_tmp(core, reinterpret_cast<block_header *>(core->memory.temporaries + 1) + 1);
  }
  free(core->memory.tags);
  free(core->memory.tag_order);
  free(core->memory.slots);
}

// ---- Statistics ---------------------------------------------------------------------------------

void ort_get_statistics(const ort_core *core, ort_statistics *statistics) {
  *statistics = core->memory.statistics;
}

size_t ort_get_tag_counts(const ort_core *core, ort_tag_count *counts, size_t capacity) {
  const ort_memory &memory = core->memory;
  for (size_t i = 0; i < memory.tag_count && i < capacity; ++i) {
    counts[i] = memory.tags[memory.tag_order[i]];
  }
  return memory.tag_count;
}

void ort_reset_peak(ort_core *core) {
  core->memory.statistics.peak_bytes = core->memory.statistics.live_bytes;
}

// ---- Helpers ------------------------------------------------------------------------------------

// A block behind prefix bytes and its header; null: memory is short.
static void *allocate(ort_core *core, size_t prefix, size_t size, const char *tag) {
  const uint32_t number = find_tag(&core->memory, tag);
  if (number == NO_TAG || !admit(core, 0, size)) return nullptr;
  char *memory = static_cast<char *>(malloc(prefix + sizeof(block_header) + size));
  if (!memory) return nullptr;
  block_header *header = reinterpret_cast<block_header *>(memory + prefix);
  count_in(core, header, size, number);
  return header + 1;
}

// Counts an allocation and says whether it may go on to malloc.
static bool admit(ort_core *core, uint64_t released, uint64_t wanted) {
  const ort_options &options = core->options;
  ort_memory &memory = core->memory;
  const uint64_t number = ++memory.statistics.allocations;
  if (options.fail_at != 0 &&
      (options.fail_on ? number >= options.fail_at : number == options.fail_at)) {
    return false;
  }
  const uint64_t kept = memory.statistics.live_bytes + memory.own_bytes - released;
  return wanted <= MAX_SIZE && kept <= options.memory_budget &&
         wanted <= options.memory_budget - kept;
}

static void count_in(ort_core *core, block_header *header, size_t size, uint32_t tag) {
  header->size = size & MAX_SIZE;
  header->tag = tag & (MAX_TAGS - 1);
  ort_tag_count &count = core->memory.tags[tag];
  ++count.blocks;
  count.bytes += size;
  ort_statistics &all = core->memory.statistics;
  ++all.live_blocks;
  all.live_bytes += size;
  if (all.live_bytes > all.peak_bytes) all.peak_bytes = all.live_bytes;
}

static void count_out(ort_core *core, const block_header *header) {
  ort_tag_count &count = core->memory.tags[header->tag];
  --count.blocks;
  count.bytes -= header->size;
  --core->memory.statistics.live_blocks;
  core->memory.statistics.live_bytes -= header->size;
}

// ---- Tags ---------------------------------------------------------------------------------------

// Number of a tag; NO_TAG: no memory for a new one.
static uint32_t find_tag(ort_memory *memory, const char *literal) {
  if (memory->slot_capacity != 0) {
    const ort_tag_slot *slot = find_slot(memory, literal);
    if (slot->literal) return slot->tag;
  }
  return add_literal(memory, literal);
}

static ort_tag_slot *find_slot(const ort_memory *memory, const char *literal) {
  const uint32_t mask = memory->slot_capacity - 1;
  uint64_t hash = reinterpret_cast<uintptr_t>(literal) * 0x9E3779B97F4A7C15U;
  uint32_t i = static_cast<uint32_t>(hash >> 32) & mask;
  while (memory->slots[i].literal && memory->slots[i].literal != literal) i = (i + 1) & mask;
  return &memory->slots[i];
}

static uint32_t add_literal(ort_memory *memory, const char *literal) {
  if (memory->slot_count * 2 >= memory->slot_capacity) {
    ort_memory larger = *memory;
    larger.slot_capacity = memory->slot_capacity ? memory->slot_capacity * 2 : 256;
    larger.slots = static_cast<ort_tag_slot *>(calloc(larger.slot_capacity, sizeof(ort_tag_slot)));
    if (!larger.slots) return NO_TAG;
    for (uint32_t i = 0; i < memory->slot_capacity; ++i) {
      const ort_tag_slot &slot = memory->slots[i];
      if (slot.literal) *find_slot(&larger, slot.literal) = slot;
    }
    free(memory->slots);
    memory->slots = larger.slots;
    memory->slot_capacity = larger.slot_capacity;
  }
  const uint32_t tag = add_tag(memory, literal);
  if (tag == NO_TAG) return NO_TAG;
  *find_slot(memory, literal) = {literal, tag};
  ++memory->slot_count;
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
    if (capacity > MAX_TAGS) return NO_TAG;
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
