#include "sorting/keyed_sort.h"

#include <algorithm>

#include "frame/guard.h"
#include "sorting/text_ranks.h"

namespace zenfo {
namespace {

using Records = std::span<const Record* const>;

constexpr uint32_t kNowhere = UINT32_MAX;

template <class Value, class ValueOf>
std::vector<Value> collect(Records records, ValueOf value_of) {
  std::vector<Value> values;
  values.reserve(records.size());
  for (const Record* record : records) values.push_back(value_of(record));
  return values;
}

std::vector<uint32_t> rank_texts(TextOf text_of, Records records) {
  TextRanks ranks(static_cast<uint32_t>(records.size()));
  for (const Record* record : records) ranks.add(text_of(record));
  return ranks.rank();
}

// The place of each rank's value, or nothing when two have the same rank or one
// is missing.
std::vector<uint32_t> place_of_ranks(std::span<const TextValue> values) {
  uint32_t most = 0;
  for (const TextValue& value : values) most = std::max(most, value.rank);
  std::vector<uint32_t> places(size_t{most} + 1, kNowhere);
  places[0] = 0;  // taken: a missing text has no place
  for (uint32_t i = 0; i < values.size(); ++i) {
    uint32_t& place = places[values[i].rank];
    if (place != kNowhere) return {};
    place = i;
  }
  places.erase(places.begin());
  return places;
}

// Sorts the list by values that are in link order. Returns the order, an empty
// one when the list stays as it is.
template <class Value>
std::vector<uint32_t> arrange(ItemList& list, const std::vector<Value>& values,
                              int32_t descending) {
  auto order = sorted_order(std::span(values), descending);
  if (list.arrange(order.data()) != 1) order.clear();
  return order;
}

}  // namespace

int32_t compare_values(const FullValue& a, const FullValue& b) {
  auto three_way = [](uint64_t x, uint64_t y) { return (x > y) - (x < y); };
  const int32_t by_name = compare_values(a.name, b.name);
  if (by_name != 0) return by_name;
  const int32_t by_size = three_way(a.facts.size, b.facts.size);
  if (by_size != 0) return by_size;
  const int32_t by_time = compare_times(a.facts.write_time, b.facts.write_time);
  if (by_time != 0) return by_time;
  return three_way(a.facts.attributes, b.facts.attributes);
}

std::vector<NumberValue> read_numbers(const SortKey& key, Records records) {
  return collect<NumberValue>(records, [&](const Record* record) {
    return NumberValue{key.number(record)};
  });
}

std::vector<NumberValue> read_texts_or_none(const SortKey& key,
                                            Records records) {
  std::vector<NumberValue> values;
  values.reserve(records.size());
  for (const uint32_t rank : rank_texts(key.text, records)) {
    values.push_back({rank});
  }
  return values;
}

std::vector<TextValue> read_texts(const SortKey& key, Records records) {
  std::vector<TextValue> values;
  values.reserve(records.size());
  for (const uint32_t rank : rank_texts(key.text, records)) {
    values.push_back({rank});
  }
  return values;
}

std::vector<TimeValue> read_times(const SortKey& key, Records records) {
  return collect<TimeValue>(records, [&](const Record* record) {
    return TimeValue{key.number(record)};
  });
}

std::vector<FullValue> read_full(Records records) {
  const std::vector<uint32_t> ranks = rank_texts(file_name_of, records);
  auto rank = ranks.begin();
  return collect<FullValue>(records, [&](const Record* record) {
    return FullValue{{*rank++}, facts_of(record)};
  });
}

std::vector<uint32_t> sorted_order(std::span<const TextValue> values,
                                   int32_t descending) {
  std::vector<uint32_t> order = place_of_ranks(values);
  if (order.empty()) return sorted_order<TextValue>(values, descending);
  // Ranks of other lists read together leave holes.
  std::erase(order, kNowhere);
  if (descending != 0) std::ranges::reverse(order);
  return order;
}

int32_t sort_by_key(ItemList& list, const SortKey& key, int32_t descending) {
  if (list.count() < 2) return -1;
  const int32_t sorted = unlogged(-1, [&] {
    const auto records = list.records();
    return with_values(key, records, [&](const auto& values) {
      return arrange(list, values, descending).empty() ? -1 : 1;
    });
  });
  // When there is no memory for it, the records themselves are sorted.
  return sorted == 1 ? 1 : list.sort(descending, key.compare);
}

int32_t select_duplicates_by_key(ItemList& list, const SortKey& key,
                                 RecordAction mark) {
  if (list.count() < 2 || mark == nullptr) return -1;
  bool sorted = false;
  const int32_t marked = unlogged(-1, [&] {
    const auto records = list.records();
    return with_values(key, records, [&](const auto& values) -> int32_t {
      const std::vector<uint32_t> order = arrange(list, values, 0);
      sorted = !order.empty();
      if (!sorted) return -1;
      return list.mark_repeats(
          [&](uint32_t reference, uint32_t i) {
            return compare_values(values[order[reference]], values[order[i]]) ==
                   0;
          },
          mark);
    });
  });
  return sorted ? marked : list.select_duplicates(key.compare, mark);
}

}  // namespace zenfo
