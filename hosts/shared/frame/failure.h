// The exceptions that end a command, or another task of a host, early.
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <string>

namespace zenfo::host {

// Thrown when the work cannot continue. The reason is a text for people,
// without a full stop.
struct Failure {
  std::string subject;
  std::string reason;
};

// Thrown because the user asked to stop.
struct Stopped {};

}  // namespace zenfo::host
