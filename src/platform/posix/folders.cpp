// Listing folders. A folder is read once, in large pieces. The system gives the
// kind of each entry with its name, so only links cost a further call. The
// names are kept in one text and sorted, so that every run finds the same
// order.
//
// Tested by tests/unit/platform/folders_test.cpp,
// tests/unit/platform/posix_folders_test.cpp
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/files.h"
#include "platform/posix/descriptor.h"
#include "platform/wildcard.h"

namespace zenfo::platform {
namespace {

constexpr size_t kReadSize = 32 * 1024;

enum class Kind : unsigned char { kFile, kFolder, kLinkToFolder, kOther };

Kind kind_of_mode(mode_t mode) {
  if (S_ISREG(mode)) return Kind::kFile;
  return S_ISDIR(mode) ? Kind::kFolder : Kind::kOther;
}

Kind follow_link(int folder, const char* name) {
  struct stat found;
  if (fstatat(folder, name, &found, 0) != 0) return Kind::kOther;
  const Kind kind = kind_of_mode(found.st_mode);
  return kind == Kind::kFolder ? Kind::kLinkToFolder : kind;
}

// For names that came without it: not every file system gives the kind.
Kind ask_kind(int folder, const char* name) {
  struct stat found;
  if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
    return Kind::kOther;
  }
  return S_ISLNK(found.st_mode) ? follow_link(folder, name)
                                : kind_of_mode(found.st_mode);
}

Kind kind_of(int folder, const dirent64& entry) {
  switch (entry.d_type) {
    case DT_REG:
      return Kind::kFile;
    case DT_DIR:
      return Kind::kFolder;
    case DT_LNK:
      return follow_link(folder, entry.d_name);
    case DT_UNKNOWN:
      return ask_kind(folder, entry.d_name);
    default:
      return Kind::kOther;
  }
}

// Orders names as their first eight bytes do; shorter names are filled up with
// zeros.
uint64_t head_of(std::string_view name) {
  uint64_t head = 0;
  for (size_t i = 0; i < sizeof head; ++i) {
    const char byte = i < name.size() ? name[i] : '\0';
    head = head << 8 | static_cast<unsigned char>(byte);
  }
  return head;
}

// "/" after the path makes "" the root, as it is in "" + "/" + name, and fails
// for anything but a folder.
int open_folder(const std::string& path) {
  const std::string folder = path + '/';
  const auto open_it = [&] {
    return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  };
  const int file = uninterrupted(open_it);
  // A folder that cannot be read is skipped silently, so try again when a
  // failure may be over in a moment, here and below.
  const bool shortage = errno == ENFILE || errno == EMFILE || errno == ENOMEM;
  return file < 0 && shortage ? uninterrupted(open_it) : file;
}

// Passes every entry, "." and ".." too, to `take`, which returns false to stop;
// entries that cannot be read are left out. False when stopped.
template <class Take>
bool read_folder(int folder, Take take) {
  alignas(dirent64) char buffer[kReadSize];
  for (;;) {
    ssize_t size = getdents64(folder, buffer, kReadSize);
    if (size < 0) size = getdents64(folder, buffer, kReadSize);
    if (size <= 0) return true;
    for (ssize_t at = 0; at < size;) {
      const auto& entry = *reinterpret_cast<const dirent64*>(buffer + at);
      if (!take(entry)) return false;
      at += entry.d_reclen;
    }
  }
}

}  // namespace

struct FolderListing::State {
  struct Entry {
    uint64_t head;  // the first bytes, for most comparisons
    size_t offset;
    unsigned short length;
    Kind kind;
  };

  bool is_read = false;
  std::string names;
  std::vector<Entry> entries;

  std::string_view name(const Entry& entry) const {
    return std::string_view(names).substr(entry.offset, entry.length);
  }
  bool read(const std::string& path, const Answered& answered);
  bool read_names(const std::string& path, const Answered& answered);
  void add(int folder, const dirent64& entry);
  void sort();
  template <class Wanted>
  bool visit(const std::string& path, Wanted wanted, const Visitor& visitor,
             const Answered& answered);
};

void FolderListing::State::add(int folder, const dirent64& entry) {
  if (entry.d_name[0] == '.') return;
  const Kind kind = kind_of(folder, entry);
  if (kind != Kind::kFile && kind != Kind::kFolder) return;
  const std::string_view found(entry.d_name);
  entries.push_back({head_of(found), names.size(),
                     static_cast<unsigned short>(found.size()), kind});
  names += found;
}

// A listing that was stopped starts again the next time.
bool FolderListing::State::read(const std::string& path,
                                const Answered& answered) {
  names.clear();
  entries.clear();
  if (!read_names(path, answered)) return false;
  is_read = true;
  sort();
  names.shrink_to_fit();
  entries.shrink_to_fit();
  return true;
}

bool FolderListing::State::read_names(const std::string& path,
                                      const Answered& answered) {
  const Descriptor folder(open_folder(path));
  if (!folder.is_open()) return true;
  return read_folder(folder.get(), [&](const dirent64& entry) {
    add(folder.get(), entry);
    return answered();
  });
}

void FolderListing::State::sort() {
  std::sort(entries.begin(), entries.end(),
            [&](const Entry& a, const Entry& b) {
              return a.head != b.head ? a.head < b.head : name(a) < name(b);
            });
}

// The visitor may move the listing, not destroy it.
template <class Wanted>
bool FolderListing::State::visit(const std::string& path, Wanted wanted,
                                 const Visitor& visitor,
                                 const Answered& answered) {
  if (!is_read && !read(path, answered)) return false;
  for (const Entry& entry : entries) {
    if (!wanted(entry)) continue;
    if (!visitor(name(entry)) || !answered()) return false;
  }
  return true;
}

FolderListing::FolderListing(std::string path)
    : path_(std::move(path)), state_(std::make_unique<State>()) {}
FolderListing::~FolderListing() = default;
FolderListing::FolderListing(FolderListing&&) noexcept = default;
FolderListing& FolderListing::operator=(FolderListing&&) noexcept = default;

bool FolderListing::visit_folders(const Visitor& visit,
                                  const Answered& answered) {
  return state_->visit(
      path_,
      [](const State::Entry& entry) { return entry.kind == Kind::kFolder; },
      visit, answered);
}

bool FolderListing::visit_files(const char* pattern, const Visitor& visit,
                                const Answered& answered) {
  const WildcardPattern wildcard(pattern);
  State& state = *state_;
  return state.visit(
      path_,
      [&](const State::Entry& entry) {
        return entry.kind == Kind::kFile && wildcard.matches(state.name(entry));
      },
      visit, answered);
}

void delete_files_in(const char* folder,
                     const std::function<bool(std::string_view name)>& wanted) {
  const Descriptor handle(open_folder(folder));
  if (!handle.is_open()) return;
  std::vector<std::string> names;
  read_folder(handle.get(), [&](const dirent64& entry) {
    // Asked for each name: before deleting, a call is worth its cost.
    const Kind kind = ask_kind(handle.get(), entry.d_name);
    if (kind == Kind::kFile || kind == Kind::kOther) {
      names.emplace_back(entry.d_name);
    }
    return true;
  });
  for (const std::string& name : names) {
    if (wanted(name)) unlinkat(handle.get(), name.c_str(), 0);
  }
}

}  // namespace zenfo::platform
