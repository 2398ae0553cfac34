// A folder of this process for files that are of no use afterwards; gone with
// the object, with all that is in it. Only the user may read it.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#include "file_state.h"

namespace zenfo::cli {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    const std::string base =
        (std::filesystem::temp_directory_path() /
         ("zenfo-work-" + std::to_string(process_number()) + '-'))
            .string();
    for (int n = 0; folder_.empty(); ++n) {
      const std::string name = base + std::to_string(n);
      if (std::filesystem::create_directory(name)) folder_ = name;
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
    return (folder_ / name).string();
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace zenfo::cli
