// What the host knows of a file apart from the library: how it stood after a
// run, whether two names mean the same file, and its modification time.
//
// posix/file_state.cpp and win32/file_state.cpp are twins. Links are followed.
//
// Tested by tests/cli/posix_replace_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zenfo::host {

#ifdef _WIN32
inline constexpr int64_t kModifiedPerSecond = 10'000'000;
#else
inline constexpr int64_t kModifiedPerSecond = 1'000'000'000;
#endif

struct FileState {
  uint64_t size = 0;
  int64_t modified = 0;    // in the system's own unit and from its own start
  std::string identity;    // the same for all names of a file
  bool read_only = false;  // marked as not to be written

  bool operator==(const FileState&) const = default;
};

// None when there is no such file or nothing can be learnt of it.
std::optional<FileState> state_of(const std::string& path);
// The path from the root, good from any folder.
std::string complete_path(const std::string& path);
bool is_link(const std::string& path);
// The complete path without links on its way, so far as it exists. Only what is
// a link is asked where it leads.
std::string resolved_path(const std::string& path, bool is_link);
// Why a file cannot be written, though it is not read-only: empty when it can.
// Nothing is written.
std::string why_not_written(const std::string& path);
// False, too, when one of them cannot be read.
bool have_same_bytes(const std::string& a, const std::string& b);
// False when the time cannot be set.
bool set_modified(const std::string& path, int64_t modified);
// Marked as not to be written. Rights that come from elsewhere show when it is
// written.
bool is_read_only(const std::string& path);
// The same for a file whose state was just asked.
bool is_read_only(const std::string& path, const FileState& state);
// False when the mark cannot be changed.
bool set_read_only(const std::string& path, bool on);
// Tells this process apart from others that run now.
uint32_t process_number();

// Takes the mark off a file as long as this object lives.
class WriteAccess {
 public:
  explicit WriteAccess(const std::string& path)
      : path_(path),
        lifted_(is_read_only(path) && set_read_only(path, false)) {}
  ~WriteAccess() {
    if (lifted_) set_read_only(path_, true);
  }
  WriteAccess(const WriteAccess&) = delete;
  WriteAccess& operator=(const WriteAccess&) = delete;

 private:
  std::string path_;
  bool lifted_;
};

}  // namespace zenfo::host
