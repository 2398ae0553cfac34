// Matches as JSON, one object per line; docs/json-output.md describes the
// format. Written by hand for speed, because there may be a million lines.
//
// Tested by tests/cli/find_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/output.h"
#include "shared/text/found_text.h"

namespace zenfo::host::cli {

class JsonPrinter {
 public:
  JsonPrinter(uint64_t before, uint64_t after, Output& output)
      : before_(before), after_(after), output_(output) {}

  void print_file(std::string_view path, std::string_view text,
                  const std::vector<Block>& blocks);
  void print_summary(uint64_t files_searched);

 private:
  class Walk;

  struct Counts {
    uint64_t lines = 0;
    uint64_t matches = 0;
  };

  uint64_t before_;
  uint64_t after_;
  Output& output_;
  uint64_t files_ = 0;
  Counts total_;
};

}  // namespace zenfo::host::cli
