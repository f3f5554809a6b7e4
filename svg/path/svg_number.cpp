// svg_number.cpp: decimal numbers as they are written in values and in path data.
//
// Called by the scanner and the path parser for every number of a drawing. Raises nothing,
// allocates nothing.
#include "svg/path/svg_number.h"

#include <algorithm>
#include <array>
#include <cmath>

static const char *read_digits(const char *s, svg_decimal *number, int scale);

const char *svg_read_mantissa(const char *s, svg_decimal *number) {
  number->valid = ort_isdigit(*s);
  s = read_digits(s, number, 0);
  if (*s != '.') return s;
  s++;
  number->real = true;
  number->valid |= ort_isdigit(*s);
  return read_digits(s, number, 1);
}

// A digit that a double has no room for only counts. So an over-long mantissa keeps its magnitude
// until the exponent has been applied, and 1.000...0 with hundreds of zeros is 1.
static const char *read_digits(const char *s, svg_decimal *number, int scale) {
  for (; ort_isdigit(*s); s++) {
    const double next = 10.0 * number->mantissa + (*s - '0');
    if (std::isfinite(next)) number->mantissa = next;
    number->exponent += (std::isfinite(next) ? 0 : 1) - scale;
  }
  return s;
}

const char *svg_read_exponent(const char *s, svg_decimal *number) {
  const bool negative = *s == '-';
  if (negative || *s == '+') s++;
  number->real = true;
  number->valid = ort_isdigit(*s);
  int64_t exponent = 0;
  for (; ort_isdigit(*s); s++) exponent = std::min<int64_t>(10 * exponent + (*s - '0'), INT32_MAX);
  number->exponent += negative ? -exponent : exponent;
  return s;
}

double svg_decimal_value(const svg_decimal *number) {
  return svg_scale10(number->mantissa,
                     static_cast<int>(std::clamp<int64_t>(number->exponent, INT32_MIN, INT32_MAX)));
}

// ---- Powers of ten ------------------------------------------------------------------------------

constexpr int MIN_POWER = -323; // smallest power that is not 0
constexpr int MAX_POWER = 308;  // largest power that is finite

// clang-format off
#define TEN(sign, n)                                                                              \
  1e##sign##n##0, 1e##sign##n##1, 1e##sign##n##2, 1e##sign##n##3, 1e##sign##n##4,                 \
  1e##sign##n##5, 1e##sign##n##6, 1e##sign##n##7, 1e##sign##n##8, 1e##sign##n##9
#define HUNDRED(sign, n)                                                                          \
  TEN(sign, n##0), TEN(sign, n##1), TEN(sign, n##2), TEN(sign, n##3), TEN(sign, n##4),            \
  TEN(sign, n##5), TEN(sign, n##6), TEN(sign, n##7), TEN(sign, n##8), TEN(sign, n##9)

constexpr double negative_powers[-MIN_POWER + 1] = {
    HUNDRED(-, 0), HUNDRED(-, 1), HUNDRED(-, 2), TEN(-, 30), TEN(-, 31), 1e-320, 1e-321, 1e-322, 1e-323};

constexpr auto positive_powers = [] {
  std::array<double, MAX_POWER + 1> powers = {
      HUNDRED(+, 0), HUNDRED(+, 1), HUNDRED(+, 2), 1e300, 1e301, 1e302, 1e303, 1e304, 1e305, 1e306, 1e307, 1e308};
  // Here pow(10.0, e) is the neighbour of the double nearest to 10^e.
  powers[23] = 1.0000000000000001e23;
  powers[210] = 1.0000000000000001e210;
  return powers;
}();
// clang-format on
static_assert(negative_powers[-MIN_POWER] > 0 && positive_powers[MAX_POWER] > 0);

double svg_scale10(double value, int exponent) {
  if (value == 0 || exponent < MIN_POWER) return 0;
  if (exponent > MAX_POWER) return value * HUGE_VAL;
  return value * (exponent < 0 ? negative_powers[-exponent]
                               : positive_powers[static_cast<size_t>(exponent)]);
}
