// What comes through standard input, a pipe or a device, put into a file that
// can be read again and again.
//
// Tested by tests/cli/input_test.cpp, tests/cli/posix_input_test.cpp
#pragma once

#include <string>

namespace zenfo::host {

// Reads to the end of standard input. Answers why it cannot be read, or the
// file `to` cannot be written; empty for success. More than the library loads
// is refused.
std::string copy_standard_input(const std::string& to);
// The same for what is given as a path, after waiting for a writer.
std::string copy_stream(const std::string& from, const std::string& to);

}  // namespace zenfo::host
