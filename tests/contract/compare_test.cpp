// Comparison of lists, search in a column, export of columns.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/host_recorder.h"
#include "support/list_test.h"
#include "support/matchers.h"
#include "support/session.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

class CompareTest : public ListTest {
 protected:
  void add(int32_t list, const std::string& name, size_t size = 0) {
    const std::string path = folder.file(name, std::string(size, 'x'));
    ASSERT_EQ(FindFiles(list, ("0" + path).c_str(), kAllFacts.data(), ""), 1);
  }
  // An entry of any path, without facts.
  void add_path(const std::string& path) {
    const std::string list = folder.file("list_file", path + "\r\n");
    unsigned char names[ZENFO_OPTION_COUNT] = {};
    names[ZENFO_OPTION_FILE_NAME] = names[ZENFO_OPTION_FOLDER] = 1;
    ASSERT_EQ(LoadFileList(list.c_str(), names), 1);
  }
  static Texts names(int32_t list) { return texts(GetFilename, list); }
};

// ---- CompareLists -----------------------------------------------------------

TEST_F(CompareTest, SelectsWhatBothListsHold) {
  for (const char* name : {"1/c", "1/a", "1/b"})
    add(ZENFO_LIST_RUN_FILES, name);
  for (const char* name : {"2/B", "2/d", "2/c"}) add(ZENFO_LIST_PAIRS, name);
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  HostRecorder host;
  EXPECT_EQ(CompareLists(2, 1), 1);
  EXPECT_THAT(host.statuses,
              ElementsAre("Now de-selecting all entries", "Now sorting lists",
                          "Now comparing lists"));
  EXPECT_THAT(names(ZENFO_LIST_RUN_FILES), ElementsAre("a", "b", "c"));
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 1, 1));
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(0, 1, 1));
  EXPECT_THAT(names(ZENFO_LIST_PAIRS), ElementsAre("B", "c", "d"));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(1, 1, 0));
  EXPECT_THAT(flags(ZENFO_LIST_PAIRS), ElementsAre(1, 1, 0));
}

TEST_F(CompareTest, WithKeepZeroSelectsWhatTheOtherListLacks) {
  for (const char* name : {"1/a", "1/b"}) add(ZENFO_LIST_RUN_FILES, name);
  for (const char* name : {"2/b", "2/c"}) add(ZENFO_LIST_PAIRS, name);
  EXPECT_EQ(CompareLists(2, 0), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1, 0));
  EXPECT_THAT(flags(ZENFO_LIST_RUN_FILES), ElementsAre(0, 1)) << "not turned";
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0, 1));
  EXPECT_THAT(flags(ZENFO_LIST_PAIRS), ElementsAre(1, 0));
}

TEST_F(CompareTest, EqualListsWithKeepZeroLeaveNothingSelected) {
  for (const char* name : {"a", "b"}) {
    add(ZENFO_LIST_RUN_FILES, name);
    add(ZENFO_LIST_PAIRS, name);
  }
  EXPECT_EQ(CompareLists(10, 0), 1);
  for (const int32_t list : {ZENFO_LIST_RUN_FILES, ZENFO_LIST_PAIRS}) {
    EXPECT_THAT(states(list), ElementsAre(0, 0));
    EXPECT_THAT(flags(list), ElementsAre(1, 1));
  }
}

TEST_F(CompareTest, NamesMatchInOtherFoldersPathsDoNot) {
  for (const char* name : {"a", "b"}) {
    add(ZENFO_LIST_RUN_FILES, std::string("1/") + name);
    add(ZENFO_LIST_PAIRS, std::string("2/") + name);
  }
  EXPECT_EQ(CompareLists(2, 1), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1, 1));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(1, 1));
  EXPECT_EQ(CompareLists(10, 1), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 0));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0, 0));
}

TEST_F(CompareTest, MarksAllOfARunOfEquals) {
  for (const char* name : {"1/a", "2/a", "3/a", "4/b"}) {
    add(ZENFO_LIST_RUN_FILES, name);
  }
  for (const char* name : {"5/a", "6/a", "7/c"}) add(ZENFO_LIST_PAIRS, name);
  EXPECT_EQ(CompareLists(2, 1), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1, 1, 1, 0));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(1, 1, 0));
}

TEST_F(CompareTest, OptionsAbove18CompareByState) {
  for (const uint32_t option : {19u, 24u, UINT32_MAX}) {
    Clear(ZENFO_LIST_RUN_FILES);
    Clear(ZENFO_LIST_PAIRS);
    for (const char* name : {"a", "b", "c"}) add(ZENFO_LIST_RUN_FILES, name);
    for (const char* name : {"d", "e"}) add(ZENFO_LIST_PAIRS, name);
    SetState(ZENFO_LIST_RUN_FILES, 1, 1);
    EXPECT_EQ(CompareLists(option, 1), 1);
    EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1, 1, 1));
    EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(1, 1));
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(CompareTest, ComparesShortAndEmptyLists) {
  EXPECT_EQ(CompareLists(2, 1), 1);
  EXPECT_EQ(CompareLists(2, 0), 1);
  add(ZENFO_LIST_RUN_FILES, "a");
  EXPECT_EQ(CompareLists(2, 0), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1));
  add(ZENFO_LIST_PAIRS, "b/a");
  EXPECT_EQ(CompareLists(2, 1), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1));
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(1));
  Clear(ZENFO_LIST_RUN_FILES);
  EXPECT_EQ(CompareLists(2, 1), 1);
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0));
  EXPECT_THAT(flags(ZENFO_LIST_PAIRS), ElementsAre(0));
}

TEST_F(CompareTest, PairsInTheComparedListKeepToWhatTheyHave) {
  add(ZENFO_LIST_RUN_FILES, "a");
  add(ZENFO_LIST_RUN_FILES, "b");
  AddStringPair(folder.path("a").c_str(), "x");
  AddStringPair("other", "y");
  EXPECT_EQ(CompareLists(10, 1), 1) << "by first text";
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1, 0));
  EXPECT_EQ(GetCount(ZENFO_LIST_PAIRS, 1), 1);
  EXPECT_EQ(CompareLists(2, 1), 1) << "pairs have no file name";
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 0));
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(CompareTest, ReportsThePositionsOfTheClearingAndOfMatches) {
  for (const char* name : {"a", "b", "c"}) add(ZENFO_LIST_RUN_FILES, name);
  for (const char* name : {"b", "c"}) add(ZENFO_LIST_PAIRS, name);
  HostRecorder host;
  EXPECT_EQ(CompareLists(2, 1), 1);
  EXPECT_THAT(host.report_positions(), ElementsAre(0, 1, 2, 0, 1, 0, 1));
}

// ---- FindInList -------------------------------------------------------------

struct Search {
  const char* text;
  uint32_t whole_word;
  uint32_t case_sensitive;
  int32_t position;
  bool found;
};

TEST_F(CompareTest, JudgesOneOccurrenceByPositionAndWord) {
  // clang-format off
  const std::pair<const char*, std::vector<Search>> names[] = {
    {"abc.txt", {
      {"abc", 1, 0, 1, true},
      {"bc", 1, 0, 1, false},
      {"bc", 1, 0, 0, false},
      {"bc", 0, 0, 0, true},
      {"bc", 0, 0, 1, false},
      {"ABC", 0, 0, 0, true},
      {"ABC", 0, 1, 0, false},
      {"abc", 0, 1, 0, true},
      {"ABC", 0, 2, 0, true},  // any other value ignores case
      {"bc", 2, 0, 0, true},  // any other value is no whole word
      {"txt", 1, 0, 2, true},
      {"xt", 1, 0, 2, false},
      {"xt", 0, 0, 2, true},
      {"abc", 0, 0, 2, false},
      {"abc.txt", 1, 1, 1, true},
      {"abc.txt", 1, 1, 2, true},
      {"bc", 0, 0, 3, true},  // any other value is anywhere
      {"bc", 0, 0, -1, true},
      {"abc.txtx", 0, 0, 0, false},
      {"z", 0, 0, 0, false},
    }},
    {"aXbXc", {
      {"X", 0, 1, 2, false},
      {"x", 0, 0, 2, false},
      {"c", 0, 0, 2, true},
    }},
    {"XbX", {
      {"X", 0, 1, 2, true},
      {"X", 0, 1, 1, true},
    }},
    // The search for the last occurrence continues after the previous one.
    {"aaa", {
      {"aa", 0, 0, 2, false},
      {"a", 0, 0, 2, true},
    }},
    {"aab", {
      {"ab", 0, 0, 0, true},
      {"ab", 0, 0, 2, true},
    }},
    // The first occurrence is no word; the second is not checked.
    {"xab ab", {
      {"ab", 1, 0, 0, false},
      {"ab", 1, 0, 2, true},
    }},
    {"ab-ab", {
      {"ab", 1, 0, 0, true},
    }},
  };
  // clang-format on
  for (const auto& [name, searches] : names) {
    Clear(ZENFO_LIST_RUN_FILES);
    add_path(join("folder", name));
    for (const Search& s : searches) {
      EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, s.text, s.whole_word,
                           s.case_sensitive, 0, s.position, 0, 0),
                s.found ? 1 : 0)
          << s.text << " in " << name << ", position " << s.position;
    }
  }
}

TEST_F(CompareTest, FindsInEveryColumnAsTheAccessorsShowIt) {
  add(ZENFO_LIST_RUN_FILES, "sub/name.txt", 1536);
  const std::pair<uint32_t, Getter> columns[] = {
      {2, GetFilename}, {3, GetDirectory}, {4, GetType}, {5, GetCTime},
      {6, GetATime},    {7, GetMTime},     {8, GetSize}};
  for (const auto& [field, getter] : columns) {
    const std::string text = texts(getter, ZENFO_LIST_RUN_FILES)[0];
    for (const int32_t position : {1, 2}) {
      EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, field, text.c_str(), 1, 1, 0,
                           position, 0, 0),
                1)
          << field << " " << text;
    }
    EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, field, (text + "0").c_str(), 0,
                         0, 0, 0, 0, 0),
              0)
        << field;
  }
  EXPECT_EQ(texts(GetSize, ZENFO_LIST_RUN_FILES)[0], "1.5 KB");
  const std::string modified = texts(GetMTime, ZENFO_LIST_RUN_FILES)[0];
  EXPECT_EQ(
      FindInList(ZENFO_LIST_RUN_FILES, 6, modified.c_str(), 0, 0, 0, 0, 0, 0),
      0)
      << "the access time has no seconds";
}

TEST_F(CompareTest, FieldsThatAreNoColumnFindNothing) {
  add(ZENFO_LIST_RUN_FILES, "name");
  for (const uint32_t field : {0u, 1u, 10u, UINT32_MAX}) {
    EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, field, "name", 0, 0, 0, 0, 0, 0),
              0);
    EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, field, "name", 0, 0, 0, 0, 1, 0),
              -1);
  }
}

TEST_F(CompareTest, CountsOrAnswersTheFirstFromAStartOn) {
  for (const char* name : {"a1", "b", "a2", "a3"})
    add(ZENFO_LIST_RUN_FILES, name);
  auto find = [](uint32_t start, uint32_t first_only) {
    return FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, start, 1, first_only,
                      0);
  };
  EXPECT_EQ(find(0, 0), 3);
  EXPECT_EQ(find(1, 0), 2);
  EXPECT_EQ(find(3, 0), 1);
  EXPECT_EQ(find(4, 0), -1) << "behind the end";
  EXPECT_EQ(find(0, 1), 0);
  EXPECT_EQ(find(1, 1), 2);
  EXPECT_EQ(find(1, 99), 2) << "above 1 counts as 1";
  EXPECT_EQ(find(3, 1), 3);
  EXPECT_EQ(find(4, 1), -1);
}

TEST_F(CompareTest, SelectsWhatItFindsAndNothingElse) {
  for (const char* name : {"a1", "b", "a2"}) add(ZENFO_LIST_RUN_FILES, name);
  SetState(ZENFO_LIST_RUN_FILES, 1, 1);
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 0, 0, 0, 0), 2);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 1, 0));
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 1, 0, 0, -1), 1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 0, 1));
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 0, 0, 1, 1), 0);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1, 0, 0));
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "z", 0, 0, 0, 0, 1, 1), -1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(0, 0, 0));
}

TEST_F(CompareTest, FindInListReportsFromTheFirstFileOn) {
  for (const char* name : {"a", "b", "c"}) add(ZENFO_LIST_RUN_FILES, name);
  const auto reported = [](uint32_t start, uint32_t first_only,
                           int32_t select) {
    HostRecorder host;
    EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "b", 0, 0, start, 0,
                         first_only, select),
              1);
    return host.report_positions();
  };
  EXPECT_THAT(reported(0, 0, 0), ElementsAre(0, 1, 2));
  EXPECT_THAT(reported(1, 1, 0), IsEmpty());
  EXPECT_THAT(reported(0, 0, 1), ElementsAre(0, 1, 2));
}

TEST_F(CompareTest, FindInListSearchesTheAttributes) {
  add(ZENFO_LIST_RUN_FILES, "a");
  const std::string path = folder.path("a");
  using std::filesystem::perm_options;
  using std::filesystem::perms;
  constexpr perms kWrite =
      perms::owner_write | perms::group_write | perms::others_write;
  std::filesystem::permissions(path, kWrite, perm_options::remove);
  EXPECT_EQ(Refresh(ZENFO_LIST_RUN_FILES, -1, kAllFacts.data()), 1);
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 9, "R", 0, 1, 0, 1, 0, 0), 1);
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 9, "S", 0, 1, 0, 1, 0, 0), 0);
  std::filesystem::permissions(path, kWrite, perm_options::add);
}

TEST_F(CompareTest, FindInListRefusesMissingArgumentsUnlogged) {
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 0, 0, 0, 0), -1)
      << "an empty list";
  add(ZENFO_LIST_RUN_FILES, "a");
  SetState(ZENFO_LIST_RUN_FILES, 0, 1);
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "", 0, 0, 0, 0, 0, 1), -1);
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, nullptr, 0, 0, 0, 0, 0, 1), -1);
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 1, 0, 0, 1), -1);
  EXPECT_THAT(states(ZENFO_LIST_RUN_FILES), ElementsAre(1));
  EXPECT_THAT(errors(), IsEmpty());
  EXPECT_EQ(FindInList(42, 2, "a", 0, 0, 0, 0, 0, 0), -1);
  EXPECT_THAT(errors(), ElementsAre(ErrorRecord{
                            "", "Error retrieving list handler", "get_list"}));
}

TEST_F(CompareTest, RecordsThatAreNoFilesAreNeverFound) {
  AddStringPair("name", "name");
  SetState(ZENFO_LIST_PAIRS, 0, 1);
  EXPECT_EQ(FindInList(ZENFO_LIST_PAIRS, 2, "name", 0, 0, 0, 0, 0, 1), 0);
  EXPECT_THAT(states(ZENFO_LIST_PAIRS), ElementsAre(0));
}

TEST_F(CompareTest, AStopAnswersWhatWasFoundSoFar) {
  for (int i = 0; i < 300; ++i) AddStringPair("x", "x");
  add(ZENFO_LIST_PAIRS, "a");
  HostRecorder host;
  EXPECT_EQ(FindInList(ZENFO_LIST_PAIRS, 2, "a", 0, 0, 0, 0, 0, 0), 1);
  EXPECT_THAT(host.statuses, IsEmpty());
  host.interrupt = [] { return 1; };
  EXPECT_EQ(FindInList(ZENFO_LIST_PAIRS, 2, "a", 0, 0, 0, 0, 0, 0), 0);
  EXPECT_EQ(FindInList(ZENFO_LIST_PAIRS, 2, "a", 0, 0, 0, 0, 1, 0), -1);
}

// ---- SaveSelection ----------------------------------------------------------

class SelectionTest : public CompareTest {
 protected:
  int32_t save(const std::vector<int>& fields, const char* separator = ";") {
    unsigned char columns[10] = {};
    for (const int field : fields) columns[field] = 9;
    return SaveSelection(ZENFO_LIST_RUN_FILES, out().c_str(), separator,
                         columns);
  }
  std::string out() { return folder.path("out"); }
};

TEST_F(SelectionTest, WritesTheColumnsOfSelectedFiles) {
  add(ZENFO_LIST_RUN_FILES, "a", 10);
  add(ZENFO_LIST_RUN_FILES, "b", 1536);
  add(ZENFO_LIST_RUN_FILES, "c", 30);
  SetState(ZENFO_LIST_RUN_FILES, 0, 1);
  SetState(ZENFO_LIST_RUN_FILES, 1, 1);
  HostRecorder host;
  EXPECT_EQ(save({2, 8}), 2);
  EXPECT_EQ(read_file(out()), "a;10 B\r\nb;1.5 KB\r\n");
  EXPECT_THAT(host.statuses, ElementsAre("Now saving selection to file"));
  EXPECT_THAT(host.report_positions(), ElementsAre(0, 1, 2));
  EXPECT_EQ(save({8}), 2);
  EXPECT_EQ(read_file(out()), "10 B\r\n1.5 KB\r\n") << "the old file is gone";
}

TEST_F(SelectionTest, WritesColumnsInTheOrderOfTheirNumbers) {
  add(ZENFO_LIST_RUN_FILES, "dir/a.txt", 5);
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(save({9, 8, 7, 6, 5, 4, 3, 2}, " \n| "), 1);
  std::string expected;
  for (const Getter getter : {GetFilename, GetDirectory, GetType, GetCTime,
                              GetATime, GetMTime, GetSize, GetAttributes}) {
    if (!expected.empty()) expected += " \n| ";
    expected += texts(getter, ZENFO_LIST_RUN_FILES)[0];
  }
  EXPECT_EQ(read_file(out()), expected + "\r\n");
}

TEST_F(SelectionTest, WithoutColumnsCountsTheSelectedAndWritesNothing) {
  for (const char* name : {"a", "b", "c"}) add(ZENFO_LIST_RUN_FILES, name);
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  SetState(ZENFO_LIST_RUN_FILES, 1, 0);
  EXPECT_EQ(save({}), 2);
  EXPECT_EQ(read_file(out()), "");
  EXPECT_EQ(save({0, 1}), 2) << "bytes 0 and 1 are not read";
  EXPECT_EQ(read_file(out()), "");
}

TEST_F(SelectionTest, AMissingNameIsWrittenAsNullOtherFieldsStayEmpty) {
  const std::string list = folder.file("list", folder.path("gone") + "\r\n");
  const unsigned char none[ZENFO_OPTION_COUNT] = {};
  ASSERT_EQ(LoadFileList(list.c_str(), none), 1);
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(save({2, 3, 4, 8, 9}), 1);
  EXPECT_EQ(read_file(out()), "(null);;;0 B;\r\n");
  EXPECT_EQ(save({3, 4}), 1);
  EXPECT_EQ(read_file(out()), ";\r\n");
  EXPECT_EQ(save({3}), 1);
  EXPECT_EQ(read_file(out()), "\r\n");
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(SelectionTest, RecordsThatAreNoFilesAreLeftOut) {
  AddStringPair("a", "b");
  SetState(ZENFO_LIST_PAIRS, -1, 1);
  unsigned char columns[10] = {0, 0, 1};
  EXPECT_EQ(SaveSelection(ZENFO_LIST_PAIRS, out().c_str(), ",", columns), 0);
  EXPECT_EQ(read_file(out()), "");
}

TEST_F(SelectionTest, RefusesMissingArgumentsUnlogged) {
  add(ZENFO_LIST_RUN_FILES, "a");
  unsigned char columns[10] = {};
  const std::string path = out();
  HostRecorder host;
  const int32_t list = ZENFO_LIST_RUN_FILES;
  EXPECT_EQ(SaveSelection(list, nullptr, ";", columns), -1);
  EXPECT_EQ(SaveSelection(list, "", ";", columns), -1);
  EXPECT_EQ(SaveSelection(list, path.c_str(), nullptr, columns), -1);
  EXPECT_EQ(SaveSelection(list, path.c_str(), "", columns), -1);
  EXPECT_EQ(SaveSelection(list, path.c_str(), ";", nullptr), -1);
  EXPECT_THAT(host.statuses, IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(SaveSelection(list, folder.path("no/out").c_str(), ";", columns),
            -1);
  EXPECT_THAT(host.statuses, ElementsAre("Now saving selection to file"));
  EXPECT_THAT(errors(), IsEmpty());
  EXPECT_EQ(SaveSelection(12, path.c_str(), ";", columns), -1);
  EXPECT_THAT(errors(), ElementsAre(ErrorRecord{
                            "", "Error retrieving list handler", "get_list"}));
}

TEST_F(SelectionTest, AStopAnswersTheCountSoFar) {
  std::string paths;
  for (int i = 0; i < 300; ++i) paths += join("none", "f") + "\r\n";
  unsigned char names[ZENFO_OPTION_COUNT] = {};
  names[ZENFO_OPTION_FILE_NAME] = 1;
  ASSERT_EQ(LoadFileList(folder.file("list", paths).c_str(), names), 300);
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  const int32_t saved = save({2});
  EXPECT_GE(saved, 1);
  EXPECT_LE(saved, 101);
  std::string expected;
  for (int32_t i = 0; i < saved; ++i) expected += "f\r\n";
  EXPECT_EQ(read_file(out()), expected);
}

#ifndef _WIN32
TEST_F(SelectionTest, AFullDiskFailsTheSave) {
  add(ZENFO_LIST_RUN_FILES, "a");
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  unsigned char columns[10] = {0, 0, 1};
  EXPECT_EQ(SaveSelection(ZENFO_LIST_RUN_FILES, "/dev/full", ";", columns), -1);
}
#endif

TEST(CopyToClipboard, DoesNothing) {
  EXPECT_EQ(CopyToClipboard(), 0);
  Initialize();
  EXPECT_EQ(CopyToClipboard(), 0);
  Terminate();
}

TEST(CompareOperations, AnswerMinusOneWithoutALibrary) {
  Terminate();
  unsigned char columns[10] = {};
  EXPECT_EQ(CompareLists(0, 0), -1);
  EXPECT_EQ(FindInList(ZENFO_LIST_RUN_FILES, 2, "a", 0, 0, 0, 0, 0, 0), -1);
  EXPECT_EQ(SaveSelection(ZENFO_LIST_RUN_FILES, "x", ";", columns), -1);
}

}  // namespace
}  // namespace zenfo::test
