// arena.cpp: memory that is given back block by block or all at once. The tree of a drawing, what
// the CSS engine keeps of sheets and what the reader records lie in arenas. Growing may raise
// ORT_E_NO_MEMORY and then changes nothing.
#include <algorithm>
#include <string.h>

#include "core/ort_core.h"

#ifdef ORT_SANITIZE
constexpr size_t SMALLEST_BLOCK = 0, LARGEST_BLOCK = 0;
#else
constexpr size_t SMALLEST_BLOCK = 1 << 9, LARGEST_BLOCK = 1 << 15;
#endif
constexpr size_t GROWTH = 8; // a block is so much smaller than all before it

void ort_arena_make_room(ort_core *core, ort_arena *arena, size_t size, const char *tag) {
  const size_t wanted = std::clamp(arena->size / GROWTH, SMALLEST_BLOCK, LARGEST_BLOCK);
  ort_arena_grow(core, arena,
                 std::max(size + sizeof(ort_arena_block), wanted) - sizeof(ort_arena_block), tag);
  memset(arena->last->bytes(), 0, arena->last->size);
}

void ort_arena_grow(ort_core *core, ort_arena *arena, size_t size, const char *tag) {
  if (!ort_arena_try_grow(core, arena, size, tag)) ort_error(core, ORT_E_NO_MEMORY);
}

bool ort_arena_try_grow(ort_core *core, ort_arena *arena, size_t size, const char *tag) {
  auto *block =
      static_cast<ort_arena_block *>(ort_try_malloc(core, sizeof(ort_arena_block) + size, tag));
  if (!block) return false;
  *block = {nullptr, size, 0};
  (arena->last ? arena->last->next : arena->first) = block;
  arena->last = block;
  arena->size += size;
  return true;
}

void ort_arena_shrink(ort_core *core, ort_arena *arena) {
  ort_arena_block *block = arena->first;
  arena->first = block->next;
  if (!arena->first) arena->last = nullptr;
  arena->size -= block->size;
  ort_free(core, block);
}

void ort_arena_clear(ort_core *core, ort_arena *arena) {
  while (arena->first) ort_arena_shrink(core, arena);
}
