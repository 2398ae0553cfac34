// Line numbers in a file of any size: a note for each MB says how many lines
// end before it, so a number needs at most one MB to be read again.
//
// Tested by tests/gui/text/line_marks_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "gui/text/file_part.h"

namespace zenfo::host::gui {

class LineMarks {
 public:
  static constexpr uint64_t kStep = uint64_t{1} << 20;

  // Asked before each MB is read; true ends the count.
  using Stop = std::function<bool()>;

  // The number of the line that contains the offset, from 1. No value when the
  // file cannot be read that far, or when `stop` says so.
  std::optional<uint64_t> number_at(FilePart& file, uint64_t offset,
                                    const Stop& stop);
  // Whether number_at() needs to read no more than one MB.
  bool knows(uint64_t offset) const { return offset / kStep < before_.size(); }
  // The last known mark at or before a line: where to look for it.
  struct Mark {
    uint64_t offset = 0;
    uint64_t line_ends = 0;
  };
  Mark mark_before_line(uint64_t number) const;

 private:
  std::vector<uint64_t> before_ = {0};  // line ends before each MB
};

}  // namespace zenfo::host::gui
