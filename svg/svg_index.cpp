// svg_index.cpp: a hash table of names: open addressing with linear probing, the number of places a
// power of 2. The marks of the places lie apart, so that a search meets little memory. Raises for
// lack of memory.
#include "svg/svg_index.h"

#include <bit>
#include <cstring>

static void grow(svg_parser *p, svg_name_index **index);
static size_t find_place(const svg_name_index *index, std::string_view name, uint32_t mark);
static uint32_t mark_of(const svg_parser *p, std::string_view name);

struct svg_name_index {
  uint32_t *marks; // of the entries' names, in the same block; 0: the place is free
  svg_index_entry *entries;
  size_t capacity;
  size_t count;
};

svg_index_entry *svg_index_find(const svg_parser *p, const svg_name_index *index,
                                std::string_view name) {
  if (index == nullptr || index->count == 0) return nullptr;
  const size_t place = find_place(index, name, mark_of(p, name));
  return index->marks[place] != 0 ? &index->entries[place] : nullptr;
}

svg_index_entry *svg_index_add(svg_parser *p, svg_name_index **index, const char *name) {
  grow(p, index);
  const uint32_t mark = mark_of(p, name);
  const size_t place = find_place(*index, name, mark);
  svg_index_entry *entry = &(*index)->entries[place];
  if ((*index)->marks[place] == 0) {
    (*index)->marks[place] = mark;
    *entry = {.name = name, .number = 0, .element = nullptr};
    (*index)->count++;
  }
  return entry;
}

// Moves up what stood behind the entry because of it.
void svg_index_remove(svg_name_index *index, svg_index_entry *entry) {
  const size_t last = index->capacity - 1;
  auto gap = static_cast<size_t>(entry - index->entries);
  for (size_t i = gap + 1; index->marks[i & last] != 0; i++) {
    // Its own place may be behind the gap.
    if (((i - index->marks[i & last]) & last) < ((i - gap) & last)) continue;
    index->marks[gap] = index->marks[i & last];
    index->entries[gap] = index->entries[i & last];
    gap = i & last;
  }
  index->marks[gap] = 0;
  index->count--;
}

void svg_index_delete(ort_core *core, svg_name_index **index) {
  if (*index != nullptr) ort_free(core, (*index)->entries);
  ort_free(core, *index);
  *index = nullptr;
}

// Makes sure that one more entry fits.
static void grow(svg_parser *p, svg_name_index **index) {
  if (*index == nullptr) *index = ort_new<svg_name_index>(p->core, "svg_index_add");
  svg_name_index *old = *index;
  if (old->count < old->capacity - old->capacity / 4) return;
  const size_t capacity = old->capacity != 0 ? 2 * old->capacity : 8;
  constexpr size_t place_size = sizeof(svg_index_entry) + sizeof(uint32_t);
  auto *entries =
      static_cast<svg_index_entry *>(ort_calloc(p->core, capacity, place_size, "svg_index_add"));
  auto *marks = reinterpret_cast<uint32_t *>(entries + capacity);
  for (size_t i = 0; i < old->capacity; i++) {
    if (old->marks[i] == 0) continue;
    size_t place = old->marks[i] & (capacity - 1);
    while (marks[place] != 0) place = (place + 1) & (capacity - 1);
    marks[place] = old->marks[i];
    entries[place] = old->entries[i];
  }
  ort_free(p->core, old->entries);
  *old = {marks, entries, capacity, old->count};
}

// Where a name is, or the free place for it.
static size_t find_place(const svg_name_index *index, std::string_view name, uint32_t mark) {
  for (size_t i = mark;; i++) {
    const size_t place = i & (index->capacity - 1);
    if (index->marks[place] == 0) return place;
    if (index->marks[place] != mark) continue;
    const char *other = index->entries[place].name;
    if (strncmp(other, name.data(), name.size()) == 0 && other[name.size()] == '\0') return place;
  }
}

// SipHash-1-3 under the core's secret: no drawing can bring names that are known to collide.
static uint32_t mark_of(const svg_parser *p, std::string_view name) {
  const uint64_t key = ort_get_secret(p->core);
  uint64_t v0 = key ^ 0x736f6d6570736575;
  uint64_t v1 = std::rotl(key, 32) ^ 0x646f72616e646f6d;
  uint64_t v2 = key ^ 0x6c7967656e657261;
  uint64_t v3 = std::rotl(key, 32) ^ 0x7465646279746573;
  const auto round = [&] {
    v0 += v1;
    v2 += v3;
    v1 = std::rotl(v1, 13) ^ v0;
    v3 = std::rotl(v3, 16) ^ v2;
    v0 = std::rotl(v0, 32) + v3;
    v2 += v1;
    v1 = std::rotl(v1, 17) ^ v2;
    v3 = std::rotl(v3, 21) ^ v0;
    v2 = std::rotl(v2, 32);
  };
  for (size_t done = 0; done <= name.size(); done += 8) {
    const size_t rest = name.size() - done;
    uint64_t block = rest < 8 ? static_cast<uint64_t>(name.size()) << 56 : 0;
    memcpy(&block, name.data() + done, rest < 8 ? rest : 8);
    v3 ^= block;
    round();
    v0 ^= block;
  }
  v2 ^= 0xff;
  for (int i = 0; i < 3; i++) round();
  return static_cast<uint32_t>(v0 ^ v1 ^ v2 ^ v3) | 1U << 31;
}
