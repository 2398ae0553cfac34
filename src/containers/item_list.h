// The item list: the ordered, doubly linked container of owned records on
// which every list of the library is built.
//
// Positions follow the links (the order of appending) until a sort makes an
// index array that overrides them; the next append or removal drops the array,
// and the links count again. Walks by neighbouring positions take constant time
// a step with or without an index.
//
// Nothing here throws to its callers except append(), for memory: after a
// failure a walk or a sort returns -1, a removal or build_index 0.
//
// Tested by tests/unit/containers/item_list_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "containers/progress.h"
#include "containers/record.h"

namespace zenfo {

// Negative when a goes before b, 0 when equal, positive when after.
using Comparator = int32_t (*)(const Record* a, const Record* b);
using RecordAction = void (*)(Record& record);

class ItemList : public ProgressHooks {
 public:
  ItemList() = default;
  ~ItemList() { clear(); }
  ItemList(const ItemList&) = delete;
  ItemList& operator=(const ItemList&) = delete;

  uint32_t count() const { return count_; }

  // The record at a position, or null; moves the cursor there.
  Record* get(uint32_t position);
  // The cursor walk; next() from no cursor starts at the head. After a removal
  // the cursor is on the next record: continue with current(), and end a walk
  // at the first null.
  Record* first();
  Record* next();
  Record* current() const;

  // The position of the cursor, for returning to it after a callback that may
  // move it; valid until a record is appended or removed.
  class Place;
  Place cursor_place() const;
  void set_cursor(Place place);

  // Adds at the tail and moves the cursor there; returns 1. The list owns the
  // record.
  int32_t append(std::unique_ptr<Record> record);
  // Remove and destroy one record; 1, or 0 when there is none.
  int32_t remove_current();
  int32_t remove_at(uint32_t position);
  // Destroys all records; returns 1.
  int32_t clear();

  // Builds the index in link order: 1, or 0 for an empty list or for lack of
  // memory. Drops a sorted order.
  int32_t build_index();
  void drop_index();

  // Reports position `i` of the list's count (see ProgressHooks).
  int32_t report_position(uint32_t i) {
    return ProgressHooks::report_position(i, count_);
  }
  // After record `i` of a walk: asks the host whether to continue, then reports
  // the position. False when the host wants a stop.
  bool goes_on_after(uint32_t i) {
    if (poll_interrupt_every(100) != 0) return false;
    report_position(i);
    return true;
  }

  // Sorts by the comparator: 1; -1 for fewer than two records, no comparator
  // or a failure. The order lives in the index only.
  int32_t sort(int32_t descending, Comparator comparator);
  // The records in link order.
  std::vector<const Record*> records() const;
  // Sorts by a given order: for each position, the place of its record in
  // records(), each once. Returns 1; -1 as sort() does.
  int32_t arrange(const uint32_t* order);

  // Sorts ascending, then marks every record of a run of equal ones but its
  // first; returns how many, or -1 as sort() does.
  int32_t select_duplicates(Comparator comparator, RecordAction mark);
  // Its second half, for a sorted list: `same` says whether the records at two
  // positions are equal.
  using SamePosition = std::function<bool(uint32_t reference, uint32_t i)>;
  int32_t mark_repeats(const SamePosition& same, RecordAction mark);

  // Number of records in a state; -1 gives the count, anything below -1. When
  // stopped, the count so far.
  int32_t count_state(int32_t state);
  // Differs after a change of the list, and after one that an operation made to
  // its records while another operation was running.
  uint32_t changes() const { return changes_; }
  // For the operations that change records by themselves.
  void note_change() { ++changes_; }

  // Changes the state of one record, or of all (index -1): action -1 toggles,
  // 0 and 1 set. Returns the number touched (so far, when stopped), 0 for any
  // other action, -1 for a missing record.
  int32_t set_state(int32_t index, int32_t action);

  // Whether links, cursor, count and index agree with each other; for tests.
  bool check() const;

 private:
  struct Node;

  Node* node_at(uint32_t position);
  void set_cursor(Node* node, uint32_t position);
  int32_t remove(Node* node);
  bool index_agrees() const;
  bool cursor_position_agrees() const;
  static int32_t sort_with(Node** index, uint32_t count, int32_t direction,
                           Comparator comparator);

  static constexpr uint32_t kUnknown = UINT32_MAX;

  uint32_t count_ = 0;
  uint32_t changes_ = 0;
  int32_t direction_ = 1;  // of the last sort: 1 ascending, -1 descending
  Comparator comparator_ = nullptr;
  Node* head_ = nullptr;
  Node* cursor_ = nullptr;
  Node* tail_ = nullptr;
  uint32_t cursor_position_ = kUnknown;  // of the cursor, when known
  std::unique_ptr<Node*[]> index_;
};

class ItemList::Place {
  friend class ItemList;
  Node* node = nullptr;
  uint32_t position = kUnknown;
};

}  // namespace zenfo
