#include "shared/system/system.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace zenfo::host::system {
namespace {

// Reads to the end. Returns the error number, or 0.
int try_to_read(int number) {
  std::array<char, 64 * 1024> part;
  for (;;) {
    const ssize_t size = read(number, part.data(), part.size());
    if (size == 0) return 0;
    if (size < 0 && errno != EINTR) return errno;
  }
}

std::string reason_against(int number) {
  struct stat facts;
  if (fstat(number, &facts) != 0) {
    return reason_of(static_cast<unsigned>(errno));
  }
  if (S_ISDIR(facts.st_mode)) return "is a folder";
  if (!S_ISREG(facts.st_mode)) return "is not an ordinary file";
  std::string reason = why_too_large(facts.st_size);
  if (!reason.empty()) return reason;
  const int error = try_to_read(number);
  return error == 0 ? "" : reason_of(static_cast<unsigned>(error));
}

}  // namespace

std::string reason_of(unsigned error) {
  switch (static_cast<int>(error)) {
    case ENOENT:
    case ENOTDIR:
      return "no such file or folder";
    case EACCES:
    case EPERM:
      return "permission denied";
    case ENAMETOOLONG:
      return "its path is too long";
    default:
      return std::strerror(static_cast<int>(error));
  }
}

std::string own_form(std::string path) { return path; }

size_t drive_length(std::string_view) { return 0; }

PathFacts look_at(const std::string& path) {
  struct stat facts;
  if (stat(path.c_str(), &facts) != 0) {
    return {PathKind::kNone, reason_of(errno)};
  }
  if (S_ISDIR(facts.st_mode)) return {PathKind::kFolder, ""};
  if (S_ISREG(facts.st_mode)) return {PathKind::kFile, ""};
  return {PathKind::kOther, ""};
}

std::string why_not_listed(const std::string& folder) {
  DIR* listing = opendir(folder.c_str());
  if (listing == nullptr) return reason_of(errno);
  closedir(listing);
  return "";
}

std::string why_not_loaded(const std::string& file) {
  const int number =
      open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (number < 0) return reason_of(static_cast<unsigned>(errno));
  std::string reason = reason_against(number);
  close(number);
  return reason;
}

std::string known_file() { return "/proc/self/exe"; }

void leave(int status) { _exit(status); }

}  // namespace zenfo::host::system
