// Walks through a folder and all folders below it and notes those that cannot
// be listed. Each system's folder_check.cpp says how a folder is listed.
//
// Tested by tests/cli/posix_command_test.cpp, tests/cli/files_test.cpp
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "shared/system/folder_check.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"

namespace zenfo::host {

class FolderWalk {
 public:
  explicit FolderWalk(const FolderTest& enters) : enters_(enters) {}
  virtual ~FolderWalk() = default;
  FolderWalk(const FolderWalk&) = delete;
  FolderWalk& operator=(const FolderWalk&) = delete;

  std::vector<UnlistedFolder> run(const std::string& folder) {
    enter(folder);
    while (!pending_.empty() && system::stop_status() == 0) {
      const std::string path = std::move(pending_.back());
      pending_.pop_back();
      list(path);
    }
    return std::move(unlisted_);
  }

 protected:
  // Enters the folders in this one, or notes an error.
  virtual void list(const std::string& path) = 0;

  bool enters(std::string_view name) const { return enters_(name); }
  void enter(std::string path) { pending_.push_back(std::move(path)); }
  void note(const std::string& path, unsigned error) {
    unlisted_.push_back({path, system::reason_of(error)});
  }

 private:
  const FolderTest& enters_;
  std::vector<std::string> pending_;
  std::vector<UnlistedFolder> unlisted_;
};

}  // namespace zenfo::host
