// Keeps the process alive when a viewed file is shortened by somebody else.
//
// Touching a page of a mapping that its file no longer has raises SIGBUS. While
// any range is guarded, a handler puts a page of zeros in the place of such a
// page and lets the process go on. Faults elsewhere go to whoever handled the
// signal before, and the handler goes when the last range does.
//
// Tested by tests/unit/platform/posix_file_view_test.cpp
#pragma once

#include <cstddef>

namespace zenfo::platform {

// The range is a writable private mapping, from one page border to another.
// False when as many are guarded as can be at a time.
bool guard_range(char* begin, size_t size);
// To be called before it is unmapped.
void release_range(char* begin);

}  // namespace zenfo::platform
