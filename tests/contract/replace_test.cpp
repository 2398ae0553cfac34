// Replacing through the exports: what is written, where it comes from, safe
// copies, results and summaries, stops and faults of the disk.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>

#include "support/run_fixture.h"
#ifndef _WIN32
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#endif

namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using zenfo::test::ErrorRecord;
using zenfo::test::exclusion;
using zenfo::test::file_exists;
using zenfo::test::HostRecorder;
using zenfo::test::line_list;
using zenfo::test::LinePaths;
using zenfo::test::Operation;
using zenfo::test::pattern;
using zenfo::test::read_file;
using zenfo::test::replace_block;
using zenfo::test::replace_block_nbr;
using zenfo::test::replace_pattern;
using zenfo::test::replace_string;
using zenfo::test::replace_string_nbr;
using zenfo::test::RunArguments;
using zenfo::test::Texts;

void write_again(const std::string& path, std::string_view text) {
  zenfo::test::write_file(path, text);
}

class ReplaceTest : public zenfo::test::RunTest {
 protected:
  // What one file becomes; with the number of matches, if it is of interest.
  std::string becomes(const Operation& run, const RunArguments& arguments,
                      std::string_view text, int32_t* answer = nullptr) {
    EXPECT_EQ(Clear(ZENFO_LIST_FILES), 1);
    const std::string path = add("f", text);
    const int32_t count = run(arguments, nullptr);
    if (answer != nullptr) *answer = count;
    return read_file(path);
  }
};

// ---- What is written -------------------------------------------------------

TEST_F(ReplaceTest, EditModesReplaceInsertBeforeAndInsertAfter) {
  ASSERT_TRUE(pattern("b"));
  EXPECT_EQ(becomes(replace_block, {.mode = 0}, "abc"), "aXc");
  EXPECT_EQ(becomes(replace_block, {.mode = 1}, "abc"), "aXbc");
  EXPECT_EQ(becomes(replace_block, {.mode = 2}, "abc"), "abXc");
  EXPECT_EQ(becomes(replace_block, {.mode = 3}, "abc"), "aXc");
  EXPECT_EQ(becomes(replace_block, {.mode = -1}, "abc"), "aXc");
}

TEST_F(ReplaceTest, AnEmptyReplacementDeletes) {
  ASSERT_TRUE(pattern("b"));
  for (const char* none : {"", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(becomes(replace_block, {.text = none}, "abcbb"), "ac");
    EXPECT_EQ(becomes(replace_block, {.text = none, .mode = 1}, "ab"), "ab");
    EXPECT_EQ(becomes(replace_block, {.text = none, .mode = 2}, "ab"), "ab");
  }
  EXPECT_EQ(becomes(replace_block, {.text = ""}, "bbb"), "")
      << "nothing may be left of a file";
}

TEST_F(ReplaceTest, ExpandTurnsCaretNamesIntoControlCharacters) {
  ASSERT_TRUE(pattern("b"));
  EXPECT_EQ(becomes(replace_block, {.text = "^M^J"}, "abc"), "a^M^Jc");
  EXPECT_EQ(becomes(replace_block, {.text = "^M^J", .expand = 1}, "abc"),
            "a\r\nc");
}

TEST_F(ReplaceTest, BytesBehindANulAreLost) {
  ASSERT_TRUE(pattern("ab"));
  int32_t answer;
  EXPECT_EQ(becomes(replace_block, {.text = "Z"}, "ab\0cab"s, &answer), "Z");
  EXPECT_EQ(answer, 1);
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2))
      << "both were found, one was written";
  ASSERT_EQ(SetPatternTag("<", ">", 0, 0, 0), 1);
  EXPECT_EQ(becomes(replace_block, {.text = "Z", .mode = 2}, "x<a\0b>"s),
            "x<aZ")
      << "a match that crosses the NUL is written, clipped";
}

TEST_F(ReplaceTest, ATextThatBeginsWithANulCannotBeWritten) {
  ASSERT_TRUE(pattern("a"));
  int32_t answer;
  EXPECT_EQ(becomes(replace_block, {}, "\0a"s, &answer), "\0a"s);
  EXPECT_EQ(answer, -1);
}

TEST_F(ReplaceTest, LargeFilesShrinkAndGrow) {
  ASSERT_TRUE(pattern("ab"));
  std::string text, shorter, longer;
  for (int i = 0; i < 150000; ++i) {
    text += "ab-";
    shorter += "-";
    longer += "longer-";
  }
  int32_t answer;
  EXPECT_EQ(becomes(replace_block, {.text = ""}, text, &answer), shorter);
  EXPECT_EQ(answer, 150000);
  EXPECT_EQ(becomes(replace_block, {.text = "longer"}, text), longer);
}

TEST_F(ReplaceTest, MatchesInsideOrOutsideTheAreasAreReplaced) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(a)"));
  EXPECT_EQ(becomes(replace_block, {}, "a(a)a"), "X(a)X");
  EXPECT_EQ(becomes(replace_block, {.display = 1}, "a(a)a"), "a(X)a");
}

// ---- Sources of replacements -----------------------------------------------

TEST_F(ReplaceTest, ValuesOfTheListGoToTheMatchesByPosition) {
  ASSERT_TRUE(pattern("a"));
  values({"1", "two", "3^M"});
  const RunArguments list = {.use_list = 1};
  int32_t answer;
  EXPECT_EQ(becomes(replace_block, list, "a.a.a.a.a", &answer),
            "1.two.3^M.a.a");
  EXPECT_EQ(answer, 3) << "matches without a value stay and do not count";
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(3));
  EXPECT_EQ(becomes(replace_block, list, "a.a", &answer), "1.two");
  EXPECT_EQ(answer, 2);
  EXPECT_EQ(becomes(replace_block, {.use_list = 1, .expand = 1}, "aaa"),
            "1two3\r");
  EXPECT_EQ(becomes(replace_block, {.mode = 1, .use_list = 1}, "aa"), "1atwoa");
  EXPECT_EQ(becomes(replace_block, {.mode = 2, .use_list = 1}, "aa"), "a1atwo");
}

TEST_F(ReplaceTest, AnEmptyListOfValuesLeavesTheFile) {
  ASSERT_TRUE(pattern("a"));
  int32_t answer;
  EXPECT_EQ(becomes(replace_block, {.use_list = 1}, "aa", &answer), "aa");
  EXPECT_EQ(answer, 0);
  EXPECT_EQ(not_found().size(), 1u);
}

struct PatternSourceCase {
  int32_t index;
  int32_t mode;
  const char* result;
  int32_t answer;
};

TEST_F(ReplaceTest, MatchesOfTheReplacePatternAreReplacements) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(replace_pattern("'1|2|3'[2]", 1));
  const PatternSourceCase cases[] = {
      {0, 0, "11.22.a.11.22", 2},       {1, 0, "11.11.11.11.22", 3},
      {2, 0, "22.22.22.11.22", 3},      {3, 0, "a.a.a.11.22", 0},
      {99, 0, "a.a.a.11.22", 0},        {-1, 0, "a.a.a.11.22", 0},
      {INT32_MIN, 0, "a.a.a.11.22", 0}, {1, 1, "11a.11a.11a.11.22", 3},
      {0, 2, "a11.a22.a.11.22", 2},
  };
  for (const PatternSourceCase& c : cases) {
    SCOPED_TRACE(c.index);
    int32_t answer;
    EXPECT_EQ(becomes(replace_block,
                      {.mode = c.mode, .use_pattern = 1, .index = c.index},
                      "a.a.a.11.22", &answer),
              c.result);
    EXPECT_EQ(answer, c.answer);
  }
}

TEST_F(ReplaceTest, ThePatternOverridesTheList) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(replace_pattern("b"));
  values({"1", "2", "3"});
  EXPECT_EQ(becomes(replace_block, {.use_list = 1, .use_pattern = 1}, "aaab"),
            "baab");
}

TEST_F(ReplaceTest, PatternMatchesAreExpandedWithAllTheirBytes) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_EQ(set_replace_pattern(nullptr, "^M", nullptr, 0, 0, 0, 0, 0, 0), 1);
  EXPECT_EQ(becomes(replace_block, {.use_pattern = 1}, "a^M"), "^M^M");
  EXPECT_EQ(becomes(replace_block, {.use_pattern = 1, .expand = 1}, "a^M"),
            "\r^M");
}

TEST_F(ReplaceTest, WithoutAReplacePatternTheFirstFileEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  int32_t answer;
  EXPECT_EQ(becomes(replace_block, {.use_pattern = 1}, "a", &answer), "a");
  EXPECT_EQ(answer, -1);
}

TEST_F(ReplaceTest, TheQuestionShowsTheReplacementsAndFlags) {
  ASSERT_TRUE(pattern("abc"));
  values({"12"});
  const auto one = add("1", "abc abc abc");
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question& question) {
    EXPECT_EQ(question, (HostRecorder::Question{one, 2}));
    char text[30] = "";
    EXPECT_EQ(GetMatchReplace(ZENFO_LIST_MATCHES, 0, text, 20), 1);
    EXPECT_STREQ(text, "12 ...") << "shorter than its match";
    EXPECT_EQ(get_match_flag(ZENFO_LIST_MATCHES, 0), 1);
    EXPECT_EQ(get_match_flag(ZENFO_LIST_MATCHES, 1), 0);
    EXPECT_EQ(states(ZENFO_LIST_MATCHES), (std::vector<int>{1, 0, 0}));
    return SetState(ZENFO_LIST_MATCHES, 2, 1) == 1 ? 1 : -9;
  };
  EXPECT_EQ(replace_block({.ask = 1, .use_list = 1}), 2);
  EXPECT_EQ(read_file(one), "12 abc ")
      << "one selected again without a value is deleted";
}

TEST_F(ReplaceTest, TheQuestionShowsTheMatchesOfTheReplacePattern) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(replace_pattern("x"));
  const auto one = add("1", "a x");
  HostRecorder host;
  host.answer_option = [](const HostRecorder::Question&) {
    char text[30] = "";
    EXPECT_EQ(GetMatchText(ZENFO_LIST_REPLACE_MATCHES, 0, text, 20), 1);
    EXPECT_STREQ(text, "x");
    return 1;
  };
  EXPECT_EQ(replace_block({.ask = 1, .use_pattern = 1}), 1);
  EXPECT_EQ(host.option_questions.size(), 1u);
  EXPECT_EQ(read_file(one), "x x");
}

// ---- Numbering -------------------------------------------------------------

struct NumberCase {
  const char* text;
  const char* placeholder;
  int32_t first;
  int32_t step;
  const char* result;  // of "b.b.b"; null: refused
};

TEST_F(ReplaceTest, NumbersGrowFromMatchToMatch) {
  ASSERT_TRUE(pattern("b"));
  const NumberCase cases[] = {
      {"item#", "#", 5, 10, "item5.item15.item25"},
      {"#", "#", -1, 1, "-1.0.1"},
      {"#-#", "#", 9, 1, "9-9.10-10.11-11"},
      {"<##>", "##", 7, 0, "<7>.<7>.<7>"},
      {"no", "#", 1, 1, "no.no.no"},
      {"#", "#", INT32_MAX, 1, "2147483647.-2147483648.-2147483647"},
      {"aNn", "n", 1, 1, "aN1.aN2.aN3"},
      {"#", "", 1, 1, nullptr},
      {"#", nullptr, 1, 1, nullptr},
      {"", "#", 1, 1, nullptr},
      {nullptr, "#", 1, 1, nullptr},
  };
  for (const NumberCase& c : cases) {
    SCOPED_TRACE(c.result == nullptr ? "refused" : c.result);
    int32_t answer;
    const std::string text = becomes(replace_block_nbr,
                                     {.text = c.text,
                                      .placeholder = c.placeholder,
                                      .first = c.first,
                                      .step = c.step},
                                     "b.b.b", &answer);
    EXPECT_EQ(answer, c.result != nullptr ? 3 : -1);
    EXPECT_EQ(text, c.result != nullptr ? c.result : "b.b.b");
  }
}

TEST_F(ReplaceTest, DeselectedMatchesUseUpNoNumber) {
  ASSERT_TRUE(pattern("b"));
  const auto one = add("1", "b.b.b");
  HostRecorder host;
  host.answer_option = [](const HostRecorder::Question&) {
    return SetState(ZENFO_LIST_MATCHES, 1, 0);
  };
  EXPECT_EQ(
      replace_block_nbr({.ask = 1, .text = "item#", .first = 5, .step = 10}),
      2);
  EXPECT_EQ(read_file(one), "item5.b.item15");
}

TEST_F(ReplaceTest, NumbersStartAgainWithEachFileUnlessTheyRunOn) {
  ASSERT_TRUE(pattern("b"));
  for (int32_t run_on : {0, 1, -1}) {
    ASSERT_EQ(Clear(ZENFO_LIST_FILES), 1);
    const auto one = add("1", "b b");
    const auto two = add("2", "b");
    EXPECT_EQ(replace_block_nbr({.text = "#", .run_on = run_on}), 3);
    EXPECT_EQ(read_file(one), "1 2");
    EXPECT_EQ(read_file(two), run_on != 0 ? "3" : "1");
    write_again(one, "b b");
    write_again(two, "b");
    EXPECT_EQ(over_lines(replace_block_nbr, {.text = "#", .run_on = run_on},
                         line_list({two, one})),
              3);
    EXPECT_EQ(read_file(one), run_on != 0 ? "2 3" : "1 2");
  }
}

TEST_F(ReplaceTest, NumbersOfStringsStartAgainWithEachString) {
  pair("a", "<#>");
  pair("b", "{#}");
  EXPECT_EQ(becomes(replace_string_nbr, {.first = 3}, "aab"), "<3><4>{3}");
  EXPECT_EQ(becomes(replace_string_nbr, {.first = 3, .run_on = 1}, "aab"),
            "<3><4>{5}");
  const auto one = folder.file("1", "ab");
  const auto two = folder.file("2", "b");
  EXPECT_EQ(
      over_lines(replace_string_nbr, {.run_on = 1}, line_list({one, two})), 3);
  EXPECT_EQ(read_file(one) + read_file(two), "<1>{2}{3}");
  ASSERT_EQ(UpdateStringPair(1, "b", ""), 1);
  int32_t answer;
  EXPECT_EQ(becomes(replace_string_nbr, {}, "ab", &answer), "<1>b");
  EXPECT_EQ(answer, -1) << "a number needs a text to stand in";
}

TEST_F(ReplaceTest, OtherSourcesIgnoreTheNumbering) {
  ASSERT_TRUE(pattern("b"));
  values({"#", "#"});
  EXPECT_EQ(becomes(replace_block_nbr, {.use_list = 1, .placeholder = nullptr},
                    "b.b.b"),
            "#.#.b");
  ASSERT_TRUE(replace_pattern("c"));
  EXPECT_EQ(becomes(replace_block_nbr, {.text = "", .use_pattern = 1}, "bc"),
            "cc");
}

TEST_F(ReplaceTest, NumbersTakeEditModesAndExpansion) {
  ASSERT_TRUE(pattern("b"));
  EXPECT_EQ(
      becomes(replace_block_nbr, {.text = "#^M", .mode = 1, .expand = 1}, "ab"),
      "a1\rb");
  EXPECT_EQ(becomes(replace_block_nbr, {.text = "#", .mode = 2}, "ab"), "ab1");
}

// ---- Strings ---------------------------------------------------------------

TEST_F(ReplaceTest, EachStringIsReplacedInWhatTheOneBeforeHasLeft) {
  pair("a", "b");
  pair("x", "y", 0);
  pair("b", "cc");
  const auto one = add("1", "abx");
  EXPECT_EQ(replace_string({}), 3);
  EXPECT_EQ(read_file(one), "ccccx");
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(3));
  EXPECT_EQ(
      over_lines(replace_string, {},
                 line_list({folder.file("2", "ab"), folder.file("3", "z")})),
      3);
  EXPECT_EQ(summary(), folder.path("2") + ", found 3, replaced 3\r\r\n" +
                           folder.path("3") + ", found 0\r\r\n");
}

#ifndef _WIN32  // which lets no open file go
TEST_F(ReplaceTest, AFileThatGoesBetweenTwoStringsIsFinished) {
  pair("a", "b");
  pair("b", "c");
  const auto one = add("1", "a a b");
  const auto two = add("2", "b");
  HostRecorder host;
  host.on_status_text = [&](const std::string& text) {
    // Loaded again for the second string.
    if (text != "Now replacing in file " + one) return;
    host.on_progress = [&](const ProgressRecord& progress) {
      if (progress.position == progress.total) std::filesystem::remove(one);
    };
  };
  EXPECT_EQ(replace_string({}), 3);
  EXPECT_THAT(found(), ElementsAre(one, two));
  EXPECT_EQ(read_file(two), "c");
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{one + " could not be opened",
                                      "loading file", "ReplaceString"}));
}
#endif

TEST_F(ReplaceTest, TextsOfPairsEndAtTheirFirstNul) {
  const auto pairs = [&](const std::string& bytes) {
    ASSERT_EQ(LoadStringPair(work().file("pairs", bytes).c_str()), 1);
    ASSERT_EQ(SetState(ZENFO_LIST_PAIRS, -1, 1), 1);
  };
  pairs("a\tX\0Y\r\n"s);
  EXPECT_EQ(becomes(replace_string, {}, "-a-"), "-X-");
  pairs("a\t\0Y\r\n"s);
  int32_t answer;
  EXPECT_EQ(becomes(replace_string_nbr, {}, "-a-", &answer), "-a-");
  EXPECT_EQ(answer, -1) << "nothing to put numbers in";
}

TEST_F(ReplaceTest, AFileThatAStringEmptiedIsFinished) {
  pair("a", "");
  pair("b", "c");
  int32_t answer;
  EXPECT_EQ(becomes(replace_string, {}, "aa", &answer), "");
  EXPECT_EQ(answer, 2);
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2));
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ReplaceTest, ConvertExpandsBothTextsOfAPair) {
  pair("^M", "^J");
  EXPECT_EQ(becomes(replace_string, {}, "\r^M"), "\r^J");
  EXPECT_EQ(becomes(replace_string, {.convert = 1}, "\r^M"), "\n^M");
}

TEST_F(ReplaceTest, StringsAskForEachStringAndSkipOne) {
  pair("a", "1");
  pair("b", "2");
  const auto one = add("1", "ab");
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question& question) {
    EXPECT_EQ(question.number, 2);
    return host.option_questions.size() == 1 ? 0 : 1;
  };
  EXPECT_EQ(replace_string({.ask = 1}), 1);
  EXPECT_EQ(read_file(one), "a2");
  EXPECT_THAT(found(), ElementsAre(one));
}

TEST_F(ReplaceTest, APairWithoutAReplaceStringDeletes) {
  pair("a", nullptr);
  EXPECT_EQ(becomes(replace_string, {}, "bab"), "bb");
}

TEST_F(ReplaceTest, SeveralStringsOnOneFileMakeOneSafeCopy) {
  use_store();
  pair("a", "b");
  pair("b", "c");
  const auto one = add("1", "ab");
  EXPECT_EQ(replace_string({.safe = 1}), 3);
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_EQ(read_file(in_store("1_0")), "ab");
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "ab");
}

// ---- Results and summaries -------------------------------------------------

TEST_F(ReplaceTest, FilesGoToTheListsByTheirMatches) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "aa");
  const auto none = add("2", "b");
  const auto missing = add_missing("3");
  const auto empty = add("4", "");
  const auto binary = add("5", "a\x01");
  EXPECT_EQ(replace_block({.binary = 1}), 2);
  EXPECT_THAT(found(), ElementsAre(one));
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2));
  EXPECT_THAT(not_found(), ElementsAre(none));
  EXPECT_THAT(rejected(), ElementsAre(missing, empty, binary));
  EXPECT_EQ(read_file(binary), "a\x01");
  expect_no_matches();
  EXPECT_THAT(
      errors(),
      ElementsAre(
          ErrorRecord{missing + " could not be opened", "loading file",
                      "ReplaceBlock"},
          ErrorRecord{empty + " could not be opened", "loading file",
                      "ReplaceBlock"},
          ErrorRecord{
              binary +
                  " contains a non printable character at position 1 (0x1) ",
              "loading file", "ReplaceBlock"}));
}

TEST_F(ReplaceTest, SummaryLinesTellWhatBecameOfEachFile) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = folder.file("1", "aXa");
  const auto none = folder.file("2", "b");
  const auto empty = folder.file("3", "");
  const auto missing = folder.path("4");
  const auto last = folder.file("5", "a");
  EXPECT_EQ(over_lines(replace_block, {.safe = 1},
                       line_list({one, none, empty, missing, last})),
            3);
  EXPECT_EQ(summary(),
            one + ", found 2, replaced 2\r\r\n" + none +
                ", found 0\r\r\n"
                ", ERROR : refer to error log file for details\r\r\n"
                ", ERROR : refer to error log file for details\r\r\n" +
                last + ", found 1, replaced 1\r\r\n");
  EXPECT_EQ(read_file(one) + read_file(last), "XXXX");
  expect_no_results();
}

TEST_F(ReplaceTest, SummaryCountsWhatWasWrittenBehindWhatWasFound) {
  ASSERT_TRUE(pattern("ab"));
  const auto one = folder.file("1", "ab\0ab"s);
  EXPECT_EQ(over_lines(replace_block, {}, one), 1);
  EXPECT_EQ(summary(), one + ", found 2, replaced 1\r\r\n");
}

// Intended: the line of a file without a safe copy has no end.
TEST_F(ReplaceTest, WithoutASafeCopyAFileIsSkippedAndLogged) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  const auto two = add("2", "ba");
  EXPECT_EQ(replace_block({.safe = 1}), 0);
  EXPECT_EQ(read_file(one) + read_file(two), "aba");
  EXPECT_THAT(rejected(), ElementsAre(one, two));
  EXPECT_THAT(found(), IsEmpty());
  const auto record = [](const std::string& path, const char* routine) {
    return ErrorRecord{
        "Error safe storing file " + path + ". File has been skipped",
        "Error saving file for undo purpose", routine};
  };
  EXPECT_THAT(errors(), ElementsAre(record(one, "ReplaceBlock"),
                                    record(two, "ReplaceBlock")));
  EXPECT_EQ(over_lines(replace_block, {.safe = 1}, line_list({one, two})), 0);
  EXPECT_EQ(summary(),
            one + ", found 1 ERROR, refer to error log file for details" + two +
                ", found 1 ERROR, refer to error log file for details");
  EXPECT_THAT(errors(), ElementsAre(record(one, "ReplaceBlock_f"),
                                    record(two, "ReplaceBlock_f")));
}

TEST_F(ReplaceTest, AStringWhoseSafeCopyFailsSkipsTheWholeFile) {
  pair("x", "1");
  pair("a", "2");
  pair("b", "3");
  const auto one = add("1", "ab");
  EXPECT_EQ(replace_string({.safe = 1}), 0);
  EXPECT_EQ(read_file(one), "ab");
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_EQ(errors().size(), 1u);
  EXPECT_EQ(over_lines(replace_string, {.safe = 1}, one), 0);
  EXPECT_EQ(summary(),
            one + ", found 1 ERROR, refer to error log file for details");
}

struct PhaseCase {
  int32_t mode;
  const char* text;
};

TEST_F(ReplaceTest, TellsThePhasesOfEachFile) {
  ASSERT_TRUE(pattern("a"));
  const PhaseCase cases[] = {{0, "Now replacing in file "},
                             {1, "Now inserting before in file "},
                             {2, "Now inserting after in file "},
                             {9, "Now replacing in file "}};
  const auto one = add("1", "a");
  const auto none = add("2", "b");
  for (const PhaseCase& c : cases) {
    write_again(one, "a");
    HostRecorder host;
    EXPECT_EQ(replace_block({.binary = 1, .ask = 1, .mode = c.mode}), 1);
    EXPECT_THAT(
        host.statuses,
        ElementsAre("Now loading file " + one, "Now binary checking " + one,
                    "Now parsing file " + one, "Preparing for display " + one,
                    c.text + one, "Now loading file " + none,
                    "Now binary checking " + none, "Now parsing file " + none));
  }
}

TEST_F(ReplaceTest, ARunOverLinesEmptiesTheResultsToo) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  const auto none = add("2", "b");
  const auto missing = add_missing("3");
  EXPECT_EQ(replace_block({}), 1);
  EXPECT_THAT(found(), ElementsAre(one));
  EXPECT_THAT(not_found(), ElementsAre(none));
  EXPECT_THAT(rejected(), ElementsAre(missing));
  EXPECT_EQ(over_lines(replace_block, {}, none), 0);
  expect_no_results();
}

struct Member {
  const char* routine;
  Operation run;
  bool lines;
};

const Member kMembers[] = {
    {"ReplaceBlock", replace_block, false},
    {"ReplaceBlock_f", replace_block, true},
    {"ReplaceBlockNbr", replace_block_nbr, false},
    {"ReplaceBlockNbr_f", replace_block_nbr, true},
    {"ReplaceString", replace_string, false},
    {"ReplaceString_f", replace_string, true},
    {"ReplaceStringNbr", replace_string_nbr, false},
    {"ReplaceStringNbr_f", replace_string_nbr, true},
};

TEST_F(ReplaceTest, AllMembersKeepTheSameRules) {
  ASSERT_TRUE(pattern("a"));
  pair("a", "X");
  use_store();
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.routine);
    ASSERT_EQ(Clear(ZENFO_LIST_FILES), 1);
    const auto one = add("1", "aba");
    const auto missing = add_missing("2");
    const auto run = [&](const RunArguments& arguments) {
      return member.lines
                 ? over_lines(member.run, arguments, line_list({one, missing}))
                 : member.run(arguments, nullptr);
    };
    {
      HostRecorder host;
      EXPECT_EQ(run({.safe = 1}), 2);
      EXPECT_THAT(host.statuses, Contains("Now replacing in file " + one));
    }
    EXPECT_EQ(read_file(one), "XbX");
    EXPECT_THAT(errors(),
                ElementsAre(ErrorRecord{missing + " could not be opened",
                                        "loading file", member.routine}));
    EXPECT_THAT(originals(), ElementsAre(one));
    EXPECT_EQ(Undo(), 0);
    EXPECT_EQ(read_file(one), "aba");
    // An invalid answer.
    HostRecorder host;
    host.answer_option = [](const HostRecorder::Question&) { return 4; };
    EXPECT_EQ(run({.ask = 1}), -1);
    EXPECT_EQ(host.option_questions[0], (HostRecorder::Question{one, 2}));
    EXPECT_THAT(errors(), ElementsAre(ErrorRecord{"Invalid option",
                                                  "Prompting user option",
                                                  member.routine}));
    EXPECT_EQ(read_file(one), "aba");
    // Case flag, whole words.
    EXPECT_EQ(run({.whole_words = 1}), 0);
    expect_no_matches();
    errors();
  }
}

struct ArgumentCase {
  const char* members;  // those that have this in their names
  const char* find;
  const char* replacement;
  RunArguments arguments;
  std::string text;
  std::string result;
};

// With the exclusion "(a)", the replacement pattern "b" and a list of "V".
const ArgumentCase kArgumentCases[] = {
    {"", "a", "X", {.case_flag = 0}, "A", "X"},
    {"", "a", "X", {.case_flag = 1}, "A", "A"},
    {"", "a", "X", {.whole_words = 1}, "ab a", "ab X"},
    {"", "a", "X", {.whole_words = 0}, "ab a", "Xb X"},
    {"", "a", "X", {.display = 1}, "a(a)", "a(X)"},
    {"", "a", "X", {.display = 0}, "a(a)", "X(a)"},
    {"Block", "a", "X", {.mode = 1}, "ba", "bXa"},
    {"Block", "a", "X", {.use_list = 1}, "aa", "Va"},
    {"Block", "a", "X", {.use_pattern = 1, .index = 2}, "abb", "bbb"},
    {"Block", "a", "X", {.use_pattern = 1, .index = 3}, "abb", "abb"},
    {"Block", "a", "^M", {.expand = 1}, "a", "\r"},
    {"String", "'a|b'", "X", {.is_pattern = 1}, "a-b", "X-X"},
    {"String", "^M", "X", {.convert = 1}, "\r", "X"},
    {"Nbr",
     "a",
     "<n>",
     {.placeholder = "n", .first = 3, .step = 4},
     "aa",
     "<3><7>"},
};

TEST_F(ReplaceTest, EveryMemberTakesEveryArgument) {
  ASSERT_TRUE(exclusion("(a)"));
  ASSERT_TRUE(replace_pattern("b"));
  values({"V"});
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.routine);
    const auto becomes_by_member = [&](const RunArguments& arguments,
                                       const std::string& text) {
      if (!member.lines) return becomes(member.run, arguments, text);
      const std::string path = folder.file("f", text);
      over_lines(member.run, arguments, path);
      return read_file(path);
    };
    for (const ArgumentCase& c : kArgumentCases) {
      if (std::string(member.routine).find(c.members) == std::string::npos) {
        continue;
      }
      SCOPED_TRACE(&c - kArgumentCases);
      ASSERT_TRUE(pattern(c.find));
      ASSERT_EQ(Clear(ZENFO_LIST_PAIRS), 1);
      pair(c.find, c.replacement);
      RunArguments arguments = c.arguments;
      arguments.text = c.replacement;
      EXPECT_EQ(becomes_by_member(arguments, c.text), c.result);
      EXPECT_THAT(errors(), IsEmpty());
    }
    ASSERT_TRUE(pattern("a"));
    EXPECT_EQ(becomes_by_member({.binary = 1}, "a\x01"), "a\x01");
    EXPECT_THAT(
        errors(),
        ElementsAre(ErrorRecord{
            folder.path("f") +
                " contains a non printable character at position 1 (0x1) ",
            "loading file", member.routine}));
  }
}

TEST_F(ReplaceTest, RefusedPathsLeaveTheSafeStoreAlone) {
  ASSERT_TRUE(pattern("a"));
  pair("a", "X");
  use_store();
  const auto one = add("1", "a");
  EXPECT_EQ(replace_block({.safe = 1}), 1);
  const auto store = contents(work().path("store"));
  EXPECT_EQ(store.size(), 2u);
  const std::string list = work().file("list", one);
  const std::string none = work().path("none");
  const std::string no_folder = work().path("no/summary");
  const LinePaths refused[] = {{nullptr, "s"},
                               {"", "s"},
                               {list.c_str(), nullptr},
                               {list.c_str(), ""},
                               {list.c_str(), list.c_str()},
                               {none.c_str(), summary_path().c_str()},
                               {list.c_str(), no_folder.c_str()}};
  for (const Member& member : kMembers) {
    if (!member.lines) continue;
    for (const LinePaths& paths : refused) {
      EXPECT_EQ(member.run({}, &paths), -1) << member.routine;
    }
  }
  EXPECT_EQ(contents(work().path("store")), store);
  EXPECT_EQ(originals().size(), 1u);
  EXPECT_EQ(read_file(list), one);
}

TEST(Replace, IsRefusedBeforeInitialize) {
  Terminate();
  const LinePaths paths{"list", "summary"};
  for (const Member& member : kMembers) {
    EXPECT_EQ(member.run({}, member.lines ? &paths : nullptr), -1);
  }
  EXPECT_FALSE(file_exists("summary"));
}

// ---- Questions -------------------------------------------------------------

struct AnswerCase {
  std::vector<int32_t> answers;  // to the questions of three files in turn
  int32_t result;
  std::string texts;  // of the three files
  size_t questions;
  size_t found;
};

const AnswerCase kAnswerCases[] = {
    {{1, 1, 1}, 3, "XXX", 3, 3},   {{0, 1, 1}, 2, "aXX", 3, 2},
    {{1, 0, 1}, 2, "XaX", 3, 2},   {{0, 0, 0}, 0, "aaa", 3, 0},
    {{2}, 0, "aaa", 1, 0},         {{1, 2}, 1, "Xaa", 2, 1},
    {{1, 1, 2}, 2, "XXa", 3, 2},   {{3}, 3, "XXX", 1, 3},
    {{0, 3}, 2, "aXX", 2, 2},      {{1, 1, 3}, 3, "XXX", 3, 3},
    {{4}, -1, "aaa", 1, 0},        {{1, -1}, -1, "Xaa", 2, 1},
    {{0, 1, 77}, -1, "aXa", 3, 1},
};

TEST_F(ReplaceTest, AnswersDecideWhichFilesAreChanged) {
  ASSERT_TRUE(pattern("a"));
  pair("a", "X");
  use_store();
  Texts paths;
  for (const char* name : {"1", "2", "3"}) paths.push_back(add(name, "a"));
  for (const Member& member : kMembers) {
    for (const AnswerCase& one : kAnswerCases) {
      SCOPED_TRACE(member.routine + testing::PrintToString(one.answers));
      for (const auto& path : paths) write_again(path, "a");
      size_t asked = 0;
      int32_t result;
      {
        HostRecorder host;
        host.answer_option = [&](const HostRecorder::Question&) {
          return asked < one.answers.size() ? one.answers[asked++] : 99;
        };
        const RunArguments arguments = {.ask = 1, .safe = 1};
        result = member.lines
                     ? over_lines(member.run, arguments, line_list(paths))
                     : member.run(arguments, nullptr);
      }
      EXPECT_EQ(result, one.result);
      EXPECT_EQ(asked, one.questions);
      std::string texts, lines;
      for (const auto& path : paths) {
        texts += read_file(path);
        if (texts.back() == 'X') lines += path + ", found 1, replaced 1\r\r\n";
      }
      EXPECT_EQ(texts, one.texts);
      EXPECT_EQ(found().size(), member.lines ? 0 : one.found);
      if (member.lines) {
        EXPECT_EQ(summary(), lines);
      }
      EXPECT_EQ(originals().size(), one.found);
      expect_no_matches();
      EXPECT_EQ(errors().size(), one.result == -1 ? 1u : 0u);
    }
  }
}

// ---- Interrupts ------------------------------------------------------------

TEST_F(ReplaceTest, InterruptedAtAnyPollNoFileIsLost) {
  ASSERT_TRUE(pattern("ab"));
  use_store();
  std::string before, after;
  for (int i = 0; i < 400; ++i) {
    before += "ab, ";
    after += "longer, ";
  }
  // Three whole blocks: an interrupt leaves one of them out.
  const std::string large = std::string(155000, 'x') + before;
  Texts paths;
  for (int i = 0; i < 3; ++i) {
    paths.push_back(folder.file(std::to_string(i), before));
  }
  paths.push_back(folder.file("large", large));
  for (const auto& path : paths) add_path(path);
  ASSERT_TRUE(replace_pattern("x"));
  for (bool lines : {false, true}) {
    int half_written = 0;
    int zero = 0;
    const int stops = at_every_poll([&](HostRecorder& host) {
      for (const auto& path : paths) {
        write_again(path, path == paths.back() ? large : before);
      }
      const RunArguments arguments = {.text = "longer", .safe = 1};
      const int32_t answer =
          lines ? over_lines(replace_block, arguments, line_list(paths))
                : replace_block(arguments);
      host.interrupt = [] { return 0; };
      EXPECT_TRUE(answer == -1 || answer == 0 || answer == 4 * 400) << answer;
      zero += answer == 0;
      expect_no_matches();
      for (const auto& path : paths) {
        const std::string original = path == paths.back() ? large : before;
        const std::string text = read_file(path);
        if (text == original || text.size() == original.size() + 400 * 4) {
          continue;
        }
        ++half_written;
        EXPECT_EQ(answer, -1);
        const auto stored = originals();
        ASSERT_FALSE(stored.empty());
        EXPECT_EQ(stored.back(), path);
        EXPECT_EQ(read_file(copies().back()), original);
      }
      EXPECT_EQ(Undo(), 0);
      for (const auto& path : paths) {
        EXPECT_EQ(read_file(path), path == paths.back() ? large : before);
      }
    });
    EXPECT_GT(stops, 20);
    EXPECT_GT(half_written, 0) << "the case of interest occurred";
    EXPECT_GT(zero, 0);
  }
}

TEST_F(ReplaceTest, InterruptedAtAnyPollStringsLoseNoFile) {
  pair("ab", "cd");
  pair("cd", "e");
  use_store();
  std::string before;
  for (int i = 0; i < 300; ++i) before += "ab, ";
  Texts paths;
  for (int i = 0; i < 4; ++i) {
    paths.push_back(folder.file(std::to_string(i), before));
  }
  // Loaded again between its strings.
  const std::string large = std::string(155000, 'x') + before;
  paths.push_back(folder.file("large", large));
  const auto original = [&](const std::string& path) {
    return path == paths.back() ? large : before;
  };
  at_every_poll([&](HostRecorder& host) {
    for (const auto& path : paths) write_again(path, original(path));
    const int32_t answer =
        over_lines(replace_string, {.safe = 1}, line_list(paths));
    host.interrupt = [] { return 0; };
    EXPECT_TRUE(answer == -1 || answer == 0 || answer == 3000) << answer;
    EXPECT_EQ(Undo(), 0);
    for (const auto& path : paths) EXPECT_EQ(read_file(path), original(path));
  });
}

TEST_F(ReplaceTest, InterruptedBetweenItsStringsAFileIsToldOfAsItIs) {
  pair("a", "b");
  pair("b", "c");
  use_store();
  const std::string text = std::string(155000, 'x') + "a";
  const auto one = add("1", text);
  const auto two = add("2", "a");
  for (bool lines : {false, true}) {
    HostRecorder host;
    // While it is loaded again: in blocks, 4 steps in all.
    host.interrupt = [&] {
      return host.statuses.back() == "Now replacing in file " + one &&
             host.reports.back().total == 4;
    };
    const int32_t answer =
        lines ? over_lines(replace_string, {.safe = 1}, line_list({one, two}))
              : replace_string({.safe = 1});
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(read_file(one).substr(155000), "b");
    EXPECT_EQ(read_file(two), "a");
    if (lines) {
      EXPECT_EQ(summary(), one + ", found 1, replaced 1\r\r\n");
    } else {
      EXPECT_THAT(found(), ElementsAre(one));
    }
    host.interrupt = [] { return 0; };
    EXPECT_EQ(Undo(), 0);
    EXPECT_EQ(read_file(one), text);
  }
}

TEST_F(ReplaceTest, AStopWhileAreasAreSoughtEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(a)"));
  use_store();
  std::string text;
  for (int i = 0; i < 300; ++i) text += "(a)";
  const auto one = add("1", text);
  for (const int32_t safe : {0, 1}) {
    HostRecorder host;
    stop_once(host, "Now parsing");
    EXPECT_EQ(replace_block({.safe = safe}), -1);
    EXPECT_EQ(read_file(one), text);
    EXPECT_THAT(originals(), IsEmpty());
    expect_no_results();
    expect_no_matches();
  }
}

TEST_F(ReplaceTest, AFileIsNotRewrittenFromAnInterruptedLoad) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string text(150001, 'a');
  const auto one = add("1", text);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(replace_block({.safe = 1}), 0);
  EXPECT_EQ(read_file(one), text);
  expect_no_results();
  EXPECT_THAT(originals(), IsEmpty());
}

TEST_F(ReplaceTest, InterruptedWhilePatternMatchesAreTakenNothingIsWritten) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(replace_pattern("a"));
  const std::string text(400, 'a');
  const auto one = add("1", text);
  int complete = 0;
  at_every_poll([&](HostRecorder&) {
    write_again(one, text);
    const int32_t answer = replace_block({.use_pattern = 1});
    EXPECT_TRUE(answer == -1 || answer == 400);
    complete += answer == 400;
  });
  EXPECT_GT(complete, 0);
}

// ---- Safe store ------------------------------------------------------------

TEST_F(ReplaceTest, EveryRunEmptiesTheSafeStoreAskedForCopiesOrNot) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  EXPECT_EQ(replace_block({.text = "aa", .safe = 1}), 1);
  work().file("store/foreign", "x");
  work().file("store/sub/kept", "x");
  EXPECT_EQ(replace_block({.text = "b"}), 2);
  EXPECT_EQ(contents(work().path("store")),
            (std::map<std::string, std::string>{
                {"sub"s + zenfo::test::kSeparator + "kept", "x"}}))
      << "the undo list file is deleted with the rest, subfolders stay";
  EXPECT_THAT(originals(), IsEmpty());
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "bb");
}

TEST_F(ReplaceTest, AFileMetTwiceGetsOneSafeCopy) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  add_path(one);
  EXPECT_EQ(replace_block({.text = "aa", .safe = 1}), 1 + 2);
  EXPECT_EQ(read_file(one), "aaaa");
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_THAT(found(), ElementsAre(one, one));
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a");
  std::string other = folder.path() + zenfo::test::kSeparator + "." +
                      zenfo::test::kSeparator + "1";
  EXPECT_EQ(over_lines(replace_block, {.text = "aa", .safe = 1},
                       line_list({one, one, other})),
            1 + 2 + 4);
  EXPECT_EQ(originals().size(), 1u);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a");
}

TEST_F(ReplaceTest, AFileUnderItsRelativePathIsTheSame) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = folder.file("1", "a");
  const auto here = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  EXPECT_EQ(over_lines(replace_block, {.text = "aa", .safe = 1},
                       line_list({one, "1"})),
            3);
  EXPECT_EQ(originals().size(), 1u);
  EXPECT_EQ(Undo(), 0);
  std::filesystem::current_path(here);
  EXPECT_EQ(read_file(one), "a");
}

TEST_F(ReplaceTest, AFileMetUnderAnotherNameGetsOneSafeCopy) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  std::vector<std::string> names = {folder.path("2")};
  std::filesystem::create_hard_link(one, names[0]);
#ifndef _WIN32
  names.push_back(folder.path("3"));
  std::filesystem::create_symlink(one, names[1]);
#endif
  int32_t written = 1;
  for (const std::string& name : names) {
    add_path(name);
    written *= 2;
  }
  EXPECT_EQ(replace_block({.text = "aa", .safe = 1}), 2 * written - 1);
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a") << "not what an earlier turn had written";
}

TEST_F(ReplaceTest, FilesOfOneNameGetCopiesOfTheirOwn) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("x/same.txt", "1a");
  const auto two = add("y/same.txt", "2a");
  EXPECT_EQ(replace_block({.safe = 1}), 2);
  EXPECT_THAT(copies(),
              ElementsAre(in_store("same.txt_0"), in_store("same.txt_1")));
  EXPECT_EQ(read_file(in_store("same.txt_0")), "1a");
  EXPECT_EQ(read_file(in_store("same.txt_1")), "2a");
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one) + read_file(two), "1a2a");
}

TEST_F(ReplaceTest, OpenListAndSummaryFilesInTheStoreSurvive) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = folder.file("1", "a");
  const auto list = work().file("store/list", one);
  // Named as the first safe copy would be.
  const auto summary_file = in_store("1_0");
  const LinePaths paths{list.c_str(), summary_file.c_str()};
  EXPECT_EQ(replace_block({.safe = 1}, &paths), 1);
  EXPECT_EQ(read_file(list), one);
  EXPECT_EQ(read_file(summary_file), one + ", found 1, replaced 1\r\r\n");
  EXPECT_THAT(copies(), ElementsAre(in_store("1_1")));
  EXPECT_EQ(read_file(in_store("1_1")), "a");
}

// The obvious replacement of one text by another.
std::string replaced(const std::string& text, const std::string& find,
                     const std::string& with, int32_t& count) {
  std::string out;
  for (size_t i = 0; i < text.size();) {
    if (text.compare(i, find.size(), find) == 0) {
      out += with;
      i += find.size();
      ++count;
    } else {
      out += text[i++];
    }
  }
  return out;
}

TEST_F(ReplaceTest, RandomFilesAreReplacedAndBroughtBack) {
  use_store();
  std::mt19937 random(5);
  const auto text = [&](size_t most) {
    std::string out(1 + random() % most, ' ');
    for (char& c : out) c = "abc"[random() % 3];
    return out;
  };
  for (int round = 0; round < 25; ++round) {
    ASSERT_EQ(Clear(ZENFO_LIST_FILES), 1);
    ASSERT_EQ(Clear(ZENFO_LIST_PAIRS), 1);
    Texts paths, before, after;
    for (int i = 0; i < 6; ++i) {
      before.push_back(text(60));
      // Files of one name in several folders.
      paths.push_back(add("d" + std::to_string(i) + "/f", before.back()));
    }
    after = before;
    int32_t count = 0;
    for (int pairs = 0; pairs < 3; ++pairs) {
      const std::string find = text(3);
      const std::string with = random() % 3 == 0 ? "" : text(4);
      pair(find.c_str(), with.c_str());
      for (std::string& bytes : after) {
        bytes = replaced(bytes, find, with, count);
      }
    }
    EXPECT_EQ(replace_string({.safe = 1}), count);
    size_t changed = 0;
    for (size_t i = 0; i < paths.size(); ++i) {
      EXPECT_EQ(read_file(paths[i]), after[i]);
      changed += after[i] != before[i];
    }
    EXPECT_GE(originals().size(), changed);
    if (round % 2 == 0) {
      EXPECT_EQ(GetUndoList(), static_cast<int32_t>(originals().size()));
    }
    EXPECT_EQ(Undo(), 0);
    for (size_t i = 0; i < paths.size(); ++i) {
      EXPECT_EQ(read_file(paths[i]), before[i]);
    }
  }
}

// ---- Faults of the disk ----------------------------------------------------

TEST_F(ReplaceTest, AFileThatCannotBeWrittenEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  const auto two = add("2", "a");
  HostRecorder host;
  host.on_status_text = [&](const std::string& status) {
    if (status != "Now replacing in file " + one) return;
    std::filesystem::remove(one);
    std::filesystem::create_directory(one);
  };
  const auto list = line_list({one, two});
  EXPECT_EQ(over_lines(replace_block, {.safe = 1}, list), -1);
  EXPECT_EQ(summary(), one + ", found 1") << "as far as it was written";
  EXPECT_EQ(read_file(two), "a");
  expect_no_matches();
  EXPECT_THAT(errors(), IsEmpty());
  EXPECT_EQ(read_file(in_store("1_0")), "a");
  EXPECT_EQ(Undo(), 1) << "a folder is in its place";
  std::filesystem::remove(one);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "a");
}

#ifndef _WIN32
// No file may grow beyond the limit while this lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

// Root may write everything: gives that up while this lives.
class Unprivileged {
 public:
  Unprivileged() : user_(geteuid()) {
    if (user_ == 0) active_ = seteuid(65534) == 0;
  }
  ~Unprivileged() {
    if (user_ == 0 && seteuid(0) != 0) std::abort();
  }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;
  bool active() const { return active_; }

 private:
  uid_t user_;
  bool active_ = true;
};

TEST_F(ReplaceTest, AReadOnlyFileEndsTheRunAndStays) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  ASSERT_EQ(chmod(one.c_str(), 0444), 0);
  const Unprivileged nobody;
  ASSERT_TRUE(nobody.active());
  EXPECT_EQ(replace_block({}), -1);
  EXPECT_EQ(read_file(one), "a");
  expect_no_results();
}

TEST_F(ReplaceTest, ADiskFullWhileWritingLeavesTheSafeCopy) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string text(6000, 'a');
  const auto one = add("1", text);
  const auto two = add("2", text);
  {
    const FileSizeLimit limit(10000);
    EXPECT_EQ(replace_block({.text = "longer", .safe = 1}), -1);
  }
  EXPECT_LT(read_file(one).size(), 36000u);
  EXPECT_EQ(read_file(two), text);
  EXPECT_THAT(originals(), ElementsAre(one));
  EXPECT_EQ(GetUndoList(), 1);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), text);
}

TEST_F(ReplaceTest, ADiskFullWhileCopyingSkipsTheFile) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const std::string text(20000, 'a');
  const auto one = add("1", text);
  const auto two = add("2", "a");
  {
    const FileSizeLimit limit(10000);
    EXPECT_EQ(replace_block({.safe = 1}), 1);
  }
  EXPECT_EQ(read_file(one), text);
  EXPECT_EQ(read_file(two), "X");
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_EQ(errors().size(), 1u);
  EXPECT_THAT(originals(), ElementsAre(two));
  EXPECT_FALSE(file_exists(in_store("1_0"))) << "no half copy";
}

TEST_F(ReplaceTest, AnUndoListThatCannotBeWrittenSkipsTheFile) {
  ASSERT_TRUE(pattern("a"));
  use_store();
  const auto one = add("1", "a");
  {
    const FileSizeLimit limit(10);  // the copy fits, its line does not
    EXPECT_EQ(replace_block({.safe = 1}), 0);
  }
  EXPECT_EQ(read_file(one), "a");
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_EQ(read_file(undo_file()), "") << "no half line";
  EXPECT_THAT(originals(), IsEmpty());
}

TEST_F(ReplaceTest, ASummaryThatCannotBeWrittenFailsTheRun) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  const auto list = work().file("list", one);
  const LinePaths paths{list.c_str(), "/dev/full"};
  EXPECT_EQ(replace_block({}, &paths), -1);
  EXPECT_EQ(read_file(one), "X");
}
#endif

}  // namespace
