// The run that replaces the find string of each selected pair by its replace
// string.
//
// Tested by tests/contract/replace_test.cpp,
// tests/contract/replace_run_test.cpp
#pragma once

#include <cstdint>
#include <optional>

#include "library/library.h"
#include "replace/numbering.h"
#include "search/file_run.h"

namespace zenfo {

// Runs over the lines of a list file, or the selected entries of list 1, and
// returns what its operation returns.
int32_t run_string_replacement(Library& library, const RunOptions& options,
                               const StringCompilation& compilation,
                               const std::optional<Numbering>& numbering = {},
                               const std::optional<LineFiles>& files = {});

}  // namespace zenfo
