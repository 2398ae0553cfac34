#include "shared/system/run_lock.h"

#include <windows.h>

#include <charconv>
#include <utility>

#include "shared/system/system.h"

namespace zenfo::host {
namespace {

// While a file is open without sharing, nobody else can open it.
HANDLE open_alone(const std::string& path) {
  return CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0,
                     nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool is_busy(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

int64_t boot_second() {
  FILETIME now;
  GetSystemTimeAsFileTime(&now);
  const uint64_t ticks = uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime;
  return static_cast<int64_t>(ticks / 10'000'000 - GetTickCount64() / 1000);
}

}  // namespace

RunLock::RunLock(RunLock&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)),
      path_(std::move(other.path_)) {}

RunLock& RunLock::operator=(RunLock&& other) noexcept {
  release();
  handle_ = std::exchange(other.handle_, nullptr);
  path_ = std::move(other.path_);
  return *this;
}

bool RunLock::take(const std::string& path) {
  release();
  const HANDLE handle = open_alone(path);
  if (handle == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    why_not_ = is_busy(error)
                   ? "is still going on"
                   : "its lock cannot be opened: " + system::reason_of(error);
    return false;
  }
  handle_ = handle;
  path_ = path;
  return true;
}

void RunLock::wait_for(const std::string& path) {
  while (!take(path) && is_busy(GetLastError())) Sleep(10);
}

void RunLock::release_for_good() {
  FILE_DISPOSITION_INFO gone{TRUE};
  if (handle_ != nullptr) {
    SetFileInformationByHandle(handle_, FileDispositionInfo, &gone,
                               sizeof gone);
  }
  release();
}

void RunLock::release() {
  if (handle_ != nullptr) CloseHandle(handle_);
  handle_ = nullptr;
}

std::string boot_name() { return std::to_string(boot_second()); }

// The tick count and the clock drift apart a little.
bool is_this_boot(std::string_view name) {
  constexpr int64_t kSlack = 60;
  int64_t second = 0;
  const auto end = name.data() + name.size();
  if (std::from_chars(name.data(), end, second).ptr != end) return false;
  const int64_t now = boot_second();
  return second - kSlack <= now && now <= second + kSlack;
}

bool flush_file(const std::string& path) {
  const HANDLE file =
      CreateFileA(path.c_str(), GENERIC_WRITE,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool flushed = FlushFileBuffers(file) != 0;
  CloseHandle(file);
  return flushed;
}

}  // namespace zenfo::host
