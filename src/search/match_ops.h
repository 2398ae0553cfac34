// Accessors of match records, and FindInFiles, as exported; zenfofr130.h
// documents them for hosts.
//
// Tested by tests/contract/match_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t get_match_offset(Library& library, int32_t list, uint32_t index,
                         char* buffer, uint32_t size);
int32_t get_match_length(Library& library, int32_t list, uint32_t index,
                         char* buffer, uint32_t size);
int32_t get_match_text(Library& library, int32_t list, uint32_t index,
                       char* buffer, uint32_t size);
int32_t get_match_replace(Library& library, int32_t list, uint32_t index,
                          char* buffer, uint32_t size);
int32_t get_match_flag(Library& library, int32_t list, uint32_t index);

int32_t find_in_files(Library& library, int32_t list, const char* text,
                      int32_t clear_selection, int32_t whole_word,
                      int32_t case_sensitive);

}  // namespace zenfo
