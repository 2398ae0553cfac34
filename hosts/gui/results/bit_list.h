// A growing list of bits that counts.
//
// Tested by tests/gui/results/bit_list_test.cpp
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zenfo::host::gui {

class BitList {
 public:
  size_t size() const { return size_; }
  // The bits that are set.
  size_t count() const { return count_; }
  size_t count_in(size_t first, size_t length) const;

  bool at(size_t index) const {
    return (words_[index / kBits] >> index % kBits & 1) != 0;
  }
  void set(size_t index, bool on) { set_range(index, 1, on); }
  void set_range(size_t first, size_t length, bool on);
  void flip_range(size_t first, size_t length);
  // Calls visit(index) for each set bit of a range, in ascending order.
  template <class Visit>
  void for_each_in(size_t first, size_t length, Visit visit) const {
    if (length == 0) return;
    const size_t end = first + length;
    for (size_t word = first / kBits; word * kBits < end; ++word) {
      uint64_t bits = words_[word] & mask_of(word, first, end);
      for (; bits != 0; bits &= bits - 1) {
        visit(word * kBits + static_cast<size_t>(std::countr_zero(bits)));
      }
    }
  }
  void append(size_t length, bool on);
  void clear();
  size_t bytes() const { return words_.capacity() * sizeof(uint64_t); }

 private:
  static constexpr size_t kBits = 64;
  // The bits of a word that a range covers.
  static uint64_t mask_of(size_t word, size_t first, size_t end);

  std::vector<uint64_t> words_;
  size_t size_ = 0;
  size_t count_ = 0;
};

}  // namespace zenfo::host::gui
