// css_parse.cpp: the engine's life, and the parser of style sheets: statements, at-rules, rule sets
// and declarations by CSS 2.1, 4.1, with the error recovery of 4.2. Called by readers.
//
// Works through the text with one position; only imports nest, to ORT_LIMIT_IMPORT_DEPTH. Raises
// ORT_E_NO_MEMORY and passes on what the callbacks raise; then everything is owned by css_parser.
#include "css/css_engine.h"

namespace {
struct sheet_scan {
  css_parser *css;
  const char *at;
  const char *href; // null: none
  int media;        // @media blocks around at
  bool head;        // @import is still allowed
};

enum at_keyword { AT_MEDIA, AT_IMPORT, AT_FONT_FACE, AT_PAGE };

constexpr ort_keyword AT_KEYWORDS[] = {{"media", AT_MEDIA},
                                       {"import", AT_IMPORT},
                                       {"font-face", AT_FONT_FACE},
                                       {"page", AT_PAGE},
                                       {nullptr, 0}};
constexpr ort_keyword MEDIA_TYPES[] = {{"all", 0}, {"screen", 0}, {"print", 0}, {nullptr, 0}};

void release_sheet(ort_core *core, void *item);
void parse_statements(css_parser *css, const char *text, const char *href);
void parse_at_rule(sheet_scan *scan);
bool take_media(css_parser *css, const char *at, const char *end);
void import_sheet(sheet_scan *scan, const char *at, const char *end);
void parse_rule_set(sheet_scan *scan);
const char *parse_declarations(css_parser *css, const char *at);
const char *parse_declaration(css_parser *css, const char *at);
bool take_priority(css_parser *css, size_t mark, bool *important);
const char *skip_block(css_parser *css, const char *at);

constexpr ort_item_desc SHEETS = {sizeof(css_sheet), nullptr, release_sheet};
constexpr ort_item_desc POINTERS = {sizeof(void *), nullptr, nullptr};
constexpr ort_item_desc TESTS = {sizeof(css_test), nullptr, nullptr};
constexpr ort_item_desc DECLARATIONS = {sizeof(css_declaration), nullptr, nullptr};
constexpr ort_item_desc FRAMES = {sizeof(css_frame), nullptr, nullptr};
constexpr ort_item_desc TRACES = {sizeof(css_trace), nullptr, nullptr};

struct vector_field {
  ort_vtr *css_parser::*field;
  const ort_item_desc *descriptor;
};
constexpr vector_field VECTORS[] = {
    {&css_parser::sheets, &SHEETS},    {&css_parser::tests, &TESTS},
    {&css_parser::group, &POINTERS},   {&css_parser::declarations, &DECLARATIONS},
    {&css_parser::chain, &POINTERS},   {&css_parser::subject, &POINTERS},
    {&css_parser::matched, &POINTERS}, {&css_parser::result, &POINTERS},
    {&css_parser::frames, &FRAMES},    {&css_parser::traces, &TRACES},
};
constexpr ort_bs *css_parser::*STRINGS[] = {&css_parser::name, &css_parser::value,
                                            &css_parser::lower, &css_parser::token,
                                            &css_parser::nest};
} // namespace

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
  css_init_names(css);
  css->elem_buckets =
      ort_new_array<css_selector *>(core, static_cast<size_t>(css->max_elem_nid) + 1, __func__);
  for (ort_vtr *&words : css->words) words = ort_vtr_new(core, &POINTERS, 0, 0);
  for (const vector_field &vector : VECTORS)
    css->*vector.field = ort_vtr_new(core, vector.descriptor, 0, 0);
  for (auto field : STRINGS) css->*field = ort_bs_new(core);
}

void css_parser_delete(css_parser *css) {
  if (!css) return;
  for (auto field : STRINGS) ort_bs_delete(css->*field);
  for (const vector_field &vector : VECTORS) ort_vtr_delete(css->*vector.field);
  for (ort_vtr *words : css->words) ort_vtr_delete(words);
  ort_free(css->core, css->elem_buckets);
  css_free_chunks(css);
  ort_free(css->core, css);
}

void css_parse(css_parser *css, const char *text) { css_parse_sheet(css, text, nullptr); }

void css_parse_sheet(css_parser *css, const char *text, const char *href) {
  css_end_document(css);
  ort_vtr_resize(css->sheets, 0); // an earlier sheet may have been left by a raise
  auto *sheet = static_cast<css_sheet *>(ort_vtr_push(css->sheets));
  if (href) {
    ort_bs_clear(css->value);
    css_resolve_href(css->value, nullptr, href);
    sheet->href = ort_strdup(css->core, ort_bs_text(css->value));
  }
  parse_statements(css, text, sheet->href);
  ort_vtr_resize(css->sheets, 0);
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

namespace {
void release_sheet(ort_core *core, void *item) {
  auto *sheet = static_cast<css_sheet *>(item);
  ort_free(core, sheet->href);
  ort_free(core, sheet->text);
}

void parse_statements(css_parser *css, const char *text, const char *href) {
  sheet_scan scan = {css, text, href, 0, true};
  for (;;) {
    scan.at = css_skip_space(scan.at);
    if (!*scan.at) return;
    if (scan.media > 0 && *scan.at == '}') {
      --scan.media;
      ++scan.at;
    } else if (scan.media == 0 && strncmp(scan.at, "<!--", 4) == 0) {
      scan.at += 4;
    } else if (scan.media == 0 && strncmp(scan.at, "-->", 3) == 0) {
      scan.at += 3;
    } else if (*scan.at == '@' && css_at_name(scan.at + 1)) {
      parse_at_rule(&scan);
    } else {
      parse_rule_set(&scan);
    }
  }
}

void parse_at_rule(sheet_scan *scan) {
  css_parser *css = scan->css;
  ort_bs_clear(css->name);
  const char *prelude = css_scan_name(css->name, scan->at + 1);
  int keyword = ort_get_keycode_ci(ort_bs_text(css->name), AT_KEYWORDS);
  css_span span = css_scan_until(css, prelude, scan->media > 0 ? "{;}" : "{;", nullptr);
  bool block = *span.end == '{', head = scan->head;
  scan->at = span.end + (block || *span.end == ';');

  // What is not understood is ignored and leaves the head of the sheet open.
  if (keyword == AT_IMPORT) {
    if (!block && !span.bad && head && scan->media == 0) import_sheet(scan, prelude, span.end);
  } else if (block && keyword >= 0) {
    scan->head = false;
    if (keyword == AT_FONT_FACE) css->callbacks.at_fontface(css->user);
    if (keyword == AT_MEDIA && !span.bad && take_media(css, prelude, span.end)) {
      ++scan->media;
      return;
    }
  }
  if (block) scan->at = skip_block(css, scan->at);
}

// A list of media types, of which one must be ours; an empty list is all. Queries with expressions
// are not understood.
bool take_media(css_parser *css, const char *at, const char *end) {
  at = css_skip_space(at);
  bool taken = at == end;
  while (at != end) {
    ort_bs_clear(css->name);
    const char *after = css_at_name(at) ? css_skip_space(css_scan_name(css->name, at)) : at;
    at = css_scan_until(css, at, ",{;}", nullptr).end;
    if (at == after && ort_get_keycode_ci(ort_bs_text(css->name), MEDIA_TYPES) == 0) taken = true;
    if (*at != ',') return at == end && taken;
    at = css_skip_space(at + 1);
  }
  return taken;
}

void import_sheet(sheet_scan *scan, const char *at, const char *end) {
  css_parser *css = scan->css;
  css_ending ending = CSS_BAD;
  at = css_skip_space(at);
  ort_bs_clear(css->name);
  if (*at == '"' || *at == '\'')
    at = css_scan_string(css->name, at, &ending);
  else if (const char *url = css_at_url(at))
    at = css_scan_url(css->name, url, &ending);
  if (ending == CSS_BAD || css_refuse_long_href(css->core, ort_bs_text(css->name))) return;
  ort_bs_clear(css->value);
  css_resolve_href(css->value, scan->href, ort_bs_text(css->name));
  if (!take_media(css, at, end)) return;

  const char *href = ort_bs_text(css->value);
  for (size_t i = 0; i < ort_vtr_count(css->sheets); ++i) {
    const char *open = ort_item<css_sheet>(css->sheets, i).href;
    if (open && strcmp(open, href) == 0)
      return ort_warning(css->core, CSS_E_CYCLE, href, nullptr, nullptr, nullptr);
  }
  const char *refusal = ort_vtr_count(css->sheets) > ORT_LIMIT_IMPORT_DEPTH ? "imported too deeply"
                        : css->import_count == ORT_LIMIT_IMPORTS ? "too many sheets are imported"
                                                                 : nullptr;
  if (refusal) return ort_warning(css->core, CSS_E_REFUSED, href, refusal, nullptr, nullptr);
  ++css->import_count;

  css_sheet *sheet = static_cast<css_sheet *>(ort_vtr_push(css->sheets));
  sheet->href = ort_strdup(css->core, href);
  sheet->text = css_read_external_stylesheet(css->core, sheet->href, css->context, css->log_level);
  if (sheet->text) parse_statements(css, sheet->text, sheet->href);
  ort_vtr_pop(css->sheets);
}

void parse_rule_set(sheet_scan *scan) {
  css_parser *css = scan->css;
  css_span span = css_scan_until(css, scan->at, scan->media > 0 ? "{}" : "{", nullptr);
  const char *prelude = scan->at;
  scan->at = span.end;
  if (*span.end != '{') return; // lacks its block
  if (span.bad || !css_parse_group(css, prelude, span.end)) {
    scan->at = skip_block(css, span.end + 1);
    return;
  }
  scan->head = false;
  ort_vtr_resize(css->declarations, 0);
  scan->at = parse_declarations(css, span.end + 1);
  css_end_rule(css);
}

// From behind the "{" to behind the "}".
const char *parse_declarations(css_parser *css, const char *at) {
  for (;;) {
    at = css_skip_space(at);
    if (*at == '\0') return at;
    if (*at == '}') return at + 1;
    if (*at == '@' && css_at_name(at + 1)) {
      at = css_scan_until(css, at, "{;}", nullptr).end;
      if (*at == '{') at = skip_block(css, at + 1);
    } else if (*at != ';') {
      at = parse_declaration(css, at);
    }
    if (*at == ';') ++at;
  }
}

// Up to the ";", the "}" or the end.
const char *parse_declaration(css_parser *css, const char *at) {
  ort_bs_clear(css->name);
  const char *colon = css_at_name(at) ? css_skip_space(css_scan_name(css->name, at)) : at;
  if (colon == at || *colon != ':') return css_scan_until(css, at, ";}", nullptr).end;
  ort_bs_clear(css->value);
  css_span span = css_scan_until(css, css_skip_space(colon + 1), ";}", css->value);
  bool important = false;
  if (!span.bad && take_priority(css, span.mark, &important)) css_declare(css, important);
  return span.end;
}

// Cuts "!important", which begins at mark, from the value. Returns false for a value that is empty
// or has a "!" of another meaning.
bool take_priority(css_parser *css, size_t mark, bool *important) {
  *important = mark != SIZE_MAX;
  if (!*important) return ort_bs_length(css->value) > 0;
  const char *text = ort_bs_text(css->value), *at = css_skip_space(text + mark + 1);
  ort_bs_clear(css->lower);
  if (*css_scan_name(css->lower, at) || ort_stricmp_a(ort_bs_text(css->lower), "important") != 0)
    return false;
  while (mark > 0 && css_isspace(text[mark - 1])) --mark;
  ort_bs_shorten(css->value, mark);
  return mark > 0;
}

// From behind the "{" to behind the "}".
const char *skip_block(css_parser *css, const char *at) {
  at = css_scan_until(css, at, "}", nullptr).end;
  return *at ? at + 1 : at;
}
} // namespace
