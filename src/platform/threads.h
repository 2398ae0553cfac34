// What threads of the library need from the system.
//
// Tested by tests/unit/platform/threads_test.cpp
#pragma once

#include <cstddef>
#include <memory>

namespace zenfo::platform {

// How many processors the process may use; at least 1.
size_t processors();

// While it lives, threads that are started get no signals of the process: these
// stay with the threads of the host, as if there were no others.
class SignalsKeptAway {
 public:
  SignalsKeptAway();
  ~SignalsKeptAway();
  SignalsKeptAway(const SignalsKeptAway&) = delete;
  SignalsKeptAway& operator=(const SignalsKeptAway&) = delete;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace zenfo::platform
