// Matches that would not change: nothing is written, counted or kept.
#include "shared/session/unchanged.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::host {
namespace {

namespace fs = std::filesystem;
using test::Outcome;
using ::testing::HasSubstr;

SearchOptions literal(const std::string& text, bool ignore_case = false) {
  SearchOptions search;
  search.texts = {text};
  search.ignore_case = ignore_case;
  return search;
}

TEST(Unchanged, IsRuledOutByMostTexts) {
  EXPECT_FALSE(stays_as(literal("plum"), "pear"));
  EXPECT_FALSE(stays_as(literal("plum"), "Plum"));
  EXPECT_FALSE(stays_as(literal("plum", true), "pear"));
  EXPECT_FALSE(stays_as(literal("plum"), ""));
  EXPECT_FALSE(stays_in_case(literal("plum"), true));
  EXPECT_FALSE(stays_in_case(literal("Plum"), false));
}

TEST(Unchanged, IsTheSameText) {
  const Stays same = stays_as(literal("plum", true), "Plum");
  ASSERT_TRUE(same);
  EXPECT_TRUE(same("Plum"));
  EXPECT_FALSE(same("plum"));
  const Stays upper = stays_in_case(literal("plum", true), true);
  ASSERT_TRUE(upper);
  EXPECT_TRUE(upper("PLUM 1\xC3\xA4"));
  EXPECT_FALSE(upper("PLUm"));
}

class UnchangedFiles : public ::testing::Test {
 protected:
  UnchangedFiles() {
    folder_.file("same", "PLUM pie\n");
    folder_.file("mixed", "Plum PLUM plum\n");
    for (const char* name : {"same", "mixed"}) {
      fs::last_write_time(folder_.path(name), long_ago_);
    }
    // With the precision that the system stores.
    long_ago_ = fs::last_write_time(folder_.path("same"));
  }

  Outcome run(std::vector<std::string> arguments) const {
    return test::run_zenfo(std::move(arguments), folder_.path());
  }
  std::string bytes(const std::string& name) const {
    return test::read_file(folder_.path(name));
  }
  bool is_touched(const std::string& name) const {
    return fs::last_write_time(folder_.path(name)) != long_ago_;
  }

  fs::file_time_type long_ago_ =
      fs::file_time_type::clock::now() - std::chrono::hours(1000);
  test::TempFolder folder_;
};

TEST_F(UnchangedFiles, StayUntouched) {
  const std::vector<std::vector<std::string>> commands = {
      {"replace", "-y", "--no-backup", "PLUM", "PLUM", "same"},
      {"replace", "-yi", "--no-backup", "plum", "PLUM", "same"},
      {"replace", "-y", "--no-backup", "--pattern", "\"PLUM|plum\"", "PLUM",
       "same"},
      {"replace", "-y", "--no-backup", "--between", "PL", "UM", "PLUM", "same"},
      {"replace", "-y", "--no-backup", "--pairs", "pairs", "same"},
      {"replace", "-y", "--no-backup", "--values", "values", "PLUM", "same"},
      {"case", "-yi", "--no-backup", "--upper", "plum", "same"},
      {"case", "-y", "--no-backup", "--upper", "PLUM", "same"}};
  folder_.file("pairs", "PLUM\tPLUM\npie\tpie\n");
  folder_.file("values", "PLUM\n");
  for (const auto& command : commands) {
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.status, 1) << testing::PrintToString(command);
    EXPECT_EQ(outcome.err, "") << testing::PrintToString(command);
    EXPECT_FALSE(is_touched("same")) << testing::PrintToString(command);
  }
}

TEST_F(UnchangedFiles, AreNotCountedBesideOthers) {
  EXPECT_EQ(
      run({"replace", "-yi", "--no-backup", "plum", "PLUM", "same", "mixed"}),
      (Outcome{"1 file changed, 2 matches replaced\n", "", 0}));
  EXPECT_EQ(bytes("mixed"), "PLUM PLUM PLUM\n");
  EXPECT_TRUE(is_touched("mixed"));
  EXPECT_FALSE(is_touched("same"));
}

TEST_F(UnchangedFiles, AreNotCountedByChangesOfCase) {
  EXPECT_EQ(run({"case", "-yi", "--no-backup", "--lower", "plum", "mixed"}).out,
            "1 file changed, 2 matches changed\n");
  EXPECT_EQ(bytes("mixed"), "plum plum plum\n");
}

TEST_F(UnchangedFiles, AreNotCountedByADryRun) {
  EXPECT_THAT(
      run({"replace", "--dry-run", "-i", "plum", "PLUM", "same", "mixed"}).err,
      HasSubstr("1 file would change, 2 matches would be replaced"));
  EXPECT_EQ(run({"replace", "--dry-run", "PLUM", "PLUM", "same"}).status, 1);
}

TEST_F(UnchangedFiles, LeaveOtherPairsToTheRun) {
  folder_.file("pairs", "PLUM\tPLUM\npie\ttart\n");
  EXPECT_EQ(
      run({"replace", "-y", "--no-backup", "--pairs", "pairs", "same"}).out,
      "1 file changed, 1 match replaced\n");
  EXPECT_EQ(bytes("same"), "PLUM tart\n");
}

}  // namespace
}  // namespace zenfo::host
