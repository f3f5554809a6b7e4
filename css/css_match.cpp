// css_match.cpp: finds the rules that match an element. Called by readers, once per element in
// document order.
//
// No tree is searched: as elements open and close, each selector that others continue notes which
// open elements and earlier siblings it matches, so that a combinator is one comparison. There is a
// frame for each open element, which lists the notes to undo when it closes. An element costs as
// much as the selectors in the buckets of its facts and the rules that match it; the total is
// limited. Raises ORT_E_NO_MEMORY and ORT_E_LIMIT; notes made before a raise can still be undone.
#include "css/css_match.h"

#include <cstring>
#include <initializer_list>

#include "css/css_cascade.h"
#include "css/css_engine.h"
#include "css/css_scan.h"

namespace {
struct subject {
  css_parser *css;
  void *node;
  int16_t elem_nid;
  bool has_parent;
};
} // namespace

// A step is about 5 nanoseconds. Work is charged by the time that it takes, a trace also for its
// memory. Selectors cost more when there are too many of them for the processor's caches.
constexpr size_t STEPS_PER_TRACE = 32;
constexpr size_t STEPS_PER_NOTE = 2;
constexpr size_t STEPS_PER_RULE = 4;
constexpr size_t STEPS_PER_SORTED_RULE = 32;
constexpr size_t MOST_STEPS_PER_SELECTOR = 12;
constexpr size_t SELECTORS_PER_STEP = 384;
constexpr size_t COMPARED_PER_STEP = 32; // bytes
constexpr size_t SEARCHED_PER_STEP = 4;  // bytes

static void gather_facts(css_parser *css, void *node);
static void add_fact(css_parser *css, css_word *word, const char *value);
static css_word *get_word(const css_parser *css, css_table table, int32_t nid);
static void close_frames(css_parser *css, void *parent);
static void close_frame(css_parser *css, bool before_sibling);
static void open_frame(css_parser *css, void *node);
static void note(css_parser *css, css_selector *selector, css_place place, uint32_t depth);
static void match_bucket(const subject &element, css_selector *selector);
static bool match(const subject &element, const css_selector &selector);
static bool match_left(const css_parser *css, const css_selector &selector);
static bool match_test(const subject &element, const css_test &test);
static bool match_value(css_parser *css, const css_test &test);
static bool has_item(const char *list, const char *item, size_t length);
static void add_rules(css_parser *css);
static void sort_rules(css_parser *css);
static size_t steps_per_selector(const css_parser *css);
static void take_steps(css_parser *css, size_t count);

void css_set_subject(css_parser *css, void *node, int16_t id_nid, const int16_t *class_nids,
                     int32_t class_num) {
  ort_vtr_resize(css->subject, 0);
  ++css->serial;
  css->subject_node = node;
  if (css_word *word = get_word(css, CSS_IDS, id_nid)) add_fact(css, word, nullptr);
  for (int32_t i = 0; i < class_num; ++i) {
    if (css_word *word = get_word(css, CSS_CLASSES, class_nids[i])) add_fact(css, word, nullptr);
  }
}

void css_add_subject_attr(css_parser *css, int16_t attr_nid, const char *value) {
  if (css_word *word = get_word(css, CSS_ATTRS, attr_nid)) add_fact(css, word, value);
}

ort_vtr *css_get_rules(css_parser *css, void *node, int16_t elem_nid) {
  void *parent = css->callbacks.get_parent(css->user, node, CSS_NO_NID);
  if (css->subject_node != node) gather_facts(css, node);
  css->subject_node = nullptr;
  close_frames(css, parent);
  take_steps(css, 0);

  ort_vtr_resize(css->matched, 0);
  subject element = {css, node, elem_nid, parent != nullptr};
  match_bucket(element, css->universal);
  if (elem_nid >= 0) match_bucket(element, css->elem_buckets[elem_nid]);
  for (size_t i = 0; i < ort_vtr_count(css->subject); ++i) {
    const css_word *word = ort_item<css_word *>(css->subject, i);
    match_bucket(element, word->bucket);
    if (!word->value) continue;
    css_name *pair = css_find(css, CSS_PAIRS, css_pair_key(word, word->value, word->value_length));
    if (pair) match_bucket(element, static_cast<css_word *>(pair)->bucket);
  }
  open_frame(css, node);
  take_steps(css, 0);
  add_rules(css);
  return css->result;
}

void css_enter_bucket(css_selector *selector) {
  selector->link = selector->bucket;
  selector->next = *selector->bucket;
  if (selector->next) selector->next->link = &selector->next;
  *selector->bucket = selector;
}

void css_end_document(css_parser *css) { close_frames(css, nullptr); }

static void gather_facts(css_parser *css, void *node) {
  css_set_subject(css, node, CSS_NO_NID, nullptr, 0);
  const css_callbacks &ask = css->callbacks;
  for (css_table table : {CSS_IDS, CSS_CLASSES, CSS_ATTRS}) {
    for (int32_t i = 0; i < static_cast<int32_t>(ort_vtr_count(css->words[table])); ++i) {
      take_steps(css, 1);
      int16_t nid = static_cast<int16_t>(i);
      const char *value = table == CSS_ATTRS ? ask.get_attr_value(css->user, node, nid) : nullptr;
      bool has = table == CSS_ATTRS     ? value != nullptr
                 : table == CSS_CLASSES ? ask.check_class(css->user, node, nid)
                                        : ask.check_id(css->user, node, nid);
      if (has) add_fact(css, get_word(css, table, nid), value);
    }
  }
}

static void add_fact(css_parser *css, css_word *word, const char *value) {
  if (word->mark == css->serial) return;
  ort_push(css->subject, word);
  word->mark = css->serial;
  word->value = value;
  word->value_length = value ? strlen(value) : 0;
}

static css_word *get_word(const css_parser *css, css_table table, int32_t nid) {
  const ort_vtr *words = css->words[table];
  return nid >= 0 && static_cast<size_t>(nid) < ort_vtr_count(words)
             ? ort_item<css_word *>(words, static_cast<size_t>(nid))
             : nullptr;
}

// Closes the frames of all elements that ended before a child of this parent began. The last one
// closed at the child's level is its preceding sibling.
static void close_frames(css_parser *css, void *parent) {
  for (size_t depth = ort_vtr_count(css->frames); depth > 0; --depth) {
    if (parent && ort_item<css_frame>(css->frames, depth - 1).node == parent) return;
    close_frame(css,
                parent && depth > 1 && ort_item<css_frame>(css->frames, depth - 2).node == parent);
  }
}

static void close_frame(css_parser *css, bool before_sibling) {
  size_t first = ort_top<css_frame>(css->frames).first, kept = first;
  size_t count = ort_vtr_count(css->traces);
  ort_vtr_pop(css->frames);
  auto depth = static_cast<uint32_t>(ort_vtr_count(css->frames));
  for (size_t i = first; i < count; ++i) {
    const auto &trace = ort_item<css_trace>(css->traces, i);
    note(css, trace.selector, trace.place, trace.previous);
  }
  // What matched the closed element has now matched an earlier child of its parent.
  for (size_t i = first; before_sibling && i < count; ++i) {
    const auto [selector, previous, place] = ort_item<css_trace>(css->traces, i);
    if (place != CSS_OPEN_ELEMENT) continue;
    selector->adjacent = css->serial;
    uint32_t earlier = selector->noted[CSS_EARLIER_SIBLING];
    if (!selector->preceding || earlier == depth) continue;
    ort_item<css_trace>(css->traces, kept++) = {selector, earlier, CSS_EARLIER_SIBLING};
    note(css, selector, CSS_EARLIER_SIBLING, depth);
  }
  ort_vtr_resize(css->traces, kept);
}

// Notes which selectors match the new element, for its descendants and later siblings.
static void open_frame(css_parser *css, void *node) {
  ort_push(css->frames, css_frame{node, ort_vtr_count(css->traces)});
  auto depth = static_cast<uint32_t>(ort_vtr_count(css->frames));
  for (size_t i = 0; i < ort_vtr_count(css->matched); ++i) {
    auto *selector = ort_item<css_selector *>(css->matched, i);
    uint32_t open = selector->noted[CSS_OPEN_ELEMENT];
    if (!selector->framed && (!selector->extended || open > 0)) continue;
    ort_push(css->traces, css_trace{selector, open, CSS_OPEN_ELEMENT});
    css->steps += STEPS_PER_TRACE;
    note(css, selector, CSS_OPEN_ELEMENT, depth);
  }
}

static void note(css_parser *css, css_selector *selector, css_place place, uint32_t depth) {
  bool was = selector->noted[place] > 0, is = depth > 0;
  selector->noted[place] = depth;
  css->steps += STEPS_PER_NOTE;
  if (was == is) return;
  size_t distance = steps_per_selector(css);
  for (css_selector *sleeper = selector->sleepers[place]; sleeper;
       sleeper = sleeper->next_sleeper) {
    css->steps += distance;
    if (is) {
      css_enter_bucket(sleeper);
    } else {
      *sleeper->link = sleeper->next;
      if (sleeper->next) sleeper->next->link = sleeper->link;
    }
  }
}

static void match_bucket(const subject &element, css_selector *selector) {
  size_t distance = steps_per_selector(element.css);
  for (; selector; selector = selector->next) {
    take_steps(element.css, distance + static_cast<size_t>(selector->test_count));
    if (match(element, *selector)) ort_push(element.css->matched, selector);
  }
}

static bool match(const subject &element, const css_selector &selector) {
  if (selector.left && !match_left(element.css, selector)) return false;
  for (int32_t i = 0; i < selector.test_count; ++i) {
    if (match_test(element, selector.tests[i]) == selector.tests[i].negated) return false;
  }
  return true;
}

static bool match_left(const css_parser *css, const css_selector &selector) {
  const css_selector &left = *selector.left;
  size_t open = left.noted[CSS_OPEN_ELEMENT], earlier = left.noted[CSS_EARLIER_SIBLING];
  size_t parent = ort_vtr_count(css->frames);
  switch (selector.combinator) {
  case '>': return open > 0 && open == parent;
  case '+': return left.adjacent == css->serial;
  case '~': return earlier > 0 && earlier == parent;
  default: return open > 0;
  }
}

static bool match_test(const subject &element, const css_test &test) {
  css_parser *css = element.css;
  switch (test.kind) {
  case CSS_TEST_ELEMENT: return test.elem_nid == element.elem_nid;
  case CSS_TEST_FIRST_CHILD:
    return element.has_parent && !css->callbacks.get_siblng(css->user, element.node, CSS_NO_NID);
  case CSS_TEST_ROOT: return !element.has_parent;
  case CSS_TEST_CLASS:
  case CSS_TEST_ID: return test.word->mark == css->serial;
  case CSS_TEST_ATTR:
  case CSS_TEST_VALUE: return test.word->mark == css->serial && match_value(css, test);
  default: return false;
  }
}

static bool match_value(css_parser *css, const css_test &test) {
  const char *value = test.word->value;
  size_t length = test.word->value_length;
  bool exact = test.kind == CSS_TEST_VALUE;
  if (exact ? length != test.length : length < test.length) return false;
  if (!exact && test.op == 0) return true;
  bool searches = test.op == '~' || test.op == '*';
  take_steps(css, searches ? length / SEARCHED_PER_STEP : test.length / COMPARED_PER_STEP);
  if (exact) return memcmp(value, test.value, length) == 0;
  if (test.op == '~') return has_item(value, test.value, test.length);
  bool begins = memcmp(value, test.value, test.length) == 0;
  if (test.op == '|') return begins && (length == test.length || value[test.length] == '-');
  if (test.length == 0) return false; // Selectors 3, 6.3.2
  switch (test.op) {
  case '^': return begins;
  case '$': return memcmp(value + length - test.length, test.value, test.length) == 0;
  default: return strstr(value, test.value) != nullptr;
  }
}

static bool has_item(const char *list, const char *item, size_t length) {
  for (;;) {
    while (css_isspace(*list)) ++list;
    if (!*list) return false;
    const char *from = list;
    while (*list && !css_isspace(*list)) ++list;
    auto n = static_cast<size_t>(list - from);
    if (n == length && memcmp(from, item, n) == 0) return true;
  }
}

// Collects each block once, with the most specific of its rule's selectors that match.
static void add_rules(css_parser *css) {
  ort_vtr_resize(css->result, 0);
  for (size_t i = 0; i < ort_vtr_count(css->matched); ++i) {
    const auto *selector = ort_item<css_selector *>(css->matched, i);
    for (const css_query *query = selector->queries; query; query = query->next) {
      take_steps(css, 1);
      ort_item<uint64_t>(css->queries, query->number) = css->serial;
    }
    css_rule_entry *rule = selector->rules;
    for (; rule; rule = rule->next) ort_push<css_rule *>(css->result, rule);
  }
  sort_rules(css);
  size_t kept = 0;
  for (size_t i = 0; i < ort_vtr_count(css->result); ++i) {
    css_rule *rule = ort_item<css_rule *>(css->result, i);
    auto *block = static_cast<css_block *>(rule->decls);
    if (block->mark == css->serial) continue;
    block->mark = css->serial;
    take_steps(css, static_cast<size_t>(block->decl_count));
    ort_item<css_rule *>(css->result, kept++) = rule;
  }
  ort_vtr_resize(css->result, kept);
}

// Buckets yield the last rule first, so the rules often arrive in order.
static void sort_rules(css_parser *css) {
  size_t count = ort_vtr_count(css->result), i = 1;
  take_steps(css, STEPS_PER_RULE * count);
  while (i < count && css_compare_rules(&ort_item<css_rule *>(css->result, i - 1),
                                        &ort_item<css_rule *>(css->result, i)) <= 0)
    ++i;
  if (i >= count) return;
  take_steps(css, STEPS_PER_SORTED_RULE * count);
  ort_vtr_sort_c(css->result, css_compare_rules);
}

static size_t steps_per_selector(const css_parser *css) {
  size_t steps = 1 + css->selector_count / SELECTORS_PER_STEP;
  return steps < MOST_STEPS_PER_SELECTOR ? steps : MOST_STEPS_PER_SELECTOR;
}

static void take_steps(css_parser *css, size_t count) {
  css->steps += count;
  if (css->steps > ORT_LIMIT_RULE_STEPS)
    ort_error(css->core, ORT_E_LIMIT, "steps to match style rules",
              ort_errprintf(css->core, "%d", ORT_LIMIT_RULE_STEPS), nullptr, nullptr);
}
