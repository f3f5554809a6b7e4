// A drawing, painted into callbacks and measured, with small budgets so that each input ends soon.
#include <gtest/gtest.h>

#include "core/ort_state.h"
#include "fuzz/support/fuzz.h"
#include "svg/parser/svg_parser.h"
#include "tests/support/scene_list.h"

void fuzz_scene(const std::string &input) {
  const FuzzInput parts(input);
  CoreOptions options = AccountingCore::defaults();
  options.memory_budget = 256 << 20;
  Document document(parts.text, options, [](svg_parser *p) {
    const svg_limits limits = {10000, 0, 0, 0, 0, 2000};
    svg_set_limits(p, &limits);
    p->language = "en";
  });
  if (document.code != 0) return;
  const unsigned fail_at = parts.settings[FuzzInput::FAIL_AT];
  const bool injected = fail_at != 0;
  if (injected)
    ort_fail_at(document.core, document.core.allocations() + fail_at,
                parts.settings[FuzzInput::FAIL_ON] % 2 != 0);
  document.code = scene_all(document.core, document.parser, document.svg);
  ort_fail_at(document.core, 0, false);
  EXPECT_TRUE(document.code == 0 || document.code == ORT_E_LIMIT ||
              (injected && document.code == ORT_E_NO_MEMORY))
      << document.messages();
}
