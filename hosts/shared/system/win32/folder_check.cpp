#include "shared/system/folder_check.h"

#include <windows.h>

#include "shared/system/folder_walk.h"

namespace zenfo::host {
namespace {

constexpr DWORD kLinkOrFolder =
    FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY;

// The library uses such a pattern, too.
constexpr char kAll[] = "\\*.*";

// The system only reports such paths as not found.
bool is_too_long(const std::string& path) {
  const DWORD length = GetFullPathNameA(path.c_str(), 0, nullptr, nullptr);
  return length + sizeof kAll > MAX_PATH;
}

class Walk : public FolderWalk {
 public:
  using FolderWalk::FolderWalk;

 private:
  // The library enters no longer paths, even if the system would.
  void list(const std::string& path) override {
    if (path.size() >= MAX_PATH) {
      note(path, ERROR_FILENAME_EXCED_RANGE);
      return;
    }
    WIN32_FIND_DATAA found;
    const HANDLE listing = FindFirstFileExA(
        (path + kAll).c_str(), FindExInfoBasic, &found, FindExSearchNameMatch,
        nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (listing != INVALID_HANDLE_VALUE) {
      add_folders(path, listing, found);
      FindClose(listing);
    } else if (const DWORD error = GetLastError();
               error != ERROR_FILE_NOT_FOUND) {  // an empty drive
      note(path, is_too_long(path) ? ERROR_FILENAME_EXCED_RANGE : error);
    }
  }

  void add_folders(const std::string& path, HANDLE listing,
                   WIN32_FIND_DATAA& found) {
    do {
      if ((found.dwFileAttributes & kLinkOrFolder) ==
              FILE_ATTRIBUTE_DIRECTORY &&
          found.cFileName[0] != '.' && enters(found.cFileName)) {
        enter(path + '\\' + found.cFileName);
      }
    } while (FindNextFileA(listing, &found));
    const DWORD error = GetLastError();
    if (error != ERROR_NO_MORE_FILES) note(path, error);
  }
};

}  // namespace

std::vector<UnlistedFolder> find_unlisted(const std::string& folder,
                                          const FolderTest& enters) {
  return Walk(enters).run(folder);
}

}  // namespace zenfo::host
