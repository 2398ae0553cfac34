// Files and folders that are to survive a loss of power.
//
// Natively a whole file system is flushed at once, which costs hardly more for
// a thousand files than for one. Windows flushes file by file.
//
// Tested by tests/unit/platform/flush_set_test.cpp
#pragma once

#include <memory>

namespace zenfo::platform {

class FlushSet {
 public:
  FlushSet();
  ~FlushSet();
  FlushSet(const FlushSet&) = delete;
  FlushSet& operator=(const FlushSet&) = delete;

  // Adds a file that was written or created. One that is gone needs no flush;
  // one that cannot be opened makes the next flush fail.
  void add(const char* path);
  // Waits until all added files are on their disks, names included, and forgets
  // them. False when the system reports that something was lost. Other files
  // may be flushed as well.
  bool flush();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace zenfo::platform
