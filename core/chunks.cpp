// chunks.cpp: makes and deletes chunks and keeps the table of them. See chunks.h.
#include "core/chunks.h"

#include <stdlib.h>

#include "core/ort_state.h"

constexpr size_t FEWEST_PLACES = 64;
constexpr size_t CHUNK_BYTES = ORT_CHUNK - 2 * sizeof(size_t); // malloc can put them side by side
// No block from malloc begins in what is left over: its label lies before it.
static_assert(ORT_CHUNK - CHUNK_BYTES <= sizeof(ort_label));

static void count_blocks(const ort_chunk *chunk, ort_tag *tags);
static ort_chunk_place *find_place(const ort_chunks *chunks, const ort_chunk *chunk);

bool ort_chunks_new(ort_chunks *chunks) { return chunks->table.grow(FEWEST_PLACES); }

ort_chunk *ort_chunks_add(ort_chunks *chunks, size_t grains) {
  void *memory;
  if (chunks->count * 2 >= chunks->table.capacity && !chunks->table.grow(FEWEST_PLACES))
    return nullptr;
  if (posix_memalign(&memory, ORT_CHUNK, CHUNK_BYTES) != 0) return nullptr;
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
  find_place(chunks, chunk)->chunk = chunk;
  ++chunks->count;
  return chunk;
}

void ort_chunks_remove(ort_chunks *chunks, ort_chunk *chunk) {
  ort_chunks_unlink(chunks, chunk);
  chunks->table.remove(find_place(chunks, chunk));
  --chunks->count;
  free(chunk);
}

void ort_chunks_delete(ort_chunks *chunks) {
  for (size_t i = 0; i < chunks->table.capacity; ++i) free(chunks->table.places[i].chunk);
  free(chunks->table.places);
}

uint64_t ort_chunks_used(const ort_chunks *chunks) {
  uint64_t used = 0;
  for (size_t i = 0; i < chunks->table.capacity; ++i)
    if (const ort_chunk *chunk = chunks->table.places[i].chunk) used += chunk->used;
  return used;
}

void ort_chunks_count(const ort_chunks *chunks, ort_tag *tags) {
  for (size_t i = 0; i < chunks->table.capacity; ++i)
    if (const ort_chunk *chunk = chunks->table.places[i].chunk) count_blocks(chunk, tags);
}

static void count_blocks(const ort_chunk *chunk, ort_tag *tags) {
  bool is_free[CHUNK_BYTES / ORT_GRAIN] = {};
  for (uint32_t i = chunk->free; i < chunk->capacity; i = chunk->notes[i]) is_free[i] = true;
  for (uint32_t i = 0; i < chunk->capacity; ++i) {
    if (is_free[i]) continue;
    const ort_label label = ort_chunk_label(chunk, i);
    ort_count &count = tags[label.tag].all;
    ++count.blocks;
    count.bytes += label.size;
  }
}

static ort_chunk_place *find_place(const ort_chunks *chunks, const ort_chunk *chunk) {
  return chunks->table.find(ort_chunk_place::home_of(chunk),
                            [=](ort_chunk_place place) { return place.chunk == chunk; });
}
