// chunks.h: small blocks, of which a drawing has very many. memory.cpp calls it and does the
// accounting; taking and giving back are inline there. Nothing raises here.
//
// A chunk holds blocks of one size and 2 bytes beside each for its label. Chunks lie at multiples
// of their size, so that a block tells its chunk; a table of all chunks tells the blocks from those
// of malloc. A chunk that has emptied goes back to malloc, but for one of each size: so parsers
// that follow each other under one core find their chunks ready.
#ifndef ORT_CHUNKS_H
#define ORT_CHUNKS_H

#include <stddef.h>
#include <stdint.h>

#include "core/places.h"

constexpr uint32_t ORT_MAX_TAGS = 1U << 13;
constexpr size_t ORT_GRAIN = 8;
constexpr size_t ORT_SMALL_GRAINS = 64; // the largest block that goes into a chunk
constexpr size_t ORT_CHUNK = 1U << 14;

struct ort_tag; // ort_state.h

// What is known of a block.
struct ort_label {
  size_t size;  // as requested
  uint32_t tag; // number below ORT_MAX_TAGS
};

// notes[i] belongs to block i: its label, or while it is free, the next free block.
struct ort_chunk {
  ort_chunk *next, *previous; // of the chunks of this size that have room
  char *blocks;
  uint32_t grains;     // of one block
  uint32_t reciprocal; // of grains, for a division without dividing
  uint16_t capacity;   // number of blocks
  uint16_t used;
  uint16_t free; // the first free block; capacity: there is none
  uint16_t notes[];
};

// Where a chunk is found by the address of any of its blocks.
struct ort_chunk_place {
  ort_chunk *chunk;

  static size_t home_of(const void *address) {
    return reinterpret_cast<uintptr_t>(address) / ORT_CHUNK;
  }
  bool is_free() const { return !chunk; }
  size_t home() const { return home_of(chunk); }
};

struct ort_chunks {
  ort_chunk *room[ORT_SMALL_GRAINS + 1]; // by size in grains: chunks with free blocks
  ort_places<ort_chunk_place> table;     // all chunks
  size_t count;
};

bool ort_chunks_new(ort_chunks *chunks);                      // false: memory is short
ort_chunk *ort_chunks_add(ort_chunks *chunks, size_t grains); // null: memory is short
void ort_chunks_remove(ort_chunks *chunks, ort_chunk *chunk);
void ort_chunks_delete(ort_chunks *chunks);

uint64_t ort_chunks_used(const ort_chunks *chunks);             // number of blocks
void ort_chunks_count(const ort_chunks *chunks, ort_tag *tags); // adds them to the counts of all

// A note is the tag, and what rounding added to the size.
constexpr uint32_t ORT_SLACK_BITS = 3;
static_assert(1U << ORT_SLACK_BITS == ORT_GRAIN && ORT_MAX_TAGS << ORT_SLACK_BITS == 1U << 16);

// block / grains == block * reciprocal >> ORT_RECIPROCAL_BITS for all grains of a chunk.
constexpr uint32_t ORT_RECIPROCAL_BITS = 20;
static_assert(ORT_CHUNK / ORT_GRAIN * ORT_SMALL_GRAINS <= 1U << ORT_RECIPROCAL_BITS);

inline void ort_chunks_link(ort_chunks *chunks, ort_chunk *chunk) {
  ort_chunk *&first = chunks->room[chunk->grains];
  chunk->previous = nullptr;
  chunk->next = first;
  if (first) first->previous = chunk;
  first = chunk;
}

inline void ort_chunks_unlink(ort_chunks *chunks, ort_chunk *chunk) {
  (chunk->previous ? chunk->previous->next : chunks->room[chunk->grains]) = chunk->next;
  if (chunk->next) chunk->next->previous = chunk->previous;
}

inline size_t ort_grains(size_t size) { return (size + ORT_GRAIN - 1) / ORT_GRAIN; }

// A block of a chunk with room for its size.
inline void *ort_chunks_take(ort_chunks *chunks, ort_chunk *chunk, ort_label label) {
  const size_t i = chunk->free, size = chunk->grains * ORT_GRAIN;
  chunk->free = chunk->notes[i];
  chunk->notes[i] = static_cast<uint16_t>(label.tag << ORT_SLACK_BITS | (-label.size % ORT_GRAIN));
  ++chunk->used;
  if (chunk->free == chunk->capacity) ort_chunks_unlink(chunks, chunk);
  return chunk->blocks + i * size;
}

// The chunk that a block lies in; null: it comes from malloc.
inline ort_chunk *ort_chunks_find(const ort_chunks *chunks, const void *block) {
  const uintptr_t start = reinterpret_cast<uintptr_t>(block) & ~(ORT_CHUNK - 1);
  const auto is_it = [=](ort_chunk_place place) {
    return reinterpret_cast<uintptr_t>(place.chunk) == start;
  };
  return chunks->table.find(ort_chunk_place::home_of(block), is_it)->chunk;
}

inline uint32_t ort_chunk_index(const ort_chunk *chunk, const void *block) {
  const auto offset = static_cast<size_t>(static_cast<const char *>(block) - chunk->blocks);
  return static_cast<uint32_t>(offset / ORT_GRAIN * chunk->reciprocal >> ORT_RECIPROCAL_BITS);
}

inline ort_label ort_chunk_label(const ort_chunk *chunk, uint32_t i) {
  const uint32_t note = chunk->notes[i];
  return {chunk->grains * ORT_GRAIN - note % ORT_GRAIN, note >> ORT_SLACK_BITS};
}

// Takes back the block with this index.
inline void ort_chunks_give(ort_chunks *chunks, ort_chunk *chunk, uint32_t i) {
  if (chunk->free == chunk->capacity) ort_chunks_link(chunks, chunk);
  chunk->notes[i] = chunk->free;
  chunk->free = static_cast<uint16_t>(i);
  if (--chunk->used == 0 && (chunk->next || chunk->previous)) ort_chunks_remove(chunks, chunk);
}

#endif
