// Line ends and zero bytes in 16 bytes of a text at once, by the instructions
// that all processors of the supported systems have.
//
// Tested by tests/hosts/shared/found_text_test.cpp
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace zenfo::host {

inline constexpr size_t kMarkedBytes = 16;
// count_marks() counts this many at once, if it counts any.
inline constexpr size_t kCountStep = 4 * kMarkedBytes;

// A bit for each byte, the lowest for the first.
struct ByteMarks {
  uint32_t line_ends = 0;
  uint32_t zeros = 0;
};

struct ByteMarkCount {
  uint64_t line_ends = 0;
  bool zeros = false;  // whether there is any
};

#ifdef __SSE2__
inline __m128i load_bytes(std::string_view text, size_t at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
}

inline uint32_t equal_bytes(__m128i bytes, char byte) {
  return static_cast<uint32_t>(
      _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte))));
}
#endif

// Of the bytes from an offset on, fewer at the text's end.
inline ByteMarks marks_of(std::string_view text, size_t at) {
#ifdef __SSE2__
  if (text.size() - at >= kMarkedBytes) {
    const __m128i bytes = load_bytes(text, at);
    return {equal_bytes(bytes, '\n'), equal_bytes(bytes, '\0')};
  }
#endif
  ByteMarks marks;
  const size_t count = std::min(kMarkedBytes, text.size() - at);
  for (size_t i = 0; i < count; ++i) {
    marks.line_ends |= uint32_t{text[at + i] == '\n'} << i;
    marks.zeros |= uint32_t{text[at + i] == '\0'} << i;
  }
  return marks;
}

// Counts in whole steps from `*at` on, not beyond `end`; `*at` becomes the end
// of what was counted.
inline ByteMarkCount count_marks([[maybe_unused]] std::string_view text,
                                 [[maybe_unused]] size_t* at,
                                 [[maybe_unused]] size_t end) {
  ByteMarkCount count;
#ifdef __SSE2__
  constexpr size_t kMostTurns = UINT8_MAX / 4;  // sums of one byte
  const __m128i line_end = _mm_set1_epi8('\n');
  const __m128i zero = _mm_setzero_si128();
  __m128i least = line_end;  // of the bytes in each place
  const auto add = [&](__m128i bytes, __m128i& sums) {
    sums = _mm_sub_epi8(sums, _mm_cmpeq_epi8(bytes, line_end));
    least = _mm_min_epu8(least, bytes);
  };
  while (end - *at >= kCountStep) {
    const size_t stop =
        *at + std::min((end - *at) / kCountStep, kMostTurns) * kCountStep;
    __m128i sums = zero;
    for (size_t i = *at; i < stop; i += kCountStep) {
      add(load_bytes(text, i), sums);
      add(load_bytes(text, i + kMarkedBytes), sums);
      add(load_bytes(text, i + 2 * kMarkedBytes), sums);
      add(load_bytes(text, i + 3 * kMarkedBytes), sums);
    }
    *at = stop;
    alignas(16) uint64_t halves[2];
    _mm_store_si128(reinterpret_cast<__m128i*>(halves),
                    _mm_sad_epu8(sums, zero));
    count.line_ends += halves[0] + halves[1];
  }
  count.zeros = _mm_movemask_epi8(_mm_cmpeq_epi8(least, zero)) != 0;
#endif
  return count;
}

}  // namespace zenfo::host
