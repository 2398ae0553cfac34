// Files and folders as the operating system sees them. posix/system.cpp and
// win32/system.cpp are twins, of which the build takes one.
//
// Texts are narrow: the bytes of a path on Linux, UTF-8 on Windows (the
// program's manifest makes that the narrow character set). Reasons are short
// texts for people, without a full stop: "permission denied".
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zenfo::host::system {

#ifdef _WIN32
inline constexpr char kSeparator = '\\';
#else
inline constexpr char kSeparator = '/';
#endif

enum class PathKind { kNone, kFile, kFolder, kOther };

struct PathFacts {
  PathKind kind = PathKind::kNone;
  std::string reason;  // when kind is kNone
};

// The path as the system writes it: on Windows "/" becomes "\".
std::string own_form(std::string path);
// The length of the drive at the start of a path ("C:" gives 2); 0 on Linux.
size_t drive_length(std::string_view path);
// Describes an error number of the system.
std::string reason_of(unsigned error);
// Links are followed.
PathFacts look_at(const std::string& path);
// Why a folder cannot be listed; empty when it can.
std::string why_not_listed(const std::string& folder);
// The largest file that the library loads.
inline constexpr int64_t kLargestFile = INT32_MAX - 1;

// Why no file of this size can be loaded; empty when there is room for it.
std::string why_too_large(int64_t size);
// Why the library cannot load a file; empty when it can. Reads it all.
std::string why_not_loaded(const std::string& file);
// The same, or `unknown` when the system gives no reason.
inline std::string why_not_loaded(const std::string& file,
                                  std::string_view unknown) {
  std::string reason = why_not_loaded(file);
  if (reason.empty()) reason = unknown;
  return reason;
}

// A file that exists as long as this process runs; empty when none is known.
std::string known_file();

// Ends the process without running destructors.
[[noreturn]] void leave(int status);

}  // namespace zenfo::host::system
