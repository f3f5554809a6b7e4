// svg_parse.cpp: reads one document. The driver of the two passes.
//
// Called once per parser by the host: first the style-sheet pass, then the sheets, then the main
// pass that builds the tree, then the links that still wait. Raises what the passes raise, and
// SVG_E_NOT_SVG when no svg element was built.
#include <ctime>
#include <initializer_list>

#include "svg/names/svg_schema.h"
#include "svg/style/svg_style.h"
#include "svg/tree/svg_tree.h"
#include "svg/values/svg_values.h"
#include "svg/xml/svg_xml.h"

static void make_containers(svg_parser *p);
static void timed_pass(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass,
                       int32_t *encoding);
static void check_is_svg(svg_parser *p);
static void resolve_links(svg_parser *p);
static void log_fonts(svg_parser *p);
template <class T> static void store(T *out, T value);

static void svg_an_ptr_reclaim(void *item) { *static_cast<svg_a_node **>(item) = nullptr; }

constexpr ort_item_desc ptr_ced = {sizeof(void *), nullptr, nullptr};
constexpr ort_item_desc bool_ced = {sizeof(int32_t), nullptr, nullptr};
constexpr ort_item_desc nid_ced = {sizeof(int16_t), nullptr, nullptr};
constexpr ort_item_desc an_ptr_ced = {sizeof(svg_a_node *), svg_an_ptr_reclaim, nullptr};
constexpr ort_item_desc open_element_ced = {sizeof(svg_open_element), nullptr, nullptr};

svg_e_node *svg_parse(svg_parser *p, ort_file *file, ort_gz **gz, double *viewport_width,
                      double *viewport_height, double *viewbox_width, double *viewbox_height,
                      const unsigned char **elems_used, int32_t *has_text) {
  if (p->chardata != nullptr || p->root != nullptr)
    ort_internal_error(p->core, __func__, __LINE__); // a parser serves one document
  svg_make_work_space(p);
  make_containers(p);
  int32_t encoding = 0;
  timed_pass(p, file, gz, 1, &encoding);
  svg_prepare_document(p);
  timed_pass(p, file, gz, 0, &encoding);
  check_is_svg(p);
  resolve_links(p);
  log_fonts(p);
  svg_delete_work_space(p);
  store(viewport_width, p->viewport_width);
  store(viewport_height, p->viewport_height);
  store(viewbox_width, p->viewbox_width);
  store(viewbox_height, p->viewbox_height);
  store(elems_used, static_cast<const unsigned char *>(p->elems_used));
  store(has_text, p->has_text);
  return svg_as_element(p->root->first_child);
}

static void make_containers(svg_parser *p) {
  p->prop_values = ort_vtr_new(p->core, &ptr_ced, 8, 0);
  p->hrefs = ort_vtr_new(p->core, &href_ced, 4, 0);
  p->fonts = ort_vtr_new(p->core, &ptr_ced, 0, 0);
}

static void timed_pass(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass,
                       int32_t *encoding) {
  timespec begin = {};
  timespec end = {};
  clock_gettime(CLOCK_MONOTONIC, &begin);
  svg_parse_xml(p, file, gz, css_pass, encoding);
  clock_gettime(CLOCK_MONOTONIC, &end);
  p->pass_seconds[css_pass ? 0 : 1] = static_cast<double>(end.tv_sec - begin.tv_sec) +
                                      static_cast<double>(end.tv_nsec - begin.tv_nsec) * 1e-9;
}

void svg_make_work_space(svg_parser *p) {
  ort_core *core = p->core;
  for (ort_bs **text :
       {&p->chardata, &p->tok_buf, &p->name_buf, &p->style_name_buf, &p->style_value_buf})
    *text = ort_bs_new(core);
  p->nsp_stack = ort_vtr_new(core, &nsp_ced, 4, 0);
  p->css_svg_stack = ort_vtr_new(core, &bool_ced, 4, 0);
  p->class_nids = ort_vtr_new(core, &nid_ced, 0, 0);
  p->pi_items = ort_vtr_new(core, &ptr_ced, 0, 0);
  p->ext_style_sheets = ort_vtr_new(core, &ext_sheet_ced, 0, 0);
  p->elem_stack = ort_vtr_new(core, &pe_ced, 8, 0);
  p->open_elements = ort_vtr_new(core, &open_element_ced, 8, 0);
  p->an_values = ort_vtr_new(core, &an_ptr_ced, 8, 0);
  int32_t longest_list = 0;
  for (const svg_elem_def &element : svg_elem_table)
    longest_list = element.esa_count > longest_list ? element.esa_count : longest_list;
  p->attrs_set = ort_bitarr_new(core, static_cast<size_t>(longest_list));
  p->props_set = ort_bitarr_new(core, SVG_ATTR_COUNT);
  ort_push<int32_t>(p->css_svg_stack, 1);
}

// External sheets stand before the internal one, so that the document's own rules win over them.
void svg_prepare_document(svg_parser *p) {
  for (size_t i = 0; i < ort_vtr_count(p->ext_style_sheets); i++) {
    svg_note(p, 3, "\tParsing external style sheet #%d...\n", static_cast<int>(i + 1));
    svg_css_create_parser(p);
    const auto &sheet = ort_item<svg_ext_sheet>(p->ext_style_sheets, i);
    css_parse_sheet(p->css, sheet.text, sheet.href);
  }
  if (p->style_sheet != nullptr) {
    svg_note(p, 3, "\tParsing internal style sheet...\n");
    svg_css_create_parser(p);
    css_parse(p->css, ort_bs_text(p->style_sheet));
  }
  p->root = svg_e_node_new(p->core, SVG_ID_ROOT);
  auto *entry = static_cast<svg_pe_entry *>(ort_vtr_push(p->elem_stack));
  entry->link = &p->root->first_child;
  ort_push(p->open_elements, svg_open_element{p->root, nullptr});
}

static void check_is_svg(svg_parser *p) {
  const svg_node *outermost = p->root->first_child;
  if (outermost == nullptr || outermost->id != SVG_ELEM_svg)
    ort_error(p->core, SVG_E_NOT_SVG, p->filename);
}

static void resolve_links(svg_parser *p) {
  ort_vtr_sort_c(p->hrefs, svg_href_compare);
  svg_drop_resolved_links(p);
  const bool listed = p->log_level >= 5;
  if (!listed && p->unres_links == nullptr) return;
  if (listed) ort_logg(p->core, "\t\tList of all ids and names:\n");
  for (size_t i = 0; i < ort_vtr_count(p->hrefs); i++) {
    const auto &href = ort_item<svg_href>(p->hrefs, i);
    if (listed) ort_logg(p->core, "\t\t%p: %a\n", static_cast<void *>(href.target), href.id);
    svg_resolve_href(p, href.id, href.target);
  }
  svg_drop_resolved_links(p);
  if (listed) ort_logg(p->core, "\n");
}

static void log_fonts(svg_parser *p) {
  if (p->log_level < 3) return;
  ort_logg(p->core, "\t\tList of all SVG fonts:\n");
  for (size_t i = 0; i < ort_vtr_count(p->fonts); i++) {
    const auto *font = ort_item<svg_font *>(p->fonts, i);
    ort_logg(p->core, "\t\t[%d] %p: \"", static_cast<int>(i), static_cast<void *>(font->node));
    ort_bs_clear(p->name_buf);
    svg_create_fontname(p, font, p->name_buf);
    ort_logg_unitext(p->core, ort_bs_text(p->name_buf), 0, 0, 0);
    ort_logg(p->core, "\"\n");
  }
  ort_logg(p->core, "\n");
}

template <class T> static void store(T *out, T value) {
  if (out != nullptr) *out = value;
}
