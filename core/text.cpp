// text.cpp: copies and comparisons of text, hexadecimal and base64. Everyone calls it; what makes a
// text may raise ORT_E_NO_MEMORY.
#include <string.h>

#include "core/ort_core.h"

static int hex_digit(char c);
static int base64_digit(unsigned char c);
static unsigned char lower(char c);

// ---- Copies -------------------------------------------------------------------------------------

char *ort_strdup(ort_core *core, const char *text) {
  return ort_strndup(core, text, strlen(text), "ort_strdup");
}

char *ort_strndup(ort_core *core, const char *text, size_t length, const char *tag) {
  char *copy = static_cast<char *>(ort_malloc(core, length + 1, tag));
  memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

static char *new_text(ort_core *core, size_t size, int flags, const char *tag) {
  return static_cast<char *>(flags & ORT_DUP_TEMPORARY ? ort_malloc_tmp(core, size, tag)
                                                       : ort_malloc(core, size, tag));
}

char *ort_strdup_ext(ort_core *core, const char *text, int flags, const char *tag) {
  const size_t size = strlen(text) + 1;
  return static_cast<char *>(memcpy(new_text(core, size, flags, tag), text, size));
}

// ---- Comparisons --------------------------------------------------------------------------------

int ort_strcmp(const char *a, const char *b) { return strcmp(a, b); }

int ort_stricmp_a(const char *a, const char *b) { return ort_strincmp_a(a, b, SIZE_MAX); }

int ort_strincmp_a(const char *a, const char *b, size_t n) {
  for (; n > 0; --n, ++a, ++b) {
    const int difference = lower(*a) - lower(*b);
    if (difference != 0 || *a == '\0') return difference;
  }
  return 0;
}

static unsigned char lower(char c) {
  return static_cast<unsigned char>(ort_isupper(c) ? c - 'A' + 'a' : c);
}

// ---- Binary data as text ------------------------------------------------------------------------

int ort_hex2bin_a(const char *text, int mode) {
  const int digit = hex_digit(text[0]);
  if (mode == ORT_HEX_DIGIT) return digit;
  if (mode == ORT_HEX_TWICE) return 17 * digit;
  return 16 * digit + (text[0] ? hex_digit(text[1]) : 0);
}

// Another character counts as 0.
static int hex_digit(char c) {
  if (!ort_isxdigit(c)) return 0;
  return (c & 0xF) + (ort_isdigit(c) ? 0 : 9);
}

uint32_t ort_get_be_ulong3(const unsigned char *bytes) {
  return static_cast<uint32_t>(bytes[0] << 16 | bytes[1] << 8 | bytes[2]);
}

char *ort_str2hexstr(ort_core *core, const void *bytes, size_t count, const char *separator,
                     int flags, const char *tag) {
  const size_t gap = strlen(separator);
  char *text = new_text(core, count * (2 + gap) + 1, flags, tag);
  char *to = text;
  for (size_t i = 0; i < count; ++i) {
    if (i > 0) to = static_cast<char *>(memcpy(to, separator, gap)) + gap;
    const unsigned char byte = static_cast<const unsigned char *>(bytes)[i];
    *to++ = "0123456789abcdef"[byte >> 4];
    *to++ = "0123456789abcdef"[byte & 15];
  }
  *to = '\0';
  return text;
}

size_t ort_decode_base64(ort_core *core, const char *text, size_t length, unsigned char **buffer) {
  *buffer = nullptr;
  *buffer = static_cast<unsigned char *>(ort_malloc(core, length / 4 * 3 + 3, "ort_decode_base64"));
  unsigned char *to = *buffer;
  uint32_t bits = 0;
  int bit_count = 0;
  for (size_t i = 0; i < length && text[i] != '='; ++i) {
    auto byte = static_cast<unsigned char>(text[i]);
    if (byte == '%' && length - i > 2 && ort_isxdigit(text[i + 1]) && ort_isxdigit(text[i + 2])) {
      byte = static_cast<unsigned char>(ort_hex2bin_a(text + i + 1, ORT_HEX_PAIR));
      if (byte == '=') break;
      i += 2;
    }
    const int digit = base64_digit(byte);
    if (digit < 0) continue;
    bits = bits << 6 | static_cast<uint32_t>(digit);
    bit_count += 6;
    if (bit_count >= 8) {
      bit_count -= 8;
      *to++ = static_cast<unsigned char>(bits >> bit_count);
    }
  }
  return static_cast<size_t>(to - *buffer);
}

static int base64_digit(unsigned char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  return c == '+' ? 62 : c == '/' ? 63 : -1;
}
