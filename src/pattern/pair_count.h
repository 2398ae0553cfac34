// Counts the places where one byte directly follows another, such as LF after
// CR, 16 or 32 bytes at a time.
//
// Tested by tests/unit/pattern/pair_count_test.cpp
#pragma once

#include <cstddef>

namespace zenfo {

// How many times `first` `second`, two different bytes, lies in [from, end).
size_t count_pairs(const char* from, const char* end, char first, char second);

}  // namespace zenfo
