// A lock on an open file, against other processes that use this library.
//
// Tested by tests/unit/platform/posix_copy_test.cpp
#pragma once

#include <errno.h>
#include <sys/file.h>

#include "platform/posix/descriptor.h"

namespace zenfo::platform {

// Locks a file as long as its descriptor is open. On file systems without
// locks, and against programs that do not use them, only the comparison of
// versions helps.
inline bool is_locked_by_others(int descriptor) {
  return uninterrupted([&] { return flock(descriptor, LOCK_EX | LOCK_NB); }) !=
             0 &&
         errno == EWOULDBLOCK;
}

}  // namespace zenfo::platform
