// File-list files, one path a line: loading and saving, as exported.
//
// Tested by tests/contract/list_file_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t load_file_list(Library& library, const char* file,
                       const unsigned char* options);
int32_t save_file_list(Library& library, const char* file);
int32_t save_result_file_list(Library& library, int32_t list, const char* file,
                              int32_t flagged);

}  // namespace zenfo
