// css_names.h: the engine's arena, and its tables of texts.
#ifndef CSS_NAMES_H
#define CSS_NAMES_H

#include "css/css.h"

struct css_key {
  const char *text; // without NUL bytes
  size_t length;
  uint32_t salt; // equal texts with different salts are different keys
};

// Head of every record that is looked up by a text.
struct css_name {
  css_key key;
};

// A class, id or attribute name, or an attribute's name with its value.
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
void css_free_names(css_parser *css); // and all that was kept

css_name *css_find(const css_parser *css, css_table table, const css_key &key);

// Adds a key that is not in the table. The record is zeroed except for its head; the text is
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

// The word of a class, id or attribute name, numbered if it is new; null, after a warning, if there
// are too many.
css_word *css_intern_word(css_parser *css, css_table table, const char *text);
int16_t css_get_nid(const css_parser *css, css_table table, const char *text);

#endif
