// Vectors of 16 and of 32 bytes, and what goes with loops over them.
//
// Every loop that processes many bytes at once uses Vector. The functions
// below, and helpers marked ZENFO_VECTOR_CODE, are always inlined, so they
// become instructions of the set that their caller is compiled for. A loop can
// thus be written once for vectors of any size and be called from two
// functions: one uses Vector16 and runs on every processor; the other uses
// Vector32, is marked ZENFO_AVX2 and is called only when processor_has_avx2().
//
//   template <class V>
//   ZENFO_VECTOR_CODE size_t count_blanks(const char* from, const char* end);
//
//   size_t with_sse2(const char* from, const char* end) {
//     return count_blanks<Vector16>(from, end);
//   }
//   ZENFO_AVX2 size_t with_avx2(const char* from, const char* end) {
//     return count_blanks<Vector32>(from, end);
//   }
//
// Tested by tests/unit/text/simd_test.cpp
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#define ZENFO_VECTOR_CODE [[gnu::always_inline]] inline
#define ZENFO_AVX2 [[gnu::target("avx2")]]

namespace zenfo {

inline bool processor_has_avx2() { return __builtin_cpu_supports("avx2"); }

// Starts to fetch what is one page after `at`, which the processor does not do
// by itself: text that is not in the cache is read a quarter faster. `at` may
// be near the end of the text, as fetching never faults.
ZENFO_VECTOR_CODE void fetch_ahead(const char* at) {
  constexpr uintptr_t kDistance = 4096;
  // A pointer beyond the text may not be computed, a number may.
  const auto address = reinterpret_cast<uintptr_t>(at) + kDistance;
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  _mm_prefetch(reinterpret_cast<const char*>(address), _MM_HINT_T0);
}

template <size_t kBytes>
struct BytesOf;
template <>
struct BytesOf<16> {
  using Type [[gnu::vector_size(16)]] = uint8_t;
};
template <>
struct BytesOf<32> {
  using Type [[gnu::vector_size(32)]] = uint8_t;
};

// kBytes unsigned bytes. A comparison sets all bits of the bytes for which it
// holds and no others, so that subtracting it adds 1 to each of those.
template <size_t kBytes>
class Vector {
 public:
  static constexpr size_t kSize = kBytes;

  // All bytes 0.
  ZENFO_VECTOR_CODE Vector() : bytes_{} {}
  // Written out because a compiler that does not know of AVX2 yet would copy
  // 32 bytes in two halves, and reading them as a whole then stalls.
  ZENFO_VECTOR_CODE Vector(const Vector& other) : bytes_(other.bytes_) {}
  ZENFO_VECTOR_CODE Vector& operator=(const Vector& other) {
    bytes_ = other.bytes_;
    return *this;
  }

  ZENFO_VECTOR_CODE static Vector load(const char* at) {
    Vector loaded;
    __builtin_memcpy(&loaded.bytes_, at, kBytes);
    return loaded;
  }
  ZENFO_VECTOR_CODE static Vector fill(uint8_t byte);

  ZENFO_VECTOR_CODE friend Vector operator==(const Vector& a, const Vector& b) {
    return Vector(reinterpret_cast<Bytes>(a.bytes_ == b.bytes_));
  }
  ZENFO_VECTOR_CODE friend Vector operator<=(const Vector& a, const Vector& b) {
    return Vector(reinterpret_cast<Bytes>(a.bytes_ <= b.bytes_));
  }
  ZENFO_VECTOR_CODE friend Vector operator&(const Vector& a, const Vector& b) {
    return Vector(a.bytes_ & b.bytes_);
  }
  ZENFO_VECTOR_CODE friend Vector operator|(const Vector& a, const Vector& b) {
    return Vector(a.bytes_ | b.bytes_);
  }
  ZENFO_VECTOR_CODE friend Vector operator^(const Vector& a, const Vector& b) {
    return Vector(a.bytes_ ^ b.bytes_);
  }
  ZENFO_VECTOR_CODE friend Vector operator~(const Vector& a) {
    return Vector(~a.bytes_);
  }
  // Byte by byte, modulo 256.
  ZENFO_VECTOR_CODE friend Vector operator-(const Vector& a, const Vector& b) {
    return Vector(a.bytes_ - b.bytes_);
  }

  // For each byte of `here` the byte in front of it; for the first the last
  // byte of `before`.
  ZENFO_VECTOR_CODE static Vector preceding(const Vector& before,
                                            const Vector& here);
  // Bit i is the highest bit of byte i. For 32 bytes only in code for AVX2.
  ZENFO_VECTOR_CODE uint32_t mask() const;
  // Of all bytes.
  ZENFO_VECTOR_CODE size_t sum() const;

 private:
  using Bytes = typename BytesOf<kBytes>::Type;

  // By reference: passed by value, 32 bytes would need AVX.
  ZENFO_VECTOR_CODE explicit Vector(const Bytes& bytes) : bytes_(bytes) {}

  friend class Vector<32>;
  Bytes bytes_;
};

using Vector16 = Vector<16>;
using Vector32 = Vector<32>;

template <>
ZENFO_VECTOR_CODE Vector16 Vector16::fill(uint8_t byte) {
  return Vector16(
      reinterpret_cast<Bytes>(_mm_set1_epi8(static_cast<char>(byte))));
}

template <>
ZENFO_VECTOR_CODE Vector32 Vector32::fill(uint8_t byte) {
  const Vector16 half = Vector16::fill(byte);
  return Vector32(__builtin_shufflevector(
      half.bytes_, half.bytes_, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13,
      14, 15, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
}

template <>
ZENFO_VECTOR_CODE Vector16 Vector16::preceding(const Vector16& before,
                                               const Vector16& here) {
  // Without SSSE3 a shuffle would be taken apart into single bytes.
  return Vector16(reinterpret_cast<Bytes>(_mm_or_si128(
      _mm_slli_si128(reinterpret_cast<__m128i>(here.bytes_), 1),
      _mm_srli_si128(reinterpret_cast<__m128i>(before.bytes_), 15))));
}

template <>
ZENFO_VECTOR_CODE Vector32 Vector32::preceding(const Vector32& before,
                                               const Vector32& here) {
  return Vector32(__builtin_shufflevector(
      before.bytes_, here.bytes_, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41,
      42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59,
      60, 61, 62));
}

template <>
ZENFO_VECTOR_CODE uint32_t Vector16::mask() const {
  return static_cast<uint32_t>(
      _mm_movemask_epi8(reinterpret_cast<__m128i>(bytes_)));
}

template <>
ZENFO_AVX2 ZENFO_VECTOR_CODE uint32_t Vector32::mask() const {
  return static_cast<uint32_t>(
      _mm256_movemask_epi8(reinterpret_cast<__m256i>(bytes_)));
}

template <>
ZENFO_VECTOR_CODE size_t Vector16::sum() const {
  const __m128i sums =
      _mm_sad_epu8(reinterpret_cast<__m128i>(bytes_), _mm_setzero_si128());
  return static_cast<size_t>(_mm_cvtsi128_si32(sums)) +
         static_cast<size_t>(_mm_extract_epi16(sums, 4));
}

template <>
ZENFO_VECTOR_CODE size_t Vector32::sum() const {
  const Vector16 low(__builtin_shufflevector(
      bytes_, bytes_, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
  const Vector16 high(__builtin_shufflevector(bytes_, bytes_, 16, 17, 18, 19,
                                              20, 21, 22, 23, 24, 25, 26, 27,
                                              28, 29, 30, 31));
  return low.sum() + high.sum();
}

}  // namespace zenfo
