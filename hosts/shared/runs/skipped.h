// Files with matches that stay unchanged, counted by reason.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "shared/frame/messages.h"

namespace zenfo::host {

class Skipped {
 public:
  explicit Skipped(Messages& messages) : messages_(messages) {}

  void complain_of(std::string_view path, const std::string& reason);
  // Files that need not be named one by one.
  void complain_of_more(uint64_t files, const std::string& reason);
  uint64_t count() const { return count_; }
  // "3 files skipped (1: binary; 2: read-only)".
  std::string summary() const;

 private:
  Messages& messages_;
  std::map<std::string, uint64_t> reasons_;
  uint64_t count_ = 0;
};

}  // namespace zenfo::host
