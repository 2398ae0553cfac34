#include "shared/system/file_state.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "shared/system/paths.h"
#include "shared/system/system.h"

namespace zenfo::host {
namespace {

constexpr int64_t kNanoseconds = 1'000'000'000;
constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

int64_t modified_of(const struct stat& facts) {
  return facts.st_mtim.tv_sec * kNanoseconds + facts.st_mtim.tv_nsec;
}

}  // namespace

std::optional<FileFacts> facts_of(const std::string& path) {
  struct stat facts;
  if (stat(path.c_str(), &facts) != 0) return std::nullopt;
  return FileFacts{static_cast<uint64_t>(facts.st_size), modified_of(facts)};
}

int64_t unix_seconds(int64_t modified) {
  const int64_t before = modified % kNanoseconds < 0 ? 1 : 0;
  return modified / kNanoseconds - before;
}

std::optional<FileState> state_of(const std::string& path) {
  struct stat facts;
  if (stat(path.c_str(), &facts) != 0) return std::nullopt;
  return FileState{
      static_cast<uint64_t>(facts.st_size), modified_of(facts),
      std::to_string(facts.st_dev) + ':' + std::to_string(facts.st_ino),
      (facts.st_mode & kAnyWrite) == 0};
}

std::string complete_path(const std::string& path) {
  if (path.starts_with('/')) return path;
  return narrow(std::filesystem::absolute(to_path(path)));
}

// Remembers the last folder it resolved, as it was given, because files mostly
// come folder by folder. The program never changes its current folder.
std::string resolved_path(const std::string& path, bool is_link) {
  static std::string last_folder, last_resolved;
  namespace fs = std::filesystem;
  std::error_code error;
  if (is_link) {
    const fs::path whole = to_path(complete_path(path));
    const fs::path target = fs::canonical(whole, error);
    return error ? narrow(whole) : narrow(target);
  }
  const size_t name = path.rfind('/') + 1;  // 0 when there is no folder
  if (last_resolved.empty() || path.compare(0, name, last_folder) != 0) {
    const fs::path whole = to_path(complete_path(path));
    const fs::path target = fs::canonical(whole.parent_path(), error);
    if (error) return narrow(whole);
    last_folder = path.substr(0, name);
    last_resolved = narrow(target);
  }
  return narrow(to_path(last_resolved) / to_path(path.substr(name)));
}

std::string why_not_written(const std::string& path) {
  const int file =
      open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file >= 0) {
    close(file);
    return "";
  }
  switch (errno) {
    case ETXTBSY:
      return "it is running";
    case EPERM:
      return "the system lets nobody change it";
    default:
      return system::reason_of(static_cast<unsigned>(errno));
  }
}

bool set_modified(const std::string& path, int64_t modified) {
  timespec times[2] = {};
  times[0].tv_nsec = UTIME_OMIT;
  // Rounds down, so that the rest is never negative.
  const int64_t rest = (modified % kNanoseconds + kNanoseconds) % kNanoseconds;
  times[1].tv_sec = (modified - rest) / kNanoseconds;
  times[1].tv_nsec = rest;
  return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

bool is_read_only(const std::string& path) {
  const std::optional<FileState> state = state_of(path);
  return state && is_read_only(path, *state);
}

bool is_read_only(const std::string& path, const FileState& state) {
  return state.read_only || access(path.c_str(), W_OK) != 0;
}

bool set_read_only(const std::string& path, bool on) {
  struct stat facts;
  if (stat(path.c_str(), &facts) != 0) return false;
  const mode_t mode = facts.st_mode & 07777;
  return chmod(path.c_str(), on ? mode & ~mode_t{S_IWUSR} : mode | S_IWUSR) ==
         0;
}

uint32_t process_number() { return static_cast<uint32_t>(getpid()); }

}  // namespace zenfo::host
