// A system handle that closes itself.
//
// Tested by tests/cli/input_test.cpp, tests/cli/replace_test.cpp
#pragma once

#include <windows.h>

namespace zenfo::host {

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (valid()) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace zenfo::host
