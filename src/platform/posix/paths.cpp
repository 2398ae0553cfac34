// Paths as the system resolves them: roots, the working folder, equal names.
//
// Tested by tests/unit/platform/paths_test.cpp,
// tests/unit/platform/posix_paths_test.cpp
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files.h"
#include "platform/path_text.h"

namespace zenfo::platform {

bool is_root_folder(std::string_view folder) {
  if (is_root_text(folder, PathStyle::kPosix)) return true;
  // "/tmp/.." and a link to "/" are the root as well.
  struct stat root;
  struct stat named;
  return stat("/", &root) == 0 &&
         stat(std::string(folder).c_str(), &named) == 0 &&
         root.st_dev == named.st_dev && root.st_ino == named.st_ino;
}

std::string absolute_path(const char* path) {
  if (path[0] == '\0' || path[0] == '/') return path;
  const std::unique_ptr<char, decltype(&free)> working_folder(
      getcwd(nullptr, 0), &free);
  if (!working_folder) return path;
  std::string absolute = working_folder.get();
  if (absolute.back() != '/') absolute += '/';
  return absolute + path;
}

bool same_path(std::string_view a, std::string_view b) {
  return a == b ||
         plain_path(a, PathStyle::kPosix) == plain_path(b, PathStyle::kPosix);
}

std::string file_key(const char* path) {
  struct stat facts;
  if (stat(path, &facts) != 0) {
    return plain_path(absolute_path(path), PathStyle::kPosix);
  }
  return std::to_string(facts.st_dev) + ':' + std::to_string(facts.st_ino);
}

bool names_same_file(const char* a, const char* b) {
  struct stat first;
  struct stat second;
  return stat(a, &first) == 0 && stat(b, &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace zenfo::platform
