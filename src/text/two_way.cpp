// Two-way search. All indexes count bytes of the needle, or of the range when
// they are called positions.
//
// Tested by tests/unit/text/two_way_test.cpp
#include "text/two_way.h"

#include <algorithm>

namespace zenfo {
namespace {

struct ExactBytes {
  const char* text;
  uint8_t operator[](size_t i) const { return static_cast<uint8_t>(text[i]); }
};

struct FoldedBytes {
  const char* text;
  const uint8_t* fold;
  uint8_t operator[](size_t i) const {
    return fold[static_cast<uint8_t>(text[i])];
  }
};

struct Suffix {
  size_t start;
  size_t period;
};

// The greatest suffix in the order of the bytes, or in the reverse order.
template <class Bytes>
Suffix greatest_suffix(Bytes needle, size_t length, bool reverse) {
  size_t start = 0;      // of the greatest suffix so far
  size_t candidate = 1;  // start of the suffix compared with it
  size_t matched = 0;    // bytes of this period equal in both
  size_t period = 1;
  while (candidate + matched < length) {
    const uint8_t a = needle[candidate + matched];
    const uint8_t b = needle[start + matched];
    if (a == b) {
      if (++matched == period) {
        candidate += period;
        matched = 0;
      }
    } else if ((a < b) != reverse) {
      candidate += matched + 1;
      matched = 0;
      period = candidate - start;
    } else {
      start = candidate++;
      matched = 0;
      period = 1;
    }
  }
  return {start, period};
}

// The later of the two greatest suffixes is a critical cut.
template <class Bytes>
Suffix critical_cut(Bytes needle, size_t length) {
  const Suffix forward = greatest_suffix(needle, length, false);
  const Suffix reverse = greatest_suffix(needle, length, true);
  return forward.start >= reverse.start ? forward : reverse;
}

template <class Bytes>
bool left_part_repeats(Bytes needle, const Suffix& cut) {
  for (size_t i = 0; i < cut.start; ++i) {
    if (needle[i] != needle[i + cut.period]) return false;
  }
  return true;
}

// `memory` first bytes at the position are known to match from the attempt
// before; only a periodic needle can carry any over.
template <class Bytes>
const char* find(Bytes text, size_t text_length, Bytes needle, size_t length) {
  const Suffix cut = critical_cut(needle, length);
  const bool periodic = left_part_repeats(needle, cut);
  const size_t shift =
      periodic ? cut.period : std::max(cut.start, length - cut.start) + 1;
  size_t memory = 0;
  for (size_t position = 0; position + length <= text_length;) {
    size_t i = std::max(cut.start, memory);
    while (i < length && needle[i] == text[position + i]) ++i;
    if (i < length) {
      position += i - cut.start + 1;
      memory = 0;
      continue;
    }
    i = cut.start;
    while (i > memory && needle[i - 1] == text[position + i - 1]) --i;
    if (i <= memory) return text.text + position;
    position += shift;
    memory = periodic ? length - shift : 0;
  }
  return nullptr;
}

}  // namespace

const char* find_two_way(const char* from, const char* end,
                         std::string_view needle, const uint8_t* fold) {
  const size_t text_length = static_cast<size_t>(end - from);
  if (fold == nullptr) {
    return find(ExactBytes{from}, text_length, ExactBytes{needle.data()},
                needle.size());
  }
  return find(FoldedBytes{from, fold}, text_length,
              FoldedBytes{needle.data(), fold}, needle.size());
}

}  // namespace zenfo
