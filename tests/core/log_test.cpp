#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

#include "tests/support/accounting_core.h"

TEST(Log, FormatsValues) {
  AccountingCore core;
  ort_logg(core, "[%02ld|%2d|%d|%2d]", 7L, 5, INT_MIN, 123);
  ort_logg(core, "%*s<%s>%a%%", 20, "", "text", "a\nb");
  ort_logg(core, "%06X %X %c%4d %04d", 0xABCDE, 255U, 'z', -3, -3);
  ort_logg(core, " %p%a%s %lX%03d%", nullptr, nullptr, nullptr, 0xFFFFFFFFFFUL, 7);
  EXPECT_EQ(core.log, "[07| 5|-2147483648|123]                    <text>a\\nb%"
                      "0ABCDE FF z  -3 -003 0x0 FFFFFFFFFF007");
}

TEST(Log, NumbersAreThoseOfTheCLocale) {
  for (const double value :
       {0.0, -0.0, -1.5, 100000.0, 999999.0, 999999.5, 1e6, 1234567.0, 1e-4, 1.5e-5, 0.1 + 0.2,
        5e-324, 1.7976931348623157e308, HUGE_VAL, -HUGE_VAL, double{NAN}, 123456.5, 1234565.0}) {
    char expected[64], actual[32];
    snprintf(expected, sizeof expected, "%g", value);
    EXPECT_EQ(ort_format_g(actual, value), strlen(expected));
    EXPECT_STREQ(actual, expected);
  }
}

TEST(Log, LevelsSelect) {
  AccountingCore core(AccountingCore::with_log(3));
  EXPECT_EQ(ort_logg_getlevel(core, ORT_LOG_READER), 3);
  for (const int outside : {-1, 32, 1000000}) EXPECT_EQ(ort_logg_getlevel(core, outside), 0);
  ort_logg_cond(core, 3, ORT_LOG_READER, "%s", "shown ");
  ort_logg_cond(core, 4, ORT_LOG_READER, "%s", "hidden");
  ort_logg_cond(core, 1, ORT_LOG_LINES, "hidden");
  ort_logg_unitext(core, "a \"b\"\n", 0, 0, 1);
  ort_logg_unitext(core, "c", 0, 0, 0);
  EXPECT_EQ(core.log, "shown \"a \"b\"\\n\"c");
}

TEST(Log, LongTextsArriveWhole) {
  for (size_t length : {0U, 1U, 498U, 499U, 500U, 501U, 5000U}) {
    AccountingCore core;
    const std::string text(length, 'x');
    ort_logg(core, "<%a%s\t%a>", text.c_str(), "y", text.c_str());
    EXPECT_EQ(core.log, "<" + text + "y\t" + text + ">");
  }
}

TEST(Log, ACoreWithoutSinksIsSilent) {
  ort_core *core = ort_core_new(nullptr);
  ort_logg(core, "%a", "dropped");
  ort_warning(core, ORT_E_NO_MEMORY);
  ort_core_delete(core);
  ort_core_delete(nullptr);
}
