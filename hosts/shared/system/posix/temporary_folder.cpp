#include "shared/system/temporary_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include "shared/frame/failure.h"

namespace zenfo::host::temporary_folder {
namespace {

constexpr char kPrefix[] = "zenfo-";
constexpr char kUnknownPart[] = "XXXXXX";
// Distinguishes the folder from one to which a user gave a similar name.
constexpr char kLock[] = "zenfo.lock";

// Signal handlers read these, so they are plain memory.
char path[4096] = "";
int folder = -1;
int folder_lock = -1;
unsigned files_made = 0;

// The layout of the entries that SYS_getdents64 returns.
struct Entry {
  uint64_t number;
  int64_t offset;
  uint16_t length;
  unsigned char type;
  char name[1];
};

bool is_removed_first(const char* name) {
  return std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0 &&
         std::strcmp(name, kLock) != 0;
}

// Returns whether any file was removed. readdir() is not safe in signal
// handlers.
bool remove_some_files(int in) {
  alignas(Entry) char entries[4096];
  bool any = false;
  lseek(in, 0, SEEK_SET);
  for (;;) {
    const long size = syscall(SYS_getdents64, in, entries, sizeof entries);
    if (size <= 0) return any;
    for (long at = 0; at < size;) {
      const auto* entry = reinterpret_cast<const Entry*>(entries + at);
      at += entry->length;
      if (!is_removed_first(entry->name)) continue;
      any |= unlinkat(in, entry->name, 0) == 0;
    }
  }
}

// The lock is deleted last, so that the next process finds what an interrupted
// removal left. Removing entries can make a listing skip others, hence the
// loop.
void remove_files(int in) {
  while (remove_some_files(in)) {
  }
  unlinkat(in, kLock, 0);
}

// Another process may have removed the folder as left behind before it was
// locked. Some file systems have no locks.
bool hold(int lock) {
  if (flock(lock, LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
  struct stat facts;
  return fstat(lock, &facts) == 0 && facts.st_nlink > 0;
}

bool is_old(int file) {
  constexpr time_t kAge = 60;
  struct stat facts;
  return fstat(file, &facts) == 0 && facts.st_mtime + kAge < time(nullptr);
}

bool is_own(int file) {
  struct stat facts;
  return fstat(file, &facts) == 0 && facts.st_uid == geteuid();
}

bool is_own_name(std::string_view name) {
  return name.starts_with(kPrefix) &&
         name.size() == sizeof kPrefix - 1 + sizeof kUnknownPart - 1;
}

// Removes a folder of this user whose lock nobody holds.
void remove_if_left_behind(int in, const char* name) {
  const int left =
      openat(in, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (left < 0) return;
  const int lock = openat(left, kLock, O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  // Its process ended before it created the lock.
  if (lock < 0 && errno == ENOENT && is_own(left) && is_old(left)) {
    unlinkat(in, name, AT_REMOVEDIR);
  }
  if (lock >= 0 && is_own(left) && is_own(lock) &&
      flock(lock, LOCK_EX | LOCK_NB) == 0) {
    remove_files(left);
    unlinkat(in, name, AT_REMOVEDIR);
  }
  if (lock >= 0) close(lock);
  close(left);
}

void remove_left_behind(const std::string& parent) {
  DIR* listing = opendir(parent.c_str());
  if (listing == nullptr) return;
  while (const dirent* entry = readdir(listing)) {
    if (is_own_name(entry->d_name)) {
      remove_if_left_behind(dirfd(listing), entry->d_name);
    }
  }
  closedir(listing);
}

// Leaves no folder if another process removed it before it was locked.
void make_one(const std::string& name) {
  std::snprintf(path, sizeof path, "%s", name.c_str());
  if (mkdtemp(path) == nullptr) return;
  folder = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder < 0) return;
  folder_lock =
      openat(folder, kLock, O_RDONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (folder_lock < 0 || !hold(folder_lock)) remove();
}

void make_in(const std::string& parent) {
  const std::string name = parent + '/' + kPrefix + kUnknownPart;
  if (name.size() >= sizeof path) return;
  remove_left_behind(parent);
  constexpr int kTries = 8;
  for (int i = 0; i < kTries && folder < 0; ++i) make_one(name);
}

void make() {
  const char* named = std::getenv("TMPDIR");
  if (named != nullptr && *named != '\0') make_in(named);
  if (folder < 0) make_in("/tmp");
  if (folder < 0) {
    throw Failure{"",
                  std::string("cannot create a folder for temporary files: ") +
                      std::strerror(errno)};
  }
}

}  // namespace

std::string make_file() {
  if (folder < 0) make();
  const std::string name = std::to_string(files_made++);
  std::string whole = std::string(path) + '/' + name;
  const int made = openat(folder, name.c_str(),
                          O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (made < 0) throw Failure{whole, std::strerror(errno)};
  close(made);
  return whole;
}

void remove() {
  if (folder < 0) return;
  remove_files(folder);
  rmdir(path);
  if (folder_lock >= 0) close(folder_lock);
  close(folder);
  folder = folder_lock = -1;
}

}  // namespace zenfo::host::temporary_folder
