// Every operation with each of its allocations failing in turn: it returns its
// failure value (or works without the memory), the lists stay valid, and
// AddressSanitizer finds no leak.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "containers/item_list.h"
#include "library/library.h"
#include "support/host_recorder.h"
#include "support/lists.h"
#include "support/session.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace {

// Allocations until one fails; negative: none fails.
long allocations_left = -1;
bool failed = false;

bool fails_now() {
  if (allocations_left < 0) return false;
  if (allocations_left > 0) {
    --allocations_left;
    return false;
  }
  allocations_left = -1;  // one fault per run
  failed = true;
  return true;
}

void* allocate(size_t size) {
  return fails_now() ? nullptr : std::malloc(size > 0 ? size : 1);
}

void* allocate_or_throw(size_t size) {
  void* memory = allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(size_t size) { return allocate_or_throw(size); }
void* operator new[](size_t size) { return allocate_or_throw(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}

namespace zenfo::test {
namespace {

// What the host does inside the next option question; nothing by default.
std::function<int32_t()> inside_question;

// Callbacks that allocate nothing, because a host's memory is separate.
void listen_quietly() {
  CallbackTable table{};
  table.report = [](ProgressRecord*) -> int32_t { return 0; };
  table.interrupt = []() -> int32_t { return 0; };
  table.status = [](const ZenfoWideChar*) -> int32_t { return 0; };
  table.file_question = [](const ZenfoWideChar*) -> int32_t { return 1; };
  table.option_question = [](const ZenfoWideChar*, int32_t) -> int32_t {
    const auto act = std::exchange(inside_question, nullptr);
    if (act) act();
    return 1;
  };
  SetCallBacks(&table);
}

// Nodes and records come from pools. Under AddressSanitizer a pool allocates
// each object separately, so each of these allocations fails once.
void expect_sound_lists(const char* operation, long n) {
  for (int32_t number : kAllLists) {
    ItemList* list = library().get_list(number);
    if (list == nullptr) continue;
    EXPECT_TRUE(list->check()) << operation << ", allocation " << n;
    for (uint32_t i = 0; i < list->count(); ++i) {
      ASSERT_NE(list->get(i), nullptr) << operation << ", allocation " << n;
    }
  }
}

struct Expected {
  int32_t success;
  // All results allowed when an allocation failed.
  std::vector<int32_t> failures = {-1};
  // The operation needs memory at all.
  bool allocates = true;
  // A failure is logged; the matcher returns its own value instead.
  bool logged = true;
  // Called before and after each run, without faults.
  std::function<void()> before = [] {};
  std::function<void()> after = [] {};
};

// The routine in its error records: the operation's name without the
// description.
std::string routine_of(const std::string& operation) {
  return operation.substr(0, operation.find(' '));
}

// Returns the result of `operation` inside the option question of a search, the
// only part in which an allocation fails.
int32_t in_question(const std::function<int32_t()>& operation) {
  const long planned = std::exchange(allocations_left, -1);
  int32_t answer = -99;
  inside_question = [&] {
    allocations_left = planned;
    answer = operation();
    allocations_left = -1;
    return 1;
  };
  EXPECT_EQ(FindBlock(0, 0, 0, "", 1, 0), 2);
  return answer;
}

class MemoryFaults : public testing::Test {
 protected:
  MemoryFaults() {
    listen_quietly();
    for (const char* name : {"one", "two", "sub/three"}) {
      session.folder.file(name, "some text");
    }
    everything = session.spelled("1~/*;*.*");
  }
  ~MemoryFaults() override {
    CallbackTable none{};
    SetCallBacks(&none);
  }

  // Sets up the lists that every run starts with.
  void set_up() {
    for (int32_t list : kFileLists) Clear(list);
    const std::string two_files = session.spelled("0~/one;two");
    FindFiles(kFiles, two_files.c_str(), kAllFacts.data(), "");
    FindFiles(ZENFO_LIST_RUN_FILES, two_files.c_str(), kAllFacts.data(), "");
    SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  }

  // A list file of the two files.
  std::string line_list() const {
    return session.spelled("~/one\r\n~/two\r\n");
  }

  // Runs the operation repeatedly, with its first, second, ... allocation
  // failing, until no allocation is left to fail.
  void fail_each(const char* operation, const std::function<int32_t()>& run,
                 const Expected& expected) {
    for (long n = 0;; ++n) {
      set_up();
      expected.before();
      session.take_log();
      failed = false;
      allocations_left = n;
      const int32_t answer = run();
      allocations_left = -1;
      expect_sound_lists(operation, n);
      expected.after();
      if (!failed) {
        EXPECT_EQ(answer, expected.success) << operation;
        EXPECT_EQ(n > 0, expected.allocates) << operation;
        return;
      }
      EXPECT_THAT(expected.failures, testing::Contains(answer))
          << operation << ", allocation " << n;
      if (answer != expected.success && expected.logged) {
        EXPECT_THAT(session.take_log(),
                    testing::Contains(logged_fault(routine_of(operation))))
            << operation << ", allocation " << n;
      }
      ASSERT_LT(n, 100000) << operation;
    }
  }

  Session session;
  std::string everything;
};

TEST_F(MemoryFaults, FindFilesFails) {
  fail_each("FindFiles",
            [&] {
              return FindFiles(ZENFO_LIST_RUN_FILES, everything.c_str(),
                               kAllFacts.data(), "");
            },
            {.success = 6, .failures = {-1, 6}});
  const std::string output = session.folder.path("names");
  fail_each("FindFiles to a file",
            [&] {
              return FindFiles(ZENFO_LIST_RUN_FILES, everything.c_str(),
                               kAllFacts.data(), output.c_str());
            },
            {.success = 8, .failures = {-1, 8}});
}

TEST_F(MemoryFaults, AddFileToListFails) {
  fail_each("AddFileToList",
            [] {
              return AddFileToList(kFiles, ZENFO_LIST_RUN_FILES,
                                   kAllFacts.data());
            },
            {.success = 2, .failures = {-1, 2}});
  fail_each("AddFileToList to itself",
            [] { return AddFileToList(kFiles, kFiles, kAllFacts.data()); },
            {.success = 2, .failures = {-1, 2}});
}

TEST_F(MemoryFaults, FindInFilesFails) {
  fail_each("FindInFiles", [] { return FindInFiles(kFiles, "text", 1, 1, 0); },
            {.success = 2, .failures = {-1, 2}});
}

TEST_F(MemoryFaults, RefreshFails) {
  fail_each("Refresh", [] { return Refresh(kFiles, -1, kAllFacts.data()); },
            {.success = 2, .failures = {-1, 2}});
}

TEST_F(MemoryFaults, SetFullNameFailsAndKeepsAName) {
  fail_each(
      "SetFullName",
      [] { return SetFullName(kFiles, 0, "a name that no small text holds"); },
      {.success = 1});
  // The failed calls must leave the old name.
  set_up();
  allocations_left = 0;
  EXPECT_EQ(SetFullName(kFiles, 0, "a name that no small text holds"), -1);
  EXPECT_EQ(read_text(GetFullName, kFiles, 0),
            (Text{1, session.folder.path("one")}));
  EXPECT_THAT(session.take_log(),
              testing::ElementsAre(logged_fault("SetFullName")));
}

TEST_F(MemoryFaults, CountsAndStatesAnswerAsUsual) {
  fail_each("GetCount", [] { return GetCount(kFiles, 0); }, {.success = 2});
  fail_each("GetFileFlagCount", [] { return GetFileFlagCount(kFiles, 0); },
            {.success = 2});
  fail_each("SetState", [] { return SetState(kFiles, -1, 1); },
            {.success = 2, .failures = {}, .allocates = false});
}

TEST_F(MemoryFaults, TextsFailWithAnEmptyBuffer) {
  static char buffer[4096];
  constexpr std::pair<const char*, TextAccessor> kAccessors[] = {
      {"GetFilename", GetFilename},    {"GetFullName", GetFullName},
      {"GetDirectory", GetDirectory},  {"GetType", GetType},
      {"GetCTime", GetCTime},          {"GetATime", GetATime},
      {"GetMTime", GetMTime},          {"GetSize", GetSize},
      {"GetAttributes", GetAttributes}};
  for (const auto& [routine, accessor] : kAccessors) {
    for (long n = 0;; ++n) {
      set_up();
      session.take_log();
      failed = false;
      allocations_left = n;
      const int32_t answer = accessor(0, 0, buffer, 0);
      allocations_left = -1;
      if (!failed) {
        EXPECT_EQ(answer, 1);
        break;
      }
      EXPECT_EQ(answer, -1);
      EXPECT_STREQ(buffer, "");
      EXPECT_THAT(session.take_log(),
                  testing::ElementsAre(logged_fault(routine)));
    }
  }
}

TEST_F(MemoryFaults, TotalsFail) {
  static char short_text[64], long_text[64];
  // The texts are short enough to need no allocation.
  fail_each("GetSizeTotal",
            [] { return GetSizeTotal(kFiles, short_text, long_text); },
            {.success = 1, .allocates = false});
}

TEST_F(MemoryFaults, SetErrorFileFailsAndTheNextCallWorks) {
  const std::string longer = session.error_file() + std::string(300, 'x');
  allocations_left = 0;
  EXPECT_EQ(SetErrorFile(longer.c_str()), -1);
  EXPECT_EQ(allocations_left, -1) << "no memory was asked for";
  EXPECT_EQ(SetErrorFile(session.error_file().c_str()), 1);
  session.take_log();
  Clear(kNoList);
  EXPECT_EQ(session.take_log().size(), 2u);
}

TEST_F(MemoryFaults, ALogRecordThatCannotBeWrittenIsDropped) {
  fail_each("Clear of an unknown list", [] { return Clear(kNoList); },
            {.success = 0, .failures = {0}});
}

TEST_F(MemoryFaults, SetPatternFails) {
  fail_each("SetPattern",
            [] {
              return SetPattern("<", "a long literal text and ?", ">", 1, 1, 1,
                                1, 1, 1);
            },
            {.success = 1});
}

TEST_F(MemoryFaults, FindBlockFails) {
  ASSERT_EQ(SetPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  const std::string report = session.folder.path("report");
  fail_each("FindBlock",
            [&] { return FindBlock(0, 0, 1, report.c_str(), 1, 0); },
            {.success = 2, .failures = {-1, 2}, .logged = false});
}

TEST_F(MemoryFaults, GetWordCountFails) {
  static TextCounts counts;
  const std::string path = session.folder.path("one");
  fail_each("get_word_count",
            [&] { return get_word_count(path.c_str(), &counts); },
            {.success = 1, .logged = false});
}

TEST_F(MemoryFaults, SetPatternTagAndSetOperatorsFail) {
  fail_each(
      "SetPatternTag",
      [] { return SetPatternTag("<a long tag>", "</a long tag>", 1, 1, 1); },
      {.success = 1});
  const std::string classes = session.folder.file(
      "classes", "name=a name that no small text holds\r\ninc_ranges=48-57");
  fail_each("set_operators", [&] { return set_operators(classes.c_str()); },
            {.success = 1, .failures = {-1, 1}, .logged = false});
}

TEST_F(MemoryFaults, SearchesFail) {
  ASSERT_EQ(SetExclusionPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  const std::string report = session.folder.path("report");
  const std::string list = session.folder.file("list", line_list());
  const std::string summary = session.folder.path("summary");
  fail_each("FindExcludedArea",
            [&] { return FindExcludedArea(0, 0, 1, report.c_str()); },
            {.success = 2, .failures = {-1, 0, 1, 2}, .logged = false});
  ASSERT_EQ(SetExclusionPattern("", "none", "", 0, 0, 0, 0, 0, 0), 1);
  const auto add_pair = [] {
    ASSERT_EQ(AddStringPair("text", ""), 1);
    SetState(ZENFO_LIST_PAIRS, 0, 1);
  };
  fail_each("FindString",
            [&] { return FindString(0, 0, 1, report.c_str(), 1, 1, 1, 0); },
            {.success = 2,
             .failures = {-1, 0, 1, 2},
             .logged = false,
             .before = add_pair});
  fail_each("FindString_f",
            [&] {
              return FindString_f(0, 0, 1, report.c_str(), 1, 1, 1,
                                  list.c_str(), summary.c_str(), 0);
            },
            {.success = 2,
             .failures = {-1, 0, 1, 2},
             .logged = false,
             .before = add_pair});
}

// Whatever fails, the safe copies can restore every file.
TEST_F(MemoryFaults, RunsThatWriteLoseNoFile) {
  ASSERT_EQ(SetPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  ASSERT_EQ(SetUndoFile(session.folder.path("store/undo.txt").c_str()), 1);
  const std::pair<const char*, std::function<int32_t()>> runs[] = {
      {"ReplaceBlock",
       [] { return ReplaceBlock("xy", 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0); }},
      {"ReplaceString", [] { return ReplaceString(1, 0, 0, 0, 0, 0, 1, 0); }},
      {"change_case_i", [] { return change_case_i(1, 0, 0, 0, 1, 1, 0); }},
  };
  for (const auto& run : runs) {
    const char* operation = run.first;
    fail_each(
        operation, run.second,
        {.success = 2,
         .failures = {-1, 0, 1, 2},
         .logged = false,
         .before =
             [] {
               ASSERT_EQ(AddStringPair("text", "a longer one"), 1);
               SetState(ZENFO_LIST_PAIRS, 0, 1);
             },
         .after =
             [&] {
               EXPECT_EQ(Undo(), 0) << operation;
               for (const char* name : {"one", "two"}) {
                 ASSERT_EQ(read_file(session.folder.path(name)), "some text")
                     << operation;
               }
             }});
  }
}

// Without memory for an index, lists are walked.
TEST_F(MemoryFaults, GetUndoListFails) {
  ASSERT_EQ(SetUndoFile(session.folder.path("store/undo.txt").c_str()), 1);
  session.folder.file("store/undo.txt", "a\tb\tc\r\nd\te\tf\r\n");
  fail_each("GetUndoList", [] { return GetUndoList(); },
            {.success = 2, .failures = {-1, 2}});
}

// Sorts also work, more slowly, without the memory that makes them fast.
TEST_F(MemoryFaults, SortsFailOrWorkWithoutTheMemory) {
  fail_each("Sort", [] { return Sort(ZENFO_LIST_RUN_FILES, 2, 0); },
            {.success = 1, .failures = {-1, 1}});
  fail_each("SelectDuplicates",
            [] { return SelectDuplicates(ZENFO_LIST_RUN_FILES, 2); },
            {.success = 0, .failures = {-1, 0}});
  fail_each("CompareLists", [] { return CompareLists(2, 1); },
            {.success = 1, .failures = {-1, 1}, .before = [&] {
               const std::string files = session.spelled("0~/one;two");
               ASSERT_EQ(FindFiles(ZENFO_LIST_PAIRS, files.c_str(),
                                   kAllFacts.data(), ""),
                         2);
             }});
}

TEST_F(MemoryFaults, ListFilesFail) {
  const std::string list = session.folder.file("list", line_list());
  const std::string out = session.folder.path("out");
  const unsigned char columns[10] = {0, 0, 1, 1, 1, 1, 1, 1, 1, 1};
  fail_each("LoadFileList",
            [&] { return LoadFileList(list.c_str(), kAllFacts.data()); },
            {.success = 2, .failures = {-1, 2}});
  fail_each("SaveFileList", [&] { return SaveFileList(out.c_str()); },
            {.success = 2});
  fail_each("SaveSelection",
            [&] {
              return SaveSelection(ZENFO_LIST_RUN_FILES, out.c_str(), ";",
                                   columns);
            },
            {.success = 2});
  fail_each(
      "FindInList",
      [] { return FindInList(ZENFO_LIST_RUN_FILES, 3, "e", 0, 0, 0, 0, 0, 0); },
      {.success = 2, .failures = {-1, 2}});
}

TEST_F(MemoryFaults, PairAndValueFilesFail) {
  const std::string bytes = "a find string\ta replace string\r\nb\tc\r\n";
  const std::string list = session.folder.file("pairs", bytes);
  const std::string out = session.folder.path("out");
  fail_each("LoadStringPair", [&] { return LoadStringPair(list.c_str()); },
            {.success = 2, .failures = {-1, 2}});
  fail_each("SaveStringPair", [&] { return SaveStringPair(out.c_str(), 0); },
            {.success = 2, .before = [&] { LoadStringPair(list.c_str()); }});
  fail_each("load_replace_list",
            [&] { return load_replace_list(list.c_str()); },
            {.success = 2, .failures = {-1, 2}});
  fail_each("save_replace_list", [&] { return save_replace_list(out.c_str()); },
            {.success = 2, .before = [&] { load_replace_list(list.c_str()); }});
}

TEST_F(MemoryFaults, OperationsInsideTheQuestionFail) {
  ASSERT_EQ(SetPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  const std::string out = session.folder.path("out");
  fail_each(
      "save_occurrences",
      [&] {
        return in_question([&] { return save_occurrences(out.c_str(), ";"); });
      },
      {.success = 1});
  fail_each("PrepareDisplay",
            [] {
              return in_question([] {
                return PrepareDisplay("a separator that no small text holds",
                                      0);
              });
            },
            {.success = 1, .logged = false, .after = [&] {
               EXPECT_THAT(session.take_log(), testing::IsEmpty());
             }});
}

// An object that cannot be allocated stays missing; the rest works.
TEST_F(MemoryFaults, InitializeLeavesMissingObjectsNull) {
  for (long n = 0;; ++n) {
    Terminate();
    failed = false;
    allocations_left = n;
    const int32_t answer = Initialize();
    allocations_left = -1;
    if (!failed) {
      EXPECT_EQ(answer, 1);
      break;
    }
    EXPECT_THAT(answer, testing::AnyOf(0, 1));
    for (int32_t list : kAllLists) {
      const int32_t count = GetCount(list, -1);
      EXPECT_THAT(count, testing::AnyOf(0, -1)) << list;
      EXPECT_EQ(Clear(list), count == 0 ? 1 : 0);
    }
    FindFiles(kFiles, everything.c_str(), kAllFacts.data(), "");
    FindInFiles(kFiles, "text", 1, 0, 0);
    SetErrorFile(session.error_file().c_str());
    Clear(kNoList);
    expect_sound_lists("Initialize", n);
    session.take_log();
  }
  EXPECT_EQ(Initialize(), 1);
  EXPECT_EQ(FindFiles(kFiles, everything.c_str(), kAllFacts.data(), ""), 6);
}

}  // namespace
}  // namespace zenfo::test
