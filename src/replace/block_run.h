// The run that replaces the matches of the compiled pattern.
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

// What replaces the matches.
struct BlockReplacement {
  const char* text = nullptr;
  int32_t edit_mode = 0;
  int32_t use_list = 0;
  int32_t use_pattern = 0;
  int32_t match_index = 0;
  int32_t expand = 0;
  std::optional<Numbering> numbering = {};
};

// Runs over the lines of a list file, or the selected entries of list 1, and
// returns what its operation returns.
int32_t run_block_replacement(Library& library, const RunOptions& options,
                              const BlockReplacement& replacement,
                              const std::optional<LineFiles>& files = {});

}  // namespace zenfo
