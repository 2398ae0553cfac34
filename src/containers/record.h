// What all records of all lists share: the selection state, a kind tag, and
// three text slots.
//
// A host may put records of any kind into any list, so code asks a record's
// kind before it reads its fields (record_cast) and otherwise keeps to what
// every record has.
//
// Tested by tests/unit/containers/item_list_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zenfo {

enum class RecordKind : uint8_t {
  kFileEntry,
  kStringPair,
  kReplaceValue,
  kUndoRecord,
  kMatch,
};

enum class TextSlot : uint8_t { kFirst, kSecond, kThird };

class Record {
 public:
  virtual ~Record() = default;
  virtual RecordKind kind() const = 0;

  // A text that the record lacks is missing, never empty by accident. Valid
  // until the record changes.
  virtual std::optional<std::string_view> text(TextSlot) const {
    return std::nullopt;
  }

  uint32_t state = 0;  // 0 = not selected, 1 = selected

 protected:
  Record() = default;
  Record(const Record&) = default;
  Record& operator=(const Record&) = default;
};

// The record as its own type, or null when it is missing or of another kind.
template <class T>
T* record_cast(Record* record) {
  return record != nullptr && record->kind() == T::kKind
             ? static_cast<T*>(record)
             : nullptr;
}

template <class T>
const T* record_cast(const Record* record) {
  return record != nullptr && record->kind() == T::kKind
             ? static_cast<const T*>(record)
             : nullptr;
}

}  // namespace zenfo
