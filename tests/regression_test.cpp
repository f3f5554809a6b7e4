// What the fuzz targets found once, and their seeds, through the same functions. A new finding is
// saved as tests/regression/TARGET/NAME.
#include <gtest/gtest.h>

#include "fuzz/support/fuzz.h"
#include "tests/support/documents.h"

TEST(Regression, FindingsAndSeedsOfTheFuzzTargets) {
  static constexpr struct {
    const char *name;
    void (*run)(const std::string &input);
  } targets[] = {{"reader", fuzz_reader}, {"path", fuzz_path},   {"values", fuzz_values},
                 {"sheets", fuzz_sheets}, {"style", fuzz_style}, {"data_iri", fuzz_data_iri},
                 {"scene", fuzz_scene}};
  for (const auto &target : targets) {
    for (const char *folder : {"fuzz/seeds/", "tests/regression/"})
      for (const auto &[name, bytes] : files_below(folder + std::string(target.name))) {
        SCOPED_TRACE(name);
        target.run(bytes);
      }
  }
}
