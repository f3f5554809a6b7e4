// scene_memory.cpp: the stack on which all calls lay what they make. Taking raises ORT_E_NO_MEMORY;
// the stack is then as it was.
#include <algorithm>
#include <string.h>

#include "scene/scene.h"

constexpr size_t FIRST_CHUNK = 32 << 10, LARGEST_CHUNK = 1 << 20;

static void add_chunk(svg_scene *scene, size_t size);

static char *bytes_of(svg_scene_chunk *chunk) { return reinterpret_cast<char *>(chunk + 1); }

void *svg_scene_take(svg_scene *scene, size_t size) {
  return memset(svg_scene_take_room(scene, size), 0, size);
}

void *svg_scene_take_room(svg_scene *scene, size_t size) {
  size = (size + 7) & ~size_t{7};
  if (size > scene->top.chunk->size - scene->top.used) add_chunk(scene, size);
  void *block = bytes_of(scene->top.chunk) + scene->top.used;
  scene->top.used += size;
  return block;
}

// A chunk in reserve is taken when it is large enough.
static void add_chunk(svg_scene *scene, size_t size) {
  svg_scene_chunk *last = scene->top.chunk;
  if (last->after && last->after->size < size) {
    ort_free(scene->core, last->after);
    last->after = nullptr;
  }
  if (!last->after) {
    const size_t usual = std::clamp(2 * last->size, FIRST_CHUNK, LARGEST_CHUNK);
    const size_t room = std::max(size, usual);
    auto *chunk = static_cast<svg_scene_chunk *>(
        ort_malloc(scene->core, sizeof(svg_scene_chunk) + room, "svg_scene_take"));
    *chunk = {last, nullptr, room};
    last->after = chunk;
  }
  scene->top = {last->after, 0};
}

// One chunk stays in reserve, so that a walk that comes and goes over its border takes no memory
// each time. A result that goes with what is released is forgotten: what comes after it may end
// where it ended.
void svg_scene_release(svg_scene *scene, svg_scene_mark mark) {
  while (scene->top.chunk != mark.chunk) {
    svg_scene_chunk *chunk = scene->top.chunk;
    ort_free(scene->core, chunk->after);
    chunk->after = nullptr;
    scene->top.chunk = chunk->before;
  }
  scene->top = mark;
  const svg_scene_mark end = scene->result_end;
  if (mark.chunk != end.chunk || mark.used < end.used) scene->result_end.chunk = nullptr;
}

static bool same(svg_scene_mark a, svg_scene_mark b) {
  return a.chunk == b.chunk && a.used == b.used;
}

void svg_scene_begin_result(svg_scene *scene) {
  if (!scene->walk)
    svg_scene_release(scene, {&scene->bottom, 0});
  else if (same(scene->top, scene->result_end))
    svg_scene_release(scene, scene->result);
  scene->result = scene->top;
}

void svg_scene_end_result(svg_scene *scene) { scene->result_end = scene->top; }
