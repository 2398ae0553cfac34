// Reading and writing open files on bare handles, shared with readers and
// writers as C streams are.
//
// Tested by tests/unit/platform/streams_test.cpp,
// tests/unit/platform/win32_files_test.cpp
#include <algorithm>

#include "platform/files.h"
#include "platform/win32/system.h"
#include "platform/win32/version.h"

namespace zenfo::platform {
namespace {

constexpr size_t kMostPerCall = size_t{1} << 30;
constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE;

HANDLE to_handle(intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

intptr_t to_number(HANDLE handle) { return reinterpret_cast<intptr_t>(handle); }

struct Access {
  DWORD rights;
  DWORD disposition;
};

constexpr Access access_of(OutputMode mode) {
  switch (mode) {
    case OutputMode::kTruncate:
      return {GENERIC_WRITE, CREATE_ALWAYS};
    case OutputMode::kAppend:
      return {FILE_APPEND_DATA, OPEN_ALWAYS};
    case OutputMode::kOverwrite:
      break;
  }
  return {GENERIC_WRITE, OPEN_ALWAYS};
}

constexpr DWORD kBehindContent = 0x40000000;  // the high half of an offset

// Locks one byte far beyond any content, which hinders only other runs. The
// lock ends with the handle. False when another run holds it.
bool lock(HANDLE file) {
  OVERLAPPED place{};
  place.OffsetHigh = kBehindContent;
  return LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY,
                    0, 1, 0, &place) != 0 ||
         GetLastError() != ERROR_LOCK_VIOLATION;
}

// Whether another program has locked part of the content: then the file could
// be cut but not written.
bool is_locked(HANDLE file) {
  if (LockFile(file, 0, 0, 0, kBehindContent)) {
    UnlockFile(file, 0, 0, 0, kBehindContent);
    return false;
  }
  return GetLastError() == ERROR_LOCK_VIOLATION;
}

// A file that is mapped by another program can be written, but not cut. So it
// is cut first: false leaves it as it was. CREATE_ALWAYS would do the same, but
// it refuses hidden files.
bool empty(HANDLE file) { return !is_locked(file) && SetEndOfFile(file) != 0; }

}  // namespace

bool InputFile::open(const char* path, NearbyFolder*) {
  close();
  const HANDLE file =
      CreateFileA(path, GENERIC_READ, kShared, nullptr, OPEN_EXISTING,
                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  if (GetFileType(file) != FILE_TYPE_DISK) {  // reading a pipe would wait
    CloseHandle(file);
    return false;
  }
  handle_ = to_number(file);
  return true;
}

bool InputFile::open_without_links(const char* path) {
  WIN32_FIND_DATAA found;
  const HANDLE query = FindFirstFileA(path, &found);
  if (query == INVALID_HANDLE_VALUE) return false;
  FindClose(query);
  const bool link =
      (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
      found.dwReserved0 == IO_REPARSE_TAG_SYMLINK;
  return !link && open(path, nullptr);
}

bool InputFile::open_ordinary(const char* path, uint64_t largest,
                              FileStamp& stamp, NearbyFolder* nearby) {
  stamp = {};
  if (open(path, nearby) && version(stamp.version) &&
      stamp.version.size <= largest) {
    return true;
  }
  close();
  return false;
}

int64_t InputFile::read(void* buffer, size_t size) {
  size_t done = 0;
  while (done < size) {
    const auto part = static_cast<DWORD>(std::min(size - done, kMostPerCall));
    DWORD count = 0;
    if (!ReadFile(to_handle(handle_), static_cast<char*>(buffer) + done, part,
                  &count, nullptr)) {
      return -1;
    }
    done += count;
    if (count < part) break;
  }
  return static_cast<int64_t>(done);
}

int64_t InputFile::size() {
  LARGE_INTEGER size;
  if (!GetFileSizeEx(to_handle(handle_), &size)) return -1;
  return size.QuadPart;
}

bool InputFile::version(FileVersion& version) const {
  return read_version(to_handle(handle_), version);
}

void InputFile::close() {
  if (is_open()) CloseHandle(to_handle(handle_));
  handle_ = kNone;
}

bool OutputFile::open(const char* path, OutputMode mode) {
  close();
  const Access access = access_of(mode);
  const HANDLE file =
      CreateFileA(path, access.rights, kShared, nullptr, access.disposition,
                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  if (mode == OutputMode::kOverwrite && !empty(file)) {
    CloseHandle(file);
    return false;
  }
  handle_ = to_number(file);
  return true;
}

Opened OutputFile::open_unchanged(const char* path,
                                  const FileVersion& expected) {
  close();
  const HANDLE file =
      CreateFileA(path, GENERIC_READ | GENERIC_WRITE, kShared, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return GetLastError() == ERROR_FILE_NOT_FOUND ? Opened::kChanged
                                                  : Opened::kFailed;
  }
  handle_ = to_number(file);
  FileVersion now;
  Opened opened = Opened::kOpen;
  if (!lock(file) || !read_version(file, now) || now != expected) {
    opened = Opened::kChanged;
  } else if (!empty(file)) {
    opened = Opened::kFailed;
  }
  if (opened != Opened::kOpen) close();
  return opened;
}

bool OutputFile::write(const void* data, size_t size) {
  const char* rest = static_cast<const char*>(data);
  while (size > 0) {
    const auto part = static_cast<DWORD>(std::min(size, kMostPerCall));
    DWORD count = 0;
    if (!WriteFile(to_handle(handle_), rest, part, &count, nullptr) ||
        count == 0) {
      return false;
    }
    rest += count;
    size -= count;
  }
  return true;
}

// Every file already ends after what was written: it was empty, or is appended
// to.
bool OutputFile::set_end() { return is_open(); }

bool OutputFile::close() {
  if (!is_open()) return true;
  const bool closed = CloseHandle(to_handle(handle_)) != 0;
  handle_ = kNone;
  return closed;
}

}  // namespace zenfo::platform
