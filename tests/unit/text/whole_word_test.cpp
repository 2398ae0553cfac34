#include "text/whole_word.h"

#include <gtest/gtest.h>

#include <string_view>

#include "support/fenced_text.h"
#include "support/temporary_locale.h"

namespace zenfo {
namespace {

using namespace std::string_view_literals;

struct Span {
  std::string_view text;
  size_t start;
  size_t end;  // index of the last byte
  int32_t answer;
};

TEST(IsWholeWord, LooksAtTheBytesOnBothSides) {
  const Span spans[] = {
      {"concat", 3, 5, 0},    {" cat.", 1, 3, 1},       {"cat", 0, 2, 1},
      {"cats", 0, 2, 0},      {"cat s", 0, 2, 1},       {"1cat", 1, 3, 0},
      {"cat9", 0, 2, 0},      {"Xcat", 1, 3, 0},        {"_cat_", 1, 3, 1},
      {"\0cat\0"sv, 1, 3, 1}, {"\344cat\344", 1, 3, 1}, {"a b", 1, 1, 0},
      {". .", 1, 1, 1},       {"xcat ", 1, 3, 0},       {" catx", 1, 3, 0},
  };
  for (const Span& row : spans) {
    EXPECT_EQ(
        is_whole_word(row.text.data(), row.start, row.end, row.text.size()),
        row.answer)
        << row.text;
  }
}

TEST(IsWholeWord, RefusesASpanBeyondTheText) {
  EXPECT_EQ(is_whole_word("cat", 0, 3, 3), -1);
  EXPECT_EQ(is_whole_word("cat", 0, SIZE_MAX, 3), -1);
  EXPECT_EQ(is_whole_word("cat", 4, 2, 3), -1);
  EXPECT_EQ(is_whole_word("cat", SIZE_MAX, 2, 3), -1);
  EXPECT_EQ(is_whole_word("", 0, 0, 0), -1);
  EXPECT_EQ(is_whole_word(nullptr, 0, 0, 0), -1);
}

TEST(IsWholeWord, ReadsNoByteOutsideTheText) {
  test::FencedMemory memory(16);
  EXPECT_EQ(is_whole_word(memory.against_end("cat").data(), 0, 2, 3), 1);
  EXPECT_EQ(is_whole_word(memory.against_start("cat").data(), 0, 2, 3), 1);
}

TEST(IsWholeWord, TakesLettersFromTheLocale) {
  const test::LatinLocale locale;
  if (!locale.in_force()) GTEST_SKIP() << "no localedef or locale sources";
  EXPECT_EQ(is_whole_word("\xE4"
                          "cat",
                          1, 3, 4),
            0);
}

}  // namespace
}  // namespace zenfo
