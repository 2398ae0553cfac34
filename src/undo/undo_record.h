// One safe copy: the file that was changed, its copy, and the time of the copy.
//
// Tested by tests/unit/undo/undo_record_test.cpp
#pragma once

#include <optional>
#include <string_view>

#include "containers/record.h"
#include "text/shared_text.h"

namespace zenfo {

class UndoRecord final : public Record {
 public:
  static constexpr RecordKind kKind = RecordKind::kUndoRecord;

  // New records are selected: Undo restores them unless deselected.
  UndoRecord(SharedText original_path, SharedText copy_path,
             SharedText copy_time)
      : original(std::move(original_path)),
        safe_copy(std::move(copy_path)),
        time(std::move(copy_time)) {
    state = 1;
  }

  RecordKind kind() const override { return kKind; }
  // Original, safe copy, time.
  std::optional<std::string_view> text(TextSlot slot) const override {
    switch (slot) {
      case TextSlot::kFirst:
        return original.text();
      case TextSlot::kSecond:
        return safe_copy.text();
      case TextSlot::kThird:
        return time.text();
    }
    return std::nullopt;
  }

  SharedText original;   // full path
  SharedText safe_copy;  // full path
  SharedText time;       // as in the undo list file
};

}  // namespace zenfo
