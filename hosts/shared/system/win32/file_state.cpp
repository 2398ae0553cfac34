#include "shared/system/file_state.h"

#include <windows.h>

#include <filesystem>
#include <system_error>

#include "shared/system/paths.h"
#include "shared/system/system.h"
#include "shared/system/win32/handle.h"

namespace zenfo::host {
namespace {

HANDLE open_to(const std::string& path, DWORD access) {
  return CreateFileA(path.c_str(), access,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                     nullptr);
}

uint64_t joined(DWORD high, DWORD low) { return uint64_t{high} << 32 | low; }

int64_t joined(const FILETIME& time) {
  return static_cast<int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime));
}

}  // namespace

std::optional<FileFacts> facts_of(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA facts;
  if (!GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &facts)) {
    return std::nullopt;
  }
  return FileFacts{joined(facts.nFileSizeHigh, facts.nFileSizeLow),
                   joined(facts.ftLastWriteTime)};
}

int64_t unix_seconds(int64_t modified) {
  constexpr int64_t kFrom1601To1970 = 11'644'473'600;
  return modified / kModifiedPerSecond - kFrom1601To1970;
}

std::optional<FileState> state_of(const std::string& path) {
  const Handle file(open_to(path, FILE_READ_ATTRIBUTES));
  BY_HANDLE_FILE_INFORMATION facts;
  if (!file.valid() || !GetFileInformationByHandle(file.get(), &facts)) {
    return std::nullopt;
  }
  return FileState{
      joined(facts.nFileSizeHigh, facts.nFileSizeLow),
      joined(facts.ftLastWriteTime),
      std::to_string(facts.dwVolumeSerialNumber) + ':' +
          std::to_string(joined(facts.nFileIndexHigh, facts.nFileIndexLow)),
      (facts.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0};
}

std::string complete_path(const std::string& path) {
  return narrow(std::filesystem::absolute(to_path(path)));
}

// Only the file itself is checked for a link, as in the library.
std::string resolved_path(const std::string& path, bool is_link) {
  std::error_code error;
  const std::string whole = complete_path(path);
  if (!is_link) return whole;
  const auto target = std::filesystem::canonical(to_path(whole), error);
  return error ? whole : narrow(target);
}

std::string why_not_written(const std::string& path) {
  const HANDLE file = CreateFileA(
      path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION ? "it is open in another program"
                                            : system::reason_of(error);
  }
  CloseHandle(file);
  return "";
}

bool set_modified(const std::string& path, int64_t modified) {
  const Handle file(open_to(path, FILE_WRITE_ATTRIBUTES));
  const auto time = static_cast<uint64_t>(modified);
  const FILETIME written = {static_cast<DWORD>(time),
                            static_cast<DWORD>(time >> 32)};
  return file.valid() &&
         SetFileTime(file.get(), nullptr, nullptr, &written) != 0;
}

bool is_read_only(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

bool is_read_only(const std::string&, const FileState& state) {
  return state.read_only;
}

bool set_read_only(const std::string& path, bool on) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  constexpr DWORD kMark = FILE_ATTRIBUTE_READONLY;
  return attributes != INVALID_FILE_ATTRIBUTES &&
         SetFileAttributesA(path.c_str(),
                            on ? attributes | kMark : attributes & ~kMark) != 0;
}

uint32_t process_number() { return GetCurrentProcessId(); }

}  // namespace zenfo::host
