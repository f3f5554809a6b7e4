#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "tests/support/accounting_core.h"

namespace {

struct owner {
  char *text;
  int number;
};

struct entry { // for sorting; longer than one part of a swap
  char filler[70];
  int key, place;
  bool operator==(const entry &) const = default;
};

} // namespace

static void reclaim(void *item) { *static_cast<owner *>(item) = {nullptr, 17}; }

static void release(ort_core *core, void *item) {
  ort_free(core, static_cast<owner *>(item)->text);
}

static constexpr ort_item_desc owners = {sizeof(owner), reclaim, release};
static constexpr ort_item_desc ints = {sizeof(int), nullptr, nullptr};

TEST(Vector, OwnsItsItemsThroughEveryFailure) {
  allocation_sweep([](AccountingCore &core) {
    ort_vtr *vector = nullptr;
    ort_hvtr *handles = nullptr;
    const int code = core.protect([&] {
      vector = ort_vtr_new(core, &owners, 0, 0);
      for (int i = 0; i < 40; ++i) {
        owner *item = static_cast<owner *>(ort_vtr_push(vector));
        if (item->number != 17) ort_internal_error(core, "item not reclaimed", i);
        item->number = i;
        item->text = ort_strdup(core, "owned");
      }
      ort_vtr_pop(vector);
      ort_vtr_resize(vector, 60);
      ort_item<owner>(vector, 59).text = ort_strdup(core, "owned");
      ort_vtr_resize(vector, 3);
      handles = ort_hvtr_new(core, &owners);
      for (int i = 0; i < 50; ++i) {
        const size_t index = ort_hvtr_reclaim_item(handles);
        static_cast<owner *>(ort_hvtr_at(handles, index))->text = ort_strdup(core, "owned");
      }
    });
    if (code == 0) {
      EXPECT_EQ(ort_vtr_count(vector), 3U);
      EXPECT_EQ(ort_top<owner>(vector).number, 2);
    }
    ort_vtr_delete(vector);
    ort_hvtr_delete(handles);
    return code == 0;
  });
}

// The items get a block of the record's size, right after it.
TEST(Vector, KnowsItsBlockFromItsNeighbor) {
  static constexpr ort_item_desc twelve = {12, nullptr, nullptr};
  AccountingCore core;
  for (int i = 0; i < 3; ++i) {
    ort_vtr *vector = ort_vtr_new(core, &twelve, 0, 0);
    for (int k = 0; k < 9; ++k) ort_vtr_push(vector);
    ort_vtr_delete(vector);
  }
}

TEST(Vector, IsZeroedAndGrowsGeometrically) {
  AccountingCore core;
  EXPECT_EQ(ort_vtr_count(nullptr), 0U);
  ort_vtr *vector = ort_vtr_new(core, &ints, 100, 1);
  EXPECT_EQ(ort_vtr_count(vector), 0U);
  ort_push(vector, 7);
  const uint64_t before = core.allocations();
  ort_vtr_resize(vector, 100);
  EXPECT_EQ(ort_item<int>(vector, 99), 0);
  ort_vtr_resize(vector, 0);
  ort_vtr_resize(vector, 50);
  EXPECT_EQ(ort_item<int>(vector, 0), 0) << "a used item must be cleared";
  EXPECT_EQ(core.allocations(), before) << "the storage is kept";
  for (int i = 50; i < 100000; ++i) ort_push(vector, i);
  EXPECT_LT(core.allocations(), before + 40);
  EXPECT_EQ(ort_item<int>(vector, 77777), 77777);
  EXPECT_EQ(core.protect([&] { ort_vtr_resize(vector, SIZE_MAX / 3); }), ORT_E_NO_MEMORY);
  EXPECT_EQ(core.protect([&] { ort_vtr_new(core, &ints, SIZE_MAX / 4 + 1, 0); }), ORT_E_NO_MEMORY);
  EXPECT_EQ(ort_vtr_count(vector), 100000U);
  ort_vtr_delete(vector);
  ort_vtr_delete(nullptr);
}

// ---- Sorting ------------------------------------------------------------------------------------

static int by_key(const void *a, const void *b) {
  return static_cast<const entry *>(a)->key - static_cast<const entry *>(b)->key;
}

TEST(Sort, IsStableInBothDirections) {
  AccountingCore core;
  std::mt19937 random(1);
  for (size_t count : {0U, 1U, 2U, 11U, 12U, 13U, 24U, 25U, 100U, 1000U, 4099U})
    for (const int descending : {0, 1}) {
      std::vector<entry> items(count);
      for (int place = 0; entry & item : items)
        item = {{}, static_cast<int>(random() % 20), place++};
      std::vector<entry> expected = items;
      std::stable_sort(expected.begin(), expected.end(), [&](const entry &a, const entry &b) {
        return descending ? a.key > b.key : a.key < b.key;
      });
      const uint64_t before = core.allocations();
      ort_qsort_sc(core, items.data(), count, sizeof(entry), by_key, descending);
      EXPECT_EQ(core.allocations(), before + (count > 12)) << "short arrays need no memory";
      EXPECT_TRUE(items == expected) << count << " items";
    }
}

// ---- Handle vectors -----------------------------------------------------------------------------

TEST(HandleVector, KeepsIndexesAndReusesSlots) {
  AccountingCore core;
  ort_hvtr *handles = ort_hvtr_new(core, &owners);
  const auto item = [&](size_t i) { return static_cast<owner *>(ort_hvtr_at(handles, i)); };
  for (size_t i = 0; i < 100; ++i) {
    ASSERT_EQ(ort_hvtr_reclaim_item(handles), i);
    EXPECT_EQ(item(i)->number, 17);
    *item(i) = {ort_strdup(core, "owned"), static_cast<int>(i)};
  }
  for (size_t i : {50U, 0U, 99U}) ort_hvtr_release_item(handles, i);
  for (size_t i : {size_t{50}, size_t{100}, SIZE_MAX}) EXPECT_FALSE(ort_hvtr_check_idx(handles, i));
  EXPECT_EQ(item(98)->number, 98);
  std::set<size_t> reused;
  for (int i = 0; i < 4; ++i) reused.insert(ort_hvtr_reclaim_item(handles));
  EXPECT_EQ(reused, (std::set<size_t>{0, 50, 99, 100}));
  EXPECT_EQ(item(50)->number, 17);
  EXPECT_EQ(ort_hvtr_size(handles), 101U);
  ort_hvtr_release_item(handles, 1);
  EXPECT_EQ(core.protect([&] { ort_hvtr_release_item(handles, 1); }), ORT_E_INTERNAL);
  ort_hvtr_delete(handles); // releases what is still in use
  ort_hvtr_delete(nullptr);
}
