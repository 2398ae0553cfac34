// Runs the command as a process that receives a signal at a chosen moment.
#pragma once

#include <string>
#include <vector>

#include "cli/process.h"

namespace zenfo::test {

struct Signalled {
  std::string call;  // the next system call; empty: the command ended first
  int calls = 0;     // number of counted calls made
  Outcome outcome;
};

// False if processes may not trace each other.
bool can_trace();

enum class Calls { kChanging, kAll };

// Runs the command in `folder` and sends it a signal right before its `nth`
// system call, counted from 1, that changes a file, a folder or a folder entry,
// or its `nth` of all calls. After SIGKILL that call is not made.
Signalled signal_zenfo_before(int nth, int signal,
                              std::vector<std::string> arguments,
                              const std::string& folder,
                              Calls calls = Calls::kChanging);

}  // namespace zenfo::test
