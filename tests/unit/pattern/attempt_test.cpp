#include "pattern/attempt.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::spell_elements;
using pattern_test::TestContext;

struct Tried {
  bool found;
  size_t start;
  size_t length;
  size_t next;
};

Tried try_once(PatternContext& context, const std::string& text, size_t s) {
  for (const auto& element : context.pattern.elements) element->reset(true);
  Attempt attempt(context.pattern);
  attempt.enter(text.data(), text.size());
  bool found = attempt.try_at(s);
  return {found, found ? attempt.match_start() : 0,
          found ? attempt.match_length() : 0, attempt.next_start()};
}

struct NextCase {
  const char* pattern;
  const char* text;
  size_t s;
  bool found;
  size_t next;
};

void expect_next(const std::vector<NextCase>& cases) {
  for (const NextCase& one : cases) {
    TestContext context;
    context.compile(one.pattern);
    Tried tried = try_once(context, one.text, one.s);
    EXPECT_EQ(tried.found, one.found) << one.pattern << " in " << one.text;
    EXPECT_EQ(tried.next, one.next) << one.pattern << " in " << one.text;
  }
}

TEST(Attempt, SaysWhereToTryNext) {
  expect_next({
      // A literal that does not occur ends the area.
      {"x", "abc", 0, false, kNoPosition},
      // A gap element fails at c: c + 1 for the first element, else c.
      {"digitsx", "abx", 0, false, 1},
      {"alphadigitsx", "ab-x", 0, false, 2},
      // The previous element was cut: continues at its resume position.
      {"digits[2]alphax", "123x", 0, false, 1},
      // The gap ends short: continues at q of its last element.
      {"digitsx", "12-x", 0, false, 2},
      {"digits[2]x", "1234x", 0, false, 2},
      // But always after s.
      {"digits[0-]x", "-x", 0, false, 1},
      {"?x", "-x", 0, false, 1},
      // The tail fails at the end of the text.
      {"adigits", "a", 0, false, 2},
      {"digits[2]alpha", "123", 0, false, 1},
      {"adigits", "ab", 0, false, 1},
      {"digits", "a1", 0, false, 1},
      // A match continues after its last element, or one byte later when that
      // is empty.
      {"digits", "12a", 0, true, 2},
      {"adigits[0-]", "ab", 0, true, 2},
      {"a?", "ab", 0, true, 1},
      {"digits[0-]", "a", 0, false, 1},
  });
}

// q is the byte that ended a run too short for its element.
TEST(Attempt, AnElementThatFailsAtQSkipsQItself) {
  expect_next({
      {"digits[3]x", "12-45x", 0, false, 3},
      {"digits[3]", "12a3", 0, false, 3},
  });
}

TEST(Attempt, AdjacentLiteralsApartContinueAfterThePatternsFirstLiteral) {
  TestContext context;
  compile_search(context, {"digitsx", true}, {"y", false}, {});
  Tried tried = try_once(context, "1x-xy", 0);
  EXPECT_FALSE(tried.found);
  EXPECT_EQ(tried.next, 2u);
}

TEST(Attempt, ClearsTheMatchesWhenALiteralIsMissing) {
  TestContext context;
  context.compile("a?b");
  try_once(context, "xab", 0);
  EXPECT_EQ(context.pattern.elements[0]->length, 1u);
  try_once(context, "xa", 0);
  EXPECT_EQ(context.pattern.elements[0]->length, 0u);
  EXPECT_EQ(context.pattern.elements[0]->start, 0u);
}

TEST(Attempt, WithoutAMainElementStops) {
  TestContext context;
  compile_search(context, {"a"}, {"\\", true}, {});
  Tried tried = try_once(context, "a", 0);
  EXPECT_FALSE(tried.found);
  EXPECT_EQ(tried.next, kNoPosition);
}

// A chain of attempts that remember positions gives the same as attempts that
// remember nothing.
TEST(Attempt, RememberedPositionsChangeNothing) {
  constexpr const char* kPieces[] = {
      "a",     "b",           "ab",         "?",         "digits",
      "alpha", "digits[2]",   "alpha[-2]",  "!digits",   "digits[0-]",
      "'a|1'", "\"ab|a|1b\"", "!\"ab|11\"", "alpha[3-]", "\"1|aa\""};
  constexpr std::string_view kBytes = "aab1 2";
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    TestContext context;
    std::string main;
    std::string text;
    for (size_t n = 1 + random() % 5; n > 0; --n) {
      main += kPieces[random() % std::size(kPieces)];
    }
    for (size_t n = random() % 30; n > 0; --n) {
      text += kBytes[random() % kBytes.size()];
    }
    if (context.compile(main.c_str()) != 1) continue;
    TestContext fresh_context;
    fresh_context.compile(main.c_str());
    for (const auto& element : context.pattern.elements) element->reset(true);
    Attempt chain(context.pattern);
    chain.enter(text.data(), text.size());
    for (size_t s = 0; s < text.size();) {
      bool found = chain.try_at(s);
      Tried tried = try_once(fresh_context, text, s);
      ASSERT_EQ(found, tried.found) << main << " in " << text << " at " << s;
      ASSERT_EQ(chain.next_start(), tried.next) << main << " in " << text;
      if (found) {
        ASSERT_EQ(chain.match_start(), tried.start);
        ASSERT_EQ(chain.match_length(), tried.length);
      }
      ASSERT_GT(chain.next_start(), s);
      s = chain.next_start();
    }
  }
}

}  // namespace
}  // namespace zenfo
