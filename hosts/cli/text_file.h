// Files of lines that options name: texts to find, paths to search.
//
// Tested by tests/cli/find_test.cpp
#pragma once

#include <string>
#include <vector>

namespace zenfo::cli {

// The lines without their ends, LF or CR LF. Throws Failure for a file that
// cannot be read.
std::vector<std::string> read_text_lines(const std::string& path);
// Throws Failure unless all lines end in CR LF.
void check_crlf_lines(const std::string& path);

}  // namespace zenfo::cli
