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
  // Whether the user chose to stop: matches not taken so far stay unchanged.
  virtual bool stopped() const = 0;
};

}  // namespace zenfo::host
