// The phases of a file in a run, and the status text that announces each.
//
// Tested by tests/contract/search_test.cpp
#pragma once

#include <string_view>

namespace zenfo {

enum class Phase {
  kLoading,
  kChecking,
  kParsing,
  kDisplay,
  kReporting,
  kReplacing,
  kInsertingBefore,
  kInsertingAfter,
  kChangingCase,
};

// The text; a blank and a path follow it.
constexpr std::string_view phase_text(Phase phase) {
  constexpr std::string_view kTexts[] = {
      "Now loading file",
      "Now binary checking",
      "Now parsing file",
      "Preparing for display",
      "Now reporting to file",
      "Now replacing in file",
      "Now inserting before in file",
      "Now inserting after in file",
      "Now changing case in file",
  };
  return kTexts[static_cast<int>(phase)];
}

}  // namespace zenfo
