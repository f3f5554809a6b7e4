#include <cstring>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <sys/resource.h>

#include "core/chunks.h"
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

// Blocks come and go, grow and shrink, and none disturbs another.
TEST(Memory, BlocksKeepTheirBytesAndCounts) {
  AccountingCore core;
  std::vector<std::pair<char *, std::string>> blocks; // and what they hold
  std::mt19937 random(1);
  size_t live = 0;
  for (int step = 0; step < 30000; ++step) {
    const size_t size = random() % (random() % 8 == 0 ? 3000 : 100), chosen = random();
    const bool growing = step % 10000 < 6000, freeing = random() % 4 != 0;
    if (blocks.empty() || random() % 8 < (growing ? 4 : 2)) {
      blocks.emplace_back(static_cast<char *>(ort_malloc(core, size, size % 2 ? "odd" : "even")),
                          "");
    } else {
      std::swap(blocks[chosen % blocks.size()], blocks.back());
      auto &[bytes, held] = blocks.back();
      ASSERT_EQ(std::string(bytes, held.size()), held);
      live -= held.size();
      if (freeing) {
        ort_free(core, bytes);
        blocks.pop_back();
        continue;
      }
      bytes = static_cast<char *>(ort_realloc(core, bytes, size, "moved"));
      ASSERT_EQ(memcmp(bytes, held.data(), std::min(size, held.size())), 0);
    }
    auto &[bytes, held] = blocks.back();
    EXPECT_EQ(reinterpret_cast<uintptr_t>(bytes) % 8, 0U);
    held.assign(size, static_cast<char>(step));
    memcpy(bytes, held.data(), size);
    live += size;
    ASSERT_EQ(statistics_of(core).live_bytes, live);
    ASSERT_EQ(statistics_of(core).live_blocks, blocks.size());
  }
  for (const auto &[bytes, held] : blocks) ort_free(core, bytes);
}

TEST(Memory, NoTwoCoresShareASecret) {
  std::set<uint64_t> secrets;
  for (int i = 0; i < 9; ++i) secrets.insert(ort_get_secret(AccountingCore())); // at one address
  EXPECT_EQ(secrets.size(), 9U);
}

TEST(Memory, BudgetIsExact) {
  CoreOptions options = AccountingCore::defaults();
  options.memory_budget = 100;
  AccountingCore core(options);
  void *block = ort_malloc(core, 100, "test");
  const auto no_memory = [&](auto body) { EXPECT_EQ(core.protect(body), ORT_E_NO_MEMORY); };
  no_memory([&] { ort_malloc(core, 1, "test"); });
  no_memory([&] { ort_malloc_tmp(core, 1, "test"); });
  no_memory([&] { ort_realloc(core, block, 101, "test"); });
  block = ort_realloc(core, block, 99, "test");
  no_memory([&] { ort_malloc(core, 2, "test"); });
  no_memory([&] { ort_calloc(core, SIZE_MAX / 2, 3, "test"); });
  no_memory([&] { ort_malloc(core, SIZE_MAX, "test"); });
  ort_free(core, block);
}

TEST(Memory, SparesGoWhenTheBudgetIsShort) {
  struct Spare : ort_spare {
    ort_core *core;
    void *block;
  };
  CoreOptions options = AccountingCore::defaults();
  options.memory_budget = 100;
  AccountingCore core(options);
  Spare spares[2];
  for (Spare &spare : spares) {
    spare.core = core;
    spare.block = ort_malloc(core, 40, "spare");
    spare.drop = [](ort_spare *dropped) {
      auto *own = static_cast<Spare *>(dropped);
      ort_free(own->core, std::exchange(own->block, nullptr));
    };
    ort_offer_spare(core, &spare);
  }
  void *kept = nullptr;
  for (const size_t size : {20, 60, 100}) { // each time one spare fewer
    ort_free(core, std::exchange(kept, nullptr));
    kept = ort_malloc(core, size, "kept");
    EXPECT_EQ(spares[0].block != nullptr, size < 100);
    EXPECT_EQ(spares[1].block != nullptr, size < 60);
  }
  ort_free(core, kept);
}

TEST(Memory, TagsHaveALimit) {
  AccountingCore core;
  std::vector<std::string> tags;
  for (uint32_t i = 0; i <= ORT_MAX_TAGS; ++i) tags.push_back(std::to_string(i));
  void *block = nullptr;
  size_t i = 0;
  while (core.protect([&] { block = ort_realloc(core, block, 1, tags[i].c_str()); }) == 0) ++i;
  EXPECT_EQ(i, ORT_MAX_TAGS);
  EXPECT_EQ(core.protect([&] { ort_malloc_tmp(core, 1, tags[i].c_str()); }), ORT_E_NO_MEMORY);
  EXPECT_EQ(core.live_blocks(), "8191: 1 blocks, 1 bytes\n");
  ort_free(core, block);
}

#if !defined ORT_SANITIZE && !defined __SANITIZE_THREAD__ // which need memory of their own
TEST(Memory, TheSystemMayHaveNone) {
  const auto starve = [] {
    ort_core *core = ort_core_new(nullptr);
    void *large = ort_malloc(core, 1 << 20, "test");
    rlimit limit = {0, RLIM_INFINITY};
    setrlimit(RLIMIT_AS, &limit);
    for (const size_t size : {1000000, 10000, 600, 1})
      for (const auto take : {ort_malloc, ort_malloc_tmp})
        while (ort_protected(core, [&] { take(core, size, "test"); })) {
        }
    bool refused = ort_error_code(core) == ORT_E_NO_MEMORY && !ort_core_new(nullptr);
    for (const size_t size : {9, 1 << 24})
      refused = refused && !ort_protected(core, [&] { ort_realloc(core, large, size, "test"); });
    limit.rlim_cur = RLIM_INFINITY;
    setrlimit(RLIMIT_AS, &limit);
    exit(refused ? 0 : 1);
  };
  EXPECT_EXIT(starve(), testing::ExitedWithCode(0), "");
}
#endif

// The address sanitizer sees whether the core frees what is left.
TEST(Memory, TemporariesAreFreedInAnyOrderOrByTheCore) {
  ort_core *core = ort_core_new(nullptr);
  void *t[4];
  for (void *&block : t) block = ort_malloc_tmp(core, 5, "test");
  EXPECT_EQ(statistics_of(core).live_blocks, 4U);
  for (const int i : {1, 3, 0, 2}) ort_free_tmp(core, t[i]);
  EXPECT_EQ(statistics_of(core).live_blocks, 0U);
  ort_strdup_ext(core, "left to the core", ORT_DUP_TEMPORARY, "test");
  ort_core_delete(core);
}

TEST(Memory, FailsOnDemand) {
  CoreOptions options = AccountingCore::defaults();
  options.fail_at = 2;
  for (const bool on : {false, true}) {
    options.fail_on = on;
    AccountingCore core(options);
    std::string outcome;
    for (int i = 0; i < 4; ++i)
      outcome += core.protect([&] { ort_free(core, ort_malloc(core, 1, "test")); }) ? '-' : '+';
    EXPECT_EQ(outcome, on ? "+---" : "+-++");
    EXPECT_EQ(core.allocations(), 4U);
  }
}

// ---- The tests' own support ---------------------------------------------------------------------

TEST(TestSupport, FailsWhenItMust) {
  EXPECT_NONFATAL_FAILURE(
      {
        AccountingCore core;
        void *block = ort_malloc(core, 7, "leaker");
        core.expect_clean();
        ort_free(core, block);
      },
      "leaker: 1 blocks, 7 bytes");
  const auto swallow_failure = [](AccountingCore &core) {
    core.protect([&] { ort_free(core, ort_malloc(core, 1, "test")); });
    core.messages.clear();
    return true;
  };
  EXPECT_NONFATAL_FAILURE(allocation_sweep(swallow_failure), "but body succeeded");
}
