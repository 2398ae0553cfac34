// Tested by tests/unit/platform/next_version_test.cpp
#include "platform/next_version.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/posix/descriptor.h"
#include "platform/posix/file_lock.h"
#include "platform/posix/version.h"

namespace zenfo::platform {

struct NextVersion::State {
  std::string path;
  Descriptor old;  // open and locked
  FileVersion version;
};

namespace {

// Everything that a new file of the same name would lack.
bool is_plain(int file, const struct stat& facts, const char* path) {
  struct stat named;
  return S_ISREG(facts.st_mode) && facts.st_nlink == 1 &&
         facts.st_uid == geteuid() && flistxattr(file, nullptr, 0) <= 0 &&
         lstat(path, &named) == 0 && named.st_dev == facts.st_dev &&
         named.st_ino == facts.st_ino;
}

bool take_rights(int file, const struct stat& old) {
  struct stat fresh;
  if (fstat(file, &fresh) != 0) return false;
  if (fresh.st_gid != old.st_gid &&
      fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0) {
    return false;
  }
  return fchmod(file, old.st_mode & 07777) == 0;
}

}  // namespace

NextVersion::NextVersion() : state_(std::make_unique<State>()) {}
NextVersion::~NextVersion() { discard(); }

void NextVersion::discard() {
  if (begun()) unlink(path());
  fresh_.clear();
  state_->old.reset(-1);
}

Opened NextVersion::lock_and_create(const char* path,
                                    const FileVersion& expected) {
  state_->path = path;
  state_->version = expected;
  state_->old.reset(
      ::open(path, O_RDWR | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW));
  struct stat facts;
  if (!state_->old.is_open() || fstat(state_->old.get(), &facts) != 0) {
    return Opened::kFailed;
  }
  if (version_of(facts) != expected || is_locked_by_others(state_->old.get())) {
    return Opened::kChanged;
  }
  if (!is_plain(state_->old.get(), facts, path)) return Opened::kFailed;
  std::string fresh = state_->path + ".zenfo-XXXXXX";
  const Descriptor file(mkostemp(fresh.data(), O_CLOEXEC));
  if (!file.is_open()) return Opened::kFailed;
  fresh_ = std::move(fresh);
  return take_rights(file.get(), facts) ? Opened::kOpen : Opened::kFailed;
}

Opened NextVersion::take_place() {
  struct stat facts, named;
  const char* path = state_->path.c_str();
  const bool unchanged = fstat(state_->old.get(), &facts) == 0 &&
                         version_of(facts) == state_->version &&
                         lstat(path, &named) == 0 &&
                         version_of(named) == state_->version;
  Opened result = Opened::kChanged;
  if (unchanged) {
    const bool placed = rename(fresh_.c_str(), path) == 0;
    if (placed) fresh_.clear();
    result = placed ? Opened::kOpen : Opened::kFailed;
  }
  discard();
  return result;
}

}  // namespace zenfo::platform
