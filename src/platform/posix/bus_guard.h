// Keeps the process alive when a viewed file is shortened by somebody else.
//
// Touching a page of a mapping that its file no longer has, or that cannot be
// read, raises SIGBUS. While any range is guarded, a handler replaces such a
// page by a page of zeros, notes that and lets the process continue. Faults
// elsewhere are passed to the previous handler. The handler is removed with the
// last range. Several threads may guard ranges of their own.
//
// Tested by tests/unit/platform/posix_file_view_test.cpp
#pragma once

#include <atomic>
#include <cstddef>

namespace zenfo::platform {

// The range is a writable private mapping, from one page border to another.
// `lost` becomes true when a page of it is replaced. False when the greatest
// possible number is guarded already.
bool guard_range(char* begin, size_t size, std::atomic<bool>& lost);
// Call this before the range is unmapped.
void release_range(char* begin);

}  // namespace zenfo::platform
