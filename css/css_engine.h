// css_engine.h: records of the CSS engine and what its files offer each other. For the files of
// css/ only.
//
// Selectors form a trie: a css_selector is one compound ("rect.a") behind the selector to its left.
// Equal beginnings are one record, which is tried once per element however many rules continue it.
// Whatever is kept until the engine is deleted lies in chunks (css_keep); everything else is
// scratch owned by css_parser, so that a raise loses nothing.
#ifndef CSS_ENGINE_H
#define CSS_ENGINE_H

#include <cstring>

#include "css/css.h"

struct css_block;

// ---- Errors (css_external.cpp) and names of sheets (css_href.cpp) -------------------------------

enum {
  CSS_E_REFUSED = 10200,
  CSS_E_UNREADABLE = 10201,
  CSS_E_CYCLE = 10202,
  CSS_E_ENCODING = 10203,
  CSS_E_NAMES = 10204
};

void css_register_errtab(ort_core *core);

// Refuses a name that is too long, with a warning.
bool css_refuse_long_href(ort_core *core, const char *href);

// Joins href with the name of the sheet that holds it (null: none) by RFC 3986, 5.2; the fragment
// is dropped. A relative result keeps the ".." that lead out of the base.
void css_resolve_href(ort_bs *result, const char *base, const char *href);

// ---- Names (css_names.cpp) ----------------------------------------------------------------------

struct css_key {
  const char *text; // without NUL bytes
  size_t length;
  uint32_t salt; // equal texts with different salts are different keys
};

// Head of every record that is found by a text. The records of a table form a trie over the bits of
// their keys: unlike a hash table it has no input that makes it slow.
struct css_name {
  css_key key;
  uint64_t bit;      // decides between the links; from 1, and below those of the nodes below
  css_name *link[2]; // a link to a node with no larger bit is a leaf
};

// A class, id or attribute name, or an attribute's name and value.
struct css_word : css_name {
  int32_t number;       // its nid and 1; 0: has none
  css_selector *bucket; // selectors to be tried on elements that have it
  uint64_t mark;        // serial of the last element that has it
  const char *value;    // an attribute's value there
  size_t value_length;
};

struct css_property : css_name {
  uint64_t mark; // last pass over declarations that met it
};

enum css_table {
  CSS_ATTRS,
  CSS_CLASSES,
  CSS_IDS,
  CSS_NUMBERED,
  CSS_PAIRS = CSS_NUMBERED,
  CSS_SELECTORS,
  CSS_PROPERTIES,
  CSS_TABLES
};

constexpr size_t CSS_MAX_NAMES = 32768; // of one kind: their numbers are int16_t

void *css_keep(css_parser *css, size_t size); // zeroed, lives as long as the engine
const char *css_keep_text(css_parser *css, const char *text, size_t length);
void css_free_chunks(css_parser *css);

void css_init_names(css_parser *css);
css_name *css_find(const css_parser *css, css_table table, const css_key &key);

// Adds a key that css_find does not find. The record is zeroed but for its head; the text is
// copied.
css_name *css_add(css_parser *css, css_table table, const css_key &key, size_t record_size);

// Key of an attribute's name and value in CSS_PAIRS.
inline css_key css_pair_key(const css_word *attr, const char *value, size_t length) {
  return {value, length, static_cast<uint32_t>(attr->number)};
}

template <class T> T *css_intern(css_parser *css, css_table table, const css_key &key) {
  css_name *name = css_find(css, table, key);
  return static_cast<T *>(name ? name : css_add(css, table, key, sizeof(T)));
}

// The word of a class, id or attribute name, numbered when it is new; null after a warning when
// there are too many.
css_word *css_intern_word(css_parser *css, css_table table, const char *text);
int16_t css_get_nid(const css_parser *css, css_table table, const char *text);

// ---- Scanner (css_scan.cpp) ---------------------------------------------------------------------

// How a string or URL ended. OPEN: by the end of the sheet.
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

// These append the decoded text to out (null: only skip) and return its end. A string begins with
// its mark, a URL behind "url(".
const char *css_scan_name(ort_bs *out, const char *at);
const char *css_scan_string(ort_bs *out, const char *at, css_ending *ending);
const char *css_scan_url(ort_bs *out, const char *at, css_ending *ending);

// Scans up to one of the stop characters outside of brackets and strings. Appends what it passes to
// out (may be null): a comment as a blank, escapes decoded, without blanks at the end, and closed
// where the end of the sheet left something open.
css_span css_scan_until(css_parser *css, const char *at, const char *stops, ort_bs *out);

// ---- Selectors (css_select.cpp) -----------------------------------------------------------------

// In ascending order of how few elements pass; those from CSS_TEST_ELEMENT on have buckets.
enum css_test_kind : uint8_t {
  CSS_TEST_NEVER,   // dynamic pseudo-classes and the like
  CSS_TEST_UNKNOWN, // an element name that no element has
  CSS_TEST_ANY,
  CSS_TEST_FIRST_CHILD,
  CSS_TEST_ROOT,
  CSS_TEST_ELEMENT,
  CSS_TEST_ATTR,
  CSS_TEST_VALUE, // an attribute's "="
  CSS_TEST_CLASS,
  CSS_TEST_ID
};

struct css_test {
  css_test_kind kind;
  bool negated;
  char op; // of CSS_TEST_ATTR: 0 (present), '~', '|', '^', '$', '*'
  int16_t elem_nid;
  css_word *word;
  const char *value;
  size_t length; // of value
};

struct css_rule_entry : css_rule {
  css_rule_entry *next;
};

// What a selector is noted to match: an open element, or one that closed before its sibling began.
enum css_place : uint8_t { CSS_OPEN_ELEMENT, CSS_EARLIER_SIBLING, CSS_PLACES };

// The key's text is the compound as written.
struct css_selector : css_name {
  css_selector *left; // null: this is the leftmost compound
  char combinator;    // between left and this: 0, ' ', '>', '+', '~'
  bool active;        // a rule uses it
  bool extended;      // active selectors continue it,
  bool framed;        // some of them by '>', '+' or '~',
  bool preceding;     // some of them by '+' or '~'
  int32_t test_count;
  css_test *tests;
  uint32_t number;       // from 1
  uint64_t specificity;  // ids, then classes and the like, then elements: 21 bits each
  css_rule_entry *rules; // whose whole selector this is
  const char *text;      // null until it was asked for

  css_selector **bucket; // of its most telling test
  css_selector *next;    // in the bucket
  css_selector **link;   // what leads to it there
  // Of the selectors that continue this, those whose buckets many elements try are in them only
  // while this is noted at that place.
  css_selector *sleepers[CSS_PLACES];
  css_selector *next_sleeper;

  // Matching. Depths count open elements from 1; 0 is none. The first is the depth of an open
  // element that matches, of the deepest one if framed; the second that of the deepest open element
  // of which an earlier child matches.
  uint32_t noted[CSS_PLACES];
  uint64_t adjacent; // serial of the last element whose preceding sibling matches
};

// Parses the selectors between at and end (the "{") into css->group, without those that can never
// match. Returns false when one is malformed, which voids the group.
bool css_parse_group(css_parser *css, const char *at, const char *end);

// ---- Cascade (css_cascade.cpp) ------------------------------------------------------------------

struct css_block : css_decl_block {
  uint64_t order; // number of the rule set
  uint64_t mark;  // serial of the last element that got it
};

struct css_declaration {
  css_property *property;
  void *value;
  const char *text;
  bool important;
  bool wins;
};

// Hands the declaration in css->name and css->value to get_prop and notes what comes of it in
// css->declarations.
void css_declare(css_parser *css, bool important);

// Makes rules of css->group and css->declarations.
void css_end_rule(css_parser *css);

// Orders pointers to css_rule pointers by falling precedence.
int css_compare_rules(const void *a, const void *b);

// ---- Matching (css_match.cpp) -------------------------------------------------------------------

void css_enter_bucket(css_selector *selector);
void css_end_document(css_parser *css); // takes all notes back

// ---- The engine (css_parse.cpp) -----------------------------------------------------------------

struct css_sheet { // a sheet being parsed
  char *href;      // null: none
  char *text;      // of an imported sheet
};

struct css_frame { // an open element
  void *node;
  size_t first; // of its traces
};

// A note that a frame made, to be taken back when it closes.
struct css_trace {
  css_selector *selector;
  uint32_t previous;
  css_place place;
};

struct css_parser {
  ort_core *core;
  void *user;
  const css_context *context;
  css_callbacks callbacks;
  int max_elem_nid;
  int log_level;

  struct css_chunk *chunks;      // css_keep
  size_t chunk_used, chunk_size; // of the first one

  css_name tables[CSS_TABLES];
  ort_vtr *words[CSS_NUMBERED]; // css_word *, by number
  bool too_many[CSS_NUMBERED];  // warned that there are more than CSS_MAX_NAMES
  css_selector **elem_buckets;  // by element number
  css_selector *universal;      // bucket of selectors without id, class, attribute and element
  uint32_t selector_count;
  uint64_t rule_count;

  ort_vtr *sheets; // css_sheet, the importing ones below
  int import_count;
  ort_bs *name, *value, *lower; // scratch of the parser
  ort_bs *token;                // of the scanner: one whose escapes are decoded
  ort_bs *nest;                 // the brackets that must close
  ort_vtr *tests;               // css_test: the compound being parsed
  ort_vtr *group;               // css_selector *: those of the rule being parsed
  ort_vtr *declarations;        // css_declaration: of the rule being parsed
  css_declaration current;      // the one at get_prop; text is null until it is needed
  uint64_t declaration_pass;
  ort_vtr *chain; // const css_selector *: scratch of css_get_selector_text

  uint64_t steps;     // of matching so far; see ORT_LIMIT_RULE_STEPS
  uint64_t serial;    // of the element being matched
  void *subject_node; // css_set_subject was called for it
  ort_vtr *subject;   // css_word *: its id, classes and attributes
  ort_vtr *matched;   // css_selector *
  ort_vtr *result;    // css_rule *
  ort_vtr *frames;    // css_frame
  ort_vtr *traces;    // css_trace
};

#endif
