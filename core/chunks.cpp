// chunks.cpp: small blocks, of which a drawing has very many. memory.cpp calls it and does the
// accounting. Nothing raises here.
//
// A chunk holds blocks of one size and 2 bytes beside each for its label. Chunks lie at multiples
// of their size, so that a block tells its chunk; a table of all chunks tells the blocks from those
// of malloc. A chunk that has emptied goes back to malloc, but for one of each size: so parsers
// that follow each other under one core find their chunks ready.
#include <stdlib.h>

#include "core/ort_state.h"

// notes[i] belongs to block i: its label, or while it is free, the next free block.
struct ort_chunk {
  ort_chunk *next, *previous; // of the chunks of this size that have room
  char *blocks;
  uint32_t grains;     // of one block
  uint32_t reciprocal; // of grains, for a division without dividing
  uint16_t capacity;   // number of blocks
  uint16_t used;
  uint16_t fresh; // from this block on, none was ever used
  uint16_t free;  // first free block before that one, or NO_BLOCK
  uint16_t notes[];
};

namespace {

constexpr size_t GRAIN = 8;
constexpr size_t CHUNK = 1U << 14;
constexpr size_t CHUNK_BYTES = CHUNK - 2 * sizeof(size_t); // malloc can put them side by side
static_assert(CHUNK - CHUNK_BYTES <= sizeof(ort_label)); // no block of malloc begins in the rest
constexpr uint16_t NO_BLOCK = UINT16_MAX;
constexpr int SLACK_BITS = 3; // of a note: what rounding added to the size; the rest is the tag
static_assert(1U << SLACK_BITS == GRAIN && ORT_MAX_TAGS << SLACK_BITS == 1U << 16);

// block / grains == block * reciprocal >> RECIPROCAL_BITS for all blocks of a chunk.
constexpr int RECIPROCAL_BITS = 20;
static_assert(CHUNK / GRAIN * ORT_SMALL_GRAINS <= 1U << RECIPROCAL_BITS);

} // namespace

static ort_chunk *new_chunk(ort_chunks *chunks, size_t grains);
static void delete_chunk(ort_chunks *chunks, ort_chunk *chunk);
static void link_chunk(ort_chunks *chunks, ort_chunk *chunk);
static void unlink_chunk(ort_chunks *chunks, ort_chunk *chunk);
static ort_chunk *chunk_of(const ort_chunks *chunks, const void *block);
static uint32_t index_of(const ort_chunk *chunk, const void *block);
static ort_label label_at(const ort_chunk *chunk, uint32_t i);
static bool reserve_entry(ort_chunks *chunks);
static void remove_entry(ort_chunks *chunks, const ort_chunk *chunk);
static size_t home(const ort_chunks *chunks, const void *chunk);

void *ort_chunks_take(ort_chunks *chunks, ort_label label) {
  const size_t grains = (label.size + GRAIN - 1) / GRAIN;
  ort_chunk *chunk = chunks->room[grains];
  if (!chunk) chunk = new_chunk(chunks, grains);
  if (!chunk) return nullptr;
  uint32_t i = chunk->free;
  if (i != NO_BLOCK) {
    chunk->free = chunk->notes[i];
  } else {
    i = chunk->fresh++;
  }
  const size_t slack = grains * GRAIN - label.size;
  chunk->notes[i] = static_cast<uint16_t>(label.tag << SLACK_BITS | slack);
  if (++chunk->used == chunk->capacity) unlink_chunk(chunks, chunk);
  return chunk->blocks + i * grains * GRAIN;
}

bool ort_chunks_find(const ort_chunks *chunks, const void *block, ort_label *label) {
  const ort_chunk *chunk = chunk_of(chunks, block);
  if (chunk) *label = label_at(chunk, index_of(chunk, block));
  return chunk;
}

bool ort_chunks_give(ort_chunks *chunks, void *block, ort_label *label) {
  ort_chunk *chunk = chunk_of(chunks, block);
  if (!chunk) return false;
  const uint32_t i = index_of(chunk, block);
  *label = label_at(chunk, i);
  chunk->notes[i] = chunk->free;
  chunk->free = static_cast<uint16_t>(i);
  if (chunk->used-- == chunk->capacity) link_chunk(chunks, chunk);
  if (chunk->used == 0 && (chunk->next || chunk->previous)) delete_chunk(chunks, chunk);
  return true;
}

void ort_chunks_delete(ort_chunks *chunks) {
  for (size_t i = 0; i < chunks->capacity; ++i) free(chunks->table[i]);
  free(chunks->table);
}

// ---- Chunks -------------------------------------------------------------------------------------

static ort_chunk *new_chunk(ort_chunks *chunks, size_t grains) {
  if (!reserve_entry(chunks)) return nullptr;
  void *memory;
  if (posix_memalign(&memory, CHUNK, CHUNK_BYTES) != 0) return nullptr;
  ort_chunk *chunk = static_cast<ort_chunk *>(memory);
  const size_t size = grains * GRAIN;
  const size_t capacity = (CHUNK_BYTES - sizeof *chunk) / (size + sizeof *chunk->notes);
  *chunk = {};
  chunk->blocks = static_cast<char *>(memory) + (CHUNK_BYTES - capacity * size) / GRAIN * GRAIN;
  chunk->grains = static_cast<uint32_t>(grains);
  chunk->reciprocal = (1U << RECIPROCAL_BITS) / chunk->grains + 1;
  chunk->capacity = static_cast<uint16_t>(capacity);
  chunk->free = NO_BLOCK;
  link_chunk(chunks, chunk);
  size_t i = home(chunks, chunk);
  while (chunks->table[i]) i = (i + 1) & (chunks->capacity - 1);
  chunks->table[i] = chunk;
  ++chunks->count;
  return chunk;
}

static void delete_chunk(ort_chunks *chunks, ort_chunk *chunk) {
  unlink_chunk(chunks, chunk);
  remove_entry(chunks, chunk);
  free(chunk);
}

static void link_chunk(ort_chunks *chunks, ort_chunk *chunk) {
  ort_chunk *&first = chunks->room[chunk->grains];
  chunk->previous = nullptr;
  chunk->next = first;
  if (first) first->previous = chunk;
  first = chunk;
}

static void unlink_chunk(ort_chunks *chunks, ort_chunk *chunk) {
  (chunk->previous ? chunk->previous->next : chunks->room[chunk->grains]) = chunk->next;
  if (chunk->next) chunk->next->previous = chunk->previous;
}

static uint32_t index_of(const ort_chunk *chunk, const void *block) {
  const size_t offset = static_cast<size_t>(static_cast<const char *>(block) - chunk->blocks);
  return static_cast<uint32_t>(offset / GRAIN) * chunk->reciprocal >> RECIPROCAL_BITS;
}

static ort_label label_at(const ort_chunk *chunk, uint32_t i) {
  const uint16_t note = chunk->notes[i];
  return {chunk->grains * GRAIN - note % GRAIN, static_cast<uint32_t>(note >> SLACK_BITS)};
}

// ---- The table of all chunks: open addressing with linear probing --------------------------------

// The chunk that the block lies in; null: it comes from malloc.
static ort_chunk *chunk_of(const ort_chunks *chunks, const void *block) {
  if (chunks->count == 0) return nullptr;
  const uintptr_t start = reinterpret_cast<uintptr_t>(block) & ~(CHUNK - 1);
  for (size_t i = home(chunks, block);; i = (i + 1) & (chunks->capacity - 1)) {
    ort_chunk *chunk = chunks->table[i];
    if (!chunk || reinterpret_cast<uintptr_t>(chunk) == start) return chunk;
  }
}

// Makes sure that one more chunk fits.
static bool reserve_entry(ort_chunks *chunks) {
  if (chunks->count * 2 < chunks->capacity) return true;
  ort_chunks larger = *chunks;
  larger.capacity = chunks->capacity ? chunks->capacity * 2 : 64;
  larger.table = static_cast<ort_chunk **>(calloc(larger.capacity, sizeof *larger.table));
  if (!larger.table) return false;
  for (size_t k = 0; k < chunks->capacity; ++k) {
    if (!chunks->table[k]) continue;
    size_t i = home(&larger, chunks->table[k]);
    while (larger.table[i]) i = (i + 1) & (larger.capacity - 1);
    larger.table[i] = chunks->table[k];
  }
  free(chunks->table);
  *chunks = larger;
  return true;
}

// Moves up what stood behind the entry because of it.
static void remove_entry(ort_chunks *chunks, const ort_chunk *chunk) {
  const size_t mask = chunks->capacity - 1;
  size_t gap = home(chunks, chunk);
  while (chunks->table[gap] != chunk) gap = (gap + 1) & mask;
  for (size_t i = (gap + 1) & mask; chunks->table[i]; i = (i + 1) & mask) {
    if (((i - home(chunks, chunks->table[i])) & mask) < ((i - gap) & mask)) continue;
    chunks->table[gap] = chunks->table[i];
    gap = i;
  }
  chunks->table[gap] = nullptr;
  --chunks->count;
}

// Where the search for a chunk begins, given any address in it.
static size_t home(const ort_chunks *chunks, const void *address) {
  return reinterpret_cast<uintptr_t>(address) / CHUNK & (chunks->capacity - 1);
}
