// Runs the command as a process that gets a signal at a chosen moment.
#pragma once

#include <string>
#include <vector>

#include "cli/process.h"

namespace zenfo::test {

struct Signalled {
  std::string call;  // the system call ahead; empty: the command ended first
  int calls = 0;     // made in all, of those counted
  Outcome outcome;
};

// False where a process may not trace another.
bool can_trace();

enum class Calls { kChanging, kAll };

// Runs the command in `folder` and sends it a signal right before the system
// call that would be its `nth`, from 1 on, to change a file, a folder or an
// entry of one, or its `nth` call of all. SIGKILL keeps it from making that
// call.
Signalled signal_zenfo_before(int nth, int signal,
                              std::vector<std::string> arguments,
                              const std::string& folder,
                              Calls calls = Calls::kChanging);

}  // namespace zenfo::test
