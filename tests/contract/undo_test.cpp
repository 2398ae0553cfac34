// Undoing through the exports: the undo list file, its store, and restoring.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

#include "support/matchers.h"
#include "support/run_fixture.h"

namespace zenfo::test {
namespace {

class UndoTest : public RunTest {
 protected:
  // Changes files of the given names from "a" to "X", with safe copies.
  Texts change(const Texts& names) {
    Clear(ZENFO_LIST_RUN_FILES);
    Texts paths;
    for (const auto& name : names) paths.push_back(add(name, "a"));
    EXPECT_TRUE(pattern("a"));
    EXPECT_EQ(replace_block({.safe = 1}), static_cast<int32_t>(names.size()));
    return paths;
  }
  std::string undo_errors() const { return undo_file() + ".error"; }
  // Appends text to the undo list file that must not be read as a record.
  void spoil(const std::string& bytes) {
    write_file(undo_file(), read_file(undo_file()) + bytes);
  }
};

Texts times() {
  Texts all;
  char text[100];
  for (uint32_t i = 0; GetSafeTime(i, text, sizeof text) == 1; ++i) {
    all.push_back(text);
  }
  return all;
}

// Names are in the process's character set; the library must return them in the
// system's form.
TEST_F(UndoTest, FilesAndStoresNamedBeyondAsciiAreTaken) {
  namespace fs = std::filesystem;
  const fs::path home = fs::path(work().path()) / u"J\u00FCrgen";
  const fs::path file = home / u"\u00FC.txt";
  fs::create_directory(home);
  std::ofstream(file) << "a";
  const unsigned char options[ZENFO_OPTION_COUNT] = {};
  const std::string separator(1, kSeparator);
  ASSERT_EQ(FindFiles(ZENFO_LIST_RUN_FILES,
                      ("1" + work().path() + separator + "*.txt").c_str(),
                      options, ""),
            1);
  ASSERT_EQ(SetState(ZENFO_LIST_RUN_FILES, -1, 1), 1);
  const std::string name = files(ZENFO_LIST_RUN_FILES).at(0);
  const std::string store = name.substr(0, name.rfind(separator) + 1) + "store";
  ASSERT_EQ(SetUndoFile((store + separator + "undo").c_str()), 1);
  EXPECT_TRUE(fs::exists(home / "store" / "undo"));

  HostRecorder host;
  ASSERT_TRUE(pattern("a"));
  EXPECT_EQ(replace_block({.safe = 1}), 1);
  EXPECT_EQ(fs::file_size(file), 1u);
  EXPECT_EQ(std::ifstream(file).get(), 'X');
  EXPECT_TRUE(fs::exists(home / "store" / u"\u00FC.txt_0"));
  EXPECT_THAT(host.statuses,
              Contains(HasSubstr("J\xFCrgen" + separator + "\xFC.txt")));
  EXPECT_EQ(GetUndoList(), 1);
  EXPECT_THAT(originals(), ElementsAre(name));
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(std::ifstream(file).get(), 'a');
}

// ---- SetUndoFile -----------------------------------------------------------

TEST_F(UndoTest, NamingAnUndoFileCreatesItAndItsFolders) {
  const auto path = work().path("a/b/c/undo.txt");
  EXPECT_EQ(SetUndoFile(path.c_str()), 1);
  EXPECT_EQ(read_file(path), "");
  write_file(path, "kept");
  EXPECT_EQ(SetUndoFile(path.c_str()), 1);
  EXPECT_EQ(read_file(path), "kept") << "an existing file is not emptied";
}

TEST_F(UndoTest, RefusedNamesLeaveTheStoreWithoutAFile) {
  const std::string separator(1, kSeparator);
  work().file("file", "x");
  for (const std::string& refused :
       {std::string(), work().path(), work().path("new") + separator,
        work().path("file/below/undo.txt")}) {
    SCOPED_TRACE(refused);
    use_store();
    EXPECT_EQ(GetUndoList(), 0);
    EXPECT_EQ(SetUndoFile(refused.c_str()), -1);
    EXPECT_EQ(GetUndoList(), -1);
    EXPECT_EQ(Undo(), -1);
  }
  EXPECT_FALSE(file_exists(work().path("new")));
  use_store();
  EXPECT_EQ(SetUndoFile(nullptr), -1);
  EXPECT_EQ(Undo(), -1);
}

TEST_F(UndoTest, TheUndoListIsKeptWhenTheFileChanges) {
  use_store();
  change({"1"});
  EXPECT_EQ(SetUndoFile(work().path("other/undo").c_str()), 1);
  EXPECT_EQ(originals().size(), 1u);
}

TEST_F(UndoTest, ARelativeNameKeepsItsFolder) {
  const auto here = std::filesystem::current_path();
  std::filesystem::current_path(work().path());
  const std::string name = std::string("rel") + kSeparator + "undo.txt";
  EXPECT_EQ(SetUndoFile(name.c_str()), 1);
  std::filesystem::current_path(here);
  change({"1"});
  EXPECT_EQ(read_file(work().path("rel/1_0")), "a");
  EXPECT_TRUE(file_exists(work().path("rel/undo.txt")));
}

TEST_F(UndoTest, WithoutAFolderPartNothingIsDeletedNorStored) {
  const auto here = std::filesystem::current_path();
  work().file("bystander", "x");
  std::filesystem::current_path(work().path());
  EXPECT_EQ(SetUndoFile("undo.txt"), 1);
  const auto one = add("1", "a");
  ASSERT_TRUE(pattern("a"));
  EXPECT_EQ(replace_block({.safe = 1}), 0);
  EXPECT_THAT(rejected(), ElementsAre(one));
  EXPECT_EQ(replace_block({}), 1);
  EXPECT_TRUE(file_exists(work().path("bystander")));
  EXPECT_TRUE(file_exists(work().path("undo.txt")));
  std::filesystem::current_path(here);
}

#ifdef _WIN32
TEST_F(UndoTest, SlashesSeparateFoldersToo) {
  std::string path = undo_file();
  for (char& c : path) c = c == '\\' ? '/' : c;
  EXPECT_EQ(SetUndoFile(path.c_str()), 1);
  change({"1"});
  EXPECT_THAT(copies(), ElementsAre(in_store("1_0")));
}
#endif

// ---- What a run leaves -----------------------------------------------------

TEST_F(UndoTest, EveryCopyHasALineAndARecord) {
  use_store();
  const auto paths = change({"x.txt", "y"});
  const std::string file = read_file(undo_file());
  std::smatch match;
  const std::regex line(
      "([^\t]*)\t([^\t]*)\t(\\d{4}/\\d\\d/\\d\\d-\\d\\d:\\d\\d:\\d\\d)\r\n"
      "([^\t]*)\t([^\t]*)\t(\\d{4}/\\d\\d/\\d\\d-\\d\\d:\\d\\d:\\d\\d)\r\n");
  ASSERT_TRUE(std::regex_match(file, match, line)) << file;
  EXPECT_EQ(match[1], paths[0]);
  EXPECT_EQ(match[2], in_store("x.txt_0"));
  EXPECT_EQ(match[4], paths[1]);
  EXPECT_EQ(match[5], in_store("y_1"));
  EXPECT_EQ(originals(), paths);
  EXPECT_THAT(copies(), ElementsAre(in_store("x.txt_0"), in_store("y_1")));
  EXPECT_THAT(times(), ElementsAre(match[3].str(), match[6].str()));
  EXPECT_THAT(states(ZENFO_LIST_UNDO), ElementsAre(1, 1));
  EXPECT_EQ(read_file(in_store("x.txt_0")), "a");
}

TEST_F(UndoTest, CopiesNeverTakeTheNameOfTheUndoFiles) {
  const auto undo = work().path("store/f_0");
  ASSERT_EQ(SetUndoFile(undo.c_str()), 1);
  const auto paths = change({"f"});
  EXPECT_THAT(copies(), ElementsAre(in_store("f_1")));
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(paths[0]), "a");
}

TEST_F(UndoTest, ASecondRunForgetsTheFirst) {
  use_store();
  const auto first = change({"1"});
  const auto second = change({"2"});
  EXPECT_FALSE(file_exists(in_store("1_0")));
  EXPECT_EQ(originals(), second);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(first[0]), "X");
  EXPECT_EQ(read_file(second[0]), "a");
}

// ---- GetUndoList -----------------------------------------------------------

TEST_F(UndoTest, TheListIsReadFromItsFile) {
  use_store();
  const auto paths = change({"1", "2"});
  const auto stored_times = times();
  EXPECT_EQ(ClearUndoList(), 1);
  EXPECT_THAT(originals(), IsEmpty());
  EXPECT_TRUE(file_exists(in_store("1_0"))) << "the files are not touched";
  HostRecorder host;
  EXPECT_EQ(GetUndoList(), 2);
  EXPECT_THAT(host.statuses,
              ElementsAre("Retrieving list of safe-stored files"));
  EXPECT_EQ(originals(), paths);
  EXPECT_EQ(times(), stored_times);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(paths[1]), "a");
}

struct UndoFileCase {
  const char* name;
  std::string bytes;
  int32_t count;  // of records
};

TEST_F(UndoTest, LinesOfThreeFieldsAreRecords) {
  const UndoFileCase cases[] = {
      {"one", "a\tb\tc\r\n", 1},
      {"no line end", "a\tb\tc", 1},
      {"two", "a\tb\tc\r\nd\te\tf\r\n", 2},
      {"a fourth field", "a\tb\tc\td\r\n", 1},
      {"empty fields", "\t\tc\r\nd\te\tf", 2},
      {"two fields end the reading", "a\tb\tc\r\nd\te\r\ng\th\ti\r\n", 1},
      {"a line that ends in TAB has two", "a\tb\t\r\ng\th\ti\r\n", 0},
      {"an empty line ends the reading", "a\tb\tc\r\n\r\ng\th\ti\r\n", 1},
      {"foreign text", "hello\r\nworld\r\n", 0},
      {"truncated", "a\tb\tc\r\nd\te", 1},
      {"LF does not end a line", "a\tb\tc\nd\te\tf", 1},
      {"CR stays with the time", "a\tb\tc\r\r\nd\te\tf\r\r\n", 2},
  };
  use_store();
  for (const UndoFileCase& c : cases) {
    SCOPED_TRACE(c.name);
    write_file(undo_file(), c.bytes);
    EXPECT_EQ(GetUndoList(), c.count);
    EXPECT_EQ(GetCount(ZENFO_LIST_UNDO, -1), c.count);
    EXPECT_EQ(GetCount(ZENFO_LIST_UNDO, 1), c.count) << "all selected";
  }
  EXPECT_THAT(times(), ElementsAre("c\r", "f\r"));
  write_file(undo_file(), "a\tb\tc\nd\te\tf\tg");
  EXPECT_EQ(GetUndoList(), 1);
  EXPECT_THAT(times(), ElementsAre("c\nd"));
}

TEST_F(UndoTest, AMissingOrEmptyFileAnswersZeroAndKeepsTheList) {
  use_store();
  change({"1"});
  write_file(undo_file(), "");
  EXPECT_EQ(GetUndoList(), 0);
  EXPECT_EQ(originals().size(), 1u);
  std::filesystem::remove(undo_file());
  EXPECT_EQ(GetUndoList(), 0);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(originals().size(), 1u);
}

TEST_F(UndoTest, ReadingStopsAtAnInterrupt) {
  use_store();
  std::string bytes;
  for (int i = 0; i < 500; ++i) bytes += "a\tb\tc\r\n";
  write_file(undo_file(), bytes);
  HostRecorder host;
  host.interrupt = [] { return 1; };
  const int32_t count = GetUndoList();
  EXPECT_GT(count, 0);
  EXPECT_LE(count, 101);
  host.interrupt = [] { return 0; };
  EXPECT_EQ(GetCount(ZENFO_LIST_UNDO, -1), count);
}

TEST_F(UndoTest, ReadingReportsZerosAndNoPositions) {
  use_store();
  std::string bytes;
  for (int i = 0; i < 500; ++i) bytes += "a\tb\tc\r\n";
  write_file(undo_file(), bytes);
  HostRecorder host;
  EXPECT_EQ(GetUndoList(), 500);
  EXPECT_THAT(host.reports.size(), testing::AnyOf(4u, 5u))
      << "on every 101st line";
  for (const ProgressRecord& report : host.reports) {
    EXPECT_EQ(report.total, 0u);
    EXPECT_EQ(report.position, 0u);
    EXPECT_EQ(report.percent, 0);
  }
}

// ---- Undo ------------------------------------------------------------------

TEST_F(UndoTest, RestoresDeletesTheCopiesAndEmptiesTheList) {
  use_store();
  const auto paths = change({"1", "2"});
  HostRecorder host;
  EXPECT_EQ(Undo(), 0);
  EXPECT_THAT(host.statuses, ElementsAre("Restoring original files"));
  EXPECT_EQ(read_file(paths[0]), "a");
  EXPECT_EQ(read_file(paths[1]), "a");
  EXPECT_THAT(
      contents(work().path("store")),
      ElementsAre(std::pair<const std::string, std::string>{"undo.txt", ""}));
  EXPECT_EQ(Undo(), 0) << "nothing to restore";
}

TEST_F(UndoTest, WhateverWasDoneToAFileSinceIsOverwritten) {
  use_store();
  const auto paths = change({"1", "2"});
  write_file(paths[0], "changed since");
  std::filesystem::remove(paths[1]);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(paths[0]), "a");
  EXPECT_EQ(read_file(paths[1]), "a");
}

TEST_F(UndoTest, DeselectedRecordsStay) {
  use_store();
  const auto paths = change({"1", "2", "3"});
  const auto before = read_file(undo_file());
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, 1, 0), 1);
  EXPECT_EQ(Undo(), 1);
  EXPECT_EQ(read_file(paths[0]) + read_file(paths[1]) + read_file(paths[2]),
            "aXa");
  EXPECT_THAT(originals(), ElementsAre(paths[1]));
  EXPECT_EQ(read_file(undo_file()),
            paths[1] + "\t" + in_store("2_1") + "\t" + times()[0] + "\r\r\n");
  EXPECT_FALSE(file_exists(undo_errors()));
}

// Intended: the time gets another CR with every rewriting that is read back.
TEST_F(UndoTest, RewrittenLinesEndInCrCrLf) {
  use_store();
  change({"1"});
  const std::string time = times()[0];
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, -1, 0), 1);
  EXPECT_EQ(Undo(), 1);
  EXPECT_EQ(GetUndoList(), 1);
  EXPECT_THAT(times(), ElementsAre(time + "\r"));
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, -1, 0), 1);
  EXPECT_EQ(Undo(), 1);
  EXPECT_TRUE(read_file(undo_file()).ends_with(time + "\r\r\r\n"));
}

TEST_F(UndoTest, WhatCannotBeRestoredIsKeptAndReported) {
  use_store();
  const auto paths = change({"folder", "gone", "fine", "nowhere/below/f"});
  const auto stored = copies();
  const auto when = times();
  std::filesystem::remove(paths[0]);
  std::filesystem::create_directory(paths[0]);
  std::filesystem::remove(stored[1]);
  std::filesystem::remove_all(folder.path("nowhere"));
  write_file(undo_errors(), "of an earlier call");
  EXPECT_EQ(Undo(), 3);
  std::string lines, rewritten;
  for (size_t i : {0, 1, 3}) {
    const std::string line = paths[i] + "\t" + stored[i] + "\t" + when[i];
    lines += line + "\r\n";
    rewritten += line + "\r\r\n";
  }
  EXPECT_EQ(read_file(undo_errors()), lines);
  EXPECT_EQ(read_file(undo_file()), rewritten);
  EXPECT_THAT(originals(), ElementsAre(paths[0], paths[1], paths[3]));
  EXPECT_EQ(read_file(paths[2]), "a");
  EXPECT_FALSE(file_exists(stored[2]));
  EXPECT_TRUE(file_exists(stored[0]));
  std::filesystem::remove(paths[0]);
  std::filesystem::create_directories(folder.path("nowhere/below"));
  EXPECT_EQ(Undo(), 1);
  EXPECT_EQ(read_file(paths[0]) + read_file(paths[3]), "aa");
  EXPECT_EQ(read_file(undo_errors()),
            paths[1] + "\t" + stored[1] + "\t" + when[1] + "\r\n");
}

TEST_F(UndoTest, AnErrorFileThatCannotBeDeletedStopsEverything) {
  use_store();
  const auto paths = change({"1"});
  std::filesystem::create_directory(undo_errors());
  EXPECT_EQ(Undo(), -1);
  EXPECT_EQ(read_file(paths[0]), "X");
  EXPECT_EQ(originals(), paths);
}

#ifdef _WIN32
TEST_F(UndoTest, CopiesMarkedReadOnlyAreDeletedAllTheSame) {
  use_store();
  const auto mark_copy = [&] {
    ASSERT_TRUE(
        SetFileAttributesA(copies()[0].c_str(), FILE_ATTRIBUTE_READONLY));
  };
  const auto paths = change({"1"});
  mark_copy();
  change({"2"});
  EXPECT_FALSE(file_exists(in_store("1_0"))) << "by the next run";
  mark_copy();
  EXPECT_EQ(Undo(), 0);
  EXPECT_FALSE(file_exists(in_store("2_0"))) << "by undo";
  SetFileAttributesA(folder.path("2").c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(UndoTest, HiddenFilesAreChangedAndBroughtBackHidden) {
  use_store();
  constexpr DWORD kMarks = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  const auto one = add("1", "aaaa");
  const auto is_hidden = [&] {
    return (GetFileAttributesA(one.c_str()) & kMarks) == kMarks;
  };
  ASSERT_TRUE(SetFileAttributesA(one.c_str(), kMarks));
  ASSERT_TRUE(pattern("a"));
  EXPECT_EQ(replace_block({.text = "", .safe = 1}), 4);
  EXPECT_EQ(read_file(one), "");
  EXPECT_TRUE(is_hidden());
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(one), "aaaa");
  EXPECT_TRUE(is_hidden());
}
#endif

TEST_F(UndoTest, ACopyThatIsNoFileIsReported) {
  use_store();
  const auto paths = change({"1"});
  std::filesystem::remove(in_store("1_0"));
  std::filesystem::create_directory(in_store("1_0"));
  EXPECT_EQ(Undo(), 1);
  EXPECT_EQ(read_file(paths[0]), "X");
  EXPECT_TRUE(file_exists(undo_errors()));
}

// A host that reads the shrinking list moves the list's cursor.
TEST_F(UndoTest, AHostMayReadTheListDuringUndo) {
  use_store();
  const auto paths = change({"1", "2", "3", "4", "5"});
  HostRecorder host;
  int looks = 0;
  host.on_progress = [&](const ProgressRecord&) {
    char text[1000];
    ++looks;
    GetOrigFile(static_cast<uint32_t>(looks % 3), text, sizeof text);
    EXPECT_EQ(Undo(), -1) << "refused";
    EXPECT_EQ(ClearUndoList(), -1);
  };
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, 1, 0), 1);
  looks = 0;
  EXPECT_EQ(Undo(), 1);
  EXPECT_EQ(looks, 5);
  host.on_progress = nullptr;
  EXPECT_THAT(originals(), ElementsAre(paths[1]));
  std::string texts;
  for (const auto& path : paths) texts += read_file(path);
  EXPECT_EQ(texts, "aXaaa");
}

TEST_F(UndoTest, TheUndoFileStaysWhereItIsDuringUndo) {
  use_store();
  change({"1", "2"});
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, 0, 0), 1);
  const auto other = work().path("other/undo.txt");
  HostRecorder host;
  int asked = 0;
  host.on_progress = [&](const ProgressRecord&) {
    EXPECT_EQ(SetUndoFile(other.c_str()), -1);
    EXPECT_EQ(SetUndoFile(nullptr), -1);
    ++asked;
  };
  EXPECT_EQ(Undo(), 1);
  EXPECT_EQ(asked, 2);
  EXPECT_FALSE(file_exists(other));
  EXPECT_TRUE(read_file(undo_file()).ends_with("\r\r\n"));
  EXPECT_EQ(SetUndoFile(other.c_str()), 1) << "afterwards";
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(UndoTest, TheUndoFileStaysWhereItIsDuringARun) {
  use_store();
  const auto other = work().path("other/undo.txt");
  for (const char* name : {"1", "2"}) add(name, "a");
  ASSERT_TRUE(pattern("a"));
  HostRecorder host;
  int asked = 0;
  host.on_status_text = [&](const std::string&) {
    EXPECT_EQ(SetUndoFile(other.c_str()), -1);
    ++asked;
  };
  EXPECT_EQ(change_case({.safe = 1, .upper = 1}), 2);
  EXPECT_EQ(replace_block({.safe = 1}), 0) << "nothing is left to replace";
  EXPECT_GT(asked, 4);
  EXPECT_FALSE(file_exists(other));
  host.on_status_text = nullptr;
  EXPECT_EQ(SetUndoFile(other.c_str()), 1) << "afterwards";
}

// ---- Lines that were not read ----------------------------------------------

// Lines of any bytes are kept.
const std::string kUnread =
    "damaged\r\na\tb\tc\r\r\nd\te\tf\ng\th\r\n\r\n\0z\t\t\r\nend"s;

TEST_F(UndoTest, ADamagedLineAndTheLinesAfterItStay) {
  use_store();
  const auto paths = change({"1", "2", "3"});
  const auto when = times();
  spoil(kUnread);
  EXPECT_EQ(GetUndoList(), 3) << "only what was read counts";
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, 1, 0), 1);
  EXPECT_EQ(Undo(), 1);
  EXPECT_EQ(read_file(paths[0]) + read_file(paths[1]) + read_file(paths[2]),
            "aXa");
  EXPECT_EQ(read_file(undo_file()), paths[1] + "\t" + in_store("2_1") + "\t" +
                                        when[1] + "\r\r\n" + kUnread);
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, -1, 1), 1);
  EXPECT_EQ(Undo(), 0) << "records, not lines";
  EXPECT_EQ(read_file(undo_file()), kUnread);
  EXPECT_EQ(GetUndoList(), 0);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(undo_file()), kUnread);
}

TEST_F(UndoTest, LinesAfterAStopAreReadNextTime) {
  use_store();
  Texts names;
  for (int i = 0; i < 230; ++i) names.push_back(std::to_string(i));
  const auto paths = change(names);
  const auto lines = read_file(undo_file());
  HostRecorder host;
  host.interrupt = [] { return 1; };
  const int32_t count = GetUndoList();
  host.interrupt = [] { return 0; };
  ASSERT_GT(count, 0);
  ASSERT_LT(count, 230);
  EXPECT_EQ(Undo(), 0);
  EXPECT_TRUE(lines.ends_with(read_file(undo_file())));
  EXPECT_EQ(GetUndoList(), 230 - count);
  EXPECT_EQ(Undo(), 0);
  for (const auto& path : paths) ASSERT_EQ(read_file(path), "a") << path;
  EXPECT_EQ(read_file(undo_file()), "");
}

TEST_F(UndoTest, UnreadLinesStayInTheirFile) {
  use_store();
  change({"1"});
  spoil("damaged");
  ASSERT_EQ(GetUndoList(), 1);
  const auto before = read_file(undo_file());
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, 0, 0), 1);
  const auto other = work().path("other/undo.txt");
  ASSERT_EQ(SetUndoFile(other.c_str()), 1);
  EXPECT_EQ(Undo(), 1);
  EXPECT_TRUE(read_file(other).ends_with("\r\r\n"));
  EXPECT_EQ(read_file(undo_file()), before);
  const std::string same = work().path("other/../store/undo.txt");
  ASSERT_EQ(SetUndoFile(same.c_str()), 1);
  EXPECT_EQ(Undo(), 1);
  EXPECT_TRUE(read_file(undo_file()).ends_with("\r\r\ndamaged"));
}

TEST_F(UndoTest, ARunForgetsUnreadLinesToo) {
  use_store();
  change({"1"});
  spoil("damaged");
  ASSERT_EQ(GetUndoList(), 1);
  change({"2"});
  ASSERT_EQ(SetState(ZENFO_LIST_UNDO, 0, 0), 1);
  EXPECT_EQ(Undo(), 1);
  EXPECT_TRUE(read_file(undo_file()).ends_with("\r\r\n"));
}

// ---- Progress --------------------------------------------------------------

TEST_F(UndoTest, ReportsEveryRecord) {
  use_store();
  change({"1", "2", "3"});
  HostRecorder host;
  EXPECT_EQ(Undo(), 0);
  EXPECT_THAT(host.report_positions(), ElementsAre(0, 1, 2));
  EXPECT_EQ(host.reports[1].total, 3u);
  EXPECT_EQ(host.reports[1].percent, 33);
}

TEST_F(UndoTest, AnInterruptLeavesTheRestForLater) {
  use_store();
  Texts names;
  for (int i = 0; i < 230; ++i) names.push_back(std::to_string(i));
  const auto paths = change(names);
  int stopped = 0;
  at_every_poll([&](HostRecorder& host) {
    const auto before = originals().size();
    const int32_t left = Undo();
    host.interrupt = [] { return 0; };
    ASSERT_GE(left, 0);
    EXPECT_EQ(originals().size(), static_cast<size_t>(left));
    EXPECT_LE(static_cast<size_t>(left), before);
    stopped += left > 0;
    for (size_t i = 0; i < paths.size(); ++i) {
      const bool restored = i < paths.size() - static_cast<size_t>(left);
      ASSERT_EQ(read_file(paths[i]), restored ? "a" : "X") << i;
    }
    EXPECT_EQ(GetUndoList(), left) << "the file says the same";
  });
  EXPECT_GT(stopped, 0);
}

TEST(Undo, IsRefusedBeforeInitialize) {
  Terminate();
  EXPECT_EQ(Undo(), -1);
  EXPECT_EQ(GetUndoList(), -1);
  EXPECT_EQ(ClearUndoList(), -1);
  EXPECT_EQ(SetUndoFile("undo.txt"), -1);
  EXPECT_FALSE(file_exists("undo.txt"));
}

TEST_F(UndoTest, WithoutAnUndoFileNothingIsDone) {
  EXPECT_EQ(Undo(), -1);
  EXPECT_EQ(GetUndoList(), -1);
  EXPECT_EQ(ClearUndoList(), 1);
  EXPECT_THAT(errors(), IsEmpty());
}

}  // namespace
}  // namespace zenfo::test
