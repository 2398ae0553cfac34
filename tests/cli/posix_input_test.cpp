// Standard input, pipes and devices, as only Linux has them.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "cli/posix/conversation.h"
#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

class PosixInput : public ::testing::Test {
 protected:
  Outcome run(const std::vector<std::string>& arguments) const {
    return run_zenfo(arguments, folder_.path());
  }
  // Writes as soon as there is a reader.
  std::thread write_later(const std::string& name, const std::string& text) {
    const std::string path = folder_.path(name);
    mkfifo(path.c_str(), 0600);
    return std::thread([path, text] { write_file(path, text); });
  }

  TempFolder folder_;
};

TEST_F(PosixInput, TakesPipesGivenAsFiles) {
  std::thread one = write_later("one", "a plum\n");
  std::thread two = write_later("two", "no\ntwo plums\n");
  EXPECT_EQ(run({"find", "-n", "plum", "one", "two", "/dev/null"}),
            (Outcome{"one:1:a plum\ntwo:2:two plums\n", "", 0}));
  one.join();
  two.join();
}

TEST_F(PosixInput, CountsPipes) {
  std::thread one = write_later("one", "a plum\n");
  EXPECT_EQ(run({"count", "--json", "one"}).out,
            "{\"path\":\"one\",\"bytes\":7,\"words\":2,\"lines\":0}\n");
  one.join();
}

TEST_F(PosixInput, IsNotReadFromATerminalThatNobodyNamed) {
  folder_.file("a", "plum\n");
  Conversation search({"find", "--color=never", "plum"}, folder_.path(), "");
  EXPECT_EQ(search.hear("\n\n\n"), "a:plum\n");
  EXPECT_EQ(search.wait(), 0);
  Conversation count({"count"}, folder_.path(), "");
  EXPECT_EQ(count.hear("\n\n\n"),
            "zenfo: count: the FILE to count is missing; see 'zenfo help "
            "count'\n");
  EXPECT_EQ(count.wait(), 2);
}

TEST_F(PosixInput, NamesWhatCannotBeRead) {
  Start start;
  start.arguments = {"find", "plum"};
  start.input_file = folder_.path();
  EXPECT_EQ(run_zenfo(start),
            (Outcome{"", "zenfo: (standard input): Is a directory\n", 2}));
}

TEST_F(PosixInput, LeavesNothingBehind) {
  const TempFolder temporary;
  Start start;
  start.arguments = {"find", "-q", "plum"};
  start.input_file = folder_.file("a", "plum\n");
  start.temporary_folder = temporary.path();
  EXPECT_EQ(run_zenfo(start), (Outcome{"", "", 0}));
  EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

}  // namespace
}  // namespace zenfo::test
