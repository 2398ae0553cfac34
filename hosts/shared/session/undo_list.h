// The library's undo list, as a run and its undoing read it.
//
// Tested by tests/cli/posix_fault_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "zenfofr130.h"

namespace zenfo::host {

class UndoList {
 public:
  // Reads the file that is the library's undo list. False when it is not known
  // whether all of it was read: then count() is 0, and nothing may be concluded
  // from that.
  bool load(const std::string& file);

  // Of the list as it is now: undoing shortens it.
  static uint32_t count();
  // A file that was changed, and its safe copy.
  std::string path(uint32_t index) { return text(GetOrigFile, index); }
  std::string copy(uint32_t index) { return text(GetSafeFile, index); }

 private:
  using Accessor = decltype(&GetOrigFile);
  std::string text(Accessor accessor, uint32_t index);

  std::vector<char> buffer_;  // no text of the list is longer
};

}  // namespace zenfo::host
