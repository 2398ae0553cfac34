// The version of an open file.
//
// Tested by tests/unit/platform/streams_test.cpp
#pragma once

#include "platform/files.h"
#include "platform/win32/system.h"

namespace zenfo::platform {

inline uint64_t joined(DWORD high, DWORD low) {
  return uint64_t{high} << 32 | low;
}

// False when the system does not say, or when it is not an ordinary file.
inline bool read_version(HANDLE file, FileVersion& version) {
  BY_HANDLE_FILE_INFORMATION facts;
  if (GetFileInformationByHandle(file, &facts) == 0 ||
      (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return false;
  }
  version = {facts.dwVolumeSerialNumber,
             joined(facts.nFileIndexHigh, facts.nFileIndexLow),
             joined(facts.nFileSizeHigh, facts.nFileSizeLow),
             joined(facts.ftLastWriteTime.dwHighDateTime,
                    facts.ftLastWriteTime.dwLowDateTime)};
  return true;
}

}  // namespace zenfo::platform
