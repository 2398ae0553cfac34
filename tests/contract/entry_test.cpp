// The accessors and counts of the lists, as a host uses them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#ifdef _WIN32
#include <sys/utime.h>
#else
#include <utime.h>
#endif

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/host_recorder.h"
#include "support/lists.h"
#include "support/matchers.h"
#include "support/session.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

constexpr TextAccessor kTextAccessors[] = {
    GetFilename, GetFullName, GetDirectory, GetType,      GetCTime,
    GetATime,    GetMTime,    GetSize,      GetAttributes};
constexpr FixedListAccessor kFixedListAccessors[] = {
    GetFindString, GetReplaceString, get_replace_value,
    GetOrigFile,   GetSafeFile,      GetSafeTime};

class EntryTest : public testing::Test {
 protected:
  // Puts one file into the list as its only entry.
  std::string only_file(std::string_view name, std::string_view bytes,
                        const Options& options = kAllFacts) {
    Clear(kFiles);
    const std::string path = session.folder.file(name, bytes);
    const std::string text = as_library_text(std::string(name));
    EXPECT_EQ(session.find(kFiles, "0~/" + text, options), 1);
    return path;
  }
  Session session;
};

// --- Texts -------------------------------------------------------------------

TEST_F(EntryTest, TextsAreCopiedWithTheirNulAndNoMore) {
  only_file("sub/name.txt", "12345");
  char buffer[4096];
  std::fill(std::begin(buffer), std::end(buffer), '#');
  EXPECT_EQ(GetFilename(kFiles, 0, buffer, 0), 1);
  EXPECT_EQ(std::string(buffer, 10), std::string("name.txt\0#", 10));
  EXPECT_EQ(read_text(GetDirectory, kFiles, 0),
            (Text{1, session.folder.path("sub")}));
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "5 B"}));
}

TEST_F(EntryTest, NoSizeIsConsulted) {
  const std::string path = only_file("name.txt", "12345");
  char buffer[4096];
  for (uint32_t size : {0u, 1u, 4096u, UINT32_MAX}) {
    EXPECT_EQ(GetFullName(kFiles, 0, buffer, size), 1);
    EXPECT_STREQ(buffer, path.c_str());
  }
}

TEST_F(EntryTest, AMissingListEntryOrBufferAnswersMinusOneUnlogged) {
  only_file("a", "");
  for (TextAccessor accessor : kTextAccessors) {
    EXPECT_EQ(read_text(accessor, kFiles, 1), kNoText);
    EXPECT_EQ(read_text(accessor, kFiles, UINT32_MAX), kNoText);
    EXPECT_EQ(read_text(accessor, ZENFO_LIST_RUN_FILES, 0), kNoText);
    EXPECT_EQ(accessor(0, 0, nullptr, 100), -1);
  }
  for (FixedListAccessor accessor : kFixedListAccessors) {
    EXPECT_EQ(read_text(accessor, 0), kNoText);
    EXPECT_EQ(read_text(accessor, UINT32_MAX), kNoText);
    EXPECT_EQ(accessor(0, nullptr, 100), -1);
  }
  for (uint32_t index : {1u, UINT32_MAX}) {
    EXPECT_EQ(GetState(kFiles, index), -1);
    EXPECT_EQ(GetFlag(kFiles, index), -1);
    EXPECT_EQ(IsTrashed(kFiles, index), -1);
    EXPECT_EQ(GetIcon(kFiles, index, nullptr, nullptr), -1);
    EXPECT_EQ(SetFullName(kFiles, index, "x"), -1);
  }
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST_F(EntryTest, AMissingTextAnswersMinusOneAndEmptiesTheBuffer) {
  const std::string path = only_file("a.txt", "", kNoFacts);
  EXPECT_EQ(read_text(GetFullName, kFiles, 0), (Text{1, path}));
  EXPECT_EQ(read_text(GetFilename, kFiles, 0), kNoText);
  EXPECT_EQ(read_text(GetDirectory, kFiles, 0), kNoText);
  EXPECT_EQ(read_text(GetType, kFiles, 0), kNoText);
  EXPECT_EQ(read_text(GetAttributes, kFiles, 0), (Text{1, ""}));
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "0 B"}));
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST_F(EntryTest, NamesOfTheGreatestLengthAndOfAnyLetters) {
  const std::string names[] = {std::string(kLongestName - 4, 'n') + ".txt",
                               "caf\xc3\xa9 \xc3\xbc.txt", "a b (1).x",
                               "no_extension"};
  for (const std::string& name : names) {
    only_file(name, "x");
    EXPECT_EQ(read_text(GetFilename, kFiles, 0),
              (Text{1, as_library_text(name)}));
    EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "1 B"}));
    EXPECT_EQ(GetFlag(kFiles, 0), 0) << name;
  }
}

#ifndef _WIN32
TEST_F(EntryTest, NamesOfAnyBytes) {
  for (const char* name : {"caf\xe9", "\xff\xfe", "tab\tnew\nline", "a\\b"}) {
    only_file(name, "x");
    EXPECT_EQ(read_text(GetFilename, kFiles, 0), (Text{1, name}));
    EXPECT_EQ(GetFlag(kFiles, 0), 0) << name;
  }
}
#endif

TEST_F(EntryTest, APathOf5000BytesIsKeptWhole) {
  only_file("a", "");
  const std::string name =
      session.spelled("~/") + std::string(5000, 'x') + session.spelled("/f");
  EXPECT_EQ(SetFullName(kFiles, 0, name.c_str()), 1);
  EXPECT_EQ(read_text(GetFullName, kFiles, 0), (Text{1, name}));
  EXPECT_EQ(read_text(GetDirectory, kFiles, 0),
            (Text{1, name.substr(0, name.size() - 2)}));
  // The system refuses the path, which is an ordinary failure.
  EXPECT_EQ(Refresh(kFiles, 0, kAllFacts.data()), 1);
  EXPECT_EQ(FindInFiles(kFiles, "x", 0, 0, 0), 0);
}

// --- SetFullName -------------------------------------------------------------

TEST_F(EntryTest, SetFullNameDerivesFolderAndFileName) {
  struct Case {
    const char* name;
    Text folder;
    Text file_name;
  };
  const Case cases[] = {
      {"/data/a.txt", {1, "/data"}, {1, "a.txt"}},
      {"a.txt", {1, ""}, {1, "a.txt"}},
      {"/a.txt", {1, ""}, {1, "a.txt"}},
      {"/data/", {1, "/data"}, kNoText},
      {"/", {1, ""}, kNoText},
      {"//host/x", {1, "//host"}, {1, "x"}},
  };
  only_file("start", "", kNoFacts);
  for (const Case& c : cases) {
    EXPECT_EQ(SetFullName(kFiles, 0, session.spelled(c.name).c_str()), 1);
    Text folder = c.folder;
    folder.text = session.spelled(folder.text);
    EXPECT_EQ(read_text(GetDirectory, kFiles, 0), folder) << c.name;
    EXPECT_EQ(read_text(GetFilename, kFiles, 0), c.file_name) << c.name;
    EXPECT_EQ(read_text(GetFullName, kFiles, 0),
              (Text{1, session.spelled(c.name)}));
  }
}

TEST_F(EntryTest, SetFullNameRefusesANullAndAnEmptyText) {
  const std::string path = only_file("a", "");
  const LogRecord refused = {"The text pointer is NULL", "Getting parameters",
                             "SetFullName"};
  EXPECT_EQ(SetFullName(kFiles, 0, nullptr), -1);
  EXPECT_THAT(session.take_log(), ElementsAre(refused));
  EXPECT_EQ(SetFullName(kFiles, 0, ""), -1);
  EXPECT_THAT(session.take_log(), ElementsAre(refused));
  EXPECT_EQ(read_text(GetFullName, kFiles, 0), (Text{1, path}));
}

TEST_F(EntryTest, SetFullNameTakesTheEntrysOwnText) {
  const std::string path = only_file("a", "");
  char buffer[4096];
  GetFullName(kFiles, 0, buffer, 0);
  EXPECT_EQ(SetFullName(kFiles, 0, buffer), 1);
  EXPECT_EQ(read_text(GetFullName, kFiles, 0), (Text{1, path}));
}

TEST_F(EntryTest, SetFullNameLeavesACopyInAnotherListAlone) {
  const std::string path = only_file("a", "");
  HostRecorder host;
  ASSERT_EQ(AddFileToList(kFiles, ZENFO_LIST_RUN_FILES, kNoFacts.data()), 1);
  ASSERT_EQ(SetFullName(kFiles, 0, "other"), 1);
  EXPECT_EQ(read_text(GetFullName, ZENFO_LIST_RUN_FILES, 0), (Text{1, path}));
}

TEST_F(EntryTest, IsTrashedFollowsTheName) {
  const std::pair<const char*, int32_t> cases[] = {
      {"/RECYCLED/a", 1},    {"/x/recycler/y/a", 1},
      {"/x/Recycler", 1},    {"RECYCLED/a", 1},
      {"/x/RECYCLERS/a", 0}, {"/x/aRECYCLED/a", 0},
      {"/x/RECYCLED.1", 0},  {"/x/a", 0},
  };
  only_file("a", "");
  for (const auto& [name, trashed] : cases) {
    SetFullName(kFiles, 0, session.spelled(name).c_str());
    EXPECT_EQ(IsTrashed(kFiles, 0), trashed) << name;
  }
}

// --- Times, sizes, attributes, icons -----------------------------------------

void set_times(const std::string& path, std::time_t access,
               std::time_t modified) {
#ifdef _WIN32
  struct _utimbuf times = {access, modified};
  ASSERT_EQ(_utime(path.c_str(), &times), 0);
#else
  const struct utimbuf times = {access, modified};
  ASSERT_EQ(utime(path.c_str(), &times), 0);
#endif
}

std::string local(std::time_t time, const char* form) {
  char text[64];
  std::strftime(text, sizeof text, form, std::localtime(&time));
  return text;
}

TEST_F(EntryTest, TimesAreLocalAndTheAccessTimeHasNoSeconds) {
  const std::string path = session.folder.file("a", "x");
  for (std::time_t time : {1614834367, 1000000000, 946684799}) {
    Clear(kFiles);
    set_times(path, time, time - 61);
    ASSERT_EQ(session.find(kFiles, "0~/a"), 1);
    EXPECT_EQ(read_text(GetATime, kFiles, 0),
              (Text{1, local(time, "%d/%m/%Y %H:%M")}));
    EXPECT_EQ(read_text(GetMTime, kFiles, 0),
              (Text{1, local(time - 61, "%d/%m/%Y %H:%M:%S")}));
  }
}

TEST_F(EntryTest, TheCreationTimeHasSeconds) {
  only_file("a", "x");
  const Text created = read_text(GetCTime, kFiles, 0);
  EXPECT_EQ(created.result, 1);
  std::string form = created.text;
  for (char& c : form) {
    if (c >= '0' && c <= '9') c = '0';
  }
  EXPECT_EQ(form, "00/00/0000 00:00:00");
}

TEST_F(EntryTest, SizesTurnToKilobytesAbove1024) {
  const std::pair<size_t, const char*> cases[] = {
      {0, "0 B"},       {1, "1 B"},       {1023, "1023 B"}, {1024, "1024 B"},
      {1025, "1.0 KB"}, {1536, "1.5 KB"}, {2048, "2.0 KB"}, {10240, "10.0 KB"}};
  for (const auto& [size, text] : cases) {
    only_file("sized", std::string(size, 'x'));
    EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, text}));
  }
}

TEST_F(EntryTest, AttributesShowAReadOnlyFile) {
  const std::string path = only_file("a", "");
  EXPECT_EQ(read_text(GetAttributes, kFiles, 0).text.find('R'),
            std::string::npos);
  using std::filesystem::perms;
  constexpr perms kWrite =
      perms::owner_write | perms::group_write | perms::others_write;
  std::filesystem::permissions(path, kWrite,
                               std::filesystem::perm_options::remove);
  EXPECT_EQ(Refresh(kFiles, 0, kAllFacts.data()), 1);
  EXPECT_EQ(read_text(GetAttributes, kFiles, 0).text.substr(0, 1), "R");
  std::filesystem::permissions(path, kWrite,
                               std::filesystem::perm_options::add);
}

#ifndef _WIN32
TEST_F(EntryTest, AFileWithoutTheFiveAttributesHasAnEmptyText) {
  only_file("a", "");
  EXPECT_EQ(read_text(GetAttributes, kFiles, 0), (Text{1, ""}));
}

TEST_F(EntryTest, TypesAndIconsNeedNoShell) {
  only_file("a.txt", "");
  EXPECT_EQ(read_text(GetType, kFiles, 0), (Text{1, "TXT File"}));
  int32_t image_list = 5, icon = 5;
  EXPECT_EQ(GetIcon(kFiles, 0, &image_list, &icon), 0);
  EXPECT_EQ(image_list, 0);
  EXPECT_EQ(icon, 0);
}
#endif

TEST_F(EntryTest, GetIconAnswersWhatItStores) {
  only_file("a.txt", "");
  int32_t image_list = -5, icon = -5;
  const int32_t answer = GetIcon(kFiles, 0, &image_list, &icon);
  EXPECT_GE(answer, 0);
  EXPECT_EQ(icon, answer);
  EXPECT_NE(image_list, -5);
  EXPECT_EQ(GetIcon(kFiles, 0, nullptr, nullptr), answer);
}

TEST_F(EntryTest, GetIconTakesASmallNumberForNoPointer) {
  only_file("a.txt", "");
  for (uintptr_t number : {1u, 260u, 65535u}) {
    auto* small = reinterpret_cast<int32_t*>(number);
    int32_t icon = -5;
    EXPECT_GE(GetIcon(kFiles, 0, small, &icon), 0);
    EXPECT_NE(icon, -5);
    EXPECT_GE(GetIcon(kFiles, 0, small, small), 0);
  }
}

TEST_F(EntryTest, GetIconTouchesNothingForAMissingEntry) {
  int32_t image_list = -5, icon = -5;
  EXPECT_EQ(GetIcon(kFiles, 0, &image_list, &icon), -1);
  EXPECT_EQ(image_list, -5);
  EXPECT_EQ(icon, -5);
}

// --- Size totals -------------------------------------------------------------

using TotalAccessor = int32_t(ZENFO_CALL*)(int32_t, char*, char*);

struct Totals {
  int32_t result;
  std::string short_text;
  std::string long_text;
  bool operator==(const Totals&) const = default;
};
void PrintTo(const Totals& totals, std::ostream* out) {
  *out << totals.result << " \"" << totals.short_text << "\" \""
       << totals.long_text << '"';
}

Totals totals(TotalAccessor accessor, int32_t list) {
  char short_text[64] = "#", long_text[64] = "#";
  const int32_t result = accessor(list, short_text, long_text);
  return {result, short_text, long_text};
}

TEST_F(EntryTest, TotalsFallToTheSmallerUnitAtItsBoundary) {
  session.folder.file("kb", std::string(1024, 'x'));
  session.folder.file("one", "x");
  session.folder.file("mb", "");
  std::filesystem::resize_file(session.folder.path("mb"), 1048576);
  EXPECT_EQ(totals(GetSizeTotal, kFiles), (Totals{1, "0 B", "0 Bytes"}));
  session.find(kFiles, "0~/kb");
  EXPECT_EQ(totals(GetSizeTotal, kFiles), (Totals{1, "1024 B", "1024 Bytes"}));
  session.find(kFiles, "0~/one");
  EXPECT_EQ(totals(GetSizeTotal, kFiles),
            (Totals{1, "1.00 KB", "1.00 KB (1025 Bytes)"}));
  Clear(kFiles);
  session.find(kFiles, "0~/mb");
  EXPECT_EQ(totals(GetSizeTotal, kFiles),
            (Totals{1, "1024.00 KB", "1024.00 KB (1048576 Bytes)"}));
  session.find(kFiles, "0~/mb");
  EXPECT_EQ(totals(GetSizeTotal, kFiles),
            (Totals{1, "2.00 MB", "2.00 MB (2097152 Bytes)"}));
}

TEST_F(EntryTest, TotalsGoBeyond32Bits) {
  session.folder.file("big", "");
  std::filesystem::resize_file(session.folder.path("big"), 3221225472u);
  session.find(kFiles, "0~/big;big");
  EXPECT_EQ(totals(GetSizeTotal, kFiles),
            (Totals{1, "6.00 GB", "6.00 GB (6442450944 Bytes)"}));
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "3145728.0 KB"}));
}

TEST_F(EntryTest, SelectionTotalsCountSelectedFilesOnly) {
  session.folder.file("a", "1");
  session.folder.file("b", "22");
  session.folder.file("c", "4444");
  session.find(kFiles, "0~/a;b;c");
  EXPECT_EQ(totals(GetSizeSelection, kFiles), (Totals{1, "0 B", "0 Bytes"}));
  SetState(kFiles, 0, 1);
  SetState(kFiles, 2, 1);
  EXPECT_EQ(totals(GetSizeSelection, kFiles), (Totals{1, "5 B", "5 Bytes"}));
  EXPECT_EQ(totals(GetSizeTotal, kFiles), (Totals{1, "7 B", "7 Bytes"}));
}

TEST_F(EntryTest, TotalsFillTheBuffersGivenAndCallNoCallback) {
  session.fill(kFiles, 300);
  HostRecorder host;
  char text[64];
  for (TotalAccessor accessor : {&GetSizeTotal, &GetSizeSelection}) {
    EXPECT_EQ(accessor(0, text, nullptr), 1);
    EXPECT_EQ(accessor(0, nullptr, text), 1);
    EXPECT_EQ(accessor(0, nullptr, nullptr), 1);
    EXPECT_EQ(totals(accessor, ZENFO_LIST_MATCHES),
              (Totals{1, "0 B", "0 Bytes"}));
    EXPECT_EQ(totals(accessor, kNoList), (Totals{-1, "#", "#"}));
  }
  EXPECT_THAT(host.statuses, IsEmpty());
  EXPECT_EQ(host.interrupt_polls, 0);
  EXPECT_THAT(host.reports, IsEmpty());
}

// --- Records of other kinds --------------------------------------------------

TEST_F(EntryTest, FileEntriesInTheListOfPairsAreNoPairs) {
  session.fill(ZENFO_LIST_PAIRS, 2);
  EXPECT_EQ(GetCount(ZENFO_LIST_PAIRS, -1), 2);
  EXPECT_EQ(read_text(GetFindString, 0), kNoText);
  EXPECT_EQ(read_text(GetReplaceString, 1), kNoText);
  EXPECT_EQ(read_text(GetFullName, ZENFO_LIST_PAIRS, 0).result, 1);
  EXPECT_EQ(SetState(ZENFO_LIST_PAIRS, 0, 1), 1);
  EXPECT_EQ(get_match_flag(ZENFO_LIST_PAIRS, 0), -1);
}

TEST_F(EntryTest, FileOperationsPassOverPairs) {
  constexpr int32_t kPairs = ZENFO_LIST_PAIRS;
  ASSERT_EQ(AddStringPair("abc", "x"), 1);
  for (TextAccessor accessor : kTextAccessors) {
    EXPECT_EQ(read_text(accessor, kPairs, 0), kNoText);
  }
  EXPECT_EQ(SetFullName(kPairs, 0, "x"), -1);
  EXPECT_EQ(GetFlag(kPairs, 0), -1);
  EXPECT_EQ(IsTrashed(kPairs, 0), -1);
  EXPECT_EQ(GetIcon(kPairs, 0, nullptr, nullptr), -1);
  EXPECT_EQ(Refresh(kPairs, 0, kAllFacts.data()), -1);
  EXPECT_EQ(Refresh(kPairs, -1, kAllFacts.data()), 0);
  EXPECT_EQ(totals(GetSizeTotal, kPairs), (Totals{1, "0 B", "0 Bytes"}));
  EXPECT_EQ(GetFileFlagCount(kPairs, 0), 0);
  EXPECT_EQ(read_text(GetFindString, 0), (Text{1, "abc"}));
}

TEST_F(EntryTest, FilesAmongPairsAreFoundAndAdded) {
  constexpr int32_t kPairs = ZENFO_LIST_PAIRS;
  ASSERT_EQ(AddStringPair("abc", "x"), 1);
  session.folder.file("a", "abc");
  ASSERT_EQ(session.find(kPairs, "0~/a"), 1);
  SetState(kPairs, 0, 1);
  EXPECT_EQ(FindInFiles(kPairs, "abc", 1, 0, 1), 1);
  EXPECT_EQ(GetState(kPairs, 0), 0);
  EXPECT_EQ(GetState(kPairs, 1), 1);
  HostRecorder host;
  EXPECT_EQ(AddFileToList(kPairs, ZENFO_LIST_RUN_FILES, kNoFacts.data()), 1);
  EXPECT_EQ(host.file_questions.size(), 1u);
  EXPECT_THAT(session.names(ZENFO_LIST_RUN_FILES), ElementsAre("~/a"));
}

// --- States, flags, counts ---------------------------------------------------

TEST_F(EntryTest, SetStateFollowsItsActions) {
  session.fill(kFiles, 3);
  EXPECT_EQ(SetState(kFiles, 1, 1), 1);
  EXPECT_EQ(GetState(kFiles, 1), 1);
  EXPECT_EQ(SetState(kFiles, -1, -1), 3);
  EXPECT_EQ(GetState(kFiles, 0), 1);
  EXPECT_EQ(GetState(kFiles, 1), 0);
  EXPECT_EQ(SetState(kFiles, 0, 0), 1);
  EXPECT_EQ(GetState(kFiles, 0), 0);
  for (int32_t action : {2, -2, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(SetState(kFiles, 0, action), 0) << action;
    EXPECT_EQ(SetState(kFiles, 3, action), -1) << action;
    EXPECT_EQ(SetState(kFiles, -1, action), 0) << action;
  }
  for (int32_t index : {3, -2, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(SetState(kFiles, index, 1), -1) << index;
  }
  EXPECT_EQ(SetState(ZENFO_LIST_RUN_FILES, -1, 1), 0);
  EXPECT_EQ(SetState(ZENFO_LIST_RUN_FILES, 0, 1), -1);
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST_F(EntryTest, GetCountCountsByState) {
  session.fill(kFiles, 5);
  SetState(kFiles, 1, 1);
  SetState(kFiles, 3, 1);
  const std::pair<int32_t, int32_t> cases[] = {
      {-1, 5},        {0, 3},   {1, 2},         {2, 0},
      {INT32_MAX, 0}, {-2, -1}, {INT32_MIN, -1}};
  for (const auto& [selector, count] : cases) {
    EXPECT_EQ(GetCount(kFiles, selector), count) << selector;
  }
  for (int32_t list : kAllLists) {
    EXPECT_EQ(GetCount(list, 0), list == kFiles ? 3 : 0) << list;
  }
}

TEST_F(EntryTest, GetFileFlagCountCountsFailedAndGatheredApart) {
  only_file("a", "");
  session.fill(kFiles, 2);
  SetFullName(kFiles, 1, session.spelled("~/gone").c_str());
  session.find(kFiles, "",
               kAllFacts);  // gathers the facts of the whole list again
  EXPECT_EQ(GetFlag(kFiles, 0), 0);
  EXPECT_EQ(GetFlag(kFiles, 1), -1);
  const std::pair<int32_t, int32_t> cases[] = {
      {-1, 1}, {0, 2}, {1, 0}, {2, 0}, {-2, -1}, {INT32_MIN, -1}};
  for (const auto& [value, count] : cases) {
    EXPECT_EQ(GetFileFlagCount(kFiles, value), count) << value;
  }
  EXPECT_EQ(GetFileFlagCount(ZENFO_LIST_MATCHES, 0), 0);
}

TEST_F(EntryTest, CountsSendTheirTextWhereThereIsAList) {
  HostRecorder host;
  GetCount(kFiles, -1);
  GetFileFlagCount(kFiles, 0);
  EXPECT_THAT(host.statuses,
              ElementsAre("Now counting entries", "Now counting entries"));
  GetCount(kNoList, -1);
  GetFileFlagCount(kNoList, 0);
  EXPECT_EQ(host.statuses.size(), 2u);
}

TEST_F(EntryTest, WalksReportAboutAHundredPositionsAndTheEnd) {
  session.fill(kFiles, 250);
  std::vector<uint32_t> expected;
  for (uint32_t i = 0; i <= 250; i += 2) expected.push_back(i);
  const std::function<int32_t()> walks[] = {
      [] { return SetState(kFiles, -1, 0); },
      [] { return GetCount(kFiles, 0); },
      [] { return GetFileFlagCount(kFiles, 0); },
      [] { return Refresh(kFiles, -1, kNoFacts.data()); },
  };
  for (const auto& walk : walks) {
    HostRecorder host;
    EXPECT_EQ(walk(), 250);
    EXPECT_EQ(host.report_positions(), expected);
    ASSERT_FALSE(host.reports.empty());
    EXPECT_EQ(host.reports.front().total, 250u);
    EXPECT_EQ(host.reports.front().percent, 0);
    EXPECT_EQ(host.reports[50].percent, 40);
    EXPECT_EQ(host.reports.back().percent, 100);
  }
}

TEST_F(EntryTest, PercentsAreOfSinglePrecision) {
  session.fill(kFiles, 10);
  HostRecorder host;
  SetState(kFiles, -1, 0);
  std::vector<int32_t> percents;
  for (const ProgressRecord& r : host.reports) percents.push_back(r.percent);
  EXPECT_THAT(percents,
              ElementsAre(0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100));
}

// --- Stops -------------------------------------------------------------------

class StopTest : public EntryTest {
 protected:
  StopTest() {
    session.fill(kFiles, 350);
    session.fill(ZENFO_LIST_ERROR, 1);
  }
  // Runs `operation` with a stop at each poll in turn; `check` gets the result
  // and the number of the poll that stopped it. Returns the number of polls.
  int stop_at_each_poll(const std::function<int32_t()>& operation,
                        const std::function<void(int32_t, int)>& check) {
    for (int stop = 0;; ++stop) {
      HostRecorder host;
      start_polls(host);
      int polls = 0;
      host.interrupt = [&] { return polls++ == stop ? 1 : 0; };
      const int32_t answer = operation();
      if (polls <= stop) return stop;
      EXPECT_EQ(polls, stop + 1) << "polled after the stop";
      check(answer, stop);
    }
  }
};

TEST_F(StopTest, SetStateAnswersTheNumberTouched) {
  const int polls = stop_at_each_poll(
      [] { return SetState(kFiles, -1, -1); },
      [&](int32_t touched, int stop) { EXPECT_EQ(touched, 101 * (stop + 1)); });
  EXPECT_EQ(polls, 3);
}

TEST_F(StopTest, SetStateLeavesTheRestAlone) {
  HostRecorder host;
  start_polls(host);
  host.interrupt = [] { return 1; };
  EXPECT_EQ(SetState(kFiles, -1, 1), 101);
  host.interrupt = [] { return 0; };
  EXPECT_EQ(GetState(kFiles, 100), 1);
  EXPECT_EQ(GetState(kFiles, 101), 0);
  EXPECT_EQ(GetCount(kFiles, 1), 101);
}

TEST_F(StopTest, GetFileFlagCountAnswersTheCountSoFar) {
  const int polls = stop_at_each_poll(
      [] { return GetFileFlagCount(kFiles, 0); },
      [&](int32_t count, int stop) { EXPECT_EQ(count, 101 * (stop + 1)); });
  EXPECT_EQ(polls, 3);
}

TEST_F(StopTest, RefreshAnswersTheNumberRefreshed) {
  const int polls = stop_at_each_poll(
      [] { return Refresh(kFiles, -1, kNoFacts.data()); },
      [&](int32_t count, int stop) { EXPECT_EQ(count, 101 * (stop + 1)); });
  EXPECT_EQ(polls, 3);
}

TEST_F(StopTest, GetCountAnswersTheCountSoFarOnAPollCounterOfItsOwn) {
  HostRecorder host;
  for (int stop = 0; stop < 3; ++stop) {
    // Each run of one entry counts one poll: resets the counter.
    const int before = host.interrupt_polls;
    host.interrupt = [] { return 0; };
    while (host.interrupt_polls == before) GetCount(ZENFO_LIST_ERROR, 0);
    int polls = 0;
    host.interrupt = [&] { return polls++ == stop ? 1 : 0; };
    EXPECT_EQ(GetCount(kFiles, 0), 101 * (stop + 1));
  }
}

TEST_F(StopTest, AStoppedWalkDoesNotReportItsEnd) {
  HostRecorder host;
  start_polls(host);
  host.reports.clear();
  host.interrupt = [] { return 1; };
  SetState(kFiles, -1, 1);
  ASSERT_FALSE(host.reports.empty());
  EXPECT_LT(host.reports.back().position, 101u);
}

// --- Refresh and Clear -------------------------------------------------------

TEST_F(EntryTest, RefreshGathersAgainWhatIsAsked) {
  only_file("a", "1", kNoFacts);
  session.folder.file("a", "333");
  EXPECT_EQ(Refresh(kFiles, 0, kNoFacts.data()), 1);
  EXPECT_EQ(read_text(GetFilename, kFiles, 0), kNoText);
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "0 B"}));
  EXPECT_EQ(Refresh(kFiles, 0, asking_for({2}).data()), 1);
  EXPECT_EQ(read_text(GetFilename, kFiles, 0), (Text{1, "a"}));
  EXPECT_EQ(read_text(GetDirectory, kFiles, 0), kNoText);
  EXPECT_EQ(Refresh(kFiles, 0, asking_for({3}).data()), 1);
  EXPECT_EQ(read_text(GetDirectory, kFiles, 0),
            (Text{1, session.folder.path()}));
  EXPECT_EQ(read_text(GetType, kFiles, 0), kNoText);
  EXPECT_EQ(Refresh(kFiles, 0, asking_for({4}).data()), 1);
  EXPECT_EQ(read_text(GetType, kFiles, 0).result, 1);
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "0 B"}));
  EXPECT_EQ(Refresh(kFiles, 0, asking_for({9}).data()), 1);
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "3 B"}));
}

TEST_F(EntryTest, RefreshLeavesTheFlagAsItIsWhenAFactIsNotAvailable) {
  const std::string path = only_file("a", "1");
  ASSERT_TRUE(std::filesystem::remove(path));
  EXPECT_EQ(Refresh(kFiles, 0, kAllFacts.data()), 1);
  EXPECT_EQ(GetFlag(kFiles, 0), 0);
  // Known facts stay.
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "1 B"}));
  session.find(kFiles, "");
  EXPECT_EQ(GetFlag(kFiles, 0), -1);
  session.folder.file("a", "22");
  EXPECT_EQ(Refresh(kFiles, -1, kAllFacts.data()), 1);
  EXPECT_EQ(GetFlag(kFiles, 0), -1);
  EXPECT_EQ(read_text(GetSize, kFiles, 0), (Text{1, "2 B"}));
}

TEST_F(EntryTest, RefreshTakesAPositionOrMinusOne) {
  session.fill(kFiles, 3);
  EXPECT_EQ(Refresh(kFiles, -1, kAllFacts.data()), 3);
  EXPECT_EQ(Refresh(kFiles, 2, kAllFacts.data()), 1);
  for (int32_t index : {3, -2, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Refresh(kFiles, index, kAllFacts.data()), -1) << index;
  }
  EXPECT_EQ(Refresh(ZENFO_LIST_RUN_FILES, -1, kAllFacts.data()), 0);
  EXPECT_EQ(Refresh(ZENFO_LIST_RUN_FILES, 0, kAllFacts.data()), -1);
  EXPECT_EQ(Refresh(kFiles, 0, nullptr), -1);
  EXPECT_THAT(session.take_log(), IsEmpty());
}

TEST_F(EntryTest, RefreshKeepsTheState) {
  session.fill(kFiles, 2);
  SetState(kFiles, 1, 1);
  Refresh(kFiles, -1, kAllFacts.data());
  EXPECT_EQ(GetState(kFiles, 1), 1);
}

TEST_F(EntryTest, ClearEmptiesOneListOnly) {
  session.fill(kFiles, 3);
  session.fill(ZENFO_LIST_RUN_FILES, 2);
  EXPECT_EQ(Clear(kFiles), 1);
  EXPECT_EQ(Clear(kFiles), 1);
  EXPECT_EQ(GetCount(kFiles, -1), 0);
  EXPECT_EQ(GetCount(ZENFO_LIST_RUN_FILES, -1), 2);
  EXPECT_EQ(read_text(GetFullName, kFiles, 0), kNoText);
}

TEST_F(EntryTest, PositionsCountFromEitherEndInAnyOrder) {
  for (const char* name : {"a", "b", "c", "d", "e"}) {
    session.folder.file(name, "");
  }
  session.find(kFiles, "0~/a;b;c;d;e", kAllFacts);
  for (uint32_t index : {4u, 0u, 2u, 3u, 2u, 1u, 4u, 3u, 0u}) {
    EXPECT_EQ(read_text(GetFilename, kFiles, index).text,
              std::string(1, static_cast<char>('a' + index)));
  }
}

}  // namespace
}  // namespace zenfo::test
