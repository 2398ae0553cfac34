// The item list: the ordered, doubly linked container of owned records on
// which every list of the library is built.
//
// Positions follow the links (the order of appending) until a sort puts an
// index array in front of them; the next append or removal drops the array and
// the links decide again. Walks by neighbouring positions take constant time a
// step with or without an index.
//
// Nothing here throws to its callers except Append, for memory: a failure
// inside a walk or a sort is answered as -1, inside a removal or BuildIndex as
// 0.
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
  ~ItemList() { Clear(); }
  ItemList(const ItemList&) = delete;
  ItemList& operator=(const ItemList&) = delete;

  uint32_t Count() const { return count_; }

  // The record at a position, or null; moves the cursor there.
  Record* Get(uint32_t position);
  // The cursor walk; Next from no cursor starts at the head. After a removal
  // the cursor stands on the following record: go on with Current, and end a
  // walk at the first null.
  Record* First();
  Record* Next();
  Record* Current() const;

  // Where the cursor stands, to come back to after a callback that may move
  // it; good until a record is appended or removed.
  class Place;
  Place CursorPlace() const;
  void SetCursor(Place place);

  // Adds at the tail and moves the cursor there; answers 1. The list owns the
  // record.
  int32_t Append(std::unique_ptr<Record> record);
  // Remove and destroy one record; 1, or 0 when there is none.
  int32_t RemoveCurrent();
  int32_t RemoveAt(uint32_t position);
  // Destroys all records; answers 1.
  int32_t Clear();

  // Builds the index in link order: 1, or 0 for an empty list or for lack of
  // memory. Drops a sorted order.
  int32_t BuildIndex();
  void DropIndex();

  // Reports position `i` of the list's count (see ProgressHooks).
  int32_t ReportPosition(uint32_t i) { return report_position(i, count_); }

  // Sorts by the comparator: 1; -1 for fewer than two records, no comparator
  // or a failure. The order lives in the index only.
  int32_t Sort(int32_t descending, Comparator comparator);
  // The records in link order.
  std::vector<const Record*> Records() const;
  // Sorts by an order found elsewhere: for each position, where the record
  // stands among Records(), each once. 1; -1 as Sort does.
  int32_t Arrange(const uint32_t* order);

  // Sorts ascending, then marks every record that equals the one before its
  // run; answers how many, or -1 as Sort does.
  int32_t SelectDuplicates(Comparator comparator, RecordAction mark);
  // Its second half, for a sorted list: `same` tells whether the records at
  // two positions are equal.
  using SamePosition = std::function<bool(uint32_t reference, uint32_t i)>;
  int32_t MarkRepeats(const SamePosition& same, RecordAction mark);

  // Number of records in a state; -1 gives the count, anything below -1. A
  // stop gives the count so far.
  int32_t CountState(int32_t state);
  // Changes the state of one record, or of all (index -1): action -1 toggles,
  // 0 and 1 set. Answers the number touched (so far, when stopped), 0 for any
  // other action, -1 for a missing record.
  int32_t SetState(int32_t index, int32_t action);

  // Whether links, cursor, count and index agree with each other; for tests.
  bool Check() const;

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
