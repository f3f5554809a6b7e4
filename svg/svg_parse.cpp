// svg_parse.cpp: reads one document. The driver of the two passes.
//
// Called once per parser by the host: first the style-sheet pass, then the sheets, then the main
// pass that builds the tree, then the links that still wait. Raises what the passes raise, and
// SVG_E_NOT_SVG when no svg element was built.
#include <ctime>

#include "svg/tree/svg_document.h"
#include "svg/values/svg_links.h"
#include "svg/xml/svg_xml.h"

static void timed_pass(svg_parser *p, ort_file *file, ort_gz **gz, int32_t css_pass,
                       int32_t *encoding);
static void check_is_svg(svg_parser *p);
static void resolve_links(svg_parser *p);
static void log_fonts(svg_parser *p);
template <class T> static void store(T *out, T value);

svg_e_node *svg_parse(svg_parser *p, ort_file *file, ort_gz **gz, double *viewport_width,
                      double *viewport_height, double *viewbox_width, double *viewbox_height,
                      const unsigned char **elems_used, int32_t *has_text) {
  if (p->chardata || p->root)
    ort_internal_error(p->core, __func__, __LINE__); // a parser serves one document
  svg_make_work_space(p);
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

static void check_is_svg(svg_parser *p) {
  const svg_node *outermost = p->root->first_child;
  if (!outermost || outermost->id != SVG_ELEM_svg) ort_error(p->core, SVG_E_NOT_SVG, p->filename);
}

static void resolve_links(svg_parser *p) {
  ort_vtr_sort_c(p->hrefs, svg_href_compare);
  svg_drop_resolved_links(p);
  const bool listed = p->log_level >= 5;
  if (!listed && !p->unres_links) return;
  if (listed) ort_logg(p->core, "\t\tList of all ids and names:\n");
  for (size_t i = 0; i < ort_vtr_count(p->hrefs); ++i) {
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
  for (size_t i = 0; i < ort_vtr_count(p->fonts); ++i) {
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
  if (out) *out = value;
}
