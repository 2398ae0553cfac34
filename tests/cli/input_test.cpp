// Standard input searched and counted.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using testing::HasSubstr;

class Input : public ::testing::Test {
 protected:
  Input() { folder_.file("a.txt", "a plum of the folder\n"); }

  Outcome run(std::vector<std::string> arguments,
              const std::string& input) const {
    Start start;
    start.arguments = std::move(arguments);
    start.folder = folder_.path();
    start.input_file = input_.file("input", input);
    return run_zenfo(start);
  }

  TempFolder folder_;
  TempFolder input_;
};

TEST_F(Input, IsSearchedWithoutAnyPath) {
  EXPECT_EQ(run({"find", "plum"}, "one\ntwo plums\n"),
            (Outcome{"two plums\n", "", 0}));
  EXPECT_EQ(run({"find", "plum"}, ""), (Outcome{"", "", 1}));
  EXPECT_EQ(run({"find", "-e", "plum", "-e", "one"}, "one\ntwo plums\n"),
            (Outcome{"one\ntwo plums\n", "", 0}));
}

TEST_F(Input, IsSearchedUnderItsName) {
  EXPECT_EQ(run({"find", "-n", "plum", "a.txt", "-"}, "two plums\n"),
            (Outcome{"a.txt:1:a plum of the folder\n"
                     "(standard input):1:two plums\n",
                     "", 0}));
  EXPECT_EQ(run({"find", "-l", "plum"}, "plum\n"),
            (Outcome{"(standard input)\n", "", 0}));
  EXPECT_EQ(run({"find", "-Hc", "plum", "-"}, "plum\n\nplum"),
            (Outcome{"(standard input):2\n", "", 0}));
  EXPECT_THAT(run({"find", "--json", "plum"}, "plum\n").out,
              HasSubstr("\"(standard input)\""));
}

TEST_F(Input, KeepsItsBytes) {
  EXPECT_EQ(run({"find", "-b", "plum"}, "\r\n\x1A\r\nplum\r\n").out,
            "5:plum\n");
}

TEST_F(Input, IsLeftAloneWhereFoldersAreSpokenOf) {
  for (const std::vector<std::string>& options :
       std::vector<std::vector<std::string>>{{"-r"},
                                             {"--include", "*.txt"},
                                             {"--exclude", "*.c"},
                                             {"--exclude-dir", "x"}}) {
    std::vector<std::string> arguments = {"find", "plum"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run(arguments, "plum\n"),
              (Outcome{"a.txt:a plum of the folder\n", "", 0}));
  }
}

// Such patterns apply to file names only.
TEST_F(Input, IsSearchedWhateverPatternsAreGiven) {
  EXPECT_EQ(run({"find", "plum", "-", "--include", "*.c"}, "plum\n"),
            (Outcome{"plum\n", "", 0}));
}

TEST_F(Input, IsCounted) {
  const std::string counts =
      "bytes  words  lines  path\n"
      "   11      2      1  (standard input)\n";
  EXPECT_EQ(run({"count"}, "two plums\r\n"), (Outcome{counts, "", 0}));
  EXPECT_EQ(run({"count", "-"}, "two plums\r\n"), (Outcome{counts, "", 0}));
}

TEST_F(Input, HasNoPlaceInAReport) {
  const Outcome outcome =
      run({"find", "plum", "-", "--report", "report.txt"}, "plum\n");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--report: works with files only"));
}

}  // namespace
}  // namespace zenfo::test
