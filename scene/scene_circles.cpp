// scene_circles.cpp: the elements that walks in progress are inside of, so that a link that would
// lead into one of them is found in constant time. Entering raises ORT_E_NO_MEMORY.
#include "scene/scene.h"

static size_t place_of(const svg_scene_active &active, const svg_e_node *element);
static void grow(svg_scene *scene);
static void close_gap(svg_scene_active *active, size_t gap);

bool svg_scene_is_active(const svg_scene *scene, const svg_e_node *element) {
  const svg_scene_active &active = scene->active;
  return active.count > 0 && active.slots[place_of(active, element)] != nullptr;
}

bool svg_scene_enter(svg_scene *scene, const svg_e_node *element) {
  svg_scene_active &active = scene->active;
  if (2 * (active.count + 1) > active.size) grow(scene);
  const size_t at = place_of(active, element);
  if (active.slots[at]) return false;
  active.slots[at] = element;
  ++active.count;
  return true;
}

void svg_scene_leave(svg_scene *scene, const svg_e_node *element) {
  svg_scene_active &active = scene->active;
  const size_t at = place_of(active, element);
  active.slots[at] = nullptr;
  --active.count;
  close_gap(&active, at);
}

static size_t hash(const svg_scene_active &active, const svg_e_node *element) {
  const uint64_t mixed = (reinterpret_cast<uintptr_t>(element) >> 4) * 0x9E3779B97F4A7C15;
  return static_cast<size_t>(mixed >> 32) & (active.size - 1);
}

// Where the element is, or would be.
static size_t place_of(const svg_scene_active &active, const svg_e_node *element) {
  size_t at = hash(active, element);
  while (active.slots[at] && active.slots[at] != element) at = (at + 1) & (active.size - 1);
  return at;
}

static void grow(svg_scene *scene) {
  const svg_scene_active old = scene->active;
  svg_scene_active wider = {nullptr, old.size == 0 ? 16 : 2 * old.size, old.count};
  wider.slots = static_cast<const svg_e_node **>(
      ort_calloc(scene->core, wider.size, sizeof(svg_e_node *), "svg_scene_enter"));
  for (size_t i = 0; i < old.size; ++i)
    if (old.slots[i]) wider.slots[place_of(wider, old.slots[i])] = old.slots[i];
  ort_free(scene->core, old.slots);
  scene->active = wider;
}

// Those after a free slot that would have been laid into it move there.
static void close_gap(svg_scene_active *active, size_t gap) {
  const size_t last = active->size - 1;
  for (size_t at = (gap + 1) & last; active->slots[at]; at = (at + 1) & last) {
    const size_t wanted = hash(*active, active->slots[at]);
    if (((at - wanted) & last) < ((at - gap) & last)) continue;
    active->slots[gap] = active->slots[at];
    active->slots[at] = nullptr;
    gap = at;
  }
}
