// Reading and writing open files on bare descriptors. Every file is opened
// without waiting, so that a pipe that nobody writes to never blocks a run.
//
// Tested by tests/unit/platform/streams_test.cpp,
// tests/unit/platform/posix_streams_test.cpp
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>

#include "platform/files.h"
#include "platform/posix/file_lock.h"
#include "platform/posix/nearby_folder.h"
#include "platform/posix/version.h"

namespace zenfo::platform {
namespace {

constexpr int flags_of(OutputMode mode) {
  switch (mode) {
    case OutputMode::kTruncate:
      return O_TRUNC;
    case OutputMode::kAppend:
      return O_APPEND;
    case OutputMode::kOverwrite:
      break;
  }
  return 0;
}

// Older systems and sandboxes lack this call: then only the last part of the
// path is checked.
int open_no_links(const char* path, int flags) {
  struct open_how how {};
  how.flags = static_cast<uint64_t>(flags);
  how.resolve = RESOLVE_NO_SYMLINKS;
  const auto file =
      static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path, &how, sizeof how));
  if (file >= 0 || (errno != ENOSYS && errno != EPERM)) return file;
  return ::open(path, flags | O_NOFOLLOW);
}

// Once the file is open, wait for a slow other end (a terminal, a pipe). False
// when there is nothing to wait for.
bool wait_from_now_on(int descriptor) {
  const int flags = fcntl(descriptor, F_GETFL);
  if (flags < 0 || (flags & O_NONBLOCK) == 0) return false;
  return fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK) == 0;
}

ssize_t write_some(int descriptor, const char* data, size_t size) {
  const auto call = [&] {
    return ::write(descriptor, data, std::min(size, kMostPerCall));
  };
  const ssize_t count = uninterrupted(call);
  if (count >= 0 || errno != EAGAIN || !wait_from_now_on(descriptor)) {
    return count;
  }
  return uninterrupted(call);
}

}  // namespace

bool InputFile::open(const char* path, NearbyFolder* nearby) {
  close();
  const Place place = locate(path, nearby);
  Descriptor file(uninterrupted(
      [&] { return openat(place.folder, place.name, O_RDONLY | kOpenFlags); }));
  if (!file.is_open()) return false;
  handle_ = file.release();
  return true;
}

bool InputFile::open_without_links(const char* path) {
  close();
  handle_ =
      uninterrupted([&] { return open_no_links(path, O_RDONLY | kOpenFlags); });
  return is_open();
}

bool InputFile::open_ordinary(const char* path, uint64_t largest,
                              FileStamp& stamp, NearbyFolder* nearby) {
  struct stat found;
  if (open(path, nearby) && fstat(static_cast<int>(handle_), &found) == 0 &&
      S_ISREG(found.st_mode)) {
    stamp = stamp_of(found);
    if (stamp.version.size <= largest) return true;
  }
  close();
  return false;
}

int64_t InputFile::read(void* buffer, size_t size) {
  const int descriptor = static_cast<int>(handle_);
  size_t done = 0;
  while (done < size) {
    const size_t part = std::min(size - done, kMostPerCall);
    const ssize_t count = uninterrupted([&] {
      return ::read(descriptor, static_cast<char*>(buffer) + done, part);
    });
    if (count < 0) return -1;
    done += static_cast<size_t>(count);
    // A short read means the end of the file; reading again would cost one call
    // for every file.
    if (static_cast<size_t>(count) < part) break;
  }
  return static_cast<int64_t>(done);
}

int64_t InputFile::size() {
  struct stat found;
  if (fstat(static_cast<int>(handle_), &found) != 0) return -1;
  return S_ISREG(found.st_mode) ? static_cast<int64_t>(found.st_size) : -1;
}

bool InputFile::version(FileVersion& version) const {
  return read_version(static_cast<int>(handle_), version);
}

void InputFile::close() {
  if (is_open()) ::close(static_cast<int>(handle_));
  handle_ = kNone;
}

bool OutputFile::open(const char* path, OutputMode mode) {
  close();
  const int flags = O_WRONLY | O_CREAT | kOpenFlags | flags_of(mode);
  handle_ = uninterrupted([&] { return ::open(path, flags, 0666); });
  mode_ = mode;
  return is_open();
}

Opened OutputFile::open_unchanged(const char* path,
                                  const FileVersion& expected) {
  close();
  Descriptor file(
      uninterrupted([&] { return ::open(path, O_WRONLY | kOpenFlags); }));
  if (!file.is_open()) {
    return errno == ENOENT ? Opened::kChanged : Opened::kFailed;
  }
  FileVersion now;
  if (is_locked_by_others(file.get()) || !read_version(file.get(), now) ||
      now != expected) {
    return Opened::kChanged;
  }
  handle_ = file.release();
  mode_ = OutputMode::kOverwrite;
  return Opened::kOpen;
}

bool OutputFile::write(const void* data, size_t size) {
  const char* rest = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t count = write_some(static_cast<int>(handle_), rest, size);
    if (count <= 0) return false;
    rest += count;
    size -= static_cast<size_t>(count);
  }
  return true;
}

bool OutputFile::set_end() {
  if (mode_ != OutputMode::kOverwrite) return is_open();
  const int descriptor = static_cast<int>(handle_);
  const off_t end = lseek(descriptor, 0, SEEK_CUR);
  if (end < 0) return false;
  // Cutting a file where it ends anyway costs ten times as much as asking for
  // its size.
  struct stat found;
  if (fstat(descriptor, &found) == 0 && S_ISREG(found.st_mode) &&
      found.st_size == end) {
    return true;
  }
  return uninterrupted([&] { return ftruncate(descriptor, end); }) == 0;
}

bool OutputFile::close() {
  Descriptor file(static_cast<int>(handle_));
  handle_ = kNone;
  return file.close();
}

}  // namespace zenfo::platform
