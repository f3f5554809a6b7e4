// css.h: a CSS 2.1 engine that knows nothing of SVG.
//
// A reader makes one css_parser per document, feeds it style sheets with css_parse, and calls
// css_get_rules once for each element, in document order, while it builds the tree. The engine
// learns about declarations and elements through ten callbacks. Every function may raise
// ORT_E_NO_MEMORY and whatever a callback raises; the parser then stays valid and deletable.
#ifndef CSS_H
#define CSS_H

#include "core/ort_core.h"
#include "css/css_context.h"

struct css_parser;
struct css_selector;

// Name number that stands for "any name" in a query and "no such name" in an answer.
constexpr int16_t CSS_NO_NID = -1;

// The ten callbacks. user is the pointer given to css_parser_new. Nodes are opaque to the engine.
struct css_callbacks {
  // Number of an element name (0 to the highest element id), or -1 for a name that no element can
  // have.
  int16_t (*get_elem_nid)(void *user, const char *name);
  // Parses a declaration's value: without "!important" and surrounding blanks, a comment being a
  // blank, escapes decoded (what would read as something else then stands in quotes). Returns the
  // value, which the engine hands back in rules, or null for a declaration to be dropped. A
  // shorthand calls css_add_value for each of its longhands and returns null.
  void *(*get_prop)(void *user, const char *name, const char *value, bool important);
  // Text of an element's attribute, or null when it has none.
  const char *(*get_attr_value)(void *user, void *node, int16_t attr_nid);
  bool (*check_class)(void *user, void *node, int16_t class_nid);
  bool (*check_id)(void *user, void *node, int16_t id_nid);
  // The parent if its name is elem_nid (-1: any), else null. The outermost element has none.
  void *(*get_ancest)(void *user, void *node, int16_t elem_nid);
  void *(*get_parent)(void *user, void *node, int16_t elem_nid);
  // The nearest preceding sibling element named elem_nid (-1: the preceding one, whatever its
  // name), or null.
  void *(*get_siblng)(void *user, void *node, int16_t elem_nid);
  // An @font-face rule was met.
  void (*at_fontface)(void *user);
  // An @import will be asked of the context by this name.
  void (*at_import)(void *user, const char *href);
};

// The declarations that one rule gives to the elements it matches, in the order in which they are
// to be applied.
struct css_decl_block {
  bool important;
  int32_t decl_count;
  void **decl_values;      // what get_prop or css_add_value handed over; never null
  const char **decl_texts; // the text given to get_prop for each, for the log
};

struct css_rule {
  css_selector *selector;
  css_decl_block *decls;
};

// Makes an engine. context may be null and is not owned. max_elem_nid is the highest number that
// get_elem_nid returns.
css_parser *css_parser_new(ort_core *core, void *user, const css_context *context,
                           const css_callbacks *callbacks, int max_elem_nid);

// Prepares a new engine; called once, after css_parser_new. Registers the engine's error table with
// the core.
void css_parser_init(css_parser *css);

void css_parser_delete(css_parser *css); // null is allowed

// Parses one style sheet and adds its rules after those already known. Malformed parts are dropped
// as CSS 2.1, 4.2 requires. Imported sheets (@import) are read through the context and precede the
// rest of the sheet.
void css_parse(css_parser *css, const char *text);

// The same for a sheet that was read from href: its imports are relative to href, and it cannot
// import itself. css_parse is this with null: imports are relative to the context's folder.
void css_parse_sheet(css_parser *css, const char *text, const char *href);

// While a sheet is parsed, for callbacks: where in its text the declaration or the @import begins
// that is being read; imported sheets lie at their @import. Otherwise null.
const char *css_get_place(const css_parser *css);

// Sets before parsing that imported sheets are read with this encoding, see below; null: none.
void css_set_encoding(css_parser *css, const char *encoding);

// For get_prop: adds the value of one longhand of the shorthand being parsed.
void css_add_value(css_parser *css, const char *name, void *value);

// For get_prop: whether it gets the first declaration of its rule, void ones apart.
bool css_is_rule_empty(const css_parser *css);

// Reads the sheet that href names under the context's policy. Returns its text in UTF-8 (freed with
// ort_free), or null after a warning (10200, 10201) when it is refused or cannot be read. encoding:
// null, or that of a sheet that does not tell its own and is not UTF-16 without a mark.
char *css_read_external_stylesheet(ort_core *core, const char *href, const css_context *context,
                                   const char *encoding, int log_level);

// Numbers of the names that selectors use; -1 when no selector does. For attributes: when no
// selector tests it.
int16_t css_get_attr_nid(const css_parser *css, const char *name);
bool css_has_attr_nids(const css_parser *css); // whether any selector tests an attribute
int16_t css_get_class_nid(const css_parser *css, const char *name);
int16_t css_get_id_nid(const css_parser *css, const char *name);

// Supplies the facts about the element for which css_get_rules is called next: the numbers of its
// id (-1: none) and classes, then those attributes that have numbers (of several with one number,
// the first counts). class_nids is read at once; an attribute's value must last until css_get_rules
// returns. Without this call the engine asks check_id, check_class and get_attr_value, at each
// element, about every name that a selector uses.
void css_set_subject(css_parser *css, void *node, int16_t id_nid, const int16_t *class_nids,
                     int32_t class_num);
void css_add_subject_attr(css_parser *css, int16_t attr_nid, const char *value);

// The rules that match an element, by decreasing precedence: important declarations first, then by
// specificity, then by order, the last first. Null or empty when none matches. The vector of
// css_rule pointers is the engine's and valid until the next call. Elements must be asked for in
// document order, each once; an element without parent starts a new document. Sheets are parsed
// before the first element.
ort_vtr *css_get_rules(css_parser *css, void *node, int16_t elem_nid);

// Adds a query: a selector, or several separated by commas, that elements are matched with like a
// rule's but that gives no values. Returns its number, from 0. Added before the first element.
// Raises CSS_E_SELECTOR (10205) for a malformed one.
size_t css_add_query(css_parser *css, const char *selector);

// Whether the element of the last call of css_get_rules matches a query.
bool css_matches_query(const css_parser *css, size_t number);

// The text of a selector. It is made on the first call and lasts as long as the engine.
// css_logg_sel logs "\t\t\t\tselector: TEXT\n", the text cut like a parameter of a message.
const char *css_get_selector_text(css_parser *css, css_selector *selector);
void css_logg_sel(css_parser *css, css_selector *selector);

#endif
