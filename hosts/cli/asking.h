// --ask: each match is shown in its line, and the user says whether to take
// it.
//
// Tested by tests/cli/posix_find_test.cpp
#pragma once

#include <string>
#include <string_view>

#include "found_text.h"

namespace zenfo::cli {

// Asks on the error stream, reads the terminal's answers.
class Asking {
 public:
  // Whether the match is taken.
  bool take(std::string_view path, std::string_view text, const Match& match);
  // The user wants to be asked no more, and what was not taken stays so.
  bool stopped() const { return stopped_; }

 private:
  bool all_ = false;
  bool stopped_ = false;
};

}  // namespace zenfo::cli
