#include "shared/system/system.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "shared/system/win32/handle.h"

namespace zenfo::host::system {
namespace {

// Reads to the end. Returns the error number, or 0.
DWORD try_to_read(HANDLE file) {
  std::array<char, 64 * 1024> part;
  for (DWORD size = 1; size > 0;) {
    if (!ReadFile(file, part.data(), static_cast<DWORD>(part.size()), &size,
                  nullptr)) {
      return GetLastError();
    }
  }
  return 0;
}

}  // namespace

std::string reason_of(unsigned error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_DIRECTORY:
      return "no such file or folder";
    case ERROR_ACCESS_DENIED:
      return "permission denied";
    case ERROR_SHARING_VIOLATION:
      return "in use by another program";
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
      return "nobody reads it any more";
    case ERROR_FILENAME_EXCED_RANGE:
      return "its path is too long";
    case ERROR_TOO_MANY_OPEN_FILES:
      return "too many open files";
    case ERROR_CRC:
    case ERROR_IO_DEVICE:
      return "the device cannot be read";
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return "not enough memory";
    case ERROR_DISK_FULL:
      return "the disk is full";
    default:
      return "system error " + std::to_string(error);
  }
}

std::string own_form(std::string path) {
  std::replace(path.begin(), path.end(), '/', kSeparator);
  return path;
}

size_t drive_length(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' ? 2 : 0;
}

PathFacts look_at(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    return {PathKind::kNone, reason_of(GetLastError())};
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return {PathKind::kFolder, ""};
  }
  if ((attributes & FILE_ATTRIBUTE_DEVICE) != 0) return {PathKind::kOther, ""};
  return {PathKind::kFile, ""};
}

std::string why_not_listed(const std::string& folder) {
  WIN32_FIND_DATAA found;
  const HANDLE listing = FindFirstFileA((folder + "\\*").c_str(), &found);
  if (listing != INVALID_HANDLE_VALUE) {
    FindClose(listing);
    return "";
  }
  const DWORD error = GetLastError();
  // An empty drive does not even contain ".".
  return error == ERROR_FILE_NOT_FOUND ? "" : reason_of(error);
}

std::string why_not_loaded(const std::string& file) {
  const Handle handle(
      CreateFileA(file.c_str(), GENERIC_READ,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size;
  if (!handle.valid() || !GetFileSizeEx(handle.get(), &size)) {
    return reason_of(GetLastError());
  }
  std::string reason = why_too_large(size.QuadPart);
  if (!reason.empty()) return reason;
  const DWORD error = try_to_read(handle.get());
  return error == 0 ? "" : reason_of(error);
}

std::string known_file() {
  char path[MAX_PATH + 1];
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  return length < sizeof path ? std::string(path, length) : "";
}

void leave(int status) {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  for (;;) Sleep(INFINITE);
}

}  // namespace zenfo::host::system
