// svg_index.cpp: a hash table of names: open addressing with linear probing, the number of places a
// power of 2. Raises for lack of memory.
#include "svg/svg_index.h"

#include <bit>
#include <cstring>

static void grow(svg_parser *p, svg_name_index **index);
static svg_index_entry *find_place(const svg_name_index *index, std::string_view name,
                                   uint32_t hash);
static uint32_t hash_name(const svg_parser *p, std::string_view name);

struct svg_name_index {
  svg_index_entry *entries;
  size_t capacity;
  size_t count;
};

svg_index_entry *svg_index_find(const svg_parser *p, const svg_name_index *index,
                                std::string_view name) {
  if (svg_index_is_empty(index)) return nullptr;
  svg_index_entry *entry = find_place(index, name, hash_name(p, name));
  return entry->name != nullptr ? entry : nullptr;
}

svg_index_entry *svg_index_add(svg_parser *p, svg_name_index **index, std::string_view name) {
  svg_index_entry *entry = svg_index_place(p, index, name);
  if (entry->name == nullptr) svg_index_fill(*index, entry, name.data());
  return entry;
}

svg_index_entry *svg_index_place(svg_parser *p, svg_name_index **index, std::string_view name) {
  grow(p, index);
  const uint32_t hash = hash_name(p, name);
  svg_index_entry *entry = find_place(*index, name, hash);
  if (entry->name == nullptr) {
    entry->hash = hash;
    entry->length = static_cast<uint32_t>(name.size());
  }
  return entry;
}

void svg_index_fill(svg_name_index *index, svg_index_entry *place, const char *name) {
  place->name = name;
  place->number = 0;
  index->count++;
}

bool svg_index_is_empty(const svg_name_index *index) {
  return index == nullptr || index->count == 0;
}

// Moves up what stood behind the entry because of it.
void svg_index_remove(svg_name_index *index, svg_index_entry *entry) {
  const size_t mask = index->capacity - 1;
  auto gap = static_cast<size_t>(entry - index->entries);
  for (size_t i = gap + 1; index->entries[i & mask].name != nullptr; i++) {
    const svg_index_entry &other = index->entries[i & mask];
    if (((i - other.hash) & mask) < ((i - gap) & mask)) continue; // its own place is behind the gap
    index->entries[gap] = other;
    gap = i & mask;
  }
  index->entries[gap] = {};
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
  const svg_name_index grown = {ort_new_array<svg_index_entry>(p->core, capacity, "svg_index_add"),
                                capacity, old->count};
  for (size_t i = 0; i < old->capacity; i++) {
    const svg_index_entry &entry = old->entries[i];
    if (entry.name != nullptr) *find_place(&grown, {entry.name, entry.length}, entry.hash) = entry;
  }
  ort_free(p->core, old->entries);
  *old = grown;
}

// The entry of a name, or the free place for it.
static svg_index_entry *find_place(const svg_name_index *index, std::string_view name,
                                   uint32_t hash) {
  for (size_t i = hash;; i++) {
    svg_index_entry *entry = &index->entries[i & (index->capacity - 1)];
    if (entry->name == nullptr) return entry;
    if (entry->hash == hash && std::string_view(entry->name, entry->length) == name) return entry;
  }
}

// SipHash-1-3 under the core's secret: no drawing can bring names that are known to collide.
static uint32_t hash_name(const svg_parser *p, std::string_view name) {
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
  return static_cast<uint32_t>(v0 ^ v1 ^ v2 ^ v3);
}
