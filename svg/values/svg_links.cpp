// svg_links.cpp: ids and names, and the links that wait for elements still to come.
//
// Ids are registered and links made while values are parsed; svg_add_e_node and the end of the
// parse resolve them. Hosts ask for names and elements. An index by name makes every step take
// constant time: it leads to the element that bears the name, and to the slot, counted from 1, of
// the last link that waits for it. Raises for lack of memory.
#include "svg/values/svg_links.h"

namespace {

// An item of unres_links.
struct waiting_link : svg_unres_link {
  size_t previous; // slot, counted from 1, of the link made before it with the same id, or 0
};

} // namespace

static void log_search(svg_host *p, const char *id, bool found);
static void gather_slots(svg_parser *p, size_t number);
static int compare_slots(const void *a, const void *b);
static waiting_link *link_at(const svg_links *p, size_t slot);

static void svg_unres_link_reclaim(void *item) { *static_cast<waiting_link *>(item) = {}; }

static void svg_unres_link_release(ort_core *core, void *item) {
  ort_free(core, static_cast<waiting_link *>(item)->id);
}

static const ort_item_desc unres_link_ced = {sizeof(waiting_link), svg_unres_link_reclaim,
                                             svg_unres_link_release};
static const ort_item_desc slot_ced = {sizeof(size_t), nullptr, nullptr};

// ---- Targets ------------------------------------------------------------------------------------

// The first element that bears a name keeps it. The entry's name is that of the element from now
// on: a link's goes with the link.
void svg_add_href(svg_parser *p, const char *id, svg_e_node *target) {
  auto *href = static_cast<svg_href *>(ort_vtr_push(p->hrefs));
  href->id = ort_strdup(p->core, id);
  href->target = target;
  ort_name_entry *entry = ort_index_add(p->core, &p->name_index, href->id);
  log_search(p, id, entry->value != nullptr);
  if (entry->value) {
    ort_vtr_pop(p->hrefs);
    return;
  }
  svg_note(p, 5, "\t\t\t[add target \"%a\" (%p)]\n", id, static_cast<void *>(target));
  entry->name = href->id;
  entry->value = target;
  p->cur_href = href->id;
  p->cur_href_awaited = entry->number != 0;
}

svg_e_node *svg_find_href(svg_parser *p, const char *id) {
  svg_e_node *target = svg_find_name(p, id);
  log_search(p, id, target != nullptr);
  return target;
}

static void log_search(svg_host *p, const char *id, bool found) {
  if (p->log_level < 5) return;
  ort_logg(p->core, "\t\t\t[search for id \"%a\"]\n", id);
  if (!found) ort_logg(p->core, "\t\t\t[id not found]\n");
}

int svg_href_compare(const void *a, const void *b) {
  const auto first = reinterpret_cast<uintptr_t>(static_cast<const svg_href *>(a)->target);
  const auto second = reinterpret_cast<uintptr_t>(static_cast<const svg_href *>(b)->target);
  return first < second ? -1 : first > second;
}

svg_e_node *svg_find_name(const svg_parser *p, const char *name) {
  const ort_name_entry *entry = ort_index_find(p->core, &p->name_index, name);
  return entry ? static_cast<svg_e_node *>(entry->value) : nullptr;
}

const char *svg_find_href_id(const svg_parser *p, const svg_e_node *element) {
  const auto wanted = reinterpret_cast<uintptr_t>(element);
  const char *id = "(empty)"; // of several the first, wherever the elements lie in memory
  size_t low = 0;
  size_t high = ort_vtr_count(p->hrefs);
  while (low < high) {
    const size_t middle = (low + high) / 2;
    const auto &href = ort_item<svg_href>(p->hrefs, middle);
    const auto target = reinterpret_cast<uintptr_t>(href.target);
    if (target == wanted) id = href.id;
    if (target >= wanted)
      high = middle;
    else
      low = middle + 1;
  }
  return id;
}

size_t svg_get_href_count(const svg_parser *p) { return ort_vtr_count(p->hrefs); }

const char *svg_get_href(const svg_parser *p, size_t i, svg_e_node **element) {
  if (i >= ort_vtr_count(p->hrefs)) return nullptr;
  const auto &href = ort_item<svg_href>(p->hrefs, i);
  if (element) *element = href.target;
  return href.id;
}

// ---- Waiting links ------------------------------------------------------------------------------

void svg_add_unres_link(svg_parser *p, const char *id, svg_iri *iri) {
  if (!p->unres_links) p->unres_links = ort_hvtr_new(p->core, &unres_link_ced);
  const size_t slot = ort_hvtr_reclaim_item(p->unres_links);
  waiting_link *link = link_at(p, slot);
  p->value_link = static_cast<int64_t>(slot);
  link->iri = iri;
  link->source = p->cur_enode;
  link->id = ort_strdup(p->core, id);
  ort_name_entry *entry = ort_index_add(p->core, &p->name_index, link->id);
  link->previous = entry->number;
  entry->name = link->id;
  entry->number = static_cast<uint32_t>(slot + 1);
  svg_note(p, 5, "\t\t\t[add unresolved reference \"#%a\"]\n", link->id);
}

void svg_resolve_href(svg_parser *p, const char *id, svg_e_node *target) {
  ort_name_entry *entry = ort_index_find(p->core, &p->name_index, id);
  if (!entry || entry->number == 0) return;
  gather_slots(p, entry->number);
  entry->number = 0;
  for (size_t i = ort_vtr_count(p->link_slots); i-- > 0;) {
    const auto slot = ort_item<size_t>(p->link_slots, i);
    const waiting_link *link = link_at(p, slot);
    svg_note(p, 5, "\t\t\t[reference \"%a\" resolved]\n", id);
    link->iri->ref.target = target;
    if (link->source) svg_set_elem_flag(p, link->source, target);
    ort_hvtr_release_item(p->unres_links, slot);
  }
}

// Gathers the slots of a chain in link_slots, the highest first, which is the order of the chain
// unless slots were used again.
static void gather_slots(svg_parser *p, size_t number) {
  if (!p->link_slots) p->link_slots = ort_vtr_new(p->core, &slot_ced, 0, 0);
  ort_vtr_resize(p->link_slots, 0);
  bool ordered = true;
  while (number != 0) {
    const size_t slot = number - 1;
    ort_push(p->link_slots, slot);
    number = link_at(p, slot)->previous;
    ordered &= number <= slot;
  }
  if (!ordered) ort_vtr_sort_c(p->link_slots, compare_slots);
}

static int compare_slots(const void *a, const void *b) {
  const size_t first = *static_cast<const size_t *>(a), second = *static_cast<const size_t *>(b);
  return first > second ? -1 : first < second;
}

// No link has been made or resolved since, so it is the last of its chain, if it got that far.
void svg_drop_value_link(svg_parser *p) {
  if (p->value_link < 0) return;
  const auto slot = static_cast<size_t>(p->value_link);
  const waiting_link *link = link_at(p, slot);
  ort_name_entry *entry = link->id ? ort_index_find(p->core, &p->name_index, link->id) : nullptr;
  if (entry && entry->number == slot + 1) {
    if (link->previous == 0) {
      ort_index_remove(p->core, &p->name_index, entry);
    } else {
      entry->number = static_cast<uint32_t>(link->previous);
      entry->name = link_at(p, link->previous - 1)->id;
    }
  }
  ort_hvtr_release_item(p->unres_links, slot);
}

void svg_set_elem_flag(svg_parser *p, svg_e_node *source, const svg_e_node *target) {
  if ((target->head.flags & SVG_EF_BBOX_USER) == 0) return;
  svg_note(p, 6, "\t\t\t[source %p needs bbox because of target %p]\n",
           static_cast<const void *>(source), static_cast<const void *>(target));
  source->head.flags |= SVG_EF_NEEDS_BBOX;
  if ((target->head.flags & SVG_EF_BBOX_USER2) != 0) source->head.flags |= SVG_EF_NEEDS_BBOX2;
}

size_t svg_get_unresolved_count(const svg_parser *p) {
  return p->unres_links ? ort_hvtr_size(p->unres_links) : 0;
}

const char *svg_get_unresolved(const svg_parser *p, size_t i, const svg_iri **iri,
                               svg_e_node **source) {
  if (i >= svg_get_unresolved_count(p) || !ort_hvtr_check_idx(p->unres_links, i)) return nullptr;
  const waiting_link *link = link_at(p, i);
  if (iri) *iri = link->iri;
  if (source) *source = link->source;
  return link->id;
}

void svg_drop_resolved_links(svg_parser *p) {
  for (size_t i = 0; i < svg_get_unresolved_count(p); ++i)
    if (ort_hvtr_check_idx(p->unres_links, i)) return;
  ort_hvtr_delete(p->unres_links);
  p->unres_links = nullptr;
}

static waiting_link *link_at(const svg_links *p, size_t slot) {
  return static_cast<waiting_link *>(ort_hvtr_at(p->unres_links, slot));
}
