// css_cascade.cpp: collects the declarations of a rule, attaches its blocks to its selectors, and
// orders the rules that match an element (CSS 2.1, 6.4.1). Called by the rule parser, by get_prop
// for shorthands, and by the matcher.
//
// Raises ORT_E_NO_MEMORY and passes on what get_prop raises.
#include "css/css_cascade.h"

#include <initializer_list>

#include "css/css_engine.h"
#include "css/css_match.h"
#include "css/css_names.h"

static css_block *make_block(css_parser *css, bool important);
static void add_rule(css_parser *css, css_selector *selector, css_block *block);
static css_selector **find_bucket(css_parser *css, const css_selector *selector, bool *crowded);

void css_declare(css_parser *css, bool important) {
  const char *name = ort_bs_text(css->name);
  css->current = {nullptr, nullptr, nullptr, important, false};
  void *value = css->callbacks.get_prop(css->user, name, ort_bs_text(css->value), important);
  if (value) css_add_value(css, name, value);
}

void css_add_value(css_parser *css, const char *name, void *value) {
  css_declaration *current = &css->current;
  if (!current->text)
    current->text = css_keep_text(css, ort_bs_text(css->value), ort_bs_length(css->value));
  ort_bs_clear(css->lower);
  for (; *name; ++name)
    ort_bs_append_byte(css->lower, static_cast<char>(ort_isupper(*name) ? *name | 32 : *name));
  css_declaration declaration = *current;
  declaration.property = css_intern<css_property>(
      css, CSS_PROPERTIES, {ort_bs_text(css->lower), ort_bs_length(css->lower), 0});
  declaration.value = value;
  ort_push(css->declarations, declaration);
}

bool css_is_rule_empty(const css_parser *css) { return ort_vtr_count(css->declarations) == 0; }

void css_end_rule(css_parser *css) {
  ++css->rule_count;
  if (ort_vtr_count(css->group) == 0) return;
  for (bool important : {true, false}) {
    css_block *block = make_block(css, important);
    for (size_t i = 0; block && i < ort_vtr_count(css->group); ++i)
      add_rule(css, ort_item<css_selector *>(css->group, i), block);
  }
}

// Only selectors that are asked for are ever tried.
void css_activate(css_parser *css, css_selector *selector) {
  for (; selector && !selector->active; selector = selector->left) {
    bool crowded, sibling = selector->combinator == '+' || selector->combinator == '~';
    selector->bucket = find_bucket(css, selector, &crowded);
    css_selector *left = selector->left;
    if (left && crowded) {
      css_selector **sleepers = &left->sleepers[sibling ? CSS_EARLIER_SIBLING : CSS_OPEN_ELEMENT];
      selector->next_sleeper = *sleepers;
      *sleepers = selector;
    } else {
      css_enter_bucket(selector);
    }
    selector->active = true;
    if (!left) return;
    left->extended = true;
    left->framed |= selector->combinator != ' ';
    left->preceding |= sibling;
  }
}

int css_compare_rules(const void *a, const void *b) {
  const css_rule *rule_a = *static_cast<css_rule *const *>(a),
                 *rule_b = *static_cast<css_rule *const *>(b);
  const auto *block_a = static_cast<css_block *>(rule_a->decls),
             *block_b = static_cast<css_block *>(rule_b->decls);
  if (block_a->important != block_b->important) return block_b->important - block_a->important;
  uint64_t weight_a = rule_a->selector->specificity, weight_b = rule_b->selector->specificity;
  if (weight_a != weight_b) return (weight_b > weight_a) - (weight_b < weight_a);
  return (block_b->order > block_a->order) - (block_b->order < block_a->order);
}

// The last declaration of each property wins. Null if no declaration has this importance.
static css_block *make_block(css_parser *css, bool important) {
  ort_vtr *declarations = css->declarations;
  int32_t count = 0;
  ++css->declaration_pass;
  for (size_t i = ort_vtr_count(declarations); i > 0; --i) {
    auto &declaration = ort_item<css_declaration>(declarations, i - 1);
    if (declaration.important != important || declaration.property->mark == css->declaration_pass)
      continue;
    declaration.property->mark = css->declaration_pass;
    declaration.wins = true;
    ++count;
  }
  if (count == 0) return nullptr;

  auto *block = static_cast<css_block *>(css_keep(css, sizeof(css_block)));
  size_t size = static_cast<size_t>(count) * sizeof(void *);
  block->decl_values = static_cast<void **>(css_keep(css, size));
  block->decl_texts = static_cast<const char **>(css_keep(css, size));
  block->important = important;
  block->order = css->rule_count;
  for (size_t i = 0; i < ort_vtr_count(declarations); ++i) {
    const auto &declaration = ort_item<css_declaration>(declarations, i);
    if (declaration.important != important || !declaration.wins) continue;
    block->decl_values[block->decl_count] = declaration.value;
    block->decl_texts[block->decl_count++] = declaration.text;
  }
  return block;
}

static void add_rule(css_parser *css, css_selector *selector, css_block *block) {
  css_activate(css, selector);
  auto *rule = static_cast<css_rule_entry *>(css_keep(css, sizeof(css_rule_entry)));
  rule->selector = selector;
  rule->decls = block;
  rule->next = selector->rules;
  selector->rules = rule;
}

// The bucket of the test that the fewest elements pass. crowded: many elements try it.
static css_selector **find_bucket(css_parser *css, const css_selector *selector, bool *crowded) {
  const css_test *key = nullptr;
  for (int32_t i = 0; i < selector->test_count; ++i) {
    const css_test *test = &selector->tests[i];
    if (!test->negated && test->kind >= CSS_TEST_ELEMENT && (!key || test->kind > key->kind))
      key = test;
  }
  *crowded = !key || key->kind < CSS_TEST_VALUE;
  if (!key) return &css->universal;
  if (key->kind == CSS_TEST_ELEMENT) return &css->elem_buckets[key->elem_nid];
  if (key->kind != CSS_TEST_VALUE) return &key->word->bucket;
  return &css_intern<css_word>(css, CSS_PAIRS, css_pair_key(key->word, key->value, key->length))
              ->bucket;
}
