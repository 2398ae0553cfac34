// Sorting lists by a key of the table: the order that ItemList::sort with the
// key's comparator leaves, to the last tie, in less time.
//
// The values that the key takes are read from all records once; texts become
// ranks. Then the list's own sort runs over values instead of records, so that
// equal ones end up where its steps leave them; ranks without equals need no
// sort at all. Each kind of key has a type of value, which compares as the
// comparator does, even where that is not a true order.
//
// Tested by tests/unit/sorting/keyed_sort_test.cpp
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "containers/item_list.h"
#include "containers/list_sort.h"
#include "sorting/sort_keys.h"

namespace zenfo {

// As ItemList::sort and ItemList::select_duplicates with the key's comparator.
int32_t sort_by_key(ItemList& list, const SortKey& key, int32_t descending);
int32_t select_duplicates_by_key(ItemList& list, const SortKey& key,
                                 RecordAction mark);

// A number, or the rank of a text where missing ones are equal.
struct NumberValue {
  uint64_t number;
};

// The rank of a text, 0 when it is missing.
struct TextValue {
  uint32_t rank;
};

struct TimeValue {
  uint64_t time;
};

struct FullValue {
  TextValue name;
  FullFacts facts;
};

inline int32_t compare_values(const NumberValue& a, const NumberValue& b) {
  return (a.number > b.number) - (a.number < b.number);
}
inline int32_t compare_values(const TextValue& a, const TextValue& b) {
  if (a.rank == 0) return -1;
  return (a.rank > b.rank) - (a.rank < b.rank);
}
inline int32_t compare_values(const TimeValue& a, const TimeValue& b) {
  return compare_times(a.time, b.time);
}
int32_t compare_values(const FullValue& a, const FullValue& b);

// Whether the value goes before every other one, missing ones included.
template <class Value>
bool is_missing(const Value&) {
  return false;
}
inline bool is_missing(const TextValue& value) { return value.rank == 0; }
inline bool is_missing(const FullValue& value) {
  return is_missing(value.name);
}

// The values of records, one each.
std::vector<NumberValue> read_numbers(const SortKey& key,
                                      std::span<const Record* const> records);
std::vector<NumberValue> read_texts_or_none(
    const SortKey& key, std::span<const Record* const> records);
std::vector<TextValue> read_texts(const SortKey& key,
                                  std::span<const Record* const> records);
std::vector<TimeValue> read_times(const SortKey& key,
                                  std::span<const Record* const> records);
std::vector<FullValue> read_full(std::span<const Record* const> records);

// Reads the values and passes them to `use`, which is generic in their type.
template <class Use>
auto with_values(const SortKey& key, std::span<const Record* const> records,
                 Use&& use) {
  switch (key.kind) {
    case KeyKind::kNumber:
      return use(read_numbers(key, records));
    case KeyKind::kText:
      return use(read_texts(key, records));
    case KeyKind::kTextOrNone:
      return use(read_texts_or_none(key, records));
    case KeyKind::kTime:
      return use(read_times(key, records));
    case KeyKind::kFileNameFull:
      break;
  }
  return use(read_full(records));
}

// Where the list's sort puts records with these values: for each position the
// place of its value.
template <class Value>
std::vector<uint32_t> sorted_order(std::span<const Value> values,
                                   int32_t descending) {
  struct Item {
    Value value;
    uint32_t place;
  };
  std::vector<Item> items;
  items.reserve(values.size());
  for (const Value& value : values) {
    items.push_back({value, static_cast<uint32_t>(items.size())});
  }
  // Unsigned, because negating INT32_MIN overflows.
  const uint32_t sign = descending != 0 ? UINT32_MAX : 1;
  ListSort sort(items.data(), items.size(), [=](const Item& a, const Item& b) {
    const auto answer = static_cast<uint32_t>(compare_values(a.value, b.value));
    return static_cast<int32_t>(answer * sign);
  });
  sort.run_quicksort();
  auto end = items.end();
  if (descending != 0) {
    // The insertion pass would move each missing value before all missing ones
    // that precede it, in quadratic time.
    end = std::stable_partition(items.begin(), items.end(), [](const Item& i) {
      return !is_missing(i.value);
    });
    std::reverse(end, items.end());
  }
  sort.run_insertion(static_cast<size_t>(end - items.begin()));
  std::vector<uint32_t> order;
  order.reserve(items.size());
  for (const Item& item : items) order.push_back(item.place);
  return order;
}

// The same; ranks that all differ are put in their places without a sort.
std::vector<uint32_t> sorted_order(std::span<const TextValue> values,
                                   int32_t descending);

}  // namespace zenfo
