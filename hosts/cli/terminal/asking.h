// --ask: shows each match in its line, and the user says whether to take it.
//
// Tested by tests/cli/posix_find_test.cpp
#pragma once

#include <string>
#include <string_view>

#include "shared/runs/match_chooser.h"
#include "shared/text/found_text.h"

namespace zenfo::host::cli {

// Asks on the error stream and reads the answers from the terminal.
class Asking : public MatchChooser {
 public:
  bool take(std::string_view path, std::string_view text,
            const Match& match) override;
  // The user does not want to be asked again.
  bool stopped() const override { return stopped_; }

 private:
  bool all_ = false;
  bool stopped_ = false;
};

}  // namespace zenfo::host::cli
