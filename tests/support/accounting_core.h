// accounting_core.h: the core that tests run under, and the sweep over failing allocations.
//
// Objects with destructors must not live in a function that a raise leaves: inside the lambdas
// given to protect keep to plain values, outside anything goes.
#ifndef TESTS_SUPPORT_ACCOUNTING_CORE_H
#define TESTS_SUPPORT_ACCOUNTING_CORE_H

#include <functional>
#include <string>
#include <vector>

#include "core/ort_core.h"

struct Message {
  ort_severity severity;
  int code;
  std::string text;
  bool operator==(const Message &) const = default;
};

// What a core of the tests is made with: also which allocation fails, see ort_fail_at.
struct CoreOptions : ort_options {
  uint64_t fail_at = 0;
  bool fail_on = false;
};

// A core that records messages and log. When it goes, the test fails if a block is still alive.
class AccountingCore {
public:
  // The sinks in options are replaced.
  explicit AccountingCore(const CoreOptions &options = defaults());
  ~AccountingCore();
  AccountingCore(const AccountingCore &) = delete;
  AccountingCore &operator=(const AccountingCore &) = delete;

  static CoreOptions defaults();
  static CoreOptions with_log(int level, int log_class = ORT_LOG_READER);

  operator ort_core *() const { return core_; }
  ort_core *get() const { return core_; }

  // Runs body in a frame; 0 or the code of the error that it raised.
  template <class Body> int protect(Body &&body) {
    return ort_protected(core_, body) ? 0 : ort_error_code(core_);
  }

  // Texts of the live blocks, "tag: 2 blocks, 30 bytes" each; empty when there is none.
  std::string live_blocks() const;
  uint64_t allocations() const;
  void expect_clean() const; // as when the core goes

  std::vector<Message> messages;
  std::string log;

private:
  ort_core *core_;
};

// Runs body under a new core with allocation 1, 2, 3 ... failing, first only that one and then also
// all later ones, until body gets by without it. body does all of its work in protected calls,
// cleans up, and says whether it succeeded. The test fails unless each failure is reported as out
// of memory (raised, or in a message), unless body leaves no block alive, unless at least one
// allocation failed, and unless body succeeds in the end.
void allocation_sweep(const std::function<bool(AccountingCore &)> &body,
                      const CoreOptions &options = AccountingCore::defaults());

#endif
