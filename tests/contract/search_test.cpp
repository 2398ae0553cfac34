// Searches through the exports: results, phases, rejects, questions, areas.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "support/matchers.h"
#include "support/search_fixture.h"

namespace zenfo::test {
namespace {

// What an accessor of matches writes into a buffer.
template <class Getter>
std::string of_match(Getter getter, int32_t list, uint32_t index) {
  char buffer[200] = "?";
  return getter(list, index, buffer, 100) == 1 ? buffer : "-1";
}

// ---- Results ---------------------------------------------------------------

TEST_F(SearchTest, FilesGoToTheListsByTheirMatches) {
  ASSERT_TRUE(pattern("ab"));
  const auto two = add("1", "ab ab");
  const auto none = add("2", "a b");
  const auto missing = add_missing("3");
  const auto one = add("4", "xab");
  EXPECT_EQ(find_block({}), 3);
  EXPECT_THAT(found(), ElementsAre(two, one));
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2, 1));
  EXPECT_THAT(states(ZENFO_LIST_RESULT), ElementsAre(1, 1));
  EXPECT_THAT(not_found(), ElementsAre(none));
  EXPECT_THAT(flags(ZENFO_LIST_NO_MATCH), ElementsAre(0));
  EXPECT_THAT(rejected(), ElementsAre(missing));
  EXPECT_THAT(files(ZENFO_LIST_RUN_FILES), ElementsAre(two, none, missing, one))
      << "entries are copied, not moved";
  expect_no_matches();
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{missing + " could not be opened",
                                      "loading file", "FindBlock"}));
  for (const int32_t positive : {1, 2, 99}) {
    EXPECT_EQ(GetFileFlagCount(ZENFO_LIST_RESULT, positive), 2)
        << "all flags of 1 or more";
    EXPECT_EQ(GetFileFlagCount(ZENFO_LIST_NO_MATCH, positive), 0);
  }
  EXPECT_EQ(GetFileFlagCount(ZENFO_LIST_RESULT, 0), 0);
  EXPECT_EQ(GetFileFlagCount(ZENFO_LIST_NO_MATCH, 0), 1);
}

TEST_F(SearchTest, FilesAreSearchedInTheSortedOrder) {
  ASSERT_TRUE(pattern("a"));
  Texts paths;
  for (const char* name : {"a", "b", "c"}) paths.push_back(add(name, "a"));
  ASSERT_EQ(Sort(ZENFO_LIST_RUN_FILES, 10, 1), 1);
  EXPECT_EQ(find_block({}), 3);
  EXPECT_THAT(found(), ElementsAre(paths[2], paths[1], paths[0]));
}

TEST_F(SearchTest, StringsAreSearchedForInTheSortedOrder) {
  for (const char* find : {"c", "a", "b"}) pair(find, "");
  ASSERT_EQ(SortString(1, 0), 1);
  const auto one = add("1", "abc");
  HostRecorder host;
  Texts sought;
  host.answer_option = [&](const HostRecorder::Question&) {
    sought.push_back(of_match(GetMatchText, ZENFO_LIST_MATCHES, 0));
    return 1;
  };
  EXPECT_EQ(find_string({.ask = 1}), 3);
  EXPECT_THAT(sought, ElementsAre("a", "b", "c"));
}

TEST_F(SearchTest, UnselectedEntriesArePassedOver) {
  ASSERT_TRUE(pattern("a"));
  add("1", "a");
  add("2", "a");
  ASSERT_EQ(SetState(ZENFO_LIST_RUN_FILES, -1, 0), 2);
  EXPECT_EQ(find_block({}), 0);
  expect_no_results();
  ASSERT_EQ(SetState(ZENFO_LIST_RUN_FILES, 1, 1), 1);
  EXPECT_EQ(find_block({}), 1);
  EXPECT_EQ(found().size(), 1u);
}

TEST_F(SearchTest, ARunEmptiesTheResultsOfTheOneBefore) {
  ASSERT_TRUE(pattern("a"));
  add("1", "a");
  add("2", "b");
  add_missing("3");
  EXPECT_EQ(find_block({}), 1);
  ASSERT_EQ(Clear(ZENFO_LIST_RUN_FILES), 1);
  EXPECT_EQ(find_block({}), 0);
  expect_no_results();
}

TEST_F(SearchTest, CaseAndWholeWordsGoToTheMatcher) {
  ASSERT_TRUE(pattern("cat"));
  add("1", "cat Cat concat CAT");
  EXPECT_EQ(find_block({}), 2);
  EXPECT_EQ(find_block({.case_flag = 0}), 4);
  EXPECT_EQ(find_block({.whole_words = 1}), 1);
  EXPECT_EQ(find_block({.case_flag = 0, .whole_words = 1}), 3);
}

struct Search {
  const char* routine;
  Operation run;
  bool lines;
  const char* exclusion;
};

const Search kSearches[] = {
    {"FindBlock", find_block, false, "zz"},
    {"FindBlock_f", find_block, true, "zz"},
    {"FindString", find_string, false, "zz"},
    {"FindString_f", find_string, true, "zz"},
    {"FindExcludedArea", find_excluded, false, "cat"},
};

TEST_F(SearchTest, AllSearchesKeepTheSameRules) {
  ASSERT_TRUE(pattern("cat"));
  pair("cat", "");
  const auto cats = add("1", "cat Cat concat CAT");
  const auto binary = add("2", "cat\x02");
  const auto missing = add_missing("3");
  for (const Search& search : kSearches) {
    SCOPED_TRACE(search.routine);
    ASSERT_TRUE(exclusion(search.exclusion));
    const auto run = [&](const RunArguments& arguments) {
      return search.lines ? over_lines(search.run, arguments,
                                       line_list({cats, binary, missing}))
                          : search.run(arguments, nullptr);
    };
    int32_t count = 4;
    for (const int32_t case_flag : {0, 1}) {
      for (const int32_t whole : {0, 1}) {
        EXPECT_EQ(
            run({.case_flag = case_flag, .whole_words = whole, .binary = 1}),
            count--);
        EXPECT_THAT(
            errors(),
            ElementsAre(
                ErrorRecord{binary + " contains a non printable character at "
                                     "position 3 (0x2) ",
                            "loading file", search.routine},
                ErrorRecord{missing + " could not be opened", "loading file",
                            search.routine}));
      }
    }
    EXPECT_EQ(run({}), 3);
    EXPECT_EQ(errors().size(), 1u);
    expect_no_matches();
  }
}

// Without callbacks matches are counted, not kept.
TEST_F(SearchTest, FindsTheSameWhetherTheHostListensOrNot) {
  ASSERT_TRUE(pattern("ab"));
  pair("ab", "");
  pair("b", "");
  pair("'a|b'[2]", "");
  std::mt19937 random(3);
  for (int file = 0; file < 30; ++file) {
    std::string text;
    for (size_t n = random() % 300; n > 0; --n) text += "aab1x "[random() % 6];
    add(std::to_string(file), text);
  }
  for (const Search& search : kSearches) {
    if (search.lines) continue;
    SCOPED_TRACE(search.routine);
    int32_t all = 0;
    for (int bits = 0; bits < 16; ++bits) {
      ASSERT_TRUE(exclusion(bits & 1 ? "x" : "'a|b'", 1));
      RunArguments arguments;
      arguments.case_flag = bits >> 1 & 1;
      arguments.whole_words = bits >> 2 & 1;
      arguments.display = bits >> 3 & 1;
      arguments.is_pattern = arguments.display;
      const int32_t alone = search.run(arguments, nullptr);
      const auto flags_alone = flags(ZENFO_LIST_RESULT);
      const auto not_found_alone = not_found();
      HostRecorder host;
      EXPECT_EQ(search.run(arguments, nullptr), alone);
      EXPECT_EQ(flags(ZENFO_LIST_RESULT), flags_alone);
      EXPECT_EQ(not_found(), not_found_alone);
      all += alone;
    }
    EXPECT_GT(all, 1000) << "the texts are chosen to have matches";
  }
}

int32_t ZENFO_CALL take_all_but_the_first(const ZenfoWideChar*, int32_t) {
  SetState(ZENFO_LIST_MATCHES, 0, 0);
  return 3;
}

// A host with only the option question.
TEST_F(SearchTest, WhatWasDeselectedIsNotCountedWhenAllIsTaken) {
  ASSERT_TRUE(pattern("a"));
  pair("a", "");
  const auto one = add("1", "a a a");
  add("2", "a a");
  add("3", "x");
  CallbackTable table{};
  table.option_question = take_all_but_the_first;
  SetCallBacks(&table);
  for (const Operation& run : {Operation(find_block), Operation(find_string)}) {
    EXPECT_EQ(run({.ask = 1}, nullptr), 4);
    EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2, 2));
    EXPECT_EQ(over_lines(run, {.ask = 1}, one + "\r\n"), 2);
  }
  const CallbackTable none{};
  SetCallBacks(&none);
}

int32_t most_matches_seen = 0;
// Counting sends a status text and polls.
void look_at_matches() {
  most_matches_seen =
      std::max({most_matches_seen, GetCount(ZENFO_LIST_MATCHES, -1),
                GetCount(ZENFO_LIST_MATCHES, 1)});
}
int32_t ZENFO_CALL look_when_polled() {
  look_at_matches();
  return 0;
}
int32_t ZENFO_CALL look_at_step(ProgressRecord*) {
  look_at_matches();
  return 0;
}
int32_t ZENFO_CALL look_at_status(const ZenfoWideChar*) {
  look_at_matches();
  return 0;
}

// A host may read the matches in every callback, not only in the question.
TEST_F(SearchTest, MatchesAreThereForEveryCallbackOfTheHost) {
  ASSERT_TRUE(pattern("a"));
  pair("a", "");
  std::string text;
  for (int i = 0; i < 500; ++i) text += "a ";
  add("1", text);
  add("2", text);
  CallbackTable tables[3] = {};
  tables[0].interrupt = look_when_polled;
  tables[1].report = look_at_step;
  tables[2].status = look_at_status;
  for (const CallbackTable& table : tables) {
    for (const Operation& run :
         {Operation(find_block), Operation(find_string)}) {
      SetCallBacks(&table);
      most_matches_seen = 0;
      EXPECT_EQ(run({}, nullptr), 1000);
      EXPECT_EQ(most_matches_seen, 500) << "table " << &table - tables;
    }
  }
  const CallbackTable none{};
  SetCallBacks(&none);
}

TEST_F(SearchTest, EmptyFilesAreFilesWithoutMatches) {
  ASSERT_TRUE(pattern("a"));
  const auto empty = add("1", "");
  HostRecorder host;
  EXPECT_EQ(find_block({.binary = 1, .ask = 1, .report = report()}), 0);
  const auto statuses = host.statuses;
  EXPECT_THAT(statuses, ElementsAre("Now loading file " + empty,
                                    "Now binary checking " + empty));
  EXPECT_THAT(host.reports, IsEmpty()) << "no progress for an empty file";
  EXPECT_THAT(not_found(), ElementsAre(empty));
  EXPECT_EQ(read_file(report()), "");
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SearchTest, WithoutAPatternTheFirstFileEndsTheRun) {
  EXPECT_EQ(find_block({}), 0) << "no file, no search";
  add("1", "a");
  add("2", "a");
  HostRecorder host;
  EXPECT_EQ(find_block({}), -1);
  EXPECT_EQ(host.statuses.size(), 2u);
  expect_no_results();
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SearchTest, AFileAmongThePairsEndsTheRun) {
  ASSERT_TRUE(pattern("a"));
  EXPECT_EQ(AddStringPair("a", "b"), 1);
  add("1", "a");
  EXPECT_EQ(find_block({}), 1);
  // List 2 accepts file entries, too; selected, they are pairs without a text.
  const unsigned char options[ZENFO_OPTION_COUNT] = {};
  ASSERT_EQ(FindFiles(ZENFO_LIST_PAIRS, ("0" + folder.path("1")).c_str(),
                      options, ""),
            1);
  ASSERT_EQ(SetState(ZENFO_LIST_PAIRS, 1, 1), 1);
  EXPECT_EQ(find_string({}), -1);
}

TEST(Search, IsRefusedBeforeInitialize) {
  Terminate();
  EXPECT_EQ(find_block({}), -1);
  EXPECT_EQ(find_string({}), -1);
  EXPECT_EQ(find_excluded({}), -1);
  const LinePaths paths{"list", "summary"};
  EXPECT_EQ(find_block({}, &paths), -1);
  EXPECT_EQ(find_string({}, &paths), -1);
  EXPECT_FALSE(file_exists("summary"));
}

// ---- Binary check ----------------------------------------------------------

TEST_F(SearchTest, ANonPrintableByteRejectsTheFileWhenAsked) {
  ASSERT_TRUE(pattern("a"));
  const auto first = add("1",
                         "\x01"
                         "a");
  const auto fifth = add("2",
                         "aaaaa\x0b"
                         "a");
  const auto high = add("3", "a\x7f\x80\xff\t\r\n");
  const auto nul = add("4", "a\0a"s);
  EXPECT_EQ(find_block({}), 1 + 6 + 1 + 2);
  EXPECT_EQ(find_block({.binary = 1}), 2);
  EXPECT_THAT(found(), ElementsAre(first, high))
      << "the first byte is not looked at";
  EXPECT_THAT(rejected(), ElementsAre(fifth, nul));
  EXPECT_THAT(
      errors(),
      ElementsAre(
          ErrorRecord{
              fifth +
                  " contains a non printable character at position 5 (0xb) ",
              "loading file", "FindBlock"},
          ErrorRecord{
              nul + " contains a non printable character at position 1 (0x0) ",
              "loading file", "FindBlock"}));
}

// ---- Phases ----------------------------------------------------------------

TEST_F(SearchTest, ReportsThePhasesOfEachFileInOrder) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  const auto two = add("2", "b");
  HostRecorder host;
  EXPECT_EQ(find_block({.binary = 1, .ask = 1, .report = report()}), 1);
  EXPECT_THAT(
      host.statuses,
      ElementsAre("Now loading file " + one, "Now binary checking " + one,
                  "Now parsing file " + one, "Preparing for display " + one,
                  "Now reporting to file " + report(),
                  "Now loading file " + two, "Now binary checking " + two,
                  "Now parsing file " + two));
}

TEST_F(SearchTest, ParsingIsReportedForEachString) {
  pair("a", "");
  pair("b", "");
  const auto one = add("1", "ab");
  HostRecorder host;
  EXPECT_EQ(find_string({}), 2);
  EXPECT_THAT(host.statuses,
              ElementsAre("Now loading file " + one, "Now parsing file " + one,
                          "Now parsing file " + one));
}

// ---- Questions -------------------------------------------------------------

TEST_F(SearchTest, AsksForEveryFileWithMatchesAndAnnouncesTheReport) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "a");
  add("2", "b");
  const auto three = add("3", "a");
  HostRecorder host;
  EXPECT_EQ(find_block({.ask = 1}), 2);
  EXPECT_THAT(host.option_questions,
              ElementsAre(HostRecorder::Question{one, 0},
                          HostRecorder::Question{three, 0}));
  host.option_questions.clear();
  EXPECT_EQ(find_block({.ask = 1, .report = report()}), 2);
  EXPECT_EQ(host.option_questions[0].number, 1);
  host.option_questions.clear();
  EXPECT_EQ(find_block({.ask = 1, .report = work().path("no/report")}), 2)
      << "a report that cannot be created is done without";
  EXPECT_EQ(host.option_questions[0].number, 0);
  host.option_questions.clear();
  EXPECT_EQ(find_block({}), 2);
  EXPECT_THAT(host.option_questions, IsEmpty());
}

// Three files with 1, 2 and 4 matches, and one without between them.
struct AnswerCase {
  std::vector<int32_t> answers;  // to the questions in turn
  int32_t result;
  std::vector<int> found;  // flags in the result list
  size_t questions;
  size_t not_found;
};

const AnswerCase kAnswerCases[] = {
    {{1, 1, 1}, 7, {1, 2, 4}, 3, 1},
    {{0, 1, 1}, 6, {2, 4}, 3, 1},
    {{1, 0, 1}, 5, {1, 4}, 3, 1},
    {{1, 1, 0}, 3, {1, 2}, 3, 1},
    {{0, 0, 0}, 0, {}, 3, 1},
    {{2}, 0, {}, 1, 0},
    {{1, 2}, 1, {1}, 2, 1},
    {{1, 1, 2}, 3, {1, 2}, 3, 1},
    {{0, 2}, 0, {}, 2, 1},
    {{3}, 7, {1, 2, 4}, 1, 1},
    {{1, 3}, 7, {1, 2, 4}, 2, 1},
    {{0, 3}, 6, {2, 4}, 2, 1},
    {{1, 1, 3}, 7, {1, 2, 4}, 3, 1},
    {{4}, -1, {}, 1, 0},
    {{-1}, -1, {}, 1, 0},
    {{1, 4}, -1, {1}, 2, 1},
    {{1, 0, 99}, -1, {1}, 3, 1},
    {{INT32_MIN}, -1, {}, 1, 0},
};

TEST_F(SearchTest, AnswersDecideWhatIsTakenAndWhenTheRunEnds) {
  ASSERT_TRUE(pattern("a"));
  add("1", "a");
  add("2", "b");
  add("3", "aa");
  add("4", "aaaa");
  for (const AnswerCase& one : kAnswerCases) {
    SCOPED_TRACE(testing::PrintToString(one.answers));
    size_t asked = 0;
    int32_t result;
    {
      HostRecorder host;
      host.answer_option = [&](const HostRecorder::Question&) {
        return asked < one.answers.size() ? one.answers[asked++] : 99;
      };
      result = find_block({.ask = 1});
    }
    EXPECT_EQ(result, one.result);
    EXPECT_EQ(asked, one.questions);
    EXPECT_EQ(flags(ZENFO_LIST_RESULT), one.found);
    EXPECT_EQ(not_found().size(), one.not_found);
    expect_no_matches();
    if (one.result == -1) {
      EXPECT_THAT(errors(),
                  ElementsAre(ErrorRecord{
                      "Invalid option", "Prompting user option", "FindBlock"}));
    } else {
      EXPECT_THAT(errors(), IsEmpty());
    }
  }
}

TEST_F(SearchTest, AskingWithoutACallbackIsAnInvalidOption) {
  ASSERT_TRUE(pattern("a"));
  add("1", "b");
  EXPECT_EQ(find_block({.ask = 1}), 0) << "nothing to ask about";
  add("2", "a");
  EXPECT_EQ(find_block({.ask = 1}), -1);
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{"Invalid option", "Prompting user option",
                                      "FindBlock"}));
}

TEST_F(SearchTest, AllSearchesThatAskRefuseInvalidOptions) {
  ASSERT_TRUE(pattern("cat"));
  pair("cat", "");
  const auto one = add("1", "cat");
  HostRecorder host;
  host.answer_option = [](const HostRecorder::Question&) { return 4; };
  for (const Search& search : kSearches) {
    if (search.routine == "FindExcludedArea"s) continue;  // never asks
    SCOPED_TRACE(search.routine);
    EXPECT_EQ(search.lines ? over_lines(search.run, {.ask = 1}, one)
                           : search.run({.ask = 1}, nullptr),
              -1);
    EXPECT_THAT(errors(), ElementsAre(ErrorRecord{"Invalid option",
                                                  "Prompting user option",
                                                  search.routine}));
  }
}

TEST_F(SearchTest, InsideTheQuestionTheMatchesCanBeReadAndDeselected) {
  ASSERT_TRUE(pattern("ab"));
  ASSERT_TRUE(exclusion("(ab)"));
  const auto one = add("1", "ab (ab) xab");
  HostRecorder host;
  const std::string occurrences = work().path("occurrences");
  host.answer_option = [&](const HostRecorder::Question&) {
    EXPECT_EQ(GetCount(ZENFO_LIST_MATCHES, -1), 2);
    EXPECT_EQ(GetCount(ZENFO_LIST_EXCLUDED, -1), 1);
    EXPECT_EQ(of_match(GetMatchOffset, ZENFO_LIST_MATCHES, 1), "9");
    EXPECT_EQ(of_match(GetMatchLength, ZENFO_LIST_MATCHES, 1), "2");
    EXPECT_EQ(of_match(GetMatchText, ZENFO_LIST_MATCHES, 1), "ab");
    EXPECT_EQ(of_match(GetMatchOffset, ZENFO_LIST_EXCLUDED, 0), "3");
    EXPECT_EQ(of_match(GetMatchText, ZENFO_LIST_EXCLUDED, 0), "(ab)");
    EXPECT_EQ(of_match(GetMatchReplace, ZENFO_LIST_MATCHES, 0), "");
    EXPECT_EQ(get_match_flag(ZENFO_LIST_MATCHES, 0), 1);
    EXPECT_EQ(save_occurrences(occurrences.c_str(), ";"), 2);
    EXPECT_EQ(read_file(occurrences), "ab;ab;");
    EXPECT_EQ(SetState(ZENFO_LIST_MATCHES, 0, 0), 1);
    EXPECT_EQ(save_occurrences(occurrences.c_str(), "--"), 1);
    EXPECT_EQ(read_file(occurrences), "ab--");
    return 1;
  };
  EXPECT_EQ(find_block({.ask = 1, .report = report()}), 1);
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(1));
  EXPECT_EQ(read_file(report()),
            one +
                "\r\n\r\nNumber\tOffset\tLength\r\n"
                "------\t------\t------\r\n"
                "2\t9\t2\r\n-------------MATCH-------------\r\nab\r\n"
                "-----------END MATCH-----------\r\n\r\n");
}

// The display has lines only during the question, whatever the answer.
TEST_F(SearchTest, TheDisplayShowsTheFileInsideTheQuestion) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(a)"));
  ASSERT_EQ(PrepareDisplay("\r\n", 0), -1) << "sets the separator";
  add("1", "a\r\n(a)\r\nb");
  add("2", "a");
  for (int32_t answer : {0, 1, 2, 3, 4}) {
    HostRecorder host;
    host.answer_option = [&](const HostRecorder::Question&) {
      EXPECT_EQ(GetDisplayLineCount(),
                host.option_questions.size() == 1 ? 3 : 1);
      EXPECT_EQ(PrepareDisplay(nullptr, 0), 1) << "may be laid out again";
      return answer;
    };
    host.on_status_text = [&](const std::string&) {
      EXPECT_EQ(GetDisplayLineCount(), 0) << "no file is shown yet or any more";
    };
    EXPECT_EQ(find_block({.ask = 1}), answer == 4                  ? -1
                                      : answer == 0 || answer == 2 ? 0
                                                                   : 2);
    EXPECT_EQ(GetDisplayLineCount(), 0);
  }
}

// What the display of the file in hand shows.
std::vector<int32_t> shown_at_question;

int32_t ZENFO_CALL look_at_display(const ZenfoWideChar*, int32_t) {
  int32_t place[2];
  SetBytesPerLine(2);  // for the next layout
  const int32_t answer = HighlightGroup(1, place);
  shown_at_question = {answer, place[0], place[1], GetDisplayLineCount()};
  SetBytesPerLine(0);
  return 1;
}

// Nobody hears the layout being made, so it waits for the operation.
TEST_F(SearchTest, TheDisplayShowsTheFileToAHostWithTheQuestionAlone) {
  ASSERT_TRUE(pattern("a"));
  add("1", "ba\n\rca");
  shown_at_question.clear();
  CallbackTable table{};
  table.option_question = look_at_display;
  SetCallBacks(&table);
  EXPECT_EQ(find_block({.ask = 1}), 2);
  EXPECT_THAT(shown_at_question, ElementsAre(1, 1, 1, 2));
  EXPECT_EQ(GetDisplayLineCount(), 0);
  const CallbackTable none{};
  SetCallBacks(&none);
}

// Where the groups of the display begin.
std::string group_places() {
  std::string places;
  for (uint32_t group = 0; group < 4; ++group) {
    int32_t place[2];
    places += HighlightGroup(group, place) == 1
                  ? "(" + std::to_string(place[0]) + "," +
                        std::to_string(place[1]) + ")"
                  : "-";
  }
  return places;
}

TEST_F(SearchTest, TheDisplayShowsWhatTheSearchLeavesOut) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(a)"));
  add("1", "a(a)");
  const auto shown = [&](int32_t display, int32_t matches) {
    std::string places;
    HostRecorder host;
    host.answer_option = [&](const HostRecorder::Question&) {
      places = group_places();
      return 1;
    };
    EXPECT_EQ(find_block({.ask = 1, .display = display}), matches);
    return places;
  };
  EXPECT_EQ(shown(0, 1), "(0,0)(0,1)--") << "the match and the area";
  EXPECT_EQ(shown(1, 1), "(0,0)(0,2)--") << "outside the area, and the match";
  ASSERT_EQ(SetExclusionPattern(nullptr, "", nullptr, 0, 0, 0, 0, 0, 0), -1);
  EXPECT_EQ(shown(1, 2), "(0,0)(0,2)--") << "the whole text, both matches";
}

TEST_F(SearchTest, DeselectingAllPutsTheFileIntoTheNoMatchList) {
  ASSERT_TRUE(pattern("a"));
  const auto one = add("1", "aa");
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question&) {
    return SetState(ZENFO_LIST_MATCHES, -1, 0) == 2 ? 1 : -5;
  };
  EXPECT_EQ(find_block({.ask = 1, .report = report()}), 0);
  EXPECT_THAT(not_found(), ElementsAre(one));
  EXPECT_EQ(read_file(report()), one + "\r\n");
}

TEST_F(SearchTest, WhatWouldPullTheListsAwayIsRefusedInsideTheQuestion) {
  ASSERT_TRUE(pattern("a"));
  pair("a", "");
  add("1", "a");
  use_store();
  HostRecorder host;
  host.answer_option = [&](const HostRecorder::Question&) {
    const unsigned char options[ZENFO_OPTION_COUNT] = {};
    TextCounts counts;
    EXPECT_EQ(Initialize(), 0);
    EXPECT_EQ(Terminate(), -1);
    EXPECT_EQ(Clear(ZENFO_LIST_RUN_FILES), 0);
    EXPECT_EQ(Clear(ZENFO_LIST_MATCHES), 0);
    EXPECT_EQ(FindFiles(ZENFO_LIST_RUN_FILES, "0x", options, ""), -1);
    EXPECT_FALSE(pattern("b"));
    EXPECT_FALSE(exclusion("b"));
    EXPECT_EQ(find_block({}), -1);
    EXPECT_EQ(find_string({}), -1);
    EXPECT_EQ(find_excluded({}), -1);
    EXPECT_EQ(replace_block({}), -1);
    EXPECT_EQ(replace_string({}), -1);
    EXPECT_EQ(change_case({}), -1);
    EXPECT_EQ(AddStringPair("x", "y"), -1);
    EXPECT_EQ(Undo(), -1);
    EXPECT_EQ(GetUndoList(), -1);
    EXPECT_EQ(ClearUndoList(), -1);
    EXPECT_EQ(get_word_count(folder.path("1").c_str(), &counts), -1);
    return 1;
  };
  EXPECT_EQ(find_block({.ask = 1}), 1);
  EXPECT_EQ(host.option_questions.size(), 1u);
  EXPECT_THAT(errors(), IsEmpty());
}

// ---- Exclusion -------------------------------------------------------------

TEST_F(SearchTest, MatchesAreFoundOutsideOrInsideTheAreas) {
  ASSERT_TRUE(pattern("a"));
  ASSERT_TRUE(exclusion("(aa)"));
  add("1", "a(aa)a(a)");
  EXPECT_EQ(find_block({}), 3);
  EXPECT_EQ(find_block({.display = 1}), 2);
  EXPECT_EQ(find_block({.display = -7}), 2);
}

TEST_F(SearchTest, AnEmptyExclusionPatternLeavesTheWholeText) {
  ASSERT_TRUE(pattern("a"));
  add("1", "aa");
  EXPECT_EQ(find_block({.display = 1}), 2);
  ASSERT_TRUE(exclusion("(x)"));
  EXPECT_EQ(find_block({}), 2);
  EXPECT_EQ(find_block({.display = 1}), 0) << "there is no area to be inside";
}

TEST_F(SearchTest, ExcludedAreasAreSearchedForAlone) {
  ASSERT_TRUE(exclusion("ab"));
  const auto one = add("1", "ab.ab");
  const auto two = add("2", "AB");
  const auto missing = add_missing("3");
  const auto binary = add("4", "ab\x02");
  HostRecorder host;
  EXPECT_EQ(find_excluded({.binary = 1, .report = report()}), 2);
  EXPECT_THAT(host.option_questions, IsEmpty());
  EXPECT_EQ(read_file(report()),
            one +
                "\r\n\r\nNumber\tOffset\tLength\r\n"
                "------\t------\t------\r\n"
                "1\t0\t2\r\n-------------MATCH-------------\r\nab\r\n"
                "-----------END MATCH-----------\r\n"
                "2\t3\t2\r\n-------------MATCH-------------\r\nab\r\n"
                "-----------END MATCH-----------\r\n\r\n" +
                two + "\r\n");
  EXPECT_THAT(found(), ElementsAre(one));
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(2));
  EXPECT_THAT(not_found(), ElementsAre(two));
  EXPECT_THAT(rejected(), ElementsAre(missing, binary));
  EXPECT_EQ(errors().size(), 2u);
  EXPECT_EQ(find_excluded({.case_flag = 0}), 4);
  expect_no_matches();
}

TEST_F(SearchTest, WithoutAnExclusionPatternThereAreNoAreasToFind) {
  EXPECT_EQ(find_excluded({}), 0);
  add("1", "a");
  EXPECT_EQ(find_excluded({}), -1);
}

}  // namespace
}  // namespace zenfo::test
