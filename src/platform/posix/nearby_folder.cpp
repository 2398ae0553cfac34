// The folder of the last path. It is opened only when two paths in a row are in
// it: then a walk in random order costs no more than plain paths do, and a walk
// folder by folder does not resolve the folder for every file.
//
// Tested by tests/unit/platform/files_test.cpp,
// tests/unit/platform/posix_files_test.cpp
#include "platform/posix/nearby_folder.h"

#include <fcntl.h>
#include <limits.h>

#include <cstring>
#include <string_view>

namespace zenfo::platform {

NearbyFolder::NearbyFolder() : state_(std::make_unique<State>()) {}
NearbyFolder::~NearbyFolder() = default;

Place locate(const char* path, NearbyFolder* nearby) {
  const Place plain{AT_FDCWD, path};
  if (nearby == nullptr) return plain;
  const std::string_view text(path);
  const size_t cut = text.rfind('/') + 1;  // 0 when there is none
  // A path that is too long for the system must fail by its bare name as well.
  if (cut == 0 || cut == text.size() || text.size() >= PATH_MAX) return plain;

  NearbyFolder::State& state = nearby->state();
  const std::string_view folder = text.substr(0, cut);
  if (state.folder != folder) {
    state.folder = folder;
    state.handle.reset(-1);
    return plain;
  }
  if (!state.handle.is_open()) {
    state.handle.reset(
        open(state.folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  }
  if (!state.handle.is_open()) return plain;
  return {state.handle.get(), path + cut};
}

}  // namespace zenfo::platform
