// Copies standard input, a pipe or a device into a file that can be read
// repeatedly.
//
// Tested by tests/cli/input_test.cpp, tests/cli/posix_input_test.cpp
#pragma once

#include <string>

namespace zenfo::host {

// Reads standard input to its end. Returns why it cannot be read or the file
// `to` cannot be written; empty for success. Input larger than the library can
// load is refused.
std::string copy_standard_input(const std::string& to);
// The same for a path. Waits for the writer of a pipe.
std::string copy_stream(const std::string& from, const std::string& to);

}  // namespace zenfo::host
