// css_names.cpp: the engine's arena, and its tables of texts. Used by all files of css/.
//
// Raises ORT_E_NO_MEMORY.
#include "css/css_names.h"

#include <algorithm>
#include <cstring>

#include "css/css_engine.h"
#include "css/css_external.h"

struct css_chunk {
  css_chunk *next;
};

constexpr size_t FIRST_SIZE = 512, LAST_SIZE = 32 * 1024; // each chunk is twice as large
constexpr size_t BIG_SIZE = FIRST_SIZE / 2; // blocks of this size and up have a chunk of their own

static uint64_t end_bit(const css_key &key);
static unsigned key_byte(const css_key &key, uint64_t i);
static unsigned key_bit(const css_key &key, uint64_t bit);
static uint64_t first_difference(const css_key &a, const css_key &b);
static css_name **descend(css_name *head, const css_key &key, uint64_t limit);

void *css_keep(css_parser *css, size_t size) {
  size = (size + 7) / 8 * 8;
  if (size >= BIG_SIZE) { // after the chunk in use, if any
    auto *chunk =
        static_cast<css_chunk *>(ort_calloc(css->core, 1, sizeof(css_chunk) + size, __func__));
    css_chunk **place = css->chunks ? &css->chunks->next : &css->chunks;
    chunk->next = *place;
    *place = chunk;
    return chunk + 1;
  }
  if (css->chunk_used + size > css->chunk_size) {
    const size_t larger = css->chunk_size ? std::min(2 * css->chunk_size, LAST_SIZE) : FIRST_SIZE;
    auto *chunk = static_cast<css_chunk *>(ort_calloc(css->core, 1, larger, __func__));
    css->chunk_size = larger;
    chunk->next = css->chunks;
    css->chunks = chunk;
    css->chunk_used = sizeof(css_chunk);
  }
  char *block = reinterpret_cast<char *>(css->chunks) + css->chunk_used;
  css->chunk_used += size;
  return block;
}

const char *css_keep_text(css_parser *css, const char *text, size_t length) {
  char *copy = static_cast<char *>(css_keep(css, length + 1));
  memcpy(copy, text, length);
  return copy;
}

void css_free_chunks(css_parser *css) {
  while (css_chunk *chunk = css->chunks) {
    css->chunks = chunk->next;
    ort_free(css->core, chunk);
  }
}

void css_init_names(css_parser *css) {
  for (css_name &head : css->tables) head.link[0] = &head;
}

css_name *css_find(const css_parser *css, css_table table, const css_key &key) {
  css_name *head = const_cast<css_name *>(&css->tables[table]);
  css_name *name = *descend(head, key, end_bit(key));
  bool same = name != head && name->key.salt == key.salt && name->key.length == key.length &&
              memcmp(name->key.text, key.text, key.length) == 0;
  return same ? name : nullptr;
}

css_name *css_add(css_parser *css, css_table table, const css_key &key, size_t record_size) {
  css_name *head = &css->tables[table];
  auto *name = static_cast<css_name *>(css_keep(css, record_size));
  name->key = {css_keep_text(css, key.text, key.length), key.length, key.salt};
  name->bit = first_difference(name->key, (*descend(head, key, end_bit(key)))->key);
  css_name **place = descend(head, key, name->bit);
  unsigned side = key_bit(key, name->bit);
  name->link[side] = name;
  name->link[1 - side] = *place;
  *place = name;
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

// Two keys differ no later than at the byte that ends the shorter one, so a search can stop there.
static uint64_t end_bit(const css_key &key) {
  return 8 * (sizeof key.salt + uint64_t{key.length} + 1) + 1;
}

static unsigned key_byte(const css_key &key, uint64_t i) {
  if (i < sizeof key.salt) return key.salt >> (8 * i) & 255;
  i -= sizeof key.salt;
  return i < key.length ? static_cast<unsigned char>(key.text[i]) : 0;
}

static unsigned key_bit(const css_key &key, uint64_t bit) {
  return key_byte(key, (bit - 1) / 8) >> (7 - (bit - 1) % 8) & 1;
}

static uint64_t first_difference(const css_key &a, const css_key &b) {
  uint64_t i = 0;
  while (key_byte(a, i) == key_byte(b, i)) ++i;
  uint64_t bit = 8 * i + 1;
  while (key_bit(a, bit) == key_bit(b, bit)) ++bit;
  return bit;
}

// The link where the search for key ends: at a leaf, or at the first node that decides at limit or
// later. That node shares with the key whatever all nodes below it share.
static css_name **descend(css_name *head, const css_key &key, uint64_t limit) {
  css_name **link = &head->link[0];
  uint64_t bit = 0;
  while ((*link)->bit > bit && (*link)->bit < limit) {
    bit = (*link)->bit;
    link = &(*link)->link[key_bit(key, bit)];
  }
  return link;
}
