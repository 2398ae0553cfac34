// What the host itself finds out about a file: its state after a run, whether
// two names mean the same file, and its modification time.
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
  int64_t modified = 0;    // in the unit and from the epoch of the system
  std::string identity;    // the same for all names of a file
  bool read_only = false;  // has the read-only mark

  bool operator==(const FileState&) const = default;
};

struct FileFacts {
  uint64_t size = 0;
  int64_t modified = 0;  // as in FileState

  bool operator==(const FileFacts&) const = default;
};

// No value when the file does not exist. Does not open it, so that it is cheap
// enough for each of very many files.
std::optional<FileFacts> facts_of(const std::string& path);
// A time of modification in seconds from 1970 on.
int64_t unix_seconds(int64_t modified);

// No value when the file does not exist or cannot be examined.
std::optional<FileState> state_of(const std::string& path);
// The absolute path.
std::string complete_path(const std::string& path);
bool is_link(const std::string& path);
// The complete path with links resolved, as far as it exists. The last
// component is only resolved if `is_link`.
std::string resolved_path(const std::string& path, bool is_link);
// Why a file that is not read-only still cannot be written; empty when it can.
// Does not write to it.
std::string why_not_written(const std::string& path);
// Also false when one of them cannot be read.
bool have_same_bytes(const std::string& a, const std::string& b);
// False when the time cannot be set.
bool set_modified(const std::string& path, int64_t modified);
// Whether the file has the read-only mark. Missing rights of other kinds show
// only when it is written.
bool is_read_only(const std::string& path);
// The same for a file whose state is already known.
bool is_read_only(const std::string& path, const FileState& state);
// False when the mark cannot be changed.
bool set_read_only(const std::string& path, bool on);
// A number that no other running process has.
uint32_t process_number();

// Removes the read-only mark from a file as long as this object lives.
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
