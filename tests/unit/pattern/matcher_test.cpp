#include "pattern/matcher.h"

#include <gtest/gtest.h>

#include "pattern/match_record.h"
#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::HookLog;
using pattern_test::set_areas;
using pattern_test::Span;
using pattern_test::spell_matches;
using pattern_test::TestContext;
using pattern_test::with_line_ends;

constexpr SearchPath kPaths[] = {SearchPath::kPlain, SearchPath::kFast};

std::string found_in(PatternContext& context, const std::string& text,
                     FindOptions options = {}) {
  std::string found;
  for (SearchPath path : kPaths) {
    options.path = path;
    int32_t answer = find_all(context, text.data(), text.size(), options);
    EXPECT_EQ(static_cast<uint32_t>(answer), context.matches.count());
    std::string spelt = spell_matches(context);
    if (path == SearchPath::kFast) {
      EXPECT_EQ(spelt, found) << "paths differ";
    }
    found = spelt;
  }
  return found;
}

struct Finding {
  const char* pattern;
  const char* text;
  const char* matches;
};

void expect_matches(const std::vector<Finding>& cases,
                    FindOptions options = {}) {
  for (const Finding& one : cases) {
    TestContext context;
    ASSERT_EQ(context.compile(one.pattern), 1) << one.pattern;
    EXPECT_EQ(found_in(context, one.text, options), one.matches)
        << one.pattern << " in " << one.text;
  }
}

TEST(FindAll, FindsLiterals) {
  expect_matches({{"aa", "aaaaa", "(0,2) (2,2)"},
                  {"ABC", "xabcAbC", "none"},
                  {"cat", "ca", "none"}});
  expect_matches({{"ABC", "xabcAbC", "(1,3) (4,3)"}}, {.case_flag = false});
}

TEST(FindAll, StopsAtTheMaximum) {
  expect_matches({{"cat", "cat concat cat", "(0,3) (7,3)"},
                  {"alpha", "a b c d", "(0,1) (2,1)"},
                  {"alpha!", "a! b! c!", "(0,2) (3,2)"}},
                 {.maximum = 2});
}

TEST(FindAll, DropsMatchesThatLettersOrDigitsTouch) {
  // The underscore is no letter or digit.
  expect_matches({{"cat", "cat concat cat_ cat1", "(0,3) (11,3)"}},
                 {.case_flag = false, .whole_words = true});
  expect_matches({{"digits", "12 a3 4b 5", "(0,2) (9,1)"},
                  {"\"a|b\"", "a ab ba b", "(0,1) (8,1)"}},
                 {.whole_words = true});
}

TEST(FindAll, FindsRunsOfAClass) {
  expect_matches({
      {"digits", "ab12,345", "(2,2) (5,3)"},
      {"digits[3]", "12a345b6789", "(3,3) (7,3)"},
      {"digits[0-]", "a12b", "(1,2)"},
      {"digits[3-2]", "12 123 12345", "(3,2) (7,2) (9,2)"},
      {"digits[-2]", "12345", "(0,2) (2,2) (4,1)"},
      {"digits[4]", "123", "none"},
      {"!digits", "12ab3", "(2,2)"},
      {"!'a'[2-3]", "bcdeafg", "(0,3) (5,2)"},
      {"'a|b'[2]", "aabba", "(0,2) (2,2)"},
      {"digits", "", "none"},
  });
}

TEST(FindAll, CharListsFollowTheCaseFlagAndClassesDoNot) {
  expect_matches(
      {{"'a|b'", "xABy", "(1,2)"}, {"!'a|b'", "xABy", "(0,1) (3,1)"}},
      {.case_flag = false});
  expect_matches({{"'a|b'", "xABy", "none"}});
  TestContext context;
  auto lower = std::make_unique<CharClass>("lower");
  lower->add_include_range('a', 'z');
  context.add_user_class(std::move(lower));
  context.compile("lower");
  EXPECT_EQ(found_in(context, "aBc", {.case_flag = false}), "(0,1) (2,1)");
}

TEST(FindAll, FitsElementsIntoTheGapsBetweenLiterals) {
  expect_matches({
      {"digitsx", "ab12x 3x x", "(2,3) (6,2)"},
      {"digits[3]x", "12a345x", "(3,4)"},
      {"digits[1-2]x", "123x", "(2,2)"},
      {"alphax", "axbx", "(0,2) (2,2)"},
      // Classes give nothing back.
      {"alphax", "xx", "none"},
      {"aalphab", "ab acb abcb", "(3,3)"},
      {"<alphadigits>", "<ab12><ab><c3>", "(0,6) (10,4)"},
      {"<alpha>", "<ab<abc>", "(3,5)"},
      // Intended: a failing gap element skips the byte it stopped at.
      {"<alpha[3-]>", "<ab<abc>", "none"},
      {"alphadigits;", "ab12;c;d3;", "(0,5) (7,3)"},
      {"digits[2]alphax", "123abx", "(1,5)"},
      // Intended: a gap that ends short continues where the run was cut.
      {"digits[3]x", "12345x", "none"},
      {"digits[3]x", "123456x", "(3,4)"},
  });
}

TEST(FindAll, MatchesTheTailAfterTheLastLiteral) {
  expect_matches({
      {"digits[3]alpha", "12345ab", "(2,5)"},
      {"digitsalpha", "12ab3c 4", "(0,4) (4,2)"},
      {"abcdigits", "abcabc1 abc", "(3,4)"},
      {"adigits[2]", "a1a23", "(2,3)"},
      // Intended: a last element of length 0 skips a byte.
      {"bdigits[0-]", "bb1 b22", "(0,1) (4,3)"},
  });
}

TEST(FindAll, WildcardsTakeNothing) {
  expect_matches({
      {"???", "abcdef", "none"},
      {"a?b", "axb ab a b", "(4,2)"},
      {"?b", "abb", "(1,1) (2,1)"},
      {"b?", "abbb", "(1,1) (2,1) (3,1)"},
      {"?digitsb", "1b22b", "(0,2) (2,3)"},
      {"digits?b", "1b22b", "(0,2) (2,3)"},
  });
}

TEST(FindAll, FindsTheEarliestAlternative) {
  expect_matches({
      {R"("foo|bar"x)", "foo foox barx", "(4,4) (9,4)"},
      // At equal positions the later one wins, whatever the lengths.
      {R"("a|ab")", "aabab", "(0,1) (1,2) (3,2)"},
      {R"("ab|a")", "aabab", "(0,1) (1,1) (3,1)"},
      {R"(!"foo|bar")", "xxfoo yy bar", "(0,2) (3,2) (6,2) (10,2)"},
      {R"(!"|")", "ab c", "(0,2) (3,1)"},
      {R"("|")", "ab|c", "none"},
      {R"("FOO|x")", "foo", "none"},
  });
  expect_matches({{R"("FOO|x")", "foo X", "(0,3) (4,1)"}},
                 {.case_flag = false});
}

TEST(FindAll, AdjacentLiteralsMustTouch) {
  struct {
    const char* start;
    const char* main;
    const char* text;
    const char* matches;
  } cases[] = {{"a", "b", "axaxb ab", "(7,1)"},
               // Intended: tries again after the first literal, although the
               // pair is at 1.
               {"aa", "b", "aaab aab", "(7,1)"},
               {"digits", "x", "12x ax 7x", "(2,1) (8,1)"}};
  for (const auto& one : cases) {
    TestContext context;
    compile_search(context, {one.start, true}, {one.main}, {});
    EXPECT_EQ(found_in(context, one.text), one.matches) << one.text;
  }
}

TEST(FindAll, ReportsTheMainElementsOnly) {
  TestContext context;
  compile_search(context, {}, {"x"}, {"digits", true});
  EXPECT_EQ(found_in(context, "x1x22 xx3"), "(0,1) (2,1) (7,1)");
  compile_search(context, {"<b>"}, {"!'<'", true}, {"</b>"});
  EXPECT_EQ(found_in(context, "<b>hi</b><b></b><b>yo</b>"), "(3,2) (19,2)");
}

TEST(FindAll, OffsetsOfALeadingWildcardAreWhereItStood) {
  TestContext context;
  compile_search(context, {"a"}, {"?b", true}, {});
  EXPECT_EQ(found_in(context, "xab"), "(2,1)");
}

TEST(FindAll, MatchesTagsToTheNearestSecondText) {
  const char* text = "<b>hi</b><b></b><b>yo</b>";
  TestContext context;
  compile_tag(context, "<b>", "</b>", false, false, false);
  EXPECT_EQ(found_in(context, text), "(0,9) (9,7) (16,9)");
  compile_tag(context, "<b>", "</b>", true, false, false);
  EXPECT_EQ(found_in(context, text), "(3,6) (12,4) (19,6)");
  compile_tag(context, "(", ")", false, false, false);
  EXPECT_EQ(found_in(context, "((a)b)"), "(0,4)");
}

TEST(FindAll, FindsConvertedControlCharacters) {
  TestContext context;
  context.compile("^M^J", false, true);
  EXPECT_EQ(found_in(context, with_line_ends("a<CR><LF>b<LF><CR><LF>")),
            "(1,2) (5,2)");
}

TEST(FindAll, FindsNothingWithoutAMainElement) {
  TestContext context;
  compile_search(context, {"a"}, {"\\", true}, {});
  EXPECT_EQ(found_in(context, "aaa"), "none");
  compile_search(context, {}, {"\\", true}, {"a"});
  EXPECT_EQ(found_in(context, "aaa"), "none");
}

TEST(FindAll, WorksOnZeroAndHighBytes) {
  TestContext context;
  compile_literal(context, std::string_view("\0\xFF", 2));
  EXPECT_EQ(found_in(context, std::string("a\0\xFF\0\0\xFF", 6)),
            "(1,2) (4,2)");
  CharClass high;
  high.add_include_range(0x80, 0xFF);
  compile_class(context, high);
  EXPECT_EQ(found_in(context, "a\x80\xFF\x7F\xC3"), "(1,2) (4,1)");
}

TEST(FindAll, EmptiesTheMatchListBeforeEveryAnswer) {
  TestContext context;
  const std::string text = "abc";
  auto find_again = [&] {
    context.compile("b");
    ASSERT_EQ(find_all(context, text.data(), text.size(), {}), 1);
    ASSERT_EQ(context.matches.count(), 1u);
  };
  find_again();
  EXPECT_EQ(find_all(context, nullptr, 3, {}), 0);
  EXPECT_EQ(context.matches.count(), 0u);
  find_again();
  EXPECT_EQ(find_all(context, text.data(), 0, {}), 0);
  EXPECT_EQ(context.matches.count(), 0u);
  find_again();
  context.pattern.clear();
  EXPECT_EQ(find_all(context, text.data(), text.size(), {}), -1);
  EXPECT_EQ(context.matches.count(), 0u);
  EXPECT_EQ(find_all_by_areas(context, text.data(), 3, {}, nullptr, true), -1);
  context.pattern.elements.push_back(nullptr);
  EXPECT_EQ(find_all(context, text.data(), text.size(), {}), -1);
}

TEST(FindAll, CountsWithoutStoringWhenAsked) {
  TestContext context;
  const std::string text = "ab cd\r\nef\r\n";
  context.compile("alpha");
  EXPECT_EQ(find_all(context, text.data(), text.size(), {.store = false}), 3);
  EXPECT_EQ(context.matches.count(), 0u);
  compile_literal(context, "\r\n");
  EXPECT_EQ(find_all(context, text.data(), text.size(), {.store = false}), 2);
}

TEST(FindAll, RecordsKnowTheirText) {
  TestContext context;
  const std::string text = "xxabc";
  context.compile("abc");
  find_all(context, text.data(), text.size(), {});
  const auto* match = record_cast<MatchRecord>(context.matches.get(0));
  ASSERT_NE(match, nullptr);
  EXPECT_EQ(match->matched(), "abc");
  EXPECT_EQ(match->begin(), text.data() + 2);
  EXPECT_EQ(match->end(), text.data() + 5);
  EXPECT_EQ(match->state, 1u);
  EXPECT_EQ(match->flag, 1);
  EXPECT_EQ(context.text(), text.data());
  EXPECT_EQ(context.text_end(), text.data() + text.size());
}

// Each would take minutes if the engine repeated any search.
TEST(FindAll, StaysLinearOnHostilePatterns) {
  const std::string letters(1 << 20, 'a');
  const std::string pairs = [] {
    std::string text;
    for (int i = 0; i < 1 << 19; ++i) text += "ab";
    return text;
  }();
  struct {
    const char* pattern;
    const std::string& text;
    uint32_t matches;
  } cases[] = {
      // Long class runs before something rare.
      {"alpha[500000]digits", letters, 0},
      {"alpha[2000000-]digits", letters, 0},
      {"alpha[-3]alpha[900000-]digits", letters, 0},
      {"alpha[1000]digitsz", letters, 0},
      {"alphaz", letters, 0},
      {"aalpha[2]z", letters, 0},
      // Overlapping parts of a literal, alternatives sharing their start.
      {"aaaaaaaaaaaaaaab", letters, 0},
      {R"("aaaaaaab|aaaaaac|ba")", pairs, (1 << 19) - 1},
      {R"("zz|ab"digits)", pairs, 0},
      {R"("ab"!"zz|yy"digits)", pairs, 0},
      {R"(!"zz|yy"digits)", letters, 0},
      {"a?alpha[0-]?digits", letters, 0},
  };
  for (const auto& one : cases) {
    TestContext context;
    ASSERT_EQ(context.compile(one.pattern), 1);
    found_in(context, one.text);
    EXPECT_EQ(context.matches.count(), one.matches) << one.pattern;
  }
}

TEST(FindAll, StaysLinearOnPairsThatNeverTouch) {
  std::string text(1 << 20, 'a');
  text += "xz";
  TestContext context;
  compile_search(context, {"a"}, {"z"}, {});
  EXPECT_EQ(found_in(context, text), "none");
}

TEST(FindAll, FindsOccurrencesAcrossWindows) {
  // Matches on both sides of, and across, each piece that is searched at once.
  std::string text(600000, '.');
  for (size_t at : {131070u, 131072u, 262143u, 393214u, 599997u}) {
    text.replace(at, 2, "xy");
  }
  for (const char* pattern : {"xy", R"("xy|zz")", R"("qqqq|xy")"}) {
    TestContext context;
    context.compile(pattern);
    EXPECT_EQ(found_in(context, text),
              "(131070,2) (131072,2) (262143,2) (393214,2) (599997,2)");
  }
}

TEST(FindAll, PollsBeforeEveryFurtherAttempt) {
  TestContext context;
  const std::string text = "a a a b";
  context.compile("a", false);
  HookLog log(context, 1, 0, true, false);
  EXPECT_EQ(find_all(context, text.data(), text.size(), {}), 3);
  // One after each match; none before the first attempt.
  EXPECT_EQ(HookLog::text(), " poll poll poll");
  HookLog sparse(context, 2, 0, true, false);
  find_all(context, text.data(), text.size(), {});
  EXPECT_EQ(HookLog::polls(), 1);
  // The counter continues in the next run.
  find_all(context, text.data(), text.size(), {});
  EXPECT_EQ(HookLog::polls(), 3);
}

TEST(FindAll, ReportsWhereAttemptsStart) {
  TestContext context;
  const std::string text = "ab ab  ";
  context.compile("alpha");
  HookLog log(context, 1);
  find_all(context, text.data(), text.size(), {});
  EXPECT_EQ(HookLog::text(),
            " 0/7=0% 2/7=28% poll 3/7=42% poll 5/7=71% poll 6/7=85% poll");
}

TEST(FindAll, ACancellationEndsTheRunWithAFailure) {
  for (SearchPath path : kPaths) {
    TestContext context;
    const std::string text = "a a a a";
    context.compile("a", false);
    HookLog log(context, 1, 2);
    EXPECT_EQ(find_all(context, text.data(), text.size(), {.path = path}), -1);
    EXPECT_TRUE(context.cancelled);
    EXPECT_EQ(HookLog::polls(), 2);
    HookLog calm(context, 1);
    EXPECT_EQ(find_all(context, text.data(), text.size(), {.path = path}), 4);
    EXPECT_FALSE(context.cancelled);
  }
}

TEST(FindAllByAreas, SearchesInsideOrOutside) {
  struct {
    const char* pattern;
    bool inside;
    std::vector<Span> areas;
    const char* text;
    const char* matches;
  } cases[] = {
      {"ab", true, {{3, 3}}, "abcabcab", "(3,2)"},
      {"ab", false, {{3, 3}}, "abcabcab", "(0,2) (6,2)"},
      {"ab", false, {{1, 2}}, "abab", "none"},
      {"ab", false, {{0, 4}, {2, 4}}, "abababab", "(6,2)"},
      {"ab", false, {}, "abab", "(0,2) (2,2)"},
      {"ab", true, {}, "abab", "none"},
      {"digits[1-2]", true, {{1, 3}}, "12345", "(1,2) (3,1)"},
      // In list order, and cut to the text.
      {"ab", true, {{2, 100}, {0, 2}, {50, 2}}, "abab", "(2,2) (0,2)"},
      {"ab", false, {{2, 4000000000}}, "abab", "(0,2)"},
      {"ab", false, {{4000000000, 2}}, "abab", "(0,2) (2,2)"},
  };
  for (const auto& one : cases) {
    for (SearchPath path : kPaths) {
      TestContext context;
      TestContext areas;
      context.compile(one.pattern);
      set_areas(areas, one.areas);
      std::string text = one.text;
      find_all_by_areas(context, text.data(), text.size(), {.path = path},
                        &areas, one.inside);
      EXPECT_EQ(spell_matches(context), one.matches) << one.pattern;
    }
  }
}

TEST(FindAllByAreas, TestsWholeWordsAgainstTheWholeText) {
  TestContext context;
  TestContext areas;
  context.compile("cat");
  set_areas(areas, {{3, 3}, {7, 3}});
  const std::string text = "concat cat";
  find_all_by_areas(context, text.data(), text.size(), {.whole_words = true},
                    &areas, true);
  EXPECT_EQ(spell_matches(context), "(7,3)");
}

TEST(FindAllByAreas, TakesAreasWhateverTheirStateAndStopsAtTheMaximum) {
  TestContext context;
  TestContext areas;
  context.compile("a");
  set_areas(areas, {{0, 1}, {2, 1}, {4, 1}});
  areas.matches.set_state(-1, 0);
  const std::string text = "a a a";
  EXPECT_EQ(find_all_by_areas(context, text.data(), text.size(), {.maximum = 2},
                              &areas, true),
            2);
  EXPECT_EQ(spell_matches(context), "(0,1) (2,1)");
}

TEST(FindAllByAreas, PollsBeforeEachAreaAndReportsTheEnd) {
  TestContext context;
  TestContext areas;
  context.compile("a", false);
  set_areas(areas, {{0, 2}, {4, 2}});
  const std::string text = "aa  aa  ";
  HookLog log(context, 1);
  find_all_by_areas(context, text.data(), text.size(), {}, &areas, true);
  EXPECT_EQ(HookLog::text(),
            " 0/8=0% poll 1/8=12% poll poll 5/8=62% poll 8/8=100%");
  HookLog again(context, 1, 1);
  EXPECT_EQ(
      find_all_by_areas(context, text.data(), text.size(), {}, &areas, true),
      -1);
}

TEST(FindAllByAreas, PollsBeforeEachGapAndReportsTheEnd) {
  TestContext context;
  TestContext areas;
  context.compile("a", false);
  set_areas(areas, {{2, 2}, {6, 1}});
  const std::string text = "aa..aaXa";
  const auto find = [&] {
    return find_all_by_areas(context, text.data(), text.size(), {}, &areas,
                             false);
  };
  HookLog log(context, 1);
  EXPECT_EQ(find(), 5);
  EXPECT_EQ(HookLog::text(),
            " 0/8=0% poll 1/8=12% poll poll 5/8=62% poll poll 8/8=100%");
  for (int stop = 1; stop <= 6; ++stop) {
    HookLog stopped(context, 1, stop);
    EXPECT_EQ(find(), stop <= 5 ? -1 : 5) << stop;
  }
}

TEST(FindAllByAreas, PassesOverOtherRecords) {
  class Alien : public Record {
   public:
    RecordKind kind() const override { return RecordKind::kFileEntry; }
  };
  TestContext context;
  TestContext areas;
  context.compile("a", false);
  areas.matches.append(std::make_unique<Alien>());
  EXPECT_EQ(find_all_by_areas(context, "aa", 2, {}, &areas, true), 0);
  EXPECT_EQ(find_all_by_areas(context, "aa", 2, {}, &areas, false), 2);
}

TEST(FindAllByAreas, WithoutAnAreaContextSearchesAll) {
  TestContext context;
  context.compile("a");
  EXPECT_EQ(find_all_by_areas(context, "aXa", 3, {}, nullptr, true), 2);
}

}  // namespace
}  // namespace zenfo
