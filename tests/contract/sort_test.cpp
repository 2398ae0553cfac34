// Sorting, selection of duplicates, removal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/host_recorder.h"
#include "support/list_test.h"
#include "support/lists.h"
#include "support/matchers.h"
#include "support/session.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

constexpr unsigned char kAllFacts[ZENFO_OPTION_COUNT] = {1, 1, 1, 1, 1,
                                                         1, 1, 1, 1, 1};
class SortTest : public ListTest {
 protected:
  // Files of these sizes, in this order, as entries of a list.
  struct File {
    const char* name;
    size_t size = 0;
  };
  void fill(int32_t list, const std::vector<File>& files,
            const unsigned char* options = kAllFacts) {
    for (const File& f : files) {
      const std::string path = folder.file(f.name, std::string(f.size, 'x'));
      ASSERT_EQ(FindFiles(list, ("0" + path).c_str(), options, ""), 1);
    }
  }
  // Pairs and values from lists of texts.
  void fill_pairs(const Texts& finds) {
    for (const std::string& find : finds) AddStringPair(find.c_str(), "r");
  }
  void fill_values(const Texts& values) {
    load_replace_list(folder.file("values", lines(values)).c_str());
  }
  static Texts names(int32_t list = ZENFO_LIST_RUN_FILES) {
    return texts(GetFilename, list);
  }
  static Texts finds() { return texts(GetFindString, ZENFO_LIST_PAIRS); }
  static Texts values() { return texts(get_replace_value, ZENFO_LIST_VALUES); }
};

TEST_F(SortTest, SortsFilesByEveryKeyBothWays) {
  fill(ZENFO_LIST_RUN_FILES,
       {{"b/C.txt", 10}, {"c/a.doc", 30}, {"a/B.ini", 20}});
  SetState(ZENFO_LIST_RUN_FILES, 0, 1);
  const std::pair<uint32_t, Texts> rising[] = {
      {2, {"a.doc", "B.ini", "C.txt"}},  {3, {"B.ini", "C.txt", "a.doc"}},
      {8, {"C.txt", "B.ini", "a.doc"}},  {10, {"B.ini", "C.txt", "a.doc"}},
      {11, {"a.doc", "B.ini", "C.txt"}}, {13, {"B.ini", "C.txt", "a.doc"}},
      {14, {"B.ini", "C.txt", "a.doc"}}, {16, {"B.ini", "C.txt", "a.doc"}},
  };
  for (const auto& [option, expected] : rising) {
    EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, option, 0), 1);
    EXPECT_EQ(names(), expected) << option;
    EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, option, -5), 1);
    EXPECT_EQ(names(), Texts(expected.rbegin(), expected.rend())) << option;
  }
  for (const uint32_t option : {0u, 12u, 15u}) {
    EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, option, 0), 1);
    EXPECT_EQ(names().back(), "C.txt") << "the selected one, " << option;
    EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, option, 1), 1);
    EXPECT_EQ(names().front(), "C.txt") << option;
  }
  for (uint32_t option = 0; option <= 16; ++option) {
    EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, option, 0), 1) << option;
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SortTest, SortsByTypeName) {
  fill(ZENFO_LIST_RUN_FILES, {{"1.zz"}, {"2.aa"}});
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 4, 0), 1);
  const Texts types = texts(GetType, ZENFO_LIST_RUN_FILES);
  EXPECT_LE(types[0], types[1]);
}

TEST_F(SortTest, OptionsAfterTheLastAreRefused) {
  fill(ZENFO_LIST_RUN_FILES, {{"b"}, {"a"}});
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 17, 0), -1);
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, UINT32_MAX, 0), -1);
  const ErrorRecord refused{"Option is invalid", "Checking sort option",
                            "Sort"};
  EXPECT_THAT(errors(), ElementsAre(refused, refused));
  EXPECT_THAT(names(), ElementsAre("b", "a"));
}

TEST_F(SortTest, AnUnknownListIsLoggedTwice) {
  EXPECT_EQ(Sort(kNoList, 99, 0), -1);
  EXPECT_THAT(
      errors(),
      ElementsAre(ErrorRecord{"", "Error retrieving list handler", "get_list"},
                  ErrorRecord{"The list pointer is NULL",
                              "Getting list pointer", "Sort"}));
}

TEST_F(SortTest, TheListIsTestedBeforeTheStatusText) {
  HostRecorder host;
  EXPECT_EQ(Sort(-1, 0, 0), -1);
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 17, 0), -1);
  EXPECT_THAT(host.statuses, IsEmpty());
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 0, 0), -1) << "an empty list";
  EXPECT_THAT(host.statuses, ElementsAre("Now sorting entries"));
}

TEST_F(SortTest, FewerThanTwoRecordsAnswerMinusOneUnlogged) {
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 2, 0), -1);
  fill(ZENFO_LIST_RUN_FILES, {{"a"}});
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 2, 0), -1);
  EXPECT_THAT(names(), ElementsAre("a"));
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SortTest, MissingNamesGoFirst) {
  fill(ZENFO_LIST_RUN_FILES, {{"b"}, {"a"}});
  HostRecorder host;
  int asked = 0;
  host.answer_file = [&](const std::string&) { return asked++ == 0 ? 1 : 2; };
  ASSERT_EQ(AddFileToList(ZENFO_LIST_RUN_FILES, ZENFO_LIST_RUN_FILES,
                          kNoFacts.data()),
            1);
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 2, 0), 1);
  EXPECT_THAT(names(), ElementsAre("(-1)", "a", "b"));
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 2, 1), 1);
  EXPECT_THAT(names(), ElementsAre("b", "a", "(-1)"));
}

TEST_F(SortTest, AnAppendedRecordEndsTheSortedOrder) {
  fill(ZENFO_LIST_RUN_FILES, {{"c"}, {"a"}});
  Sort(ZENFO_LIST_RUN_FILES, 2, 0);
  EXPECT_THAT(names(), ElementsAre("a", "c"));
  fill(ZENFO_LIST_RUN_FILES, {{"b"}});
  EXPECT_THAT(names(), ElementsAre("c", "a", "b"));
}

TEST_F(SortTest, SortsPairsByStateFindAndReplaceString) {
  AddStringPair("b", "x");
  AddStringPair("A", "z");
  AddStringPair("c", "");
  SetState(ZENFO_LIST_PAIRS, 0, 1);
  EXPECT_EQ(SortString(1, 0), 1);
  EXPECT_THAT(finds(), ElementsAre("A", "b", "c"));
  EXPECT_EQ(SortString(2, 0), 1);
  EXPECT_THAT(finds(), ElementsAre("c", "b", "A"));
  EXPECT_EQ(SortString(0, 1), 1);
  EXPECT_EQ(finds()[0], "b");
  EXPECT_EQ(Sort(ZENFO_LIST_PAIRS, 14, 1), 1) << "the same keys";
  EXPECT_THAT(finds(), ElementsAre("A", "b", "c"));
  EXPECT_EQ(Sort(ZENFO_LIST_PAIRS, 2, 0), 1) << "pairs have no file name";
}

TEST_F(SortTest, PairsAndValuesAreSavedInTheSortedOrder) {
  AddStringPair("c", "1");
  AddStringPair("a", "2");
  AddStringPair("b", "3");
  ASSERT_EQ(SortString(1, 0), 1);
  const std::string out = folder.path("out");
  EXPECT_EQ(SaveStringPair(out.c_str(), 0), 3);
  EXPECT_EQ(read_file(out), "a\t2\r\nb\t3\r\nc\t1\r\n");
  fill_values({"c", "a", "b"});
  ASSERT_EQ(sort_replace_list(1, 0), 1);
  EXPECT_EQ(save_replace_list(out.c_str()), 3);
  EXPECT_EQ(read_file(out), "a\r\r\nb\r\r\nc\r\r\n");
}

TEST_F(SortTest, SortsValuesByStateAndValue) {
  fill_values({"b", "C", "a"});
  SetState(ZENFO_LIST_VALUES, 1, 1);
  EXPECT_EQ(sort_replace_list(1, 0), 1);
  EXPECT_THAT(values(), ElementsAre("a", "b", "C"));
  EXPECT_EQ(sort_replace_list(0, 1), 1);
  EXPECT_EQ(values()[0], "C");
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SortTest, TheLastOptionOfTheValuesIsARowAfterTheTablesEnd) {
  HostRecorder host;
  EXPECT_EQ(sort_replace_list(2, 0), -1) << "an empty list";
  fill_values({"b", "a"});
  EXPECT_EQ(sort_replace_list(2, 0), -1);
  EXPECT_THAT(host.statuses,
              ElementsAre("Now sorting entries", "Now sorting entries"));
  EXPECT_THAT(errors(), ElementsAre(runtime_error("sort_replace_list"),
                                    runtime_error("sort_replace_list")));
  EXPECT_THAT(values(), ElementsAre("b", "a"));
}

TEST_F(SortTest, SortsSafeCopiesByStateOriginalCopyAndTime) {
  const std::string file = folder.file("undo.txt",
                                       "b\tz\t2026/01/03\r\n"
                                       "A\ty\t2026/01/01\r\n"
                                       "c\tX\t2026/01/02\r\n");
  ASSERT_EQ(SetUndoFile(file.c_str()), 1);
  ASSERT_EQ(GetUndoList(), 3);
  const auto originals = [] { return texts(GetOrigFile, ZENFO_LIST_UNDO); };
  EXPECT_EQ(SortUndo(1, 0), 1);
  EXPECT_THAT(originals(), ElementsAre("A", "b", "c"));
  EXPECT_EQ(SortUndo(2, 0), 1);
  EXPECT_THAT(originals(), ElementsAre("c", "A", "b"));
  EXPECT_EQ(SortUndo(3, 1), 1);
  EXPECT_THAT(originals(), ElementsAre("b", "c", "A"));
  SetState(ZENFO_LIST_UNDO, 1, 0);  // c
  EXPECT_EQ(SortUndo(0, 0), 1);
  EXPECT_EQ(originals()[0], "c");
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SortTest, AnEmptyUndoListAnswersMinusOneUnlogged) {
  for (uint32_t option = 0; option <= 3; ++option) {
    EXPECT_EQ(SortUndo(option, 0), -1);
  }
  EXPECT_THAT(errors(), IsEmpty());
}

struct ResultSort {
  const char* routine;
  int32_t(ZENFO_CALL* sort)(uint32_t, int32_t);
  int32_t list;
};

TEST_F(SortTest, SortsResultsByFlagNameFolderAndFlag) {
  const ResultSort sorts[] = {
      {"SortResult", SortResult, ZENFO_LIST_RESULT},
      {"SortResultNoMatch", SortResultNoMatch, ZENFO_LIST_NO_MATCH},
      {"SortResultError", SortResultError, ZENFO_LIST_ERROR},
  };
  for (const ResultSort& s : sorts) {
    SCOPED_TRACE(s.routine);
    fill(s.list, {{"z/a"}, {"y/C"}, {"x/b"}});
    EXPECT_EQ(s.sort(1, 0), 1);
    EXPECT_THAT(names(s.list), ElementsAre("a", "b", "C"));
    EXPECT_EQ(s.sort(2, 0), 1);
    EXPECT_THAT(names(s.list), ElementsAre("b", "C", "a"));
    EXPECT_EQ(s.sort(0, 1), 1);
    EXPECT_EQ(s.sort(3, 1), 1);
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_EQ(s.sort(4, 0), -1);
    EXPECT_THAT(errors(),
                ElementsAre(ErrorRecord{"Option is invalid",
                                        "Checking sort option", s.routine}));
  }
}

TEST_F(SortTest, OptionsThreeAndZeroOfTheResultsSortAlike) {
  fill(ZENFO_LIST_RUN_FILES, {{"a"}, {"b"}, {"c"}, {"d"}, {"e"}, {"f"}, {"g"}});
  // Missing files lack facts and get flag -1.
  for (const char* gone : {"b", "d", "g"}) {
    std::filesystem::remove(folder.path(gone));
  }
  HostRecorder host;
  ASSERT_EQ(AddFileToList(ZENFO_LIST_RUN_FILES, ZENFO_LIST_RESULT, kAllFacts),
            7);
  EXPECT_EQ(SortResult(0, 0), 1);
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(-1, -1, -1, 0, 0, 0, 0));
  const Texts by_zero = names(ZENFO_LIST_RESULT);
  EXPECT_EQ(SortResult(3, 0), 1);
  EXPECT_EQ(names(ZENFO_LIST_RESULT), by_zero);
  EXPECT_EQ(SortResult(3, 1), 1);
  EXPECT_THAT(flags(ZENFO_LIST_RESULT), ElementsAre(0, 0, 0, 0, -1, -1, -1));
}

TEST_F(SortTest, FixedListsRefuseOptionsAboveTheirLast) {
  EXPECT_EQ(SortString(3, 0), -1);
  EXPECT_EQ(SortUndo(4, 0), -1);
  EXPECT_EQ(sort_replace_list(3, 0), -1);
  const char* const message = "Option is invalid";
  const char* const context = "Checking sort option";
  EXPECT_THAT(errors(),
              ElementsAre(ErrorRecord{message, context, "SortString"},
                          ErrorRecord{message, context, "SortUndo"},
                          ErrorRecord{message, context, "sort_replace_list"}));
}

TEST_F(SortTest, SelectsAllButTheFirstOfEqualFiles) {
  fill(ZENFO_LIST_RUN_FILES,
       {{"1/A", 5}, {"2/a", 5}, {"3/B", 5}, {"4/a", 6}, {"5/c", 5}});
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_RUN_FILES, 2), 2);
  EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, 1), 2);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 1, 1, 0, 0))
      << "in sorted order";
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_RUN_FILES, 8), 3);
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_RUN_FILES, 10), 0);
  EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, 1), 0);
}

TEST_F(SortTest, SelectsAllButOneByState) {
  fill_pairs({"a", "b", "c", "d", "e", "f", "g"});
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_PAIRS, 0), 6);
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0, 1, 1, 1, 1, 1, 1));
}

TEST_F(SortTest, DuplicatesByOptionElevenShareNameSizeTimeAndAttributes) {
  fill(ZENFO_LIST_RUN_FILES, {{"1/a", 5}, {"2/a", 6}});
  fill(ZENFO_LIST_RUN_FILES, {{"1/a", 5}});
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_RUN_FILES, 11), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 1, 0));
}

TEST_F(SortTest, MissingNamesAreNoDuplicatesOfEachOther) {
  fill(ZENFO_LIST_RUN_FILES, {{"a"}, {"b"}}, kNoFacts.data());
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_RUN_FILES, 2), 0);
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_RUN_FILES, 4), 1)
      << "missing types are";
}

TEST_F(SortTest, SelectDuplicatesClearsTheSelectionOfASingleRecordToo) {
  fill_pairs({"a"});
  SetState(ZENFO_LIST_PAIRS, 0, 1);
  HostRecorder host;
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_PAIRS, 0), -1);
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0));
  EXPECT_THAT(
      std::vector<std::string>(host.statuses.begin(),
                               host.statuses.begin() + 2),
      ElementsAre("Now deselecting all entries", "Now selecting duplicates"));
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_UNDO, 0), -1) << "an empty list";
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SortTest, SelectDuplicatesRefusesOptionsAboveElevenAndMissingLists) {
  fill_pairs({"a", "b"});
  SetState(ZENFO_LIST_PAIRS, -1, 1);
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_PAIRS, 12), -1);
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(1, 1));
  EXPECT_EQ(SelectDuplicates(77, 12), -1);
  EXPECT_THAT(
      errors(),
      ElementsAre(ErrorRecord{"Option is invalid", "Checking duplicate option",
                              "SelectDuplicates"},
                  ErrorRecord{"", "Error retrieving list handler", "get_list"},
                  ErrorRecord{"The list pointer is NULL",
                              "Getting list pointer", "SelectDuplicates"}));
}

TEST_F(SortTest, SelectDuplicatesReportsBothWalks) {
  fill_pairs({"a", "b", "a"});
  HostRecorder host;
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_PAIRS, 10), 1);
  EXPECT_THAT(host.report_positions(), ElementsAre(0, 1, 2))
      << "the second walk begins at 1 and goes on from the first one's step";
}

TEST_F(SortTest, RemovesTheSelectedRecordsAndForgetsTheOrder) {
  fill_pairs({"d", "b", "c", "a"});
  SortString(1, 0);
  SetState(ZENFO_LIST_PAIRS, 1, 1);  // b
  SetState(ZENFO_LIST_PAIRS, 3, 1);  // d
  HostRecorder host;
  EXPECT_EQ(RemoveSelection(ZENFO_LIST_PAIRS), 2);
  EXPECT_THAT(host.statuses, ElementsAre("Now removing items"));
  EXPECT_THAT(finds(), ElementsAre("c", "a"));
}

TEST_F(SortTest, ASortedOrderIsGoneEvenWhenNothingWasRemoved) {
  fill_pairs({"b", "a"});
  SortString(1, 0);
  EXPECT_EQ(RemoveSelection(ZENFO_LIST_PAIRS), 2);
  EXPECT_THAT(finds(), ElementsAre("b", "a"));
  EXPECT_EQ(RemoveSelection(ZENFO_LIST_VALUES), 0) << "an empty list";
}

TEST_F(SortTest, RemovesAllThatIsSelected) {
  fill_pairs({"a", "b", "c"});
  SetState(ZENFO_LIST_PAIRS, -1, 1);
  EXPECT_EQ(RemoveSelection(ZENFO_LIST_PAIRS), 0);
  EXPECT_EQ(GetCount(ZENFO_LIST_PAIRS, -1), 0);
}

TEST_F(SortTest, AStopKeepsWhatIsNotYetRemoved) {
  fill_pairs(Texts(500, "a"));
  SetState(ZENFO_LIST_PAIRS, -1, 1);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  const int32_t left = RemoveSelection(ZENFO_LIST_PAIRS);
  EXPECT_GE(left, 399);
  EXPECT_LT(left, 501);
  EXPECT_EQ(GetCount(ZENFO_LIST_PAIRS, -1), left);
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SortTest, AStopForgetsTheOrderToo) {
  Texts descending;
  for (int i = 999; i > 699; --i) descending.push_back(std::to_string(i));
  fill_pairs(descending);
  SortString(1, 0);
  ASSERT_EQ(finds()[0], "700");
  {
    HostRecorder host;
    host.interrupt = [] { return 1; };
    EXPECT_EQ(RemoveSelection(ZENFO_LIST_PAIRS), 300);
    EXPECT_EQ(host.interrupt_polls, 1);
  }
  EXPECT_EQ(finds(), descending);
}

TEST_F(SortTest, RemovalReportsZerosAndNoPositions) {
  fill_pairs(Texts(1000, "a"));
  HostRecorder host;
  EXPECT_EQ(RemoveSelection(ZENFO_LIST_PAIRS), 1000);
  EXPECT_THAT(host.reports.size(), testing::AnyOf(9u, 10u))
      << "on every 101st record";
  for (const ProgressRecord& report : host.reports) {
    EXPECT_EQ(report.total, 0u);
    EXPECT_EQ(report.position, 0u);
    EXPECT_EQ(report.percent, 0);
  }
}

TEST_F(SortTest, AHostThatReadsTheListDuringTheWalkDoesNotMoveIt) {
  Texts finds_in;
  for (int i = 0; i < 1000; ++i) finds_in.push_back(std::to_string(i));
  fill_pairs(finds_in);
  for (int32_t i = 0; i < 1000; i += 2) SetState(ZENFO_LIST_PAIRS, i, 1);
  HostRecorder host;
  char buffer[64];
  host.interrupt = [&] {
    EXPECT_EQ(GetFindString(0, buffer, sizeof buffer), 1);
    EXPECT_EQ(GetState(ZENFO_LIST_PAIRS, 3), GetState(ZENFO_LIST_PAIRS, 3));
    EXPECT_EQ(DeleteItem(ZENFO_LIST_PAIRS, 0), -1);
    EXPECT_EQ(RemoveSelection(ZENFO_LIST_PAIRS), -1);
    return 0;
  };
  EXPECT_EQ(RemoveSelection(ZENFO_LIST_PAIRS), 500);
  EXPECT_GE(host.interrupt_polls, 9);
  Texts odd;
  for (int i = 1; i < 1000; i += 2) odd.push_back(std::to_string(i));
  EXPECT_EQ(finds(), odd);
}

TEST_F(SortTest, RemoveSelectionLogsAMissingList) {
  EXPECT_EQ(RemoveSelection(-2), -1);
  EXPECT_THAT(
      errors(),
      ElementsAre(ErrorRecord{"", "Error retrieving list handler", "get_list"},
                  ErrorRecord{"The list pointer is NULL",
                              "Getting list pointer", "RemoveSelection"}));
}

TEST_F(SortTest, DeletesTheRecordAtAPosition) {
  fill_pairs({"c", "a", "b"});
  SortString(1, 0);
  EXPECT_EQ(DeleteItem(ZENFO_LIST_PAIRS, 0), 1);
  EXPECT_THAT(finds(), ElementsAre("c", "b"));
  EXPECT_EQ(DeleteItem(ZENFO_LIST_PAIRS, 1), 1);
  EXPECT_THAT(finds(), ElementsAre("c"));
}

TEST_F(SortTest, DeletingAfterTheEndRemovesNothingAndAnswersOne) {
  EXPECT_EQ(DeleteItem(ZENFO_LIST_PAIRS, 0), 1);
  fill_pairs({"b", "a"});
  SortString(1, 0);
  EXPECT_EQ(DeleteItem(ZENFO_LIST_PAIRS, 2), 1);
  EXPECT_EQ(DeleteItem(ZENFO_LIST_PAIRS, UINT32_MAX), 1);
  EXPECT_THAT(finds(), ElementsAre("b", "a")) << "the order is gone";
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SortTest, DeletingFromAMissingListAnswersMinusOne) {
  EXPECT_EQ(DeleteItem(kNoList, 0), -1);
  EXPECT_THAT(errors(), ElementsAre(ErrorRecord{
                            "", "Error retrieving list handler", "get_list"}));
}

TEST_F(SortTest, SortsAreRefusedWhileAnotherOperationRuns) {
  fill_pairs({"b", "a"});
  HostRecorder host;
  int calls = 0;
  host.on_status_text = [&](const std::string&) {
    ++calls;
    EXPECT_EQ(Sort(ZENFO_LIST_PAIRS, 10, 0), -1);
    EXPECT_EQ(SortString(1, 0), -1);
    EXPECT_EQ(SortUndo(1, 0), -1);
    EXPECT_EQ(SortResult(1, 0), -1);
    EXPECT_EQ(SortResultNoMatch(1, 0), -1);
    EXPECT_EQ(SortResultError(1, 0), -1);
    EXPECT_EQ(sort_replace_list(1, 0), -1);
    EXPECT_EQ(SelectDuplicates(ZENFO_LIST_PAIRS, 10), -1);
  };
  EXPECT_EQ(SaveStringPair(folder.path("out").c_str(), 0), 2);
  EXPECT_EQ(calls, 1);
  EXPECT_THAT(finds(), ElementsAre("b", "a"));
  EXPECT_THAT(errors(), IsEmpty());
}

TEST(SortLists, AnswerMinusOneWithoutALibrary) {
  Terminate();
  EXPECT_EQ(Sort(ZENFO_LIST_RUN_FILES, 0, 0), -1);
  EXPECT_EQ(SortString(0, 0), -1);
  EXPECT_EQ(SortUndo(0, 0), -1);
  EXPECT_EQ(SortResult(0, 0), -1);
  EXPECT_EQ(SortResultNoMatch(0, 0), -1);
  EXPECT_EQ(SortResultError(0, 0), -1);
  EXPECT_EQ(sort_replace_list(2, 0), -1);
  EXPECT_EQ(SelectDuplicates(ZENFO_LIST_RUN_FILES, 0), -1);
  EXPECT_EQ(RemoveSelection(ZENFO_LIST_RUN_FILES), -1);
  EXPECT_EQ(DeleteItem(ZENFO_LIST_RUN_FILES, 0), -1);
}

}  // namespace
}  // namespace zenfo::test
