// The version of an open file.
//
// Tested by tests/unit/platform/streams_test.cpp
#pragma once

#include <sys/stat.h>
#include <time.h>

#include "platform/files.h"

namespace zenfo::platform {

inline uint64_t nanoseconds(const struct timespec& time) {
  constexpr uint64_t kPerSecond = 1000000000;
  return static_cast<uint64_t>(time.tv_sec) * kPerSecond +
         static_cast<uint64_t>(time.tv_nsec);
}

inline FileVersion version_of(const struct stat& facts) {
  return {facts.st_dev, facts.st_ino, static_cast<uint64_t>(facts.st_size),
          nanoseconds(facts.st_mtim)};
}

// Times of files rise in steps of the system's clock, 10 ms at most; a time of
// the future says nothing.
inline bool is_settled(uint64_t change_time) {
  constexpr uint64_t kTwoSteps = 20000000;
  struct timespec now;
  return clock_gettime(CLOCK_REALTIME, &now) == 0 &&
         nanoseconds(now) > change_time &&
         nanoseconds(now) - change_time > kTwoSteps;
}

inline FileStamp stamp_of(const struct stat& facts) {
  const uint64_t change_time = nanoseconds(facts.st_ctim);
  return {version_of(facts), change_time, is_settled(change_time)};
}

// False when the system does not say, or when it is not an ordinary file.
inline bool read_version(int descriptor, FileVersion& version) {
  struct stat facts;
  if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) return false;
  version = version_of(facts);
  return true;
}

}  // namespace zenfo::platform
