// svg_number.h: decimal numbers as they are written in values and in path data (SVG 1.1, 4.2
// and 8.3.9).
//
// The scanner and the path parser read a number piece by piece, because they differ in what may
// follow it and in what is an error. Time is linear in the digits, nothing depends on the locale,
// and no NaN results.
#ifndef SVG_NUMBER_H
#define SVG_NUMBER_H

#include <stdint.h>

#include "core/ort_core.h"

// mantissa * 10^exponent
struct svg_decimal {
  double mantissa = 0;
  int64_t exponent = 0;
  bool valid = false; // the last piece had the digit that it needs
  bool real = false;  // written with a decimal point or an exponent
};

// Reads digits with an optional "." among, behind or before them, and at least one digit. Returns
// where it stopped: behind the mantissa, or, when valid is false, at the byte that should have been
// a digit.
const char *svg_read_mantissa(const char *s, svg_decimal *number);

// Reads an exponent, from behind its "e": an optional sign and at least one digit. Returns as
// svg_read_mantissa does.
const char *svg_read_exponent(const char *s, svg_decimal *number);

// The number without its sign. May be infinite.
double svg_decimal_value(const svg_decimal *number);

// value * 10^exponent, the power as pow(10.0, exponent) gives it; 0 stays 0 whatever the exponent,
// no NaN results.
double svg_scale10(double value, int exponent);

inline bool svg_is_numstart(char c) { return ort_isdigit(c) || c == '+' || c == '-' || c == '.'; }
inline bool svg_is_expostart(char c) { return ort_isdigit(c) || c == '+' || c == '-'; }

#endif
