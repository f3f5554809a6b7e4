// format.cpp: the small formatter behind the log, messages and ort_errprintf. Independent of the
// locale; raises only what the output's put raises.
#include <charconv>
#include <stdarg.h>
#include <string.h>

#include "core/ort_state.h"

namespace {

struct conversion {
  char type;
  bool is_long, zeros;
  int width;
};

struct escape_out {
  ort_out out;
  char *buffer; // null: only the length counts
  size_t length;
};

} // namespace

static void put_to_escape(ort_out *out, const char *bytes, size_t length);
static const char *read_conversion(const char *format, conversion *c, int star);
static void put_padded(ort_out *out, const conversion &c, const char *bytes, size_t length);
static size_t format_unsigned(char *buffer, uint64_t value, int base, const char *prefix);
static size_t format_signed(char *buffer, int64_t value);
static size_t plain_character(const unsigned char *p);
static size_t utf8_character(const unsigned char *p);
static bool turns_direction(const unsigned char *p);

void ort_put_format(ort_out *out, const char *format, va_list values) {
  char buffer[32];
  while (*format) {
    const size_t literal = strcspn(format, "%");
    if (literal) out->put(out, format, literal);
    format += literal;
    if (!*format) break;

    conversion c = {};
    const bool star = format[1] == '*';
    format = read_conversion(format + 1, &c, star ? va_arg(values, int) : 0);
    size_t length = 0;
    switch (c.type) {
    case 'a': {
      const char *text = va_arg(values, const char *);
      if (text) ort_put_escaped(out, text, SIZE_MAX);
      continue;
    }
    case 's': {
      const char *text = va_arg(values, const char *);
      put_padded(out, c, text ? text : "", text ? strlen(text) : 0);
      continue;
    }
    case 'd':
      length = format_signed(buffer, c.is_long ? va_arg(values, long) : va_arg(values, int));
      break;
    case 'X':
      length = format_unsigned(
          buffer, c.is_long ? va_arg(values, unsigned long) : va_arg(values, unsigned), 16, "");
      for (size_t i = 0; i < length; ++i) {
        if (buffer[i] >= 'a') buffer[i] = static_cast<char>(buffer[i] - 'a' + 'A');
      }
      break;
    case 'p':
      length =
          format_unsigned(buffer, reinterpret_cast<uintptr_t>(va_arg(values, void *)), 16, "0x");
      break;
    case 'g': length = ort_format_g(buffer, va_arg(values, double)); break;
    case 'c':
      buffer[0] = static_cast<char>(va_arg(values, int));
      length = 1;
      break;
    case '\0': return;
    default: // "%%"
      buffer[0] = c.type;
      length = 1;
    }
    put_padded(out, c, buffer, length);
  }
}

void ort_put_escaped(ort_out *out, const char *text, size_t limit) {
  const char *run = text; // start of the bytes that pass unchanged and are not put yet
  size_t written = 0;
  while (*text) {
    const size_t plain = plain_character(reinterpret_cast<const unsigned char *>(text));
    const bool named = *text == '\n' || *text == '\t';
    const size_t cost = plain ? plain : named ? 2 : 4;
    if (cost > limit - written) break;
    written += cost;
    if (plain) {
      text += plain;
      continue;
    }
    if (run != text) out->put(out, run, static_cast<size_t>(text - run));
    const unsigned char byte = static_cast<unsigned char>(*text);
    const char *digits = "0123456789abcdef";
    const char escape[4] = {'\\',
                            !named         ? 'x'
                            : byte == '\n' ? 'n'
                                           : 't',
                            digits[byte >> 4], digits[byte & 15]};
    out->put(out, escape, cost);
    run = ++text;
  }
  if (run != text) out->put(out, run, static_cast<size_t>(text - run));
}

size_t ort_escape(char *buffer, const char *text) {
  escape_out escape = {{put_to_escape}, buffer, 0};
  ort_put_escaped(&escape.out, text, SIZE_MAX);
  if (buffer) buffer[escape.length] = '\0';
  return escape.length;
}

static void put_to_escape(ort_out *out, const char *bytes, size_t length) {
  escape_out *escape = reinterpret_cast<escape_out *>(out);
  if (escape->buffer) memcpy(escape->buffer + escape->length, bytes, length);
  escape->length += length;
}

size_t ort_format_g(char *buffer, double value) {
  const auto end = std::to_chars(buffer, buffer + 31, value, std::chars_format::general, 6).ptr;
  *end = '\0';
  return static_cast<size_t>(end - buffer);
}

// ---- Helpers ------------------------------------------------------------------------------------

// Reads what follows a "%"; returns the byte after it. star is the width for "*".
static const char *read_conversion(const char *format, conversion *c, int star) {
  if (*format == '*') {
    c->width = star;
    ++format;
  }
  if (*format == '0') {
    c->zeros = true;
    ++format;
  }
  while (ort_isdigit(*format)) c->width = c->width * 10 + (*format++ - '0');
  if (*format == 'l') {
    c->is_long = true;
    ++format;
  }
  c->type = *format;
  return *format ? format + 1 : format;
}

static void put_padded(ort_out *out, const conversion &c, const char *bytes, size_t length) {
  size_t sign = 0;
  if (c.zeros && length && *bytes == '-') sign = 1;
  if (sign) out->put(out, bytes, 1);
  const auto width = static_cast<size_t>(c.width);
  size_t padding = width > length ? width - length : 0;
  const char *pad = c.zeros ? "0000000000000000" : "                ";
  while (padding > 0) {
    const size_t part = padding < 16 ? padding : 16;
    out->put(out, pad, part);
    padding -= part;
  }
  if (length > sign) out->put(out, bytes + sign, length - sign);
}

static size_t format_signed(char *buffer, int64_t value) {
  return static_cast<size_t>(std::to_chars(buffer, buffer + 32, value).ptr - buffer);
}

static size_t format_unsigned(char *buffer, uint64_t value, int base, const char *prefix) {
  const size_t length = strlen(prefix);
  memcpy(buffer, prefix, length);
  return static_cast<size_t>(std::to_chars(buffer + length, buffer + 32, value, base).ptr - buffer);
}

// Bytes of the character at p when it needs no escape, else 0.
static size_t plain_character(const unsigned char *p) {
  if (*p < 0x80) return *p >= 0x20 && *p != 0x7F ? 1 : 0;
  return utf8_character(p);
}

// Bytes of the well-formed sequence of more than one byte at p, else 0. The control characters
// U+0080 to U+009F and those that override the direction of text count as ill-formed: a terminal
// would act on them.
static size_t utf8_character(const unsigned char *p) {
  const auto follows = [p](int i, unsigned low, unsigned high) {
    return p[i] >= low && p[i] <= high;
  };
  if (*p < 0xC2 || *p > 0xF4) return 0;
  if (*p < 0xE0) return follows(1, *p == 0xC2 ? 0xA0 : 0x80, 0xBF) ? 2 : 0;
  if (*p < 0xF0) {
    const bool second = follows(1, *p == 0xE0 ? 0xA0 : 0x80, *p == 0xED ? 0x9F : 0xBF);
    return second && follows(2, 0x80, 0xBF) && !turns_direction(p) ? 3 : 0;
  }
  const bool second = follows(1, *p == 0xF0 ? 0x90 : 0x80, *p == 0xF4 ? 0x8F : 0xBF);
  return second && follows(2, 0x80, 0xBF) && follows(3, 0x80, 0xBF) ? 4 : 0;
}

// Whether the three bytes at p are an explicit directional formatting character (Unicode Standard
// Annex 9, 2): U+202A to U+202E and U+2066 to U+2069 reach beyond the text that holds them.
static bool turns_direction(const unsigned char *p) {
  return p[0] == 0xE2 && ((p[1] == 0x80 && p[2] >= 0xAA && p[2] <= 0xAE) ||
                          (p[1] == 0x81 && p[2] >= 0xA6 && p[2] <= 0xA9));
}
