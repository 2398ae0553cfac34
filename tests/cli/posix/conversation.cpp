#include "cli/posix/conversation.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zenfo::test {

Conversation::Conversation(std::vector<std::string> arguments,
                           const std::string& folder,
                           const std::string& output_file) {
  arguments.insert(arguments.begin(), "zenfo");
  std::vector<char*> texts;
  for (std::string& argument : arguments) texts.push_back(argument.data());
  texts.push_back(nullptr);
  child_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
  if (child_ != 0) return;
  if (!output_file.empty()) {
    dup2(open(output_file.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
  }
  if (chdir(folder.c_str()) == 0) execv(ZENFO_PROGRAM, texts.data());
  _exit(127);
}

Conversation::~Conversation() { close(terminal_); }

std::string Conversation::hear(const std::string& end) {
  std::string heard;
  char byte;
  while (!heard.ends_with(end) && read(terminal_, &byte, 1) == 1) {
    heard += byte;
  }
  std::erase(heard, '\r');
  return heard;
}

void Conversation::say(const std::string& text) {
  EXPECT_EQ(write(terminal_, text.data(), text.size()),
            static_cast<ssize_t>(text.size()));
}

int Conversation::wait() {
  hear("\n\n\n");  // to the end
  int state = 0;
  waitpid(child_, &state, 0);
  return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
}

}  // namespace zenfo::test
