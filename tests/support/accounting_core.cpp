#include "tests/support/accounting_core.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "core/ort_state.h"

static void record_message(void *user, ort_severity severity, int code, const char *text) {
  static_cast<AccountingCore *>(user)->messages.push_back({severity, code, text});
}

static void record_log(void *user, const char *text, size_t length) {
  static_cast<AccountingCore *>(user)->log.append(text, length);
}

AccountingCore::AccountingCore(const CoreOptions &options) {
  ort_options own = options;
  own.message = record_message;
  own.log = record_log;
  own.message_user = own.log_user = this;
  core_ = ort_core_new(&own);
  ort_fail_at(core_, options.fail_at, options.fail_on);
}

AccountingCore::~AccountingCore() {
  expect_clean();
  ort_core_delete(core_);
}

void AccountingCore::expect_clean() const { EXPECT_EQ(live_blocks(), ""); }

CoreOptions AccountingCore::defaults() {
  CoreOptions options;
  ort_options_init(&options);
  return options;
}

CoreOptions AccountingCore::with_log(int level, int log_class) {
  CoreOptions options = defaults();
  options.log_levels[log_class] = static_cast<unsigned char>(level);
  return options;
}

std::string AccountingCore::live_blocks() const {
  std::vector<ort_tag_count> counts(ort_get_tag_counts(core_, nullptr, 0));
  ort_get_tag_counts(core_, counts.data(), counts.size());
  std::string text;
  for (const ort_tag_count &count : counts) {
    if (count.blocks == 0) continue;
    text += std::string(count.tag) + ": " + std::to_string(count.blocks) + " blocks, " +
            std::to_string(count.bytes) + " bytes\n";
  }
  return text;
}

uint64_t AccountingCore::allocations() const {
  ort_statistics statistics;
  ort_get_statistics(core_, &statistics);
  return statistics.allocations;
}

void allocation_sweep(const std::function<bool(AccountingCore &)> &body,
                      const CoreOptions &options) {
  uint64_t failures = 0;
  for (uint64_t at = 1;; ++at) {
    for (const bool on : {false, true}) {
      CoreOptions failing = options;
      failing.fail_at = at;
      failing.fail_on = on;
      AccountingCore core(failing);
      const bool succeeded = body(core);
      if (core.allocations() < at) {
        EXPECT_TRUE(succeeded) << "without a failure: " << ort_error_text(core);
        EXPECT_GT(failures, 0U) << "the sweep failed no allocation";
        return;
      }
      ++failures;
      const bool reported = std::any_of(core.messages.begin(), core.messages.end(),
                                        [](const Message &m) { return m.code == ORT_E_NO_MEMORY; });
      if (succeeded ? !reported : ort_error_code(core) != ORT_E_NO_MEMORY) {
        ADD_FAILURE() << "allocation " << at << (on ? " and all later ones" : "")
                      << " failed, but body " << (succeeded ? "succeeded" : "raised: ")
                      << (succeeded ? "" : ort_error_text(core));
        return;
      }
      if (core.live_blocks() != "") {
        ADD_FAILURE() << "allocation " << at << (on ? " and all later ones" : "")
                      << " failed, and blocks stay alive";
        return; // the core's destructor lists them
      }
    }
  }
}
