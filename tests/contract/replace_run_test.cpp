// Replace runs: results, summaries, what all operations share, questions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/matchers.h"
#include "support/replace_fixture.h"

namespace zenfo::test {
namespace {

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

TEST_F(ReplaceTest, AnEmptyFileIsRejectedAsOneThatCouldNotBeLoaded) {
  ASSERT_TRUE(pattern("a"));
  const auto empty = add("1", "");
  EXPECT_EQ(replace_block({}), 0);
  EXPECT_THAT(rejected(), ElementsAre(empty));
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{empty + " could not be opened",
                                      "loading file", "ReplaceBlock"}));
}

TEST_F(ReplaceTest, SummaryLinesSayWhatHappenedToEachFile) {
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

TEST_F(ReplaceTest, SummaryCountsMatchesFoundThenMatchesWritten) {
  ASSERT_TRUE(pattern("ab"));
  const auto one = folder.file("1", "ab\0ab"s);
  EXPECT_EQ(over_lines(replace_block, {}, one), 1);
  EXPECT_EQ(summary(), one + ", found 2, replaced 1\r\r\n");
}

ErrorRecord not_stored(const std::string& path, const char* routine) {
  return {"Error safe storing file " + path + ". File has been skipped",
          "Error saving file for undo purpose", routine};
}

TEST_F(ReplaceTest, WithoutASafeCopyAFileIsSkippedAndLogged) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  const auto two = add("2", "ba");
  EXPECT_EQ(replace_block({.safe = 1}), 0);
  EXPECT_EQ(read_file(one) + read_file(two), "aba");
  EXPECT_THAT(rejected(), ElementsAre(one, two));
  EXPECT_THAT(found(), IsEmpty());
  EXPECT_THAT(errors(), ElementsAre(not_stored(one, "ReplaceBlock"),
                                    not_stored(two, "ReplaceBlock")));
}

TEST_F(ReplaceTest, TheSummaryLineOfAFileWithoutASafeCopyHasNoLineEnd) {
  ASSERT_TRUE(pattern("a"));
  const auto one = folder.file("1", "a");
  const auto two = folder.file("2", "ba");
  EXPECT_EQ(over_lines(replace_block, {.safe = 1}, line_list({one, two})), 0);
  EXPECT_EQ(summary(),
            one + ", found 1 ERROR, refer to error log file for details" + two +
                ", found 1 ERROR, refer to error log file for details");
  EXPECT_THAT(errors(), ElementsAre(not_stored(one, "ReplaceBlock_f"),
                                    not_stored(two, "ReplaceBlock_f")));
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

TEST_F(ReplaceTest, APairWithoutAFindStringFailsTheRunThoughItsFileIsSkipped) {
  pair("a", "1");
  pair("", "2");
  const auto one = add("1", "a");
  EXPECT_EQ(replace_string({.safe = 1}), -1);
  EXPECT_EQ(read_file(one), "a");
  EXPECT_THAT(rejected(), ElementsAre(one));
}

struct PhaseCase {
  int32_t mode;
  const char* text;
};

TEST_F(ReplaceTest, ReportsThePhasesOfEachFile) {
  ASSERT_TRUE(pattern("a"));
  const PhaseCase cases[] = {{0, "Now replacing in file "},
                             {1, "Now inserting before in file "},
                             {2, "Now inserting after in file "},
                             {9, "Now replacing in file "}};
  const auto one = add("1", "a");
  const auto none = add("2", "b");
  for (const PhaseCase& c : cases) {
    write_file(one, "a");
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
    ASSERT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
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
  const char* members;  // operations with this in their names
  const char* find;
  const char* replacement;
  RunArguments arguments;
  std::string text;
  std::string result;
};

// All with the exclusion "(a)", the replacement pattern "b" and a list of "V".
// clang-format off
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
  {"Nbr", "a", "<n>", {.placeholder = "n", .first = 3, .step = 4}, "aa", "<3><7>"},
};
// clang-format on

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
  const std::string feeding = work().file("feeding", one);
  for (const Member& member : kMembers) {
    if (!member.lines) continue;
    for (const LinePaths& paths : refused) {
      EXPECT_EQ(member.run({}, &paths), -1) << member.routine;
    }
    const std::string error_file = this->error_file();
    const LinePaths paths{feeding.c_str(), summary_path().c_str()};
    SetErrorFile(feeding.c_str());
    EXPECT_EQ(member.run({}, &paths), -1) << "errors would feed the run";
    SetErrorFile(error_file.c_str());
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

struct ReplaceAnswer {
  std::vector<int32_t> answers;  // to the questions of three files in turn
  int32_t result;
  std::string texts;  // of the three files
  size_t questions;
  size_t found;
};

const ReplaceAnswer kReplaceAnswers[] = {
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
    for (const ReplaceAnswer& one : kReplaceAnswers) {
      SCOPED_TRACE(member.routine + testing::PrintToString(one.answers));
      for (const auto& path : paths) write_file(path, "a");
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

}  // namespace
}  // namespace zenfo::test
