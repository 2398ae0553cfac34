#include "sorting/keyed_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "containers/string_pair.h"
#include "files/file_entry.h"
#include "model/compare_model.h"
#include "model/sort_model.h"

namespace zenfo {
namespace {

using Order = std::vector<const Record*>;

Order order_of(ItemList& list) {
  Order order;
  for (uint32_t i = 0; i < list.count(); ++i) order.push_back(list.get(i));
  return order;
}

// The definition: the model's sort by the key's comparator.
Order model_order(const ItemList& list, const SortKey& key,
                  int32_t descending) {
  Order order = list.records();
  model::sort(order, [&](const Record* a, const Record* b) {
    const auto answer = static_cast<uint32_t>(key.compare(a, b));
    return static_cast<int32_t>(descending != 0 ? 0 - answer : answer);
  });
  return order;
}

void expect_as_comparator(ItemList& list, const SortKey& key) {
  for (const int32_t descending : {0, 1}) {
    ASSERT_EQ(list.sort(descending, key.compare), 1);
    const Order expected = order_of(list);
    ASSERT_EQ(sort_by_key(list, key, descending), 1);
    ASSERT_TRUE(order_of(list) == expected)
        << "row " << key.row << " descending " << descending << " count "
        << list.count();
    ASSERT_TRUE(list.check());
  }
}

// For lists without many missing texts, on which the model would be slow.
void expect_as_model(ItemList& list, const SortKey& key) {
  expect_as_comparator(list, key);
  for (const int32_t descending : {0, 1}) {
    const Order model = model_order(list, key, descending);
    ASSERT_EQ(sort_by_key(list, key, descending), 1);
    ASSERT_TRUE(order_of(list) == model)
        << "row " << key.row << " descending " << descending;
  }
}

struct Source {
  std::mt19937_64 random;
  uint64_t values;  // number of different values of a field

  uint64_t number() { return random() % values; }
  uint64_t time() {
    const uint64_t kinds[] = {number(), number() << 29, number() << 31,
                              number() << 61, random()};
    return kinds[random() % 5];
  }
};

std::unique_ptr<Record> random_file(Source& source) {
  static const char* const kFolders[] = {"a", "B", "b", "folder"};
  std::string path;
  path += platform::kPathSeparator;
  path += kFolders[source.random() % 4];
  path += platform::kPathSeparator;
  path += source.random() % 2 == 0 ? "Name" : "name";
  path += std::to_string(source.number());
  auto entry = std::make_unique<FileEntry>(SharedText(path));
  if (source.random() % 8 != 0) entry->derive_file_name();
  if (source.random() % 8 != 0) entry->derive_folder();
  entry->state = static_cast<uint32_t>(source.random() % 3);
  entry->icon = static_cast<int32_t>(source.number()) - 2;
  entry->flag = static_cast<int32_t>(source.number()) - 1;
  entry->facts.size = source.number() - 1;  // also 2^64 - 1, which is -1
  entry->facts.attributes = static_cast<uint32_t>(source.number());
  entry->facts.creation_time = source.time();
  entry->facts.access_time = source.time();
  entry->facts.write_time = source.number() << 30;
  return entry;
}

std::unique_ptr<Record> random_record(Source& source, bool mixed) {
  if (mixed && source.random() % 3 == 0) {
    const std::string text = std::to_string(source.number());
    return std::make_unique<StringPair>(source.random() % 4 == 0 ? "" : text,
                                        text);
  }
  return random_file(source);
}

void fill(ItemList& list, size_t count, Source& source, bool mixed) {
  for (size_t i = 0; i < count; ++i) list.append(random_record(source, mixed));
}

TEST(SortByKey, LeavesTheOrderOfTheComparatorToTheLastTie) {
  Source source{std::mt19937_64(20261122), 1};
  for (const size_t count : {2u, 3u, 5u, 6u, 7u, 17u, 100u, 601u}) {
    for (const uint64_t values : {1u, 2u, 5u, 40u, 1000000u}) {
      for (const bool mixed : {false, true}) {
        source.values = values;
        ItemList list;
        fill(list, count, source, mixed);
        const auto expect =
            count <= 100 ? expect_as_model : expect_as_comparator;
        for (const SortKey& key : kSortTable) expect(list, key);
      }
    }
  }
}

TEST(SortByKey, LeavesTheOrderOfTheComparatorOnHostileShapes) {
  const int count = 3000;
  const std::function<int(int)> shapes[] = {
      [](int i) { return i; }, [=](int i) { return count - i; },
      [](int) { return 1; }, [=](int i) { return std::min(i, count - i); },
      [](int i) { return i % 2; }};
  for (const auto& shape : shapes) {
    ItemList list;
    for (int i = 0; i < count; ++i) {
      const int n = shape(i);
      auto entry = std::make_unique<FileEntry>(SharedText("x"));
      entry->set_full_name("n" + std::to_string(100000 + n));
      entry->facts.size = static_cast<uint64_t>(n);
      entry->facts.write_time = static_cast<uint64_t>(n) << 20;
      list.append(std::move(entry));
    }
    for (const uint32_t row : {2u, 7u, 8u, 10u, 11u}) {
      expect_as_model(list, kSortTable[row]);
    }
  }
}

TEST(SortByKey, SortsAListThatIsSortedAlreadyFromItsLinks) {
  Source source{std::mt19937_64(5), 3};
  ItemList list;
  fill(list, 200, source, false);
  ASSERT_EQ(sort_by_key(list, kSortTable[10], 1), 1);
  expect_as_model(list, kSortTable[8]);
}

TEST(SortByKey, SortsVeryManyMissingTexts) {
  ItemList list;
  for (int i = 0; i < 100000; ++i) {
    list.append(std::make_unique<FileEntry>(SharedText("x")));
  }
  EXPECT_EQ(sort_by_key(list, kSortTable[2], 0), 1);
  EXPECT_EQ(sort_by_key(list, kSortTable[11], 1), 1);
  EXPECT_TRUE(list.check());
}

TEST(SortByKey, AnswersMinusOneForFewerThanTwoRecords) {
  ItemList list;
  EXPECT_EQ(sort_by_key(list, kSortTable[0], 0), -1);
  list.append(std::make_unique<StringPair>("a", "b"));
  EXPECT_EQ(sort_by_key(list, kSortTable[0], 0), -1);
}

void select(Record& record) { record.state = 1; }

std::vector<uint32_t> states(const ItemList& list) {
  std::vector<uint32_t> all;
  for (const Record* record : list.records()) all.push_back(record->state);
  return all;
}

void deselect(ItemList& list) { list.set_state(-1, 0); }

TEST(SelectDuplicatesByKey, SelectsWhatTheComparatorFindsEqual) {
  Source source{std::mt19937_64(17), 1};
  for (int round = 0; round < 60; ++round) {
    source.values = 1 + source.random() % 30;
    ItemList list;
    fill(list, 2 + source.random() % 200, source, round % 2 == 0);
    for (uint32_t option = 0; option < 12; ++option) {
      const SortKey& key = kSortTable[option];
      deselect(list);
      const int32_t expected = list.select_duplicates(key.compare, select);
      const auto expected_states = states(list);
      const Order expected_order = order_of(list);
      deselect(list);
      const auto marks = model::duplicates(expected_order, key.compare);
      EXPECT_EQ(select_duplicates_by_key(list, key, select), expected);
      EXPECT_EQ(states(list), expected_states) << "option " << option;
      ASSERT_TRUE(order_of(list) == expected_order);
      for (uint32_t i = 0; i < list.count(); ++i) {
        ASSERT_EQ(list.get(i)->state == 1, marks[i]) << "option " << option;
      }
    }
  }
}

TEST(SelectDuplicatesByKey, AnswersMinusOneForFewerThanTwoRecords) {
  ItemList list;
  list.append(std::make_unique<StringPair>("a", "b"));
  EXPECT_EQ(select_duplicates_by_key(list, kSortTable[0], select), -1);
}

std::vector<uint32_t> positions;
int32_t tell(ProgressRecord* record) {
  positions.push_back(record->position);
  return 1;
}
int polls;
int32_t count_poll(void*) {
  ++polls;
  return 1;
}

TEST(SelectDuplicatesByKey, PollsAndReportsEveryRecordAndNeverStops) {
  ItemList list;
  for (int i = 0; i < 404; ++i) {
    list.append(std::make_unique<StringPair>("a", "b"));
  }
  list.set_report_hook(tell);
  list.set_interrupt_hook(count_poll);
  positions.clear();
  polls = 0;
  list.report_position(0);
  positions.clear();
  EXPECT_EQ(select_duplicates_by_key(list, kSortTable[13], select), 403);
  EXPECT_GE(polls, 3);
  EXPECT_EQ(positions.front(), 4u);
  EXPECT_EQ(positions.back(), 400u);
}

// The texts of two lists are ranked together, so the ranks of one list have
// gaps.
TEST(SortedOrder, PutsRanksWithHolesInTheirPlaces) {
  const std::vector<TextValue> values = {{9}, {2}, {5}};
  EXPECT_EQ(sorted_order(std::span(values), 0),
            (std::vector<uint32_t>{1, 2, 0}));
  EXPECT_EQ(sorted_order(std::span(values), 1),
            (std::vector<uint32_t>{0, 2, 1}));
  EXPECT_TRUE(sorted_order(std::span<const TextValue>(), 0).empty());
}

}  // namespace
}  // namespace zenfo
