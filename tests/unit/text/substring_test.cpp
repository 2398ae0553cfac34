#include "text/substring.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "model/naive_substring.h"
#include "support/fenced_text.h"

namespace zenfo {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;

constexpr size_t kNone = SIZE_MAX;

struct Case {
  std::string_view haystack;
  std::string_view needle;
  bool case_sensitive;
  bool skip_blanks;
  size_t offset;
  size_t length;
};

void expect_found(const Case& row) {
  const char* const end = row.haystack.data() + row.haystack.size();
  size_t length = 99;
  const char* const found =
      find_substring(row.haystack.data(), row.needle.data(), end,
                     row.needle.data() + row.needle.size(), row.case_sensitive,
                     row.skip_blanks, &length);
  const char* const expected =
      row.offset == kNone ? nullptr : row.haystack.data() + row.offset;
  EXPECT_EQ(found, expected) << row.needle << " in " << row.haystack;
  EXPECT_EQ(length, row.length) << row.needle << " in " << row.haystack;
}

TEST(FindSubstring, FindsTheFirstOccurrence) {
  const Case cases[] = {
      {"abcabc", "bc", true, false, 1, 2},
      {"abc", "abc", true, false, 0, 3},
      {"aab", "ab", true, false, 1, 2},
      {"aaab", "aab", true, false, 1, 3},
      {"abc", "ac", true, false, kNone, 0},
      {"ab", "abc", true, false, kNone, 0},
      {"xabc", "ABC", true, false, kNone, 0},
      {"xabc", "ABC", false, false, 1, 3},
      {"xABC", "aBc", false, false, 1, 3},
      {"a@b", "A`B", false, false, kNone, 0},
      {"x[y", "X{Y", false, false, kNone, 0},
      {"\xC4", "\xE4", false, false, kNone, 0},
      {"a\0b\0c"sv, "b\0c"sv, true, false, 2, 3},
      {"\xFE\xFF\xFF", "\xFF\xFF", true, false, 1, 2},
      {"a b", "ab", true, false, kNone, 0},
  };
  for (const Case& row : cases) expect_found(row);
}

TEST(FindSubstring, FindsNothingWithAnEmptyText) {
  for (const bool skip_blanks : {false, true}) {
    expect_found({"", "a", true, skip_blanks, kNone, 0});
    expect_found({"a", "", true, skip_blanks, kNone, 0});
    expect_found({"", "", false, skip_blanks, kNone, 0});
  }
  const char* const text = "abc";
  EXPECT_EQ(find_substring(nullptr, text, nullptr, text + 1, true, false),
            nullptr);
  EXPECT_EQ(find_substring(text, nullptr, text + 1, nullptr, true, false),
            nullptr);
  EXPECT_EQ(find_substring(text + 2, text, text, text + 1, true, false),
            nullptr);
}

TEST(FindSubstring, AnswersWithoutALengthToo) {
  const std::string_view text = "xab";
  const std::string_view needle = "ab";
  EXPECT_EQ(find_substring(text.data(), needle.data(), text.data() + 3,
                           needle.data() + 2, true, false),
            text.data() + 1);
}

TEST(FindSubstring, SkipsBlanksInBothTexts) {
  const Case cases[] = {
      {"a b", "ab", true, true, 0, 3},
      {"ab", "a b", true, true, 0, 2},
      {"x a \t\r\n b y", "a b", true, true, 2, 7},
      {" a", "a", true, true, 1, 1},
      {"a", " a", true, true, 0, 1},
      {"a b a c", "ac", true, true, 4, 3},
      {"aab", "ab", true, true, 1, 2},
      {"A B", "ab", false, true, 0, 3},
      {"A B", "ab", true, true, kNone, 0},
      {"ac", "ab", true, true, kNone, 0},
  };
  for (const Case& row : cases) expect_found(row);
}

// Intended: bytes from 0x80 are blanks, as negative signed values.
TEST(FindSubstring, SkipsHighBytesAsBlanks) {
  const Case cases[] = {
      {"a\200\377b", "ab", true, true, 0, 4},
      {"ab", "a\344b", true, true, 0, 2},
      {"a\0b"sv, "ab", true, true, 0, 3},
      {"a\177b", "ab", true, true, kNone, 0},
      {"a!b", "ab", true, true, kNone, 0},
      {"\xE4\xE4", "\xE4", true, true, kNone, 0},
  };
  for (const Case& row : cases) expect_found(row);
}

// Intended: blanks are skipped before the needle's end is noticed.
TEST(FindSubstring, NeedleThatEndsInBlanksNeedsAByteAfterTheMatch) {
  const Case cases[] = {
      {"ab", "ab ", true, true, kNone, 0},
      {"ab  ", "ab ", true, true, kNone, 0},
      {"ab  c", "ab ", true, true, 0, 4},
      {"abc", "ab ", true, true, 0, 2},
      {"a", "  ", true, true, kNone, 0},
      {"ab  c", "ab", true, true, 0, 2},
  };
  for (const Case& row : cases) expect_found(row);
}

TEST(FindSubstring, AgreesWithTheModel) {
  std::mt19937 random(7);
  const std::string_view alphabet = "aAb \x80\0"sv;
  const auto text_of = [&](size_t max_length) {
    std::string text(random() % (max_length + 1), 0);
    for (char& byte : text) byte = alphabet[random() % alphabet.size()];
    return text;
  };
  test::FencedMemory memory(64), needle_memory(16);
  for (int round = 0; round < 40'000; ++round) {
    const std::string text = text_of(40), needle = text_of(5);
    const std::string_view haystack = memory.against_end(text);
    const std::string_view sought = needle_memory.against_end(needle);
    const bool case_sensitive = random() % 2, skip_blanks = random() % 2;
    const model::Found expected = model::find_substring(
        haystack.data(), sought.data(), haystack.data() + haystack.size(),
        sought.data() + sought.size(), case_sensitive, skip_blanks);
    size_t length = 99;
    const char* const found = find_substring(
        haystack.data(), sought.data(), haystack.data() + haystack.size(),
        sought.data() + sought.size(), case_sensitive, skip_blanks, &length);
    ASSERT_EQ(found, expected.start) << '"' << needle << "\" in " << text;
    ASSERT_EQ(length, expected.length) << '"' << needle << "\" in " << text;
  }
}

TEST(SubstringSearcher, FindsNothingWhenDefaultConstructed) {
  const std::string_view text = "abc";
  const SubstringSearcher searcher;
  EXPECT_EQ(searcher.find(text.data(), text.data() + 3), nullptr);
  EXPECT_EQ(searcher.length(), 0u);
}

TEST(SubstringSearcher, FindsNothingForAnEmptyNeedleOrRange) {
  const std::string_view text = "abc";
  EXPECT_EQ(SubstringSearcher("", true).find(text.data(), text.data() + 3),
            nullptr);
  const SubstringSearcher searcher("a", true);
  EXPECT_EQ(searcher.find(text.data(), text.data()), nullptr);
  EXPECT_EQ(searcher.find(text.data() + 2, text.data()), nullptr);
  EXPECT_EQ(searcher.find(nullptr, nullptr), nullptr);
}

TEST(SubstringSearcher, FindsOnlyWhatLiesWhollyInTheRange) {
  const std::string_view text = "xxabcxx";
  const SubstringSearcher searcher("abc", true);
  EXPECT_EQ(searcher.find(text.data(), text.data() + 5), text.data() + 2);
  EXPECT_EQ(searcher.find(text.data(), text.data() + 4), nullptr);
  EXPECT_EQ(searcher.find(text.data() + 2, text.data() + 5), text.data() + 2);
  EXPECT_EQ(searcher.find(text.data() + 3, text.data() + 7), nullptr);
  EXPECT_EQ(searcher.length(), 3u);
}

// Offsets of all that find_many finds, `capacity` at a time.
std::vector<size_t> found_many(std::string_view text, std::string_view needle,
                               size_t step, size_t capacity = 256) {
  std::vector<size_t> offsets;
  std::vector<const char*> found(capacity);
  const SubstringSearcher searcher(needle, true);
  const char* from = text.data();
  while (from < text.data() + text.size()) {
    const size_t count = searcher.find_many(from, text.data() + text.size(),
                                            step, found.data(), capacity);
    for (size_t i = 0; i < count; ++i) {
      offsets.push_back(static_cast<size_t>(found[i] - text.data()));
    }
  }
  return offsets;
}

TEST(SubstringSearcher, FindsOccurrencesInStepsOfTheCallersChoice) {
  EXPECT_THAT(found_many("aaaaa", "aa", 2), ElementsAre(0, 2));
  EXPECT_THAT(found_many("aaaaa", "aa", 1), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(found_many("aaaaa", "aa", 100), ElementsAre(0));
  EXPECT_THAT(found_many("aaaaa", "b", 1), ElementsAre());
}

TEST(SubstringSearcher, FindsMoreOccurrencesThanThereIsRoomFor) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "ab" + std::string(i % 3, ' ');
  EXPECT_EQ(found_many(text, "ab", 2), model::find_all(text, "ab", true, 2));
  EXPECT_EQ(found_many(std::string(4096, 'a'), "a", 1).size(), 4096u);
}

TEST(SubstringSearcher, SaysWhereToContinue) {
  const std::string_view text = "a.a.a";
  const char* from = text.data();
  const char* found[2];
  const SubstringSearcher searcher("a", true);
  ASSERT_EQ(searcher.find_many(from, text.data() + 5, 1, found, 2), 2u);
  EXPECT_EQ(found[0], text.data());
  EXPECT_EQ(found[1], text.data() + 2);
  EXPECT_EQ(from, text.data() + 3);
  ASSERT_EQ(searcher.find_many(from, text.data() + 5, 1, found, 2), 1u);
  EXPECT_EQ(found[0], text.data() + 4);
  EXPECT_EQ(from, text.data() + 5);
  EXPECT_EQ(searcher.find_many(from, text.data() + 5, 1, found, 2), 0u);
  EXPECT_EQ(from, text.data() + 5);
}

}  // namespace
}  // namespace zenfo
