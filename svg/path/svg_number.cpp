// svg_number.cpp: decimal numbers as they are written in values and in path data.
//
// Called by the scanner and the path parser for numbers that svg_read_short does not take. Raises
// nothing, allocates nothing.
#include "svg/path/svg_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>

static const char *skip_digits(const char *s);
static bool is_below_one(const svg_decimal *number);

const char *svg_read_mantissa(const char *s, svg_decimal *number) {
  number->begin = s;
  number->end = skip_digits(s);
  number->valid = number->end > s;
  if (*number->end != '.') return number->end;
  number->real = true;
  const char *fraction = number->end + 1;
  number->end = skip_digits(fraction);
  number->valid |= number->end > fraction;
  return number->end;
}

const char *svg_read_exponent(const char *s, svg_decimal *number) {
  if (*s == '-' || *s == '+') ++s;
  number->real = true;
  number->end = skip_digits(s);
  number->valid = number->end > s;
  return number->end;
}

static const char *skip_digits(const char *s) {
  while (ort_isdigit(*s)) ++s;
  return s;
}

double svg_decimal_value(const svg_decimal *number) {
  double value = 0;
  const std::from_chars_result result = std::from_chars(number->begin, number->end, value);
  if (result.ec != std::errc::result_out_of_range) return value;
  return is_below_one(number) ? 0 : HUGE_VAL;
}

// Tells too small a number from one that is too large, by the power of ten of its first digit that
// is not 0. A number of zeros is below one, whatever its exponent.
static bool is_below_one(const svg_decimal *number) {
  const char *point = skip_digits(number->begin), *first = number->begin;
  while (first < number->end && (*first == '0' || *first == '.')) ++first;
  if (!ort_isdigit(*first)) return true;
  const char *s = point + (*point == '.');
  s = skip_digits(s);
  int64_t exponent = first < point ? point - first : point + 1 - first;
  if (s == number->end) return exponent <= 0;
  const bool negative = *++s == '-';
  int64_t written = 0;
  for (s += negative || *s == '+'; s < number->end; ++s)
    written = std::min<int64_t>(10 * written + (*s - '0'), INT64_MAX / 100);
  exponent += negative ? -written : written;
  return exponent <= 0;
}
