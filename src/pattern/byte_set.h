// A set of byte values, and the vector loops that use it on text.
//
// Membership is one lookup in 256 flags. Sets that are a few ranges of bytes,
// or all bytes except a few ranges (all classes that people write), are also
// kept as ranges, which are tested 16 or 32 bytes at a time; other sets use the
// flags.
//
// Tested by tests/unit/pattern/byte_set_test.cpp
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zenfo {

class ByteSet {
 public:
  // What a piece of text contains.
  struct Tally {
    size_t members = 0;  // bytes of the set
    size_t runs = 0;     // members that do not follow a member
  };

  ByteSet() = default;  // contains no byte
  explicit ByteSet(const std::array<bool, 256>& flags);

  bool contains(char byte) const {
    return flags_[static_cast<unsigned char>(byte)];
  }
  bool contains_all() const { return contains_all_; }

  // First byte of [from, end) that is a member (find_other: no member); `end`
  // when there is none.
  const char* find(const char* from, const char* end) const {
    return find_as<true>(from, end);
  }
  const char* find_other(const char* from, const char* end) const {
    return find_as<false>(from, end);
  }
  // Start of the run of members that ends before `end`, not below `from`.
  const char* run_start(const char* from, const char* end) const {
    for (int i = 0; i < 8; ++i, --end) {
      if (end == from || !contains(end[-1])) return end;
    }
    return run_start_far(from, end);
  }
  // Counts in [from, end); `in_run` says whether the byte before is a member.
  Tally tally(const char* from, const char* end, bool in_run) const;

 private:
  static constexpr size_t kMostRanges = 4;
  struct Range {
    uint8_t low;
    uint8_t width;  // high - low
  };

  void find_ranges();

  template <bool kMember>
  const char* find_as(const char* from, const char* end) const {
    if (from == end || contains(*from) == kMember) return from;
    // Most runs are short: try some bytes before starting the vector loop. A
    // run that only one byte ends mostly is not.
    if (is_one_byte<kMember>()) return find_far(from, end, kMember);
    for (int i = 0; i < 8; ++i, ++from) {
      if (from == end || contains(*from) == kMember) return from;
    }
    return find_far(from, end, kMember);
  }
  // Whether only one byte is a member (kMember) or is none.
  template <bool kMember>
  bool is_one_byte() const {
    return range_count_ == 1 && ranges_[0].width == 0 && inverted_ != kMember;
  }
  const char* find_far(const char* from, const char* end, bool member) const;
  const char* find_by_flags(const char* from, const char* end,
                            bool member) const;
  const char* run_start_far(const char* from, const char* end) const;

  template <size_t kCount>
  const char* find_by_ranges(const char* from, const char* end,
                             bool member) const;
  template <size_t kCount>
  const char* run_start_by_ranges(const char* from, const char* end) const;
  template <size_t kCount>
  Tally tally_by_ranges(const char* from, const char* end, bool in_run) const;
  Tally tally_by_flags(const char* from, const char* end, bool in_run) const;

  std::array<bool, 256> flags_{};
  bool contains_all_ = false;
  bool inverted_ = false;   // the ranges are those of the other bytes
  size_t range_count_ = 0;  // above kMostRanges: too many, use the flags
  std::array<Range, kMostRanges> ranges_{};
};

}  // namespace zenfo
