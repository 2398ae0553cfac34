#include "sorting/list_comparison.h"

#include <new>
#include <span>
#include <vector>

#include "files/file_entry.h"
#include "frame/callbacks.h"
#include "sorting/keyed_sort.h"
#include "sorting/sort_keys.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

// The last row of the table of keys that lists are compared by.
constexpr uint32_t kLastCompareOption = 18;

void mark(Record& record, int32_t value) {
  record.state = static_cast<uint32_t>(value);
  if (auto* entry = record_cast<FileEntry>(&record)) entry->flag = value;
}

void clear_marks(ItemList& list) {
  for (uint32_t i = 0; i < list.count(); ++i) {
    mark(*list.get(i), 0);
    list.report_position(i);
  }
}

void turn_selection(ItemList& list) {
  for (uint32_t i = 0; i < list.count(); ++i) {
    Record& record = *list.get(i);
    record.state = record.state == 0 ? 1 : 0;
  }
}

// Whether b, which compares less than a, also does so for all that are sorted
// after a.
bool left_behind(const NumberValue&, const NumberValue&) { return true; }
bool left_behind(const TextValue&, const TextValue&) { return true; }
bool left_behind(const TimeValue&, const TimeValue&) { return false; }
bool left_behind(const FullValue& a, const FullValue& b) {
  return a.name.rank != b.name.rank || a.facts.size != b.facts.size;
}

// The side of one list in the comparison: its entries by position.
template <class Value>
class Side {
 public:
  Side(ItemList& list, std::span<const Value> values)
      : list_(list), values_(values) {}

  // Before anything else.
  void sort() {
    order_ = sorted_order(values_, 0);
    // A list of fewer than two entries stays as it is.
    if (count() > 1 && list_.arrange(order_.data()) != 1) {
      throw std::bad_alloc();
    }
  }

  uint32_t count() const { return static_cast<uint32_t>(order_.size()); }
  const Value& value(uint32_t i) const { return values_[order_[i]]; }
  ItemList& list() { return list_; }
  void mark_at(uint32_t i) { mark(*list_.get(i), 1); }

  // Marks the entries after one that equal it; returns the first that does not.
  uint32_t mark_equal(uint32_t reference) {
    uint32_t i = reference + 1;
    for (; i < count(); ++i) {
      if (compare_values(value(reference), value(i)) != 0) break;
      mark_at(i);
    }
    return i;
  }

 private:
  ItemList& list_;
  std::span<const Value> values_;
  std::vector<uint32_t> order_;
};

template <class Value>
class Comparison {
 public:
  Comparison(ItemList& reference, ItemList& compared,
             std::span<const Value> values)
      : reference_(reference, values.first(reference.count())),
        compared_(compared, values.subspan(reference.count())) {}

  void sort() {
    reference_.sort();
    compared_.sort();
  }

  void run() {
    for (uint32_t i = 0; i < reference_.count();) i = step(i);
  }

 private:
  // Looks for an equal of one entry; returns the entry to continue with.
  uint32_t step(uint32_t i) {
    for (uint32_t j = start_; j < compared_.count(); ++j) {
      const Value& a = reference_.value(i);
      const Value& b = compared_.value(j);
      const int32_t answer = compare_values(a, b);
      if (answer == 0) return match(i, j);
      if (answer < 0) {
        start_ = j;
        return i + 1;
      }
      if (j == start_ && left_behind(a, b)) ++start_;
    }
    return i + 1;
  }

  uint32_t match(uint32_t i, uint32_t j) {
    reference_.mark_at(i);
    compared_.mark_at(j);
    // Intended: a stop drops the equals of this entry only.
    if (!compared_.list().goes_on_after(j)) return i + 1;
    const uint32_t next = reference_.mark_equal(i);
    const uint32_t behind = compared_.mark_equal(j);
    // Intended: at the list's end the start stays where it was.
    if (behind < compared_.count()) start_ = behind;
    return next;
  }

  Side<Value> reference_;
  Side<Value> compared_;
  uint32_t start_ = 0;
};

// Sorts both lists and compares them. The values are read first, so that
// marking entries does not change how they compare, even by state.
void compare_by_key(ItemList& reference, ItemList& compared,
                    const SortKey& key) {
  send_status("Now sorting lists");
  auto records = reference.records();
  const auto others = compared.records();
  records.insert(records.end(), others.begin(), others.end());
  with_values(key, records, [&](const auto& values) {
    Comparison comparison(reference, compared, std::span(values));
    comparison.sort();
    send_status("Now comparing lists");
    comparison.run();
  });
}

}  // namespace

void compare_lists(ItemList& reference, ItemList& compared, uint32_t option,
                   bool keep) {
  if (option > kLastCompareOption) option = 0;
  refresh_byte_tables();
  send_status("Now de-selecting all entries");
  clear_marks(reference);
  clear_marks(compared);
  compare_by_key(reference, compared, kSortTable.at(option));
  if (keep) return;
  turn_selection(reference);
  turn_selection(compared);
}

}  // namespace zenfo
