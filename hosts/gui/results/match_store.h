// The matches of a result: 8 bytes each and a bit for "chosen", in blocks, so
// that millions of them need no second copy when they grow.
//
// A copy shares the blocks and has choices of its own. So another thread may
// read a copy while the original grows.
//
// Tested by tests/gui/results/match_store_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "gui/results/bit_list.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {

// How many matches are listed; all are counted.
struct MatchCaps {
  uint32_t of_file = 100'000;
  uint32_t in_all = 5'000'000;
};

class MatchStore {
 public:
  uint32_t size() const { return size_; }
  Match at(uint32_t index) const {
    return (*blocks_[index / kBlock])[index % kBlock];
  }
  // Copies matches in pieces as large as blocks.
  std::vector<Match> range(uint32_t first, uint32_t count) const;
  // All of them chosen.
  void append(std::span<const Match> matches);

  bool is_chosen(uint32_t index) const { return chosen_.at(index); }
  void choose(uint32_t first, uint32_t count, bool on) {
    chosen_.set_range(first, count, on);
  }
  void invert(uint32_t first, uint32_t count) {
    chosen_.flip_range(first, count);
  }
  uint32_t chosen_in(uint32_t first, uint32_t count) const {
    return static_cast<uint32_t>(chosen_.count_in(first, count));
  }
  // The memory in use, the allocator's own not counted.
  size_t bytes() const;

 private:
  static constexpr uint32_t kBlock = 64 * 1024;

  using Block = std::vector<Match>;

  Block& block_with_room();

  std::vector<std::shared_ptr<Block>> blocks_;
  BitList chosen_;
  uint32_t size_ = 0;
};

}  // namespace zenfo::host::gui
