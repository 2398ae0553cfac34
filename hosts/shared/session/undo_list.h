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
  // Reads the library's undo file. False when it may not have been read
  // completely; count() is then 0 and proves nothing.
  bool load(const std::string& file);

  // The current length of the list; undoing shortens it.
  static uint32_t count();
  // A file that was changed, and its safe copy.
  std::string path(uint32_t index) { return text(GetOrigFile, index); }
  std::string copy(uint32_t index) { return text(GetSafeFile, index); }

 private:
  using Accessor = decltype(&GetOrigFile);
  std::string text(Accessor accessor, uint32_t index);

  std::vector<char> buffer_;  // as large as the file, so that any text fits
};

}  // namespace zenfo::host
