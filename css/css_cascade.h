// css_cascade.h: declarations and the rules made of them.
#ifndef CSS_CASCADE_H
#define CSS_CASCADE_H

#include "css/css_names.h"

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

// Passes the declaration in css->name and css->value to get_prop and adds the result to
// css->declarations.
void css_declare(css_parser *css, bool important);

// Turns css->group and css->declarations into rules.
void css_end_rule(css_parser *css);

// Makes a selector and those to its left ready to match.
void css_activate(css_parser *css, css_selector *selector);

// Orders pointers to css_rule pointers by decreasing precedence.
int css_compare_rules(const void *a, const void *b);

#endif
