// Drawings under everything that may go wrong around them: memory that ends, input that ends, input
// in pieces, many readers at a time, another locale. See tests/support/documents.h for which.
#include <algorithm>
#include <clocale>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>

#include "core/ort_state.h"
#include "fuzz/support/fuzz.h"
#include "svg/parser/svg_parser.h"
#include "tests/support/documents.h"
#include "tests/support/gzip.h"
#include "tests/support/whole.h"

// Reads bytes while an allocation fails, then a good drawing with the same core. False: the read
// got by without the allocation.
static bool survives(const std::string &bytes, uint64_t fail_at, bool fail_on) {
  CoreOptions options = AccountingCore::with_log(fail_at % 3 == 0 ? 6 : 0);
  options.fail_at = fail_at;
  options.fail_on = fail_on;
  AccountingCore core(options);
  const bool read = read_once(core, bytes);
  if (core.allocations() < fail_at) return false;
  // Where path data, a color extension or a style sheet are dropped, the error is a warning.
  EXPECT_TRUE(std::any_of(core.messages.begin(), core.messages.end(),
                          [](const Message &m) { return m.code == ORT_E_NO_MEMORY; }))
      << "not reported; read: " << read;
  EXPECT_EQ(core.live_blocks(), "");
  EXPECT_EQ(ort_pvf_count(core), 0U) << "embedded files";
  ort_fail_at(core, 0, false);
  EXPECT_TRUE(read_once(core, "<svg><path id='a' d='M0 0L1 1' style='fill:url(#a)'/></svg>"));
  return true;
}

// "swept" has all that a drawing can make, with bad values between.
TEST(Hostile, EveryFailingAllocationIsReported) {
  for (const auto &[name, bytes] : documents()) {
    AccountingCore core;
    read_once(core, bytes);
    const bool every = name.ends_with("/swept") || name.ends_with(".svgz");
    const size_t stride = every ? 1 : hostile_stride(core.allocations(), 200);
    for (const bool on : {false, true}) {
      uint64_t at = 1 + name.size() % stride;
      while (!testing::Test::HasFailure() && survives(bytes, at, on)) at += stride;
      ASSERT_FALSE(testing::Test::HasFailure()) << name << ": allocation " << at << ", " << on;
    }
  }
}

// The blocks of one drawing lie where those of others were.
TEST(Hostile, OneCoreReadsAllAndKeepsNothing) {
  AccountingCore core;
  for (int round = 0; round < 3; ++round)
    for (const auto &[name, bytes] : documents()) {
      read_once(core, bytes);
      ASSERT_EQ(core.live_blocks(), "") << name;
      ASSERT_EQ(ort_memory_left(core), ort_memory_budget(core)) << name;
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

// Blocks of 7 bytes are read twice; 5000 bytes of recording are given up in most drawings.
static std::string read_in_blocks(const std::string &bytes, int block_size) {
  return whole_text(
      Document(bytes, AccountingCore::with_log(block_size == 7 ? 6 : 0), [=](svg_parser *p) {
        p->block_size = block_size;
        p->limits.recorded = block_size == 7 ? 1 : block_size == 4096 ? 5000 : 1 << 28;
      }));
}

TEST(Hostile, BlocksOfAnySizeGiveTheSame) {
  for (const auto &[name, bytes] : documents()) {
    const std::string whole = whole_text(Document(bytes));
    for (const int size : {1, 7, 4096})
      if (size > 1 || bytes[0] != '\xFF') // the first block must hold a mark and a "<"
        EXPECT_EQ(read_in_blocks(bytes, size), whole) << name;
  }
}

// Each attack meets one small budget, never the others' defaults. Expat's memory counts, too.
TEST(Hostile, BudgetsEndAttacks) {
  const auto times = [](int count, const std::string &text) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
  };
  const auto numbered = [](int count, const std::string &before, const std::string &after) {
    std::string result;
    for (int i = 0; i < count; ++i) result += before + std::to_string(i) + after;
    return result;
  };
  const std::string entities = "<!DOCTYPE svg [<!ENTITY a '" + times(10000, "aaaa") + "'>]><svg>" +
                               times(200, "&a;") + "</svg>";
  const std::string no_memory = "Out of memory";
  const struct {
    const char *name;
    std::string drawing;
    std::string message;
  } cases[] = {
      {"gzip bomb", gzip("<svg>" + times(1 << 20, "<g/>") + "</svg>"),
       "Limit of 1048576 inflated bytes exceeded"},
      {"quadratic entities", entities, "limit on input amplification factor"},
      {"nested entities", "<!DOCTYPE svg [" + numbered(101, "<!ENTITY a", " '&b;'>") + "]><svg/>",
       "Limit of 100 entities with references exceeded"},
      {"default attributes",
       "<!DOCTYPE svg [<!ATTLIST g a CDATA '" + times(2000, "a") + "'>]><svg>" + times(99, "<g/>"),
       "Limit of 2 times the input in default attributes exceeded"},
      {"default namespaces",
       "<!DOCTYPE svg [<!ATTLIST g" + numbered(20, " xmlns:a", " CDATA 'u'") + ">]><svg>" +
           times(400, "<g/>"),
       "Limit of 2 times the input in default attributes exceeded"},
      {"attribute declarations",
       "<!DOCTYPE svg [<!ATTLIST g" + times(10001, " a CDATA #IMPLIED") + ">]><svg/>",
       "Limit of 10000 attribute declarations exceeded"},
      {"namespace", "<svg xmlns:a='" + times(1001, "u") + "'/>",
       "Limit of 1000 bytes in the name of a namespace exceeded"},
      {"nodes", "<svg>" + times(6001, "<g/>") + "</svg>", "Limit of 6000 nodes exceeded"},
      {"depth", "<svg>" + times(1000, "<x>"), "Limit of 1000 nested elements exceeded"},
      {"one attribute", "<svg a='" + times(1 << 20, "abc") + "'/>", no_memory},
      {"ids", "<svg>" + numbered(9000, "<g id='" + times(99, "i"), "'/>") + "</svg>", no_memory},
      {"sheet", "<svg><style>a{" + times(1 << 20, "fill") + "</style></svg>", no_memory},
      {"path", "<svg><path d='M0 0L1" + times(1 << 17, " 1 1") + "'/></svg>", no_memory},
      {"title", "<svg><title>" + times(1 << 18, "title") + "</title></svg>", no_memory},
      {"data", "<svg><image href='data:," + times(1 << 20, "AAA") + "'/></svg>", no_memory},
  };
  CoreOptions options = AccountingCore::defaults();
  options.memory_budget = options.inflate_budget = 1 << 20;
  for (const auto &c : cases) {
    Document document(c.drawing, options, [](svg_parser *p) {
      const svg_limits limits = {6000, 1000, 2, 100000, 0, 0};
      svg_set_limits(p, &limits);
    });
    EXPECT_NE(document.messages().find(c.message), std::string::npos)
        << c.name << ": " << document.code << ' ' << document.messages();
    ort_statistics statistics;
    ort_get_statistics(document.core, &statistics);
    EXPECT_LE(statistics.peak_bytes, options.memory_budget) << c.name;
  }
}

TEST(Hostile, ReadersInThreadsDoNotMeet) {
  const std::vector<NamedBytes> inputs = documents();
  std::vector<std::string> alone;
  for (const NamedBytes &input : inputs) alone.push_back(whole_text(Document(input.bytes)));
  std::vector<std::thread> threads;
  for (size_t first = 0; first < 8; ++first)
    threads.emplace_back([&inputs, &alone, first] {
      for (size_t i = 0; i < inputs.size(); ++i) {
        const size_t k = (first * 5 + i) % inputs.size();
        EXPECT_EQ(whole_text(Document(inputs[k].bytes)), alone[k]) << inputs[k].name;
      }
    });
  for (std::thread &thread : threads) thread.join();
}

// The log writes numbers, too. ./dev test provides the locale.
TEST(Hostile, CommaLocaleChangesNothing) {
  const auto read_all = [] {
    std::vector<std::string> lines; // sorted: the log lists ids by address
    for (const NamedBytes &input : documents()) {
      const Document document(input.bytes, AccountingCore::with_log(6));
      std::istringstream text(whole_text(document) + document.core.log);
      for (std::string line; std::getline(text, line);) {
        for (size_t at = 0; (at = line.find("0x", at)) != line.npos;)
          line.erase(at, line.find_first_not_of("0123456789abcdef", at + 2) - at);
        if (line.find("embedded in") == line.npos) lines.push_back(line); // digits from addresses
      }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
  };
  const std::vector<std::string> expected = read_all();
  if (!setlocale(LC_ALL, "de_DE.UTF-8")) GTEST_SKIP() << "no locale de_DE.UTF-8";
  ASSERT_STREQ(localeconv()->decimal_point, ",");
  EXPECT_EQ(read_all(), expected);
  setlocale(LC_ALL, "C");
}
