// css_scan.h: the lexical layer of style sheets.
#ifndef CSS_SCAN_H
#define CSS_SCAN_H

#include "css/css.h"

// How a string or URL ended. CSS_OPEN: the sheet ended first.
enum css_ending { CSS_CLOSED, CSS_OPEN, CSS_BAD };

struct css_span {
  const char *end; // the byte that stopped the scan, or the end
  size_t mark;     // where the first "!" outside of brackets stands in the output; SIZE_MAX: none
  bool bad;        // holds a string or URL that makes the construct void
};

inline bool css_isspace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

// Skips blanks and comments; blank, when given, tells whether there were blanks.
const char *css_skip_space(const char *at, bool *blank = nullptr);

bool css_at_name(const char *at);       // an identifier begins here
const char *css_at_url(const char *at); // past the "url(" that begins here, or null

// These append the decoded text to out (null: only skip) and return its end. A string begins at its
// quotation mark, a URL after "url(".
const char *css_scan_name(ort_bs *out, const char *at);
const char *css_scan_string(ort_bs *out, const char *at, css_ending *ending);
const char *css_scan_url(ort_bs *out, const char *at, css_ending *ending);

// Scans up to one of the stop characters outside brackets and strings. Appends the text to out (may
// be null): comments as blanks, escapes decoded, trailing blanks removed, and whatever the end of
// the sheet left open closed.
css_span css_scan_until(css_parser *css, const char *at, const char *stops, ort_bs *out);

#endif
