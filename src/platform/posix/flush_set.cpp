// Tested by tests/unit/platform/flush_set_test.cpp
#include "platform/flush_set.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>

#include "platform/posix/descriptor.h"

namespace zenfo::platform {

// One open file of each file system: flushing through it flushes all of it.
struct FlushSet::State {
  std::map<dev_t, Descriptor> file_systems;
  bool failed = false;
};

FlushSet::FlushSet() : state_(std::make_unique<State>()) {}
FlushSet::~FlushSet() = default;

void FlushSet::add(const char* path) {
  struct stat facts;
  if (stat(path, &facts) != 0) return;
  Descriptor& file = state_->file_systems[facts.st_dev];
  if (file.is_open()) return;
  file.reset(open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (file.is_open()) return;
  // It may be possible to write it but not to read it.
  file.reset(open(path, O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (!file.is_open()) state_->failed = true;
}

bool FlushSet::flush() {
  bool flushed = !state_->failed;
  for (const auto& [device, file] : state_->file_systems) {
    flushed = file.is_open() && syncfs(file.get()) == 0 && flushed;
  }
  *state_ = {};
  return flushed;
}

}  // namespace zenfo::platform
