// Every operation with each of its allocations failing in turn: it answers its
// failure value (or does without), the lists stay sound, and under
// AddressSanitizer nothing leaks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
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

// Callbacks that allocate nothing themselves, as a host's memory is its own.
void listen_quietly() {
  CallbackTable table{};
  table.report = [](ProgressRecord*) -> int32_t { return 0; };
  table.interrupt = []() -> int32_t { return 0; };
  table.status = [](const ZenfoWideChar*) -> int32_t { return 0; };
  table.file_question = [](const ZenfoWideChar*) -> int32_t { return 1; };
  table.option_question = [](const ZenfoWideChar*, int32_t) -> int32_t {
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
};

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

  void run_with_each_allocation_failing(const Fault& fault) {
    for (long n = 0;; ++n) {
      set_up();
      session.take_log();
      failed = false;
      allocations_left = n;
      const int32_t answer = fault.run();
      allocations_left = -1;
      expect_sound_lists(fault.operation, n);
      if (!failed) {
        EXPECT_EQ(answer, fault.success) << fault.operation;
        EXPECT_EQ(n > 0, fault.allocates) << fault.operation;
        return;
      }
      EXPECT_THAT(fault.failures, testing::Contains(answer))
          << fault.operation << ", allocation " << n;
      if (answer != fault.success && fault.logged) {
        EXPECT_THAT(session.take_log(),
                    testing::Contains(
                        testing::Field(&LogRecord::message, "Runtime error")))
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
  constexpr TextAccessor kAccessors[] = {
      GetFilename, GetFullName, GetDirectory, GetType,      GetCTime,
      GetATime,    GetMTime,    GetSize,      GetAttributes};
  for (TextAccessor accessor : kAccessors) {
    for (long n = 0;; ++n) {
      set_up();
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
