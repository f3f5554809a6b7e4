// css_select.h: selectors.
//
// They form a trie: a css_selector is one compound ("rect.a") after the selector to its left. Equal
// beginnings are one record, which is tried once per element however many rules continue it.
#ifndef CSS_SELECT_H
#define CSS_SELECT_H

#include "css/css_names.h"

// Ordered from tests that many elements pass to those that few do; from CSS_TEST_ELEMENT on they
// have buckets.
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

struct css_query { // one of a group that readers ask about
  size_t number;
  css_query *next;
};

struct css_rule_entry : css_rule {
  css_rule_entry *next;
};

// Where a noted match is: an open element, or one that closed before its sibling began.
enum css_place : uint8_t { CSS_OPEN_ELEMENT, CSS_EARLIER_SIBLING, CSS_PLACES };

// The key's text is the compound as written.
struct css_selector : css_name {
  css_selector *left; // null: this is the leftmost compound
  char combinator;    // between left and this: 0, ' ', '>', '+', '~'
  bool active;        // a rule uses it
  bool extended;      // active selectors continue it,
  bool framed;        // some by '>', '+' or '~',
  bool preceding;     // some by '+' or '~'
  int32_t test_count;
  css_test *tests;
  uint32_t number;       // from 1
  uint64_t specificity;  // ids, then classes and the like, then elements: 21 bits each
  css_rule_entry *rules; // whose whole selector this is
  css_query *queries;    // likewise
  const char *text;      // null until it was asked for

  css_selector **bucket; // of its most telling test
  css_selector *next;    // in the bucket
  css_selector **link;   // what leads to it there
  // Selectors that continue this one and whose buckets are crowded enter them only while this one
  // is noted at that place.
  css_selector *sleepers[CSS_PLACES];
  css_selector *next_sleeper;

  // Matching. Depths count open elements from 1; 0 means none. The first is the depth of a matching
  // open element (the deepest, if framed), the second that of the deepest open element with an
  // earlier child that matches.
  uint32_t noted[CSS_PLACES];
  uint64_t adjacent; // serial of the last element whose preceding sibling matches
};

// Parses the selectors between at and end (the "{") into css->group, without those that can never
// match. Returns null, or where the malformed one is that voids the group.
const char *css_parse_group(css_parser *css, const char *at, const char *end);

#endif
