// Shell patterns, and which files they choose.
#include "shared/text/name_filter.h"

#include <gtest/gtest.h>

#include "shared/system/system.h"

namespace zenfo::host {
namespace {

using system::own_form;

TEST(MatchesGlob, KnowsStarsMarksAndSets) {
  struct Case {
    const char* pattern;
    const char* name;
    bool matches;
  };
  constexpr Case kCases[] = {
      {"", "", true},
      {"", "a", false},
      {"abc", "abc", true},
      {"abc", "abcd", false},
      {"abcd", "abc", false},
      {"*", "", true},
      {"*", ".x", true},
      {"*.c", "a.c", true},
      {"*.c", "a.c.c", true},
      {"*.c", "a.cc", false},
      {"a*b*c", "aXbXbXc", true},
      {"a*b*c", "aXcXb", false},
      {"*a", "", false},
      {"a**", "a", true},
      {"?", "a", true},
      {"?", "", false},
      {"a?c", "abc", true},
      {"[ab]x", "bx", true},
      {"[ab]x", "cx", false},
      {"[a-c]", "b", true},
      {"[a-c]", "d", false},
      {"[!a-c]", "d", true},
      {"[^a-c]", "b", false},
      {"[]a]", "]", true},
      {"[a-]", "-", true},
      {"[a", "[a", true},
      {"[a", "a", false},
      {"[!", "[!", true},
      {"[", "[", true},
      {"*[ab]*[cd]", "xaxbxd", true},
      // Characters of several bytes.
      {"gr?n", "gr\xC3\xBCn", true},
      {"??", "\xC3\xBC", false},
      {"*??", "\xC3\xBC", false},
      {"?", "\xF0\x9F\x98\x80", true},
      {"[\xC3\xA4\xC3\xBC]", "\xC3\xBC", true},
      {"[\xC3\xA4\xC3\xBC]", "\xC3\xB6", false},
      {"[\xC3\xA4-\xC3\xBC]", "\xC3\xB6", true},
      {"[!\xC3\xA4]", "\xC3\xBC", true},
      // Former bugs: many stars took forever.
      {"*a*a*a*a*a*a*a*a*a*a*b", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa",
       false},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(matches_glob(c.pattern, c.name), c.matches)
        << c.pattern << " on " << c.name;
  }
}

#ifdef _WIN32
TEST(MatchesGlob, IgnoresCaseAsFileNamesDo) {
  EXPECT_TRUE(matches_glob("*.C", "a.c"));
  EXPECT_TRUE(matches_glob("*\xC3\x9C", "\xC3\xBC"));
  EXPECT_TRUE(matches_glob("[A-C]", "b"));
}
#else
TEST(MatchesGlob, MindsCaseAsFileNamesDo) {
  EXPECT_FALSE(matches_glob("*.C", "a.c"));
  EXPECT_FALSE(matches_glob("[A-C]", "b"));
}

TEST(MatchesGlob, TakesWhatIsEscapedAsItIs) {
  EXPECT_TRUE(matches_glob("a\\*", "a*"));
  EXPECT_FALSE(matches_glob("a\\*", "ab"));
  EXPECT_TRUE(matches_glob("\\?", "?"));
  EXPECT_FALSE(matches_glob("\\?", "a"));
}

TEST(MatchesGlob, TakesBytesThatAreNoTextOneByOne) {
  EXPECT_TRUE(matches_glob("?", "\xC3"));
  EXPECT_TRUE(matches_glob("??", "\xC3x"));
  EXPECT_TRUE(matches_glob("??", "\xE2\x82"));
  EXPECT_TRUE(matches_glob("?\xFF*", "\xFF\xFF\xFF"));
  EXPECT_FALSE(matches_glob("\xC3", "\xC3\xBC"));
}
#endif

TEST(NameFilter, ChoosesByTheLastName) {
  NameFilter filter;
  EXPECT_TRUE(filter.empty());
  filter.includes = {"*.c", "*.h"};
  filter.excludes = {"x*"};
  EXPECT_TRUE(filter.takes(own_form("x/a.c"), false));
  EXPECT_TRUE(filter.takes("a.h", false));
  EXPECT_FALSE(filter.takes(own_form("x/a.d"), false));
  EXPECT_FALSE(filter.takes(own_form("a/x.c"), false));
  EXPECT_FALSE(filter.takes("x.c", true));
}

TEST(NameFilter, LooksAtFoldersOfFilesThatWereNotNamed) {
  NameFilter filter;
  filter.excluded_folders = {"b?"};
  EXPECT_TRUE(filter.takes(own_form("a/b/c"), false));
  EXPECT_FALSE(filter.takes(own_form("bx/b/c"), false));
  EXPECT_FALSE(filter.takes(own_form("a/bx/c"), false));
  EXPECT_TRUE(filter.takes(own_form("a/bx"), false));
  EXPECT_TRUE(filter.takes(own_form("a/bx/c"), true));
}

}  // namespace
}  // namespace zenfo::host
