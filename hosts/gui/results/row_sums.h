// Rows of blocks: which block a row is in, in a number of steps that is the
// logarithm of the number of blocks. A tree of partial sums (a Fenwick tree).
//
// Tested by tests/gui/results/row_sums_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zenfo::host::gui {

class RowSums {
 public:
  void clear() { *this = RowSums(); }
  size_t blocks() const { return sums_.size(); }
  uint64_t rows() const { return rows_; }

  void append(uint32_t rows);
  // Adds to the rows of a block; the result must not be negative.
  void change(size_t block, int64_t by);
  // The rows of all blocks before this one.
  uint64_t before(size_t block) const;

  struct Place {
    size_t block = 0;
    uint64_t row = 0;  // inside the block
  };
  // The row must exist.
  Place find(uint64_t row) const;

  // The nodes that all calls so far looked at: what they cost.
  uint64_t steps() const { return steps_; }

 private:
  std::vector<uint64_t> sums_;  // node i is at i - 1
  uint64_t rows_ = 0;
  mutable uint64_t steps_ = 0;
};

}  // namespace zenfo::host::gui
