#define _CRT_RAND_S
#include "shared/system/temporary_folder.h"

#include <stdlib.h>
#include <windows.h>

#include <iterator>
#include <string>
#include <string_view>

#include "shared/frame/failure.h"
#include "shared/system/paths.h"

namespace zenfo::host::temporary_folder {
namespace {

constexpr wchar_t kPrefix[] = L"zenfo-";
constexpr size_t kUnknownPart = 16;
// Open without sharing as long as the process lives.
constexpr wchar_t kLock[] = L"zenfo.lock";

// The thread that handles Ctrl-C removes the folder, too.
std::wstring path;
HANDLE held = INVALID_HANDLE_VALUE;
unsigned files_made = 0;

// The user's folder for temporary files, which others may not enter. It ends in
// a backslash.
std::wstring parent() {
  wchar_t name[MAX_PATH + 2] = L"";
  const DWORD length = GetTempPathW(MAX_PATH + 2, name);
  return std::wstring(name, length <= MAX_PATH + 1 ? length : 0);
}

std::wstring unknown_part() {
  constexpr wchar_t kDigits[] = L"0123456789abcdef";
  std::wstring text;
  while (text.size() < kUnknownPart) {
    unsigned number = 0;
    if (rand_s(&number) != 0) return L"";
    for (int i = 0; i < 8; ++i, number >>= 4) text += kDigits[number & 15];
  }
  return text;
}

// Visits the names in a folder that match a pattern.
template <class Visit>
void for_each_name(const std::wstring& pattern, Visit visit) {
  WIN32_FIND_DATAW found;
  const HANDLE listing = FindFirstFileW(pattern.c_str(), &found);
  if (listing == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring_view name = found.cFileName;
    if (name != L"." && name != L"..") visit(name, found.dwFileAttributes);
  } while (FindNextFileW(listing, &found));
  FindClose(listing);
}

// The lock is deleted last, so that the next process finds what cannot be
// removed now.
void remove_all(const std::wstring& folder, HANDLE lock) {
  bool empty = true;
  for_each_name(folder + L"\\*", [&](std::wstring_view name, DWORD) {
    if (name == kLock) return;
    empty &= DeleteFileW((folder + L'\\').append(name).c_str()) != 0;
  });
  CloseHandle(lock);
  if (!empty) return;
  DeleteFileW((folder + L'\\' + kLock).c_str());
  RemoveDirectoryW(folder.c_str());
}

HANDLE open_lock(const std::wstring& folder, DWORD how) {
  return CreateFileW((folder + L'\\' + kLock).c_str(), GENERIC_WRITE, 0,
                     nullptr, how, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// If the lock can be opened, its process has ended.
void remove_if_left_behind(const std::wstring& folder) {
  const HANDLE lock = open_lock(folder, OPEN_EXISTING);
  if (lock != INVALID_HANDLE_VALUE) {
    remove_all(folder, lock);
  } else if (GetLastError() == ERROR_FILE_NOT_FOUND) {
    RemoveDirectoryW(folder.c_str());  // if it is empty
  }
}

void remove_left_behind(const std::wstring& in) {
  constexpr size_t kLength = std::size(kPrefix) - 1 + kUnknownPart;
  const auto visit = [&](std::wstring_view name, DWORD attributes) {
    const bool folder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
                        (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
    if (folder && name.size() == kLength) {
      remove_if_left_behind(std::wstring(in).append(name));
    }
  };
  for_each_name(in + kPrefix + L"*", visit);
}

// Another process may remove a folder without a lock.
void make_one(const std::wstring& in) {
  const std::wstring part = unknown_part();
  if (part.empty()) return;
  path = in + kPrefix + part;
  if (CreateDirectoryW(path.c_str(), nullptr)) {
    held = open_lock(path, CREATE_NEW);
  }
}

void make() {
  const std::wstring in = parent();
  remove_left_behind(in);
  constexpr int kTries = 8;
  for (int i = 0; i < kTries && held == INVALID_HANDLE_VALUE; ++i) make_one(in);
  if (held == INVALID_HANDLE_VALUE) {
    throw Failure{"",
                  "cannot create a folder for temporary files: system error " +
                      std::to_string(GetLastError())};
  }
}

}  // namespace

std::string make_file() {
  if (held == INVALID_HANDLE_VALUE) make();
  const std::wstring file = path + L'\\' + std::to_wstring(files_made++);
  const HANDLE made = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr,
                                  CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (made == INVALID_HANDLE_VALUE) {
    throw Failure{narrow(file),
                  "system error " + std::to_string(GetLastError())};
  }
  CloseHandle(made);
  return narrow(file);
}

void remove() {
  if (held == INVALID_HANDLE_VALUE) return;
  remove_all(path, held);
  held = INVALID_HANDLE_VALUE;
}

}  // namespace zenfo::host::temporary_folder
