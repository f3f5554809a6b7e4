// name_index.cpp: names of a drawing, each with what its owner keeps of it. The reader finds ids
// and namespaces here, the CSS engine all that selectors name, the runtime its virtual files.
//
// The entries lie apart from the places, one after the other: names that are looked up in the order
// in which they came touch little memory. Adding may raise ORT_E_NO_MEMORY.
#include <algorithm>
#include <bit>
#include <string.h>

#include "core/ort_core.h"

static void grow(ort_core *core, ort_name_index *index);
static ort_name_place *find_place(const ort_name_index *index, std::string_view name, uint32_t salt,
                                  uint32_t mark);
static ort_name_place *place_of(const ort_core *core, const ort_name_index *index,
                                const ort_name_entry &entry);
static uint32_t mark_of(const ort_core *core, std::string_view name, uint32_t salt);

ort_name_entry *ort_index_find(const ort_core *core, const ort_name_index *index,
                               std::string_view name, uint32_t salt) {
  if (index->count == 0) return nullptr;
  const ort_name_place *place = find_place(index, name, salt, mark_of(core, name, salt));
  return place->is_free() ? nullptr : &index->entries[place->entry];
}

ort_name_entry *ort_index_add(ort_core *core, ort_name_index *index, const char *name,
                              uint32_t salt) {
  if (index->count == index->room) grow(core, index);
  const uint32_t mark = mark_of(core, name, salt);
  ort_name_place *place = find_place(index, name, salt, mark);
  if (place->is_free()) {
    *place = {mark, static_cast<uint32_t>(index->count)};
    index->entries[index->count++] = {name, salt, 0, nullptr};
  }
  return &index->entries[place->entry];
}

// The last entry moves to where the removed one was.
void ort_index_remove(const ort_core *core, ort_name_index *index, ort_name_entry *entry) {
  index->table.remove(place_of(core, index, *entry));
  const ort_name_entry &last = index->entries[--index->count];
  if (entry == &last) return;
  place_of(core, index, last)->entry = static_cast<uint32_t>(entry - index->entries);
  *entry = last;
}

void ort_index_clear(ort_core *core, ort_name_index *index) {
  ort_free(core, index->table.places);
  *index = {};
}

// A quarter of the places stays free.
static void grow(ort_core *core, ort_name_index *index) {
  const size_t capacity = std::max<size_t>(2 * index->table.capacity, 4), room = capacity / 4 * 3;
  auto *places = static_cast<ort_name_place *>(ort_malloc(
      core, capacity * sizeof(ort_name_place) + room * sizeof(ort_name_entry), "ort_index_add"));
  auto *entries = reinterpret_cast<ort_name_entry *>(places + capacity);
  std::fill_n(places, capacity, ort_name_place{});
  std::copy_n(index->entries, index->count, entries);
  ort_places<ort_name_place> larger = {places, capacity};
  larger.take(index->table);
  ort_free(core, index->table.places);
  *index = {larger, entries, room, index->count};
}

static ort_name_place *find_place(const ort_name_index *index, std::string_view name, uint32_t salt,
                                  uint32_t mark) {
  return index->table.find(mark, [=](const ort_name_place &place) {
    if (place.mark != mark) return false;
    const ort_name_entry &entry = index->entries[place.entry];
    return entry.salt == salt && strncmp(entry.name, name.data(), name.size()) == 0 &&
           entry.name[name.size()] == '\0';
  });
}

static ort_name_place *place_of(const ort_core *core, const ort_name_index *index,
                                const ort_name_entry &entry) {
  return find_place(index, entry.name, entry.salt, mark_of(core, entry.name, entry.salt));
}

// SipHash-1-3 under the core's secret: no drawing can bring names that are known to collide.
static uint32_t mark_of(const ort_core *core, std::string_view name, uint32_t salt) {
  const uint64_t key = ort_get_secret(core) ^ salt;
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
  for (int i = 0; i < 3; ++i) round();
  return static_cast<uint32_t>(v0 ^ v1 ^ v2 ^ v3) | 1U << 31;
}
