// Substring kernels for processors with AVX2. All headers come before the
// instruction set is widened: an inline function of theirs compiled for AVX2
// could be the copy that the linker keeps for everybody.
//
// Tested by tests/unit/text/substring_kernels_test.cpp
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "text/substring_kernels.h"
#include "text/two_way.h"

#ifdef __clang__
#pragma clang attribute push(__attribute__((target("avx2"))), \
                             apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif

namespace zenfo {
namespace {

struct Vector {
  using Register = __m256i;
  static constexpr size_t kSize = 32;
  static Register load(const char* at) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
  }
  static Register fill(uint8_t byte) {
    return _mm256_set1_epi8(static_cast<char>(byte));
  }
  static Register equal(Register a, Register b) {
    return _mm256_cmpeq_epi8(a, b);
  }
  static Register both(Register a, Register b) {
    return _mm256_and_si256(a, b);
  }
  static Register either(Register a, Register b) {
    return _mm256_or_si256(a, b);
  }
  static uint32_t mask(Register a) {
    return static_cast<uint32_t>(_mm256_movemask_epi8(a));
  }
};

#include "text/substring_kernel.inc"

}  // namespace

const KernelSet kAvx2Kernels = {"avx2", scan_one_byte<false>,
                                scan_one_byte<true>, scan<false>, scan<true>};

}  // namespace zenfo

#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
