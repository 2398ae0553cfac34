// Undo, as exported; zenfofr130.h documents it for hosts.
//
// Tested by tests/contract/undo_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t undo(Library& library);
int32_t set_undo_file(Library& library, const char* path);
int32_t get_undo_list(Library& library);
int32_t clear_undo_list(Library& library);

}  // namespace zenfo
