#include "stats/text_tally.h"

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace zenfo {
namespace {

constexpr ptrdiff_t kLine = 64;  // of the cache
// Over the end of the page, where the processor's own fetching ahead stops.
constexpr uintptr_t kFetchAhead = 4096;

using Bytes16 [[gnu::vector_size(16)]] = uint8_t;
using Bytes32 [[gnu::vector_size(32)]] = uint8_t;

void add(TextTally& sum, const TextTally& more) {
  sum.words += more.words;
  sum.gaps += more.gaps;
  sum.line_ends += more.line_ends;
}

TextTally tally_byte(char before, char here) {
  const bool word = is_word_byte(here);
  return {word && !is_word_byte(before) ? 1u : 0u, word ? 0u : 1u,
          before == '\r' && here == '\n' ? 1u : 0u};
}

template <class Bytes>
[[gnu::always_inline]] inline size_t sum_of(const Bytes& counters) {
  std::array<uint8_t, sizeof(Bytes)> values;
  std::memcpy(values.data(), &counters, sizeof(Bytes));
  size_t sum = 0;
  for (const uint8_t value : values) sum += value;
  return sum;
}

// Tallies whole lines of the cache and moves `from` behind them. There is a
// byte in front of it. Inlined to be compiled for the caller's instructions.
template <class Bytes>
[[gnu::always_inline]] inline TextTally tally_lines(const char*& from,
                                                    const char* end) {
  constexpr ptrdiff_t kSize = sizeof(Bytes);
  // Turns until a counter of one byte is full.
  constexpr ptrdiff_t kTurns = 255 / (kLine / kSize);
  TextTally sum;
  while (end - from >= kLine) {
    Bytes words{};
    Bytes gaps{};
    Bytes line_ends{};
    ptrdiff_t turns = std::min((end - from) / kLine, kTurns);
    for (; turns > 0; --turns, from += kLine) {
      // May lie behind the text: fetching never faults.
      _mm_prefetch(reinterpret_cast<const char*>(
                       reinterpret_cast<uintptr_t>(from) + kFetchAhead),
                   _MM_HINT_T0);
      for (ptrdiff_t i = 0; i < kLine; i += kSize) {
        Bytes here;
        Bytes before;
        std::memcpy(&here, from + i, kSize);
        std::memcpy(&before, from + i - 1, kSize);
        // All bits of a byte are set where this holds: one less is one more.
        const auto gap = reinterpret_cast<Bytes>((here <= 32) | (here == 127));
        const auto gap_before =
            reinterpret_cast<Bytes>((before <= 32) | (before == 127));
        words -= gap_before & ~gap;
        gaps -= gap;
        line_ends -= reinterpret_cast<Bytes>((before == '\r') & (here == '\n'));
      }
    }
    add(sum, {sum_of(words), sum_of(gaps), sum_of(line_ends)});
  }
  return sum;
}

TextTally lines_sse2(const char*& from, const char* end) {
  return tally_lines<Bytes16>(from, end);
}

__attribute__((target("avx2"))) TextTally lines_avx2(const char*& from,
                                                     const char* end) {
  return tally_lines<Bytes32>(from, end);
}

template <class Lines>
TextTally tally_with(Lines lines, const char* from, const char* end,
                     char before) {
  if (from == end) return {};
  TextTally sum = tally_byte(before, *from++);
  add(sum, lines(from, end));
  for (; from != end; ++from) add(sum, tally_byte(from[-1], *from));
  return sum;
}

}  // namespace

TextTally tally_text(const char* from, const char* end, char before) {
  static const bool has_avx2 = __builtin_cpu_supports("avx2");
  return tally_with(has_avx2 ? lines_avx2 : lines_sse2, from, end, before);
}

TextTally tally_text_sse2(const char* from, const char* end, char before) {
  return tally_with(lines_sse2, from, end, before);
}

}  // namespace zenfo
