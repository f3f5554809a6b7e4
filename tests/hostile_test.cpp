// Drawings under everything that may go wrong around them: memory that ends, input that ends, input
// in pieces, many readers at a time, another locale. See tests/support/documents.h for which.
#include <clocale>
#include <gtest/gtest.h>
#include <thread>

#include "core/ort_state.h"
#include "fuzz/support/fuzz.h"
#include "svg/svg_parser.h"
#include "tests/support/documents.h"
#include "tests/support/whole.h"

namespace {

// Reads bytes while an allocation fails, then a good drawing with the same core. False: the read
// got by without the allocation.
bool survives(const std::string &bytes, uint64_t fail_at, int fail_on) {
  ort_options options = AccountingCore::with_log(fail_at % 3 == 0 ? 6 : 0);
  options.fail_at = fail_at;
  options.fail_on = fail_on;
  AccountingCore core(options);
  core.allow_temporaries();
  const bool read = read_once(core, bytes);
  if (core.allocations() < fail_at) return false;
  // Where path data, a color extension or a style sheet are dropped, the error is a warning.
  EXPECT_TRUE(std::any_of(core.messages.begin(), core.messages.end(),
                          [](const Message &m) { return m.code == ORT_E_NO_MEMORY; }))
      << "not reported; read: " << read;
  EXPECT_EQ(core.live_blocks(), "");
  core.get()->options.fail_at = UINT64_MAX;
  EXPECT_TRUE(read_once(core, "<svg><path id='a' d='M0 0L1 1' style='fill:url(#a)'/></svg>"));
  return true;
}

TEST(Hostile, EveryFailingAllocationIsReported) {
  for (const auto &[name, bytes] : documents()) {
    AccountingCore core;
    core.allow_temporaries();
    read_once(core, bytes);
    const size_t stride = hostile_stride(core.allocations(), 200);
    for (const int on : {0, 1}) {
      uint64_t at = 1 + name.size() % stride;
      while (!testing::Test::HasFailure() && survives(bytes, at, on)) at += stride;
      ASSERT_FALSE(testing::Test::HasFailure()) << name << ": allocation " << at << ", " << on;
    }
  }
}

TEST(Hostile, EveryPrefixIsReadCleanly) {
  for (const auto &[name, bytes] : documents()) {
    const size_t stride = hostile_stride(bytes.size(), 400);
    for (size_t length = 0; length < bytes.size(); length += stride) {
      Document document(bytes.substr(0, length));
      fuzz_check(document, false);
      ASSERT_FALSE(testing::Test::HasFailure()) << name << ": " << length << " bytes";
    }
  }
}

std::string read_in_blocks(const std::string &bytes, int block_size) {
  return whole_text(Document(bytes, AccountingCore::defaults(),
                             [=](svg_parser *p) { p->block_size = block_size; }));
}

TEST(Hostile, BlocksOfAnySizeGiveTheSame) {
  for (const auto &[name, bytes] : documents()) {
    const std::string whole = whole_text(Document(bytes));
    for (const int size : {1, 7, 4096})
      if (size > 1 || bytes[0] != '\xFF') // the first block must hold a mark and a "<"
        EXPECT_EQ(read_in_blocks(bytes, size), whole) << name;
  }
}

TEST(Hostile, ReadersInThreadsDoNotMeet) {
  const std::vector<NamedBytes> inputs = documents();
  std::vector<std::string> alone;
  for (const NamedBytes &input : inputs) alone.push_back(whole_text(Document(input.bytes)));
  std::vector<std::thread> threads;
  for (size_t first = 0; first < 8; first++)
    threads.emplace_back([&inputs, &alone, first] {
      for (size_t i = 0; i < inputs.size(); i++) {
        const size_t k = (first * 5 + i) % inputs.size();
        EXPECT_EQ(whole_text(Document(inputs[k].bytes)), alone[k]) << inputs[k].name;
      }
    });
  for (std::thread &thread : threads) thread.join();
}

// The log writes numbers, too. ./dev test provides the locale.
TEST(Hostile, CommaLocaleChangesNothing) {
  const auto read_all = [] {
    std::string result;
    for (const NamedBytes &input : documents()) {
      const Document document(input.bytes, AccountingCore::with_log(6));
      std::string log = document.core.log;
      for (size_t at = 0; (at = log.find("0x", at)) != log.npos;) // addresses
        log.erase(at, log.find_first_not_of("0123456789abcdef", at + 2) - at);
      result += whole_text(document);
      if (log.find("embedded in") == log.npos) result += log; // digits made of addresses
    }
    return result;
  };
  const std::string expected = read_all();
  if (setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale de_DE.UTF-8";
  ASSERT_STREQ(localeconv()->decimal_point, ",");
  EXPECT_EQ(read_all(), expected);
  setlocale(LC_ALL, "C");
}

} // namespace
