// Tested by tests/unit/platform/flush_set_test.cpp
#include "platform/flush_set.h"

#include <set>
#include <string>

#include "platform/win32/system.h"

namespace zenfo::platform {

struct FlushSet::State {
  std::set<std::string> files;
};

namespace {

bool flush_file(const char* path) {
  const HANDLE file =
      CreateFileA(path, GENERIC_WRITE,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool flushed = FlushFileBuffers(file) != 0;
  CloseHandle(file);
  return flushed;
}

// The copy of a read-only file is read-only, and only what may be written can
// be flushed.
bool flush_read_only_file(const char* path) {
  const DWORD attributes = GetFileAttributesA(path);
  if (attributes == INVALID_FILE_ATTRIBUTES) return true;  // gone
  if ((attributes & FILE_ATTRIBUTE_READONLY) == 0) return false;
  SetFileAttributesA(path, attributes & ~FILE_ATTRIBUTE_READONLY);
  const bool flushed = flush_file(path);
  SetFileAttributesA(path, attributes);
  return flushed;
}

}  // namespace

FlushSet::FlushSet() : state_(std::make_unique<State>()) {}
FlushSet::~FlushSet() = default;

void FlushSet::add(const char* path) { state_->files.emplace(path); }

bool FlushSet::flush() {
  bool flushed = true;
  for (const std::string& file : state_->files) {
    const char* path = file.c_str();
    flushed = (flush_file(path) || flush_read_only_file(path)) && flushed;
  }
  state_->files.clear();
  return flushed;
}

}  // namespace zenfo::platform
