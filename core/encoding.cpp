// encoding.cpp: the ISO 8859 family as tables of 16-bit codes, made by iconv when first asked for.
// The reader calls it; raises ORT_E_NO_MEMORY and ORT_E_CALL_FAILED.
#include <charconv>
#include <errno.h>
#include <iconv.h>
#include <string.h>

#include "core/ort_state.h"

namespace {
constexpr uint16_t UNUSED_BYTE = 0xFFFF;
constexpr int UNKNOWN = -9;
constexpr size_t TABLE_BYTES = 256 * sizeof(uint16_t);
constexpr char PREFIX[] = "iso8859-";
} // namespace

static bool is_part(int32_t number);
static void fill(uint16_t *codes, iconv_t converter);

int ort_get_encoding(ort_core * /*core*/, const char *name, int32_t *number, int /*flags*/) {
  constexpr size_t prefix = sizeof PREFIX - 1;
  if (strncmp(name, PREFIX, prefix) != 0 || name[prefix] == '0') return UNKNOWN;
  const char *const end = name + strlen(name);
  int32_t part = 0;
  const auto result = std::from_chars(name + prefix, end, part);
  if (result.ec != std::errc() || result.ptr != end || !is_part(part)) return UNKNOWN;
  return *number = part;
}

const uint16_t *ort_get_encoding_vector(ort_core *core, int32_t number) {
  if (!is_part(number)) ort_internal_error(core, __FILE__, __LINE__);
  if (core->encodings[number]) return core->encodings[number];

  char name[16] = "ISO-8859-";
  std::to_chars(name + 9, name + 15, number);
  const iconv_t converter = iconv_open("UTF-16LE", name);
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    if (errno == ENOMEM) ort_raise_no_memory(core);
    ort_error(core, ORT_E_CALL_FAILED, "iconv_open", nullptr, nullptr, nullptr);
  }
  uint16_t *codes = static_cast<uint16_t *>(ort_own_realloc(core, nullptr, 0, TABLE_BYTES));
  if (codes) fill(codes, converter);
  iconv_close(converter);
  if (!codes) ort_raise_no_memory(core);
  return core->encodings[number] = codes;
}

// There is no part 12.
static bool is_part(int32_t number) {
  return number >= 1 && number < ORT_ENCODINGS && number != 12;
}

static void fill(uint16_t *codes, iconv_t converter) {
  for (int i = 0; i < 256; ++i) {
    char byte = static_cast<char>(i);
    unsigned char code[2];
    char *from = &byte, *to = reinterpret_cast<char *>(code);
    size_t from_left = 1, to_left = 2;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    const bool used =
        iconv(converter, &from, &from_left, &to, &to_left) != SIZE_MAX && to_left == 0;
    codes[i] = used ? static_cast<uint16_t>(code[0] | code[1] << 8) : UNUSED_BYTE;
  }
}
