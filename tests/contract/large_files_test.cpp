// Searches of large files that nobody watches: the library reads them while it
// searches them. The results are those of a run that loads each file first, and
// a file that cannot be read to its end is rejected as it would be there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#ifndef _WIN32
#include <dlfcn.h>
#include <signal.h>

#include "support/pages_in_memory.h"
#endif

#include "support/environment.h"
#include "support/search_fixture.h"

namespace zenfo::test {
namespace {

constexpr size_t kLarge = size_t{2} << 20;

// Anything but an a, as often as it follows.
constexpr char kNoLetterA[] = "!'a'";

class LargeFilesTest : public SearchTest {
 protected:
  struct Results {
    int32_t answer;
    Texts names;  // of lists 4, 6 and 7
    std::vector<int> counts;
    std::vector<ErrorRecord> errors;
    bool operator==(const Results&) const = default;
  };

  Results run(const RunArguments& arguments) {
    Results results{find_block(arguments), {}, {}, errors()};
    for (const int32_t list :
         {ZENFO_LIST_RESULT, ZENFO_LIST_NO_MATCH, ZENFO_LIST_ERROR}) {
      results.names.push_back("list " + std::to_string(list));
      for (const std::string& name : texts(GetFullName, list)) {
        results.names.push_back(name);
      }
      for (const int count : flags(list)) results.counts.push_back(count);
    }
    return results;
  }
  // With a host that listens files are loaded first.
  Results run_watched(const RunArguments& arguments) {
    const HostRecorder host;
    return run(arguments);
  }
};

TEST_F(LargeFilesTest, AreCountedAsWhenTheyAreLoadedFirst) {
  for (const size_t size :
       {kLarge / 2 - 1, kLarge / 2, kLarge, kLarge + 1, 3 * kLarge - 4096}) {
    std::string bytes(size, 'a');
    for (size_t at = 0; at < size; at += 99991) bytes[at] = 'b';
    bytes.back() = 'c';
    add("text " + std::to_string(size), bytes);
    bytes[size / 2] = '\x01';
    add("control byte " + std::to_string(size), bytes);
  }
  add("small", "abc");
  add("empty", "");
  add_missing("missing");
  for (const auto& [text, is_pattern] :
       {std::pair{"b", 0}, std::pair{"ab", 0}, std::pair{"none", 0},
        std::pair{kNoLetterA, 1}, std::pair{"\"ab|c\"", 1}}) {
    ASSERT_TRUE(pattern(text, is_pattern));
    for (const int32_t binary : {0, 1}) {
      RunArguments arguments;
      arguments.binary = binary;
      EXPECT_EQ(run(arguments), run_watched(arguments)) << text;
    }
  }
}

#ifndef _WIN32

// The file that loses its end when the library has mapped it and read nothing
// of it yet: when it installs its handler for bytes that get lost.
std::string file_to_cut;
uint64_t size_left = 0;

void cut_file() {
  if (!file_to_cut.empty()) {
    std::filesystem::resize_file(std::exchange(file_to_cut, {}), size_left);
  }
}

class CutFilesTest : public LargeFilesTest {
 protected:
  void SetUp() override {
    LargeFilesTest::SetUp();
    ASSERT_TRUE(pattern(kNoLetterA, 1));
  }
  void TearDown() override {
    EXPECT_EQ(file_to_cut, "") << "has not been cut";
    LargeFilesTest::TearDown();
  }
  void cut(const std::string& path, uint64_t left) {
    file_to_cut = path;
    size_left = left;
  }
};

// Some pages are lost; all after the block that is read first; only a part of
// the last page, for which the system gives zeros without a word.
constexpr uint64_t kLeft[] = {kLarge / 2 + 4096, 50000, kLarge - 1};

TEST_F(CutFilesTest, ZerosAreNeverTakenForText) {
  const EnvironmentVariable variable("ZENFO_THREADS", "1");
  const std::string first = add("first", "aXa");
  const std::string path = folder.path("cut");
  add("cut", "x");
  const std::string last = add("last", "aXaX");
  for (const uint64_t left : kLeft) {
    for (const int32_t binary : {0, 1}) {
      write_file(path, std::string(kLarge, 'a'));
      cut(path, left);
      RunArguments arguments;
      arguments.binary = binary;
      const Results results = run(arguments);
      EXPECT_EQ(results.answer, 3) << left;
      EXPECT_EQ(results.names,
                (Texts{"list 4", first, last, "list 6", "list 7", path}));
      ASSERT_EQ(results.errors.size(), 1u);
      EXPECT_EQ(results.errors[0].message, path + " could not be opened");
      EXPECT_EQ(results.errors[0].context, "loading file");
      EXPECT_EQ(results.errors[0].routine, "FindBlock");
    }
  }
}

TEST_F(CutFilesTest, WhatWasFoundBeforeTheLossIsNotCounted) {
  const EnvironmentVariable variable("ZENFO_THREADS", "1");
  const std::string path = add("cut", std::string(kLarge, 'X'));
  cut(path, kLarge / 2);
  const Results results = run({});
  EXPECT_EQ(results.answer, 0);
  EXPECT_EQ(results.names, (Texts{"list 4", "list 6", "list 7", path}));
  const Results again = run({});
  EXPECT_EQ(again.answer, 1) << "the file as it is now";
  EXPECT_EQ(again.errors.size(), 0u);
}

// A host that only answers questions sees a file when its search has ended.
TEST_F(CutFilesTest, NobodyIsAskedAboutWhatWasLost) {
  const std::string path = add("cut", std::string(kLarge, 'X'));
  add("whole", std::string(kLarge, 'X'));
  cut(path, kLarge / 2);
  static std::vector<std::string> asked;
  asked.clear();
  const HostRecorder host;  // removes the callbacks
  CallbackTable table{};
  table.option_question = [](const ZenfoWideChar* text, int32_t)
                              ZENFO_CALL -> int32_t {
    asked.push_back(HostRecorder::narrow(text));
    return 1;
  };
  SetCallBacks(&table);
  RunArguments arguments;
  arguments.ask = 1;
  const Results results = run(arguments);
  EXPECT_EQ(results.answer, 1);
  ASSERT_EQ(results.errors.size(), 1u);
  EXPECT_EQ(results.errors[0].message, path + " could not be opened");
  EXPECT_THAT(asked, testing::ElementsAre(testing::EndsWith("whole")));
}

TEST_F(CutFilesTest, WhatWasFoundBeforeTheLossIsForgotten) {
  const std::string path = add("cut", std::string(kLarge, 'X'));
  cut(path, kLarge / 2);
  const std::string report = work().path("report");
  RunArguments arguments;
  arguments.report = report;
  EXPECT_EQ(run(arguments).answer, 0);
  expect_no_matches();
}

// What a thread cannot read to its end, the run loads.
TEST_F(CutFilesTest, ThreadsLeaveThemToTheRun) {
  const std::string path = folder.path("f5");
  for (int i = 0; i < 40; ++i) add("f" + std::to_string(i), "aXa");
  for (const char* threads : {"2", "8"}) {
    const EnvironmentVariable variable("ZENFO_THREADS", threads);
    for (const uint64_t left : kLeft) {
      write_file(path, std::string(kLarge, 'a'));
      cut(path, left);
      const Results results = run({});
      EXPECT_EQ(results.answer, 39) << left;
      EXPECT_THAT(results.names, testing::ElementsAreArray([&] {
                    Texts names{"list 4"};
                    for (int i = 0; i < 40; ++i) {
                      if (i != 5)
                        names.push_back(folder.path("f" + std::to_string(i)));
                    }
                    names.insert(names.end(), {"list 6", path, "list 7"});
                    return names;
                  }()));
      EXPECT_EQ(results.errors.size(), 0u);
    }
  }
}

TEST_F(LargeFilesTest, AreNotReadFurtherThanTheSearchGoes) {
  constexpr size_t kSize = size_t{128} << 20;
  const std::string path = add("f", "a needle");
  std::filesystem::resize_file(path, kSize);
  const std::string classes =
      work().file("classes", "name=#any\r\ninc_ranges=0-255\r\n");
  ASSERT_EQ(set_operators(classes.c_str()), 1);
  ASSERT_EQ(SetPattern("", "needle", "#any[0-]", 0, 0, 1, 0, 0, 0), 1);
  EXPECT_EQ(run({}).answer, 1);
  EXPECT_LT(percent_in_memory(path, kSize), 25);
  ASSERT_TRUE(pattern("needle"));
  EXPECT_EQ(run({}).answer, 1);
  EXPECT_GT(percent_in_memory(path, kSize), 75);
}

#endif

}  // namespace
}  // namespace zenfo::test

#ifndef _WIN32
// The library's calls come here first.
extern "C" __attribute__((visibility("default"))) int sigaction(
    int number, const struct sigaction* action,
    struct sigaction* before) noexcept {
  static const auto system =
      reinterpret_cast<decltype(&sigaction)>(dlsym(RTLD_NEXT, "sigaction"));
  if (number == SIGBUS && action != nullptr &&
      (action->sa_flags & SA_SIGINFO) != 0) {
    zenfo::test::cut_file();
  }
  return system(number, action, before);
}
#endif
