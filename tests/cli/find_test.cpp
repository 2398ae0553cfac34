// zenfo find from end to end: exact output, messages and exit status.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using nlohmann::json;
using namespace std::string_literals;

class Find : public ::testing::Test {
 protected:
  Find() {
    folder_.file("a.txt",
                 "one apple, a Pear\n"
                 "two\n"
                 "three apple apple\n"
                 "four\n"
                 "five\n"
                 "six\n"
                 "my_apple");
    folder_.file("b.c", "int pears;\r\n// crab-apple\r\n");
    folder_.file("empty", "");
    folder_.file("sub/c.txt", "PEAR\n");
    folder_.file("sub/deep/d.h", "x");
    folder_.file(".hidden", "apple\n");
  }

  Outcome find(std::vector<std::string> arguments) const {
    // -r searches the folder even without a PATH: the test's input may be
    // anything.
    arguments.insert(arguments.begin(), {"find", "-r"});
    return run_zenfo(std::move(arguments), folder_.path());
  }
  // The outcome of a search that finds something without a message.
  static Outcome found(const std::string& out) { return {out, "", 0}; }
  static Outcome wrong(const std::string& message) {
    return {"", "zenfo: " + message + "; see 'zenfo help find'\n", 2};
  }

  TempFolder folder_;
};

// ---- lines -----------------------------------------------------------------

TEST_F(Find, ShowsTheLinesThatHoldTheText) {
  EXPECT_EQ(find({"apple"}), found("a.txt:one apple, a Pear\n"
                                   "a.txt:three apple apple\n"
                                   "a.txt:my_apple\n"
                                   "b.c:// crab-apple\n"));
}

TEST_F(Find, Answers1WhenNothingIsFound) {
  EXPECT_EQ(find({"quince"}), (Outcome{"", "", 1}));
}

TEST_F(Find, LeavesOutTheNameOfASingleFile) {
  EXPECT_EQ(find({"pears", "b.c"}), found("int pears;\n"));
  EXPECT_EQ(find({"-H", "pears", "b.c"}), found("b.c:int pears;\n"));
  EXPECT_EQ(find({"pears", "*.c"}), found("b.c:int pears;\n"));
  EXPECT_EQ(find({"-h", "pears"}), found("int pears;\n"));
  EXPECT_EQ(find({"-r", "PEAR", "sub"}), found(own("sub/c.txt") + ":PEAR\n"));
}

TEST_F(Find, ShowsNumbersAndOffsets) {
  EXPECT_EQ(find({"-n", "apple", "a.txt"}), found("1:one apple, a Pear\n"
                                                  "3:three apple apple\n"
                                                  "7:my_apple\n"));
  EXPECT_EQ(find({"-b", "apple", "a.txt"}), found("0:one apple, a Pear\n"
                                                  "22:three apple apple\n"
                                                  "54:my_apple\n"));
  EXPECT_EQ(find({"-nb", "pears"}), found("b.c:1:0:int pears;\n"));
}

TEST_F(Find, ShowsMatchesOnly) {
  EXPECT_EQ(find({"-onb", "apple", "a.txt"}), found("1:4:apple\n"
                                                    "3:28:apple\n"
                                                    "3:34:apple\n"
                                                    "7:57:apple\n"));
}

TEST_F(Find, ShowsContext) {
  EXPECT_EQ(find({"-A1", "apple", "a.txt"}), found("one apple, a Pear\n"
                                                   "two\n"
                                                   "three apple apple\n"
                                                   "four\n"
                                                   "--\n"
                                                   "my_apple\n"));
  EXPECT_EQ(find({"-n", "-B", "2", "five", "a.txt"}),
            found("3-three apple apple\n4-four\n5:five\n"));
  EXPECT_EQ(find({"-C1", "-b", "p", "a.txt"}), found("0:one apple, a Pear\n"
                                                     "18-two\n"
                                                     "22:three apple apple\n"
                                                     "40-four\n"
                                                     "--\n"
                                                     "50-six\n"
                                                     "54:my_apple\n"));
}

TEST_F(Find, SeparatesTheContextOfFiles) {
  EXPECT_EQ(find({"-C1", "pear", "-i", "b.c", "a.txt"}),
            found("b.c:int pears;\n"
                  "b.c-// crab-apple\n"
                  "--\n"
                  "a.txt:one apple, a Pear\n"
                  "a.txt-two\n"));
}

TEST_F(Find, AsksMoreOfOneSideThanOfBoth) {
  EXPECT_EQ(find({"-C2", "-A0", "five", "a.txt"}),
            found("three apple apple\nfour\nfive\n"));
}

TEST_F(Find, StopsAfterSoManyLines) {
  EXPECT_EQ(find({"-m1", "apple"}),
            found("a.txt:one apple, a Pear\nb.c:// crab-apple\n"));
  EXPECT_EQ(find({"-m", "2", "-o", "apple", "a.txt"}),
            found("apple\napple\napple\n"));
  EXPECT_EQ(find({"-m2", "-c", "apple", "a.txt"}), found("2\n"));
  EXPECT_EQ(find({"-m0", "apple"}), (Outcome{"", "", 1}));
}

TEST_F(Find, CutsAMatchOfManyLinesToTheLinesAllowed) {
  EXPECT_EQ(find({"-m2", "--between", "two", "six", "a.txt"}),
            found("two\nthree apple apple\n"));
}

TEST_F(Find, ShowsAllLinesThatAMatchTouches) {
  EXPECT_EQ(find({"-n", "--between", "two", "four", "a.txt"}),
            found("2:two\n3:three apple apple\n4:four\n"));
  EXPECT_EQ(find({"-c", "--between", "two", "four", "a.txt"}), found("3\n"));
  EXPECT_EQ(find({"-o", "--between", "two", "ee", "a.txt"}),
            found("two\nthree\n"));
}

TEST_F(Find, TellsOfMatchesInBinaryFiles) {
  folder_.file("z.bin", "plum\0quince\n"s);
  EXPECT_EQ(find({"quince"}), found("Binary file z.bin matches\n"));
  EXPECT_EQ(find({"-o", "quince"}), found("Binary file z.bin matches\n"));
  EXPECT_EQ(find({"-a", "quince"}), found("z.bin:plum\0quince\n"s));
  EXPECT_EQ(find({"-c", "quince", "z.bin"}), found("1\n"));
}

TEST_F(Find, ShowsLinesWithOtherControlBytes) {
  folder_.file("page.txt", "\fplum\x01\n");
  EXPECT_EQ(find({"plum", "page.txt"}), found("\fplum\x01\n"));
}

// Like grep, keeps what was shown before the first zero byte.
TEST_F(Find, TakesAFileForTextUntilItMeetsAZeroByte) {
  const std::string block(32768, '\n');
  folder_.file("z.bin", "plum\n" + block + "fig plum\n\0\nlast plum\n"s);
  EXPECT_EQ(find({"plum", "z.bin"}),
            found("plum\nfig plum\nBinary file z.bin matches\n"));
  EXPECT_EQ(find({"-A2", "fig", "z.bin"}), found("fig plum\n"));
  EXPECT_EQ(find({"last", "z.bin"}), found("Binary file z.bin matches\n"));
  EXPECT_EQ(find({"-c", "plum", "z.bin"}), found("3\n"));
  EXPECT_EQ(find({"-l", "--skip-binary", "plum", "z.bin"}), found("z.bin\n"));
}

TEST_F(Find, TakesAZeroByteInTheFirstBlockForBinary) {
  std::string text = "plum\n" + std::string(32768 - 5, 'x');
  text.back() = '\0';
  folder_.file("in.bin", text);
  folder_.file("behind.bin", ' ' + text);
  EXPECT_EQ(find({"plum", "in.bin"}), found("Binary file in.bin matches\n"));
  EXPECT_EQ(find({"plum", "behind.bin"}), found(" plum\n"));
}

TEST_F(Find, MarksMatchesByColours) {
  EXPECT_EQ(
      find({"--color=always", "-n", "apple", "a.txt", "-H", "-m1"}),
      found("\x1b[35ma.txt\x1b[m\x1b[36m:\x1b[m\x1b[32m1\x1b[m\x1b[36m:\x1b[m"
            "one \x1b[01;31mapple\x1b[m, a Pear\n"));
  EXPECT_EQ(find({"--color", "always", "-e", "crab-a", "-e", "apple", "b.c"}),
            found("// \x1b[01;31mcrab-a\x1b[m\x1b[01;31mpple\x1b[m\n"));
  EXPECT_EQ(find({"--color", "auto", "pears", "b.c"}), found("int pears;\n"));
  EXPECT_EQ(find({"--color", "often", "x"}),
            wrong("--color often: is auto, always or never"));
}

// ---- names and counts
// --------------------------------------------------------

TEST_F(Find, NamesFiles) {
  EXPECT_EQ(find({"-l", "apple"}), found(lines({"a.txt", "b.c"})));
  EXPECT_EQ(find({"-L", "apple"}),
            found(lines({"empty", "sub/c.txt", "sub/deep/d.h"})));
  EXPECT_EQ(find({"-L", "quince", "a.txt"}),
            (Outcome{lines({"a.txt"}), "", 1}));
}

TEST_F(Find, CountsLines) {
  EXPECT_EQ(find({"-c", "apple"}),
            found("a.txt:3\nb.c:1\nempty:0\n" + own("sub/c.txt") + ":0\n" +
                  own("sub/deep/d.h") + ":0\n"));
  EXPECT_EQ(find({"-c", "apple", "a.txt"}), found("3\n"));
}

TEST_F(Find, CountsMatches) {
  EXPECT_EQ(find({"--count-matches", "apple", "a.txt", "sub/c.txt"}),
            found("a.txt:4\n" + own("sub/c.txt") + ":0\n"));
  EXPECT_EQ(find({"--count-matches", "-e", "apple", "-e", "Pear", "a.txt"}),
            found("5\n"));
}

TEST_F(Find, EndsNamesWithZeroBytesOnDemand) {
  EXPECT_EQ(find({"-l0", "apple"}), found("a.txt\0b.c\0"s));
  EXPECT_EQ(find({"--null", "-r", "pears", "."}),
            found(own("./b.c") + "\0int pears;\n"s));
  EXPECT_EQ(find({"-c0H", "apple", "b.c"}), found("b.c\0"
                                                  "1\n"s));
}

TEST_F(Find, QuietlyTellsByItsStatusAlone) {
  EXPECT_EQ(find({"-q", "apple"}), found(""));
  EXPECT_EQ(find({"-q", "quince"}), (Outcome{"", "", 1}));
}

TEST_F(Find, QuietlyForgivesErrorsOnceFound) {
  const std::string message = "zenfo: nowhere: no such file or folder\n";
  EXPECT_EQ(find({"-q", "apple", "nowhere", "a.txt"}),
            (Outcome{"", message, 0}));
  EXPECT_EQ(find({"-q", "apple", "nowhere", "a.txt", "--report", "r"}),
            (Outcome{"", message, 0}));
  EXPECT_TRUE(file_exists(folder_.path("r")));
  EXPECT_EQ(find({"-q", "quince", "nowhere", "a.txt"}),
            (Outcome{"", message, 2}));
}

// ---- what is found
// -----------------------------------------------------------

TEST_F(Find, IgnoresCaseOnDemand) {
  EXPECT_EQ(find({"-li", "pear"}), found(lines({"a.txt", "b.c", "sub/c.txt"})));
  EXPECT_EQ(find({"-l", "pear"}), found(lines({"b.c"})));
}

TEST_F(Find, TakesWholeWordsOnDemand) {
  EXPECT_EQ(find({"-lw", "Pear"}), found(lines({"a.txt"})));
  EXPECT_EQ(find({"-w", "pear"}), (Outcome{"", "", 1}));
  EXPECT_EQ(find({"-lwi", "pear"}), found(lines({"a.txt", "sub/c.txt"})));
}

TEST_F(Find, DoesNotTakeAnUnderscoreForALetter) {
  EXPECT_EQ(find({"-now", "apple", "a.txt"}),
            found("1:apple\n3:apple\n3:apple\n7:apple\n"));
}

TEST_F(Find, TakesSeveralTextsInTheOrderOfTheirPlaces) {
  EXPECT_EQ(find({"-ob", "-e", "Pear", "-e", "apple", "-e", "pp", "a.txt"}),
            found("4:apple\n5:pp\n13:Pear\n28:apple\n29:pp\n34:apple\n35:pp\n"
                  "57:apple\n58:pp\n"));
  EXPECT_EQ(find({"-e", "apple", "-e", "pears", "-n"}),
            found("a.txt:1:one apple, a Pear\n"
                  "a.txt:3:three apple apple\n"
                  "a.txt:7:my_apple\n"
                  "b.c:1:int pears;\n"
                  "b.c:2:// crab-apple\n"));
}

TEST_F(Find, TakesTheSameTextOnce) {
  EXPECT_EQ(find({"-o", "-e", "six", "-e", "six", "a.txt"}), found("six\n"));
  EXPECT_EQ(find({"-oi", "-e", "six", "-e", "SIX", "a.txt"}), found("six\n"));
}

// Comparing all pairs would take minutes.
TEST_F(Find, TakesEachOfManyTextsOnce) {
  std::string texts;
  for (int twice = 0; twice < 2; ++twice) {
    texts += "apple\n";
    for (int i = 0; i < 300'000; ++i) texts += std::to_string(i) + "!\n";
  }
  folder_.file("sub/texts", texts);
  EXPECT_EQ(find({"-o", "-n", "-f", "sub/texts", "a.txt"}),
            found("1:apple\n3:apple\n3:apple\n7:apple\n"));
}

TEST_F(Find, TakesTextsFromAFile) {
  folder_.file("sub/texts", "two\r\nsix\n");
  EXPECT_EQ(find({"-nf", "sub/texts", "a.txt"}), found("2:two\n6:six\n"));
  EXPECT_EQ(find({"-n", "-f", "sub/texts", "-e", "four", "a.txt"}),
            found("2:two\n4:four\n6:six\n"));
  folder_.file("sub/texts", "two\n\nsix\n");
  EXPECT_EQ(find({"-f", "sub/texts"}),
            (Outcome{"",
                     "zenfo: sub/texts: has an empty line, which is no text to "
                     "find\n",
                     2}));
  EXPECT_EQ(find({"-f", "none"}),
            (Outcome{"", "zenfo: none: no such file or folder\n", 2}));
}

TEST_F(Find, TakesPatternsOnDemand) {
  EXPECT_EQ(find({"-o", "--pattern", "\"apple|Pear\"", "a.txt", "-m1"}),
            found("apple\nPear\n"));
  EXPECT_EQ(find({"\"apple|Pear\"", "a.txt"}), (Outcome{"", "", 1}));
  EXPECT_EQ(find({"-o", "--pattern", "-e", "'p'[2]", "-e", "'e'[2]", "a.txt"}),
            found("pp\nee\npp\npp\npp\n"));
}

TEST_F(Find, NamesAPatternThatHasNothingInIt) {
  for (const char* show : {"-n", "-c", "-l", "-L", "--json"}) {
    EXPECT_EQ(
        find({show, "--pattern", "\\"}),
        (Outcome{"", "zenfo: \\: there is nothing in it to search for\n", 2}));
  }
  EXPECT_EQ(
      find({"--pattern", "-e", "x", "-e", "\\"}),
      (Outcome{"", "zenfo: \\: there is nothing in it to search for\n", 2}));
}

TEST_F(Find, FindsBetweenMarkers) {
  EXPECT_EQ(find({"--start", "crab-", "apple"}), found("b.c:// crab-apple\n"));
  EXPECT_EQ(find({"-ob", "--end", ",", "apple"}), found("a.txt:4:apple\n"));
  EXPECT_EQ(find({"-ob", "--start-pattern", "'_|-'[1]", "apple"}),
            found("a.txt:57:apple\nb.c:20:apple\n"));
  EXPECT_EQ(find({"--start", "a", "-e", "x", "-e", "y"}),
            wrong("--start, --end: need a single TEXT"));
  EXPECT_EQ(find({"--end", "a", "--end-pattern", "b", "x"}),
            wrong("--end: is given twice, as a text and as a pattern"));
}

TEST_F(Find, FindsFromOneTextToAnother) {
  EXPECT_EQ(find({"-o", "--between", "crab", "le"}), found("b.c:crab-apple\n"));
  EXPECT_EQ(find({"-e", "x", "--between", "a", "b"}),
            wrong("--between: takes the place of TEXT"));
}

TEST_F(Find, FindsOutsideOrInsideAreas) {
  EXPECT_EQ(find({"-ob", "--outside", "three", "e", "a.txt"}),
            found("2:e\n8:e\n14:e\n32:e\n38:e\n48:e\n61:e\n"));
  EXPECT_EQ(find({"-ob", "--inside", "three", "e", "a.txt"}),
            found("25:e\n26:e\n"));
  EXPECT_EQ(find({"-ob", "--inside", "apple", "--area-start", "three ", "p",
                  "a.txt"}),
            found("29:p\n30:p\n"));
  EXPECT_EQ(find({"--inside", "a", "--outside", "b", "x"}),
            wrong("--inside: cannot be combined with --outside"));
  EXPECT_EQ(find({"--area-end", "b", "x"}),
            wrong("--area-start, --area-end: need --outside or --inside"));
}

TEST_F(Find, TakesCaretNamesOnDemand) {
  EXPECT_EQ(find({"-c", "--caret", ";^M^J", "b.c"}), found("1\n"));
  EXPECT_EQ(find({"-c", ";^M^J", "b.c"}), (Outcome{"0\n", "", 1}));
}

TEST_F(Find, NamesAFileOfClassesThatCannotBeRead) {
  EXPECT_EQ(
      find({"--classes", "none", "--pattern", "x"}),
      (Outcome{"",
               "zenfo: none: no character classes can be read from this file\n",
               2}));
}

// ---- files
// -------------------------------------------------------------------

TEST_F(Find, NeedsAnOptionForFolders) {
  EXPECT_EQ(run_zenfo({"find", "PEAR", "sub"}, folder_.path()),
            (Outcome{"", "zenfo: sub: is a folder\n", 2}));
  EXPECT_EQ(find({"-lr", "PEAR", "sub"}), found(lines({"sub/c.txt"})));
}

TEST_F(Find, KeepsTheOrderOfItsPaths) {
  EXPECT_EQ(find({"-lri", "pear", "sub", "b.c", ".", "a.txt"}),
            found(lines({"sub/c.txt", "b.c", "./a.txt", "./b.c", "./sub/c.txt",
                         "a.txt"})));
  EXPECT_EQ(find({"-ri", "pear", "sub", "b.c", "a.txt"}),
            found(own("sub/c.txt") +
                  ":PEAR\nb.c:int pears;\na.txt:one apple, a Pear\n"));
}

TEST_F(Find, GoesOnAfterAMissingPath) {
  EXPECT_EQ(find({"-l", "apple", "nowhere", "a.txt", own("no/such/file")}),
            (Outcome{lines({"a.txt"}),
                     "zenfo: nowhere: no such file or folder\nzenfo: " +
                         own("no/such/file") + ": no such file or folder\n",
                     2}));
}

TEST_F(Find, NamesTheFilesItCannotSearch) {
  std::filesystem::resize_file(folder_.file("large.bin", "apple"),
                               uint64_t{1} << 31);
  EXPECT_EQ(
      find({"-c", "-r", "crab", ".", "b.c", "--exclude-dir", "sub", "--exclude",
            "[ae]*"}),
      (Outcome{own("./b.c") + ":1\nb.c:1\n",
               "zenfo: " + own("./large.bin") + ": too large to be loaded\n",
               2}));
}

TEST_F(Find, ChoosesFilesByName) {
  EXPECT_EQ(find({"-lri", "e", "--include", "*.c", "--include", "c.*"}),
            found(lines({"b.c", "sub/c.txt"})));
  EXPECT_EQ(find({"-lri", "e", "--include", "[a-b].*"}),
            found(lines({"a.txt", "b.c"})));
  EXPECT_EQ(find({"-lri", "e", "--exclude", "*.txt"}), found(lines({"b.c"})));
  EXPECT_EQ(find({"-lri", "e", "--exclude", "*.txt", "a.txt", "b.c"}),
            found(lines({"b.c"})));
}

TEST_F(Find, PassesOverFolders) {
  EXPECT_EQ(find({"-Lr", "q", "--exclude-dir", "d*"}),
            (Outcome{lines({"a.txt", "b.c", "empty", "sub/c.txt"}), "", 1}));
  EXPECT_EQ(find({"-li", "pear", "--exclude-dir", "sub", own("sub/c.txt")}),
            found(lines({"sub/c.txt"})));
}

TEST_F(Find, PassesOverBinaryFilesOnDemand) {
  folder_.file("page.txt", "\fplum\x01\n");
  folder_.file("z.bin", "plum\0"s);
  EXPECT_EQ(find({"-l", "--skip-binary", "plum", "page.txt", "z.bin"}),
            (Outcome{"page.txt\n", "zenfo: 1 binary file was skipped\n", 0}));
  EXPECT_EQ(find({"--skip-binary", "plum", "z.bin", "z.bin"}),
            (Outcome{"", "zenfo: 2 binary files were skipped\n", 1}));
  EXPECT_EQ(find({"-q", "--skip-binary", "plum", "z.bin"}),
            (Outcome{"", "", 1}));
  folder_.file("list", "z.bin\r\n");
  EXPECT_EQ(find({"--skip-binary", "--files-from", "list", "--summary", "sum",
                  "plum"}),
            wrong("--skip-binary: cannot be combined with --summary"));
}

TEST_F(Find, TakesFilesFromAList) {
  folder_.file("list", "b.c\nnone\r\na.txt\n");
  EXPECT_EQ(find({"-c", "apple", "--files-from", "list"}),
            (Outcome{"b.c:1\na.txt:3\n",
                     "zenfo: none: no such file or folder\n", 2}));
  folder_.file("list", "");
  EXPECT_EQ(find({"apple", "--files-from", "list"}), (Outcome{"", "", 1}));
}

TEST_F(Find, WritesASummaryOfAList) {
  folder_.file("list", "b.c\r\nnone\r\na.txt\r\n");
  EXPECT_EQ(find({"apple", "--files-from", "list", "--summary", "sum"}),
            (Outcome{"", "zenfo: none: no such file or folder\n", 2}));
  EXPECT_EQ(read_file(folder_.path("sum")),
            "b.c, found 1\r\r\na.txt, found 4\r\r\n");
  folder_.file("list", "b.c\r\na.txt\r\n");
  EXPECT_EQ(find({"-e", "pears", "-e", "crab", "--files-from", "list",
                  "--summary", "sum"}),
            found(""));
  EXPECT_EQ(read_file(folder_.path("sum")),
            "b.c, found 2\r\r\na.txt, found 0\r\r\n");
}

TEST_F(Find, NeedsAListWithItsOwnLineEndsForASummary) {
  folder_.file("list", "b.c\r\na.txt\n");
  EXPECT_EQ(
      find({"apple", "--files-from", "list", "--summary", "sum"}),
      (Outcome{
          "", "zenfo: list: line 2 does not end in CR LF, as --summary needs\n",
          2}));
  EXPECT_EQ(find({"apple", "--summary", "sum"}),
            wrong("--summary: needs --files-from"));
}

TEST_F(Find, WritesAReport) {
  EXPECT_EQ(find({"five", "a.txt", "b.c", "--report", "r"}),
            found("a.txt:five\n"));
  EXPECT_EQ(read_file(folder_.path("r")),
            "a.txt\r\n"
            "\r\nNumber\tOffset\tLength\r\n------\t------\t------\r\n"
            "1\t45\t4\r\n-------------MATCH-------------\r\nfive\r\n"
            "-----------END MATCH-----------\r\n\r\n"
            "b.c\r\n");
  EXPECT_EQ(
      find({"five", "--report", own("no/r")}),
      (Outcome{"", "zenfo: " + own("no/r") + ": the report cannot be written\n",
               2}));
}

// ---- JSON
// ----------------------------------------------------------------------

TEST_F(Find, WritesJsonOnDemand) {
  const Outcome outcome = find({"--json", "-C1", "six", "a.txt"});
  const json path = {{"text", "a.txt"}};
  EXPECT_EQ(
      json_lines(outcome.out),
      (std::vector<json>{
          {{"type", "begin"}, {"data", {{"path", path}}}},
          {{"type", "context"},
           {"data",
            {{"path", path},
             {"lines", {{"text", "five\n"}}},
             {"line_number", 5},
             {"absolute_offset", 45},
             {"submatches", json::array()}}}},
          {{"type", "match"},
           {"data",
            {{"path", path},
             {"lines", {{"text", "six\n"}}},
             {"line_number", 6},
             {"absolute_offset", 50},
             {"submatches",
              {{{"match", {{"text", "six"}}}, {"start", 0}, {"end", 3}}}}}}},
          {{"type", "context"},
           {"data",
            {{"path", path},
             {"lines", {{"text", "my_apple"}}},
             {"line_number", 7},
             {"absolute_offset", 54},
             {"submatches", json::array()}}}},
          {{"type", "end"},
           {"data",
            {{"path", path},
             {"binary_offset", nullptr},
             {"stats", {{"matched_lines", 1}, {"matches", 1}}}}}},
          {{"type", "summary"},
           {"data",
            {{"stats",
              {{"searches", 1},
               {"searches_with_match", 1},
               {"matched_lines", 1},
               {"matches", 1}}}}}}}));
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(Find, WritesBytesThatAreNoTextAsBase64) {
  folder_.file("z.bin", "plum\0\xFF\n"s);
  const std::vector<json> values =
      json_lines(find({"--json", "plum", "z.bin"}).out);
  ASSERT_EQ(values.size(), 4u);
  EXPECT_EQ(values[1]["data"]["lines"], (json{{"bytes", "cGx1bQD/Cg=="}}));
  EXPECT_EQ(values[2]["data"]["binary_offset"], 4);
}

TEST_F(Find, WritesASummaryThoughNothingIsFound) {
  const Outcome outcome = find({"--json", "quince", "a.txt", "b.c"});
  ASSERT_EQ(json_lines(outcome.out).size(), 1u);
  EXPECT_EQ(json_lines(outcome.out)[0]["data"]["stats"]["searches"], 2);
  EXPECT_EQ(outcome.status, 1);
}

// ---- the command line
// ------------------------------------------------------------

TEST_F(Find, TakesEverythingAfterTwoDashesAsText) {
  folder_.file("-v", "say --json now\n");
  EXPECT_EQ(find({"--", "--json", "-v"}), found("say --json now\n"));
  EXPECT_EQ(find({"-e", "--json", "--", "-v"}), found("say --json now\n"));
}

TEST_F(Find, TakesBracketsAsTheyAre) {
  folder_.file("[x,y]", "a[1,2]b\n");
  EXPECT_EQ(find({"[1,2]", "[x,y]", "a.txt"}), found("[x,y]:a[1,2]b\n"));
}

TEST_F(Find, NeedsAText) {
  const Outcome missing = wrong("find: the TEXT to find is missing");
  EXPECT_EQ(find({}), missing);
  EXPECT_EQ(find({"", "a.txt"}), missing);
  EXPECT_EQ(find({"-e", "", "a.txt"}), missing);
}

TEST_F(Find, RefusesWhatDoesNotGoTogether) {
  EXPECT_EQ(find({"-0", "--json", "x"}),
            wrong("--json: cannot be combined with --null"));
  EXPECT_EQ(find({"-c", "--json", "x"}),
            wrong("--json: cannot be combined with other forms of results"));
  EXPECT_EQ(find({"-lL", "x"}), wrong("-l: cannot be combined with -L"));
  EXPECT_EQ(find({"-hH", "x"}), wrong("-h: cannot be combined with -H"));
  EXPECT_EQ(find({"-F", "--pattern", "x"}),
            wrong("--pattern: cannot be combined with --literal"));
  EXPECT_EQ(find({"-A", "-1", "x"}),
            wrong("-A -1: needs a number of 0 or more"));
}

}  // namespace
}  // namespace zenfo::test
