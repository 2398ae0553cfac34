// zenfo find from end to end: what only Linux can show. Questions are answered
// over a terminal whose other end is the test.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cli/posix/conversation.h"
#include "cli/process.h"
#include "support/pages_in_memory.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using testing::HasSubstr;

class PosixFind : public ::testing::Test {
 protected:
  PosixFind() {
    folder_.file("a", "one plum\ntwo plum plums\n");
    folder_.file("b", "three plum");
  }

  // Answers the questions of a search one after the other. Returns what the
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

// Large files are mapped.
TEST_F(PosixFind, SaysThatAFileHasBeenShortenedWhileItWasShown) {
  const std::string filler(size_t{3} << 20, '\n');
  const std::string path =
      folder_.file("large", "first plum\n" + filler + "last plum\n");
  const std::string out = folder_.path("out");
  Conversation conversation({"find", "--ask", "plum", "large", "a"},
                            folder_.path(), out);
  EXPECT_THAT(conversation.hear("stop: "), HasSubstr("first >>>plum<<<"));
  std::filesystem::resize_file(path, 11);
  conversation.say("y\n");
  EXPECT_THAT(conversation.hear("shown"),
              HasSubstr("zenfo: large: has been shortened while it was shown"));
  EXPECT_EQ(conversation.wait(), 2);
}

TEST_F(PosixFind, NamesALargeFileWithoutReadingAllOfIt) {
  constexpr size_t kSize = size_t{128} << 20;
  const std::string path = folder_.file("large", "one plum\n");
  std::filesystem::resize_file(path, kSize);
  EXPECT_EQ(run_zenfo({"find", "-l", "plum", "large"}, folder_.path()).out,
            "large\n");
  EXPECT_LT(percent_in_memory(path, kSize), 25);
}

TEST_F(PosixFind, AsksOnATerminalOnly) {
  EXPECT_EQ(run_zenfo({"find", "--ask", "plum"}, folder_.path()).status, 2);
}

}  // namespace
}  // namespace zenfo::test
