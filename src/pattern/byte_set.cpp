#include "pattern/byte_set.h"

#include <immintrin.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace zenfo {
namespace {

constexpr ptrdiff_t kLane = 16;

__m128i load(const char* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

__m128i splat(uint8_t byte) { return _mm_set1_epi8(static_cast<char>(byte)); }

size_t sum_bytes(__m128i counts) {
  __m128i sums = _mm_sad_epu8(counts, _mm_setzero_si128());
  return static_cast<size_t>(_mm_cvtsi128_si32(sums)) +
         static_cast<size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
}

// Answers 0xFF for each member among 16 bytes.
template <size_t kCount>
class Lanes {
 public:
  template <class Range>
  Lanes(const Range* ranges, bool inverted)
      : flip_(splat(inverted ? 0xFF : 0)) {
    for (size_t i = 0; i < kCount; ++i) {
      low_[i] = splat(ranges[i].low);
      width_[i] = splat(ranges[i].width);
    }
  }

  __m128i members(__m128i bytes) const {
    __m128i found = flip_;
    for (size_t i = 0; i < kCount; ++i) {
      __m128i above = _mm_sub_epi8(bytes, low_[i]);
      __m128i inside = _mm_cmpeq_epi8(_mm_min_epu8(above, width_[i]), above);
      found = _mm_xor_si128(found, inside);  // the ranges do not overlap
    }
    return found;
  }

  unsigned mask(const char* at) const {
    return static_cast<unsigned>(_mm_movemask_epi8(members(load(at))));
  }

 private:
  __m128i flip_;
  __m128i low_[kCount];
  __m128i width_[kCount];
};

// The tally's loop 32 bytes at a time. Moves `from` behind what it counted.
template <size_t kCount, class Range>
__attribute__((target("avx2"))) ByteSet::Tally tally_avx2(const Range* ranges,
                                                          bool inverted,
                                                          const char*& from,
                                                          const char* end,
                                                          bool in_run) {
  __m256i low[kCount];
  __m256i width[kCount];
  for (size_t i = 0; i < kCount; ++i) {
    low[i] = _mm256_set1_epi8(static_cast<char>(ranges[i].low));
    width[i] = _mm256_set1_epi8(static_cast<char>(ranges[i].width));
  }
  const __m256i flip = _mm256_set1_epi8(inverted ? -1 : 0);
  const __m256i zero = _mm256_setzero_si256();
  __m256i before = _mm256_set1_epi8(in_run ? -1 : 0);
  __m256i member_sums = zero;
  __m256i run_sums = zero;
  while (end - from >= 32) {
    ptrdiff_t turns = std::min<ptrdiff_t>((end - from) / 32, 255);
    __m256i members = zero;
    __m256i runs = zero;
    for (; turns > 0; --turns, from += 32) {
      __m256i bytes =
          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
      __m256i found = flip;
      for (size_t i = 0; i < kCount; ++i) {
        __m256i above = _mm256_sub_epi8(bytes, low[i]);
        found = _mm256_xor_si256(
            found, _mm256_cmpeq_epi8(_mm256_min_epu8(above, width[i]), above));
      }
      __m256i shifted = _mm256_alignr_epi8(
          found, _mm256_permute2x128_si256(before, found, 0x21), 15);
      members = _mm256_sub_epi8(members, found);
      runs = _mm256_sub_epi8(runs, _mm256_andnot_si256(shifted, found));
      before = found;
    }
    member_sums = _mm256_add_epi64(member_sums, _mm256_sad_epu8(members, zero));
    run_sums = _mm256_add_epi64(run_sums, _mm256_sad_epu8(runs, zero));
  }
  uint64_t sums[8];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(sums), member_sums);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(sums + 4), run_sums);
  return {static_cast<size_t>(sums[0] + sums[1] + sums[2] + sums[3]),
          static_cast<size_t>(sums[4] + sums[5] + sums[6] + sums[7])};
}

bool has_avx2() {
  static const bool has = __builtin_cpu_supports("avx2");
  return has;
}

}  // namespace

ByteSet::ByteSet(const std::array<bool, 256>& flags) : flags_(flags) {
  contains_all_ = std::all_of(flags.begin(), flags.end(),
                              [](bool member) { return member; });
  find_ranges();
}

void ByteSet::find_ranges() {
  // The ranges of whichever kind of byte 0 is not: those are the fewer, or as
  // many.
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
  // A table of at least one range, so that there is something to compare: an
  // empty or full set is one range over all bytes, turned round.
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
  const Lanes<kCount> lanes(ranges_.data(), inverted_ != member);
  // Set bits are now bytes that are not looked for.
  for (; end - from >= kLane; from += kLane) {
    unsigned others = lanes.mask(from);
    if (others != 0xFFFF) return from + std::countr_one(others);
  }
  return find_by_flags(from, end, member);
}

const char* ByteSet::find_far(const char* from, const char* end,
                              bool member) const {
  const bool one_byte = range_count_ == 1 && ranges_[0].width == 0;
  if (one_byte && member != inverted_) {
    const size_t size = static_cast<size_t>(end - from);
    const void* found = std::memchr(from, ranges_[0].low, size);
    return found != nullptr ? static_cast<const char*>(found) : end;
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
  const Lanes<kCount> lanes(ranges_.data(), inverted_);
  for (; end - from >= kLane; end -= kLane) {
    unsigned members = lanes.mask(end - kLane);
    if (members != 0xFFFF) {
      return end - std::countl_one(static_cast<uint16_t>(members));
    }
  }
  while (end != from && contains(end[-1])) --end;
  return end;
}

const char* ByteSet::run_start(const char* from, const char* end) const {
  if (contains_all_) return from;
  for (int i = 0; i < 8; ++i, --end) {
    if (end == from || !contains(end[-1])) return end;
  }
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
  const Lanes<kCount> lanes(ranges_.data(), inverted_);
  Tally tally;
  if (end - from >= 64 && has_avx2()) {
    tally = tally_avx2<kCount>(ranges_.data(), inverted_, from, end, in_run);
    in_run = contains(from[-1]);
  }
  __m128i before = splat(in_run ? 0xFF : 0);
  // Byte counters hold 255 turns.
  while (end - from >= kLane) {
    ptrdiff_t turns = std::min<ptrdiff_t>((end - from) / kLane, 255);
    __m128i members = _mm_setzero_si128();
    __m128i runs = _mm_setzero_si128();
    for (; turns > 0; --turns, from += kLane) {
      __m128i found = lanes.members(load(from));
      __m128i shifted = _mm_or_si128(_mm_slli_si128(found, 1),
                                     _mm_srli_si128(before, kLane - 1));
      members = _mm_sub_epi8(members, found);
      runs = _mm_sub_epi8(runs, _mm_andnot_si128(shifted, found));
      before = found;
    }
    tally.members += sum_bytes(members);
    tally.runs += sum_bytes(runs);
    in_run = contains(from[-1]);
  }
  Tally rest = tally_by_flags(from, end, in_run);
  return {tally.members + rest.members, tally.runs + rest.runs};
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
