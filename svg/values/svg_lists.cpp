// svg_lists.cpp: constructors and destructors of lists: numbers, numbers with unit, keywords,
// names.
//
// Called by svg_parse_attr through the rows of svg_attr_table, with a zeroed node. A list takes
// exactly the memory that it needs; those that are seldom long are read twice, to count their items
// first. Bad text is raised with svg_err_value; raises for lack of memory.
#include <cstring>

#include "svg/values/svg_errors.h"
#include "svg/values/svg_record.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

static int32_t read_numbers(svg_scanner *p, const char *tag, double **values, uint8_t **units);
template <class T>
static void store(svg_host *p, const char *tag, T **array, size_t stored, size_t room,
                  const T *items, size_t count);
static void read_name(svg_parser *p);

static bool at_item(const svg_scanner *p) { return p->tok_type != SVG_TOK_END; }

static bool at_keyword(const svg_scanner *p) { return p->tok_type == SVG_TOK_KEYWORD; }

// Reads tokens while more says that the current one begins an item, hands each to item with its
// index, and skips one comma after each. Returns the number of items.
template <class Item>
static int32_t for_each_item(svg_scanner *p, bool (*more)(const svg_scanner *p), Item item) {
  int32_t count = 0;
  for (svg_ntok(p); more(p); ++count) {
    item(count);
    if (svg_ntok(p) == SVG_TOK_COMMA) svg_ntok(p);
  }
  return count;
}

// ---- Numbers ------------------------------------------------------------------------------------

void svg_ctor_an_num_list(svg_parser *p, svg_a_node *node) {
  auto *list = svg_record<svg_an_num_list>(node);
  list->count = read_numbers(p, "svg_ctor_an_num_list", &list->values, nullptr);
}

void svg_ctor_an_num_optnum(svg_parser *p, svg_a_node *node) {
  svg_ctor_an_num_list(p, node);
  const int32_t count = svg_record<svg_an_num_list>(node)->count;
  if (count < 1 || count > 2) ort_internal_error(p->core, __func__, __LINE__);
}

void svg_dtor_an_num_list(ort_core *core, svg_a_node *node) {
  ort_free(core, svg_record<svg_an_num_list>(node)->values);
}

void svg_ctor_an_unum_list(svg_parser *p, svg_a_node *node) {
  auto *list = svg_record<svg_an_unum_list>(node);
  list->count = read_numbers(p, "svg_ctor_an_unum_list", &list->values, &list->units);
}

void svg_ctor_an_unum_plus(svg_parser *p, svg_a_node *node) {
  svg_ctor_an_unum_list(p, node);
  if (svg_record<svg_an_unum_list>(node)->count == 0)
    ort_internal_error(p->core, __func__, __LINE__);
}

void svg_dtor_an_unum_list(ort_core *core, svg_a_node *node) {
  ort_free(core, svg_record<svg_an_unum_list>(node)->values);
  ort_free(core, svg_record<svg_an_unum_list>(node)->units);
}

void svg_ctor_an_key_unum_list(svg_parser *p, svg_a_node *node) {
  auto *list = svg_record<svg_an_key_unum_list>(node);
  if (svg_ntok(p) == SVG_TOK_KEYWORD) {
    list->key = p->tok_key;
    return;
  }
  p->tok_pushed = 1; // the list begins with it
  list->count = read_numbers(p, "svg_ctor_an_key_unum_list", &list->values, &list->units);
}

void svg_dtor_an_key_unum_list(ort_core *core, svg_a_node *node) {
  ort_free(core, svg_record<svg_an_key_unum_list>(node)->values);
  ort_free(core, svg_record<svg_an_key_unum_list>(node)->units);
}

// The numbers, and when units is not null their units, wait in groups: few of them cost one block
// of memory, and many a block that grows.
static int32_t read_numbers(svg_scanner *p, const char *tag, double **values, uint8_t **units) {
  constexpr size_t group = 64;
  double waiting[group];
  uint8_t waiting_units[group];
  size_t count = 0, stored = 0, room = 0;
  const auto store_group = [&](size_t wanted) {
    const bool grow = wanted != room;
    room = wanted;
    store(p, tag, values, stored, grow ? room : 0, waiting, count);
    if (units) store(p, tag, units, stored, grow ? room : 0, waiting_units, count);
    stored += count;
    count = 0;
  };
  const int32_t items = for_each_item(p, at_item, [&](int32_t) {
    if (count == group) store_group(room < stored + group ? 2 * (stored + group) : room);
    waiting[count] = units ? svg_ctok_as_unum(p, &waiting_units[count]) : svg_ctok_as_num(p);
    ++count;
  });
  if (items > 0) store_group(stored + count);
  return items;
}

// Puts items after those that are stored in *array, which gets room for so many; 0: it has room.
template <class T>
static void store(svg_host *p, const char *tag, T **array, size_t stored, size_t room,
                  const T *items, size_t count) {
  if (room > 0) *array = static_cast<T *>(ort_realloc(p->core, *array, room * sizeof(T), tag));
  memcpy(*array + stored, items, count * sizeof(T));
}

// ---- Keywords -----------------------------------------------------------------------------------

// The first token that is no keyword ends the list without an error.
void svg_ctor_an_key_list(svg_parser *p, svg_a_node *node) {
  auto *list = svg_record<svg_an_key_list>(node);
  const int32_t count = for_each_item(p, at_keyword, [](int32_t) {});
  if (count == 0) return;
  list->keys = ort_new_array<int32_t>(p->core, static_cast<size_t>(count), "svg_ctor_an_key_list");
  list->count = count;
  svg_scan_reset(p);
  for_each_item(p, at_keyword, [=](int32_t i) { list->keys[i] = p->tok_key; });
}

void svg_dtor_an_key_list(ort_core *core, svg_a_node *node) {
  ort_free(core, svg_record<svg_an_key_list>(node)->keys);
}

// ---- Names --------------------------------------------------------------------------------------

void svg_ctor_an_name_list(svg_parser *p, svg_a_node *node) {
  auto *list = svg_record<svg_an_name_list>(node);
  int32_t count = 1;
  while (svg_ntok_nonum(p) != SVG_TOK_END)
    if (p->tok_type == SVG_TOK_COMMA) ++count;
  svg_note(p, 6, "\t\t\t\t%2d names: ", count);
  list->names = ort_new_array<char *>(p->core, static_cast<size_t>(count), "svg_ctor_an_name_list");
  list->count = count;

  svg_scan_reset(p);
  for (int32_t i = 0; i < count; ++i) {
    svg_ntok_nonum(p);
    read_name(p);
    list->names[i] = ort_strdup(p->core, ort_bs_text(p->name_buf));
    svg_note(p, 6, "%s\"%a\"", i == 0 ? "" : " ", list->names[i]);
  }
  svg_note(p, 6, "\n");
}

// Joins the words from the current token up to a comma or the end in name_buf.
static void read_name(svg_parser *p) {
  if (p->tok_type != SVG_TOK_STRING) svg_err_value(p);
  ort_bs_clear(p->name_buf);
  ort_bs_append_text(p->name_buf, p->tok_text);
  while (svg_ntok_nonum(p) == SVG_TOK_STRING) {
    ort_bs_append_byte(p->name_buf, ' ');
    ort_bs_append_text(p->name_buf, p->tok_text);
  }
  if (p->tok_type != SVG_TOK_COMMA && p->tok_type != SVG_TOK_END) svg_err_value(p);
}

void svg_dtor_an_name_list(ort_core *core, svg_a_node *node) {
  auto *list = svg_record<svg_an_name_list>(node);
  for (int32_t i = 0; i < list->count; ++i) ort_free(core, list->names[i]);
  ort_free(core, list->names);
}
