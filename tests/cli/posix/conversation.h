// Talks with the command over a terminal.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace zenfo::test {

// A command with a terminal for input and errors, and a file for output;
// without that file, output goes to the terminal too.
class Conversation {
 public:
  Conversation(std::vector<std::string> arguments, const std::string& folder,
               const std::string& output_file);
  ~Conversation();
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  // What the command writes up to and including `end`, or all if it ends
  // before.
  std::string hear(const std::string& end);
  void say(const std::string& text);
  // The exit status, once it has ended.
  int wait();

 private:
  pid_t child_ = -1;
  int terminal_ = -1;
};

}  // namespace zenfo::test
