// css_scan.cpp: the lexical layer of CSS 2.1, chapter 4 and appendix G: blanks, comments, names,
// escapes, strings, URLs, and runs of text with balanced brackets. Called by the parsers of sheets
// and selectors.
//
// Texts end with a NUL. Brackets are kept on a stack in memory, not by recursion. Raises
// ORT_E_NO_MEMORY.
#include "css/css_scan.h"

#include <cstring>

#include "css/css_engine.h"

static bool is_newline(char c) { return c == '\n' || c == '\r' || c == '\f'; }
static bool is_name_byte(char c);
static bool is_escape(const char *at);
static const char *skip_comment(const char *at);
static const char *read_escape(const char *at, uint32_t *code);
static const char *scan_escape(ort_bs *out, const char *at);
static const char *scan_escape_or_newline(ort_bs *out, const char *at);
static void append(ort_bs *out, const char *from, const char *to);
static void append_character(ort_bs *out, uint32_t code);
static char get_closer(char c);
static const char *skip_token(css_parser *css, const char *at, char *unclosed, bool *bad);
static bool append_decoded(css_parser *css, ort_bs *out, const char *from, const char *to);
static bool append_decoded_name(ort_bs *out, ort_bs *token, const char *from);
static bool append_quoted(ort_bs *out, const ort_bs *text);

const char *css_skip_space(const char *at, bool *blank) {
  for (;; ++at) {
    while (at[0] == '/' && at[1] == '*') at = skip_comment(at);
    if (!css_isspace(*at)) return at;
    if (blank) *blank = true;
  }
}

bool css_at_name(const char *at) {
  if (*at == '-') ++at;
  return is_escape(at) || (is_name_byte(*at) && !ort_isdigit(*at) && *at != '-');
}

const char *css_scan_name(ort_bs *out, const char *at) {
  for (;;) {
    const char *from = at;
    while (is_name_byte(*at)) ++at;
    append(out, from, at);
    if (!is_escape(at)) return at;
    at = scan_escape(out, at);
  }
}

const char *css_scan_string(ort_bs *out, const char *at, css_ending *ending) {
  char quote = *at++;
  for (;;) {
    const char *from = at;
    while (*at && *at != quote && *at != '\\' && !is_newline(*at)) ++at;
    append(out, from, at);
    if (*at == '\\' && at[1]) {
      at = scan_escape_or_newline(out, at);
      continue;
    }
    *ending = *at == quote ? CSS_CLOSED : *at ? CSS_BAD : CSS_OPEN;
    if (*at == '\\') *ending = CSS_BAD; // at the very end
    return *at == quote || *at == '\\' ? at + 1 : at;
  }
}

const char *css_at_url(const char *at) {
  for (const char *letter = "url"; *letter; ++letter) {
    uint32_t code = static_cast<unsigned char>(*at);
    at = is_escape(at) ? read_escape(at, &code) : at + 1;
    if ((code | 32) != static_cast<unsigned char>(*letter)) return nullptr;
  }
  return *at == '(' ? at + 1 : nullptr;
}

const char *css_scan_url(ort_bs *out, const char *at, css_ending *ending) {
  while (css_isspace(*at)) ++at;
  if (*at == '"' || *at == '\'') {
    at = css_scan_string(out, at, ending);
    if (*ending == CSS_OPEN) return at;
  } else {
    *ending = CSS_CLOSED;
    for (;;) {
      const char *from = at;
      while (*at && !css_isspace(*at) && !strchr("\"'()\\", *at)) ++at;
      append(out, from, at);
      if (!is_escape(at)) break;
      at = scan_escape(out, at);
    }
  }
  while (css_isspace(*at)) ++at;
  if (*at && *at != ')') *ending = CSS_BAD;
  while (*at && *at != ')') at = is_escape(at) ? scan_escape(nullptr, at) : at + 1;
  if (*at) return at + 1;
  if (*ending == CSS_CLOSED) *ending = CSS_OPEN;
  return at;
}

css_span css_scan_until(css_parser *css, const char *at, const char *stops, ort_bs *out) {
  css_span span = {at, SIZE_MAX, false};
  size_t solid = out ? ort_bs_length(out) : 0; // without blanks at the end
  ort_bs_clear(css->nest);
  while (*at && (ort_bs_length(css->nest) > 0 || !strchr(stops, *at))) {
    const char *from = at;
    bool blank = css_isspace(*at), comment = at[0] == '/' && at[1] == '*';
    char unclosed = 0;
    if (*at == '!' && ort_bs_length(css->nest) == 0 && out && span.mark == SIZE_MAX)
      span.mark = ort_bs_length(out);
    at = comment ? skip_comment(at) : blank ? at + 1 : skip_token(css, at, &unclosed, &span.bad);
    if (!out) continue;
    if (comment)
      ort_bs_append_byte(out, ' ');
    else if (memchr(from, '\\', static_cast<size_t>(at - from)) &&
             append_decoded(css, out, from, at))
      unclosed = 0;
    else
      append(out, from, at);
    if (unclosed) ort_bs_append_byte(out, unclosed);
    if (!comment && !blank) solid = ort_bs_length(out);
  }
  span.end = at;
  if (out) {
    ort_bs_shorten(out, solid);
    for (size_t i = ort_bs_length(css->nest); i > 0; --i)
      ort_bs_append_byte(out, ort_bs_text(css->nest)[i - 1]);
  }
  return span;
}

static bool is_name_byte(char c) {
  return ort_isalpha(c) || ort_isdigit(c) || c == '-' || c == '_' ||
         static_cast<unsigned char>(c) > 127;
}

static bool is_escape(const char *at) { return at[0] == '\\' && at[1] && !is_newline(at[1]); }

static const char *skip_comment(const char *at) {
  at += 2;
  while (*at && !(at[0] == '*' && at[1] == '/')) ++at;
  return *at ? at + 2 : at;
}

// Decodes the escape at the backslash; an escaped byte stands for itself.
static const char *read_escape(const char *at, uint32_t *code) {
  const char *from = ++at;
  *code = 0;
  for (; at - from < 6 && ort_isxdigit(*at); ++at)
    *code = *code * 16 + static_cast<uint32_t>(ort_hex2bin_a(at, ORT_HEX_DIGIT));
  if (at == from) {
    *code = static_cast<unsigned char>(*at);
    return at + 1;
  }
  if (at[0] == '\r' && at[1] == '\n') return at + 2;
  return css_isspace(*at) ? at + 1 : at;
}

static const char *scan_escape(ort_bs *out, const char *at) {
  uint32_t code;
  const char *end = read_escape(at, &code);
  if (static_cast<unsigned char>(at[1]) > 127)
    append(out, at + 1, end); // the first byte of a character
  else if (out)
    append_character(out, code);
  return end;
}

// In a string, a backslash before a newline joins lines.
static const char *scan_escape_or_newline(ort_bs *out, const char *at) {
  if (!is_newline(at[1])) return scan_escape(out, at);
  return at + (at[1] == '\r' && at[2] == '\n' ? 3 : 2);
}

static void append(ort_bs *out, const char *from, const char *to) {
  if (out) ort_bs_append(out, from, static_cast<size_t>(to - from));
}

static void append_character(ort_bs *out, uint32_t code) {
  if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) code = 0xFFFD;
  if (code < 0x80) return ort_bs_append_byte(out, static_cast<char>(code));
  int tail = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  uint32_t lead = tail == 1 ? 0xC0 : tail == 2 ? 0xE0 : 0xF0;
  ort_bs_append_byte(out, static_cast<char>(lead | code >> (6 * tail)));
  while (tail-- > 0) ort_bs_append_byte(out, static_cast<char>(0x80 | (code >> (6 * tail) & 0x3F)));
}

static char get_closer(char c) { return c == '(' ? ')' : c == '[' ? ']' : c == '{' ? '}' : '\0'; }

// Skips one token other than blanks and comments, and maintains the stack of open brackets.
// unclosed is the mark that a string or URL lacks at the end of the sheet. A quoted URL is parsed
// like any function.
static const char *skip_token(css_parser *css, const char *at, char *unclosed, bool *bad) {
  css_ending ending = CSS_CLOSED;
  if (*at == '"' || *at == '\'') {
    *unclosed = *at;
    at = css_scan_string(nullptr, at, &ending);
  } else if (const char *url = css_at_url(at);
             url && !strchr("\"'", url[strspn(url, " \t\r\n\f")])) {
    *unclosed = ')';
    at = css_scan_url(nullptr, url, &ending);
  } else if (is_name_byte(*at) || is_escape(at)) {
    return css_scan_name(nullptr, at);
  } else if (*at == '#' || *at == '@') {
    return css_scan_name(nullptr, at + 1);
  } else {
    size_t depth = ort_bs_length(css->nest);
    if (char closer = get_closer(*at))
      ort_bs_append_byte(css->nest, closer);
    else if (depth > 0 && ort_bs_text(css->nest)[depth - 1] == *at)
      ort_bs_shorten(css->nest, depth - 1);
    return at + 1;
  }
  if (ending != CSS_OPEN) *unclosed = 0;
  if (ending == CSS_BAD) *bad = true;
  return at;
}

// Appends the token between from and to with its escapes decoded. Returns false, with nothing
// appended, if the result could be read as something else.
static bool append_decoded(css_parser *css, ort_bs *out, const char *from, const char *to) {
  css_ending ending;
  ort_bs_clear(css->token);
  if (*from == '"' || *from == '\'') {
    css_scan_string(css->token, from, &ending);
    return append_quoted(out, css->token);
  }
  const char *url = css_at_url(from);
  if (!url || url > to) return append_decoded_name(out, css->token, from);
  size_t length = ort_bs_length(out);
  css_scan_url(css->token, url, &ending);
  ort_bs_append_text(out, "url(");
  if (!strpbrk(ort_bs_text(css->token), " \t\r\n\f\"'()\\")) {
    ort_bs_append(out, ort_bs_text(css->token), ort_bs_length(css->token));
  } else if (!append_quoted(out, css->token)) {
    ort_bs_shorten(out, length);
    return false;
  }
  ort_bs_append_byte(out, ')');
  return true;
}

// A hash, a number with its unit, or an identifier. An escaped character is part of its name
// whatever it looks like (CSS 2.1, 4.1.3): an identifier with such a character becomes a string.
static bool append_decoded_name(ort_bs *out, ort_bs *token, const char *from) {
  bool hash = *from == '#' || *from == '@', identifier = css_at_name(from);
  const char *name = hash ? from + 1 : identifier ? from : from + strspn(from, "-0123456789");
  css_scan_name(token, name);
  const char *text = ort_bs_text(token), *end = text;
  while (is_name_byte(*end)) ++end;
  bool plain = *end == '\0' && (hash || css_at_name(text));
  if (!hash && !identifier && (*text | 32) == 'e' && (ort_isdigit(text[1]) || text[1] == '-'))
    plain = false; // an exponent
  if (!plain) return identifier && append_quoted(out, token);
  append(out, from, name);
  ort_bs_append(out, text, ort_bs_length(token));
  return true;
}

// Readers of values know no escapes, so a text with both quotation marks cannot be quoted.
static bool append_quoted(ort_bs *out, const ort_bs *text) {
  char mark = !strchr(ort_bs_text(text), '"') ? '"' : '\'';
  if (strchr(ort_bs_text(text), mark)) return false;
  ort_bs_append_byte(out, mark);
  ort_bs_append(out, ort_bs_text(text), ort_bs_length(text));
  ort_bs_append_byte(out, mark);
  return true;
}
