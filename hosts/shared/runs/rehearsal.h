// A change made to copies of the files, to show what the real one would do.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "shared/runs/change_plan.h"
#include "shared/runs/targets.h"
#include "shared/session/session.h"

namespace zenfo::host {

class Rehearsal {
 public:
  Rehearsal(Session& session, const std::vector<Target>& targets)
      : session_(session), targets_(targets) {}

  // Copies the files and changes the copies. Returns the number of matches that
  // were changed; throws Failure or Stopped.
  uint32_t run(const ChangePlan& plan, const Change& change);
  // Call after run(): visits every file and returns how many differ from their
  // copies.
  using Visit = std::function<void(
      const Target& target, std::string_view before, std::string_view after)>;
  uint64_t compare(const Visit& visit);

 private:
  void copy_files();

  Session& session_;
  const std::vector<Target>& targets_;
  std::vector<std::string> copies_;
};

}  // namespace zenfo::host
