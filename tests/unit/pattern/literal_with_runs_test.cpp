#include "pattern/literal_with_runs.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::spell_elements;
using pattern_test::spell_matches;
using pattern_test::TestContext;

bool fits(TestContext& context) {
  return LiteralWithRuns::of(context.pattern).has_value();
}

TEST(LiteralWithRuns, AreOneLiteralAndRunsThatAnAttemptFitsOneWay) {
  const char* const fitting[] = {"a",
                                 "adigits",
                                 "digits-digits",
                                 "!'a'-'b|c'[2-3]digits",
                                 "digits[0-]a",
                                 "adigits[2]alpha[0-]!digits"};
  for (const char* pattern : fitting) {
    TestContext context;
    context.compile(pattern);
    EXPECT_TRUE(fits(context)) << pattern;
  }
  const char* const others[] = {
      "digits", "digits[2]-", "?a",       "alphadigitsa", "adigitsb",
      "a?b",    "\"a|b\"c",   "a\"b|c\"", "'a'[1-2]b",    "digits-?digits"};
  for (const char* pattern : others) {
    TestContext context;
    context.compile(pattern);
    EXPECT_FALSE(fits(context)) << pattern;
  }
}

TEST(LiteralWithRuns, AreNotWithoutAMainElementNorWhereBlanksAreSkipped) {
  TestContext context;
  compile_search(context, {"a"}, {"\\", true}, {});
  EXPECT_FALSE(fits(context));
  context.compile("digits-");
  static_cast<LiteralElement&>(*context.pattern.elements[1]).ignore_blanks =
      true;
  EXPECT_FALSE(fits(context));
}

// The matches of the chain of attempts that begins at each start, one after the
// other, as "(offset,length)next".
std::string chain(TestContext& context, const std::string& text) {
  for (const auto& element : context.pattern.elements) element->reset(true);
  auto shape = LiteralWithRuns::of(context.pattern);
  shape->enter(text.data(), text.size());
  std::string out;
  for (size_t s = 0; shape->find_from(s); s = shape->next_start()) {
    out += "(" + std::to_string(shape->match_start()) + "," +
           std::to_string(shape->match_length()) + ")" +
           std::to_string(shape->next_start());
  }
  return out;
}

TEST(LiteralWithRuns, SayWhereTheNextChainBegins) {
  struct {
    const char* pattern;
    const char* text;
    const char* found;
  } cases[] = {
      {"digits-digits", "1-22-3-44 5-x6-7", "(0,4)4(5,4)9(13,3)16"},
      {"digits-digits", "-1 1- --", ""},
      // What a match has taken is not before the next literal.
      {"alphaxalpha", "axbxc axb-xb", "(0,5)5(6,3)9"},
      // A run cut by its maximum continues after the cut.
      {"adigits[1-2]", "a123a4", "(0,3)3(4,2)6"},
      // Intended: a last element of length 0 skips a byte.
      {"bdigits[0-]", "bb1 b22", "(0,1)2(4,3)7"},
      // A cut run before the one that fails names the next start.
      {"adigits[1]alpha", "a12a3b", "(3,3)6"},
      // What fails at the end of the area ends the chain.
      {"adigits[3-]", "a1 a12", ""},
      {"digits[3-]-", "12-123-", "(3,4)7"},
      // An overlapping occurrence counts when the first has too short a run.
      {"alpha[2-]aa", "xaaa", ""},
      {"digits[0-]aa", "1aaa", "(0,3)3"},
  };
  for (const auto& one : cases) {
    TestContext context;
    ASSERT_EQ(context.compile(one.pattern), 1);
    ASSERT_TRUE(fits(context)) << one.pattern;
    EXPECT_EQ(chain(context, one.text), one.found)
        << one.pattern << " in " << one.text;
  }
}

class RunCases {
 public:
  explicit RunCases(unsigned seed) : random_(seed) {}

  size_t below(size_t bound) { return random_() % bound; }

  // The three texts of a search, which compile to a literal and runs.
  void make_search(std::string (&texts)[3]) {
    constexpr const char* kBefore[] = {"",           "digits",    "alpha[2-]",
                                       "!'1'",       "'a|1'[0-]", "any[0-]",
                                       "!digits[3-]"};
    constexpr const char* kLiterals[] = {"a", "1", "-", "ab", "aa", "1-1"};
    constexpr const char* kAfter[] = {"",         "digits",     "digits[2]",
                                      "!'a'[0-]", "alpha[-2]",  "'b|-'[1-2]",
                                      "any[0-1]", "!digits[3-]"};
    for (std::string& text : texts) text.clear();
    size_t part = 1;
    if (below(4) == 0) part = 0;
    texts[part] += kBefore[below(std::size(kBefore))];
    texts[part] += kLiterals[below(std::size(kLiterals))];
    for (size_t runs = below(4); runs > 0; --runs) {
      if (below(4) == 0 && part < 2) ++part;
      texts[part] += kAfter[below(std::size(kAfter))];
    }
  }

  std::string make_text() {
    std::string text;
    for (size_t n = below(below(20) == 0 ? 400 : 24); n > 0; --n) {
      text.append(1 + below(3) / 2 * below(20), "aabb11--2B "[below(11)]);
    }
    return text;
  }

 private:
  std::mt19937 random_;
};

TEST(LiteralWithRuns, AgreeWithAttemptsOnRandomCases) {
  RunCases random(5);
  int fitting = 0;
  int matched = 0;
  for (int i = 0; i < 60000 && !HasFailure(); ++i) {
    TestContext context;
    auto any = std::make_unique<CharClass>("any");
    any->add_include_range(0, 255);
    context.add_user_class(std::move(any));
    std::string texts[3];
    random.make_search(texts);
    if (compile_search(context, {texts[0].c_str(), true},
                       {texts[1].c_str(), true},
                       {texts[2].c_str(), true}) != 1) {
      continue;
    }
    fitting += fits(context);
    const std::string text = random.make_text();
    FindOptions options{.case_flag = random.below(3) != 0,
                        .whole_words = random.below(5) == 0};
    if (random.below(5) == 0) options.maximum = 1;
    std::string found[2];
    for (const SearchPath path : {SearchPath::kPlain, SearchPath::kFast}) {
      options.path = path;
      const int32_t answer =
          find_all(context, text.data(), text.size(), options);
      found[path == SearchPath::kFast] =
          std::to_string(answer) + spell_matches(context);
      matched += answer > 0;
    }
    EXPECT_EQ(found[1], found[0]) << spell_elements(context) << " in " << text;
  }
  EXPECT_GT(fitting, 40000);
  EXPECT_GT(matched, 20000);
}

}  // namespace
}  // namespace zenfo
