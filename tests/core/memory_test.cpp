#include <cstring>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <random>

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
  void *b = ort_calloc(core, 2, 10, second);
  void *c = ort_malloc(core, 0, "a_tag");
  EXPECT_EQ(core.live_blocks(), "a_tag: 1 blocks, 0 bytes\nb_tag: 2 blocks, 30 bytes\n");
  memcpy(b, "kept", 5);
  b = ort_realloc(core, b, 1000, "a_tag");
  EXPECT_STREQ(static_cast<char *>(b), "kept");
  EXPECT_EQ(core.live_blocks(), "a_tag: 2 blocks, 1000 bytes\nb_tag: 1 blocks, 10 bytes\n");
  EXPECT_EQ(ort_get_tag_counts(core, nullptr, 0), 2U);
  EXPECT_EQ(statistics_of(core).live_bytes, 1010U);
  for (void *block : {a, b, c, static_cast<void *>(nullptr)}) ort_free(core, block);
  EXPECT_EQ(statistics_of(core).live_blocks, 0U);
  EXPECT_EQ(statistics_of(core).peak_bytes, 1010U);
  ort_reset_peak(core);
  EXPECT_EQ(statistics_of(core).peak_bytes, 0U);
}

TEST(Memory, ManyTagsStaySortedAndCounted) {
  static char tags[1000][8];
  AccountingCore core;
  std::vector<void *> blocks;
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    snprintf(tags[i], sizeof tags[i], "t%03d", i);
    expected += tags[i] + std::string(": 1 blocks, 1 bytes\n");
  }
  for (int i = 0; i < 1000; ++i) blocks.push_back(ort_malloc(core, 1, tags[i * 7 % 1000]));
  EXPECT_EQ(core.live_blocks(), expected);
  for (void *block : blocks) ort_free(core, block);
}

// Blocks of all kinds come and go, grow and shrink, and none disturbs another.
TEST(Memory, BlocksKeepTheirBytesAndCounts) {
  struct Block {
    unsigned char *bytes;
    size_t size;
    unsigned char fill;
  };
  AccountingCore core;
  std::vector<Block> blocks;
  std::mt19937 random(1);
  size_t live = 0;
  const auto check = [&](const Block &block, size_t size) {
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block.bytes) % 8, 0U);
    for (size_t i = 0; i < size; ++i) ASSERT_EQ(block.bytes[i], block.fill);
  };
  for (int step = 0; step < 30000; ++step) {
    const size_t size = random() % (random() % 8 == 0 ? 3000 : 100), chosen = random();
    const bool growing = step % 10000 < 6000;
    if (blocks.empty() || random() % 8 < (growing ? 4 : 2)) {
      void *bytes = ort_malloc(core, size, size % 2 ? "odd" : "even");
      blocks.push_back({static_cast<unsigned char *>(bytes), size, 0});
      live += size;
    } else {
      Block &block = blocks[chosen % blocks.size()];
      check(block, block.size);
      live -= block.size;
      if (random() % 4 == 0) {
        block.bytes = static_cast<unsigned char *>(ort_realloc(core, block.bytes, size, "moved"));
        check(block, std::min(size, block.size));
        block.size = size;
        live += size;
        std::swap(block, blocks.back());
      } else {
        ort_free(core, block.bytes);
        block = blocks.back();
        blocks.pop_back();
        ASSERT_EQ(statistics_of(core).live_bytes, live);
        continue;
      }
    }
    blocks.back().fill = static_cast<unsigned char>(step);
    memset(blocks.back().bytes, blocks.back().fill, blocks.back().size);
    ASSERT_EQ(statistics_of(core).live_bytes, live);
    ASSERT_EQ(statistics_of(core).live_blocks, blocks.size());
  }
  for (const Block &block : blocks) ort_free(core, block.bytes);
}

TEST(Memory, BudgetIsExact) {
  ort_options options = AccountingCore::defaults();
  options.memory_budget = 100;
  AccountingCore core(options);
  void *block = nullptr;
  EXPECT_EQ(core.protect([&] { block = ort_malloc(core, 100, "test"); }), 0);
  EXPECT_EQ(core.protect([&] { ort_malloc(core, 1, "test"); }), ORT_E_NO_MEMORY);
  EXPECT_EQ(core.protect([&] { ort_realloc(core, block, 101, "test"); }), ORT_E_NO_MEMORY);
  EXPECT_EQ(core.protect([&] { block = ort_realloc(core, block, 99, "test"); }), 0);
  EXPECT_EQ(core.protect([&] { ort_errprintf(core, "%d", 1); }), ORT_E_NO_MEMORY);
  EXPECT_EQ(core.protect([&] { ort_calloc(core, SIZE_MAX / 2, 3, "test"); }), ORT_E_NO_MEMORY);
  EXPECT_EQ(core.protect([&] { ort_malloc(core, SIZE_MAX, "test"); }), ORT_E_NO_MEMORY);
  ort_free(core, block);
}

TEST(Memory, TemporariesAreFreedInAnyOrderOrByTheCore) {
  AccountingCore core;
  void *t[4];
  for (void *&block : t) block = ort_malloc_tmp(core, 5, "test");
  EXPECT_EQ(statistics_of(core).live_blocks, 4U);
  for (const int i : {1, 3, 0, 2}) ort_free_tmp(core, t[i]);
  EXPECT_EQ(statistics_of(core).live_blocks, 0U);
  ort_strdup_ext(core, "left to the core", ORT_DUP_TEMPORARY, "test");
  ort_malloc_tmp(core, 1000, "test");
  core.allow_temporaries(); // the address sanitizer sees whether the core frees them
}

TEST(Memory, FailsOnDemand) {
  for (const int on : {0, 1}) {
    ort_options options = AccountingCore::defaults();
    options.fail_at = 2;
    options.fail_on = on;
    AccountingCore core(options);
    std::string outcome;
    for (int i = 0; i < 4; ++i) {
      const auto body = [&] { ort_free(core, ort_malloc(core, 1, "test")); };
      outcome += core.protect(body) == 0 ? '+' : '-';
    }
    EXPECT_EQ(outcome, on ? "+---" : "+-++");
    EXPECT_EQ(core.allocations(), 4U);
  }
}

// ---- The tests' own support ---------------------------------------------------------------------

TEST(TestSupport, AccountingCoreFailsOnLiveBlocks) {
  static ort_core *core;
  static void *block;
  EXPECT_NONFATAL_FAILURE(
      {
        AccountingCore accounting;
        core = accounting;
        block = ort_malloc(core, 7, "leaker");
        accounting.expect_clean();
        ort_free(core, block);
      },
      "leaker: 1 blocks, 7 bytes");
  EXPECT_NONFATAL_FAILURE(
      {
        AccountingCore accounting;
        ort_malloc_tmp(accounting, 7, "leaker");
        accounting.expect_clean();
        accounting.allow_temporaries();
      },
      "temporary");
}

static bool swallow_failure(AccountingCore &core) {
  core.protect([&] { ort_free(core, ort_malloc(core, 1, "test")); });
  core.messages.clear();
  return true;
}

TEST(TestSupport, SweepFailsWhenItMust) {
  EXPECT_NONFATAL_FAILURE(allocation_sweep([](AccountingCore &) { return true; }),
                          "failed no allocation");
  EXPECT_NONFATAL_FAILURE(allocation_sweep(swallow_failure), "but body succeeded");
}
