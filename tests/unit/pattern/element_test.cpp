#include "pattern/element.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/temporary_locale.h"

namespace zenfo {
namespace {

CharClass digits() {
  CharClass one("digits");
  one.add_include_range('0', '9');
  return one;
}

struct Spelling {
  const char* text;
  size_t p;
  size_t limit;
  bool matched;
  size_t taken;  // length of a match; bytes before q of a failure
  size_t resume;
};

void expect_match(Element& element, const Spelling& one,
                  bool case_flag = true) {
  std::string text = one.text;
  MatchScope scope{text.data(), text.size(), 0};
  element.reset(case_flag);
  EXPECT_EQ(element.match(scope, one.p, one.limit), one.matched) << text;
  EXPECT_EQ(element.next, one.p + one.taken) << text;
  EXPECT_EQ(element.resume, one.resume) << text;
  if (one.matched) {
    EXPECT_EQ(element.start, one.p) << text;
    EXPECT_EQ(element.length, one.taken) << text;
  }
}

TEST(LiteralElement, MatchesWhereItsTextIs) {
  LiteralElement literal("abc");
  expect_match(literal, {"xabc", 1, 4, true, 3, 0});
  expect_match(literal, {"xabc", 0, 4, false, 0, 0});
  expect_match(literal, {"xabc", 1, 3, false, 0, 0});
  expect_match(literal, {"xaBC", 1, 4, false, 0, 0});
  expect_match(literal, {"xaBC", 1, 4, true, 3, 0}, false);
}

TEST(LiteralElement, LocatesPastBlanksWhenAsked) {
  LiteralElement literal("ab");
  std::string text = "xa \tbab";
  MatchScope scope{text.data(), text.size(), 0};
  literal.reset(true);
  ASSERT_TRUE(literal.locate(scope, 0));
  EXPECT_EQ(literal.start, 5u);
  literal.ignore_blanks = true;
  ASSERT_TRUE(literal.locate(scope, 0));
  EXPECT_EQ(literal.start, 1u);
  EXPECT_EQ(literal.length, 4u);
}

TEST(ClassElement, TakesTheLongestRunWithinItsBounds) {
  struct {
    uint32_t minimum;
    uint32_t maximum;
    bool negated;
    Spelling expected;
  } cases[] = {
      {1, 0, false, {"123a", 0, 4, true, 3, 0}},
      {1, 0, false, {"123a", 0, 2, true, 2, 0}},
      {1, 0, false, {"a123", 0, 4, false, 0, 0}},
      {0, 0, false, {"a123", 0, 4, true, 0, 0}},
      {0, 0, false, {"a", 1, 1, true, 0, 0}},
      {1, 0, true, {"ab1", 0, 3, true, 2, 0}},
      // A run that is too short; q is where it stopped.
      {3, 3, false, {"12a4", 0, 4, false, 2, 0}},
      // Fewer bytes are left than the minimum; q is p.
      {3, 0, false, {"12", 0, 2, false, 0, 0}},
      {3, 0, false, {"123", 0, 2, false, 0, 0}},
      // Cut by the maximum: resume one byte later at the latest.
      {1, 2, false, {"123", 0, 3, true, 2, 1}},
      {1, 2, false, {"x123", 1, 4, true, 2, 1}},
      {1, 2, false, {"12a", 0, 3, true, 2, 0}},
      {1, 2, false, {"123", 0, 2, true, 2, 0}},
      {3, 2, false, {"123", 0, 3, true, 2, 1}},
      {3, 2, false, {"12a", 0, 3, false, 2, 0}},
      {UINT32_MAX, UINT32_MAX, false, {"123", 0, 3, false, 0, 0}},
      {1, UINT32_MAX, false, {"123", 0, 3, true, 3, 0}},
  };
  for (const auto& one : cases) {
    ClassElement element(digits(), one.minimum, one.maximum, one.negated);
    EXPECT_EQ(element.kind(), ElementKind::kClass);
    expect_match(element, one.expected);
    // The case flag does not apply to classes.
    expect_match(element, one.expected, false);
  }
}

TEST(CharListElement, FollowsTheCaseFlag) {
  CharListElement list("aB", 1, 0, false);
  expect_match(list, {"aBb", 0, 3, true, 2, 0});
  expect_match(list, {"AbC", 0, 3, true, 2, 0}, false);
  CharListElement others("aB", 1, 2, true);
  expect_match(others, {"xbAB", 0, 4, true, 2, 1});
  expect_match(others, {"xbAB", 0, 4, true, 1, 0}, false);
}

TEST(WildcardElement, MatchesEverywhereAndTakesNothing) {
  WildcardElement wildcard(digits(), 3, false);
  EXPECT_EQ(wildcard.kind(), ElementKind::kWildcard);
  EXPECT_EQ(wildcard.minimum, 3u);
  EXPECT_EQ(wildcard.maximum, 3u);
  expect_match(wildcard, {"ab", 1, 2, true, 0, 0});
  expect_match(wildcard, {"", 0, 0, true, 0, 0});
}

TEST(StringListElement, MatchesWhereTheEarliestHitBegins) {
  StringListElement list;
  EXPECT_TRUE(list.case_flag());
  list.alternatives.add("bc");
  list.alternatives.add("b");
  list.alternatives.add("BCD");
  expect_match(list, {"abcd", 1, 4, true, 1, 0});
  expect_match(list, {"abcd", 0, 4, false, 0, 0});
  expect_match(list, {"abcd", 1, 4, true, 3, 0}, false);
  expect_match(list, {"abcd", 1, 3, true, 1, 0}, false);
  expect_match(list, {"abcd", 1, 1, false, 0, 0});
}

TEST(StringListElement, NegatedTakesTheRunUpToTheEarliestHit) {
  StringListElement list;
  list.alternatives.add("foo");
  list.negated = true;
  expect_match(list, {"abfoo", 0, 5, true, 2, 0});
  expect_match(list, {"ab foo", 0, 6, true, 2, 0});
  expect_match(list, {"ab\x80z", 0, 4, true, 4, 0});
  expect_match(list, {"foo", 0, 3, false, 0, 0});
  expect_match(list, {" x", 0, 2, false, 0, 0});
  // The limit cuts the occurrence off.
  expect_match(list, {"abfoo", 0, 4, true, 4, 0});
}

TEST(Element, ResetZeroesTheWordsAndTakesTheCaseFlag) {
  LiteralElement literal("a");
  literal.start = literal.length = literal.next = literal.resume = 7;
  literal.reset(false);
  EXPECT_FALSE(literal.case_flag());
  EXPECT_EQ(literal.start + literal.length + literal.next + literal.resume, 0u);
}

TEST(Element, FoldsAsTheTablesDoThatAreInForceForTheRun) {
  CharListElement list("\xC4", 1, 0, false);
  LiteralElement literal("\xC4");
  {
    const test::LatinLocale locale;
    if (!locale.in_force()) GTEST_SKIP() << "no localedef or locale sources";
    expect_match(list, {"\xE4", 0, 1, true, 1, 0}, false);
    expect_match(literal, {"\xE4", 0, 1, true, 1, 0}, false);
  }
  expect_match(list, {"\xE4", 0, 1, false, 0, 0}, false);
  expect_match(list, {"\xC4", 0, 1, true, 1, 0}, false);
  const std::string text = "\xE4";
  literal.reset(false);
  EXPECT_FALSE(literal.locate({text.data(), text.size(), 0}, 0));
}

// An element that remembers gives the same results as one that remembers
// nothing.
TEST(Alternatives, RememberedHitsEqualFreshSearches) {
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    std::string text;
    for (int i = 0; i < 200; ++i) text += "abc"[random() % 3];
    MatchScope scope{text.data(), text.size(), 0};
    std::vector<std::string> texts;
    const bool many = random() % 2 == 0;
    const size_t longest = many ? 9 : 4;
    for (size_t n = random() % (many ? 40 : 4); n > 0; --n) {
      std::string one;
      for (size_t k = 1 + random() % longest; k > 0; --k) {
        one += "abc"[random() % 3];
      }
      texts.push_back(one);
    }
    auto make = [&] {
      Alternatives alternatives;
      for (const auto& one : texts) alternatives.add(one);
      return alternatives;
    };
    Alternatives remembering = make();
    remembering.prepare(true);
    remembering.forget();
    for (int ask = 0; ask < 60; ++ask) {
      // Mostly forward, sometimes back; with limits of all kinds.
      size_t p = static_cast<size_t>(ask) * 3 + random() % 20;
      if (random() % 8 == 0) p = random() % 200;
      size_t limit = p + random() % (201 - p);
      Alternatives fresh = make();
      fresh.prepare(true);
      auto expected = fresh.earliest(scope, p, limit);
      auto hit = remembering.earliest(scope, p, limit);
      ASSERT_EQ(hit.position, expected.position);
      ASSERT_EQ(hit.length, expected.length);
      // And a fresh search gives the same as a check of every position.
      size_t at = p;
      size_t length = 0;
      for (; at < limit && length == 0; ++at) {
        for (const auto& one : texts) {
          if (at + one.size() <= limit &&
              text.compare(at, one.size(), one) == 0) {
            length = one.size();
          }
        }
      }
      ASSERT_EQ(expected.position, length != 0 ? at - 1 : kNoPosition);
      ASSERT_EQ(expected.length, length);
    }
  }
}

}  // namespace
}  // namespace zenfo
