// Running numbers of a run of replacements.
//
// Tested by tests/contract/replace_test.cpp
#pragma once

#include <cstdint>
#include <string_view>

#include "replace/replace_engine.h"
#include "text/c_text.h"

namespace zenfo {

struct Numbering {
  const char* placeholder = nullptr;
  int32_t first = 0;
  int32_t step = 0;
  int32_t run_on = 0;  // zero: starts again for each file that is rewritten
};

// The running number of a run, which may start again with every file.
class NumberSource {
 public:
  explicit NumberSource(const Numbering& numbering)
      : numbering_(numbering), number_(start()) {}

  std::string_view placeholder() const {
    return or_empty(numbering_.placeholder);
  }
  RunningNumber& for_next_file() {
    if (numbering_.run_on == 0) number_ = start();
    return number_;
  }

 private:
  RunningNumber start() const { return {numbering_.first, numbering_.step}; }

  Numbering numbering_;
  RunningNumber number_;
};

}  // namespace zenfo
