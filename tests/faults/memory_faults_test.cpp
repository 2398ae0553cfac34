// Every operation with each of its allocations failing in turn: it answers its
// failure value (or does without), the lists stay sound, and under
// AddressSanitizer nothing leaks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "containers/item_list.h"
#include "frame/library.h"
#include "support/host_recorder.h"
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
  allocations_left = -1;  // one fault a run
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

// What the host does inside the next option question; nothing unless set.
std::function<int32_t()> inside_question;

// Callbacks that allocate nothing themselves, as a host's memory is its own.
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

// Nodes and records come from pools, which take memory for themselves only
// under AddressSanitizer at each object; there every one of them fails once.
void expect_sound_lists(const char* operation, long n) {
  for (int32_t number = 0; number <= 10; ++number) {
    ItemList* list = library().get_list(number);
    if (list == nullptr) continue;
    EXPECT_TRUE(list->Check()) << operation << ", allocation " << n;
    for (uint32_t i = 0; i < list->Count(); ++i) {
      ASSERT_NE(list->Get(i), nullptr) << operation << ", allocation " << n;
    }
  }
}

struct Fault {
  const char* operation;
  std::function<int32_t()> run;
  int32_t success;
  // All that may be answered when an allocation failed.
  std::vector<int32_t> failures;
  // The operation needs memory at all.
  bool allocates = true;
  // A failure is logged; the matcher answers its own instead.
  bool logged = true;
  // Around the run of each round, with all memory there is.
  std::function<void()> before = [] {};
  std::function<void()> after = [] {};

  // The routine of its records: the operation's name, without what it does.
  std::string routine() const {
    const std::string name = operation;
    return name.substr(0, name.find(' '));
  }
};

// Answers what `operation` does inside the option question of a search, the
// only part of it where an allocation fails.
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

  // The lists as every run finds them.
  void set_up() {
    for (int32_t list : {0, 1, 2, 4, 6, 7}) Clear(list);
    const std::string two_files = session.spelled("0~/one;two");
    FindFiles(0, two_files.c_str(), kAllFacts.data(), "");
    FindFiles(1, two_files.c_str(), kAllFacts.data(), "");
    SetState(1, -1, 1);
  }

  // A list file of the two files.
  std::string line_list() const {
    return session.spelled("~/one\r\n~/two\r\n");
  }

  void run_with_each_allocation_failing(const Fault& fault) {
    for (long n = 0;; ++n) {
      set_up();
      fault.before();
      session.take_log();
      failed = false;
      allocations_left = n;
      const int32_t answer = fault.run();
      allocations_left = -1;
      expect_sound_lists(fault.operation, n);
      fault.after();
      if (!failed) {
        EXPECT_EQ(answer, fault.success) << fault.operation;
        EXPECT_EQ(n > 0, fault.allocates) << fault.operation;
        return;
      }
      EXPECT_THAT(fault.failures, testing::Contains(answer))
          << fault.operation << ", allocation " << n;
      if (answer != fault.success && fault.logged) {
        EXPECT_THAT(session.take_log(),
                    testing::Contains(runtime_error(fault.routine())))
            << fault.operation << ", allocation " << n;
      }
      ASSERT_LT(n, 100000) << fault.operation;
    }
  }

  Session session;
  std::string everything;
};

TEST_F(MemoryFaults, FindFilesFails) {
  run_with_each_allocation_failing(
      {"FindFiles",
       [&] { return FindFiles(1, everything.c_str(), kAllFacts.data(), ""); },
       6,
       {-1, 6}});
  const std::string output = session.folder.path("names");
  run_with_each_allocation_failing({"FindFiles to a file",
                                    [&] {
                                      return FindFiles(1, everything.c_str(),
                                                       kAllFacts.data(),
                                                       output.c_str());
                                    },
                                    8,
                                    {-1, 8}});
}

TEST_F(MemoryFaults, AddFileToListFails) {
  run_with_each_allocation_failing(
      {"AddFileToList",
       [] { return AddFileToList(0, 1, kAllFacts.data()); },
       2,
       {-1, 2}});
  run_with_each_allocation_failing(
      {"AddFileToList to itself",
       [] { return AddFileToList(0, 0, kAllFacts.data()); },
       2,
       {-1, 2}});
}

TEST_F(MemoryFaults, FindInFilesFails) {
  run_with_each_allocation_failing(
      {"FindInFiles",
       [] { return FindInFiles(0, "text", 1, 1, 0); },
       2,
       {-1, 2}});
}

TEST_F(MemoryFaults, RefreshFails) {
  run_with_each_allocation_failing(
      {"Refresh", [] { return Refresh(0, -1, kAllFacts.data()); }, 2, {-1, 2}});
}

TEST_F(MemoryFaults, SetFullNameFailsAndKeepsAName) {
  run_with_each_allocation_failing(
      {"SetFullName",
       [] { return SetFullName(0, 0, "a name that no small text holds"); },
       1,
       {-1}});
  // The failed calls left the old name.
  set_up();
  allocations_left = 0;
  EXPECT_EQ(SetFullName(0, 0, "a name that no small text holds"), -1);
  EXPECT_EQ(read_text(GetFullName, 0, 0),
            (Text{1, session.folder.path("one")}));
  EXPECT_THAT(session.take_log(),
              testing::ElementsAre(runtime_error("SetFullName")));
}

TEST_F(MemoryFaults, CountsAndStatesAnswerAsEver) {
  run_with_each_allocation_failing(
      {"GetCount", [] { return GetCount(0, 0); }, 2, {-1}});
  run_with_each_allocation_failing(
      {"GetFileFlagCount", [] { return GetFileFlagCount(0, 0); }, 2, {-1}});
  run_with_each_allocation_failing(
      {"SetState", [] { return SetState(0, -1, 1); }, 2, {}, false});
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
                  testing::ElementsAre(runtime_error(routine)));
    }
  }
}

TEST_F(MemoryFaults, TotalsFail) {
  static char short_text[64], long_text[64];
  // Their texts are short enough to need no memory, or fail.
  run_with_each_allocation_failing(
      {"GetSizeTotal",
       [] { return GetSizeTotal(0, short_text, long_text); },
       1,
       {-1},
       false});
}

TEST_F(MemoryFaults, SetErrorFileFailsAndTheNextCallWorks) {
  const std::string longer = session.error_file() + std::string(300, 'x');
  allocations_left = 0;
  EXPECT_EQ(SetErrorFile(longer.c_str()), -1);
  EXPECT_EQ(allocations_left, -1) << "no memory was asked for";
  EXPECT_EQ(SetErrorFile(session.error_file().c_str()), 1);
  session.take_log();
  Clear(11);
  EXPECT_EQ(session.take_log().size(), 2u);
}

TEST_F(MemoryFaults, ALogRecordThatCannotBeWrittenIsDropped) {
  run_with_each_allocation_failing(
      {"Clear of an unknown list", [] { return Clear(11); }, 0, {0}});
}

TEST_F(MemoryFaults, SetPatternFails) {
  run_with_each_allocation_failing({"SetPattern",
                                    [] {
                                      return SetPattern(
                                          "<", "a long literal text and ?", ">",
                                          1, 1, 1, 1, 1, 1);
                                    },
                                    1,
                                    {-1}});
}

TEST_F(MemoryFaults, FindBlockFails) {
  ASSERT_EQ(SetPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  const std::string report = session.folder.path("report");
  run_with_each_allocation_failing(
      {"FindBlock",
       [&] { return FindBlock(0, 0, 1, report.c_str(), 1, 0); },
       2,
       {-1, 2},
       true,
       false});
}

TEST_F(MemoryFaults, GetWordCountFails) {
  static TextCounts counts;
  const std::string path = session.folder.path("one");
  run_with_each_allocation_failing(
      {"get_word_count",
       [&] { return get_word_count(path.c_str(), &counts); },
       1,
       {-1},
       true,
       false});
}

TEST_F(MemoryFaults, SetPatternTagAndSetOperatorsFail) {
  run_with_each_allocation_failing(
      {"SetPatternTag",
       [] { return SetPatternTag("<a long tag>", "</a long tag>", 1, 1, 1); },
       1,
       {-1}});
  const std::string classes = session.folder.file(
      "classes", "name=a name that no small text holds\r\ninc_ranges=48-57");
  run_with_each_allocation_failing(
      {"set_operators",
       [&] { return set_operators(classes.c_str()); },
       1,
       {-1, 1},
       true,
       false});
}

TEST_F(MemoryFaults, SearchesFail) {
  ASSERT_EQ(SetExclusionPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  const std::string report = session.folder.path("report");
  const std::string list = session.folder.file("list", line_list());
  const std::string summary = session.folder.path("summary");
  run_with_each_allocation_failing(
      {"FindExcludedArea",
       [&] { return FindExcludedArea(0, 0, 1, report.c_str()); },
       2,
       {-1, 0, 1, 2},
       true,
       false});
  ASSERT_EQ(SetExclusionPattern("", "none", "", 0, 0, 0, 0, 0, 0), 1);
  const auto add_pair = [] {
    ASSERT_EQ(AddStringPair("text", ""), 1);
    SetState(ZENFO_LIST_PAIRS, 0, 1);
  };
  run_with_each_allocation_failing(
      {"FindString",
       [&] { return FindString(0, 0, 1, report.c_str(), 1, 1, 1, 0); },
       2,
       {-1, 0, 1, 2},
       true,
       false,
       add_pair});
  run_with_each_allocation_failing({"FindString_f",
                                    [&] {
                                      return FindString_f(
                                          0, 0, 1, report.c_str(), 1, 1, 1,
                                          list.c_str(), summary.c_str(), 0);
                                    },
                                    2,
                                    {-1, 0, 1, 2},
                                    true,
                                    false,
                                    add_pair});
}

// Whatever fails, the safe copies bring every file back.
TEST_F(MemoryFaults, RunsThatWriteLoseNoFile) {
  ASSERT_EQ(SetPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  ASSERT_EQ(SetUndoFile(session.folder.path("store/undo.txt").c_str()), 1);
  const std::pair<const char*, std::function<int32_t()>> runs[] = {
      {"ReplaceBlock",
       [] { return ReplaceBlock("xy", 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0); }},
      {"ReplaceString", [] { return ReplaceString(1, 0, 0, 0, 0, 0, 1, 0); }},
      {"change_case_i", [] { return change_case_i(1, 0, 0, 0, 1, 1, 0); }},
  };
  for (const auto& [operation, run] : runs) {
    run_with_each_allocation_failing(
        {operation,
         run,
         2,
         {-1, 0, 1, 2},
         true,
         false,
         [] {
           ASSERT_EQ(AddStringPair("text", "a longer one"), 1);
           SetState(ZENFO_LIST_PAIRS, 0, 1);
         },
         [&] {
           EXPECT_EQ(Undo(), 0) << operation;
           for (const char* name : {"one", "two"}) {
             ASSERT_EQ(read_file(session.folder.path(name)), "some text")
                 << operation;
           }
         }});
  }
}

// Without memory for an index a list is walked instead.
TEST_F(MemoryFaults, GetUndoListFails) {
  ASSERT_EQ(SetUndoFile(session.folder.path("store/undo.txt").c_str()), 1);
  session.folder.file("store/undo.txt", "a\tb\tc\r\nd\te\tf\r\n");
  run_with_each_allocation_failing(
      {"GetUndoList", [] { return GetUndoList(); }, 2, {-1, 2}});
}

// Sorts go without the memory that makes them faster.
TEST_F(MemoryFaults, SortsFailOrDoWithout) {
  run_with_each_allocation_failing(
      {"Sort", [] { return Sort(1, 2, 0); }, 1, {-1, 1}});
  run_with_each_allocation_failing(
      {"SelectDuplicates", [] { return SelectDuplicates(1, 2); }, 0, {-1, 0}});
  run_with_each_allocation_failing(
      {"CompareLists",
       [] { return CompareLists(2, 1); },
       1,
       {-1, 1},
       true,
       true,
       [&] {
         const std::string files = session.spelled("0~/one;two");
         ASSERT_EQ(FindFiles(2, files.c_str(), kAllFacts.data(), ""), 2);
       }});
}

TEST_F(MemoryFaults, ListFilesFail) {
  const std::string list = session.folder.file("list", line_list());
  const std::string out = session.folder.path("out");
  const unsigned char columns[10] = {0, 0, 1, 1, 1, 1, 1, 1, 1, 1};
  run_with_each_allocation_failing(
      {"LoadFileList",
       [&] { return LoadFileList(list.c_str(), kAllFacts.data()); },
       2,
       {-1, 2}});
  run_with_each_allocation_failing(
      {"SaveFileList", [&] { return SaveFileList(out.c_str()); }, 2, {-1}});
  run_with_each_allocation_failing(
      {"SaveSelection",
       [&] { return SaveSelection(1, out.c_str(), ";", columns); },
       2,
       {-1}});
  run_with_each_allocation_failing(
      {"FindInList",
       [] { return FindInList(1, 3, "e", 0, 0, 0, 0, 0, 0); },
       2,
       {-1, 2}});
}

TEST_F(MemoryFaults, PairAndValueFilesFail) {
  const std::string bytes = "a find string\ta replace string\r\nb\tc\r\n";
  const std::string list = session.folder.file("pairs", bytes);
  const std::string out = session.folder.path("out");
  run_with_each_allocation_failing(
      {"LoadStringPair",
       [&] { return LoadStringPair(list.c_str()); },
       2,
       {-1, 2}});
  run_with_each_allocation_failing(
      {"SaveStringPair",
       [&] { return SaveStringPair(out.c_str(), 0); },
       2,
       {-1},
       true,
       true,
       [&] { LoadStringPair(list.c_str()); }});
  run_with_each_allocation_failing(
      {"load_replace_list",
       [&] { return load_replace_list(list.c_str()); },
       2,
       {-1, 2}});
  run_with_each_allocation_failing(
      {"save_replace_list",
       [&] { return save_replace_list(out.c_str()); },
       2,
       {-1},
       true,
       true,
       [&] { load_replace_list(list.c_str()); }});
}

TEST_F(MemoryFaults, OperationsInsideTheQuestionFail) {
  ASSERT_EQ(SetPattern("", "text", "", 0, 0, 0, 0, 0, 0), 1);
  const std::string out = session.folder.path("out");
  run_with_each_allocation_failing(
      {"save_occurrences",
       [&] {
         return in_question([&] { return save_occurrences(out.c_str(), ";"); });
       },
       1,
       {-1}});
  run_with_each_allocation_failing(
      {"PrepareDisplay",
       [] {
         return in_question([] {
           return PrepareDisplay("a separator that no small text holds", 0);
         });
       },
       1,
       {-1},
       true,
       false,
       [] {},
       [&] { EXPECT_THAT(session.take_log(), testing::IsEmpty()); }});
}

// An object without memory stays missing; the rest works.
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
    for (int32_t list = 0; list <= 10; ++list) {
      const int32_t count = GetCount(list, -1);
      EXPECT_THAT(count, testing::AnyOf(0, -1)) << list;
      EXPECT_EQ(Clear(list), count == 0 ? 1 : 0);
    }
    FindFiles(0, everything.c_str(), kAllFacts.data(), "");
    FindInFiles(0, "text", 1, 0, 0);
    SetErrorFile(session.error_file().c_str());
    Clear(11);
    expect_sound_lists("Initialize", n);
    session.take_log();
  }
  EXPECT_EQ(Initialize(), 1);
  EXPECT_EQ(FindFiles(0, everything.c_str(), kAllFacts.data(), ""), 6);
}

}  // namespace
}  // namespace zenfo::test
