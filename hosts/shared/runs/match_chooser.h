// Chooses among the matches that a run is about to change.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <string_view>

#include "shared/text/found_text.h"

namespace zenfo::host {

class MatchChooser {
 public:
  virtual ~MatchChooser() = default;
  // Whether the match is taken.
  virtual bool take(std::string_view path, std::string_view text,
                    const Match& match) = 0;
  // No more are to be taken, and what was not taken stays so.
  virtual bool stopped() const = 0;
};

}  // namespace zenfo::host
