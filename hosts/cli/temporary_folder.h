// A folder of this process for files that are of no use afterwards; gone with
// the object, with all that is in it. Only the user may read it.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include "file_state.h"
#include "paths.h"

namespace zenfo::cli {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    const std::string name =
        "zenfo-work-" + std::to_string(process_number()) + '-';
    for (int n = 0; folder_.empty(); ++n) {
      const auto folder = base / to_path(name + std::to_string(n));
      if (std::filesystem::create_directory(folder)) folder_ = folder;
    }
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string file(const std::string& name) const {
    return narrow(folder_ / to_path(name));
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace zenfo::cli
