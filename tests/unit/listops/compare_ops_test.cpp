#include "listops/compare_ops.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "files/file_entry.h"
#include "listops/sort_keys.h"
#include "listops/string_pair.h"
#include "model/compare_model.h"
#include "model/sort_model.h"

namespace zenfo {
namespace {

// What a key sees of a record, apart from the record itself.
using Kept = std::vector<std::unique_ptr<Record>>;
using Order = std::vector<const Record*>;

class CompareModelTest : public testing::Test {
 protected:
  void SetUp() override { library_.initialize(); }
  void TearDown() override { library_.terminate(); }

  void fill(ItemList& list, size_t count, uint64_t values, bool mixed) {
    list.Clear();
    for (size_t i = 0; i < count; ++i) list.Append(make(values, mixed));
  }

  std::unique_ptr<Record> make(uint64_t values, bool mixed) {
    const std::string number = std::to_string(random_() % values);
    if (mixed && random_() % 4 == 0) {
      return std::make_unique<StringPair>("name" + number, "x");
    }
    auto entry = std::make_unique<FileEntry>(
        SharedText(random_() % 2 == 0 ? "Name" + number : "name" + number));
    if (random_() % 10 != 0) entry->derive_file_name();
    entry->state = static_cast<uint32_t>(random_() % 2);
    entry->flag = 5;
    entry->icon = static_cast<int32_t>(random_() % values);
    entry->facts.size = random_() % values;
    entry->facts.write_time = (random_() % values) << (random_() % 2 * 31);
    return entry;
  }

  // The records as sorted by position, compared as if all had the state 0,
  // which the operation sets before anything else.
  static Order sorted(const ItemList& list, Comparator key) {
    Order order = list.Records();
    if (order.size() < 2) return order;
    model::sort(order, key);
    return order;
  }

  static void expect_marks(ItemList& list, const std::vector<bool>& marks,
                           bool keep) {
    for (uint32_t i = 0; i < list.Count(); ++i) {
      const Record* record = list.Get(i);
      ASSERT_EQ(record->state == 1, marks[i] == keep) << i;
      const auto* entry = record_cast<FileEntry>(record);
      if (entry != nullptr) {
        ASSERT_EQ(entry->flag, marks[i] ? 1 : 0);
      }
    }
  }

  Library library_;
  std::mt19937_64 random_{20261123};
};

TEST_F(CompareModelTest, MarksWhatTheStepsMark) {
  for (int round = 0; round < 400; ++round) {
    const uint64_t values = 1 + random_() % 60;
    const bool mixed = round % 3 == 0;
    ItemList& reference = *library_.second_files;
    ItemList& compared = *library_.pairs;
    fill(reference, random_() % 60, values, mixed);
    fill(compared, random_() % 60, values, mixed);
    for (const uint32_t option : {1u, 2u, 3u, 4u, 7u, 8u, 10u, 11u, 14u, 18u}) {
      const Comparator key = kSortTable[option].compare;
      const Order a = sorted(reference, key);
      const Order b = sorted(compared, key);
      const model::Marks marks =
          model::compare_sorted(a, b, key, [] { return false; });
      const bool keep = random_() % 2 == 0;
      ASSERT_EQ(compare_lists(library_, option, keep ? 3 : 0), 1);
      for (uint32_t i = 0; i < a.size(); ++i) {
        ASSERT_EQ(reference.Get(i), a[i]) << "option " << option;
      }
      SCOPED_TRACE("option " + std::to_string(option));
      expect_marks(reference, marks.reference, keep);
      expect_marks(compared, marks.compared, keep);
    }
  }
}

// By state every entry equals every other one, whatever the walk marks
// meanwhile.
TEST_F(CompareModelTest, ByStateAllEntriesAreMarkedInListsOfAnyLength) {
  for (const size_t count : {1u, 2u, 7u, 40u}) {
    for (const size_t other : {1u, 3u, 7u, 41u}) {
      for (const uint32_t option : {0u, 12u, 15u, 19u}) {
        fill(*library_.second_files, count, 9, false);
        fill(*library_.pairs, other, 9, false);
        ASSERT_EQ(compare_lists(library_, option, 1), 1);
        EXPECT_EQ(library_.second_files->CountState(1),
                  static_cast<int32_t>(count));
        EXPECT_EQ(library_.pairs->CountState(1), static_cast<int32_t>(other));
      }
    }
  }
}

int polls_left = 0;
int32_t stop_always(void*) {
  ++polls_left;
  return 1;
}

TEST_F(CompareModelTest, AStopDropsTheEqualsOfOneEntryAndGoesOn) {
  ItemList& reference = *library_.second_files;
  ItemList& compared = *library_.pairs;
  for (int round = 0; round < 50; ++round) {
    fill(reference, 300, 5, false);
    fill(compared, 300, 5, false);
    const Comparator key = kSortTable[8].compare;
    // The counter stands anywhere: bring it to its start.
    compared.SetInterruptHook(stop_always);
    while (compared.PollInterruptEvery(100) == 0) {
    }
    int asked = 0;
    const model::Marks marks =
        model::compare_sorted(sorted(reference, key), sorted(compared, key),
                              key, [&] { return ++asked % 101 == 0; });
    ASSERT_EQ(compare_lists(library_, 8, 1), 1);
    expect_marks(reference, marks.reference, true);
    expect_marks(compared, marks.compared, true);
  }
}

// An entry of its own for each: 200,000 that do not meet, compared by a walk
// that begins anew each time, would take minutes.
TEST_F(CompareModelTest, LeavesBehindWhatIsSmaller) {
  for (int i = 0; i < 200000; ++i) {
    for (ItemList* list : {library_.second_files.get(), library_.pairs.get()}) {
      auto entry = std::make_unique<FileEntry>(SharedText("x"));
      entry->set_full_name(std::to_string(10000000 + i) +
                           (list == library_.pairs.get() ? "b" : "a"));
      entry->facts.size =
          static_cast<uint64_t>(2 * i + (list == library_.pairs.get() ? 1 : 0));
      list->Append(std::move(entry));
    }
  }
  for (const uint32_t option : {2u, 8u, 10u, 11u}) {
    EXPECT_EQ(compare_lists(library_, option, 1), 1);
    EXPECT_EQ(library_.second_files->CountState(1), 0) << option;
  }
}

}  // namespace
}  // namespace zenfo
