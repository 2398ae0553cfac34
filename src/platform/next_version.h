// The next version of a file. It is written beside the file and replaces it in
// one step, so that readers find the old bytes or the new ones, never a
// mixture.
//
// Only where nothing is lost by it: an ordinary file with one name that belongs
// to the user, in a folder where files can be created; natively without access
// lists or other attributes, which Windows copies to the new file.
//
// Tested by tests/unit/platform/next_version_test.cpp
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"

namespace zenfo::platform {

class NextVersion {
 public:
  NextVersion();
  // Deletes a new version that did not replace the file.
  ~NextVersion();
  NextVersion(const NextVersion&) = delete;
  NextVersion& operator=(const NextVersion&) = delete;

  // Makes an empty file beside `path`, natively with its owner and rights, and
  // locks `path` there as OutputFile::open_unchanged() does. kFailed: the file
  // can only be written in place. kChanged: it no longer has that version.
  Opened begin(const char* path, const FileVersion& expected) {
    discard();
    const Opened opened = lock_and_create(path, expected);
    // If the lock stayed, this run could not write in place either.
    if (opened != Opened::kOpen) discard();
    return opened;
  }
  bool begun() const { return !fresh_.empty(); }
  // The file to write.
  const char* path() const { return fresh_.c_str(); }
  // Replaces the old file by the written one. After kChanged or kFailed the old
  // one is left and the new one deleted.
  Opened take_place();

 private:
  struct State;
  Opened lock_and_create(const char* path, const FileVersion& expected);
  void discard();

  std::unique_ptr<State> state_;
  std::string fresh_;  // empty: none
};

}  // namespace zenfo::platform
