// Compares the fast search with the plain one: matches, polls and reports must
// be the same on seeded random patterns, texts and areas.
#include <gtest/gtest.h>

#include <random>

#include "pattern/matcher.h"
#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::HookLog;
using pattern_test::set_areas;
using pattern_test::Span;
using pattern_test::spell_elements;
using pattern_test::spell_matches;
using pattern_test::TestContext;

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  size_t below(size_t bound) { return engine_() % bound; }
  bool chance(size_t one_in) { return below(one_in) == 0; }

  template <size_t kCount>
  std::string pieces(const char* const (&from)[kCount], size_t most) {
    std::string text;
    for (size_t n = below(most + 1); n > 0; --n) text += from[below(kCount)];
    return text;
  }

 private:
  std::mt19937 engine_;
};

constexpr const char* kPatternPieces[] = {
    "a",          "b",         "ab",         "1",         " ",
    "?",          "??",        "digits",     "digits[2]", "digits[1-2]",
    "digits[0-]", "alpha",     "!digits",    "alpha[3-]", "digits[3-2]",
    "'a|1'",      "!'a'",      "'a|B'[2-3]", "\"a|ab\"",  "\"1a|b|ab\"",
    "!\"ab|1\"",  "\"x|aab\"", "!?",         "word",      "any[0-]",
};
constexpr const char* kTextPieces[] = {"a", "b", "1", " ",  "ab", "aab",
                                       "B", "2", "A", "12", "11", "x"};

void add_class(TestContext& context, const char* name, uint32_t low,
               uint32_t high) {
  auto one = std::make_unique<CharClass>(name);
  one->add_include_range(low, high);
  context.add_user_class(std::move(one));
}

struct Outcome {
  int32_t answer;
  std::string matches;
  std::string told;
};

class Comparison {
 public:
  explicit Comparison(unsigned seed) : random_(seed) {
    add_class(context_, "word", 33, 255);
    add_class(context_, "any", 0, 255);
  }

  void run(int cases, size_t most_pieces) {
    for (int i = 0; i < cases && !::testing::Test::HasFailure(); ++i) {
      one_case(most_pieces);
    }
  }

  int matched_cases() const { return matched_cases_; }

 private:
  void one_case(size_t most_pieces) {
    if (!compile()) return;
    text_ = random_.pieces(kTextPieces, most_pieces);
    options_.case_flag = !random_.chance(3);
    options_.whole_words = random_.chance(4);
    options_.maximum =
        random_.chance(4) ? static_cast<uint32_t>(random_.below(4)) : 0;
    options_.store = !random_.chance(4);
    choose_areas();
    const auto interval = static_cast<uint32_t>(random_.below(5));
    const int cancel_at =
        random_.chance(5) ? 1 + static_cast<int>(random_.below(4)) : 0;
    const bool polls = random_.chance(2);
    const bool reports = random_.chance(2);
    auto run_path = [&](SearchPath path) {
      HookLog log(context_, interval, cancel_at, polls, reports);
      options_.path = path;
      int32_t answer =
          find_all_by_areas(context_, text_.data(), text_.size(), options_,
                            with_areas_ ? &areas_ : nullptr, inside_);
      return Outcome{answer, spell_matches(context_), HookLog::text()};
    };
    Outcome plain = run_path(SearchPath::kPlain);
    Outcome fast = run_path(SearchPath::kFast);
    EXPECT_EQ(fast.answer, plain.answer) << describe();
    EXPECT_EQ(fast.matches, plain.matches) << describe();
    EXPECT_EQ(fast.told, plain.told) << describe();
    if (plain.answer > 0) ++matched_cases_;
  }

  bool compile() {
    std::string start =
        random_.chance(6) ? random_.pieces(kPatternPieces, 2) : "";
    std::string main = random_.pieces(kPatternPieces, 4);
    std::string end =
        random_.chance(6) ? random_.pieces(kPatternPieces, 2) : "";
    if (random_.chance(8)) {
      return compile_tag(context_, start.c_str(), main.c_str(),
                         random_.chance(2), true, false) == 1;
    }
    return compile_search(context_, {start.c_str(), true}, {main.c_str(), true},
                          {end.c_str(), true}) == 1;
  }

  void choose_areas() {
    with_areas_ = random_.chance(4);
    inside_ = random_.chance(2);
    std::vector<Span> areas;
    if (with_areas_) {
      for (size_t n = random_.below(4); n > 0; --n) {
        areas.push_back({static_cast<uint32_t>(random_.below(20)),
                         static_cast<uint32_t>(random_.below(12))});
      }
    }
    set_areas(areas_, areas);
  }

  std::string describe() const {
    return spell_elements(context_) + " in \"" + text_ + "\"" +
           (options_.case_flag ? "" : " any case") +
           (options_.whole_words ? " whole words" : "") + " max " +
           std::to_string(options_.maximum) + (with_areas_ ? " areas" : "");
  }

  Random random_;
  TestContext context_;
  TestContext areas_;
  FindOptions options_;
  std::string text_;
  bool with_areas_ = false;
  bool inside_ = false;
  int matched_cases_ = 0;
};

TEST(SearchPaths, AgreeOnCounts) {
  Random random(3);
  CharClass word;
  word.add_include_range(33, 255);
  word.add_exclude_range(127, 127);
  for (int round = 0; round < 300; ++round) {
    TestContext context;
    if (round % 2 == 0) {
      compile_class(context, word);
    } else {
      compile_literal(context, "\r\n");
    }
    std::string text;
    for (size_t n = random.below(3000); n > 0; --n) {
      text += "\r\nab \x7F"[random.below(6)];
    }
    const auto interval = static_cast<uint32_t>(random.below(50));
    const int cancel_at = static_cast<int>(random.below(20)) - 10;
    const bool polls = random.chance(2);
    const bool reports = random.chance(2);
    auto run_path = [&](SearchPath path) {
      HookLog log(context, interval, cancel_at, polls, reports);
      int32_t answer = find_all(context, text.data(), text.size(),
                                {.store = false, .path = path});
      return std::to_string(answer) + HookLog::text();
    };
    ASSERT_EQ(run_path(SearchPath::kFast), run_path(SearchPath::kPlain));
  }
}

TEST(SearchPaths, AgreeOnRandomCases) {
  Comparison comparison(1);
  comparison.run(60000, 16);
  EXPECT_GT(comparison.matched_cases(), 8000);
}

TEST(SearchPaths, AgreeOnLongerTexts) {
  Comparison comparison(2);
  comparison.run(6000, 300);
  EXPECT_GT(comparison.matched_cases(), 1500);
}

}  // namespace
}  // namespace zenfo
