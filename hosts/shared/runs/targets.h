// The search before a change, and the files that are to be changed.
//
// Tested by tests/cli/posix_replace_test.cpp, tests/cli/replace_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "shared/runs/change_plan.h"
#include "shared/runs/skipped.h"
#include "shared/session/file_arguments.h"
#include "shared/session/search.h"
#include "shared/session/session.h"
#include "shared/system/file_state.h"
#include "shared/text/binary.h"

namespace zenfo::host {

// A file with matches that may be changed.
struct Target {
  std::string shown;  // as the user names it
  std::string path;   // complete, because an undo may start in any folder
  uint32_t matches = 0;
  FileState before;
};

class Targets {
 public:
  Targets(Session& session, const ChangePlan& plan, Skipped& skipped)
      : session_(session), plan_(plan), skipped_(skipped) {}

  // Runs the search over the files of the plan. Files with matches become
  // targets or are skipped.
  void find(Search& search);

  const std::vector<Target>& all() const { return targets_; }
  uint64_t matches() const;

 private:
  void choose(FileList& files);
  Session::Answer leave_unchanged(const FileList& files);
  void take_found(const FileList& files);
  void take(Target target);
  std::string why_not_taken(const Target& target);
  std::string why_not_text(const std::string& path);
  void name_rejected(const FileList& files);

  Session& session_;
  const ChangePlan& plan_;
  Skipped& skipped_;
  std::vector<Target> targets_;
  ZeroBytes zero_bytes_;
  std::unordered_set<std::string> identities_;
  std::unordered_set<std::string> named_;  // named by the user
  uint64_t links_ = 0;   // found in a folder; they may lead anywhere
  uint32_t next_ = 0;    // index of the file in hand in the list of files
  uint32_t passed_ = 0;  // selected files before it
};

}  // namespace zenfo::host
