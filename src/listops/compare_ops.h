// Operations over whole lists of files: comparison, search in a column, export
// of columns; as exported.
//
// Tested by tests/contract/compare_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t compare_lists(Library& library, uint32_t option, int32_t keep);
int32_t find_in_list(Library& library, int32_t list, uint32_t field,
                     const char* text, uint32_t whole_word,
                     uint32_t case_sensitive, uint32_t start, int32_t position,
                     uint32_t first_only, int32_t select);
int32_t save_selection(Library& library, int32_t list, const char* file,
                       const char* separator, const unsigned char* columns);
// Intended: does nothing; kept for hosts that call it.
int32_t copy_to_clipboard(Library& library);

}  // namespace zenfo
