// css_engine.h: the engine's record, for the files of css/ only.
//
// Whatever is kept until the engine is deleted lies in an arena (css_keep); everything else is
// scratch owned by css_parser, so that a raise loses nothing.
#ifndef CSS_ENGINE_H
#define CSS_ENGINE_H

#include "css/css_cascade.h"
#include "css/css_select.h"

struct css_sheet { // a sheet being parsed
  char *href;      // null: none
  char *text;      // of an imported sheet
};

struct css_frame { // an open element
  void *node;
  size_t first; // of its traces
};

// A note made by a frame, to be undone when it closes.
struct css_trace {
  css_selector *selector;
  uint32_t previous;
  css_place place;
};

struct css_parser {
  ort_core *core;
  void *user;
  const css_context *context;
  const char *encoding; // of imported sheets; null: none
  css_callbacks callbacks;
  int max_elem_nid;
  int log_level;

  ort_arena kept;                    // css_keep
  ort_name_index tables[CSS_TABLES]; // css_name, by its key
  ort_vtr *words[CSS_NUMBERED];      // css_word *, by number
  bool too_many[CSS_NUMBERED];       // warned that there are more than CSS_MAX_NAMES
  css_selector **elem_buckets;       // by element number
  css_selector *universal;           // bucket of selectors without id, class, attribute and element
  uint32_t selector_count;
  uint64_t rule_count;

  ort_vtr *sheets;   // css_sheet, the importing ones below
  const char *place; // in the text of the lowest; null between sheets
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
  ort_vtr *queries;   // uint64_t: serial of the last element that matches each
  ort_vtr *frames;    // css_frame
  ort_vtr *traces;    // css_trace
};

#endif
