// The subcommands, one file each.
#pragma once

#include "cli/options/command_line.h"

namespace zenfo::host::cli {

// Each returns the exit status and throws Failure or Stopped.
int run_case(const Arguments& arguments);     // case.cpp
int run_compare(const Arguments& arguments);  // compare.cpp
int run_count(const Arguments& arguments);    // count.cpp
int run_dups(const Arguments& arguments);     // dups.cpp
int run_files(const Arguments& arguments);    // files.cpp
int run_find(const Arguments& arguments);     // find.cpp
int run_replace(const Arguments& arguments);  // replace.cpp
int run_undo(const Arguments& arguments);     // undo.cpp

}  // namespace zenfo::host::cli
