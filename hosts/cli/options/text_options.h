// The options of what to find, as find, replace and case have them in common.
//
// Tested by tests/cli/find_test.cpp, tests/cli/replace_test.cpp
#pragma once

#include <string>

#include "cli/options/command_line.h"
#include "shared/session/search.h"

namespace zenfo::host::cli {

// At most one of them may be given.
struct AreaTexts {
  std::string outside;
  std::string inside;
};

void declare_between(CommandLine& line, SearchOptions& search,
                     const std::string& help);
// How the text is taken, and what stands beside it.
void declare_how(CommandLine& line, SearchOptions& search);
// Names in texts, and where in a file they are searched for.
void declare_areas(CommandLine& line, SearchOptions& search, AreaTexts& areas);
// Throws Failure for both.
void settle_areas(const CommandLine& line, const AreaTexts& areas,
                  SearchOptions& search);

}  // namespace zenfo::host::cli
