// The subcommands, one file each.
#pragma once

#include <string>
#include <vector>

namespace zenfo::cli {

using Arguments = std::vector<std::string>;

// Each answers the exit status and throws Failure or Stopped.
int run_case(const Arguments& arguments);     // case.cpp
int run_compare(const Arguments& arguments);  // compare.cpp
int run_count(const Arguments& arguments);    // count.cpp
int run_dups(const Arguments& arguments);     // dups.cpp
int run_files(const Arguments& arguments);    // files.cpp
int run_find(const Arguments& arguments);     // find.cpp
int run_replace(const Arguments& arguments);  // replace.cpp
int run_undo(const Arguments& arguments);     // undo.cpp

}  // namespace zenfo::cli
