#include "stats/text_tally.h"

#include <algorithm>

#include "text/simd.h"

namespace zenfo {
namespace {

constexpr ptrdiff_t kLine = 64;  // of the cache

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

template <class V>
ZENFO_VECTOR_CODE V gaps_among(const V& bytes) {
  return (bytes <= V::fill(32)) | (bytes == V::fill(127));
}

// Tallies whole lines of the cache and moves `from` past them. There must be a
// byte before `from`.
template <class V>
ZENFO_VECTOR_CODE TextTally tally_lines(const char*& from, const char* end) {
  constexpr ptrdiff_t kSize = V::kSize;
  // Turns until a counter of one byte is full.
  constexpr ptrdiff_t kTurns = 255 / (kLine / kSize);
  TextTally sum;
  while (end - from >= kLine) {
    V words;
    V gaps;
    V line_ends;
    ptrdiff_t turns = std::min((end - from) / kLine, kTurns);
    for (; turns > 0; --turns, from += kLine) {
      fetch_ahead(from);
      for (ptrdiff_t i = 0; i < kLine; i += kSize) {
        const V here = V::load(from + i);
        const V before = V::load(from + i - 1);
        const V gap = gaps_among(here);
        words = words - (gaps_among(before) & ~gap);
        gaps = gaps - gap;
        line_ends =
            line_ends - ((before == V::fill('\r')) & (here == V::fill('\n')));
      }
    }
    add(sum, {words.sum(), gaps.sum(), line_ends.sum()});
  }
  return sum;
}

TextTally lines_sse2(const char*& from, const char* end) {
  return tally_lines<Vector16>(from, end);
}

ZENFO_AVX2 TextTally lines_avx2(const char*& from, const char* end) {
  return tally_lines<Vector32>(from, end);
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
  return tally_with(processor_has_avx2() ? lines_avx2 : lines_sse2, from, end,
                    before);
}

TextTally tally_text_sse2(const char* from, const char* end, char before) {
  return tally_with(lines_sse2, from, end, before);
}

}  // namespace zenfo
