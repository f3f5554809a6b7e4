// svg_select.cpp: the reader's side of the CSS engine: the callbacks by which it asks for values
// and for facts about elements, and the rules of the element being built.
//
// The callbacks are called by css_parse and css_get_rules. Parsing a declaration may raise
// SVG_E_PROPERTY_REFUSED and lack of memory; the questions about elements raise nothing.
#include "svg/style/svg_select.h"

#include <cstring>

#include "svg/names/svg_schema.h"
#include "svg/values/svg_attr.h"
#include "svg/values/svg_css_color.h"
#include "svg/values/svg_errors.h"
#include "svg/values/svg_font.h"
#include "svg/values/svg_leniency.h"
#include "svg/values/svg_types.h"

static int16_t svg_css_cb_get_elem_nid(void *user, const char *name);
static void *svg_css_cb_get_prop(void *user, const char *name, const char *value, bool important);
static const char *svg_css_cb_get_attr_value(void *user, void *node, int16_t attr_nid);
static bool svg_css_cb_check_class(void *user, void *node, int16_t class_nid);
static bool svg_css_cb_check_id(void *user, void *node, int16_t id_nid);
static void *svg_css_cb_get_ancest(void *user, void *node, int16_t elem_nid);
static void *svg_css_cb_get_parent(void *user, void *node, int16_t elem_nid);
static void *svg_css_cb_get_siblng(void *user, void *node, int16_t elem_nid);
static void svg_css_cb_at_fontface(void *user);
static void svg_css_cb_at_import(void *user, const char *href);

static void check_selector(svg_parser *p, const char *selector);
static void tell_facts(svg_parser *p, svg_e_node *node);
static svg_a_node *parse_declaration(svg_parser *p, int32_t row, const char *text);
static void add_longhand(svg_parser *p, const char *name, const char *text);
static const svg_pe_entry *open_element(const svg_tree *p, int32_t level);
static const char *log_important(bool important) { return important ? " !important" : ""; }
static svg_e_node *log_found(const svg_host *p, const char *what, svg_e_node *node);

constexpr css_callbacks svg_css_callbacks = {
    .get_elem_nid = svg_css_cb_get_elem_nid,
    .get_prop = svg_css_cb_get_prop,
    .get_attr_value = svg_css_cb_get_attr_value,
    .check_class = svg_css_cb_check_class,
    .check_id = svg_css_cb_check_id,
    .get_ancest = svg_css_cb_get_ancest,
    .get_parent = svg_css_cb_get_parent,
    .get_siblng = svg_css_cb_get_siblng,
    .at_fontface = svg_css_cb_at_fontface,
    .at_import = svg_css_cb_at_import,
};

void svg_css_create_parser(svg_parser *p) {
  if (p->css) return;
  p->css = css_parser_new(p->core, p, p->css_context_, &svg_css_callbacks, SVG_ELEM_COUNT - 1);
  css_parser_init(p->css);
  css_set_encoding(p->css, svg_sheet_encoding(p));
}

// ---- Questions about elements ------------------------------------------------------------------

// An open element's parent is the open element one level up. For any other node it is the nearest
// one before it, in document order, that is a level higher.
svg_e_node *svg_css_find_parent(svg_parser *p, svg_e_node *node, int16_t nid) {
  if (!node) return nullptr;
  int32_t level = node->level - 1;
  const svg_pe_entry *self = open_element(p, node->level);
  const svg_pe_entry *outer = open_element(p, level);
  svg_e_node *parent = node->prev;
  if (outer && self && self->node == node) {
    parent = outer->node;
  }
  while (parent && parent->head.id != SVG_ID_ROOT && parent->level != level) {
    parent = parent->prev;
  }
  if (!parent || parent->head.id == SVG_ID_ROOT) return nullptr;
  return nid == CSS_NO_NID || parent->head.id == nid ? log_found(p, "parent", parent) : nullptr;
}

// The element being built starts at its parent's last child, which spares the walk over that
// child's content.
svg_e_node *svg_css_find_sibling(svg_parser *p, svg_e_node *node, int16_t nid) {
  if (!node) return nullptr;
  const svg_pe_entry *outer = open_element(p, node->level - 1);
  svg_e_node *other = node->prev;
  if (node == p->cur_enode && outer && outer->last_child != node) {
    other = outer->last_child;
  }
  for (; other && other->head.id != SVG_ID_ROOT; other = other->prev) {
    if (other->level < node->level) return nullptr;
    if (other->level == node->level && (nid == CSS_NO_NID || other->head.id == nid)) {
      return log_found(p, "sibling", other);
    }
  }
  return nullptr;
}

// ---- The element being built -------------------------------------------------------------------

void svg_css_collect_attrs(svg_parser *p, svg_e_node *node, const svg_given_attr *attrs) {
  if (!css_has_attr_nids(p->css)) return;
  for (; attrs->name; ++attrs) {
    const char *local = attrs->name->local();
    int16_t nid = css_get_attr_nid(p->css, local);
    if (nid == CSS_NO_NID) continue;
    const size_t size = strlen(attrs->text) + 1;
    void *taken =
        ort_arena_take(p->core, &p->kept, sizeof(svg_css_attr) + size, "svg_css_attr_new");
    auto *attr = static_cast<svg_css_attr *>(taken);
    auto *value = static_cast<char *>(memcpy(attr + 1, attrs->text, size));
    *attr = {nid, value, node->css_attrs};
    node->css_attrs = attr;
    svg_note(p, 5, "\t\t\t[%a=\"%a\"]\n", local, attrs->text);
  }
}

void svg_css_apply_rules(svg_parser *p, svg_e_node *node) {
  if (p->log_level < 6) tell_facts(p, node); // else the log shows what the engine asks
  ort_vtr *rules = css_get_rules(p->css, node, node->head.id);
  size_t count = ort_vtr_count(rules);
  if (count == 0) return;
  svg_note(p, 5, "\t\t\tProcess %d CSS rules...\n", static_cast<int>(count));
  svg_source source = p->source;
  for (size_t i = 0; i < count; ++i) {
    const css_rule *rule = ort_item<css_rule *>(rules, i);
    if (p->log_level >= 5) css_logg_sel(p->css, rule->selector);
    const char *selector = p->observer ? css_get_selector_text(p->css, rule->selector) : nullptr;
    const css_decl_block *block = rule->decls;
    p->source = block->important ? SVG_SOURCE_IMPORTANT : SVG_SOURCE_SHEET;
    for (int32_t k = 0; k < block->decl_count; ++k) {
      auto *value = static_cast<svg_a_node *>(block->decl_values[k]);
      auto row = static_cast<size_t>(value->row);
      if (ort_getbit(p->props_set, row)) continue;
      svg_collect_value(p, value, selector);
      ort_setbit(p->props_set, row);
      svg_note(p, 5, "\t\t\t[add css property %a=\"%a%s\"]\n", svg_attr_table[row].name,
               block->decl_texts[k], log_important(block->important));
    }
  }
  p->source = source;
}

// What the engine would ask for otherwise, name by name.
static void tell_facts(svg_parser *p, svg_e_node *node) {
  css_set_subject(p->css, node, node->id_nid, node->class_nids, node->class_num);
  for (const svg_css_attr *attr = node->css_attrs; attr; attr = attr->next) {
    css_add_subject_attr(p->css, attr->nid, attr->value);
  }
}

// ---- Selectors that the host asks about --------------------------------------------------------

struct svg_query {
  svg_query *next; // in the order in which they were set, which is that of their numbers
  svg_selector_fn callback;
  void *user;
  char *selector;
};

void svg_set_selector(svg_parser *p, const char *selector, svg_selector_fn callback, void *user) {
  check_selector(p, selector);
  auto *query = ort_new<svg_query>(p->core, __func__);
  svg_query **end = &p->queries;
  while (*end) end = &(*end)->next;
  *end = query;
  query->selector = ort_strdup(p->core, selector);
  query->callback = callback;
  query->user = user;
}

// The engine that will answer is made while the drawing is read.
static void check_selector(svg_parser *p, const char *selector) {
  css_parser *css = css_parser_new(p->core, p, nullptr, &svg_css_callbacks, SVG_ELEM_COUNT - 1);
  const bool good = ort_protected(p->core, [=] {
    css_parser_init(css);
    css_add_query(css, selector);
  });
  css_parser_delete(css);
  if (!good) ort_rethrow(p->core);
}

void svg_css_add_queries(svg_parser *p) {
  for (const svg_query *query = p->queries; query; query = query->next) {
    if (!query->selector) continue; // svg_set_selector ran out of memory
    svg_css_create_parser(p);
    css_add_query(p->css, query->selector);
  }
}

void svg_css_answer_queries(svg_parser *p, const svg_e_node *node) {
  size_t number = 0;
  for (const svg_query *query = p->queries; query; query = query->next)
    if (query->selector && css_matches_query(p->css, number++)) query->callback(query->user, node);
}

void svg_delete_queries(svg_parser *p) {
  while (svg_query *query = p->queries) {
    p->queries = query->next;
    ort_free(p->core, query->selector);
    ort_free(p->core, query);
  }
}

// ---- Callbacks ---------------------------------------------------------------------------------

static int16_t svg_css_cb_get_elem_nid(void *, const char *name) {
  return static_cast<int16_t>(svg_find_element(name));
}

// An incomplete "data:" IRI, which elsewhere ends the parse, only makes the declaration void.
// Whatever else is raised here is not the value's fault and is passed on.
static void *svg_css_cb_get_prop(void *user, const char *name, const char *value, bool important) {
  auto *p = static_cast<svg_parser *>(user);
  int32_t row = svg_find_prop(name);
  if (row < 0) {
    svg_note(p, 5, "\t\t\t[property \"%a\" unsupported]\n", name);
    svg_skip_property_name(p, SVG_SKIPPED_PROPERTY, name);
    return nullptr;
  }
  if (css_is_rule_empty(p->css)) svg_begin_alphas(p);
  svg_a_node *node = nullptr;
  bool done = ort_protected(p->core, [&] {
    p->source = important ? SVG_SOURCE_IMPORTANT : SVG_SOURCE_SHEET;
    svg_note(p, 5, "\t\t\t[%a=\"%a%s\"]\n", name, value, log_important(important));
    if (row == SVG_PROP_font) {
      p->css_mode = 1;
      svg_split_font(p, value, add_longhand);
    } else {
      p->prop_name = name;
      node = parse_declaration(p, row, value);
    }
  });
  p->source = SVG_SOURCE_ATTRIBUTE;
  p->css_mode = 0;
  p->prop_name = nullptr;
  if (!done && !svg_is_value_error(ort_error_code(p->core))) ort_rethrow(p->core);
  return node;
}

static const char *svg_css_cb_get_attr_value(void *user, void *node, int16_t attr_nid) {
  auto *p = static_cast<svg_parser *>(user);
  auto *element = static_cast<svg_e_node *>(node);
  const svg_css_attr *attr = element ? element->css_attrs : nullptr;
  for (; attr; attr = attr->next) {
    svg_note(p, 6, "\t\t\t\tattribute=%d vs %d\n", attr->nid, attr_nid);
    if (attr->nid == attr_nid) return attr->value;
  }
  return nullptr;
}

static bool svg_css_cb_check_class(void *user, void *node, int16_t class_nid) {
  auto *p = static_cast<svg_parser *>(user);
  auto *element = static_cast<svg_e_node *>(node);
  if (!element) return false;
  for (int32_t i = 0; i < element->class_num; ++i) {
    svg_note(p, 6, "\t\t\t\t[%d/%d]: class=%d vs %d\n", i + 1, element->class_num, class_nid,
             element->class_nids[i]);
    if (element->class_nids[i] == class_nid) return true;
  }
  return false;
}

static bool svg_css_cb_check_id(void *, void *node, int16_t id_nid) {
  auto *element = static_cast<svg_e_node *>(node);
  return element != nullptr && element->id_nid == id_nid;
}

static void *svg_css_cb_get_ancest(void *user, void *node, int16_t elem_nid) {
  return svg_css_find_parent(static_cast<svg_parser *>(user), static_cast<svg_e_node *>(node),
                             elem_nid);
}

static void *svg_css_cb_get_parent(void *user, void *node, int16_t elem_nid) {
  return svg_css_cb_get_ancest(user, node, elem_nid);
}

static void *svg_css_cb_get_siblng(void *user, void *node, int16_t elem_nid) {
  return svg_css_find_sibling(static_cast<svg_parser *>(user), static_cast<svg_e_node *>(node),
                              elem_nid);
}

static void svg_css_cb_at_fontface(void *) {} // fonts of style sheets are not loaded

static void svg_css_cb_at_import(void *user, const char *href) {
  const auto *p = static_cast<svg_parser *>(user);
  if (p->sheet_observer) p->sheet_observer(p->sheet_observer_user, href);
}

// The value belongs to the parser and may be shared by many elements. Null when there is none. A
// style sheet has no line of the document.
static svg_a_node *parse_declaration(svg_parser *p, int32_t row, const char *text) {
  p->css_mode = 1;
  svg_parse_attr(p, row, text, 0);
  svg_a_node *node = p->new_value;
  if (node) {
    char given[SVG_ALPHA_SIZE];
    const char *opacity = svg_take_alpha(p, node, given);
    node->important = p->source == SVG_SOURCE_IMPORTANT;
    svg_keep_prop(p, node);
    if (opacity) add_longhand(p, opacity, given);
  }
  return node;
}

static void add_longhand(svg_parser *p, const char *name, const char *text) {
  p->prop_name = name;
  svg_a_node *node = parse_declaration(p, svg_find_prop(name), text);
  if (node) css_add_value(p->css, name, node);
}

static const svg_pe_entry *open_element(const svg_tree *p, int32_t level) {
  auto i = static_cast<size_t>(level);
  return i < ort_vtr_count(p->elem_stack) ? &ort_item<svg_pe_entry>(p->elem_stack, i) : nullptr;
}

static svg_e_node *log_found(const svg_host *p, const char *what, svg_e_node *node) {
  svg_note(p, 6, "\t\t\t\t%s %a (%p) found \n", what, svg_elem_name(node->head.id),
           static_cast<void *>(node));
  return node;
}
