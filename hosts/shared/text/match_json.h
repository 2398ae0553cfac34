// Matches as JSON, one object per line; docs/json-output.md describes the
// format. Written by hand for speed, because there may be a million lines.
//
// Tested by tests/cli/find_test.cpp, tests/gui/results/export_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shared/text/found_text.h"

namespace zenfo::host {

class MatchJson {
 public:
  // Receives whole lines.
  using Sink = std::function<void(std::string_view lines)>;

  // With this many lines around the matches.
  MatchJson(uint64_t before, uint64_t after, Sink sink)
      : before_(before), after_(after), sink_(std::move(sink)) {}

  void put_file(std::string_view path, std::string_view text,
                const std::vector<Block>& blocks);
  void put_summary(uint64_t files_searched);

 private:
  class Walk;

  struct Counts {
    uint64_t lines = 0;
    uint64_t matches = 0;
  };

  uint64_t before_;
  uint64_t after_;
  Sink sink_;
  uint64_t files_ = 0;
  Counts total_;
};

}  // namespace zenfo::host
