// Runs that change the case of matches.
//
// Tested by tests/contract/case_test.cpp
#pragma once

#include <cstdint>

#include "library/library.h"
#include "search/file_run.h"

namespace zenfo {

// Runs over the selected entries of list 1.
int32_t run_case_change(Library& library, const RunOptions& options,
                        bool upper);

// Runs over the lines of a list file, up to the first file that it changed.
int32_t run_case_change_of_one(Library& library, const RunOptions& options,
                               bool upper, const LineFiles& files);

}  // namespace zenfo
