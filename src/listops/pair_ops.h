// The list of string pairs and the list of replace values: adding, changing,
// loading and saving, as exported.
//
// Both files are lines ended by CR LF; of pairs, the find string, a tab and
// the replace string. Nothing is escaped.
//
// Tested by tests/contract/pairs_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t add_string_pair(Library& library, const char* find,
                        const char* replace);
int32_t update_string_pair(Library& library, uint32_t index, const char* find,
                           const char* replace);
int32_t load_string_pair(Library& library, const char* file);
int32_t save_string_pair(Library& library, const char* file,
                         int32_t selected_only);
int32_t load_replace_list(Library& library, const char* file);
int32_t save_replace_list(Library& library, const char* file);

}  // namespace zenfo
