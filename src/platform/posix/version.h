// The version of an open file.
//
// Tested by tests/unit/platform/streams_test.cpp
#pragma once

#include <sys/stat.h>

#include "platform/files.h"

namespace zenfo::platform {

inline FileVersion version_of(const struct stat& facts) {
  constexpr uint64_t kNanoseconds = 1000000000;
  return {facts.st_dev, facts.st_ino, static_cast<uint64_t>(facts.st_size),
          static_cast<uint64_t>(facts.st_mtim.tv_sec) * kNanoseconds +
              static_cast<uint64_t>(facts.st_mtim.tv_nsec)};
}

// False when the system does not say, or when it is not an ordinary file.
inline bool read_version(int descriptor, FileVersion& version) {
  struct stat facts;
  if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) return false;
  version = version_of(facts);
  return true;
}

}  // namespace zenfo::platform
