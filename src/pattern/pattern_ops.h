// Compiling patterns and loading character classes, as exported; zenfofr130.h
// documents them for hosts.
//
// Tested by tests/contract/pattern_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"
#include "pattern/compiler.h"

namespace zenfo {

int32_t set_pattern(Library& library, const PatternText& start,
                    const PatternText& main, const PatternText& end);
int32_t set_exclusion_pattern(Library& library, const PatternText& start,
                              const PatternText& main, const PatternText& end);
int32_t set_replace_pattern(Library& library, const PatternText& start,
                            const PatternText& main, const PatternText& end);
int32_t set_pattern_tag(Library& library, const char* first, const char* second,
                        int32_t count_start, int32_t is_pattern,
                        int32_t convert);
int32_t set_operators(Library& library, const char* file);

}  // namespace zenfo
