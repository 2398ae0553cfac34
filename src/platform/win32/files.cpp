// Files by name: their facts, whether they exist, copying, deleting, creating
// folders.
//
// Tested by tests/unit/platform/files_test.cpp,
// tests/unit/platform/copy_test.cpp,
// tests/unit/platform/win32_files_test.cpp
#include "platform/files.h"

#include <cstring>

#include "platform/win32/system.h"
#include "platform/win32/version.h"

namespace zenfo::platform {
namespace {

static_assert(kAttributeReadOnly == FILE_ATTRIBUTE_READONLY);
static_assert(kAttributeHidden == FILE_ATTRIBUTE_HIDDEN);
static_assert(kAttributeSystem == FILE_ATTRIBUTE_SYSTEM);
static_assert(kAttributeDirectory == FILE_ATTRIBUTE_DIRECTORY);
static_assert(kAttributeArchive == FILE_ATTRIBUTE_ARCHIVE);
static_assert(kAttributeNormal == FILE_ATTRIBUTE_NORMAL);
static_assert(kAttributeCompressed == FILE_ATTRIBUTE_COMPRESSED);

uint64_t to_number(const FILETIME& time) {
  return joined(time.dwHighDateTime, time.dwLowDateTime);
}

bool read_attribute_data(const char* path, WIN32_FILE_ATTRIBUTE_DATA& data) {
  return GetFileAttributesExA(path, GetFileExInfoStandard, &data) != 0;
}

// Removes attributes from a file. Returns all attributes that it had; 0 when it
// had none of these or they could not be removed.
DWORD take_off(const char* path, DWORD marks) {
  const DWORD before = GetFileAttributesA(path);
  if (before == INVALID_FILE_ATTRIBUTES || (before & marks) == 0) return 0;
  const DWORD rest = (before & ~marks) | FILE_ATTRIBUTE_NORMAL;
  return SetFileAttributesA(path, rest) ? before : 0;
}

}  // namespace

// The system resolves a full path as fast as any other.
struct NearbyFolder::State {};
NearbyFolder::NearbyFolder() = default;
NearbyFolder::~NearbyFolder() = default;

bool read_file_facts(const char* path, FileFacts& facts, NearbyFolder*) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!read_attribute_data(path, data)) return false;
  facts.attributes = data.dwFileAttributes;
  facts.size = joined(data.nFileSizeHigh, data.nFileSizeLow);
  facts.creation_time = to_number(data.ftCreationTime);
  facts.access_time = to_number(data.ftLastAccessTime);
  facts.write_time = to_number(data.ftLastWriteTime);
  return true;
}

// Asking for attributes alone hinders nobody, and nobody can hinder it.
bool read_stamp(const char* path, FileStamp& stamp, NearbyFolder*) {
  constexpr DWORD kAnybody =
      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file =
      CreateFileA(path, FILE_READ_ATTRIBUTES, kAnybody, nullptr, OPEN_EXISTING,
                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  stamp = {};
  const bool known =
      GetFileType(file) == FILE_TYPE_DISK && read_version(file, stamp.version);
  CloseHandle(file);
  return known;
}

// Times are written late here: no stamp is settled.
bool has_stamp(const char*, const FileStamp&, NearbyFolder*) { return false; }

bool is_file(const char* path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return read_attribute_data(path, data) &&
         (data.dwFileAttributes & kAttributeDirectory) == 0;
}

bool is_folder(const char* path) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return read_attribute_data(path, data) &&
         (data.dwFileAttributes & kAttributeDirectory) != 0;
}

bool exists(const char* path) {
  if (std::strpbrk(path, "*?") != nullptr) return false;
  WIN32_FIND_DATAA found;
  const HANDLE query = FindFirstFileA(path, &found);
  if (query == INVALID_HANDLE_VALUE) return false;
  FindClose(query);
  return true;
}

// The system itself refuses to overwrite a hidden or system file.
bool copy_file(const char* from, const char* to, FileVersion* version) {
  InputFile source;
  if (version != nullptr && (!source.open(from) || !source.version(*version))) {
    return false;
  }
  if (CopyFileA(from, to, FALSE)) return true;
  if (GetLastError() != ERROR_ACCESS_DENIED) return false;
  constexpr DWORD kMarks = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  const DWORD before = take_off(to, kMarks);
  if (before == 0) return false;
  if (CopyFileA(from, to, FALSE)) return true;
  SetFileAttributesA(to, before);
  return false;
}

void copy_rights(const char* from, const char* to) {
  const DWORD attributes = GetFileAttributesA(from);
  if (attributes != INVALID_FILE_ATTRIBUTES) SetFileAttributesA(to, attributes);
}

bool delete_file(const char* path) { return DeleteFileA(path) != 0; }

bool clear_read_only(const char* path) {
  return take_off(path, FILE_ATTRIBUTE_READONLY) != 0;
}

bool cut_file(const char* path, uint64_t size) {
  const HANDLE file =
      CreateFileA(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  LARGE_INTEGER end;
  end.QuadPart = static_cast<LONGLONG>(size);
  const bool cut = SetFilePointerEx(file, end, nullptr, FILE_BEGIN) != 0 &&
                   SetEndOfFile(file) != 0;
  CloseHandle(file);
  return cut;
}

bool replace_file(const char* from, const char* to) {
  return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING) != 0;
}

bool create_folder(const char* path) {
  return CreateDirectoryA(path, nullptr) != 0;
}

}  // namespace zenfo::platform
