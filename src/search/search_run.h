// Runs that count matches and report them.
//
// Each returns what its operation returns. With `files` a run takes the lines
// of a list file, else the selected entries of list 1. A report is written to
// the path `report`, if there is one.
//
// Tested by tests/contract/search_test.cpp,
// tests/contract/search_strings_test.cpp,
// tests/contract/search_output_test.cpp
#pragma once

#include <cstdint>
#include <optional>

#include "library/library.h"
#include "search/file_run.h"

namespace zenfo {

// Searches for the compiled pattern.
int32_t run_search(Library& library, const RunOptions& options,
                   const char* report,
                   const std::optional<LineFiles>& files = {});

// Searches for the find string of every selected pair.
int32_t run_string_search(Library& library, const RunOptions& options,
                          const StringCompilation& compilation,
                          const char* report,
                          const std::optional<LineFiles>& files = {});

// Searches for the exclusion pattern alone.
int32_t run_area_search(Library& library, const RunOptions& options,
                        const char* report);

}  // namespace zenfo
