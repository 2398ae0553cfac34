#include "search/search_ahead.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "pattern/compiler.h"
#include "support/temp_folder.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

using test::TempFolder;

// Patterns with every kind of element.
struct Example {
  const char* text;
  bool is_pattern;
};
constexpr Example kExamples[] = {
    {"ab", false},          {"a", false},
    {"'a|b'", true},        {"'a|b'[2-]x", true},
    {"'1|2'[1-3]x", true},  {"!'a|b'[0-]x", true},
    {"a??b", true},         {"!?'a'b", true},
    {R"("ab|cd")", true},   {R"("cd|22x"' '[1-]x)", true},
    {R"(!"ab|cd"x)", true},
};

std::string sample(size_t size) {
  std::string all;
  while (all.size() < size) all += "ab cd x1 22x Ab\tCDab\r\nabx 12x zx cd x ";
  all.resize(size);
  return all;
}

class SearchAheadTest : public testing::Test {
 protected:
  void SetUp() override { refresh_byte_tables(); }

  void compile(const Example& example) {
    ASSERT_EQ(compile_search(context, {},
                             {example.text, example.is_pattern, false}, {}),
              1);
  }
  // Counts in a file as the run would, on both threads.
  void expect_same_counts(const std::string& text, const FindOptions& options) {
    SearchAhead search(context.pattern, {.find = options}, 1);
    PreloadedFile file;
    platform::NearbyFolder nearby;
    file.path = folder.file("f", text);
    for (const size_t thread : {0, 1}) {
      ASSERT_TRUE(search.handle(file, nearby, thread));
      EXPECT_EQ(file.found, count(text, options));
      EXPECT_EQ(file.size, text.size());
      EXPECT_EQ(file.stamp.version.size, text.size());
    }
  }
  int32_t count(const std::string& text, const FindOptions& options) {
    FindOptions counting = options;
    counting.store = false;
    return find_all(context, text.data(), text.size(), counting);
  }

  TempFolder folder;
  PatternContext context;
};

TEST_F(SearchAheadTest, CountsWhatTheRunWouldCount) {
  const std::string text = sample(3000);
  const auto expect_all = [&] {
    for (const bool case_flag : {true, false}) {
      for (const bool whole_words : {true, false}) {
        expect_same_counts(
            text, {.case_flag = case_flag, .whole_words = whole_words});
      }
    }
  };
  for (const Example& example : kExamples) {
    SCOPED_TRACE(example.text);
    compile(example);
    EXPECT_GT(count(text, {}), 0);
    expect_all();
  }
  ASSERT_EQ(compile_tag(context, "ab", "x", true, false, false), 1);
  EXPECT_GT(count(text, {}), 0);
  expect_all();
}

TEST_F(SearchAheadTest, CountsInLargeFilesToo) {
  compile({"ab", false});
  const std::string text = sample(3000000);
  SearchAhead search(context.pattern, {}, 0);
  PreloadedFile file;
  platform::NearbyFolder nearby;
  file.path = folder.file("f", text);
  ASSERT_TRUE(search.handle(file, nearby, 0));
  EXPECT_EQ(file.found, count(text, {}));
}

TEST_F(SearchAheadTest, LeavesAllElseToTheRun) {
  compile({"ab", false});
  SearchAhead search(context.pattern, {.find = {}, .binary_check = true}, 0);
  platform::NearbyFolder nearby;
  const auto handled = [&](const std::string& path) {
    PreloadedFile file;
    file.path = path;
    return search.handle(file, nearby, 0);
  };
  EXPECT_TRUE(handled(folder.file("text", "ab")));
  EXPECT_FALSE(handled(folder.file("binary", "ab\x01")));
  EXPECT_FALSE(handled(folder.file("empty", "")));
  EXPECT_FALSE(handled(folder.path("missing")));
  EXPECT_FALSE(handled(folder.path()));
  EXPECT_FALSE(handled(""));
#ifndef _WIN32
  EXPECT_FALSE(handled("/dev/zero"));
#endif
  const CompiledPattern none;
  SearchAhead nothing(none, {}, 0);
  PreloadedFile file;
  file.path = folder.path("text");
  EXPECT_FALSE(nothing.handle(file, nearby, 0));
}

// Every thread has a pattern and a loader of its own.
TEST_F(SearchAheadTest, ThreadsCountAtTheSameTime) {
  compile({"ab", false});
  const std::string text = sample(100000);
  const int32_t expected = count(text, {});
  const std::string path = folder.file("f", text);
  constexpr size_t kThreads = 4;
  SearchAhead search(context.pattern, {}, kThreads);
  std::vector<int> right(kThreads + 1);
  std::vector<std::thread> threads;
  for (size_t i = 0; i <= kThreads; ++i) {
    threads.emplace_back([&, i] {
      platform::NearbyFolder nearby;
      PreloadedFile file;
      file.path = path;
      for (int k = 0; k < 50; ++k) {
        right[i] += search.handle(file, nearby, i) && file.found == expected;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const int count : right) EXPECT_EQ(count, 50);
}

}  // namespace
}  // namespace zenfo
