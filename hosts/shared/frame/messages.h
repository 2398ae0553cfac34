// Messages to the user from the code that hosts share.
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <string_view>

namespace zenfo::host {

// Each message is one line: a subject, which may be empty, and a reason.
class Messages {
 public:
  virtual ~Messages() = default;
  // Something failed, and the work continues without it.
  virtual void complain(std::string_view subject, std::string_view reason) = 0;
  // Something the user should know that is not an error.
  virtual void remark(std::string_view subject, std::string_view reason) = 0;
};

}  // namespace zenfo::host
