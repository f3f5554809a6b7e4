// svg_lifecycle.cpp: creation and deletion of a parser, its settings and its plain answers.
//
// The first and the last call of a host. svg_clear_document also serves a restarted main pass. Only
// svg_parser_new raises.
#include <initializer_list>

#include "svg/names/svg_index.h"
#include "svg/names/svg_schema.h"
#include "svg/style/svg_style.h"
#include "svg/tree/svg_tree.h"
#include "svg/xml/svg_xml.h"

static void empty(ort_vtr *vector);
static void delete_attribute_values(ort_core *core, ort_vtr *values);
static void delete_values(ort_core *core, ort_vtr *values);
static void delete_blocks(ort_core *core, ort_vtr *blocks);

svg_parser *svg_parser_new(ort_core *core, int32_t font_number, const char *filename,
                           const css_context *context, const char *language,
                           const char *const *nottol_elements, int32_t nottol_elements_num,
                           const char *const *nottol_props, int32_t nottol_props_num,
                           const svg_attr_def **attr_table_out,
                           const svg_elem_def **elem_table_out) {
  if (attr_table_out != nullptr) *attr_table_out = svg_attr_table;
  if (elem_table_out != nullptr) *elem_table_out = svg_elem_table;
  auto *p = static_cast<svg_parser *>(ort_malloc(core, sizeof(svg_parser), "svg_parser_new"));
  *p = svg_parser{};
  p->core = core;
  p->font_number = font_number;
  p->filename = filename;
  p->css_context_ = context;
  p->language = language;
  p->nottol_elements = nottol_elements;
  p->nottol_elements_num = nottol_elements_num;
  p->nottol_props = nottol_props;
  p->nottol_props_num = nottol_props_num;
  p->value_ok = 1;
  p->savelem = SVG_NO_ELEMENT;
  p->skip_level = SVG_NO_SKIP;
  p->log_level = ort_logg_getlevel(core, ORT_LOG_READER);
  p->value_link = -1;
  p->block_size = SVG_BLOCK_SIZE;
  svg_set_limits(p, nullptr);
  return p;
}

void svg_set_limits(svg_parser *p, const svg_limits *limits) {
  const svg_limits wanted = limits != nullptr ? *limits : svg_limits{};
  p->limits.nodes = wanted.nodes != 0 ? wanted.nodes : ORT_LIMIT_NODES;
  p->limits.depth = wanted.depth != 0 ? wanted.depth : ORT_LIMIT_DEPTH;
  p->limits.entity_factor =
      wanted.entity_factor != 0 ? wanted.entity_factor : ORT_LIMIT_ENTITY_FACTOR;
  p->limits.entity_start = wanted.entity_start != 0 ? wanted.entity_start : ORT_LIMIT_ENTITY_START;
  p->limits.recorded = wanted.recorded != 0 ? wanted.recorded : ORT_LIMIT_RECORDED;
  p->limits.expanded = wanted.expanded != 0 ? wanted.expanded : ORT_LIMIT_EXPANDED;
}

void svg_get_limits(const svg_parser *p, svg_limits *limits) { *limits = p->limits; }

ort_core *svg_get_core(const svg_parser *p) { return p->core; }

void svg_set_element_observer(svg_parser *p, svg_element_observer_fn observer, void *user) {
  p->element_observer = observer;
  p->element_observer_user = user;
}

void svg_set_observer(svg_parser *p, svg_observer_fn observer, void *user) {
  p->observer = observer;
  p->observer_user = user;
}

const char *svg_get_title_text(const svg_parser *p) { return p->title; }

const char *svg_get_desc_text(const svg_parser *p) { return p->desc; }

const char *svg_get_metadata(const svg_parser *p) { return p->metadata; }

void svg_get_pass_times(const svg_parser *p, double *style_sheet_pass, double *main_pass) {
  *style_sheet_pass = p->pass_seconds[0];
  *main_pass = p->pass_seconds[1];
}

void svg_parser_delete(svg_parser *p) {
  if (p == nullptr) return;
  ort_core *core = p->core;
  svg_clear_document(p);
  svg_delete_work_space(p);
  svg_expat_delete(p);
  svg_recording_delete(p);
  ort_bs_delete(p->style_sheet);
  for (char *text : {p->language_primary, p->pi_copy, p->font_copy}) ort_free(core, text);
  for (ort_vtr *vector : {p->hrefs, p->prop_values, p->fonts}) ort_vtr_delete(vector);
  ort_free(core, p);
}

void svg_delete_work_space(svg_parser *p) {
  for (ort_bs **text :
       {&p->chardata, &p->tok_buf, &p->name_buf, &p->style_name_buf, &p->style_value_buf}) {
    ort_bs_delete(*text);
    *text = nullptr;
  }
  for (ort_vtr **vector :
       {&p->nsp_stack, &p->css_svg_stack, &p->class_nids, &p->pi_items, &p->ext_style_sheets,
        &p->elem_stack, &p->written_attrs, &p->open_elements, &p->an_values, &p->pada_segments}) {
    ort_vtr_delete(*vector);
    *vector = nullptr;
  }
  for (unsigned char **bits : {&p->attrs_set, &p->props_set}) {
    ort_free(p->core, *bits);
    *bits = nullptr;
  }
  svg_index_delete(p->core, &p->nsp_index);
}

// The containers stay, empty. The CSS engine goes before the values that its rules name, the tree
// before the property values that its elements share: so every value is destroyed exactly once.
void svg_clear_document(svg_parser *p) {
  ort_core *core = p->core;
  for (ort_bs **text : {&p->savelem_text, &p->xmlns_text}) {
    ort_bs_delete(*text);
    *text = nullptr;
  }
  for (char **text : {&p->title, &p->desc, &p->metadata}) {
    ort_free(core, *text);
    *text = nullptr;
  }
  empty(p->nsp_stack);
  svg_index_delete(core, &p->nsp_index);
  css_parser_delete(p->css);
  p->css = nullptr;
  ort_free(core, p->elems_used);
  p->elems_used = nullptr;
  empty(p->elem_stack);
  empty(p->open_elements);
  delete_attribute_values(core, p->an_values);
  svg_clear_links(p);
  svg_del_e_node(core, p->root);
  p->root = nullptr;
  delete_values(core, p->prop_values);
  svg_a_node_delete(core, p->new_value);
  p->new_value = nullptr;
  ort_free(core, p->font_face);
  p->font_face = nullptr;
  delete_blocks(core, p->fonts);

  p->level = p->log_indent = p->log_tag_open = p->text_depth = p->chardata_nonblank = p->has_text =
      0;
  p->skip_level = SVG_NO_SKIP;
  p->savelem = SVG_NO_ELEMENT;
  p->savelem_tag_open = 0;
  p->viewport_width = p->viewport_height = p->viewbox_width = p->viewbox_height = 0;
  p->cur_enode = nullptr;
  p->cur_href = p->elem_name = p->attr_name = nullptr;
  p->last_tnode = nullptr;
  p->nodes = 0;
}

static void empty(ort_vtr *vector) {
  if (vector != nullptr) ort_vtr_resize(vector, 0);
}

// The values of attributes still collected for an element that was never finished. Those of
// properties belong to prop_values.
static void delete_attribute_values(ort_core *core, ort_vtr *values) {
  for (size_t i = 0; i < ort_vtr_count(values); i++)
    if (svg_a_node *value = ort_item<svg_a_node *>(values, i); !svg_is_property(value->row))
      svg_a_node_delete(core, value);
  empty(values);
}

static void delete_values(ort_core *core, ort_vtr *values) {
  for (size_t i = 0; i < ort_vtr_count(values); i++)
    svg_a_node_delete(core, ort_item<svg_a_node *>(values, i));
  empty(values);
}

// Items that are plain owned blocks.
static void delete_blocks(ort_core *core, ort_vtr *blocks) {
  for (size_t i = 0; i < ort_vtr_count(blocks); i++) ort_free(core, ort_item<void *>(blocks, i));
  empty(blocks);
}
