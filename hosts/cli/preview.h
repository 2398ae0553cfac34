// Changes as lines: what was removed and what takes its place.
//
//   path:12:-the old line
//   path:12:+the new line
//
// Lines are compared in order. Where they differ, the nearest place is sought
// at which both texts go on alike; the search is bounded, so that large texts
// take time in proportion to their size. Every change is shown, though perhaps
// with more lines than needed.
//
// Tested by tests/cli/preview_test.cpp
#pragma once

#include <string_view>

#include "output.h"

namespace zenfo::cli {

void put_changes(Output& output, std::string_view path, std::string_view before,
                 std::string_view after);

}  // namespace zenfo::cli
