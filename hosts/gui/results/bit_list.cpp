#include "gui/results/bit_list.h"

#include <algorithm>
#include <bit>

namespace zenfo::host::gui {

uint64_t BitList::mask_of(size_t word, size_t first, size_t end) {
  const size_t start = word * kBits;
  uint64_t mask = ~uint64_t{0};
  if (first > start) mask &= ~uint64_t{0} << (first - start);
  if (end < start + kBits) mask &= ~uint64_t{0} >> (start + kBits - end);
  return mask;
}

size_t BitList::count_in(size_t first, size_t length) const {
  size_t count = 0;
  const size_t end = first + length;
  for (size_t word = first / kBits; word * kBits < end; ++word) {
    const uint64_t bits = words_[word] & mask_of(word, first, end);
    count += static_cast<size_t>(std::popcount(bits));
  }
  return count;
}

void BitList::set_range(size_t first, size_t length, bool on) {
  const size_t end = first + length;
  for (size_t word = first / kBits; word * kBits < end; ++word) {
    const uint64_t mask = mask_of(word, first, end);
    const auto before = std::popcount(words_[word]);
    words_[word] = on ? words_[word] | mask : words_[word] & ~mask;
    count_ += static_cast<size_t>(std::popcount(words_[word]));
    count_ -= static_cast<size_t>(before);
  }
}

void BitList::flip_range(size_t first, size_t length) {
  const size_t end = first + length;
  for (size_t word = first / kBits; word * kBits < end; ++word) {
    const auto before = std::popcount(words_[word]);
    words_[word] ^= mask_of(word, first, end);
    count_ += static_cast<size_t>(std::popcount(words_[word]));
    count_ -= static_cast<size_t>(before);
  }
}

void BitList::append(size_t length, bool on) {
  const size_t first = size_;
  size_ += length;
  words_.resize((size_ + kBits - 1) / kBits);
  if (on) set_range(first, length, true);
}

void BitList::clear() {
  words_.clear();
  size_ = count_ = 0;
}

}  // namespace zenfo::host::gui
