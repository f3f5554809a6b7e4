// svg_index.cpp: a hash table of names: open addressing with linear probing, the number of places a
// power of 2. The entries lie apart, one behind the other: names that are asked for in the order in
// which they came meet little memory. Raises for lack of memory.
#include "svg/names/svg_index.h"

#include <algorithm>
#include <bit>
#include <cstring>

static void grow(svg_parser *p, svg_name_index *index);
static size_t find_place(const svg_name_index *index, std::string_view name, uint32_t mark);
static size_t place_of(const svg_parser *p, const svg_name_index *index, size_t entry);
static void free_place(svg_name_index *index, size_t place);
static uint32_t mark_of(const svg_parser *p, std::string_view name);

namespace {

struct index_place {
  uint32_t mark; // of the entry's name; 0: the place is free
  uint32_t entry;
};

} // namespace

struct svg_name_index {
  index_place *places;
  svg_index_entry *entries; // behind the places, in their block
  size_t place_count;
  size_t room, count; // of entries
};

svg_index_entry *svg_index_find(const svg_parser *p, const svg_name_index *index,
                                std::string_view name) {
  if (!index || index->count == 0) return nullptr;
  const index_place place = index->places[find_place(index, name, mark_of(p, name))];
  return place.mark != 0 ? &index->entries[place.entry] : nullptr;
}

svg_index_entry *svg_index_add(svg_parser *p, svg_name_index **index, const char *name) {
  if (!*index) *index = ort_new<svg_name_index>(p->core, "svg_index_add");
  svg_name_index *names = *index;
  if (names->count == names->room) grow(p, names);
  const uint32_t mark = mark_of(p, name);
  index_place &place = names->places[find_place(names, name, mark)];
  if (place.mark == 0) {
    place = {mark, static_cast<uint32_t>(names->count)};
    names->entries[names->count++] = {.name = name, .number = 0, .element = nullptr};
  }
  return &names->entries[place.entry];
}

// The last entry takes its place among the entries.
void svg_index_remove(const svg_parser *p, svg_name_index *index, svg_index_entry *entry) {
  const auto number = static_cast<size_t>(entry - index->entries);
  free_place(index, place_of(p, index, number));
  const size_t last = --index->count;
  if (number == last) return;
  index->places[place_of(p, index, last)].entry = static_cast<uint32_t>(number);
  *entry = index->entries[last];
}

void svg_index_delete(ort_core *core, svg_name_index **index) {
  if (*index) ort_free(core, (*index)->places);
  ort_free(core, *index);
  *index = nullptr;
}

// A quarter of the places stays free.
static void grow(svg_parser *p, svg_name_index *index) {
  const size_t count = std::max<size_t>(2 * index->place_count, 4);
  const size_t room = count / 4 * 3;
  auto *places = static_cast<index_place *>(ort_malloc(
      p->core, count * sizeof(index_place) + room * sizeof(svg_index_entry), "svg_index_add"));
  auto *entries = reinterpret_cast<svg_index_entry *>(places + count);
  std::fill_n(places, count, index_place{});
  std::copy_n(index->entries, index->count, entries);
  for (size_t i = 0; i < index->place_count; ++i) {
    if (index->places[i].mark == 0) continue;
    size_t place = index->places[i].mark & (count - 1);
    while (places[place].mark != 0) place = (place + 1) & (count - 1);
    places[place] = index->places[i];
  }
  ort_free(p->core, index->places);
  *index = {places, entries, count, room, index->count};
}

// Where a name is, or the free place for it.
static size_t find_place(const svg_name_index *index, std::string_view name, uint32_t mark) {
  for (size_t i = mark;; ++i) {
    const size_t place = i & (index->place_count - 1);
    if (index->places[place].mark == 0) return place;
    if (index->places[place].mark != mark) continue;
    const char *other = index->entries[index->places[place].entry].name;
    if (strncmp(other, name.data(), name.size()) == 0 && other[name.size()] == '\0') return place;
  }
}

static size_t place_of(const svg_parser *p, const svg_name_index *index, size_t entry) {
  const char *name = index->entries[entry].name;
  return find_place(index, name, mark_of(p, name));
}

// Moves up what stood behind the place because of it.
static void free_place(svg_name_index *index, size_t place) {
  const size_t last = index->place_count - 1;
  size_t gap = place;
  for (size_t i = gap + 1; index->places[i & last].mark != 0; ++i) {
    // Its own place may be behind the gap.
    if (((i - index->places[i & last].mark) & last) < ((i - gap) & last)) continue;
    index->places[gap] = index->places[i & last];
    gap = i & last;
  }
  index->places[gap].mark = 0;
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
  for (int i = 0; i < 3; ++i) round();
  return static_cast<uint32_t>(v0 ^ v1 ^ v2 ^ v3) | 1U << 31;
}
