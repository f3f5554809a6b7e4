// css_parse.cpp: the parser of style sheets: statements, at-rules, rule sets and declarations by
// CSS 2.1, 4.1, with the error recovery of 4.2. Called by readers.
//
// Reads the text in one go; only imports recurse, up to ORT_LIMIT_IMPORT_DEPTH. Raises
// ORT_E_NO_MEMORY and whatever the callbacks raise; css_parser owns everything at any time.
#include "css/css_cascade.h"
#include "css/css_engine.h"
#include "css/css_external.h"
#include "css/css_href.h"
#include "css/css_match.h"
#include "css/css_scan.h"
#include "css/css_select.h"

#include <cstring>

namespace {
struct sheet_scan {
  css_parser *css;
  const char *at;
  const char *href; // null: none
  int media;        // @media blocks around at
  bool head;        // @import is still allowed
};

enum at_keyword { AT_MEDIA, AT_IMPORT, AT_FONT_FACE, AT_PAGE };
} // namespace

constexpr ort_keyword at_keywords[] = {{"media", AT_MEDIA},
                                       {"import", AT_IMPORT},
                                       {"font-face", AT_FONT_FACE},
                                       {"page", AT_PAGE},
                                       {nullptr, 0}};
constexpr ort_keyword media_types[] = {{"all", 0}, {"screen", 0}, {"print", 0}, {nullptr, 0}};

static void parse_statements(css_parser *css, const char *text, const char *href);
static void parse_at_rule(sheet_scan *scan);
static void note_place(css_parser *css, const char *at);
static bool take_media(css_parser *css, const char *at, const char *end);
static void import_sheet(sheet_scan *scan, const char *at, const char *end);
static void parse_rule_set(sheet_scan *scan);
static const char *parse_declarations(css_parser *css, const char *at);
static const char *parse_declaration(css_parser *css, const char *at);
static bool take_priority(css_parser *css, size_t mark, bool *important);
static const char *skip_block(css_parser *css, const char *at);

void css_parse(css_parser *css, const char *text) { css_parse_sheet(css, text, nullptr); }

void css_parse_sheet(css_parser *css, const char *text, const char *href) {
  css_end_document(css);
  ort_vtr_resize(css->sheets, 0); // a raise may have left an earlier sheet
  auto *sheet = static_cast<css_sheet *>(ort_vtr_push(css->sheets));
  if (href) {
    ort_bs_clear(css->value);
    css_resolve_href(css->value, nullptr, href);
    sheet->href = ort_strdup(css->core, ort_bs_text(css->value));
  }
  note_place(css, text);
  parse_statements(css, text, sheet->href);
  ort_vtr_resize(css->sheets, 0);
  css->place = nullptr;
}

const char *css_get_place(const css_parser *css) { return css->place; }

void css_set_encoding(css_parser *css, const char *encoding) { css->encoding = encoding; }

static void parse_statements(css_parser *css, const char *text, const char *href) {
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

static void parse_at_rule(sheet_scan *scan) {
  css_parser *css = scan->css;
  note_place(css, scan->at);
  ort_bs_clear(css->name);
  const char *prelude = css_scan_name(css->name, scan->at + 1);
  int keyword = ort_get_keycode_ci(ort_bs_text(css->name), at_keywords);
  css_span span = css_scan_until(css, prelude, scan->media > 0 ? "{;}" : "{;", nullptr);
  bool block = *span.end == '{', head = scan->head;
  scan->at = span.end + (block || *span.end == ';');

  // What is not understood is ignored, and an @import may still follow it.
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

static void note_place(css_parser *css, const char *at) {
  if (ort_vtr_count(css->sheets) == 1) css->place = at;
}

// Whether a list of media types names one of ours; an empty list means all. Queries with
// expressions are not understood.
static bool take_media(css_parser *css, const char *at, const char *end) {
  at = css_skip_space(at);
  bool taken = at == end;
  while (at != end) {
    ort_bs_clear(css->name);
    const char *after = css_at_name(at) ? css_skip_space(css_scan_name(css->name, at)) : at;
    at = css_scan_until(css, at, ",{;}", nullptr).end;
    if (at == after && ort_get_keycode_ci(ort_bs_text(css->name), media_types) == 0) taken = true;
    if (*at != ',') return at == end && taken;
    at = css_skip_space(at + 1);
  }
  return taken;
}

static void import_sheet(sheet_scan *scan, const char *at, const char *end) {
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
  css->callbacks.at_import(css->user, sheet->href);
  sheet->text = css_read_external_stylesheet(css->core, sheet->href, css->context, css->encoding,
                                             css->log_level);
  if (sheet->text) parse_statements(css, sheet->text, sheet->href);
  ort_vtr_pop(css->sheets);
}

static void parse_rule_set(sheet_scan *scan) {
  css_parser *css = scan->css;
  css_span span = css_scan_until(css, scan->at, scan->media > 0 ? "{}" : "{", nullptr);
  const char *prelude = scan->at;
  scan->at = span.end;
  if (*span.end != '{') return; // lacks its block
  if (span.bad || css_parse_group(css, prelude, span.end)) {
    scan->at = skip_block(css, span.end + 1);
    return;
  }
  scan->head = false;
  ort_vtr_resize(css->declarations, 0);
  scan->at = parse_declarations(css, span.end + 1);
  css_end_rule(css);
}

// From just after the "{" to just after the "}".
static const char *parse_declarations(css_parser *css, const char *at) {
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
static const char *parse_declaration(css_parser *css, const char *at) {
  note_place(css, at);
  ort_bs_clear(css->name);
  const char *colon = css_at_name(at) ? css_skip_space(css_scan_name(css->name, at)) : at;
  if (colon == at || *colon != ':') return css_scan_until(css, at, ";}", nullptr).end;
  ort_bs_clear(css->value);
  css_span span = css_scan_until(css, css_skip_space(colon + 1), ";}", css->value);
  bool important = false;
  if (!span.bad && take_priority(css, span.mark, &important)) css_declare(css, important);
  return span.end;
}

// Removes "!important", which begins at mark, from the value. Returns false if the value is empty
// or its "!" means something else.
static bool take_priority(css_parser *css, size_t mark, bool *important) {
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

// From just after the "{" to just after the "}".
static const char *skip_block(css_parser *css, const char *at) {
  at = css_scan_until(css, at, "}", nullptr).end;
  return *at ? at + 1 : at;
}
