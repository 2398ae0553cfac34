// Files by name: their facts, whether they exist, deleting, creating folders.
//
// Tested by tests/unit/platform/files_test.cpp,
// tests/unit/platform/posix_files_test.cpp
#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>

#include "platform/posix/file_times.h"
#include "platform/posix/nearby_folder.h"
#include "platform/posix/version.h"

namespace zenfo::platform {
namespace {

uint64_t to_file_time(const struct statx_timestamp& time) {
  constexpr int64_t kLast =
      std::numeric_limits<uint64_t>::max() / kStepsPerSecond -
      kSecondsFrom1601To1970 - 1;
  if (time.tv_sec < -kSecondsFrom1601To1970) return 0;
  if (time.tv_sec > kLast) return std::numeric_limits<uint64_t>::max();
  const uint64_t seconds =
      static_cast<uint64_t>(time.tv_sec + kSecondsFrom1601To1970);
  return seconds * kStepsPerSecond + time.tv_nsec / 100;
}

// "." and ".." are not hidden.
bool is_hidden(std::string_view path) {
  while (!path.empty() && path.back() == '/') path.remove_suffix(1);
  const std::string_view name = path.substr(path.rfind('/') + 1);
  return name.size() > 1 && name[0] == '.' && name != "..";
}

uint32_t attributes_of(const struct statx& facts, const char* path) {
  uint32_t bits = 0;
  if ((facts.stx_mode & 0222) == 0) bits |= kAttributeReadOnly;
  if (is_hidden(path)) bits |= kAttributeHidden;
  if (S_ISDIR(facts.stx_mode)) bits |= kAttributeDirectory;
  if (facts.stx_attributes & STATX_ATTR_COMPRESSED) {
    bits |= kAttributeCompressed;
  }
  return bits == 0 ? kAttributeNormal : bits;
}

}  // namespace

bool read_file_facts(const char* path, FileFacts& facts, NearbyFolder* nearby) {
  const Place place = locate(path, nearby);
  struct statx found;
  if (statx(place.folder, place.name, AT_STATX_SYNC_AS_STAT,
            STATX_BASIC_STATS | STATX_BTIME, &found) != 0) {
    return false;
  }
  // Some file systems keep no time of creation.
  const bool has_creation = (found.stx_mask & STATX_BTIME) != 0;
  facts.attributes = attributes_of(found, path);
  facts.size = S_ISREG(found.stx_mode) ? found.stx_size : 0;
  facts.creation_time =
      to_file_time(has_creation ? found.stx_btime : found.stx_mtime);
  facts.access_time = to_file_time(found.stx_atime);
  facts.write_time = to_file_time(found.stx_mtime);
  return true;
}

bool read_stamp(const char* path, FileStamp& stamp, NearbyFolder* nearby) {
  const Place place = locate(path, nearby);
  struct stat found;
  if (fstatat(place.folder, place.name, &found, 0) != 0 ||
      !S_ISREG(found.st_mode)) {
    return false;
  }
  stamp = stamp_of(found);
  return true;
}

bool has_stamp(const char* path, const FileStamp& stamp, NearbyFolder* nearby) {
  FileStamp now;
  return stamp.settled && read_stamp(path, now, nearby) &&
         now.version == stamp.version && now.change_time == stamp.change_time;
}

bool is_file(const char* path) {
  struct stat found;
  return stat(path, &found) == 0 && !S_ISDIR(found.st_mode);
}

bool is_folder(const char* path) {
  struct stat found;
  return stat(path, &found) == 0 && S_ISDIR(found.st_mode);
}

bool exists(const char* path) {
  if (std::strpbrk(path, "*?") != nullptr) return false;
  struct stat found;
  return lstat(path, &found) == 0;
}

bool delete_file(const char* path) { return unlink(path) == 0; }

bool clear_read_only(const char*) { return false; }

bool cut_file(const char* path, uint64_t size) {
  return truncate(path, static_cast<off_t>(size)) == 0;
}

bool replace_file(const char* from, const char* to) {
  struct stat found;
  // A link stays one.
  if (lstat(to, &found) == 0 && !S_ISREG(found.st_mode)) return false;
  return rename(from, to) == 0;
}

bool create_folder(const char* path) { return mkdir(path, 0777) == 0; }

}  // namespace zenfo::platform
