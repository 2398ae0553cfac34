// A folder of its own for one test, deleted with everything in it at the end.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace zenfo::test {

class ScratchFolder {
 public:
  ScratchFolder() {
    static std::atomic<unsigned> last{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    folder_ = std::filesystem::temp_directory_path() /
              ("zenfo-test-" + std::to_string(now.count()) + "-" +
               std::to_string(++last));
    std::filesystem::create_directories(folder_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string path() const { return folder_.string(); }
  std::string path(std::string_view name) const {
    return folder_.string() + platform::kPathSeparator + std::string(name);
  }

  // Both answer the full path.
  std::string write(std::string_view name, std::string_view bytes) const {
    const std::string full = path(name);
    std::ofstream(full, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return full;
  }
  std::string make_folder(std::string_view name) const {
    std::filesystem::create_directory(path(name));
    return path(name);
  }

 private:
  std::filesystem::path folder_;
};

inline std::string read_bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace zenfo::test
