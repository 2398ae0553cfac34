#include "sorting/list_comparison.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "containers/string_pair.h"
#include "files/file_entry.h"
#include "model/compare_model.h"
#include "model/sort_model.h"
#include "sorting/sort_keys.h"

namespace zenfo {
namespace {

// The data that a key reads, kept alive with the records.
using Kept = std::vector<std::unique_ptr<Record>>;
using Order = std::vector<const Record*>;

class CompareModelTest : public testing::Test {
 protected:
  void fill(ItemList& list, size_t count, uint64_t values, bool mixed) {
    list.clear();
    for (size_t i = 0; i < count; ++i) list.append(make(values, mixed));
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

  // The records sorted by position, compared as if all had the state 0, which
  // the operation sets first.
  static Order sorted(const ItemList& list, Comparator key) {
    Order order = list.records();
    if (order.size() < 2) return order;
    model::sort(order, key);
    return order;
  }

  static void expect_marks(ItemList& list, const std::vector<bool>& marks,
                           bool keep) {
    for (uint32_t i = 0; i < list.count(); ++i) {
      const Record* record = list.get(i);
      ASSERT_EQ(record->state == 1, marks[i] == keep) << i;
      const auto* entry = record_cast<FileEntry>(record);
      if (entry != nullptr) {
        ASSERT_EQ(entry->flag, marks[i] ? 1 : 0);
      }
    }
  }

  ItemList reference_;
  ItemList compared_;
  std::mt19937_64 random_{20261123};
};

TEST_F(CompareModelTest, MarksWhatTheStepsMark) {
  for (int round = 0; round < 400; ++round) {
    const uint64_t values = 1 + random_() % 60;
    const bool mixed = round % 3 == 0;
    fill(reference_, random_() % 60, values, mixed);
    fill(compared_, random_() % 60, values, mixed);
    for (const uint32_t option : {1u, 2u, 3u, 4u, 7u, 8u, 10u, 11u, 14u, 18u}) {
      const Comparator key = kSortTable[option].compare;
      const Order a = sorted(reference_, key);
      const Order b = sorted(compared_, key);
      const model::Marks marks =
          model::compare_sorted(a, b, key, [] { return false; });
      const bool keep = random_() % 2 == 0;
      compare_lists(reference_, compared_, option, keep);
      for (uint32_t i = 0; i < a.size(); ++i) {
        ASSERT_EQ(reference_.get(i), a[i]) << "option " << option;
      }
      SCOPED_TRACE("option " + std::to_string(option));
      expect_marks(reference_, marks.reference, keep);
      expect_marks(compared_, marks.compared, keep);
    }
  }
}

// By state every entry equals every other one, whatever the walk marks in the
// meantime.
TEST_F(CompareModelTest, ByStateAllEntriesAreMarkedInListsOfAnyLength) {
  for (const size_t count : {1u, 2u, 7u, 40u}) {
    for (const size_t other : {1u, 3u, 7u, 41u}) {
      for (const uint32_t option : {0u, 12u, 15u, 19u}) {
        fill(reference_, count, 9, false);
        fill(compared_, other, 9, false);
        compare_lists(reference_, compared_, option, true);
        EXPECT_EQ(reference_.count_state(1), static_cast<int32_t>(count));
        EXPECT_EQ(compared_.count_state(1), static_cast<int32_t>(other));
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
  for (int round = 0; round < 50; ++round) {
    fill(reference_, 300, 5, false);
    fill(compared_, 300, 5, false);
    const Comparator key = kSortTable[8].compare;
    // The counter may have any value: resets it.
    compared_.set_interrupt_hook(stop_always);
    while (compared_.poll_interrupt_every(100) == 0) {
    }
    int asked = 0;
    const model::Marks marks =
        model::compare_sorted(sorted(reference_, key), sorted(compared_, key),
                              key, [&] { return ++asked % 101 == 0; });
    compare_lists(reference_, compared_, 8, true);
    expect_marks(reference_, marks.reference, true);
    expect_marks(compared_, marks.compared, true);
  }
}

// Each of these times is before the next, and the last before the first, so an
// entry may have its equal before the equal of the previous entry.
TEST_F(CompareModelTest, AtTheListsEndTheStartStaysWhereItWas) {
  constexpr uint64_t kFirst = 0, kSecond = 0x60000000, kThird = 0xC0000000;
  const auto add = [](ItemList& list, uint64_t time) {
    auto entry = std::make_unique<FileEntry>(SharedText("x"));
    entry->facts.write_time = time;
    list.append(std::move(entry));
  };
  for (uint64_t time : {kFirst, kSecond, kThird}) add(reference_, time);
  for (uint64_t time : {kThird, kFirst}) add(compared_, time);
  const std::vector<bool> found = {true, false, true};
  compare_lists(reference_, compared_, 7, true);
  for (uint32_t i = 0; i < 3; ++i) {
    const auto* entry = record_cast<FileEntry>(reference_.get(i));
    ASSERT_EQ(entry->facts.write_time, i * kSecond) << "order of the sort";
  }
  expect_marks(reference_, found, true);
}

// 200,000 different entries: a walk that started at the beginning each time
// would take minutes.
TEST_F(CompareModelTest, PassesEachSmallerEntryOnce) {
  for (int i = 0; i < 200000; ++i) {
    for (ItemList* list : {&reference_, &compared_}) {
      auto entry = std::make_unique<FileEntry>(SharedText("x"));
      entry->set_full_name(std::to_string(10000000 + i) +
                           (list == &compared_ ? "b" : "a"));
      entry->facts.size =
          static_cast<uint64_t>(2 * i + (list == &compared_ ? 1 : 0));
      list->append(std::move(entry));
    }
  }
  for (const uint32_t option : {2u, 8u, 10u, 11u}) {
    compare_lists(reference_, compared_, option, true);
    EXPECT_EQ(reference_.count_state(1), 0) << option;
  }
}

}  // namespace
}  // namespace zenfo
