// Listing folders. Every listing is one query of the system's file search,
// which matches the patterns itself, short file names included.
//
// Tested by tests/unit/platform/folders_test.cpp,
// tests/unit/platform/win32_files_test.cpp
#include <vector>

#include "platform/files.h"
#include "platform/win32/system.h"

namespace zenfo::platform {
namespace {

// One query, closed by the destructor.
class Query {
 public:
  explicit Query(const std::string& pattern)
      : handle_(FindFirstFileA(pattern.c_str(), &found_)) {}
  ~Query() {
    if (is_valid()) FindClose(handle_);
  }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  bool is_valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  bool next() { return FindNextFileA(handle_, &found_) != 0; }
  const char* name() const { return found_.cFileName; }
  bool is_folder() const {
    return (found_.dwFileAttributes & kAttributeDirectory) != 0;
  }
  // A reparse point that leads to another folder (junction, mounted volume,
  // symbolic link): a walk that followed it might never end. Other reparse
  // points, such as folders of cloud storage, contain files themselves.
  bool is_link() const {
    if ((found_.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
      return false;
    }
    const DWORD tag = found_.dwReserved0;
    return tag == 0 || IsReparseTagNameSurrogate(tag);
  }

 private:
  WIN32_FIND_DATAA found_ = {};  // Wine does not set the tag
  HANDLE handle_;
};

// False when `take` stopped it.
template <class Take>
bool visit_answers(const std::string& folder, const char* pattern, Take take) {
  Query query(folder + kPathSeparator + pattern);
  if (!query.is_valid()) return true;
  do {
    if (!take(query)) return false;
  } while (query.next());
  return true;
}

bool visit_kind(const std::string& folder, const char* pattern, bool folders,
                const FolderListing::Visitor& visit,
                const FolderListing::Answered& answered) {
  return visit_answers(folder, pattern, [&](const Query& query) {
    const bool wanted = query.is_folder() == folders && query.name()[0] != '.';
    const bool passed_over = folders && query.is_link();
    return (!wanted || passed_over || visit(query.name())) && answered();
  });
}

}  // namespace

struct FolderListing::State {};

FolderListing::FolderListing(std::string path) : path_(std::move(path)) {}
FolderListing::~FolderListing() = default;
FolderListing::FolderListing(FolderListing&&) noexcept = default;
FolderListing& FolderListing::operator=(FolderListing&&) noexcept = default;

bool FolderListing::visit_folders(const Visitor& visit,
                                  const Answered& answered) {
  return visit_kind(path_, "*.*", true, visit, answered);
}

bool FolderListing::visit_files(const char* pattern, const Visitor& visit,
                                const Answered& answered) {
  return visit_kind(path_, pattern, false, visit, answered);
}

void delete_files_in(const char* folder,
                     const std::function<bool(std::string_view name)>& wanted) {
  std::vector<std::string> names;
  visit_answers(folder, "*.*", [&](const Query& query) {
    if (!query.is_folder()) names.emplace_back(query.name());
    return true;
  });
  for (const std::string& name : names) {
    const std::string path = std::string(folder) + kPathSeparator + name;
    if (!wanted(name) || delete_file(path.c_str())) continue;
    if (clear_read_only(path.c_str())) delete_file(path.c_str());
  }
}

}  // namespace zenfo::platform
