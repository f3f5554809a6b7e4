// scene_circles.cpp: sets of elements: those that walks in progress are inside of, so that a link
// that would lead into one of them is found in constant time, and those that were warned of.
// Entering raises ORT_E_NO_MEMORY.
#include "scene/scene.h"

static size_t place_of(const svg_scene_set &set, const svg_e_node *element);
static void grow(svg_scene *scene, svg_scene_set *set);
static void close_gap(svg_scene_set *set, size_t gap);

bool svg_scene_has(const svg_scene_set &set, const svg_e_node *element) {
  return set.count > 0 && set.slots[place_of(set, element)] != nullptr;
}

bool svg_scene_enter(svg_scene *scene, svg_scene_set *set, const svg_e_node *element) {
  if (2 * (set->count + 1) > set->size) grow(scene, set);
  const size_t at = place_of(*set, element);
  if (set->slots[at]) return false;
  set->slots[at] = element;
  ++set->count;
  return true;
}

void svg_scene_leave(svg_scene_set *set, const svg_e_node *element) {
  const size_t at = place_of(*set, element);
  set->slots[at] = nullptr;
  --set->count;
  close_gap(set, at);
}

static size_t hash(const svg_scene_set &set, const svg_e_node *element) {
  const uint64_t mixed = (reinterpret_cast<uintptr_t>(element) >> 4) * 0x9E3779B97F4A7C15;
  return static_cast<size_t>(mixed >> 32) & (set.size - 1);
}

// Where the element is, or would be.
static size_t place_of(const svg_scene_set &set, const svg_e_node *element) {
  size_t at = hash(set, element);
  while (set.slots[at] && set.slots[at] != element) at = (at + 1) & (set.size - 1);
  return at;
}

static void grow(svg_scene *scene, svg_scene_set *set) {
  const svg_scene_set old = *set;
  svg_scene_set wider = {nullptr, old.size == 0 ? 16 : 2 * old.size, old.count};
  wider.slots = static_cast<const svg_e_node **>(
      ort_calloc(scene->core, wider.size, sizeof(svg_e_node *), "svg_scene_enter"));
  for (size_t i = 0; i < old.size; ++i)
    if (old.slots[i]) wider.slots[place_of(wider, old.slots[i])] = old.slots[i];
  ort_free(scene->core, old.slots);
  *set = wider;
}

// Those after a free slot that would have been laid into it move there.
static void close_gap(svg_scene_set *set, size_t gap) {
  const size_t last = set->size - 1;
  for (size_t at = (gap + 1) & last; set->slots[at]; at = (at + 1) & last) {
    const size_t wanted = hash(*set, set->slots[at]);
    if (((at - wanted) & last) < ((at - gap) & last)) continue;
    set->slots[gap] = set->slots[at];
    set->slots[at] = nullptr;
    gap = at;
  }
}
