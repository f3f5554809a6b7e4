// svg_lifecycle.cpp: creation and deletion of a parser, its settings and its plain answers.
//
// The first and the last call of a host. Only svg_parser_new raises.
#include "svg/parser/svg_parser.h"
#include "svg/tree/svg_document.h"
#include "svg/tree/svg_elements.h"
#include "svg/values/svg_types.h"
#include "svg/xml/svg_expat.h"
#include "svg/xml/svg_recording.h"

svg_parser *svg_parser_new(ort_core *core, int32_t font_number, const char *filename,
                           const css_context *context, const char *language,
                           const char *const *nottol_elements, int32_t nottol_elements_num,
                           const char *const *nottol_props, int32_t nottol_props_num,
                           const svg_attr_def **attr_table_out,
                           const svg_elem_def **elem_table_out) {
  if (attr_table_out) *attr_table_out = svg_attr_table;
  if (elem_table_out) *elem_table_out = svg_elem_table;
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
  p->log_level = ort_logg_getlevel(core, ORT_LOG_READER);
  svg_set_limits(p, nullptr);
  return p;
}

void svg_set_limits(svg_parser *p, const svg_limits *limits) {
  const svg_limits wanted = limits ? *limits : svg_limits{};
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

void svg_set_skip_observer(svg_parser *p, svg_skip_observer_fn observer, void *user) {
  p->skip_observer = observer;
  p->skip_observer_user = user;
}

void svg_set_sheet_observer(svg_parser *p, svg_sheet_observer_fn observer, void *user) {
  p->sheet_observer = observer;
  p->sheet_observer_user = user;
}

void svg_set_observer(svg_parser *p, svg_observer_fn observer, void *user) {
  p->observer = observer;
  p->observer_user = user;
}

void svg_set_leniency(svg_parser *p, uint32_t flags) { p->leniency = flags & SVG_LENIENT_ALL; }

void svg_set_leniency_observer(svg_parser *p, svg_leniency_observer_fn observer, void *user) {
  p->leniency_observer = observer;
  p->leniency_observer_user = user;
}

const char *svg_get_title_text(const svg_parser *p) { return p->title; }

const char *svg_get_desc_text(const svg_parser *p) { return p->desc; }

const char *svg_get_metadata(const svg_parser *p) { return p->metadata; }

void svg_get_pass_times(const svg_parser *p, double *style_sheet_pass, double *main_pass) {
  *style_sheet_pass = p->pass_seconds[0];
  *main_pass = p->pass_seconds[1];
}

void svg_parser_delete(svg_parser *p) {
  if (!p) return;
  ort_core *core = p->core;
  svg_delete_document(p);
  svg_expat_delete(p);
  svg_recording_delete(p);
  ort_free(core, p);
}
