// The folder of the path asked last. It is opened only when a second path in a
// row lies in it: a walk in random order then costs no more than plain paths,
// a walk folder by folder saves resolving the folder for every file.
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
  // A path too long for the system fails by bare name as well.
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
