// Search that stays linear on any text, in constant memory (Crochemore and
// Perrin's two-way algorithm): the needle is cut at a critical place, its right
// part compared forwards, its left part backwards. Slower than the kernels on
// ordinary text; they use it where repetitive text misleads them.
//
// Tested by tests/unit/text/two_way_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zenfo {

// First occurrence of the needle (not empty) within [from, end), or null.
// `fold` is a table of 256 bytes applied to both texts, or null for an exact
// search. Time: proportional to the needle and the range.
const char* find_two_way(const char* from, const char* end,
                         std::string_view needle, const uint8_t* fold);

}  // namespace zenfo
