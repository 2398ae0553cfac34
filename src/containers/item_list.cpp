#include "containers/item_list.h"

#include <algorithm>
#include <functional>
#include <new>
#include <vector>

#include "containers/list_sort.h"
#include "containers/pool.h"
#include "frame/guard.h"

namespace zenfo {

struct ItemList::Node : Pooled<ItemList::Node> {
  std::unique_ptr<Record> record;
  Node* previous = nullptr;
  Node* next = nullptr;
};

void ItemList::set_cursor(Node* node, uint32_t position) {
  cursor_ = node;
  cursor_position_ = node != nullptr ? position : kUnknown;
}

// The node at a position below the count. Without an index a neighbour of the
// cursor is one link away; any other position first builds the index in link
// order, which no caller can tell from the links.
ItemList::Node* ItemList::node_at(uint32_t position) {
  if (index_ != nullptr) return index_[position];
  if (position == 0) return head_;
  if (position == count_ - 1) return tail_;
  if (cursor_position_ != kUnknown) {
    if (position == cursor_position_) return cursor_;
    if (position == cursor_position_ + 1) return cursor_->next;
    if (position + 1 == cursor_position_) return cursor_->previous;
  }
  if (build_index() == 1) return index_[position];
  Node* node = head_;
  while (position-- > 0) node = node->next;
  return node;
}

Record* ItemList::get(uint32_t position) {
  if (position >= count_) return nullptr;
  set_cursor(node_at(position), position);
  return cursor_->record.get();
}

Record* ItemList::first() {
  // With a sorted index, link order and positions differ.
  set_cursor(head_, index_ == nullptr ? 0 : kUnknown);
  return current();
}

Record* ItemList::next() {
  if (cursor_ == nullptr) return first();
  bool known = index_ == nullptr && cursor_position_ != kUnknown;
  set_cursor(cursor_->next, known ? cursor_position_ + 1 : kUnknown);
  return current();
}

Record* ItemList::current() const {
  return cursor_ != nullptr ? cursor_->record.get() : nullptr;
}

ItemList::Place ItemList::cursor_place() const {
  Place place;
  place.node = cursor_;
  // A position in link order, which is what the cursor has without an index.
  place.position = index_ == nullptr ? cursor_position_ : kUnknown;
  return place;
}

void ItemList::set_cursor(Place place) {
  set_cursor(place.node, index_ == nullptr ? place.position : kUnknown);
}

int32_t ItemList::append(std::unique_ptr<Record> record) {
  auto* node = new Node;
  node->record = std::move(record);
  note_change();
  drop_index();
  node->previous = tail_;
  (tail_ != nullptr ? tail_->next : head_) = node;
  tail_ = node;
  set_cursor(node, count_);
  ++count_;
  return 1;
}

int32_t ItemList::remove(Node* node) {
  Node* following = node->next;
  note_change();
  (node->previous != nullptr ? node->previous->next : head_) = following;
  (following != nullptr ? following->previous : tail_) = node->previous;
  drop_index();
  --count_;
  set_cursor(following, kUnknown);
  delete node;
  return 1;
}

int32_t ItemList::remove_current() {
  return cursor_ != nullptr ? remove(cursor_) : 0;
}

int32_t ItemList::remove_at(uint32_t position) {
  if (position >= count_) return 0;
  bool sorted = index_ != nullptr;
  int32_t result = remove(node_at(position));
  // In link order the next record has moved to this position.
  if (!sorted) set_cursor(cursor_, position);
  return result;
}

int32_t ItemList::clear() {
  note_change();
  drop_index();
  // Detached first: a record's destructor sees an empty list.
  Node* node = head_;
  count_ = 0;
  head_ = tail_ = nullptr;
  set_cursor(nullptr, kUnknown);
  while (node != nullptr) {
    Node* next = node->next;
    delete node;
    node = next;
  }
  return 1;
}

int32_t ItemList::build_index() {
  note_change();
  drop_index();
  if (count_ == 0) return 0;
  std::unique_ptr<Node*[]> index(new (std::nothrow) Node*[count_]);
  if (index == nullptr) return 0;
  uint32_t position = 0;
  for (Node* node = head_; node != nullptr; node = node->next) {
    if (position == count_) return 0;
    index[position++] = node;
  }
  if (position != count_) return 0;
  index_ = std::move(index);
  return 1;
}

void ItemList::drop_index() {
  if (index_ == nullptr) return;
  index_.reset();
  cursor_position_ = kUnknown;
}

int32_t ItemList::sort_with(Node** index, uint32_t count, int32_t direction,
                            Comparator comparator) {
  // Unsigned, because negating INT32_MIN overflows.
  const auto sign = static_cast<uint32_t>(direction);
  list_sort(index, count, [=](const Node* a, const Node* b) {
    auto answer =
        static_cast<uint32_t>(comparator(a->record.get(), b->record.get()));
    return static_cast<int32_t>(answer * sign);
  });
  return 1;
}

int32_t ItemList::sort(int32_t descending, Comparator comparator) {
  if (count_ < 2 || comparator == nullptr) return -1;
  comparator_ = comparator;
  direction_ = descending != 0 ? -1 : 1;
  return unlogged(-1, [&]() -> int32_t {
    if (build_index() != 1) return -1;
    cursor_position_ = kUnknown;  // the sort moves its record
    return sort_with(index_.get(), count_, direction_, comparator_);
  });
}

std::vector<const Record*> ItemList::records() const {
  std::vector<const Record*> records;
  records.reserve(count_);
  for (const Node* node = head_; node != nullptr; node = node->next) {
    records.push_back(node->record.get());
  }
  return records;
}

int32_t ItemList::arrange(const uint32_t* order) {
  if (count_ < 2) return -1;
  std::unique_ptr<Node*[]> arranged(new (std::nothrow) Node*[count_]);
  if (arranged == nullptr || build_index() != 1) return -1;
  for (uint32_t i = 0; i < count_; ++i) arranged[i] = index_[order[i]];
  index_ = std::move(arranged);
  cursor_position_ = kUnknown;
  return 1;
}

int32_t ItemList::select_duplicates(Comparator comparator, RecordAction mark) {
  if (comparator == nullptr || mark == nullptr) return -1;
  if (sort(0, comparator) != 1) return -1;
  return mark_repeats(
      [&](uint32_t reference, uint32_t i) {
        return comparator(get(reference), get(i)) == 0;
      },
      mark);
}

int32_t ItemList::mark_repeats(const SamePosition& same, RecordAction mark) {
  return unlogged(-1, [&]() -> int32_t {
    int32_t marked = 0;
    uint32_t reference = 0;
    for (uint32_t i = 1; i < count_; ++i) {
      if (same(reference, i)) {
        mark(*get(i));
        ++marked;
      } else {
        reference = i;
      }
      poll_interrupt();
      report_position(i);
    }
    return marked;
  });
}

int32_t ItemList::count_state(int32_t state) {
  if (state == -1) return static_cast<int32_t>(count_);
  if (state < -1) return -1;
  return unlogged(-1, [&]() -> int32_t {
    int32_t found = 0;
    report_position(0);
    uint64_t due = next_position(count_);
    for (uint32_t i = 0; i < count_; ++i) {
      if (get(i)->state == static_cast<uint32_t>(state)) ++found;
      if (poll_interrupt() != 0) return found;
      if (i < due) continue;
      report_position(i);
      due = next_position(count_);
    }
    report_position(count_);
    return found;
  });
}

namespace {

bool apply(int32_t action, Record& record) {
  switch (action) {
    case -1:
      record.state = record.state == 0 ? 1 : 0;
      return true;
    case 0:
    case 1:
      record.state = static_cast<uint32_t>(action);
      return true;
    default:
      return false;
  }
}

}  // namespace

int32_t ItemList::set_state(int32_t index, int32_t action) {
  note_change();
  const bool all = index == -1;
  const auto first = all ? 0 : static_cast<uint32_t>(index);
  const uint32_t end = all ? count_ : first + 1;
  return unlogged(-1, [&]() -> int32_t {
    int32_t touched = 0;
    for (uint32_t i = first; i < end; ++i) {
      Record* record = get(i);
      if (record == nullptr) return -1;
      if (!apply(action, *record)) return 0;
      ++touched;
      if (!goes_on_after(i)) return touched;
    }
    report_position(count_);
    return touched;
  });
}

bool ItemList::check() const {
  uint32_t nodes = 0;
  bool cursor_found = cursor_ == nullptr;
  const Node* previous = nullptr;
  for (const Node* node = head_; node != nullptr; node = node->next) {
    if (node->previous != previous || nodes++ == count_) return false;
    cursor_found |= node == cursor_;
    previous = node;
  }
  return previous == tail_ && nodes == count_ && cursor_found &&
         index_agrees() && cursor_position_agrees();
}

// Every node is in the index once.
bool ItemList::index_agrees() const {
  if (index_ == nullptr) return true;
  std::vector<const Node*> indexed(index_.get(), index_.get() + count_);
  std::vector<const Node*> linked;
  for (const Node* node = head_; node != nullptr; node = node->next) {
    linked.push_back(node);
  }
  std::sort(indexed.begin(), indexed.end(), std::less<>());
  std::sort(linked.begin(), linked.end(), std::less<>());
  return indexed == linked;
}

// A known position of the cursor is the one where get() finds its node.
bool ItemList::cursor_position_agrees() const {
  if (cursor_position_ == kUnknown) return true;
  if (cursor_position_ >= count_) return false;
  if (index_ != nullptr) return index_[cursor_position_] == cursor_;
  const Node* node = head_;
  for (uint32_t i = 0; i < cursor_position_; ++i) node = node->next;
  return node == cursor_;
}

}  // namespace zenfo
