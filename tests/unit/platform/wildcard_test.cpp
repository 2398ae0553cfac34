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

INSTANTIATE_TEST_SUITE_P(
    PlainNames, Patterns,
    testing::Values(Case{"abc", "abc", true},    //
                    Case{"abc", "ABC", true},    //
                    Case{"ABC", "aBc", true},    //
                    Case{"abc", "abcd", false},  //
                    Case{"abc", "ab", false},    //
                    Case{"abc.", "abc", true},   //
                    Case{"abc..", "abc", true},  //
                    Case{"abc.", "abc.d", false}, Case{"@", "`", false},
                    Case{"[", "{", false}, Case{"", "a", false},
                    Case{"", "", false}, Case{".", "a", false}));

INSTANTIATE_TEST_SUITE_P(
    Runs, Patterns,
    testing::Values(Case{"*", "a", true}, Case{"*", "a.b.c", true},
                    Case{"*", "", true}, Case{"**", "a.b", true},
                    Case{"*.*", "a", true}, Case{"*.*", "a.b", true},
                    Case{"*.*", "a.b.c", true}, Case{"*.*", "a.", true},
                    Case{"*.", "a", true}, Case{"*.", "a.b", false},
                    Case{"*..", "a.b", false}, Case{"a*.", "abc", true},
                    Case{"a*.", "ab.c", false}, Case{"*.htm", "x.htm", true},
                    Case{"*.htm", "x.HTM", true},
                    Case{"*.htm", "x.html", false}, Case{"*.htm", "htm", false},
                    Case{"*.htm", ".htm", true}, Case{"*.htm", "a.b.htm", true},
                    Case{"*.b.htm", "a.b.htm", true},
                    Case{"*.ht*", "x.html", true}, Case{"*.ht*", "x.ht", true},
                    Case{"*.ht*", "a.ht.txt", true},
                    Case{"*.ht*", "a.txt", false}, Case{"a*b*c", "aXbYc", true},
                    Case{"a*b*c", "abcbc", true}, Case{"a*b*c", "acb", false},
                    Case{"*a", "aaab", false}, Case{"*ab", "aaab", true},
                    Case{"a*a", "a", false}));

INSTANTIATE_TEST_SUITE_P(
    SingleCharacters, Patterns,
    testing::Values(Case{"a?c", "abc", true}, Case{"a?c", "ac", false},
                    Case{"a?c", "a.c", false}, Case{"a??", "a", true},
                    Case{"a??", "abc", true}, Case{"a??", "abcd", false},
                    Case{"??.txt", "a.txt", true},
                    Case{"??.txt", "abc.txt", false},
                    Case{"?", "\xC3\xA4", true},  // a with two dots
                    Case{"a?c",
                         "a\xC3\xA4"
                         "c",
                         true},
                    Case{"a?c",
                         "a\xE2\x82\xAC"
                         "c",
                         true},  // euro sign
                    Case{"?c",
                         "\xC3\xA4\xC3\xA4"
                         "c",
                         false},
                    Case{"??c",
                         "\xC3\xA4"
                         "c",
                         false},
                    Case{"a?c",
                         "a\xE4"
                         "c",
                         true},  // Latin-1
                    Case{"?", "\xA4", true}));

INSTANTIATE_TEST_SUITE_P(
    PointsBeforeWildcards, Patterns,
    testing::Values(Case{"abc.*", "abc", true}, Case{"abc.*", "abc.d", true},
                    Case{"abc.*", "abcd", false}, Case{"abc.?", "abc", true},
                    Case{"abc.?", "abc.d", true},
                    Case{"abc.?", "abc.de", false}, Case{"*.?", "a.bcd", false},
                    Case{"*.?", "a.b", true}, Case{"*.?", "abc", true},
                    Case{"*a*.?", "a.ba", true}));

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

// A matcher that goes back over its runs would not end within the test's time.
TEST(WildcardPattern, DoesNotGoBackOverManyRuns) {
  std::string pattern;
  for (int i = 0; i < 100; ++i) pattern += "a*";
  const std::string name(255, 'a');
  EXPECT_TRUE(WildcardPattern(pattern).matches(name));
  EXPECT_FALSE(WildcardPattern(pattern + "b").matches(name));
}

}  // namespace
}  // namespace zenfo::platform
