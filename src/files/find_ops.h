// Filling file lists: FindFiles and AddFileToList, as exported.
//
// Tested by tests/contract/find_files_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t find_files(Library& library, int32_t list, const char* specification,
                   const unsigned char* options, const char* output_file);
int32_t add_file_to_list(Library& library, int32_t source, int32_t target,
                         const unsigned char* options);

}  // namespace zenfo
