// svg_number.h: decimal numbers as they are written in values and in path data (SVG 1.1, 4.2
// and 8.3.9).
//
// The scanner and the path parser read a number piece by piece, because they differ in what may
// follow it and in what is an error. The value is the double nearest to what is written. Time is
// linear in the digits, nothing depends on the locale, and no NaN results.
#ifndef SVG_NUMBER_H
#define SVG_NUMBER_H

#include <stdint.h>

#include "core/ort_core.h"

// A number of any length, without its sign.
struct svg_decimal {
  const char *begin = nullptr;
  const char *end = nullptr;
  bool valid = false; // the last piece had the digit that it needs
  bool real = false;  // written with a decimal point or an exponent
};

// Reads digits with an optional "." among, after or before them, and at least one digit. Returns
// where it stopped: after the mantissa, or, when valid is false, at the byte that should have been
// a digit.
const char *svg_read_mantissa(const char *s, svg_decimal *number);

// Reads an exponent, from after its "e": an optional sign and at least one digit. Returns as
// svg_read_mantissa does.
const char *svg_read_exponent(const char *s, svg_decimal *number);

// The value of a valid number: infinite when it is too large, 0 when it is too small.
double svg_decimal_value(const svg_decimal *number);

// ---- Short numbers ------------------------------------------------------------------------------

constexpr int SVG_EXACT_DIGITS = 15; // integers of so many digits are exact doubles
// By the length of a fraction with its point.
constexpr double svg_powers[SVG_EXACT_DIGITS + 2] = {
    1, 1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

struct svg_short_number {
  const char *end; // after the number
  double value;    // without its sign
  bool valid;
  bool real; // written with a decimal point
};

// Nearly all numbers have few digits and no exponent. Their digits are an integer that a double
// holds exactly, as it does the power of ten, so that the quotient is the nearest double
// (IEEE 754, 4.3). Any other text is not valid here.
inline svg_short_number svg_read_short(const char *s) {
  const auto digit_of = [](char c) -> unsigned {
    return static_cast<unsigned char>(c) - unsigned{'0'};
  };
  const char *begin = s;
  uint64_t mantissa = 0;
  unsigned next = digit_of(*s);
  const auto read_digits = [&] {
    while (next < 10) {
      mantissa = 10 * mantissa + next;
      next = digit_of(*++s);
    }
  };
  read_digits();
  const char *point = s;
  const bool real = next == digit_of('.');
  if (real) {
    next = digit_of(*++s);
    read_digits();
  }
  const auto digits = static_cast<size_t>(s - begin - real);
  if (digits - 1 >= SVG_EXACT_DIGITS || next == digit_of('e') || next == digit_of('E'))
    return {s, 0, false, real};
  return {s, static_cast<double>(static_cast<int64_t>(mantissa)) / svg_powers[s - point], true,
          real};
}

inline bool svg_is_numstart(char c) {
  return (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '+';
}
inline bool svg_is_expostart(char c) { return ort_isdigit(c) || c == '+' || c == '-'; }

#endif
