// svg_links.cpp: ids and names, and the links that wait for elements still to come.
//
// Ids are registered and links made while values are parsed; svg_add_e_node and the end of the
// parse resolve them. Hosts ask for names and elements. Two indexes by name stand beside the
// vectors, so that every step takes constant time. Raises for lack of memory.
#include <bit>
#include <cstring>

#include "svg/svg_tree.h"

// An item of unres_links.
struct waiting_link : svg_unres_link {
  size_t previous; // slot of the link made before it with the same id, or NO_LINK
};
constexpr size_t NO_LINK = SIZE_MAX;

// The waiting links of one name: a chain from the last one made back to the first.
struct waiting_links {
  char *id; // that of the last link
  size_t last;
};

struct name_entry {
  uint64_t hash;
  union { // both begin with the name, which belongs to the record; null: the place is free
    svg_href href;
    waiting_links waiting;
  };
};

// Open addressing with linear probing; the number of places is a power of 2.
struct svg_name_index {
  name_entry *entries;
  size_t capacity;
  size_t count;
};

static waiting_link *link_at(const svg_parser *p, size_t slot);
static void reserve_entry(svg_parser *p, svg_name_index **index);
static name_entry *find_entry(const svg_parser *p, const svg_name_index *index, const char *name);
static name_entry *find_place(const svg_name_index *index, const char *name, uint64_t hash);
static void remove_entry(svg_name_index *index, name_entry *entry);
static void delete_index(ort_core *core, svg_name_index **index);
static uint64_t hash_name(const svg_parser *p, const char *name);

static void svg_href_reclaim(void *item) { *static_cast<svg_href *>(item) = {}; }

static void svg_href_release(ort_core *core, void *item) {
  ort_free(core, static_cast<svg_href *>(item)->id);
}

const ort_item_desc href_ced = {sizeof(svg_href), svg_href_reclaim, svg_href_release};

static void svg_unres_link_reclaim(void *item) { *static_cast<waiting_link *>(item) = {}; }

static void svg_unres_link_release(ort_core *core, void *item) {
  ort_free(core, static_cast<waiting_link *>(item)->id);
}

static const ort_item_desc unres_link_ced = {sizeof(waiting_link), svg_unres_link_reclaim,
                                             svg_unres_link_release};

// ---- Targets ------------------------------------------------------------------------------------

// The first element that bears a name keeps it.
void svg_add_href(svg_parser *p, const char *id, svg_e_node *target) {
  if (svg_find_href(p, id) != nullptr) return;
  reserve_entry(p, &p->href_index);
  auto *href = static_cast<svg_href *>(ort_vtr_push(p->hrefs));
  if (p->log_level >= 5)
    ort_logg(p->core, "\t\t\t[add target \"%a\" (%p)]\n", id, static_cast<void *>(target));
  href->id = ort_strdup(p->core, id);
  href->target = target;
  const uint64_t hash = hash_name(p, id);
  *find_place(p->href_index, id, hash) = {.hash = hash, .href = *href};
  p->href_index->count++;
  p->cur_href = href->id;
}

const svg_href *svg_find_href(svg_parser *p, const char *id) {
  if (p->log_level >= 5) ort_logg(p->core, "\t\t\t[search for id \"%a\"]\n", id);
  const name_entry *entry = find_entry(p, p->href_index, id);
  if (entry != nullptr) return &entry->href;
  if (p->log_level >= 5) ort_logg(p->core, "\t\t\t[id not found]\n");
  return nullptr;
}

int svg_href_compare(const void *a, const void *b) {
  const auto first = reinterpret_cast<uintptr_t>(static_cast<const svg_href *>(a)->target);
  const auto second = reinterpret_cast<uintptr_t>(static_cast<const svg_href *>(b)->target);
  return first < second ? -1 : first > second;
}

svg_e_node *svg_find_name(const svg_parser *p, const char *name) {
  const name_entry *entry = find_entry(p, p->href_index, name);
  return entry != nullptr ? entry->href.target : nullptr;
}

const char *svg_find_href_id(const svg_parser *p, const svg_e_node *element) {
  const auto wanted = reinterpret_cast<uintptr_t>(element);
  size_t low = 0;
  size_t high = ort_vtr_count(p->hrefs);
  while (low < high) {
    const size_t middle = (low + high) / 2;
    const auto &href = ort_item<svg_href>(p->hrefs, middle);
    const auto target = reinterpret_cast<uintptr_t>(href.target);
    if (target == wanted) return href.id;
    if (target > wanted)
      high = middle;
    else
      low = middle + 1;
  }
  return "(empty)";
}

size_t svg_get_href_count(const svg_parser *p) { return ort_vtr_count(p->hrefs); }

const char *svg_get_href(const svg_parser *p, size_t i, svg_e_node **element) {
  if (i >= ort_vtr_count(p->hrefs)) return nullptr;
  const auto &href = ort_item<svg_href>(p->hrefs, i);
  if (element != nullptr) *element = href.target;
  return href.id;
}

// ---- Waiting links ------------------------------------------------------------------------------

void svg_add_unres_link(svg_parser *p, const char *id, svg_iri *iri) {
  if (p->unres_links == nullptr) p->unres_links = ort_hvtr_new(p->core, &unres_link_ced);
  reserve_entry(p, &p->unres_index);
  const size_t slot = ort_hvtr_reclaim_item(p->unres_links);
  waiting_link *link = link_at(p, slot);
  link->id = ort_strdup(p->core, id);
  link->iri = iri;
  link->source = p->cur_enode;

  const uint64_t hash = hash_name(p, id);
  name_entry *entry = find_place(p->unres_index, id, hash);
  const bool first = entry->waiting.id == nullptr;
  link->previous = first ? NO_LINK : entry->waiting.last;
  *entry = {.hash = hash, .waiting = {link->id, slot}};
  if (first) p->unres_index->count++;
  p->value_link = static_cast<int64_t>(slot);
  if (p->log_level >= 5) ort_logg(p->core, "\t\t\t[add unresolved reference \"#%a\"]\n", link->id);
}

void svg_resolve_href(svg_parser *p, const char *id, svg_e_node *target) {
  p->value_link = -1; // its slot may pass to another link
  name_entry *entry = find_entry(p, p->unres_index, id);
  if (entry == nullptr) return;
  size_t slot = entry->waiting.last;
  remove_entry(p->unres_index, entry);

  size_t first = NO_LINK; // the chain, turned around
  while (slot != NO_LINK) {
    waiting_link *link = link_at(p, slot);
    const size_t previous = link->previous;
    link->previous = first;
    first = slot;
    slot = previous;
  }
  for (slot = first; slot != NO_LINK;) {
    const waiting_link *link = link_at(p, slot);
    if (p->log_level >= 5) ort_logg(p->core, "\t\t\t[reference \"%a\" resolved]\n", id);
    link->iri->ref.target = target;
    if (link->source != nullptr) svg_set_elem_flag(p, link->source, target);
    const size_t next = link->previous;
    ort_hvtr_release_item(p->unres_links, slot);
    slot = next;
  }
}

// No link has been made or resolved since, so it is the last of its chain.
void svg_drop_value_link(svg_parser *p) {
  if (p->value_link < 0) return;
  const auto slot = static_cast<size_t>(p->value_link);
  p->value_link = -1;
  const waiting_link *link = link_at(p, slot);
  name_entry *entry = find_entry(p, p->unres_index, link->id);
  if (link->previous == NO_LINK)
    remove_entry(p->unres_index, entry);
  else
    entry->waiting = {link_at(p, link->previous)->id, link->previous};
  ort_hvtr_release_item(p->unres_links, slot);
}

void svg_set_elem_flag(svg_parser *p, svg_e_node *source, const svg_e_node *target) {
  if ((target->head.flags & SVG_EF_BBOX_USER) == 0) return;
  if (p->log_level >= 6)
    ort_logg(p->core, "\t\t\t[source %p needs bbox because of target %p]\n",
             static_cast<const void *>(source), static_cast<const void *>(target));
  source->head.flags |= SVG_EF_NEEDS_BBOX;
  if ((target->head.flags & SVG_EF_BBOX_USER2) != 0) source->head.flags |= SVG_EF_NEEDS_BBOX2;
}

size_t svg_get_unresolved_count(const svg_parser *p) {
  return p->unres_links != nullptr ? ort_hvtr_size(p->unres_links) : 0;
}

const char *svg_get_unresolved(const svg_parser *p, size_t i, const svg_iri **iri,
                               svg_e_node **source) {
  if (i >= svg_get_unresolved_count(p) || !ort_hvtr_check_idx(p->unres_links, i)) return nullptr;
  const waiting_link *link = link_at(p, i);
  if (iri != nullptr) *iri = link->iri;
  if (source != nullptr) *source = link->source;
  return link->id;
}

void svg_clear_links(svg_parser *p) {
  delete_index(p->core, &p->href_index);
  delete_index(p->core, &p->unres_index);
  if (p->hrefs != nullptr) ort_vtr_resize(p->hrefs, 0);
  ort_hvtr_delete(p->unres_links);
  p->unres_links = nullptr;
  p->cur_href = nullptr;
  p->value_link = -1;
}

static waiting_link *link_at(const svg_parser *p, size_t slot) {
  return static_cast<waiting_link *>(ort_hvtr_at(p->unres_links, slot));
}

// ---- Indexes ------------------------------------------------------------------------------------

// Makes sure that one more entry fits.
static void reserve_entry(svg_parser *p, svg_name_index **index) {
  if (*index == nullptr) *index = ort_new<svg_name_index>(p->core, "svg_name_index");
  svg_name_index *old = *index;
  if (old->count < old->capacity - old->capacity / 4) return;
  const size_t capacity = old->capacity != 0 ? 2 * old->capacity : 64;
  const svg_name_index grown = {ort_new_array<name_entry>(p->core, capacity, "svg_name_index"),
                                capacity, old->count};
  for (size_t i = 0; i < old->capacity; i++) {
    const name_entry &entry = old->entries[i];
    if (entry.href.id != nullptr) *find_place(&grown, entry.href.id, entry.hash) = entry;
  }
  ort_free(p->core, old->entries);
  *old = grown;
}

// The entry of a name, or null.
static name_entry *find_entry(const svg_parser *p, const svg_name_index *index, const char *name) {
  if (index == nullptr || index->count == 0) return nullptr;
  name_entry *entry = find_place(index, name, hash_name(p, name));
  return entry->href.id != nullptr ? entry : nullptr;
}

// The entry of a name, or the free place for it.
static name_entry *find_place(const svg_name_index *index, const char *name, uint64_t hash) {
  for (size_t i = hash;; i++) {
    name_entry *entry = &index->entries[i & (index->capacity - 1)];
    if (entry->href.id == nullptr) return entry;
    if (entry->hash == hash && ort_strcmp(entry->href.id, name) == 0) return entry;
  }
}

// Moves up what stood behind the entry because of it.
static void remove_entry(svg_name_index *index, name_entry *entry) {
  const size_t mask = index->capacity - 1;
  size_t gap = static_cast<size_t>(entry - index->entries);
  for (size_t i = gap + 1; index->entries[i & mask].href.id != nullptr; i++) {
    const name_entry &other = index->entries[i & mask];
    if (((i - other.hash) & mask) < ((i - gap) & mask)) continue; // its own place is behind the gap
    index->entries[gap] = other;
    gap = i & mask;
  }
  index->entries[gap] = {};
  index->count--;
}

static void delete_index(ort_core *core, svg_name_index **index) {
  if (*index != nullptr) ort_free(core, (*index)->entries);
  ort_free(core, *index);
  *index = nullptr;
}

// SipHash-1-3, keyed with the address of the parser: no drawing can bring ids that are known to
// collide.
static uint64_t hash_name(const svg_parser *p, const char *name) {
  const uint64_t key = reinterpret_cast<uintptr_t>(p);
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
  const size_t length = strlen(name);
  for (size_t done = 0; done <= length; done += 8) {
    const size_t rest = length - done;
    uint64_t block = rest < 8 ? static_cast<uint64_t>(length) << 56 : 0;
    memcpy(&block, name + done, rest < 8 ? rest : 8);
    v3 ^= block;
    round();
    v0 ^= block;
  }
  v2 ^= 0xff;
  for (int i = 0; i < 3; i++) round();
  return v0 ^ v1 ^ v2 ^ v3;
}
