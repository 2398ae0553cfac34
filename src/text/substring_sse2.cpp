// Substring kernels for the instructions that every target has.
//
// Tested by tests/unit/text/substring_kernels_test.cpp
#include <cstddef>
#include <cstdint>
#include <utility>

#include "text/simd.h"
#include "text/substring_kernels.h"
#include "text/two_way.h"

namespace zenfo {
namespace {

using Widest = Vector16;

#include "text/substring_kernel.inc"

}  // namespace

const KernelSet kSse2Kernels = {"sse2", scan_one_byte<false>,
                                scan_one_byte<true>, scan<false>, scan<true>};

}  // namespace zenfo
