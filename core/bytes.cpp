// bytes.cpp: growing byte strings. Everyone calls it; appending may raise ORT_E_NO_MEMORY and then
// leaves the string as it was.
#include <string.h>

#include "core/ort_state.h"

struct ort_bs {
  ort_core *core;
  char *text; // terminated; null before the first byte
  size_t length, capacity;
};

namespace {

struct bytes_out {
  ort_out out;
  ort_bs *bs;
};

} // namespace

ort_bs *ort_bs_new(ort_core *core) {
  ort_bs *bs = ort_new<ort_bs>(core, "ort_bs_new");
  bs->core = core;
  return bs;
}

void ort_bs_delete(ort_bs *bs) {
  if (!bs) return;
  ort_free(bs->core, bs->text);
  ort_free(bs->core, bs);
}

void ort_bs_clear(ort_bs *bs) { ort_bs_shorten(bs, 0); }

const char *ort_bs_text(const ort_bs *bs) { return bs->text ? bs->text : ""; }

size_t ort_bs_length(const ort_bs *bs) { return bs->length; }

bool ort_bs_has_room(const ort_bs *bs, size_t length) { return length < bs->capacity - bs->length; }

void ort_bs_append(ort_bs *bs, const void *bytes, size_t length) {
  if (length == 0) return;
  if (!ort_bs_has_room(bs, length)) {
    size_t capacity;
    if (__builtin_add_overflow(bs->length, length, &capacity) ||
        __builtin_add_overflow(capacity, capacity / 2 + 32, &capacity)) {
      capacity = SIZE_MAX;
    }
    bs->text = static_cast<char *>(ort_realloc(bs->core, bs->text, capacity, "ort_bs_append"));
    bs->capacity = capacity;
  }
  memcpy(bs->text + bs->length, bytes, length);
  bs->length += length;
  bs->text[bs->length] = '\0';
}

void ort_bs_append_text(ort_bs *bs, const char *text) { ort_bs_append(bs, text, strlen(text)); }

void ort_bs_append_escaped(ort_bs *bs, const char *text) {
  const auto put = [](ort_out *out, const char *bytes, size_t length) {
    ort_bs_append(reinterpret_cast<bytes_out *>(out)->bs, bytes, length);
  };
  bytes_out to = {{put}, bs};
  ort_put_escaped(&to.out, text, SIZE_MAX);
}

void ort_bs_append_byte(ort_bs *bs, char byte) { ort_bs_append(bs, &byte, 1); }

void ort_bs_shorten(ort_bs *bs, size_t length) {
  if (!bs->text) return;
  bs->length = length;
  bs->text[length] = '\0';
}
