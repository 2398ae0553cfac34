// What the parts that hosts share have to tell the user.
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <string_view>

namespace zenfo::host {

// Each message is one line of a subject, which may be empty, and a reason.
class Messages {
 public:
  virtual ~Messages() = default;
  // Something went wrong, and the work goes on without it.
  virtual void complain(std::string_view subject, std::string_view reason) = 0;
  // Worth telling, but no error.
  virtual void remark(std::string_view subject, std::string_view reason) = 0;
};

}  // namespace zenfo::host
