#include <cstring>
#include <gtest/gtest.h>

#include "tests/support/accounting_core.h"

static ort_statistics statistics_of(ort_core *core) {
  ort_statistics statistics;
  ort_get_statistics(core, &statistics);
  return statistics;
}

TEST(Memory, CountsPerTagMergeEqualTexts) {
  static const char first[] = "b_tag", second[] = "b_tag";
  AccountingCore core;
  void *a = ort_malloc(core, 10, first);
  void *b = ort_malloc(core, 20, second);
  void *c = ort_malloc(core, 0, "a_tag");
  ort_tag_count counts[3] = {};
  ASSERT_EQ(ort_get_tag_counts(core, counts, 3), 2U);
  EXPECT_STREQ(counts[0].tag, "a_tag");
  EXPECT_EQ(counts[0].blocks, 1U);
  EXPECT_STREQ(counts[1].tag, "b_tag");
  EXPECT_EQ(counts[1].blocks, 2U);
  EXPECT_EQ(counts[1].bytes, 30U);
  b = ort_realloc(core, b, 1000, "a_tag");
  EXPECT_EQ(ort_get_tag_counts(core, counts, 1), 2U);
  EXPECT_EQ(counts[0].bytes, 1000U);
  EXPECT_EQ(statistics_of(core).live_bytes, 1010U);
  ort_free(core, a);
  ort_free(core, b);
  ort_free(core, c);
  EXPECT_EQ(statistics_of(core).live_blocks, 0U);
  EXPECT_EQ(statistics_of(core).peak_bytes, 1010U);
  ort_reset_peak(core);
  EXPECT_EQ(statistics_of(core).peak_bytes, 0U);
}
