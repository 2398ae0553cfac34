// Paths as the system resolves them: roots, the working folder, equal names.
//
// Tested by tests/unit/platform/paths_test.cpp,
// tests/unit/platform/win32_files_test.cpp
#include <algorithm>

#include "platform/files.h"
#include "platform/path_text.h"
#include "platform/win32/system.h"

namespace zenfo::platform {
namespace {

bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x80;
  });
}

bool same_folded(std::string_view a, std::string_view b) {
  const auto fold = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return fold(x) == fold(y); });
}

std::wstring widened(const std::string& text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');  // never longer than its bytes
  wide.resize(
      MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size));
  return wide;
}

// Volume and file number; empty when the system does not say.
std::string identity(const char* path) {
  const HANDLE file =
      CreateFileA(path, FILE_READ_ATTRIBUTES,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION facts;
  const bool told = GetFileInformationByHandle(file, &facts) != 0;
  CloseHandle(file);
  // Some network drives number no files.
  if (!told || (facts.nFileIndexHigh | facts.nFileIndexLow) == 0) return {};
  return std::to_string(facts.dwVolumeSerialNumber) + ':' +
         std::to_string(facts.nFileIndexHigh) + ':' +
         std::to_string(facts.nFileIndexLow);
}

// As the file system does: by capital letters, whatever the language.
bool same_to_system(const std::string& a, const std::string& b) {
  const std::wstring x = widened(a);
  const std::wstring y = widened(b);
  return CompareStringOrdinal(x.data(), static_cast<int>(x.size()), y.data(),
                              static_cast<int>(y.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace

bool is_root_folder(std::string_view folder) {
  if (is_root_text(folder, PathStyle::kWindows)) return true;
  // "C:\folder\.." is the root as well.
  return is_root_text(absolute_path(std::string(folder).c_str()),
                      PathStyle::kWindows);
}

std::string absolute_path(const char* path) {
  std::string absolute(MAX_PATH, '\0');
  for (;;) {
    const auto room = static_cast<DWORD>(absolute.size());
    const DWORD length = GetFullPathNameA(path, room, absolute.data(), nullptr);
    if (length == 0) return path;
    absolute.resize(length);
    if (length < room) return absolute;
  }
}

bool same_path(std::string_view a, std::string_view b) {
  if (a == b) return true;
  const std::string x = plain_path(a, PathStyle::kWindows);
  const std::string y = plain_path(b, PathStyle::kWindows);
  if (is_ascii(x) && is_ascii(y)) return same_folded(x, y);
  return same_to_system(x, y);
}

std::string file_key(const char* path) {
  const std::string key = identity(path);
  if (!key.empty()) return key;
  std::wstring wide =
      widened(plain_path(absolute_path(path), PathStyle::kWindows));
  CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return {reinterpret_cast<const char*>(wide.data()),
          wide.size() * sizeof(wchar_t)};
}

bool names_same_file(const char* a, const char* b) {
  const std::string first = identity(a);
  const std::string second = identity(b);
  if (!first.empty() && !second.empty()) return first == second;
  return exists(a) && same_path(absolute_path(a), absolute_path(b));
}

}  // namespace zenfo::platform
