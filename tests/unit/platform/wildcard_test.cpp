// Filename patterns: every rule of the pattern, and patterns made to be slow.
#include "platform/wildcard.h"

#include <gtest/gtest.h>

#include <string>

namespace zenfo::platform {
namespace {

struct Case {
  const char* pattern;
  const char* name;
  bool matches;
};

class Patterns : public testing::TestWithParam<Case> {};

TEST_P(Patterns, MatchesAsStated) {
  const Case& c = GetParam();
  EXPECT_EQ(c.matches, WildcardPattern(c.pattern).matches(c.name))
      << "pattern \"" << c.pattern << "\" name \"" << c.name << '"';
}

// clang-format off
constexpr Case kPlainNames[] = {
  {"abc", "abc", true},
  {"abc", "ABC", true},
  {"ABC", "aBc", true},
  {"abc", "abcd", false},
  {"abc", "ab", false},
  {"abc.", "abc", true},
  {"abc..", "abc", true},
  {"abc.", "abc.d", false},
  {"@", "`", false},
  {"[", "{", false},
  {"", "a", false},
  {"", "", false},
  {".", "a", false},
};
INSTANTIATE_TEST_SUITE_P(PlainNames, Patterns, testing::ValuesIn(kPlainNames));

constexpr Case kRuns[] = {
  {"*", "a", true},
  {"*", "a.b.c", true},
  {"*", "", true},
  {"**", "a.b", true},
  {"*.*", "a", true},
  {"*.*", "a.b", true},
  {"*.*", "a.b.c", true},
  {"*.*", "a.", true},
  {"*.", "a", true},
  {"*.", "a.b", false},
  {"*..", "a.b", false},
  {"a*.", "abc", true},
  {"a*.", "ab.c", false},
  {"*.htm", "x.htm", true},
  {"*.htm", "x.HTM", true},
  {"*.htm", "x.html", false},
  {"*.htm", "htm", false},
  {"*.htm", ".htm", true},
  {"*.htm", "a.b.htm", true},
  {"*.b.htm", "a.b.htm", true},
  {"*.ht*", "x.html", true},
  {"*.ht*", "x.ht", true},
  {"*.ht*", "a.ht.txt", true},
  {"*.ht*", "a.txt", false},
  {"a*b*c", "aXbYc", true},
  {"a*b*c", "abcbc", true},
  {"a*b*c", "acb", false},
  {"*a", "aaab", false},
  {"*ab", "aaab", true},
  {"a*a", "a", false},
};
INSTANTIATE_TEST_SUITE_P(Runs, Patterns, testing::ValuesIn(kRuns));

constexpr Case kSingleCharacters[] = {
  {"a?c", "abc", true},
  {"a?c", "ac", false},
  {"a?c", "a.c", false},
  {"a??", "a", true},
  {"a??", "abc", true},
  {"a??", "abcd", false},
  {"??.txt", "a.txt", true},
  {"??.txt", "abc.txt", false},
  {"?", "\u00E4", true},  // a with two dots
  {"a?c", "a\u00E4c", true},
  {"a?c", "a\u20ACc", true},  // euro sign
  {"?c", "\u00E4\u00E4c", false},
  {"??c", "\u00E4c", false},
  {"a?c", "a\344c", true},  // Latin-1
  {"?", "\244", true},
};
INSTANTIATE_TEST_SUITE_P(SingleCharacters, Patterns,
                         testing::ValuesIn(kSingleCharacters));

constexpr Case kPointsBeforeWildcards[] = {
  {"abc.*", "abc", true},
  {"abc.*", "abc.d", true},
  {"abc.*", "abcd", false},
  {"abc.?", "abc", true},
  {"abc.?", "abc.d", true},
  {"abc.?", "abc.de", false},
  {"*.?", "a.bcd", false},
  {"*.?", "a.b", true},
  {"*.?", "abc", true},
  {"*a*.?", "a.ba", true},
};
INSTANTIATE_TEST_SUITE_P(PointsBeforeWildcards, Patterns,
                         testing::ValuesIn(kPointsBeforeWildcards));
// clang-format on

TEST(WildcardPattern, TakesEveryByteAsALetterOfItsOwn) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string name = {'x', static_cast<char>(byte)};
    const std::string other = {'x', static_cast<char>(byte == 255 ? 1 : 255)};
    if (byte == '*' || byte == '?' || byte == '.') continue;
    EXPECT_TRUE(WildcardPattern(name).matches(name)) << byte;
    EXPECT_TRUE(WildcardPattern("*" + name).matches("y" + name)) << byte;
    EXPECT_FALSE(WildcardPattern(name).matches(other)) << byte;
  }
}

// A matcher that backtracks over its runs would exceed the test's time limit.
TEST(WildcardPattern, DoesNotGoBackOverManyRuns) {
  std::string pattern;
  for (int i = 0; i < 100; ++i) pattern += "a*";
  const std::string name(255, 'a');
  EXPECT_TRUE(WildcardPattern(pattern).matches(name));
  EXPECT_FALSE(WildcardPattern(pattern + "b").matches(name));
}

}  // namespace
}  // namespace zenfo::platform
