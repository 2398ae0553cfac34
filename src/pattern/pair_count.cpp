#include "pattern/pair_count.h"

#include <immintrin.h>

#include <algorithm>

namespace zenfo {
namespace {

// Turns that a counter of one byte can hold.
constexpr size_t kTurns = 255;

// Both count whole vectors and move `from` behind the places looked at.
size_t count_sse2(const char*& from, const char* end, char first, char second) {
  const __m128i a = _mm_set1_epi8(first);
  const __m128i b = _mm_set1_epi8(second);
  size_t count = 0;
  while (end - from > 16) {
    size_t turns = std::min(static_cast<size_t>(end - from - 1) / 16, kTurns);
    __m128i found = _mm_setzero_si128();
    for (; turns > 0; --turns, from += 16) {
      auto at = [&](int ahead) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + ahead));
      };
      found = _mm_sub_epi8(found, _mm_and_si128(_mm_cmpeq_epi8(at(0), a),
                                                _mm_cmpeq_epi8(at(1), b)));
    }
    __m128i sums = _mm_sad_epu8(found, _mm_setzero_si128());
    count += static_cast<size_t>(_mm_cvtsi128_si32(sums)) +
             static_cast<size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
  }
  return count;
}

__attribute__((target("avx2"))) size_t count_avx2(const char*& from,
                                                  const char* end, char first,
                                                  char second) {
  const __m256i a = _mm256_set1_epi8(first);
  const __m256i b = _mm256_set1_epi8(second);
  size_t count = 0;
  while (end - from > 32) {
    size_t turns = std::min(static_cast<size_t>(end - from - 1) / 32, kTurns);
    __m256i found = _mm256_setzero_si256();
    for (; turns > 0; --turns, from += 32) {
      __m256i here = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
      __m256i next =
          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from + 1));
      found =
          _mm256_sub_epi8(found, _mm256_and_si256(_mm256_cmpeq_epi8(here, a),
                                                  _mm256_cmpeq_epi8(next, b)));
    }
    __m256i sums = _mm256_sad_epu8(found, _mm256_setzero_si256());
    __m128i half = _mm_add_epi64(_mm256_castsi256_si128(sums),
                                 _mm256_extracti128_si256(sums, 1));
    count += static_cast<size_t>(_mm_cvtsi128_si32(half)) +
             static_cast<size_t>(_mm_cvtsi128_si32(_mm_srli_si128(half, 8)));
  }
  return count;
}

}  // namespace

size_t count_pairs(const char* from, const char* end, char first, char second) {
  static const bool has_avx2 = __builtin_cpu_supports("avx2");
  size_t count = has_avx2 ? count_avx2(from, end, first, second)
                          : count_sse2(from, end, first, second);
  for (; end - from > 1; ++from) count += from[0] == first && from[1] == second;
  return count;
}

}  // namespace zenfo
