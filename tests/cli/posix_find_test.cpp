// zenfo find from end to end: what only Linux can show. Questions are answered
// over a terminal that the test holds the other end of.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

// A command with a terminal for input and errors, and a file for output.
class Conversation {
 public:
  Conversation(std::vector<std::string> arguments, const std::string& folder,
               const std::string& output_file) {
    arguments.insert(arguments.begin(), "zenfo");
    std::vector<char*> texts;
    for (std::string& argument : arguments) texts.push_back(argument.data());
    texts.push_back(nullptr);
    child_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (child_ != 0) return;
    dup2(open(output_file.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
    if (chdir(folder.c_str()) == 0) execv(ZENFO_PROGRAM, texts.data());
    _exit(127);
  }
  ~Conversation() { close(terminal_); }

  // What the command says up to and with `end`; less when it ends before.
  std::string hear(const std::string& end) {
    std::string heard;
    char byte;
    while (!heard.ends_with(end) && read(terminal_, &byte, 1) == 1) {
      heard += byte;
    }
    std::erase(heard, '\r');
    return heard;
  }
  void say(const std::string& text) {
    EXPECT_EQ(write(terminal_, text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
  }
  int wait() {
    hear("\n\n\n");  // to the end
    int state = 0;
    waitpid(child_, &state, 0);
    return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
  }

 private:
  pid_t child_ = -1;
  int terminal_ = -1;
};

class PosixFind : public ::testing::Test {
 protected:
  PosixFind() {
    folder_.file("a", "one plum\ntwo plum plums\n");
    folder_.file("b", "three plum");
  }

  // Answers the questions of a search one after the other. What the
  // command wrote.
  std::string answer(std::vector<std::string> arguments,
                     const std::vector<std::string>& answers, int status) {
    arguments.insert(arguments.begin(), {"find", "--ask"});
    const std::string out = folder_.path("out");
    write_file(out, "");
    Conversation conversation(arguments, folder_.path(), out);
    for (const std::string& text : answers) {
      asked_.push_back(conversation.hear("stop: "));
      conversation.say(text);
    }
    EXPECT_EQ(conversation.wait(), status);
    return read_file(out);
  }

  TempFolder folder_;
  std::vector<std::string> asked_;
};

TEST_F(PosixFind, AsksForEachMatchInItsLine) {
  EXPECT_EQ(
      answer({"-ob", "plum", "a", "b"}, {"y\n", "n\n", "yes\n", "no\n"}, 0),
      "a:4:plum\na:18:plum\n");
  ASSERT_EQ(asked_.size(), 4u);
  EXPECT_EQ(asked_[0], "a:1: one >>>plum<<<\nTake it? yes, no, all, stop: ");
  EXPECT_EQ(asked_[1],
            "y\na:2: two >>>plum<<< plums\n"
            "Take it? yes, no, all, stop: ");
  EXPECT_EQ(asked_[3],
            "yes\nb:1: three >>>plum<<<\n"
            "Take it? yes, no, all, stop: ");
}

TEST_F(PosixFind, TakesAllLaterMatchesOnDemand) {
  EXPECT_EQ(answer({"-ob", "plum", "a", "b"}, {"n\n", "a\n"}, 0),
            "a:13:plum\na:18:plum\nb:6:plum\n");
}

TEST_F(PosixFind, StopsOnDemandWithWhatWasTaken) {
  EXPECT_EQ(answer({"-ob", "plum", "a", "b"}, {"y\n", "s\n"}, 0), "a:4:plum\n");
  EXPECT_EQ(answer({"-ob", "plum", "a", "b"}, {"stop\n"}, 1), "");
  EXPECT_EQ(answer({"-ob", "plum", "a", "b"}, {"y\n", "\x04"}, 0),
            "a:4:plum\n");
}

TEST_F(PosixFind, AsksAgainAfterAnyOtherAnswer) {
  EXPECT_EQ(answer({"plum", "b"}, {"perhaps\n", "y\n"}, 0), "three plum\n");
  EXPECT_EQ(asked_[1], "perhaps\nAnswer yes, no, all or stop: ");
}

TEST_F(PosixFind, NamesOnlyFilesOfWhichMatchesWereTaken) {
  EXPECT_EQ(answer({"-l", "plum", "a", "b"}, {"n\n", "n\n", "n\n", "y\n"}, 0),
            "b\n");
  EXPECT_EQ(answer({"-c", "plum", "a", "b"}, {"y\n", "y\n", "y\n", "n\n"}, 0),
            "a:2\nb:0\n");
}

TEST_F(PosixFind, AsksForEachOfSeveralTexts) {
  EXPECT_EQ(answer({"-ob", "-e", "one", "-e", "plum", "a", "b"},
                   {"y\n", "n\n", "s\n"}, 0),
            "a:0:one\n");
  EXPECT_EQ(answer({"-ob", "-e", "plum", "-e", "one", "a"},
                   {"y\n", "n\n", "n\n", "y\n"}, 0),
            "0:one\n4:plum\n");
}

TEST_F(PosixFind, EndsWhenItIsInterruptedWhileItAsks) {
  EXPECT_EQ(answer({"plum", "a", "b"}, {"y\n", "\x03"}, 130), "");
}

TEST_F(PosixFind, AsksOnATerminalOnly) {
  EXPECT_EQ(run_zenfo({"find", "--ask", "plum"}, folder_.path()).status, 2);
}

}  // namespace
}  // namespace zenfo::test
