// svg_values.cpp: constructors of values that are not lists: keywords, numbers, texts, viewBox,
// preserveAspectRatio, clip; and those of class, id and name, which work on the element instead.
//
// Called by svg_parse_attr through the rows of svg_attr_table, with a zeroed node. Bad text is
// raised with svg_err_value; what follows a complete value is ignored. Raises for lack of memory.
#include <cstring>

#include "svg/values/svg_errors.h"
#include "svg/values/svg_leniency.h"
#include "svg/values/svg_links.h"
#include "svg/values/svg_record.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

// ---- Keywords and numbers -----------------------------------------------------------------------

void svg_ctor_an_keyword(svg_parser *p, svg_a_node *node) {
  svg_ntok_nonum(p);
  svg_record<svg_an_keyword>(node)->key = svg_ctok_as_key(p);
}

// Of the properties only stop-opacity: its record has no place for "inherit".
void svg_ctor_an_number(svg_parser *p, svg_a_node *node) {
  if (svg_ntok(p) == SVG_TOK_KEYWORD && svg_is_lenient(p, SVG_LENIENT_FALLBACKS))
    p->new_value = nullptr;
  else
    svg_record<svg_an_number>(node)->value = svg_ctok_as_num(p);
}

void svg_ctor_an_unum(svg_parser *p, svg_a_node *node) {
  svg_record<svg_an_unum>(node)->value = svg_get_unum(p, &node->unit);
}

void svg_ctor_an_key_number(svg_parser *p, svg_a_node *node) {
  auto *record = svg_record<svg_an_key_number>(node);
  if (svg_ntok(p) == SVG_TOK_KEYWORD)
    record->key = p->tok_key;
  else
    record->value = svg_ctok_as_num(p);
}

void svg_ctor_an_key_unum(svg_parser *p, svg_a_node *node) {
  auto *record = svg_record<svg_an_key_unum>(node);
  if (svg_ntok(p) == SVG_TOK_KEYWORD)
    record->key = p->tok_key;
  else
    record->value = svg_ctok_as_unum(p, &node->unit);
}

// The keywords stand in any order and may repeat; the last alignment counts.
void svg_ctor_an_preserveAspectRatio(svg_parser *p, svg_a_node *node) {
  auto *record = svg_record<svg_an_aspect>(node);
  record->meet = 1;
  record->align = SVG_KW_xMinYMin;
  while (svg_ntok_nonum(p) != SVG_TOK_END) {
    switch (const int32_t key = svg_ctok_as_key(p)) {
    case SVG_KW_defer: record->defer = 1; break;
    case SVG_KW_meet: break;
    case SVG_KW_slice: record->meet = 0; break;
    default: record->align = key; break;
    }
  }
}

void svg_ctor_an_viewBox(svg_parser *p, svg_a_node *node) {
  auto *record = svg_record<svg_an_viewbox>(node);
  record->min_x = svg_get_num(p);
  record->min_y = svg_get_sep_num(p);
  record->width = svg_get_sep_num(p);
  record->height = svg_get_sep_num(p);
}

void svg_ctor_an_clip(svg_parser *p, svg_a_node *node) {
  auto *record = svg_record<svg_an_clip>(node);
  svg_ntok_nonum(p);
  record->key = svg_ctok_as_key(p);
  if (record->key != SVG_KW_rect) return;
  if (svg_ntok(p) != SVG_TOK_LPAREN) svg_err_value(p);
  record->rect[0] = svg_get_num(p);
  for (int i = 1; i < 4; ++i) record->rect[i] = svg_get_sep_num(p);
  if (svg_ntok(p) != SVG_TOK_RPAREN) svg_err_value(p);
}

// ---- Texts --------------------------------------------------------------------------------------

// The value as written, with white space and quotes.
void svg_ctor_an_string(svg_parser *p, svg_a_node *node) {
  svg_scan_reset(p);
  svg_record<svg_an_string>(node)->text = ort_strdup(p->core, p->scan_pos);
}

void svg_dtor_an_string(ort_core *core, svg_a_node *node) {
  ort_free(core, svg_record<svg_an_string>(node)->text);
}

// ---- Values that go to the element --------------------------------------------------------------

constexpr ort_item_desc class_nid_ced = {sizeof(int16_t), nullptr, nullptr};

// Keeps the classes that some selector names.
void svg_ctor_an_class(svg_parser *p, svg_a_node *) {
  if (!p->css) return;
  if (!p->class_nids) p->class_nids = ort_vtr_new(p->core, &class_nid_ced, 4, 0);
  ort_vtr_shorten(p->class_nids, 0);
  while (svg_ntok_nonum(p) != SVG_TOK_END) {
    const int16_t nid = css_get_class_nid(p->css, p->tok_text);
    svg_note(p, 6, "\t\t\t[class=\"%a\", id=%d]\n", p->tok_text, static_cast<int>(nid));
    if (nid != CSS_NO_NID) ort_push(p->class_nids, nid);
  }
  const size_t count = ort_vtr_count(p->class_nids);
  if (count == 0) return;
  const size_t size = count * sizeof(int16_t);
  void *nids = ort_arena_take(p->core, &p->kept, size, "svg_ctor_an_class");
  memcpy(nids, ort_vtr_at(p->class_nids, 0), size);
  p->cur_enode->class_nids = static_cast<int16_t *>(nids);
  p->cur_enode->class_num = static_cast<int32_t>(count);
}

void svg_ctor_an_id(svg_parser *p, svg_a_node *) {
  const char *id = p->scan_start;
  svg_add_href(p, id, p->cur_enode);
  if (!p->css) return;
  p->cur_enode->id_nid = css_get_id_nid(p->css, id);
  if (p->cur_enode->id_nid != CSS_NO_NID) svg_note(p, 6, "\t\t\t[selector #%a found]\n", id);
}

void svg_ctor_an_name(svg_parser *p, svg_a_node *) { svg_add_href(p, p->scan_start, p->cur_enode); }
