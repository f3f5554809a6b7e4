// svg_document.cpp: what a document owns: made before the passes, cleared before one of them is
// restarted, deleted when its time is over.
//
// Called by svg_parse.cpp, svg_lifecycle.cpp and svg_xml.cpp. Whatever exists can be cleared and
// deleted at any moment. Making raises for lack of memory; parsing style sheets raises what the
// callbacks of the CSS engine raise.
#include "svg/tree/svg_document.h"

#include "svg/names/svg_schema.h"
#include "svg/style/svg_select.h"
#include "svg/tables/lists.h"
#include "svg/tree/svg_tree.h"
#include "svg/values/svg_types.h"

static void clear_document(svg_parser *p);
static void delete_attribute_values(ort_core *core, ort_vtr *values);

// ---- Everything that is owned -------------------------------------------------------------------

enum : unsigned {
  AT_ONCE = 1, // svg_make_work_space makes it, else whoever needs it first
  READING = 2, // useless after reading
};

static void release_namespace(ort_core *core, void *item) {
  const auto *entry = static_cast<svg_nsp_entry *>(item);
  ort_free(core, entry->uri);
  ort_free(core, entry->prefix);
}

static void release_href(ort_core *core, void *item) {
  ort_free(core, static_cast<svg_href *>(item)->id);
}

static void release_value(ort_core *core, void *item) {
  svg_a_node_delete(core, *static_cast<svg_a_node **>(item));
}

template <class Item, void (*Release)(ort_core *, void *) = nullptr>
static constexpr ort_item_desc ITEMS = {sizeof(Item), nullptr, Release};

static_assert([] {
  size_t longest = 0;
  for (const auto &list : svg_tables::ATTRIBUTE_LISTS.of) longest = std::max(longest, list.count);
  return longest <= SVG_LONGEST_LIST;
}());

// Making, restarting and deleting go over these lists. The tree, the CSS engine and the value being
// made stand apart, because their order matters.
template <class Visit> static void visit_sheet_pass(svg_sheet_pass *p, Visit visit) {
  visit(p->style_sheet);
  visit(p->sheet_pieces, READING);
  visit(p->css_svg_stack, AT_ONCE | READING, ITEMS<int32_t>, 4);
  visit(p->pi_copy);
  visit(p->pi_items, READING);
  visit(p->ext_style_sheets, READING);
}

template <class Visit> static void visit_main_pass(svg_main_pass *p, Visit visit) {
  visit(p->nsp_stack, AT_ONCE | READING, ITEMS<svg_nsp_entry, release_namespace>, 4);
  visit(p->nsp_index, READING);

  visit(p->chardata, AT_ONCE | READING);
  visit(p->attr_names, READING);
  visit(p->given_attrs, READING);
  visit(p->written_attrs, READING);

  visit(p->savelem_text, READING);
  visit(p->xmlns_text, READING);
  visit(p->title);
  visit(p->desc);
  visit(p->metadata);

  visit(p->hrefs, AT_ONCE, ITEMS<svg_href, release_href>, 4);
  visit(p->unres_links);
  visit(p->name_index);
  visit(p->link_slots);

  visit(p->elem_stack, AT_ONCE | READING, ITEMS<svg_pe_entry>, 8);
  visit(p->an_values, AT_ONCE | READING, ITEMS<svg_a_node *>, 8);
  visit(p->prop_values, AT_ONCE, ITEMS<svg_a_node *, release_value>, 8);
  visit(p->elems_used);

  visit(p->font_face);
  visit(p->fonts);
  visit(p->kept); // last: what it holds is needed until all values are deleted
}

template <class Visit> static void visit_owned(svg_parser *p, Visit visit) {
  visit(p->language_primary);
  visit(p->tok_buf, AT_ONCE | READING);
  visit(p->name_buf, AT_ONCE | READING);
  visit(p->style_name_buf, AT_ONCE | READING);
  visit(p->style_value_buf, AT_ONCE | READING);
  visit(p->class_nids, READING);
  visit(p->font_copy);
  visit(p->pada_segments, READING);
  visit_sheet_pass(p, visit);
  visit_main_pass(p, visit);
}

static bool exists(const void *owned) { return owned != nullptr; }

static bool exists(const ort_name_index &) { return true; }

static bool exists(const ort_arena &) { return true; }

// ---- Making -------------------------------------------------------------------------------------

template <class Owned> static void make(ort_core *, Owned *&) {} // by whoever needs it first

static void make(ort_core *, ort_name_index &) {} // is made already

static void make(ort_core *, ort_arena &) {} // likewise

static void make(ort_core *core, ort_bs *&text) { text = ort_bs_new(core); }

static void make(ort_core *core, ort_vtr *&vector, const ort_item_desc &items, int capacity = 0) {
  vector = ort_vtr_new(core, &items, static_cast<size_t>(capacity), 0);
}

void svg_make_work_space(svg_parser *p) {
  visit_owned(p, [=](auto &owned, unsigned when = 0, const auto &...what) {
    if ((when & AT_ONCE) != 0 && !exists(owned)) make(p->core, owned, what...);
  });
  if (ort_vtr_count(p->css_svg_stack) == 0) ort_push<int32_t>(p->css_svg_stack, 1);
}

// External sheets stand before the internal one, so that the document's own rules win over them.
void svg_prepare_document(svg_parser *p) {
  for (size_t i = 0; i < ort_vtr_count(p->ext_style_sheets); ++i) {
    svg_note(p, 3, "\tParsing external style sheet #%d...\n", static_cast<int>(i + 1));
    svg_css_create_parser(p);
    const auto &sheet = ort_item<svg_ext_sheet>(p->ext_style_sheets, i);
    p->origin = SVG_SHEET_INSTRUCTION;
    p->sheet_place = sheet.place;
    css_parse_sheet(p->css, sheet.text, sheet.href);
  }
  if (p->style_sheet) {
    svg_note(p, 3, "\tParsing internal style sheet...\n");
    svg_css_create_parser(p);
    p->origin = SVG_SHEET_STYLE;
    css_parse(p->css, ort_bs_text(p->style_sheet));
  }
  p->origin = SVG_SHEET_NONE;
  svg_css_add_queries(p);
  p->root = svg_e_node_new(p, SVG_ID_ROOT);
  ort_push(p->elem_stack, svg_pe_entry{p->root, &p->root->first_child, nullptr});
}

// ---- Deleting and restarting --------------------------------------------------------------------

static void free_it(ort_core *, ort_bs *text) { ort_bs_delete(text); }

static void free_it(ort_core *, ort_vtr *vector) { ort_vtr_delete(vector); }

static void free_it(ort_core *, ort_hvtr *handles) { ort_hvtr_delete(handles); }

static void free_it(ort_core *core, void *block) { ort_free(core, block); }

static void discard(ort_core *core, ort_name_index &index) { ort_index_clear(core, &index); }

static void discard(ort_core *core, ort_arena &arena) { ort_arena_clear(core, &arena); }

template <class Owned> static void discard(ort_core *core, Owned *&owned) {
  free_it(core, owned);
  owned = nullptr;
}

void svg_delete_work_space(svg_parser *p) {
  visit_owned(p, [=](auto &owned, unsigned when = 0, const auto &...) {
    if ((when & READING) != 0) discard(p->core, owned);
  });
}

void svg_delete_document(svg_parser *p) {
  clear_document(p);
  svg_delete_queries(p);
  visit_owned(p, [=](auto &owned, auto...) { discard(p->core, owned); });
}

void svg_restart_sheets(svg_parser *p) {
  visit_sheet_pass(p, [=](auto &owned, auto...) { discard(p->core, owned); });
  static_cast<svg_sheet_pass &>(*p) = {};
  p->level = 0;
  svg_make_work_space(p);
}

void svg_restart_document(svg_parser *p) {
  clear_document(p);
  svg_make_work_space(p);
  svg_prepare_document(p);
}

// The CSS engine goes before the values that its rules name, the tree before the property values
// that its elements share: so every value is destroyed exactly once.
static void clear_document(svg_parser *p) {
  css_parser_delete(p->css);
  if (p->attr_values_own) {
    delete_attribute_values(p->core, p->an_values);
    svg_del_e_node(p->core, p->root);
  }
  svg_a_node_delete(p->core, p->new_value);
  p->new_value = nullptr;
  visit_main_pass(p, [=](auto &owned, auto...) { discard(p->core, owned); });
  static_cast<svg_main_pass &>(*p) = {};
}

// The values of attributes still collected for an element that was never finished. Those of
// properties belong to prop_values.
static void delete_attribute_values(ort_core *core, ort_vtr *values) {
  for (size_t i = 0; i < ort_vtr_count(values); ++i)
    if (svg_a_node *value = ort_item<svg_a_node *>(values, i); !svg_is_property(value->row))
      svg_a_node_delete(core, value);
}
