// Start and end of the library, callbacks, error file.
//
// Tested by tests/contract/frame_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"
#include "zenfofr130.h"

namespace zenfo {

int32_t initialize(Library& library);
int32_t terminate(Library& library);
int32_t set_callbacks(Library& library, const CallbackTable* table);
int32_t set_error_file(Library& library, const char* name);

}  // namespace zenfo
