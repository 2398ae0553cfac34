#include "pattern/byte_set.h"

#include <algorithm>
#include <bit>

#include "text/simd.h"

namespace zenfo {
namespace {

// Tells members from others, a vector of bytes at a time.
template <class V, size_t kCount>
class Members {
 public:
  template <class Range>
  ZENFO_VECTOR_CODE Members(const Range* ranges, bool inverted)
      : flip_(V::fill(inverted ? 0xFF : 0)) {
    for (size_t i = 0; i < kCount; ++i) {
      low_[i] = V::fill(ranges[i].low);
      width_[i] = V::fill(ranges[i].width);
    }
  }

  // 0xFF for each member, else 0.
  ZENFO_VECTOR_CODE V among(const V& bytes) const {
    V found = flip_;
    for (size_t i = 0; i < kCount; ++i) {
      // The ranges do not overlap.
      found = found ^ ((bytes - low_[i]) <= width_[i]);
    }
    return found;
  }

  ZENFO_VECTOR_CODE uint32_t mask(const char* at) const {
    return among(V::load(at)).mask();
  }

 private:
  V flip_;
  V low_[kCount];
  V width_[kCount];
};

constexpr ptrdiff_t kLane = Vector16::kSize;

// Moves `from` past as many whole vectors as contain only members, and then to
// the first other byte of the next vector, if there is one.
template <size_t kCount, class Range>
ZENFO_AVX2 const char* skip_members_avx2(const Range* ranges, bool inverted,
                                         const char* from, const char* end) {
  const Members<Vector32, kCount> members(ranges, inverted);
  for (; end - from >= ptrdiff_t{Vector32::kSize}; from += Vector32::kSize) {
    const uint32_t others = (~members.among(Vector32::load(from))).mask();
    if (others != 0) return from + std::countr_zero(others);
  }
  return from;
}

// First such byte in as many whole vectors as there are, or where they end. The
// C library's search may go byte by byte.
ZENFO_AVX2 const char* find_byte_avx2(uint8_t byte, const char* from,
                                      const char* end) {
  constexpr ptrdiff_t kSize = Vector32::kSize;
  const Vector32 wanted = Vector32::fill(byte);
  for (; end - from >= 2 * kSize; from += 2 * kSize) {
    const Vector32 first = Vector32::load(from) == wanted;
    const Vector32 second = Vector32::load(from + kSize) == wanted;
    if ((first | second).mask() == 0) continue;
    const uint64_t found = first.mask() | uint64_t{second.mask()}
                                              << Vector32::kSize;
    return from + std::countr_zero(found);
  }
  return from;
}

// Tallies as many whole vectors as there are and moves `from` past them.
template <class V, size_t kCount, class Range>
ZENFO_VECTOR_CODE ByteSet::Tally tally_vectors(const Range* ranges,
                                               bool inverted, const char*& from,
                                               const char* end, bool in_run) {
  constexpr ptrdiff_t kSize = V::kSize;
  const Members<V, kCount> members(ranges, inverted);
  V before = V::fill(in_run ? 0xFF : 0);
  ByteSet::Tally tally;
  while (end - from >= kSize) {
    // A one-byte counter is enough for 255 turns.
    ptrdiff_t turns = std::min<ptrdiff_t>((end - from) / kSize, 255);
    V found_count;
    V run_count;
    for (; turns > 0; --turns, from += kSize) {
      const V found = members.among(V::load(from));
      found_count = found_count - found;
      run_count = run_count - (found & ~V::preceding(before, found));
      before = found;
    }
    tally.members += found_count.sum();
    tally.runs += run_count.sum();
  }
  return tally;
}

template <size_t kCount, class Range>
ZENFO_AVX2 ByteSet::Tally tally_avx2(const Range* ranges, bool inverted,
                                     const char*& from, const char* end,
                                     bool in_run) {
  return tally_vectors<Vector32, kCount>(ranges, inverted, from, end, in_run);
}

void add(ByteSet::Tally& sum, const ByteSet::Tally& more) {
  sum.members += more.members;
  sum.runs += more.runs;
}

}  // namespace

ByteSet::ByteSet(const std::array<bool, 256>& flags) : flags_(flags) {
  contains_all_ = std::all_of(flags.begin(), flags.end(),
                              [](bool member) { return member; });
  find_ranges();
}

void ByteSet::find_ranges() {
  // If byte 0 is a member the ranges are those of the other bytes, else those
  // of the members: either way there are no more of them than of the other
  // kind.
  inverted_ = flags_[0];
  range_count_ = 0;
  for (size_t low = 0; low < 256;) {
    if (flags_[low] == inverted_) {
      ++low;
      continue;
    }
    size_t high = low;
    while (high < 255 && flags_[high + 1] != inverted_) ++high;
    if (range_count_ < kMostRanges) {
      ranges_[range_count_] = {static_cast<uint8_t>(low),
                               static_cast<uint8_t>(high - low)};
    }
    ++range_count_;
    low = high + 1;
  }
  // There is at least one range, so that there is something to compare with: an
  // empty or full set is one range over all bytes, inverted.
  if (range_count_ == 0) {
    ranges_[0] = {0, 255};
    range_count_ = 1;
    inverted_ = !inverted_;
  }
}

const char* ByteSet::find_by_flags(const char* from, const char* end,
                                   bool member) const {
  while (from != end && contains(*from) != member) ++from;
  return from;
}

template <size_t kCount>
const char* ByteSet::find_by_ranges(const char* from, const char* end,
                                    bool member) const {
  const bool inverted = inverted_ != member;
  if (end - from >= 2 * kLane && processor_has_avx2()) {
    from = skip_members_avx2<kCount>(ranges_.data(), inverted, from, end);
  }
  const Members<Vector16, kCount> members(ranges_.data(), inverted);
  // Set bits are now the bytes that are not wanted.
  for (; end - from >= kLane; from += kLane) {
    const uint32_t others = members.mask(from);
    if (others != 0xFFFF) return from + std::countr_one(others);
  }
  return find_by_flags(from, end, member);
}

const char* ByteSet::find_far(const char* from, const char* end,
                              bool member) const {
  const bool one_byte = range_count_ == 1 && ranges_[0].width == 0;
  if (one_byte && member != inverted_ && processor_has_avx2()) {
    from = find_byte_avx2(ranges_[0].low, from, end);
    if (from != end && contains(*from) == member) return from;
  }
  switch (range_count_) {
    case 1:
      return find_by_ranges<1>(from, end, member);
    case 2:
      return find_by_ranges<2>(from, end, member);
    case 3:
      return find_by_ranges<3>(from, end, member);
    case 4:
      return find_by_ranges<4>(from, end, member);
    default:
      return find_by_flags(from, end, member);
  }
}

template <size_t kCount>
const char* ByteSet::run_start_by_ranges(const char* from,
                                         const char* end) const {
  const Members<Vector16, kCount> members(ranges_.data(), inverted_);
  for (; end - from >= kLane; end -= kLane) {
    const uint32_t bits = members.mask(end - kLane);
    if (bits != 0xFFFF) {
      return end - std::countl_one(static_cast<uint16_t>(bits));
    }
  }
  while (end != from && contains(end[-1])) --end;
  return end;
}

const char* ByteSet::run_start_far(const char* from, const char* end) const {
  if (contains_all_) return from;
  switch (range_count_) {
    case 1:
      return run_start_by_ranges<1>(from, end);
    case 2:
      return run_start_by_ranges<2>(from, end);
    case 3:
      return run_start_by_ranges<3>(from, end);
    case 4:
      return run_start_by_ranges<4>(from, end);
    default:
      while (end != from && contains(end[-1])) --end;
      return end;
  }
}

ByteSet::Tally ByteSet::tally_by_flags(const char* from, const char* end,
                                       bool in_run) const {
  Tally tally;
  for (; from != end; ++from) {
    bool member = contains(*from);
    tally.members += member;
    tally.runs += member && !in_run;
    in_run = member;
  }
  return tally;
}

template <size_t kCount>
ByteSet::Tally ByteSet::tally_by_ranges(const char* from, const char* end,
                                        bool in_run) const {
  Tally sum;
  if (end - from >= 64 && processor_has_avx2()) {
    sum = tally_avx2<kCount>(ranges_.data(), inverted_, from, end, in_run);
    in_run = contains(from[-1]);
  }
  if (end - from >= kLane) {
    add(sum, tally_vectors<Vector16, kCount>(ranges_.data(), inverted_, from,
                                             end, in_run));
    in_run = contains(from[-1]);
  }
  add(sum, tally_by_flags(from, end, in_run));
  return sum;
}

ByteSet::Tally ByteSet::tally(const char* from, const char* end,
                              bool in_run) const {
  switch (range_count_) {
    case 1:
      return tally_by_ranges<1>(from, end, in_run);
    case 2:
      return tally_by_ranges<2>(from, end, in_run);
    case 3:
      return tally_by_ranges<3>(from, end, in_run);
    case 4:
      return tally_by_ranges<4>(from, end, in_run);
    default:
      return tally_by_flags(from, end, in_run);
  }
}

}  // namespace zenfo
