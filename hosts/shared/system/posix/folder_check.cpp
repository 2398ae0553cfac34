#include "shared/system/folder_check.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <optional>

#ifndef XFS_SUPER_MAGIC
#define XFS_SUPER_MAGIC 0x58465342
#endif

#include "shared/system/folder_walk.h"

namespace zenfo::host {
namespace {

class Folder {
 public:
  Folder(int parent, const char* name)
      : number_(openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
  ~Folder() {
    if (is_open()) close(number_);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  bool is_open() const { return number_ >= 0; }
  int number() const { return number_; }

  // False when the folder could not be read completely.
  template <class Take>
  bool read(Take take) const {
    alignas(dirent64) char buffer[32 * 1024];
    for (;;) {
      const ssize_t size = getdents64(number_, buffer, sizeof buffer);
      if (size <= 0) return size == 0;
      for (ssize_t at = 0; at < size;) {
        const auto& entry = *reinterpret_cast<const dirent64*>(buffer + at);
        take(entry);
        at += entry.d_reclen;
      }
    }
  }

 private:
  int number_;
};

bool is_folder(const Folder& parent, const dirent64& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
  struct stat facts;
  return fstatat(parent.number(), entry.d_name, &facts, AT_SYMLINK_NOFOLLOW) ==
             0 &&
         S_ISDIR(facts.st_mode);
}

// Avoids reading most folders: on file systems that count links to a folder
// ("X", "X/." and ".." of each subfolder), a count of two shows that there are
// no subfolders.
class LinkCounts {
 public:
  bool tell_of_no_folders(const Folder& folder) {
    struct stat facts;
    return fstat(folder.number(), &facts) == 0 && facts.st_nlink == 2 &&
           are_kept(folder, facts.st_dev);
  }

 private:
  // Network and stacked file systems may report any number.
  bool are_kept(const Folder& folder, dev_t device) {
    if (device_ == device) return kept_;
    struct statfs system;
    kept_ = fstatfs(folder.number(), &system) == 0 &&
            (system.f_type == EXT4_SUPER_MAGIC ||
             system.f_type == XFS_SUPER_MAGIC || system.f_type == TMPFS_MAGIC);
    device_ = device;
    return kept_;
  }

  std::optional<dev_t> device_;
  bool kept_ = false;
};

class Walk : public FolderWalk {
 public:
  using FolderWalk::FolderWalk;

 private:
  void list(const std::string& path) override {
    const Folder folder(AT_FDCWD, (path + '/').c_str());
    if (!folder.is_open()) {
      note_error(path, errno);
      return;
    }
    const bool finished = folder.read([&](const dirent64& entry) {
      if (entry.d_name[0] != '.' && is_folder(folder, entry) &&
          enters(entry.d_name)) {
        look_at(folder, path + '/' + entry.d_name, entry.d_name);
      }
    });
    if (!finished) note_error(path, errno);
  }

  void look_at(const Folder& parent, std::string path, const char* name) {
    const Folder folder(parent.number(), name);
    if (!folder.is_open()) {
      note_error(path, errno);
    } else if (path.size() + 1 >= PATH_MAX) {  // with the added "/"
      note_error(path, ENAMETOOLONG);
    } else if (!link_counts_.tell_of_no_folders(folder)) {
      enter(std::move(path));
    }
  }

  // A folder that no longer exists hides nothing.
  void note_error(const std::string& path, int error) {
    if (error != ENOENT) note(path, static_cast<unsigned>(error));
  }

  LinkCounts link_counts_;
};

}  // namespace

std::vector<UnlistedFolder> find_unlisted(const std::string& folder,
                                          const FolderTest& enters) {
  return Walk(enters).run(folder);
}

}  // namespace zenfo::host
