// Word and line counts, and the saving of occurrences, as exported;
// zenfofr130.h documents them for hosts.
//
// Tested by tests/contract/stats_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t get_word_count(Library& library, const char* file, TextCounts* counts);
int32_t save_occurrences(Library& library, const char* file,
                         const char* separator);

}  // namespace zenfo
