// svg_families.cpp: lists of font families (CSS 2.1, 15.3): names of one or more words, and
// keywords.
//
// svg_parse_attr calls the constructor. Bad text is raised with svg_err_value; raises for lack of
// memory.
#include "svg/values/svg_errors.h"
#include "svg/values/svg_record.h"
#include "svg/values/svg_scan.h"
#include "svg/values/svg_types.h"

static int32_t svg_get_family_name(svg_parser *p);
static int32_t count_families(svg_scanner *p);
static void log_families(const svg_host *p, const svg_an_key_name_list *list);
static void keep_inherit_only(svg_host *p, svg_an_key_name_list *list);

void svg_ctor_an_font_family(svg_parser *p, svg_a_node *node) {
  auto *list = svg_record<svg_an_key_name_list>(node);
  const int32_t count = count_families(p);
  svg_note(p, 5, "\t\t\t[%d font families detected]\n", count);
  const auto size = static_cast<size_t>(count);
  list->keys = static_cast<int32_t *>(
      ort_malloc(p->core, size * sizeof(int32_t), "svg_ctor_an_font_family"));
  list->names = ort_new_array<char *>(p->core, size, "svg_ctor_an_font_family");
  list->count = count;

  svg_scan_reset(p);
  svg_ntok_nonum(p);
  bool inherit = false;
  for (int32_t i = 0; i < count; ++i) {
    list->keys[i] = svg_get_family_name(p);
    if (list->keys[i] == SVG_KW_NONE)
      list->names[i] = ort_strdup(p->core, ort_bs_text(p->name_buf));
    else if (list->keys[i] == SVG_KW_inherit)
      inherit = true;
  }
  if (p->log_level >= 6) log_families(p, list);
  if (inherit) keep_inherit_only(p, list);
}

// Reads one entry of the list and what separates it from the next. A failure leaves keyword
// recognition off, which ends with the value.
static int32_t svg_get_family_name(svg_parser *p) {
  int32_t key = SVG_KW_NONE;
  if (p->tok_type == SVG_TOK_STRING) {
    const int32_t key_count = p->key_count;
    ort_bs_clear(p->name_buf);
    ort_bs_append_text(p->name_buf, p->tok_text);
    p->key_count = 0; // "Bitstream serif" is a name
    while (svg_ntok_nonum(p) == SVG_TOK_STRING) {
      ort_bs_append_byte(p->name_buf, ' ');
      ort_bs_append_text(p->name_buf, p->tok_text);
    }
    p->key_count = key_count;
  } else if (p->tok_type == SVG_TOK_KEYWORD) {
    key = p->tok_key;
    svg_ntok_nonum(p);
  } else {
    svg_err_value(p);
  }
  if (p->tok_type == SVG_TOK_COMMA)
    svg_ntok_nonum(p);
  else if (p->tok_type != SVG_TOK_END)
    svg_err_value(p);
  return key;
}

void svg_dtor_an_key_name_list(ort_core *core, svg_a_node *node) {
  auto *list = svg_record<svg_an_key_name_list>(node);
  ort_free(core, list->keys);
  if (!list->names) return;
  for (int32_t i = 0; i < list->count; ++i) ort_free(core, list->names[i]);
  ort_free(core, list->names);
}

// One more than the commas.
static int32_t count_families(svg_scanner *p) {
  int32_t count = 1;
  for (int token = svg_ntok_nonum(p); token != SVG_TOK_END; token = svg_ntok_nonum(p))
    if (token == SVG_TOK_COMMA) ++count;
  return count;
}

static void log_families(const svg_host *p, const svg_an_key_name_list *list) {
  ort_logg(p->core, "\t\t\t\t");
  for (int32_t i = 0; i < list->count; ++i) {
    if (list->names[i])
      ort_logg(p->core, "\"%a\" ", list->names[i]);
    else if (list->keys[i] == SVG_KW_inherit)
      ort_logg(p->core, "inherit ");
    else
      ort_logg(p->core, "generics=%d ", list->keys[i]);
  }
  ort_logg(p->core, "\n");
}

static void keep_inherit_only(svg_host *p, svg_an_key_name_list *list) {
  for (int32_t i = 0; i < list->count; ++i) {
    ort_free(p->core, list->names[i]);
    list->names[i] = nullptr;
  }
  if (list->count > 1) svg_note(p, 6, "\t\t\t\t\"inherit\" is dominant\n");
  list->keys[0] = SVG_KW_inherit;
  list->count = 1;
}
