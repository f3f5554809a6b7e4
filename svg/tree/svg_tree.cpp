// svg_tree.cpp: the nodes of the document tree, and the construction of an element from its start
// tag.
//
// Called by svg_content.cpp while the main pass runs, and for deletion. An element is linked into
// the tree before its values are read, so that an error leaves a tree that can be freed. Raises
// ORT_E_LIMIT, SVG_E_PROPERTY_REFUSED and fatal value errors; bad values are warnings of
// svg_parse_attr.
#include "svg/tree/svg_tree.h"

#include <cstring>

#include "svg/names/svg_namespace.h"
#include "svg/names/svg_schema.h"
#include "svg/style/svg_select.h"
#include "svg/style/svg_style.h"
#include "svg/tree/svg_elements.h"
#include "svg/values/svg_attr.h"
#include "svg/values/svg_css_color.h"
#include "svg/values/svg_leniency.h"
#include "svg/values/svg_links.h"
#include "svg/values/svg_types.h"

static void count_node(svg_parser *p);
static void link_child(svg_tree *p, svg_node *node);
static uint16_t initial_flags(int id);
static bool add_attributes(svg_parser *p, int id, const svg_given_attr *attrs);
static bool add_plain_href(svg_parser *p, int id, const svg_given_attr *attrs, const char *text);
static void add_style(svg_parser *p, const svg_given_attr *attrs);
static void add_defaults(svg_parser *p, const svg_elem_def *row);
static void store_values(svg_parser *p, svg_e_node *node);
static void sort_values(svg_a_node *const *begin, svg_a_node *const *end, svg_a_node **to);
static void pass_bbox_need(svg_parser *p, svg_e_node *node, const svg_a_node *value);
static void delete_values(ort_core *core, svg_e_node *element);

constexpr uint32_t PRIORITIES = 6; // of values, from 1

namespace {

// Hosts know the layout of an element, which has no field for this.
struct element_block {
  svg_e_node node;
  svg_e_node *parent; // null for the outermost
};

} // namespace

svg_e_node *svg_e_node_new(svg_parser *p, int id) {
  void *taken = ort_arena_take(p->core, &p->kept, sizeof(element_block), "svg_e_node_new");
  svg_e_node *node = &static_cast<element_block *>(taken)->node;
  node->head.id = static_cast<int16_t>(id);
  node->id_nid = CSS_NO_NID;
  return node;
}

svg_e_node *svg_get_parent(const svg_e_node *element) {
  return reinterpret_cast<const element_block *>(element)->parent;
}

void svg_add_e_node(svg_parser *p, int id, const svg_given_attr *attrs) {
  const svg_elem_def *row = &svg_elem_table[id];
  count_node(p);
  if (!p->elems_used) p->elems_used = ort_bitarr_new(p->core, SVG_ELEM_COUNT);
  ort_setbit(p->elems_used, static_cast<size_t>(id));

  svg_e_node *node = svg_e_node_new(p, id);
  node->level = p->level;
  node->prev = p->cur_enode;
  node->line = static_cast<uint32_t>(svg_xml_line(p));
  if (p->level > 1)
    reinterpret_cast<element_block *>(node)->parent = ort_top<svg_pe_entry>(p->elem_stack).node;
  node->head.flags = initial_flags(id);
  link_child(p, &node->head);
  p->cur_enode = node;
  ort_push(p->elem_stack, svg_pe_entry{node, &node->first_child, nullptr});

  memset(p->attrs_set, 0, sizeof p->attrs_set);
  memset(p->props_set, 0, sizeof p->props_set);
  if (row->beg_hook) memset(p->hook_slots, 0, row->slot_size);

  if (p->css && attrs->name) svg_css_collect_attrs(p, node, attrs);
  p->source = SVG_SOURCE_ATTRIBUTE;
  svg_begin_alphas(p);
  const bool styled = add_attributes(p, id, attrs);
  if (p->css) svg_css_apply_rules(p, node);
  if (styled) add_style(p, attrs);
  p->source = SVG_SOURCE_DEFAULT;
  add_defaults(p, row);
  p->source = SVG_SOURCE_ATTRIBUTE;
  if (row->beg_hook) row->beg_hook(p, node);
  store_values(p, node);
  if (p->cur_href && p->cur_href_awaited) svg_resolve_href(p, p->cur_href, node);
  p->cur_href = nullptr;
  svg_note(p, 6, "\n");

  ort_item<svg_pe_entry>(p->elem_stack, ort_vtr_count(p->elem_stack) - 2).last_child = node;
  svg_css_answer_queries(p, node);
}

static void count_node(svg_parser *p) {
  if (p->nodes >= p->limits.nodes)
    ort_error(p->core, ORT_E_LIMIT, "nodes",
              ort_errprintf(p->core, "%ld", static_cast<long>(p->limits.nodes)));
  ++p->nodes;
}

static void link_child(svg_tree *p, svg_node *node) {
  auto &parent = ort_top<svg_pe_entry>(p->elem_stack);
  *parent.link = node;
  parent.link = &node->next;
}

static uint16_t initial_flags(int id) {
  switch (id) {
  case SVG_ELEM_a: return SVG_EF_NEEDS_BBOX | SVG_EF_NEEDS_BBOX2;
  case SVG_ELEM_g: return SVG_EF_GROUP;
  case SVG_ELEM_marker: return SVG_EF_NEEDS_BBOX;
  case SVG_ELEM_text: return SVG_EF_TEXT;
  default: return 0;
  }
}

static bool is_style(const svg_name &name) {
  return name.attribute == SVG_ATTR_style && name.type == SVG_NS_SVG;
}

// Returns whether there is a style attribute.
static bool add_attributes(svg_parser *p, int id, const svg_given_attr *attrs) {
  const svg_elem_def *row = &svg_elem_table[id];
  bool styled = false;
  for (const svg_given_attr *attr = attrs; attr->name; ++attr) {
    const svg_name &name = *attr->name;
    const int index = svg_get_esa_index(id, name.attribute);
    styled |= is_style(name);
    if (index >= 0) {
      p->attr_name = row->esa_list[index].name;
      svg_add_attr(p, row, index, attr->text);
    } else if ((p->leniency & SVG_LENIENT_HREF) == 0 || ort_strcmp(name.text, "href") != 0 ||
               !add_plain_href(p, id, attrs, attr->text)) {
      svg_add_prop_row(p, name.property, name.local(), attr->text);
    }
  }
  return styled;
}

// A text is taken for xlink:href where the element has that and it is not given.
static bool add_plain_href(svg_parser *p, int id, const svg_given_attr *attrs, const char *text) {
  const int index = svg_find_esa(p, "xlink:href", id);
  if (index < 0) return false;
  for (const svg_given_attr *attr = attrs; attr->name; ++attr)
    if (svg_get_esa_index(id, attr->name->attribute) == index) return false;
  const size_t count = ort_vtr_count(p->an_values);
  p->attr_name = "href";
  svg_add_attr(p, &svg_elem_table[id], index, text);
  if (ort_vtr_count(p->an_values) > count)
    svg_tell_lenient(p, SVG_LENIENT_HREF, text, svg_xml_line(p));
  return true;
}

static void add_style(svg_parser *p, const svg_given_attr *attrs) {
  for (const svg_given_attr *attr = attrs; attr->name; ++attr)
    if (is_style(*attr->name)) svg_parse_style(p, attr->text);
}

static void add_defaults(svg_parser *p, const svg_elem_def *row) {
  for (int32_t i = 0; i < row->req_count; ++i) {
    const int16_t index = row->req_list[i];
    const svg_esa_entry &entry = row->esa_list[index];
    const char *text = svg_attr_table[entry.attr].default_text;
    if (!text || ort_getbit(p->attrs_set, static_cast<size_t>(index))) continue;
    p->attr_name = entry.name;
    svg_add_attr(p, row, index, text);
  }
}

static void store_values(svg_parser *p, svg_e_node *node) {
  const size_t count = ort_vtr_count(p->an_values);
  if (count == 0) return;
  auto *const *values = static_cast<svg_a_node **>(ort_vtr_at(p->an_values, 0));
  node->values = static_cast<svg_a_node **>(
      ort_arena_take(p->core, &p->kept, count * sizeof(svg_a_node *), "svg_add_e_node"));
  for (size_t i = 0; i < count; ++i) pass_bbox_need(p, node, values[i]);
  sort_values(values, values + count, node->values);
  node->values_num = static_cast<int32_t>(count);
  ort_vtr_shorten(p->an_values, 0);
}

// By priority; those of one priority stay in their order.
static void sort_values(svg_a_node *const *begin, svg_a_node *const *end, svg_a_node **to) {
  const auto priority_of = [](const svg_a_node *value) { return svg_attr_table[value->row].prio; };
  size_t places[PRIORITIES + 1] = {};
  for (auto value = begin; value < end; ++value) ++places[priority_of(*value)];
  for (size_t i = 1; i <= PRIORITIES; ++i) places[i] += places[i - 1];
  for (auto value = begin; value < end; ++value) to[places[priority_of(*value) - 1]++] = *value;
}

static void pass_bbox_need(svg_parser *p, svg_e_node *node, const svg_a_node *value) {
  const svg_iri *iri = nullptr;
  switch (value->row) {
  case SVG_ATTR_systemLanguage: node->head.flags |= SVG_EF_SYSLANG; return;
  case SVG_PROP_clip_path:
  case SVG_PROP_marker:
  case SVG_PROP_marker_end:
  case SVG_PROP_marker_mid:
  case SVG_PROP_marker_start:
  case SVG_PROP_mask: iri = &reinterpret_cast<const svg_an_iri *>(value)->iri; break;
  case SVG_PROP_fill:
  case SVG_PROP_stop_color:
  case SVG_PROP_stroke:
    if (value->kind == SVG_PAINT_IRI) iri = &reinterpret_cast<const svg_an_paint_iri *>(value)->iri;
    break;
  default: break;
  }
  if (iri && iri->kind == SVG_IRI_LINK && iri->ref.target)
    svg_set_elem_flag(p, node, iri->ref.target);
}

// The text follows the node, in its block.
void svg_add_t_node(svg_parser *p) {
  count_node(p);
  const bool skipped = p->level >= p->skip_level;
  const size_t length = skipped ? 0 : ort_bs_length(p->chardata);
  const size_t size = sizeof(svg_t_node) + length + 1;
  auto *node = static_cast<svg_t_node *>(ort_arena_take(p->core, &p->kept, size, "svg_add_t_node"));
  node->head.id = SVG_ID_TEXT;
  node->text = reinterpret_cast<char *>(node + 1);
  memcpy(node->text, ort_bs_text(p->chardata), length);
  link_child(p, &node->head);
  if (p->chardata_nonblank && p->text_depth > 0 && !skipped) p->last_tnode = node;
  p->chardata_nonblank = 0;
  if (p->log_level >= 6) {
    ort_logg(p->core, "\t\t\tdata[%d]%s=", static_cast<int>(ort_bs_length(p->chardata)),
             skipped ? "[skip]" : "");
    ort_logg_unitext(p->core, ort_bs_text(p->chardata), 0, 0, 1);
    ort_logg(p->core, "\n");
  }
}

// The elements whose children are being visited are a list, by first_child: depth costs no stack,
// and each node is visited once.
void svg_del_e_node(ort_core *core, svg_e_node *root) {
  if (!root) return;
  root->head.next = nullptr;
  svg_node *parents = nullptr;
  for (svg_node *node = &root->head; node;) {
    __builtin_prefetch(node->next);
    if (svg_e_node *element = svg_as_element(node)) {
      delete_values(core, element);
      if (svg_node *child = element->first_child) {
        element->first_child = parents;
        parents = node;
        node = child;
        continue;
      }
    }
    svg_node *next = node->next;
    while (!next && parents) {
      next = parents->next;
      parents = svg_as_element(parents)->first_child;
    }
    node = next;
  }
}

static void delete_values(ort_core *core, svg_e_node *element) {
  for (int32_t i = 0; i < element->values_num; ++i)
    if (!svg_is_property(element->values[i]->row)) // property values belong to prop_values
      svg_a_node_delete(core, element->values[i]);
}
