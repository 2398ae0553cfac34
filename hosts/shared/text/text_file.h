// Files that options name: texts to find, paths to search, output files.
//
// The input may be an endless pipe, so it is only read up to a limit, which the
// variable ZENFO_LIST_LIMIT can raise.
//
// Tested by tests/cli/find_test.cpp, files_test.cpp
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zenfo::host {

// The lines without their LF or CR LF. Throws Failure for a file that cannot be
// read.
std::vector<std::string> read_text_lines(const std::string& path);
// Throws Failure unless all lines end in CR LF.
void check_crlf_lines(const std::string& path);
// The length in bytes of the longest line of a list file, whose lines end in CR
// LF. Throws Failure for a file that cannot be read or whose lines end in LF
// alone.
size_t longest_list_line(const std::string& path);
// Creates the file if it is missing.
bool can_be_written(const std::string& path);

}  // namespace zenfo::host
