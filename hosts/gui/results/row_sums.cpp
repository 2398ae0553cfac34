#include "gui/results/row_sums.h"

#include <bit>

namespace zenfo::host::gui {
namespace {

// The blocks that a node sums up.
size_t width_of(size_t node) { return node & (~node + 1); }

}  // namespace

void RowSums::append(uint32_t rows) {
  const size_t node = sums_.size() + 1;
  uint64_t sum = rows;
  for (size_t part = 1; part < width_of(node); part *= 2) {
    sum += sums_[node - part - 1];
    ++steps_;
  }
  sums_.push_back(sum);
  rows_ += rows;
}

void RowSums::change(size_t block, int64_t by) {
  for (size_t node = block + 1; node <= sums_.size(); node += width_of(node)) {
    sums_[node - 1] += static_cast<uint64_t>(by);
    ++steps_;
  }
  rows_ += static_cast<uint64_t>(by);
}

uint64_t RowSums::before(size_t block) const {
  uint64_t sum = 0;
  for (size_t node = block; node > 0; node -= width_of(node)) {
    sum += sums_[node - 1];
    ++steps_;
  }
  return sum;
}

RowSums::Place RowSums::find(uint64_t row) const {
  Place place{0, row};
  for (size_t width = std::bit_floor(sums_.size()); width > 0; width /= 2) {
    const size_t node = place.block + width;
    ++steps_;
    if (node > sums_.size() || sums_[node - 1] > place.row) continue;
    place.block = node;
    place.row -= sums_[node - 1];
  }
  return place;
}

}  // namespace zenfo::host::gui
