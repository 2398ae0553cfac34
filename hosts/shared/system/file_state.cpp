#include "shared/system/file_state.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "shared/system/paths.h"

namespace zenfo::host {

bool is_link(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_symlink(to_path(path), error);
}

bool have_same_bytes(const std::string& a, const std::string& b) {
  std::error_code error;
  const auto size = std::filesystem::file_size(to_path(a), error);
  if (error || std::filesystem::file_size(to_path(b), error) != size || error) {
    return false;
  }
  std::ifstream first(to_path(a), std::ios::binary);
  std::ifstream second(to_path(b), std::ios::binary);
  std::vector<char> one(1 << 16), other(1 << 16);
  uint64_t left = size;
  while (left > 0) {
    const auto part =
        static_cast<std::streamsize>(std::min<uint64_t>(left, one.size()));
    if (!first.read(one.data(), part) || !second.read(other.data(), part) ||
        !std::equal(one.begin(), one.begin() + part, other.begin())) {
      return false;
    }
    left -= static_cast<uint64_t>(part);
  }
  return first.is_open() && second.is_open();
}

}  // namespace zenfo::host
