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

}  // namespace
}  // namespace zenfo::test
