// Changes as lines: what is removed and what replaces it.
//
//   path:12:-the old line
//   path:12:+the new line
//
// Tested by tests/cli/preview_test.cpp
#pragma once

#include <string_view>

#include "cli/terminal/output.h"

namespace zenfo::host::cli {

void put_changes(Output& output, std::string_view path, std::string_view before,
                 std::string_view after);

}  // namespace zenfo::host::cli
