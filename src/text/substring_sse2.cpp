// Substring kernels for the instructions that every target has.
//
// Tested by tests/unit/text/substring_kernels_test.cpp
#include <emmintrin.h>

#include <cstddef>
#include <cstdint>

#include "text/substring_kernels.h"
#include "text/two_way.h"

namespace zenfo {
namespace {

struct Vector16;
using Vector = Vector16;

#include "text/substring_kernel.inc"

}  // namespace

const KernelSet kSse2Kernels = {"sse2", scan_one_byte<false>,
                                scan_one_byte<true>, scan<false>, scan<true>};

}  // namespace zenfo
