// replace, case and undo from end to end, on both systems.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;

// For the commands started from here: where they keep their runs, and that no
// terminal answers their questions.
void prepare_commands(const std::string& state_folder) {
#ifdef _WIN32
  _putenv_s("LOCALAPPDATA", state_folder.c_str());
  ASSERT_NE(std::freopen("NUL", "r", stdin), nullptr);
#else
  setenv("XDG_STATE_HOME", state_folder.c_str(), 1);
  ASSERT_NE(std::freopen("/dev/null", "r", stdin), nullptr);
#endif
}

class Change : public ::testing::Test {
 protected:
  Change() {
    prepare_commands(state_.path());
    one_ = folder_.file("sub/one.txt", "a plum\r\nplums\r\n");
    two_ = folder_.file("two.txt", "no fruit");
    three_ = folder_.file("three.txt", "plum");
  }

  Outcome run(std::vector<std::string> arguments) const {
    return run_zenfo(std::move(arguments), folder_.path());
  }
  std::string texts() const {
    return read_file(one_) + '|' + read_file(two_) + '|' + read_file(three_);
  }

  TempFolder state_;
  TempFolder folder_;
  std::string one_, two_, three_;
};

constexpr char kBefore[] = "a plum\r\nplums\r\n|no fruit|plum";

TEST_F(Change, ReplacedTextsComeBack) {
  const Outcome outcome = run({"replace", "-ry", "plum", "fig", "."});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("2 files changed, 3 matches replaced"));
  EXPECT_EQ(texts(), "a fig\r\nfigs\r\n|no fruit|fig");
  EXPECT_THAT(run({"undo", "--list"}).out, HasSubstr("2 files"));
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(texts(), kBefore);
}

TEST_F(Change, ChangedLettersComeBack) {
  EXPECT_EQ(run({"case", "-ryw", "--upper", "plum", "."}).status, 0);
  EXPECT_EQ(texts(), "a PLUM\r\nplums\r\n|no fruit|PLUM");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(texts(), kBefore);
}

TEST_F(Change, NothingIsTouchedUnseen) {
  EXPECT_EQ(run({"replace", "-r", "plum", "fig", "."}).status, 2);
  EXPECT_EQ(run({"replace", "-rn", "plum", "fig", "."}).status, 0);
  EXPECT_EQ(texts(), kBefore);
  EXPECT_EQ(run({"undo"}).status, 1) << "there is no run";
}

TEST_F(Change, TakesFilesWithoutZeroBytesForText) {
  const std::string page = folder_.file("page.txt", "\x01\fplum\x1A");
  EXPECT_EQ(run({"replace", "-y", "plum", "fig", "page.txt"}).status, 0);
  EXPECT_EQ(read_file(page),
            "\x01\f"
            "fig\x1A");
  EXPECT_EQ(run({"case", "-y", "--upper", "fig", "page.txt"}).status, 0);
  EXPECT_EQ(read_file(page),
            "\x01\f"
            "FIG\x1A");
}

// Wherever the zero byte stands, what follows it would be lost.
TEST_F(Change, LeavesFilesWithZeroBytesAsTheyAre) {
  const std::string near = "plum\0plum"s;
  const std::string far = "plum" + std::string(300'000, '\n') + '\0';
  const std::string near_path = folder_.file("near.bin", near);
  const std::string far_path = folder_.file("far.bin", far);
  folder_.file("other.bin", "no fruit\0"s);
  const Outcome outcome = run({"replace", "-y", "plum", "fig", "near.bin",
                               "far.bin", "other.bin", "three.txt"});
  EXPECT_THAT(outcome.out, HasSubstr("1 file changed, 1 match replaced\n"
                                     "2 files skipped (2: binary)\n"));
  EXPECT_EQ(outcome.err,
            "zenfo: near.bin: skipped: binary\n"
            "zenfo: far.bin: skipped: binary\n");
  EXPECT_EQ(outcome.status, 2);
  const std::string reason = "what follows its first zero byte would be lost";
  EXPECT_EQ(run({"replace", "-y", "--binary", "plum", "fig", "near.bin"}),
            (Outcome{"0 files changed\n1 file skipped (1: " + reason + ")\n",
                     "zenfo: near.bin: skipped: " + reason + '\n', 2}));
  EXPECT_EQ(run({"replace", "-n", "plum", "fig", "near.bin"}),
            (Outcome{"", "zenfo: near.bin: skipped: binary\n", 2}));
  EXPECT_EQ(read_file(near_path), near);
  EXPECT_EQ(read_file(far_path), far);
  EXPECT_EQ(read_file(three_), "fig");
}

TEST_F(Change, ChangesTheCaseInBinaryFilesOnDemand) {
  const std::string path = folder_.file("near.bin", "plum\0plum"s);
  EXPECT_EQ(run({"case", "-y", "--upper", "plum", "near.bin"}).status, 2);
  EXPECT_EQ(read_file(path), "plum\0plum"s);
  EXPECT_EQ(
      run({"case", "-y", "--upper", "--binary", "plum", "near.bin"}).status, 0);
  EXPECT_EQ(read_file(path), "PLUM\0PLUM"s);
}

}  // namespace
}  // namespace zenfo::test
