// css_query.cpp: selectors without declarations, by which readers ask for elements. Called by
// readers.
//
// A query is matched with the rules and gives no values. Raises ORT_E_NO_MEMORY and CSS_E_SELECTOR.
#include <cstring>

#include "css/css_cascade.h"
#include "css/css_engine.h"
#include "css/css_external.h"
#include "css/css_match.h"

size_t css_add_query(css_parser *css, const char *selector) {
  css_end_document(css);
  if (const char *fault = css_parse_group(css, selector, selector + strlen(selector))) {
    const auto position = static_cast<int>(fault - selector) + 1;
    ort_error(css->core, CSS_E_SELECTOR, selector, ort_errprintf(css->core, "%d", position));
  }
  const size_t number = ort_vtr_count(css->queries);
  ort_push(css->queries, uint64_t{0});
  for (size_t i = 0; i < ort_vtr_count(css->group); ++i) {
    auto *part = ort_item<css_selector *>(css->group, i);
    css_activate(css, part);
    auto *query = static_cast<css_query *>(css_keep(css, sizeof(css_query)));
    *query = {number, part->queries};
    part->queries = query;
  }
  return number;
}

bool css_matches_query(const css_parser *css, size_t number) {
  return ort_item<uint64_t>(css->queries, number) == css->serial;
}
