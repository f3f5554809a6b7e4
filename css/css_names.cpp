// css_names.cpp: the engine's arena, and its tables of texts. Used by all files of css/.
//
// Raises ORT_E_NO_MEMORY.
#include "css/css_names.h"

#include <cstring>

#include "css/css_engine.h"
#include "css/css_external.h"

void *css_keep(css_parser *css, size_t size) {
  return ort_arena_take(css->core, &css->kept, size, __func__);
}

const char *css_keep_text(css_parser *css, const char *text, size_t length) {
  char *copy = static_cast<char *>(css_keep(css, length + 1));
  memcpy(copy, text, length);
  return copy;
}

void css_free_names(css_parser *css) {
  for (ort_name_index &table : css->tables) ort_index_clear(css->core, &table);
  ort_arena_clear(css->core, &css->kept);
}

css_name *css_find(const css_parser *css, css_table table, const css_key &key) {
  const ort_name_entry *entry =
      ort_index_find(css->core, &css->tables[table], {key.text, key.length}, key.salt);
  return entry ? static_cast<css_name *>(entry->value) : nullptr;
}

css_name *css_add(css_parser *css, css_table table, const css_key &key, size_t record_size) {
  auto *name = static_cast<css_name *>(css_keep(css, record_size));
  name->key = {css_keep_text(css, key.text, key.length), key.length, key.salt};
  ort_index_add(css->core, &css->tables[table], name->key.text, key.salt)->value = name;
  return name;
}

css_word *css_intern_word(css_parser *css, css_table table, const char *text) {
  auto *word = css_intern<css_word>(css, table, {text, strlen(text), 0});
  if (word->number == 0) {
    ort_vtr *words = css->words[table];
    size_t count = ort_vtr_count(words);
    if (count == CSS_MAX_NAMES) {
      constexpr const char *kinds[CSS_NUMBERED] = {"attribute", "class", "id"};
      if (!css->too_many[table])
        ort_warning(css->core, CSS_E_NAMES, ort_errprintf(css->core, "%d", static_cast<int>(count)),
                    kinds[table], nullptr, nullptr);
      css->too_many[table] = true;
      return nullptr;
    }
    ort_push(words, word);
    word->number = static_cast<int32_t>(count) + 1;
  }
  return word;
}

int16_t css_get_nid(const css_parser *css, css_table table, const char *text) {
  css_name *name = css_find(css, table, {text, strlen(text), 0});
  return static_cast<int16_t>(name ? static_cast<css_word *>(name)->number - 1 : CSS_NO_NID);
}
