// Where a path is looked up: from a folder that is already open, by its bare
// name, or from the working folder.
//
// Tested by tests/unit/platform/files_test.cpp,
// tests/unit/platform/posix_files_test.cpp
#pragma once

#include <string>

#include "platform/files.h"
#include "platform/posix/descriptor.h"

namespace zenfo::platform {

struct NearbyFolder::State {
  std::string folder;  // up to and with its last slash
  Descriptor handle;   // opened when a second path is in the folder
};

// The arguments for the "...at" calls. Valid as long as the path and the
// folder.
struct Place {
  int folder;
  const char* name;
};

Place locate(const char* path, NearbyFolder* nearby);

}  // namespace zenfo::platform
