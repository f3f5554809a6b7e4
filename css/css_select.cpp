// css_select.cpp: parses the selectors of a rule into the engine's trie of compounds, and writes
// them as text. Called by the rule parser and, for the log, by readers.
//
// CSS 2.1, chapter 5, with ":not()" of a simple selector, ":root", "~" and the attribute tests ^=
// $= *= of Selectors 3. Raises ORT_E_NO_MEMORY.
#include "css/css_select.h"

#include <cstring>
#include <string_view>

#include "css/css_engine.h"
#include "css/css_scan.h"

namespace {
struct selector_scan {
  css_parser *css;
  const char *at;
  bool negated; // inside ":not("
  bool never;   // no element can match
  bool ended;   // by a pseudo-element
};

enum pseudo {
  PSEUDO_CLASS,
  PSEUDO_FUNCTION,
  PSEUDO_ELEMENT,
  PSEUDO_FIRST_CHILD,
  PSEUDO_ROOT,
  PSEUDO_NOT
};
} // namespace

// Drawings are static: dynamic classes and generated content are recognised but never match.
constexpr ort_keyword pseudo_classes[] = {{"first-child", PSEUDO_FIRST_CHILD},
                                          {"root", PSEUDO_ROOT},
                                          {"not(", PSEUDO_NOT},
                                          {"link", PSEUDO_CLASS},
                                          {"visited", PSEUDO_CLASS},
                                          {"hover", PSEUDO_CLASS},
                                          {"active", PSEUDO_CLASS},
                                          {"focus", PSEUDO_CLASS},
                                          {"target", PSEUDO_CLASS},
                                          {"lang(", PSEUDO_FUNCTION},
                                          {"before", PSEUDO_ELEMENT},
                                          {"after", PSEUDO_ELEMENT},
                                          {"first-line", PSEUDO_ELEMENT},
                                          {"first-letter", PSEUDO_ELEMENT},
                                          {nullptr, 0}};

constexpr ort_keyword pseudo_elements[] = {
    {"before", PSEUDO_ELEMENT},       {"after", PSEUDO_ELEMENT},     {"first-line", PSEUDO_ELEMENT},
    {"first-letter", PSEUDO_ELEMENT}, {"selection", PSEUDO_ELEMENT}, {nullptr, 0}};

static bool is_one_of(std::string_view bytes, char c) { return bytes.find(c) < bytes.size(); }
static bool parse_selector(selector_scan *scan, css_selector **selector);
static bool parse_compound(selector_scan *scan);
static bool parse_type(selector_scan *scan);
static bool parse_simple(selector_scan *scan);
static bool parse_word(selector_scan *scan, css_table table, css_test_kind kind);
static bool parse_attribute(selector_scan *scan);
static bool parse_pseudo(selector_scan *scan);
static bool parse_not(selector_scan *scan);
static bool take(selector_scan *scan, char c);
static void skip_comments(selector_scan *scan);
static css_test *add_test(selector_scan *scan, css_test_kind kind);
static css_selector *add_selector(css_parser *css, css_selector *left, char combinator,
                                  const char *from, const char *to);
static uint64_t add_specificity(uint64_t specificity, const css_test &test);

const char *css_parse_group(css_parser *css, const char *at, const char *end) {
  ort_vtr_resize(css->group, 0);
  selector_scan scan = {css, at, false, false, false};
  for (;;) {
    css_selector *selector;
    if (!parse_selector(&scan, &selector)) return scan.at;
    if (selector) ort_push(css->group, selector);
    if (*scan.at != ',') return scan.at == end ? nullptr : scan.at;
    ++scan.at;
  }
}

const char *css_get_selector_text(css_parser *css, css_selector *selector) {
  if (selector->text) return selector->text;
  ort_bs *text = css->name;
  ort_bs_clear(text);
  ort_vtr_resize(css->chain, 0);
  for (const css_selector *part = selector; part; part = part->left) ort_push(css->chain, part);
  for (size_t i = ort_vtr_count(css->chain); i > 0; --i) {
    const auto *part = ort_item<const css_selector *>(css->chain, i - 1);
    if (part->combinator) ort_bs_append_byte(text, ' ');
    if (part->combinator > ' ') {
      ort_bs_append_byte(text, part->combinator);
      ort_bs_append_byte(text, ' ');
    }
    ort_bs_append(text, part->key.text, part->key.length);
  }
  return selector->text = css_keep_text(css, ort_bs_text(text), ort_bs_length(text));
}

void css_logg_sel(css_parser *css, css_selector *selector) {
  const char *text = css_get_selector_text(css, selector);
  ort_logg(css->core, "\t\t\t\tselector: %s\n", ort_errprintf(css->core, "%a", text));
}

// Parses up to the "," or the end of the prelude. *selector is null when no element can match.
static bool parse_selector(selector_scan *scan, css_selector **selector) {
  char combinator = 0;
  *selector = nullptr;
  scan->never = scan->ended = false;
  scan->at = css_skip_space(scan->at);
  for (;;) {
    const char *from = scan->at;
    if (!parse_compound(scan)) return false;
    *selector =
        scan->never ? nullptr : add_selector(scan->css, *selector, combinator, from, scan->at);
    bool blank = false;
    scan->at = css_skip_space(scan->at, &blank);
    switch (*scan->at) {
    case '\0':
    case '{':
    case ',': return true;
    case '>':
    case '+':
    case '~':
      if (scan->ended) return false;
      combinator = *scan->at;
      scan->at = css_skip_space(scan->at + 1);
      break;
    default:
      if (!blank || scan->ended) return false;
      combinator = ' ';
    }
  }
}

static bool parse_compound(selector_scan *scan) {
  const char *from = scan->at;
  ort_vtr_resize(scan->css->tests, 0);
  if ((*scan->at == '*' || css_at_name(scan->at)) && !parse_type(scan)) return false;
  for (;;) {
    bool blank = false;
    const char *next = css_skip_space(scan->at, &blank); // comments may stand inside a compound
    if (blank || !is_one_of("#.[:", *next)) return scan->at > from;
    if (scan->ended) return false;
    scan->at = next;
    if (!parse_simple(scan)) return false;
  }
}

static bool parse_type(selector_scan *scan) {
  css_parser *css = scan->css;
  if (*scan->at == '*') {
    ++scan->at;
    add_test(scan, CSS_TEST_ANY);
    return true;
  }
  ort_bs_clear(css->name);
  scan->at = css_scan_name(css->name, scan->at);
  int16_t nid = css->callbacks.get_elem_nid(css->user, ort_bs_text(css->name));
  css_test *test = add_test(scan, nid < 0 ? CSS_TEST_UNKNOWN : CSS_TEST_ELEMENT);
  test->elem_nid = nid;
  return true;
}

static bool parse_simple(selector_scan *scan) {
  switch (*scan->at) {
  case '#': return parse_word(scan, CSS_IDS, CSS_TEST_ID);
  case '.': return parse_word(scan, CSS_CLASSES, CSS_TEST_CLASS);
  case '[': return parse_attribute(scan);
  case ':': return parse_pseudo(scan);
  default: return false;
  }
}

static bool parse_word(selector_scan *scan, css_table table, css_test_kind kind) {
  css_parser *css = scan->css;
  ++scan->at;
  if (table == CSS_CLASSES) skip_comments(scan); // "#" is one token with its name
  if (!css_at_name(scan->at)) return false;
  ort_bs_clear(css->name);
  scan->at = css_scan_name(css->name, scan->at);
  css_word *word = css_intern_word(css, table, ort_bs_text(css->name));
  if (!word) scan->never = true; // an unnumbered name: elements cannot be tested for it
  add_test(scan, kind)->word = word;
  return true;
}

static bool parse_attribute(selector_scan *scan) {
  css_parser *css = scan->css;
  scan->at = css_skip_space(scan->at + 1);
  if (!css_at_name(scan->at)) return false;
  ort_bs_clear(css->name);
  scan->at = css_skip_space(css_scan_name(css->name, scan->at));
  css_word *word = css_intern_word(css, CSS_ATTRS, ort_bs_text(css->name));
  if (!word) scan->never = true;
  css_test *test = add_test(scan, CSS_TEST_ATTR);
  test->word = word;
  if (*scan->at != ']') {
    bool two = is_one_of("~|^$*", *scan->at);
    if (scan->at[two] != '=') return false;
    if (two)
      test->op = *scan->at;
    else
      test->kind = CSS_TEST_VALUE;
    scan->at = css_skip_space(scan->at + two + 1);
    ort_bs_clear(css->value);
    if (*scan->at == '"' || *scan->at == '\'') {
      css_ending ending;
      scan->at = css_scan_string(css->value, scan->at, &ending);
      if (ending != CSS_CLOSED) return false;
    } else if (css_at_name(scan->at)) {
      scan->at = css_scan_name(css->value, scan->at);
    } else {
      return false;
    }
    test->length = ort_bs_length(css->value);
    test->value = css_keep_text(css, ort_bs_text(css->value), test->length);
    scan->at = css_skip_space(scan->at);
  }
  return take(scan, ']');
}

static bool parse_pseudo(selector_scan *scan) {
  css_parser *css = scan->css;
  ++scan->at;
  skip_comments(scan);
  bool element = *scan->at == ':';
  if (element) {
    ++scan->at;
    skip_comments(scan);
  }
  if (!css_at_name(scan->at)) return false;
  ort_bs_clear(css->name);
  scan->at = css_scan_name(css->name, scan->at);
  if (*scan->at == '(') {
    ort_bs_append_byte(css->name, '(');
    ++scan->at;
  }
  switch (ort_get_keycode_ci(ort_bs_text(css->name), element ? pseudo_elements : pseudo_classes)) {
  case PSEUDO_CLASS: add_test(scan, CSS_TEST_NEVER); return true;
  case PSEUDO_ELEMENT:
    add_test(scan, CSS_TEST_NEVER);
    scan->ended = true;
    return !scan->negated;
  case PSEUDO_FIRST_CHILD: add_test(scan, CSS_TEST_FIRST_CHILD); return true;
  case PSEUDO_ROOT: add_test(scan, CSS_TEST_ROOT); return true;
  case PSEUDO_FUNCTION:
    scan->at = css_skip_space(scan->at);
    if (!css_at_name(scan->at)) return false;
    scan->at = css_skip_space(css_scan_name(nullptr, scan->at));
    add_test(scan, CSS_TEST_NEVER);
    return take(scan, ')');
  case PSEUDO_NOT: return !scan->negated && parse_not(scan);
  default: return false;
  }
}

static bool parse_not(selector_scan *scan) {
  scan->at = css_skip_space(scan->at);
  scan->negated = true;
  bool type = *scan->at == '*' || css_at_name(scan->at);
  bool good = type ? parse_type(scan) : parse_simple(scan);
  scan->negated = false;
  scan->at = css_skip_space(scan->at);
  return good && take(scan, ')');
}

static bool take(selector_scan *scan, char c) {
  if (*scan->at != c) return false;
  ++scan->at;
  return true;
}

// Comments are allowed between any two tokens; blanks are not.
static void skip_comments(selector_scan *scan) {
  bool blank = false;
  const char *next = css_skip_space(scan->at, &blank);
  if (!blank) scan->at = next;
}

static css_test *add_test(selector_scan *scan, css_test_kind kind) {
  auto *test = static_cast<css_test *>(ort_vtr_push(scan->css->tests));
  test->kind = kind;
  test->negated = scan->negated;
  bool always = kind == CSS_TEST_ANY, never = kind == CSS_TEST_NEVER || kind == CSS_TEST_UNKNOWN;
  if (scan->negated ? always : never) scan->never = true;
  return test;
}

// The record of the compound between from and to, which continues left and whose tests are in
// css->tests.
static css_selector *add_selector(css_parser *css, css_selector *left, char combinator,
                                  const char *from, const char *to) {
  constexpr const char combinators[] = " >+~";
  css_key key = {from, static_cast<size_t>(to - from), 0};
  if (left)
    key.salt =
        left->number * 4 + static_cast<uint32_t>(strchr(combinators, combinator) - combinators);
  if (css_name *name = css_find(css, CSS_SELECTORS, key)) return static_cast<css_selector *>(name);

  size_t count = ort_vtr_count(css->tests);
  auto *tests = static_cast<css_test *>(css_keep(css, count * sizeof(css_test)));
  auto *selector =
      static_cast<css_selector *>(css_add(css, CSS_SELECTORS, key, sizeof(css_selector)));
  selector->left = left;
  selector->combinator = combinator;
  selector->number = ++css->selector_count;
  selector->specificity = left ? left->specificity : 0;
  selector->tests = tests;
  for (size_t i = 0; i < count; ++i) {
    const auto &test = ort_item<css_test>(css->tests, i);
    selector->specificity = add_specificity(selector->specificity, test);
    if (test.kind != CSS_TEST_ANY) tests[selector->test_count++] = test;
  }
  return selector;
}

// CSS 2.1, 6.4.3. ":not()" counts as its argument. Counts saturate at 2^21 - 1.
static uint64_t add_specificity(uint64_t specificity, const css_test &test) {
  constexpr uint64_t most = (1 << 21) - 1;
  int shift = 21;
  if (test.kind == CSS_TEST_ANY) return specificity;
  if (test.kind == CSS_TEST_ELEMENT || test.kind == CSS_TEST_UNKNOWN) shift = 0;
  if (test.kind == CSS_TEST_ID) shift = 42;
  return (specificity >> shift & most) == most ? specificity : specificity + (uint64_t{1} << shift);
}
