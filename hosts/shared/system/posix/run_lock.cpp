#include "shared/system/run_lock.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <utility>

#include "shared/system/system.h"

namespace zenfo::host {
namespace {

int open_lock(const std::string& path) {
  return open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

// The previous holder may have deleted the file.
bool is_deleted(int file, const std::string& path) {
  struct stat open_facts;
  struct stat facts;
  if (fstat(file, &open_facts) != 0) return false;
  if (stat(path.c_str(), &facts) != 0) return errno == ENOENT;
  return open_facts.st_dev != facts.st_dev || open_facts.st_ino != facts.st_ino;
}

int lock(int file, int how) {
  int result;
  do {
    result = flock(file, how);
  } while (result != 0 && errno == EINTR);
  return result;
}

}  // namespace

RunLock::RunLock(RunLock&& other) noexcept
    : file_(std::exchange(other.file_, -1)), path_(std::move(other.path_)) {}

RunLock& RunLock::operator=(RunLock&& other) noexcept {
  release();
  file_ = std::exchange(other.file_, -1);
  path_ = std::move(other.path_);
  return *this;
}

bool RunLock::take(const std::string& path) { return take(path, LOCK_NB); }

void RunLock::wait_for(const std::string& path) { take(path, 0); }

bool RunLock::take(const std::string& path, int how) {
  release();
  for (;;) {
    const int file = open_lock(path);
    if (file < 0) {
      why_not_ = "its lock cannot be opened: " +
                 system::reason_of(static_cast<unsigned>(errno));
      return false;
    }
    const bool busy = lock(file, LOCK_EX | how) != 0 && errno == EWOULDBLOCK;
    if (!busy && !is_deleted(file, path)) {
      file_ = file;
      path_ = path;
      return true;
    }
    close(file);
    if (busy) {
      why_not_ = "is still going on";
      return false;
    }
  }
}

void RunLock::release_for_good() {
  if (file_ >= 0) unlink(path_.c_str());
  release();
}

void RunLock::release() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}

std::string boot_name() {
  std::ifstream file("/proc/sys/kernel/random/boot_id");
  std::string name;
  std::getline(file, name);
  return name;
}

bool is_this_boot(std::string_view name) { return name == boot_name(); }

bool flush_file(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool flushed = fsync(file) == 0;
  close(file);
  return flushed;
}

}  // namespace zenfo::host
