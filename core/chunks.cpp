// chunks.cpp: makes and deletes chunks and keeps the table of them. See chunks.h.
#include "core/chunks.h"

#include <stdlib.h>

#include "core/ort_state.h"

constexpr size_t CHUNK_BYTES = ORT_CHUNK - 2 * sizeof(size_t); // malloc can put them side by side
// No block of malloc, which lies behind its label, begins in what is left.
static_assert(ORT_CHUNK - CHUNK_BYTES <= sizeof(ort_label));

static bool reserve_entry(ort_chunks *chunks);
static void add_entry(ort_chunks *chunks, ort_chunk *chunk);
static void remove_entry(ort_chunks *chunks, const ort_chunk *chunk);

ort_chunk *ort_chunks_add(ort_chunks *chunks, size_t grains) {
  void *memory;
  if (!reserve_entry(chunks) || posix_memalign(&memory, ORT_CHUNK, CHUNK_BYTES) != 0)
    return nullptr;
  ort_chunk *chunk = static_cast<ort_chunk *>(memory);
  const size_t size = grains * ORT_GRAIN;
  const size_t capacity = (CHUNK_BYTES - sizeof *chunk) / (size + sizeof *chunk->notes);
  *chunk = {};
  chunk->blocks =
      static_cast<char *>(memory) + (CHUNK_BYTES - capacity * size) / ORT_GRAIN * ORT_GRAIN;
  chunk->grains = static_cast<uint32_t>(grains);
  chunk->reciprocal = (1U << ORT_RECIPROCAL_BITS) / chunk->grains + 1;
  chunk->capacity = static_cast<uint16_t>(capacity);
  for (size_t i = 0; i < capacity; ++i) chunk->notes[i] = static_cast<uint16_t>(i + 1);
  ort_chunks_link(chunks, chunk);
  add_entry(chunks, chunk);
  ++chunks->count;
  return chunk;
}

void ort_chunks_remove(ort_chunks *chunks, ort_chunk *chunk) {
  ort_chunks_unlink(chunks, chunk);
  remove_entry(chunks, chunk);
  --chunks->count;
  free(chunk);
}

void ort_chunks_delete(ort_chunks *chunks) {
  for (size_t i = 0; i < chunks->capacity; ++i) free(chunks->table[i]);
  free(chunks->table);
}

// ---- The table of all chunks --------------------------------------------------------------------

// Makes sure that one more entry fits.
static bool reserve_entry(ort_chunks *chunks) {
  if (chunks->count * 2 < chunks->capacity) return true;
  ort_chunks larger = *chunks;
  larger.capacity = chunks->capacity ? chunks->capacity * 2 : 64;
  larger.table = static_cast<ort_chunk **>(calloc(larger.capacity, sizeof *larger.table));
  if (!larger.table) return false;
  for (size_t i = 0; i < chunks->capacity; ++i) {
    if (chunks->table[i]) add_entry(&larger, chunks->table[i]);
  }
  free(chunks->table);
  *chunks = larger;
  return true;
}

static void add_entry(ort_chunks *chunks, ort_chunk *chunk) {
  size_t i = ort_chunks_home(chunks, chunk);
  while (chunks->table[i]) i = (i + 1) & (chunks->capacity - 1);
  chunks->table[i] = chunk;
}

// Moves up what stood behind the entry because of it.
static void remove_entry(ort_chunks *chunks, const ort_chunk *chunk) {
  const size_t mask = chunks->capacity - 1;
  size_t gap = ort_chunks_home(chunks, chunk);
  while (chunks->table[gap] != chunk) gap = (gap + 1) & mask;
  for (size_t i = (gap + 1) & mask; chunks->table[i]; i = (i + 1) & mask) {
    const size_t home = ort_chunks_home(chunks, chunks->table[i]);
    if (((i - home) & mask) < ((i - gap) & mask)) continue;
    chunks->table[gap] = chunks->table[i];
    gap = i;
  }
  chunks->table[gap] = nullptr;
}
