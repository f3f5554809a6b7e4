#include <gtest/gtest.h>

#include "tests/support/accounting_core.h"

namespace {

// Entries stand in for others that were removed between them and their own place. A third of the
// names differ by their salts only.
TEST(NameIndex, FindsWhatIsLeft) {
  AccountingCore core;
  ort_name_index index = {};
  std::vector<std::string> names(3000);
  const auto salt = [](size_t i) { return static_cast<uint32_t>(i % 3); };
  core.protect([&] {
    for (size_t i = 0; i < names.size(); ++i) {
      names[i] = "name" + std::to_string(i / 3);
      ort_index_add(core, &index, names[i].c_str(), salt(i))->number = static_cast<uint32_t>(i);
    }
    for (size_t i = 0; i < names.size(); i += 4)
      ort_index_remove(core, &index, ort_index_find(core, &index, names[i], salt(i)));
  });
  for (size_t i = 0; i < names.size(); ++i) {
    const ort_name_entry *entry = ort_index_find(core, &index, names[i], salt(i));
    EXPECT_TRUE(i % 4 == 0 ? entry == nullptr : entry != nullptr && entry->number == i) << i;
  }
  ort_index_clear(core, &index);
}

} // namespace
