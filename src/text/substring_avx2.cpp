// Substring kernels for processors with AVX2. All headers come before the
// instruction set is widened: an inline function of theirs compiled for AVX2
// could be the copy that the linker keeps for everybody.
//
// Tested by tests/unit/text/substring_kernels_test.cpp
#include <cstddef>
#include <cstdint>
#include <utility>

#include "text/simd.h"
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

using Widest = Vector32;

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
