// File-list files: loading and saving.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
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

class ListFileTest : public ListTest {
 protected:
  int32_t load(const std::string& bytes,
               const unsigned char* options = kNoFacts.data()) {
    return LoadFileList(folder.file("list", bytes).c_str(), options);
  }
  static Texts paths(int32_t list = ZENFO_LIST_RUN_FILES) {
    return texts(GetFullName, list);
  }
  std::string out() { return folder.path("out"); }
};

std::vector<unsigned char> options(const std::vector<int>& bytes) {
  std::vector<unsigned char> all(ZENFO_OPTION_COUNT);
  for (const int byte : bytes) all[byte] = 1;
  return all;
}

struct ListFile {
  const char* why;
  std::string bytes;
  Texts paths;
};

TEST_F(ListFileTest, EveryLineThatIsNotEmptyIsAnEntry) {
  const std::string longest(4096, 'p');
  const ListFile cases[] = {
      {"two lines", "a\r\nb\r\n", {"a", "b"}},
      {"no final line end", "a\r\nb", {"a", "b"}},
      {"empty lines", "\r\n\r\na\r\n\r\nb\r\n\r\n", {"a", "b"}},
      {"nothing", "", {}},
      {"empty lines alone", "\r\n\r\n", {}},
      {"bare line feeds", "a\nb\n", {"a\nb\n"}},
      {"bare carriage returns", "a\rb\r", {"a\rb\r"}},
      {"CR CR LF", "a\r\r\nb", {"a\r", "b"}},
      {"blanks", " \r\na b\r\n", {" ", "a b"}},
      {"text behind a NUL", "a\0x\r\n\0y\r\nb"s, {"a", "b"}},
      {"high bytes", "\xe9\xff\r\n", {"\xe9\xff"}},
      {"twice the same", "a\r\na\r\n", {"a", "a"}},
      {"4096 bytes",
       longest + "\r\n" + longest + "q\r\n",
       {longest, longest + "q"}},
  };
  for (const ListFile& c : cases) {
    EXPECT_EQ(load(c.bytes), static_cast<int32_t>(c.paths.size())) << c.why;
    EXPECT_EQ(paths(), c.paths) << c.why;
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ListFileTest, LoadingReplacesTheList) {
  load("a\r\nb");
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(load("c"), 1);
  EXPECT_THAT(paths(), ElementsAre("c"));
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0));
}

TEST_F(ListFileTest, AMissingFileLeavesTheListEmpty) {
  load("a\r\nb");
  EXPECT_EQ(LoadFileList(folder.path("none").c_str(), kNoFacts.data()), -1);
  EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, -1), 0);
  EXPECT_EQ(LoadFileList(folder.path().c_str(), kNoFacts.data()), -1)
      << "a folder";
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ListFileTest, MissingArgumentsLeaveTheListAlone) {
  load("a");
  const std::string list = folder.path("list");
  EXPECT_EQ(LoadFileList(nullptr, kNoFacts.data()), -1);
  EXPECT_EQ(LoadFileList("", kNoFacts.data()), -1);
  EXPECT_THAT(errors(), IsEmpty());
  EXPECT_EQ(LoadFileList(list.c_str(), nullptr), -1);
  EXPECT_EQ(LoadFileList(nullptr, nullptr), -1);
  const ErrorRecord refused{"The file parameter list pointer is NULL",
                            "Getting file infos", "LoadFileList"};
  EXPECT_THAT(errors(), ElementsAre(refused, refused));
  EXPECT_THAT(paths(), ElementsAre("a"));
}

TEST_F(ListFileTest, DerivesAndGathersWhatTheOptionsAsk) {
  const std::string path = folder.file("dir/a.txt", "12345");
  const std::string bytes = path + "\r\n";
  ASSERT_EQ(load(bytes), 1);
  EXPECT_THAT(texts(GetFilename, ZENFO_LIST_RUN_FILES), ElementsAre("(-1)"));
  EXPECT_THAT(texts(GetDirectory, ZENFO_LIST_RUN_FILES), ElementsAre("(-1)"));
  EXPECT_THAT(texts(GetType, ZENFO_LIST_RUN_FILES), ElementsAre("(-1)"));
  EXPECT_THAT(texts(GetSize, ZENFO_LIST_RUN_FILES), ElementsAre("0 B"));
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(0));
  ASSERT_EQ(load(bytes, options({2}).data()), 1);
  EXPECT_THAT(texts(GetFilename, ZENFO_LIST_RUN_FILES), ElementsAre("a.txt"));
  ASSERT_EQ(load(bytes, options({3}).data()), 1);
  EXPECT_THAT(texts(GetDirectory, ZENFO_LIST_RUN_FILES),
              ElementsAre(folder.path("dir")));
  ASSERT_EQ(load(bytes, options({4}).data()), 1);
  EXPECT_NE(texts(GetType, ZENFO_LIST_RUN_FILES)[0], "(-1)");
  for (int byte = 5; byte <= 9; ++byte) {
    ASSERT_EQ(load(bytes, options({byte}).data()), 1);
    EXPECT_THAT(texts(GetSize, ZENFO_LIST_RUN_FILES), ElementsAre("5 B"))
        << byte;
  }
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(0));
}

TEST_F(ListFileTest, EntriesThatFailACheckStayWithTheFlagMinusOne) {
  const std::string there = folder.file("a", "");
  const std::string bin = folder.file("Recycled/b", "");
  const std::string gone = folder.path("gone");
  const std::string slash = folder.folder("sub") + join("", "");
  const std::string bytes = lines({there, bin, gone, folder.path("*")});
  EXPECT_EQ(load(bytes), 4);
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(0, -1, -1, -1));
  EXPECT_EQ(load(bytes, options({5}).data()), 4);
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(0, -1, -1, -1));
  EXPECT_EQ(load(lines({there, slash}), options({2}).data()), 2);
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(0, -1))
      << "a path that ends in a separator has no file name";
  std::filesystem::remove(there);
  EXPECT_EQ(load(bytes), 4);
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(-1, -1, -1, -1));
}

TEST_F(ListFileTest, LoadingReportsItsThreePhasesAndTheirPositions) {
  HostRecorder host;
  EXPECT_EQ(load("a\r\nb\r\nc"), 3);
  EXPECT_THAT(host.statuses,
              ElementsAre("Now importing filenames", "Now processing filenames",
                          "Now retrieving files attributes"));
  EXPECT_THAT(host.report_positions(), ElementsAre(0, 1, 2, 3, 0, 1, 2, 3));
}

TEST_F(ListFileTest, AStopInAnyPhaseAnswersZeroAndKeepsTheEntries) {
  const std::string bytes = lines(Texts(1000, "a"));
  for (const char* phase :
       {"Now importing filenames", "Now processing filenames",
        "Now retrieving files attributes"}) {
    HostRecorder host;
    host.on_status_text = [&](const std::string& text) {
      if (text == phase) host.interrupt = [] { return 1; };
    };
    EXPECT_EQ(load(bytes), 0) << phase;
    EXPECT_EQ(host.statuses.back(), phase);
    const int32_t count = GetCount(ZENFO_LIST_RUN_FILES, -1);
    const bool importing = phase == "Now importing filenames"s;
    EXPECT_TRUE(importing ? count >= 1 && count <= 101 : count == 1000)
        << phase << " " << count;
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ListFileTest, SavesTheSelectedPathsOfListOne) {
  load("c\r\na\r\nb");
  EXPECT_EQ(SaveFileList(out().c_str()), 0);
  EXPECT_EQ(read_file(out()), "");
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  SetState(ZENFO_LIST_RUN_FILES, 1, 0);
  HostRecorder host;
  EXPECT_EQ(SaveFileList(out().c_str()), 2);
  EXPECT_EQ(read_file(out()), "c\r\nb\r\n");
  EXPECT_THAT(host.statuses, ElementsAre("Now saving list of files"));
  EXPECT_THAT(host.report_positions(), ElementsAre(0, 0, 1, 2, 3));
}

TEST_F(ListFileTest, WhatIsSavedLoadsAgainLineFeedsAside) {
  const Texts all = {"a", "b c", std::string(5000, 'x'), "\xe9"};
  load(lines(all));
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(SaveFileList(out().c_str()), 4);
  EXPECT_EQ(LoadFileList(out().c_str(), kNoFacts.data()), 4);
  EXPECT_EQ(paths(), all);
  load("a\nb");
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(SaveFileList(out().c_str()), 1);
  EXPECT_EQ(read_file(out()), "a\r\nb\r\n");
}

TEST_F(ListFileTest, SavesInTheSortedOrder) {
  load("c\r\na\r\nb");
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  ASSERT_EQ(Sort(ZENFO_LIST_RUN_FILES, 10, 1), 1);
  EXPECT_EQ(SaveFileList(out().c_str()), 3);
  EXPECT_EQ(read_file(out()), "c\r\nb\r\na\r\n");
}

TEST_F(ListFileTest, SavingLogsMissingNamesAndFilesThatCannotBeOpened) {
  load("a");
  const ErrorRecord no_name{"The target filename is NULL",
                            "Checking parameters", "SaveFileList"};
  const ErrorRecord not_opened{"The target filename could not be opened",
                               "Opening target file", "SaveFileList"};
  HostRecorder host;
  EXPECT_EQ(SaveFileList(nullptr), -1);
  EXPECT_EQ(SaveFileList(""), -1);
  EXPECT_EQ(SaveFileList(folder.path("no/out").c_str()), -1);
  EXPECT_EQ(SaveFileList(folder.path().c_str()), -1);
  EXPECT_THAT(errors(), ElementsAre(no_name, no_name, not_opened, not_opened));
  EXPECT_THAT(host.statuses, IsEmpty());
}

TEST_F(ListFileTest, AStoppedSaveAnswersZeroWithTheLinesSoFar) {
  load(lines(Texts(1000, "a")));
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  EXPECT_EQ(SaveFileList(out().c_str()), 0);
  EXPECT_LE(read_file(out()).size(), 300u);
  EXPECT_EQ(read_file(out()).size() % 3, 0u);
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, out().c_str(), 1), 0);
  EXPECT_LE(read_file(out()).size(), 300u);
  EXPECT_THAT(errors(), IsEmpty());
}

// A walk over 300 records that the host stops at its first poll; the counter
// that runs to 101 is already at 50.
class ListFileStopTest : public ListFileTest {
 protected:
  void SetUp() override {
    ListFileTest::SetUp();
    const std::string file = folder.file("f", "");
    std::string fifty = "0" + file;
    for (int i = 1; i < 50; ++i) fifty += ";f";
    ASSERT_EQ(
        FindFiles(ZENFO_LIST_OTHER_FILES, fifty.c_str(), kNoFacts.data(), ""),
        50);
    ASSERT_EQ(SetUndoFile(folder.path("undo").c_str()), 1);
    std::string copies;
    for (int i = 0; i < 300; ++i) copies += "a\tb\tc\r\n";
    write_file(folder.path("undo"), copies);
  }
  // Returns the result of the walk.
  int32_t stopped(const std::function<int32_t()>& walk) {
    EXPECT_EQ(
        load(lines(Texts(300, "a")), options({ZENFO_OPTION_FILE_NAME}).data()),
        300);
    EXPECT_EQ(SetState(ZENFO_LIST_RUN_FILES, -1, 1), 300);
    HostRecorder host;
    host.interrupt = [] { return 1; };
    // Resets both poll counters, then advances one of them by 50 polls.
    SetState(ZENFO_LIST_RUN_FILES, -1, 1);
    GetCount(ZENFO_LIST_RUN_FILES, 1);
    EXPECT_EQ(host.interrupt_polls, 2);
    EXPECT_EQ(GetCount(ZENFO_LIST_OTHER_FILES, 0), 50);
    const int32_t answer = walk();
    EXPECT_EQ(host.interrupt_polls, 3);
    return answer;
  }
  size_t lines_saved() { return read_file(out()).size() / 3; }
};

TEST_F(ListFileStopTest, SavesStopAfterTheLinesOfTheirPolls) {
  EXPECT_EQ(stopped([&] { return SaveFileList(out().c_str()); }), 0);
  EXPECT_EQ(lines_saved(), 100u);
  EXPECT_EQ(stopped([&] {
              return SaveResultFileList(ZENFO_LIST_RUN_FILES, out().c_str(), 1);
            }),
            0);
  EXPECT_EQ(lines_saved(), 50u);
  const unsigned char names[10] = {0, 0, 1};
  EXPECT_EQ(stopped([&] {
              return SaveSelection(ZENFO_LIST_RUN_FILES, out().c_str(), ";",
                                   names);
            }),
            101);
  EXPECT_EQ(lines_saved(), 101u);
}

TEST_F(ListFileStopTest, SearchesAndRemovalsCountTheRecordOfTheirPoll) {
  EXPECT_EQ(stopped([] {
              return FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 0, 0, 0, 0);
            }),
            101);
  EXPECT_EQ(stopped([] { return RemoveSelection(ZENFO_LIST_RUN_FILES); }), 250);
}

TEST_F(ListFileStopTest, LoadsKeepTheRecordOfTheirPoll) {
  const std::string list = folder.path("list");
  EXPECT_EQ(
      stopped([&] { return LoadFileList(list.c_str(), kNoFacts.data()); }), 0);
  EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, -1), 51);
  EXPECT_EQ(stopped([] { return GetUndoList(); }), 51);
  EXPECT_EQ(GetCount(ZENFO_LIST_UNDO, -1), 51);
}

TEST_F(ListFileTest, SavesResultsByTheirFlagWhateverTheirState) {
  const std::string there = folder.file("there", "");
  load(lines({there, "gone1", "gone2"}));
  SetState(ZENFO_LIST_RUN_FILES, 1, 1);
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, out().c_str(), 0), 1);
  EXPECT_EQ(read_file(out()), there + "\r\n");
  for (const int32_t flagged : {1, -1, 7}) {
    EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, out().c_str(), flagged),
              2);
    EXPECT_EQ(read_file(out()), "gone1\r\ngone2\r\n");
  }
  load("gone");
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, out().c_str(), 0), 0);
  EXPECT_EQ(read_file(out()), "");
}

TEST_F(ListFileTest, SavingResultsReportsFirstAndLastPositionOnTheResultList) {
  load("a\r\nb\r\nc");
  HostRecorder host;
  ASSERT_EQ(
      AddFileToList(ZENFO_LIST_RUN_FILES, ZENFO_LIST_RESULT, kNoFacts.data()),
      3);
  ASSERT_EQ(
      AddFileToList(ZENFO_LIST_RUN_FILES, ZENFO_LIST_RESULT, kNoFacts.data()),
      3);
  host.statuses.clear();
  host.reports.clear();
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, out().c_str(), 1), 3);
  EXPECT_THAT(host.statuses, ElementsAre("Now saving list of files"));
  std::vector<std::pair<uint32_t, uint32_t>> told;
  for (const ProgressRecord& r : host.reports) {
    told.emplace_back(r.position, r.total);
  }
  EXPECT_THAT(
      told, ElementsAre(std::pair(0u, 6u), std::pair(0u, 3u), std::pair(1u, 3u),
                        std::pair(2u, 3u), std::pair(6u, 6u)));
}

TEST_F(ListFileTest, SavingResultsOfAnEmptyResultListReportsOnce) {
  load("a");
  HostRecorder host;
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, out().c_str(), 1), 1);
  EXPECT_THAT(host.report_positions(), ElementsAre(0));
}

TEST_F(ListFileTest, SavingResultsLogsItsFailures) {
  const ErrorRecord not_opened{"The file could not be opened",
                               "Opening target file", "SaveResultFileList"};
  const ErrorRecord no_list{"", "Error retrieving list handler", "get_list"};
  EXPECT_EQ(
      SaveResultFileList(ZENFO_LIST_RESULT, folder.path("no/out").c_str(), 0),
      -1);
  EXPECT_EQ(SaveResultFileList(kNoList, "", 0), -1);
  EXPECT_THAT(errors(), ElementsAre(not_opened, no_list));
}

TEST_F(ListFileTest, SavingResultsLogsAMissingNameAsAMissingList) {
  const ErrorRecord no_name{"The list pointer is NULL", "Getting result list",
                            "SaveResultFileList"};
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RESULT, nullptr, 0), -1);
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RESULT, "", 0), -1);
  EXPECT_THAT(errors(), ElementsAre(no_name, no_name));
}

TEST_F(ListFileTest, RecordsThatAreNoFilesAreLeftOut) {
  AddStringPair("a", "b");
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_PAIRS, out().c_str(), 0), 0);
  EXPECT_EQ(read_file(out()), "");
  EXPECT_THAT(errors(), IsEmpty());
}

#ifndef _WIN32
TEST_F(ListFileTest, AFullDiskFailsTheSaves) {
  load("a");
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(SaveFileList("/dev/full"), -1);
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, "/dev/full", 1), -1);
}
#endif

TEST_F(ListFileTest, SavesWorkWhileAnotherOperationRunsLoadsDoNot) {
  load("a\r\nb");
  SetState(ZENFO_LIST_RUN_FILES, 0, 1);
  const std::string list = folder.path("list");
  const std::string nested = folder.path("nested");
  HostRecorder host;
  int calls = 0;
  host.on_status_text = [&](const std::string&) {
    if (calls++ > 0) return;
    EXPECT_EQ(LoadFileList(list.c_str(), kNoFacts.data()), -1);
    EXPECT_EQ(CompareLists(0, 0), -1);
    EXPECT_EQ(SaveFileList(nested.c_str()), 1);
    EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RUN_FILES, nested.c_str(), 1), 2);
    EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 0, 0, 0, 0), 0);
  };
  EXPECT_EQ(SaveFileList(out().c_str()), 1);
  EXPECT_GT(calls, 0);
  EXPECT_THAT(paths(), ElementsAre("a", "b"));
  EXPECT_THAT(errors(), IsEmpty());
}

TEST(ListFiles, AnswerMinusOneWithoutALibrary) {
  Terminate();
  EXPECT_EQ(LoadFileList("a", kNoFacts.data()), -1);
  EXPECT_EQ(SaveFileList("a"), -1);
  EXPECT_EQ(SaveResultFileList(ZENFO_LIST_RESULT, "a", 0), -1);
}

}  // namespace
}  // namespace zenfo::test
