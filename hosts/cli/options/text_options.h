// The options for what to find, which find, replace and case share.
//
// Tested by tests/cli/find_test.cpp, tests/cli/replace_test.cpp
#pragma once

#include <string>

#include "cli/options/command_line.h"
#include "shared/session/search.h"

namespace zenfo::host::cli {

// At most one of the two may be given.
struct AreaTexts {
  std::string outside;
  std::string inside;
};

void declare_between(CommandLine& line, SearchOptions& search,
                     const std::string& help);
// How to read the text, and what must be beside it.
void declare_how(CommandLine& line, SearchOptions& search);
// Named characters and classes in texts, and the areas to search.
void declare_areas(CommandLine& line, SearchOptions& search, AreaTexts& areas);
// Throws Failure when both are given.
void settle_areas(const CommandLine& line, const AreaTexts& areas,
                  SearchOptions& search);

}  // namespace zenfo::host::cli
