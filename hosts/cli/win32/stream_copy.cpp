#include "stream_copy.h"

#include <windows.h>

#include <cstdint>

#include "paths.h"

namespace zenfo::cli {
namespace {

// The library loads no larger file.
constexpr int64_t kMost = INT32_MAX - 1;

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (valid()) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

std::string last_error() {
  return "system error " + std::to_string(GetLastError());
}

HANDLE open(const std::string& path, DWORD access, DWORD how) {
  return CreateFileW(to_path(path).c_str(), access,
                     FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, how,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

std::string copy(HANDLE from, const std::string& path) {
  const Handle to(open(path, GENERIC_WRITE, TRUNCATE_EXISTING));
  if (!to.valid()) return last_error();
  int64_t copied = 0;
  char bytes[64 * 1024];
  for (;;) {
    DWORD size = 0;
    if (!ReadFile(from, bytes, sizeof bytes, &size, nullptr)) {
      // The end of a pipe.
      return GetLastError() == ERROR_BROKEN_PIPE ? "" : last_error();
    }
    if (size == 0) return "";
    copied += size;
    if (copied > kMost) return "too large to be loaded";
    DWORD written = 0;
    if (!WriteFile(to.get(), bytes, size, &written, nullptr)) {
      return "cannot be kept in a temporary file: " + last_error();
    }
  }
}

}  // namespace

std::string copy_standard_input(const std::string& to) {
  return copy(GetStdHandle(STD_INPUT_HANDLE), to);
}

std::string copy_stream(const std::string& from, const std::string& to) {
  const Handle file(open(from, GENERIC_READ, OPEN_EXISTING));
  return file.valid() ? copy(file.get(), to) : last_error();
}

}  // namespace zenfo::cli
