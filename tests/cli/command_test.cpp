// The command from end to end: exact output, messages and exit status of a
// process.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

// a.txt, b.c, sub/c.txt, sub/deep/d.h and a hidden file.
class Command : public ::testing::Test {
 protected:
  Command() {
    folder_.file("a.txt", "one apple, a Pear\n");
    folder_.file("b.c", "int pears = 12; // crab-apple\n");
    folder_.file("sub/c.txt", "PEAR\n");
    folder_.file("sub/deep/d.h", std::string(1536, 'x'));
    folder_.file(".hidden", "apple\n");
  }

  Outcome run(std::vector<std::string> arguments) const {
    return run_zenfo(std::move(arguments), folder_.path());
  }

  TempFolder folder_;
};

// ---- files -----------------------------------------------------------------

TEST_F(Command, FilesListsFromTheCurrentFolderDown) {
  EXPECT_EQ(
      run({"files"}),
      (Outcome{lines({"a.txt", "b.c", "sub/c.txt", "sub/deep/d.h"}), "", 0}));
}

TEST_F(Command, FilesListsAFolderAlone) {
  EXPECT_EQ(run({"files", "sub"}), (Outcome{lines({"sub/c.txt"}), "", 0}));
  EXPECT_EQ(run({"files", "sub/"}), (Outcome{lines({"sub/c.txt"}), "", 0}));
  EXPECT_EQ(run({"files", "-r", "sub"}),
            (Outcome{lines({"sub/c.txt", "sub/deep/d.h"}), "", 0}));
}

TEST_F(Command, FilesListsNothingForAnEmptyFolder) {
  folder_.folder("empty");
  EXPECT_EQ(run({"files", "empty"}), (Outcome{"", "", 0}));
}

TEST_F(Command, FilesTakesPatterns) {
  EXPECT_EQ(run({"files", "*.txt", "sub/*.TXT"}),
            (Outcome{lines({"a.txt", "sub/c.txt"}), "", 0}));
  EXPECT_EQ(
      run({"files", "nowhere/*.c"}),
      (Outcome{"",
               "zenfo: " + own("nowhere/*.c") + ": no such file or folder\n",
               2}));
}

TEST_F(Command, FilesTakesAHiddenFileGivenInFull) {
  EXPECT_EQ(run({"files", ".hidden", "*"}),
            (Outcome{lines({".hidden", "a.txt", "b.c"}), "", 0}));
}

TEST_F(Command, FilesIncludesNamesByPattern) {
  EXPECT_EQ(run({"files", "--include", "*.h", "--include=*.c"}),
            (Outcome{lines({"b.c", "sub/deep/d.h"}), "", 0}));
}

TEST_F(Command, FilesNamesAFileOnceThoughTwoPatternsIncludeIt) {
  EXPECT_EQ(
      run({"files", "--include", "a.*", "--include", "*.txt", "--total"}),
      (Outcome{lines({"a.txt", "sub/c.txt"}) + "2 files, 23 Bytes\n", "", 0}));
}

TEST_F(Command, FilesRefusesAPatternWithAFolder) {
  EXPECT_EQ(run({"files", "--include", "sub/*.c"}),
            (Outcome{"",
                     "zenfo: --include sub/*.c: a pattern is for names, "
                     "without ';', '|' or folders; see 'zenfo help files'\n",
                     2}));
}

TEST_F(Command, FilesAlignsColumns) {
  EXPECT_EQ(run({"files", "--columns", "name,size,folder,path"}),
            (Outcome{"a.txt    18 B  " + own(".           a.txt\n") +
                         "b.c      30 B  " + own(".           b.c\n") +
                         "c.txt     5 B  " + own("./sub       sub/c.txt\n") +
                         "d.h    1.5 KB  " + own("./sub/deep  sub/deep/d.h\n"),
                     "", 0}));
}

TEST_F(Command, FilesShowsTimes) {
  const Outcome outcome =
      run({"files", "a.txt", "--columns", "created,accessed,modified"});
  EXPECT_THAT(outcome.out,
              MatchesRegex("../../.... ..:..:..  ../../.... ..:..  "
                           "../../.... ..:..:..\n"));
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Command, FilesShowsTypeAndAttributes) {
  std::filesystem::permissions(folder_.path("b.c"),
                               std::filesystem::perms::owner_read |
                                   std::filesystem::perms::group_read |
                                   std::filesystem::perms::others_read);
  const Outcome outcome =
      run({"files", "b.c", "--json", "--columns", "type,attributes"});
  ASSERT_EQ(json_lines(outcome.out).size(), 1u);
  const json line = json_lines(outcome.out)[0];
  EXPECT_NE(line["type"], "");
  EXPECT_THAT(line["attributes"].get<std::string>(), StartsWith("R"));
  std::filesystem::permissions(folder_.path("b.c"),
                               std::filesystem::perms::owner_all);
}

TEST_F(Command, FilesTellsTotals) {
  EXPECT_EQ(run({"files", "-r", "sub", "--total"}),
            (Outcome{lines({"sub/c.txt", "sub/deep/d.h"}) +
                         "2 files, 1.50 KB (1541 Bytes)\n",
                     "", 0}));
  EXPECT_EQ(run({"files", "a.txt", "--total"}),
            (Outcome{"a.txt\n1 file, 18 Bytes\n", "", 0}));
}

TEST_F(Command, FilesWritesJsonOnDemand) {
  const Outcome outcome = run(
      {"files", "-r", "sub", "--json", "--columns=path,size,name", "--total"});
  EXPECT_EQ(
      json_lines(outcome.out),
      (std::vector<json>{
          {{"path", own("sub/c.txt")}, {"size", "5 B"}, {"name", "c.txt"}},
          {{"path", own("sub/deep/d.h")}, {"size", "1.5 KB"}, {"name", "d.h"}},
          {{"files", 2}, {"bytes", 1541}, {"size", "1.50 KB"}}}));
}

TEST_F(Command, FilesSeparatesColumnsByTabsBetweenZeroBytes) {
  using namespace std::string_literals;
  EXPECT_EQ(run({"files", "-0", "a.txt", "b.c", "--columns", "name,size"}),
            (Outcome{"a.txt\t18 B\0b.c\t30 B\0"s, "", 0}));
}

TEST_F(Command, FilesRefusesAnUnknownColumn) {
  EXPECT_EQ(run({"files", "--columns", "name,colour"}),
            (Outcome{"",
                     "zenfo: --columns: no column 'colour' among name, folder, "
                     "type, created, accessed, modified, size, attributes, "
                     "path; see 'zenfo help files'\n",
                     2}));
}

// There are more paths than one call copies.
TEST_F(Command, FilesTakesManyPathsInTheirOrder) {
  std::vector<std::string> arguments = {"files"};
  std::vector<std::string> expected;
  for (int i = 0; i < 700; ++i) {
    expected.push_back(i % 3 == 0 ? "a.txt" : "b.c");
  }
  arguments.insert(arguments.end(), expected.begin(), expected.end());
  EXPECT_EQ(run(arguments), (Outcome{lines(expected), "", 0}));
}

// ---- names -----------------------------------------------------------------

TEST_F(Command, TakesNamesWithBlanksAndOtherBytes) {
  folder_.file("my notes.txt", "plum\n");
  folder_.file("\xC3\x84pfel/gr\xC3\xBCn.txt", "plum\n");
  EXPECT_EQ(run({"find", "-rl", "plum"}),
            (Outcome{lines({"my notes.txt", "\xC3\x84pfel/gr\xC3\xBCn.txt"}),
                     "", 0}));
  EXPECT_EQ(run({"files", "\xC3\x84pfel", "my notes.txt"}),
            (Outcome{lines({"\xC3\x84pfel/gr\xC3\xBCn.txt", "my notes.txt"}),
                     "", 0}));
}

TEST_F(Command, AlignsByCharactersNotBytes) {
  folder_.file("gr\xC3\xBCn", "");
  folder_.file("grau", "");
  EXPECT_EQ(run({"files", "grau", "gr\xC3\xBCn", "--columns", "name,size"}),
            (Outcome{"grau  0 B\ngr\xC3\xBCn  0 B\n", "", 0}));
}

// ---- the command line as a whole --------------------------------------------

TEST_F(Command, RefusesUnknownOptions) {
  EXPECT_EQ(
      run({"find", "--frob", "x"}),
      (Outcome{"", "zenfo: --frob: no such option; see 'zenfo help find'\n",
               2}));
  EXPECT_EQ(
      run({"files", "-iz"}),
      (Outcome{"", "zenfo: -iz: no such option; see 'zenfo help files'\n", 2}));
}

TEST_F(Command, EndsQuietlyWhenNobodyReadsIt) {
  Start start;
  start.folder = folder_.path();
  start.output_unread = true;
  start.arguments = {"files"};
  EXPECT_EQ(run_zenfo(start), (Outcome{"", "", 141}));
}

TEST_F(Command, RefusesNumbersAndUnknownLettersAsOptions) {
  const auto refused = [](const std::string& option) {
    return Outcome{
        "", "zenfo: " + option + ": no such option; see 'zenfo help find'\n",
        2};
  };
  folder_.file("-5", "plum\n");
  EXPECT_EQ(run({"find", "-5", "plum", "a.txt"}), refused("-5"));
  EXPECT_EQ(run({"find", "plum", "-5"}), refused("-5"));
  EXPECT_EQ(run({"find", "-n5", "plum"}), refused("-5"));
  EXPECT_EQ(run({"find", "-nZ", "plum"}), refused("-Z"));
  EXPECT_EQ(run({"find", "-\xC3\xA9", "plum"}), refused("-\xC3\xA9"));
  EXPECT_EQ(run({"find", "-l", "-e", "-5", "--", "-5"}).status, 1);
  EXPECT_EQ(run({"find", "-l", "--", "plum", "-5"}), (Outcome{"-5\n", "", 0}));
}

TEST_F(Command, RefusesAnOptionWithoutItsValue) {
  EXPECT_EQ(run({"files", "--include"}),
            (Outcome{"",
                     "zenfo: files: --include: 1 required GLOB missing; see "
                     "'zenfo help files'\n",
                     2}));
}

TEST_F(Command, RefusesTwoFormsAtOnce) {
  EXPECT_EQ(
      run({"files", "-0", "--json"}),
      (Outcome{"",
               "zenfo: --json: cannot be combined with --null; see 'zenfo help "
               "files'\n",
               2}));
}

TEST_F(Command, RefusesUnknownCommands) {
  EXPECT_EQ(
      run({"seek", "x"}),
      (Outcome{"", "zenfo: seek: no such command; see 'zenfo --help'\n", 2}));
  EXPECT_EQ(run({}),
            (Outcome{"", "zenfo: which command? See 'zenfo --help'\n", 2}));
}

TEST_F(Command, TellsItsVersion) {
  EXPECT_EQ(run({"--version"}), (Outcome{"zenfo " ZENFO_VERSION "\n", "", 0}));
}

TEST_F(Command, ExplainsItself) {
  const Outcome overview = run({"--help"});
  EXPECT_THAT(overview.out,
              AllOf(HasSubstr("\n  count "), HasSubstr("\n  files "),
                    HasSubstr("\n  find ")));
  EXPECT_EQ(overview.status, 0);
  EXPECT_EQ(run({"help"}), overview);
}

TEST_F(Command, ExplainsEachCommandInLinesThatFitAScreen) {
  for (const std::string name : {"compare", "count", "dups", "files", "find"}) {
    const Outcome help = run({"help", name});
    EXPECT_THAT(help.out, AllOf(StartsWith("Usage: zenfo " + name + " ["),
                                HasSubstr("\nExamples:\n")));
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(run({name, "--help"}), help);
    for (size_t start = 0; start < help.out.size();) {
      const size_t end = help.out.find('\n', start);
      EXPECT_LE(end - start, 79u) << help.out.substr(start, end - start);
      start = end + 1;
    }
  }
}

}  // namespace
}  // namespace zenfo::test
