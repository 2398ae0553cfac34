// Replacing through the exports: what is written, and where it comes from.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/matchers.h"
#include "support/replace_fixture.h"

namespace zenfo::test {
namespace {

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

TEST_F(ReplaceTest, BytesAfterANulAreLost) {
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
    ASSERT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
    const auto one = add("1", "b b");
    const auto two = add("2", "b");
    EXPECT_EQ(replace_block_nbr({.text = "#", .run_on = run_on}), 3);
    EXPECT_EQ(read_file(one), "1 2");
    EXPECT_EQ(read_file(two), run_on != 0 ? "3" : "1");
    write_file(one, "b b");
    write_file(two, "b");
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

#ifndef _WIN32  // Windows deletes no file that is open
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

}  // namespace
}  // namespace zenfo::test
