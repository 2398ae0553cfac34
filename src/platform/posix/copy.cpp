// Copying one file. The system moves the bytes itself where it can (on some
// file systems by sharing them); a plain loop copies the rest.
//
// Tested by tests/unit/platform/copy_test.cpp,
// tests/unit/platform/posix_copy_test.cpp
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files.h"
#include "platform/next_version.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/file_lock.h"
#include "platform/posix/version.h"

namespace zenfo::platform {
namespace {

constexpr size_t kBlockSize = size_t{64} * 1024;

bool same_file(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool write_all(int to, const char* data, size_t size) {
  while (size > 0) {
    const ssize_t count = uninterrupted([&] { return write(to, data, size); });
    if (count <= 0) return false;
    data += count;
    size -= static_cast<size_t>(count);
  }
  return true;
}

// Both advance the positions of both files, so the loop continues where the
// system's own copy stopped, or finds only the end. Only the loop looks for
// bytes that were added to the source meanwhile.
void copy_in_system(int from, int to, off_t size) {
  while (size > 0) {
    const ssize_t count =
        copy_file_range(from, nullptr, to, nullptr, kMostPerCall, 0);
    if (count <= 0) return;
    size -= count;
  }
}

bool copy_in_blocks(int from, int to) {
  char block[kBlockSize];
  for (;;) {
    const ssize_t count =
        uninterrupted([&] { return read(from, block, kBlockSize); });
    if (count == 0) return true;
    if (count < 0) return false;
    if (!write_all(to, block, static_cast<size_t>(count))) return false;
  }
}

// Removes the old end of a longer file. Asking for the size is cheaper than
// cutting a file where it ends anyway.
bool cut_behind_copy(int to) {
  const off_t end = lseek(to, 0, SEEK_CUR);
  struct stat copied;
  if (end < 0 || fstat(to, &copied) != 0) return false;
  return copied.st_size == end || ftruncate(to, end) == 0;
}

// All of this only as far as the target's owner and file system allow: what
// matters is the bytes.

void copy_owner(const struct stat& source, struct stat& target, int to) {
  const bool same_owner = source.st_uid == target.st_uid;
  if (same_owner && source.st_gid == target.st_gid) return;
  if (fchown(to, source.st_uid, source.st_gid) != 0 &&
      fchown(to, static_cast<uid_t>(-1), source.st_gid) != 0) {
    return;
  }
  fstat(to, &target);
}

// Setuid and setgid lend the rights of the owner and group, so they are copied
// only if these are the source's. This comes last because the system clears
// them when a file is written or changes its owner.
void copy_mode(const struct stat& source, const struct stat& target, int to) {
  mode_t mode = source.st_mode & 07777;
  if (source.st_uid != target.st_uid) mode &= ~mode_t{S_ISUID};
  if (source.st_gid != target.st_gid) mode &= ~mode_t{S_ISGID};
  const bool may_be_off = (mode & (S_ISUID | S_ISGID)) != 0;
  if (may_be_off || (target.st_mode & 07777) != mode) {
    [[maybe_unused]] const int result = fchmod(to, mode);
  }
}

void copy_times(const struct stat& source, int to) {
  const struct timespec times[] = {source.st_atim, source.st_mtim};
  futimens(to, times);
}

bool is_sparse(const struct stat& source) {
  constexpr off_t kUnit = 512;  // of st_blocks
  return source.st_blocks * kUnit < source.st_size;
}

// An existing file is overwritten only when there is room for all of the copy:
// a half-written copy would have destroyed the old bytes.
enum class Room { kEnough, kTooLittle, kUnknown };

Room room_for(const struct stat& source, int to) {
  if (source.st_size == 0 || is_sparse(source)) return Room::kEnough;
  if (fallocate(to, FALLOC_FL_KEEP_SIZE, 0, source.st_size) == 0) {
    return Room::kEnough;
  }
  return errno == ENOSPC || errno == EDQUOT ? Room::kTooLittle : Room::kUnknown;
}

// Nothing is stored for these bytes of the file, which read as zeros.
bool make_hole(int to, off_t from, off_t end) {
  constexpr int kMode = FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE;
  return from >= end || fallocate(to, kMode, from, end - from) == 0;
}

// Copies the parts between the holes of a file. The target has the file's size
// already. False where the file system does not support holes; the positions
// are unchanged then.
bool copy_around_holes(int from, int to, off_t size) {
  off_t at = 0;
  bool done = ftruncate(to, size) == 0;
  while (done && at < size) {
    const off_t data = lseek(from, at, SEEK_DATA);
    const off_t hole = data < 0 ? size : lseek(from, data, SEEK_HOLE);
    const off_t next = data < 0 ? size : data;
    done =
        (data >= 0 || errno == ENXIO) && make_hole(to, at, next) && hole >= 0;
    for (at = next; done && at < hole;) {
      off_t source_at = at;
      off_t target_at = at;
      const ssize_t count = copy_file_range(from, &source_at, to, &target_at,
                                            static_cast<size_t>(hole - at), 0);
      done = count > 0;
      if (done) at += count;
    }
  }
  lseek(from, 0, SEEK_SET);
  lseek(to, 0, SEEK_SET);
  return done;
}

// Deletes a copy that was interrupted, unless the file existed before: that one
// stays, whatever its bytes are now.
void discard(const struct stat& target, const char* to) {
  struct stat named;
  if (lstat(to, &named) == 0 && same_file(named, target)) unlink(to);
}

bool copy_bytes(int from, int to, const struct stat& source) {
  if (is_sparse(source) && copy_around_holes(from, to, source.st_size)) {
    return true;
  }
  copy_in_system(from, to, source.st_size);
  return copy_in_blocks(from, to) && cut_behind_copy(to);
}

// Bytes, owner of a new file, rights and times; closes the target.
bool copy_all(int from, const struct stat& source, Descriptor& to,
              struct stat& target, bool created) {
  if (!copy_bytes(from, to.get(), source)) return false;
  if (created) copy_owner(source, target, to.get());
  copy_mode(source, target, to.get());
  copy_times(source, to.get());
  return to.close();
}

// Copies into a file beside `to`, which then replaces it. kFailed: `to` has to
// be written in place; kChanged: it must not be touched.
Opened copy_beside(int from, const struct stat& source, const char* to,
                   const struct stat& target) {
  NextVersion next;
  const Opened opened = next.begin(to, version_of(target));
  if (opened != Opened::kOpen) return opened;
  Descriptor file(open(next.path(), O_WRONLY | kOpenFlags));
  struct stat fresh;
  const bool done = file.is_open() && fstat(file.get(), &fresh) == 0 &&
                    copy_all(from, source, file, fresh, false) &&
                    next.take_place() == Opened::kOpen;
  return done ? Opened::kOpen : Opened::kChanged;
}

// `file` is `to`, open, whose facts are `target`.
bool copy_over(int from, const struct stat& source, const char* to,
               Descriptor& file, struct stat& target) {
  if (is_locked_by_others(file.get())) return false;
  const Room room = room_for(source, file.get());
  if (room == Room::kTooLittle) return false;
  if (room == Room::kUnknown) {
    file.close();  // and with it the lock
    const Opened beside = copy_beside(from, source, to, target);
    if (beside != Opened::kFailed) return beside == Opened::kOpen;
    file.reset(open(to, O_WRONLY | kOpenFlags));
    if (!file.is_open() || is_locked_by_others(file.get())) return false;
  }
  return copy_all(from, source, file, target, false);
}

// Opens the target; `created` receives whether it is new.
int open_target(const char* to, mode_t mode, bool& created) {
  constexpr int kFlags = O_WRONLY | O_CREAT | kOpenFlags;
  const int file = open(to, kFlags | O_EXCL, mode);
  created = file >= 0;
  return created || errno != EEXIST ? file : open(to, kFlags, mode);
}

}  // namespace

bool copy_file(const char* from, const char* to, FileVersion* version) {
  const Descriptor source_file(open(from, O_RDONLY | kOpenFlags));
  struct stat source;
  if (!source_file.is_open() || fstat(source_file.get(), &source) != 0 ||
      !S_ISREG(source.st_mode)) {
    return false;
  }
  if (version != nullptr) *version = version_of(source);
  bool created;
  Descriptor target_file(
      open_target(to, (source.st_mode & 0777) | 0200, created));
  struct stat target;
  if (!target_file.is_open() || fstat(target_file.get(), &target) != 0 ||
      !S_ISREG(target.st_mode) || same_file(source, target)) {
    return false;
  }
  if (!created) {
    return copy_over(source_file.get(), source, to, target_file, target);
  }
  if (copy_all(source_file.get(), source, target_file, target, true)) {
    return true;
  }
  discard(target, to);
  return false;
}

void copy_rights(const char* from, const char* to) {
  struct stat source;
  struct stat target;
  const Descriptor file(open(to, O_WRONLY | O_NOFOLLOW | kOpenFlags));
  if (stat(from, &source) != 0 || !file.is_open() ||
      fstat(file.get(), &target) != 0) {
    return;
  }
  copy_owner(source, target, file.get());
  copy_mode(source, target, file.get());
}

}  // namespace zenfo::platform
