// Changing the case of matches through the exports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/matchers.h"
#include "support/run_fixture.h"

namespace zenfo::test {
namespace {

using CaseTest = RunTest;

TEST_F(CaseTest, ChangesTheLettersOfSelectedMatchesOnly) {
  ASSERT_TRUE(pattern("aB-Yz[`{@"));
  const auto one = add("1", "x aB-Yz[`{@ x");
  EXPECT_EQ(change_case({.upper = 1}), 1);
  EXPECT_EQ(read_file(one), "x AB-YZ[`{@ x");
  write_file(one, "X aB-Yz[`{@ X");
  EXPECT_EQ(change_case({.upper = 0}), 1);
  EXPECT_EQ(read_file(one), "X ab-yz[`{@ X");
  write_file(one, "X aB-Yz[`{@ X");
  EXPECT_EQ(change_case({.upper = -3}), 1);
  EXPECT_EQ(read_file(one), "X AB-YZ[`{@ X");
}

TEST_F(CaseTest, BytesFrom128OnAreNeverChanged) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
  ASSERT_EQ(SetPatternTag("\x01", "\xff", 0, 0, 0), 1);
  for (int32_t upper : {0, 1}) {
    const auto one = add("1", all);
    EXPECT_EQ(change_case({.upper = upper}), 1);
    std::string expected = all;
    for (char& c : expected) {
      if (upper != 0 && c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
      if (upper == 0 && c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    }
    EXPECT_EQ(read_file(one), expected);
    ASSERT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
  }
}

TEST_F(CaseTest, AMatchChangesUpToItsFirstNulTheFileStaysWhole) {
  ASSERT_EQ(SetPatternTag("<", ">", 0, 0, 0), 1);
  const auto one = add("1", "a\0b<a\0b>c\0<d>"s);
  EXPECT_EQ(change_case({}), 2);
  EXPECT_EQ(read_file(one), "a\0b<A\0b>c\0<D>"s);
}

TEST_F(CaseTest, FilesGoToTheListsByTheMatchesChanged) {
  ASSERT_TRUE(pattern("a"));
  const auto two = add("1", "aa");
  const auto none = add("2", "b");
  const auto missing = add_missing("3");
  const auto empty = add("4", "");
  const auto binary = add("5", "a\x02");
  HostRecorder host;
  EXPECT_EQ(change_case({.binary = 1, .ask = 1}), 2);
  const auto statuses = host.statuses;
  EXPECT_THAT(
      std::vector(statuses.begin(), statuses.begin() + 6),
      ElementsAre("Now loading file " + two, "Now binary checking " + two,
                  "Now parsing file " + two, "Preparing for display " + two,
                  "Now changing case in file " + two,
                  "Now loading file " + none));
  EXPECT_THAT(host.option_questions,
              ElementsAre(HostRecorder::Question{two, 2}));
  EXPECT_THAT(found(), ElementsAre(two));
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2));
  EXPECT_THAT(not_found(), ElementsAre(none));
  EXPECT_THAT(rejected(), ElementsAre(missing, empty, binary));
  EXPECT_THAT(
      errors(),
      ElementsAre(
          ErrorRecord{missing + " could not be opened", "loading file",
                      "change_case_i"},
          ErrorRecord{empty + " could not be opened", "loading file",
                      "change_case_i"},
          ErrorRecord{
              binary +
                  " contains a non printable character at position 1 (0x2) ",
              "loading file", "change_case_i"}));
  expect_no_matches();
}

TEST_F(CaseTest, DeselectedMatchesStay) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "aaa");
  HostRecorder host;
  host.answer_option = [](const HostRecorder::Question&) {
    return SetState(ZENFO_LIST_MATCHES, 1, 0);
  };
  EXPECT_EQ(change_case({.ask = 1}), 2);
  EXPECT_EQ(read_file(one), "AaA");
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2));
}

TEST_F(CaseTest, ExclusionCaseFlagAndWholeWordsHold) {
  ASSERT_TRUE(pattern("ab"));
  ASSERT_TRUE(exclusion("(ab)"));
  const auto one = add("1", "ab (ab) Ab abc");
  EXPECT_EQ(change_case({.case_flag = 0, .whole_words = 1}), 2);
  EXPECT_EQ(read_file(one), "AB (ab) AB abc");
  EXPECT_EQ(change_case({.display = 1}), 1);
  EXPECT_EQ(read_file(one), "AB (AB) AB abc");
}

TEST_F(CaseTest, SafeCopiesBringEverythingBack) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a\0a"s);
  EXPECT_EQ(change_case({.safe = 1}), 0) << "no undo list file";
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{
                  "Error safe storing file " + one + ". File has been skipped",
                  "Error saving file for undo purpose", "change_case_i"}));
  use_store();
  EXPECT_EQ(change_case({.safe = 1}), 2);
  EXPECT_EQ(read_file(one), "A\0A"s);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a\0a"s);
  EXPECT_EQ(change_case({.safe = 1}), 2);
  EXPECT_EQ(change_case({.upper = 0}), 0);
  EXPECT_THAT(originals(), IsEmpty()) << "every run empties the safe store";
}

TEST_F(CaseTest, OverLinesTheRunEndsAfterTheFirstFileThatItChanged) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto none = folder.file("0", "b");
  const auto missing = folder.path("missing");
  Texts paths = {none, missing};
  for (const char* name : {"1", "2", "3"}) {
    paths.push_back(folder.file(name, "a a"));
  }
  EXPECT_EQ(over_lines(change_case, {.safe = 1}, line_list(paths)), 0);
  EXPECT_EQ(summary(), none + ", found 0\r\r\n" +
                           ", ERROR : refer to error log file for details"
                           "\r\r\n" +
                           paths[2] + ", found 2");
  EXPECT_EQ(read_file(paths[2]), "A A");
  EXPECT_EQ(read_file(paths[3]), "a a");
  EXPECT_EQ(read_file(paths[4]), "a a");
  EXPECT_THAT(originals(), ElementsAre(paths[2]));
  expect_no_matches();
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{missing + " could not be opened",
                                      "loading file", "change_case_f"}));
}

struct LineCase {
  const char* find;
  RunArguments arguments;
  std::string text;
  std::string result;
  const char* found;  // in the summary, after the path
};

TEST_F(CaseTest, OverLinesEveryArgumentIsTaken) {
  ASSERT_TRUE(exclusion("(ab)"));
  const LineCase cases[] = {
      {"AB", {.upper = 0}, "AB", "ab", ", found 1"},
      {"ab", {.upper = 1}, "ab", "AB", ", found 1"},
      {"ab", {.case_flag = 0}, "Ab", "AB", ", found 1"},
      {"ab", {.case_flag = 1}, "Ab", "Ab", ", found 0\r\r\n"},
      {"ab", {.whole_words = 1}, "abc", "abc", ", found 0\r\r\n"},
      {"ab", {.whole_words = 0}, "abc", "ABc", ", found 1"},
      {"ab", {.display = 1}, "ab(ab)", "ab(AB)", ", found 1"},
      {"ab", {.display = 0}, "ab(ab)", "AB(ab)", ", found 1"},
  };
  for (const LineCase& c : cases) {
    SCOPED_TRACE(&c - cases);
    ASSERT_TRUE(pattern(c.find));
    const auto one = folder.file("1", c.text);
    EXPECT_EQ(over_lines(change_case, c.arguments, one), 0);
    EXPECT_EQ(read_file(one), c.result);
    EXPECT_EQ(summary(), one + c.found);
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(CaseTest, OverLinesABinaryFileIsRejectedWhenAsked) {
  ASSERT_TRUE(pattern("ab"));
  const auto one = folder.file("1", "ab\x02");
  EXPECT_EQ(over_lines(change_case, {.binary = 1}, one), 0);
  EXPECT_EQ(read_file(one), "ab\x02");
  EXPECT_EQ(summary(), ", ERROR : refer to error log file for details\r\r\n");
  EXPECT_THAT(
      errors(),
      ElementsAre(ErrorRecord{
          one + " contains a non printable character at position 2 (0x2) ",
          "loading file", "change_case_f"}));
  EXPECT_EQ(over_lines(change_case, {}, one), 0);
  EXPECT_EQ(read_file(one), "AB\x02");
}

TEST_F(CaseTest, OverLinesAnInvalidAnswerEndsTheRun) {
  ASSERT_TRUE(pattern("ab"));
  const auto one = folder.file("1", "ab");
  HostRecorder host;
  host.answer_option = [](const HostRecorder::Question&) { return 4; };
  EXPECT_EQ(over_lines(change_case, {.ask = 1}, one), -1);
  EXPECT_EQ(read_file(one), "ab");
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{"Invalid option", "Prompting user option",
                                      "change_case_f"}));
}

TEST_F(CaseTest, OverLinesAnswersZeroNotTheNumberOfMatches) {
  ASSERT_TRUE(pattern("a"));
  EXPECT_EQ(over_lines(change_case, {}, folder.file("1", "aaa")), 0);
  const auto none = folder.file("0", "b");
  EXPECT_EQ(over_lines(change_case, {}, none), 0);
  EXPECT_EQ(summary(), none + ", found 0\r\r\n");
  EXPECT_EQ(over_lines(change_case, {}, ""), 0);
}

TEST_F(CaseTest, OverLinesAFailedSafeCopyGoesOnWithTheNextFile) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  const auto two = folder.file("2", "aa");
  EXPECT_EQ(over_lines(change_case, {.safe = 1}, line_list({one, two})), 0);
  EXPECT_EQ(summary(),
            one + ", found 1 ERROR, refer to error log file for details" + two +
                ", found 2 ERROR, refer to error log file for details");
  EXPECT_EQ(read_file(one) + read_file(two), "aaa");
}

TEST_F(CaseTest, OverLinesASkippedFileIsNotTheOneChanged) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  const auto two = folder.file("2", "aa");
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question&) {
    return host.option_questions.size() == 1 ? 0 : 1;
  };
  EXPECT_EQ(over_lines(change_case, {.ask = 1}, line_list({one, two})), 0);
  EXPECT_EQ(read_file(one) + read_file(two), "aAA");
  EXPECT_EQ(summary(), two + ", found 2");
}

TEST_F(CaseTest, AnswersDecideWhichFilesAreChanged) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  const auto two = add("2", "a");
  struct Case {
    std::vector<int32_t> answers;
    int32_t result;
    const char* texts;
  };
  for (const Case& c :
       {Case{{1, 1}, 2, "AA"}, Case{{0, 1}, 1, "aA"}, Case{{1, 0}, 1, "Aa"},
        Case{{2}, 0, "aa"}, Case{{1, 2}, 1, "Aa"}, Case{{3}, 2, "AA"},
        Case{{5}, -1, "aa"}, Case{{1, -2}, -1, "Aa"}}) {
    SCOPED_TRACE(testing::PrintToString(c.answers));
    write_file(one, "a");
    write_file(two, "a");
    {
      HostRecorder host;
      host.answer_option = [&](const HostRecorder::Question&) {
        return c.answers[host.option_questions.size() - 1];
      };
      EXPECT_EQ(change_case({.ask = 1}), c.result);
    }
    EXPECT_EQ(read_file(one) + read_file(two), c.texts);
    expect_no_matches();
    std::vector<ErrorRecord> expected;
    if (c.result == -1) {
      expected.push_back(
          {"Invalid option", "Prompting user option", "change_case_i"});
    }
    EXPECT_EQ(errors(), expected);
  }
}

TEST_F(CaseTest, InterruptedAtAnyPollNoFileIsLost) {
  ASSERT_TRUE(pattern("ab"));
  use_store();
  std::string before;
  for (int i = 0; i < 500; ++i) before += "ab, ";
  const std::string large = std::string(130000, 'x') + before;
  const auto one = add("1", before);
  const auto two = add("2", large);
  int incomplete = 0;
  at_every_poll([&](HostRecorder& host) {
    write_file(one, before);
    write_file(two, large);
    const int32_t answer = change_case({.safe = 1});
    host.interrupt = [] { return 0; };
    EXPECT_TRUE(answer == -1 || answer == 0 || answer == 1000) << answer;
    incomplete += answer != 1000;
    expect_no_matches();
    EXPECT_EQ(Undo(), 0);
    EXPECT_EQ(read_file(one), before);
    EXPECT_EQ(read_file(two), large);
  });
  EXPECT_GT(incomplete, 10);
}

TEST_F(CaseTest, PathsOfTheRunMustBeGiven) {
  ASSERT_TRUE(pattern("a"));
  const auto one = work().file("list", folder.file("1", "a"));
  const auto none = folder.path("none");
  for (const LinePaths& paths :
       {LinePaths{nullptr, "s"}, LinePaths{"", "s"},
        LinePaths{one.c_str(), nullptr}, LinePaths{one.c_str(), ""},
        LinePaths{one.c_str(), one.c_str()},
        LinePaths{none.c_str(), summary_path().c_str()}}) {
    EXPECT_EQ(change_case({}, &paths), -1);
  }
  EXPECT_EQ(read_file(folder.path("1")), "a");
}

TEST_F(CaseTest, WithoutAPatternTheFirstFileEndsTheRun) {
  EXPECT_EQ(change_case({}), 0);
  const auto one = add("1", "a");
  EXPECT_EQ(change_case({}), -1);
  EXPECT_EQ(over_lines(change_case, {}, one), -1);
}

TEST(Case, IsRefusedBeforeInitialize) {
  Terminate();
  EXPECT_EQ(change_case({}), -1);
  const LinePaths paths{"list", "summary"};
  EXPECT_EQ(change_case({}, &paths), -1);
  EXPECT_FALSE(file_exists("summary"));
}

}  // namespace
}  // namespace zenfo::test
