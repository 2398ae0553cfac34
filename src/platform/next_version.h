// The next version of a file: written beside it, it takes its place in one
// step, so that whoever looks finds the old bytes or the new ones, never half.
//
// Only where nothing is lost by it: natively an ordinary file with one name
// that belongs to the user, without access lists or other attributes, in a
// folder that takes another file. Windows writes every file in place.
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
  // Deletes what did not take the file's place.
  ~NextVersion();
  NextVersion(const NextVersion&) = delete;
  NextVersion& operator=(const NextVersion&) = delete;

  // Makes an empty file beside `path`, with its owner and rights, and locks
  // `path` as OutputFile::open_unchanged() does. kFailed: it has to be written
  // in place, if at all. kChanged: it is no longer of that version.
  Opened begin(const char* path, const FileVersion& expected);
  bool begun() const { return !fresh_.empty(); }
  // The file to write.
  const char* path() const { return fresh_.c_str(); }
  // The written file takes the place of the old one. kChanged or kFailed leave
  // the old one, and the new one is deleted.
  Opened take_place();

 private:
  struct State;
  Opened lock_and_create(const char* path, const FileVersion& expected);
  void discard();

  std::unique_ptr<State> state_;
  std::string fresh_;  // empty: none
};

}  // namespace zenfo::platform
