// css_engine.cpp: the engine's life, and the numbers that readers ask for. Called by readers.
//
// Raises ORT_E_NO_MEMORY; a half-made engine can be deleted.
#include "css/css_engine.h"

#include "css/css_external.h"

namespace {
struct vector_field {
  ort_vtr *css_parser::*field;
  const ort_item_desc *descriptor;
};
} // namespace

static void release_sheet(ort_core *core, void *item);

constexpr ort_item_desc sheet_ced = {sizeof(css_sheet), nullptr, release_sheet};
constexpr ort_item_desc pointer_ced = {sizeof(void *), nullptr, nullptr};
constexpr ort_item_desc query_ced = {sizeof(uint64_t), nullptr, nullptr};
constexpr ort_item_desc test_ced = {sizeof(css_test), nullptr, nullptr};
constexpr ort_item_desc declaration_ced = {sizeof(css_declaration), nullptr, nullptr};
constexpr ort_item_desc frame_ced = {sizeof(css_frame), nullptr, nullptr};
constexpr ort_item_desc trace_ced = {sizeof(css_trace), nullptr, nullptr};
constexpr vector_field vectors[] = {
    {&css_parser::sheets, &sheet_ced},
    {&css_parser::queries, &query_ced},
    {&css_parser::tests, &test_ced},
    {&css_parser::group, &pointer_ced},
    {&css_parser::declarations, &declaration_ced},
    {&css_parser::chain, &pointer_ced},
    {&css_parser::subject, &pointer_ced},
    {&css_parser::matched, &pointer_ced},
    {&css_parser::result, &pointer_ced},
    {&css_parser::frames, &frame_ced},
    {&css_parser::traces, &trace_ced},
};
constexpr ort_bs *css_parser::*strings[] = {&css_parser::name, &css_parser::value,
                                            &css_parser::lower, &css_parser::token,
                                            &css_parser::nest};

css_parser *css_parser_new(ort_core *core, void *user, const css_context *context,
                           const css_callbacks *callbacks, int max_elem_nid) {
  auto *css = ort_new<css_parser>(core, __func__);
  css->core = core;
  css->user = user;
  css->context = context;
  css->callbacks = *callbacks;
  css->max_elem_nid = max_elem_nid;
  return css;
}

void css_parser_init(css_parser *css) {
  ort_core *core = css->core;
  css_register_errtab(core);
  css->log_level = ort_logg_getlevel(core, ORT_LOG_READER);
  css->elem_buckets =
      ort_new_array<css_selector *>(core, static_cast<size_t>(css->max_elem_nid) + 1, __func__);
  for (ort_vtr *&words : css->words) words = ort_vtr_new(core, &pointer_ced, 0, 0);
  for (const vector_field &vector : vectors)
    css->*vector.field = ort_vtr_new(core, vector.descriptor, 0, 0);
  for (auto field : strings) css->*field = ort_bs_new(core);
}

void css_parser_delete(css_parser *css) {
  if (!css) return;
  for (auto field : strings) ort_bs_delete(css->*field);
  for (const vector_field &vector : vectors) ort_vtr_delete(css->*vector.field);
  for (ort_vtr *words : css->words) ort_vtr_delete(words);
  ort_free(css->core, css->elem_buckets);
  css_free_names(css);
  ort_free(css->core, css);
}

int16_t css_get_attr_nid(const css_parser *css, const char *name) {
  return css_get_nid(css, CSS_ATTRS, name);
}
bool css_has_attr_nids(const css_parser *css) { return ort_vtr_count(css->words[CSS_ATTRS]) > 0; }
int16_t css_get_class_nid(const css_parser *css, const char *name) {
  return css_get_nid(css, CSS_CLASSES, name);
}
int16_t css_get_id_nid(const css_parser *css, const char *name) {
  return css_get_nid(css, CSS_IDS, name);
}

static void release_sheet(ort_core *core, void *item) {
  auto *sheet = static_cast<css_sheet *>(item);
  ort_free(core, sheet->href);
  ort_free(core, sheet->text);
}
