// The slow model of the pattern language: worked examples, class definitions,
// areas, and promises that are true for every random case.
#include "model/pattern_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "model/random_cases.h"
#include "support/pattern_examples.h"

namespace zenfo::model {

void PrintTo(const Match& match, std::ostream* out) {
  *out << "(" << match.offset << "," << match.length << ")";
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using namespace std::string_literals;

Context with_classes() {
  Context context;
  EXPECT_EQ(1, set_operators(context, std::string(examples::kClassFile)));
  return context;
}

// Reads the class of a single "name=a" definition.
CharClass loaded(const std::string& lines) {
  Context context;
  EXPECT_EQ(1, set_operators(context, "name=a\r\n" + lines));
  EXPECT_EQ(1u, context.user_classes.size());
  return context.user_classes.empty() ? CharClass()
                                      : context.user_classes.front();
}

std::vector<std::string> names(const std::vector<CharClass>& classes) {
  std::vector<std::string> out;
  for (const CharClass& one : classes) out.push_back(one.name);
  return out;
}

int compile_main(Context& context, const std::string& main) {
  PatternTexts texts;
  texts.main = main;
  texts.main_is_pattern = true;
  return set_pattern(context, texts);
}

std::string elements_of(const std::string& main) {
  Context context = with_classes();
  compile_main(context, main);
  return dump(context.elements);
}

// ---- Text helpers ----------------------------------------------------------

TEST(ModelFindSubstring, AnswersTheFirstOccurrenceInTheRange) {
  EXPECT_EQ(1u, find_substring("xabcabc", 0, 7, "abc", true));
  EXPECT_EQ(4u, find_substring("xabcabc", 2, 7, "abc", true));
  EXPECT_EQ(kNone, find_substring("xabcabc", 2, 6, "abc", true));
  EXPECT_EQ(1u, find_substring("aab", 0, 3, "ab", true));
}

TEST(ModelFindSubstring, FoldsCaseOnlyWhenAsked) {
  EXPECT_EQ(1u, find_substring("xabc", 0, 4, "ABC", false));
  EXPECT_EQ(kNone, find_substring("xabc", 0, 4, "ABC", true));
  EXPECT_EQ(kNone, find_substring("\xE0", 0, 1, "\xC0", false));
}

TEST(ModelFindSubstring, FindsNothingWithoutHaystackOrNeedle) {
  EXPECT_EQ(kNone, find_substring("", 0, 0, "a", true));
  EXPECT_EQ(kNone, find_substring("a", 1, 1, "a", true));
  EXPECT_EQ(kNone, find_substring("a", 0, 1, "", true));
}

TEST(ModelIsWholeWord, LooksAtTheBytesAround) {
  EXPECT_EQ(0, is_whole_word("concat", 3, 5));
  EXPECT_EQ(1, is_whole_word(" cat.", 1, 3));
  EXPECT_EQ(1, is_whole_word("cat", 0, 2));
  EXPECT_EQ(0, is_whole_word("cat1", 0, 2));
  EXPECT_EQ(1, is_whole_word("_cat_", 1, 3));
  EXPECT_EQ(1, is_whole_word("\xE9"
                             "cat",
                             1, 3));
  EXPECT_EQ(-1, is_whole_word("cat", 0, 3));
  EXPECT_EQ(-1, is_whole_word("", 0, 0));
}

// ---- Class membership ------------------------------------------------------

TEST(ModelClass, ExcludesBeforeItIncludes) {
  CharClass one;
  one.include_ranges = {{'a', 'z'}};
  one.include_chars = "0b";
  one.exclude_ranges = {{'c', 'd'}};
  one.exclude_chars = "b";
  EXPECT_TRUE(is_member(one, 'a'));
  EXPECT_TRUE(is_member(one, '0'));
  EXPECT_FALSE(is_member(one, 'b'));
  EXPECT_FALSE(is_member(one, 'c'));
  EXPECT_FALSE(is_member(one, '1'));
}

TEST(ModelClass, RangeOfTwoZerosEndsTheWalk) {
  EXPECT_FALSE(is_member(loaded("inc_ranges=0-0,48-57"), '0'));
  EXPECT_FALSE(is_member(loaded("inc_ranges=0-0"), 0));
  EXPECT_TRUE(is_member(loaded("inc_ranges=48-57,0-0"), '0'));
  EXPECT_TRUE(
      is_member(loaded("inc_ranges=48-57\r\nexc_ranges=0-0,48-57"), '0'));
  EXPECT_TRUE(is_member(loaded("inc_ranges=0-1"), 0));
}

TEST(ModelClass, RangesCompareAsUnsignedNumbers) {
  EXPECT_TRUE(is_member(loaded("inc_ranges=128-300"), 0xFF));
  EXPECT_FALSE(is_member(loaded("inc_ranges=300-400"), 44));
  EXPECT_FALSE(is_member(loaded("inc_ranges=57-48"), '5'));
}

TEST(ModelClass, DefaultsAreTheVisibleBytesAndAllBytes) {
  const Context context;
  ASSERT_EQ(1u, context.predefined_classes.size());
  const CharClass& visible = context.predefined_classes.front();
  EXPECT_EQ("?", visible.name);
  EXPECT_FALSE(is_member(visible, 32));
  EXPECT_TRUE(is_member(visible, 33));
  EXPECT_TRUE(is_member(visible, 255));
  EXPECT_TRUE(is_member(context.any_character, 0));
  EXPECT_TRUE(is_member(context.any_character, 255));
  EXPECT_THAT(context.user_classes, IsEmpty());
}

// ---- Definition files ------------------------------------------------------

TEST(ModelSetOperators, EmptyFileChangesNothing) {
  Context context = with_classes();
  EXPECT_EQ(-1, set_operators(context, ""));
  EXPECT_EQ(2u, context.user_classes.size());
}

TEST(ModelSetOperators, AnyBytesReplaceTheClasses) {
  Context context = with_classes();
  EXPECT_EQ(1, set_operators(context, "nothing of use"));
  EXPECT_THAT(context.user_classes, IsEmpty());
  EXPECT_THAT(context.sorted_classes, IsEmpty());
}

TEST(ModelSetOperators, LinesWithoutKeyOrValueAreSkipped) {
  EXPECT_EQ("", loaded("inc_chars\r\n=97\r\n\r\ninc_chars=").include_chars);
  EXPECT_EQ("", loaded("//inc_chars=97\r\ncomment=97").include_chars);
  EXPECT_EQ("", loaded("INC_CHARS=97\r\n inc_chars=97").include_chars);
}

TEST(ModelSetOperators, ValueEndsAtTheSecondEqualsSign) {
  EXPECT_EQ("a", loaded("inc_chars=97=98").include_chars);
  EXPECT_EQ("", loaded("inc_chars==97").include_chars);
}

TEST(ModelSetOperators, LastLineNeedsNoEnd) {
  EXPECT_EQ("a", loaded("inc_chars=97").include_chars);
}

TEST(ModelSetOperators, BareLineFeedsAreOneLine) {
  Context context;
  EXPECT_EQ(1, set_operators(context, "name=a\ninc_chars=97\n"));
  EXPECT_THAT(names(context.user_classes), ElementsAre("a\ninc_chars"));
  EXPECT_EQ("", context.user_classes.front().include_chars);
}

TEST(ModelSetOperators, LinesBeforeTheFirstNameChangeNothing) {
  Context context;
  EXPECT_EQ(1, set_operators(context, "inc_chars=97\r\nname=a"));
  EXPECT_THAT(names(context.user_classes), ElementsAre("a"));
  EXPECT_EQ("", context.user_classes.front().include_chars);
}

TEST(ModelSetOperators, CharsAreNumbersCutToAByte) {
  EXPECT_EQ(",", loaded("inc_chars=300").include_chars);
  EXPECT_EQ("\0"s, loaded("inc_chars=x").include_chars);
  EXPECT_EQ("\xFF", loaded("inc_chars=-1").include_chars);
  EXPECT_EQ("ab\t", loaded("inc_chars= 97,+98x,\t9").include_chars);
  EXPECT_EQ("\0"s, loaded("inc_chars= ").include_chars);
}

TEST(ModelSetOperators, EmptyItemsAreSkipped) {
  EXPECT_EQ("ab", loaded("inc_chars=,97,,98,").include_chars);
  EXPECT_EQ("", loaded("inc_chars=97\r\ninc_chars=,").include_chars);
}

TEST(ModelSetOperators, CharsReplaceAndRangesAppend) {
  const CharClass one = loaded(
      "inc_chars=97\r\ninc_chars=98\r\nexc_chars=99\r\nexc_chars=100\r\n"
      "inc_ranges=1-2\r\ninc_ranges=3-4\r\nexc_ranges=5-6\r\nexc_ranges=7-8");
  EXPECT_EQ("b", one.include_chars);
  EXPECT_EQ("d", one.exclude_chars);
  EXPECT_THAT(one.include_ranges,
              ElementsAre(CharRange{1, 2}, CharRange{3, 4}));
  EXPECT_THAT(one.exclude_ranges,
              ElementsAre(CharRange{5, 6}, CharRange{7, 8}));
}

TEST(ModelSetOperators, RangeNeedsBothParts) {
  EXPECT_THAT(loaded("inc_ranges=5,-5,5-,5--6,7-8-9,x-9").include_ranges,
              ElementsAre(CharRange{7, 8}, CharRange{0, 9}));
}

TEST(ModelSetOperators, EachNameStartsAClass) {
  Context context;
  set_operators(context, "name=a\r\ninc_chars=97\r\nname=b\r\ninc_chars=98");
  ASSERT_THAT(names(context.user_classes), ElementsAre("a", "b"));
  EXPECT_EQ("a", context.user_classes[0].include_chars);
  EXPECT_EQ("b", context.user_classes[1].include_chars);
}

TEST(ModelSetOperators, CompiledPatternKeepsItsClasses) {
  Context context = with_classes();
  compile_main(context, "digits");
  set_operators(context, "name=digits\r\ninc_chars=97");
  EXPECT_THAT(find_all(context, "a1", {}).matches, ElementsAre(Match{1, 1}));
}

TEST(ModelAddUserClass, ListIsOrderedByLengthOfNameOnly) {
  Context context;
  set_operators(context, "name=zzz\r\nname=b\r\nname=yy\r\nname=a");
  EXPECT_THAT(names(context.sorted_classes),
              ElementsAre("b", "a", "yy", "zzz"));
}

// Six names are enough for a partition: the pivot c is swapped with e, then b
// with d, and at the end the pivot returns to the fourth position.
TEST(ModelAddUserClass, NamesOfOneLengthEndWhereTheSortLeavesThem) {
  Context context;
  set_operators(context,
                "name=a\r\nname=b\r\nname=c\r\nname=d\r\nname=e\r\nname=f");
  EXPECT_THAT(names(context.sorted_classes),
              ElementsAre("a", "d", "e", "c", "b", "f"));
}

// ---- Compiler --------------------------------------------------------------

TEST(ModelCompiler, WorkedExamples) {
  for (const auto& row : examples::kCompilerExamples) {
    EXPECT_EQ(row.elements, elements_of(std::string(row.text))) << row.text;
  }
}

TEST(ModelCompiler, MoreExamples) {
  for (const auto& row : examples::kMoreCompilerExamples) {
    EXPECT_EQ(row.elements, elements_of(std::string(row.text))) << row.text;
  }
}

TEST(ModelCompiler, CaretExamples) {
  for (const auto& row : examples::kCaretExamples) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.converted, convert_carets(std::string(row.text)));
    Context context = with_classes();
    PatternTexts texts;
    texts.main = std::string(row.text);
    texts.convert_main = true;
    EXPECT_EQ(1, set_pattern(context, texts));
    ASSERT_EQ(1u, context.elements.size());
    EXPECT_EQ(row.literal, context.elements.front().text);
    texts.main_is_pattern = true;
    EXPECT_EQ(1, set_pattern(context, texts));
    EXPECT_EQ(row.pattern_elements, dump(context.elements));
  }
}

TEST(ModelCompiler, EveryControlNameButTheDoubledOneConverts) {
  for (char code = 1; code <= 31; ++code) {
    const std::string name = {'^', static_cast<char>('@' + code)};
    const std::string expected = code == 29 ? name : std::string(1, code);
    EXPECT_EQ(expected, convert_carets(name)) << name;
  }
}

TEST(ModelCompiler, EscapesAreRemoved) {
  EXPECT_EQ("abc", remove_escapes(R"(a\bc)"));
  EXPECT_EQ(R"(\)", remove_escapes(R"(\\)"));
  EXPECT_EQ(R"(\a)", remove_escapes(R"(\\\a\)"));
  EXPECT_EQ("", remove_escapes(R"(\)"));
}

TEST(ModelCompiler, CombinedExamples) {
  for (const auto& row : examples::kCombinedExamples) {
    SCOPED_TRACE(row.main);
    Context context = with_classes();
    compile_main(context, "an old pattern");
    PatternTexts texts;
    texts.start = std::string(row.start);
    texts.main = std::string(row.main);
    texts.end = std::string(row.end);
    texts.start_is_pattern = row.start_is_pattern;
    texts.main_is_pattern = row.main_is_pattern;
    texts.end_is_pattern = row.end_is_pattern;
    EXPECT_EQ(row.result, set_pattern(context, texts));
    EXPECT_EQ(row.elements, dump(context.elements));
    EXPECT_EQ(row.start_count, context.start_count);
    EXPECT_EQ(row.last_main, context.last_main);
  }
}

TEST(ModelCompiler, ConversionFlagsBelongToTheirTexts) {
  Context context;
  PatternTexts texts{"^A", "^B", "^C"};
  const auto compiled = [&](bool start, bool main, bool end) {
    texts.convert_start = start;
    texts.convert_main = main;
    texts.convert_end = end;
    set_pattern(context, texts);
    return dump(context.elements);
  };
  EXPECT_EQ("L(<01>) L(^B) L(^C)", compiled(true, false, false));
  EXPECT_EQ("L(^A) L(<02>) L(^C)", compiled(false, true, false));
  EXPECT_EQ("L(^A) L(^B) L(<03>)", compiled(false, false, true));
}

TEST(ModelCompiler, NullTextsAreEmpty) {
  Context context;
  EXPECT_EQ(-1, set_pattern(context, {"a", std::nullopt, "b"}));
  EXPECT_EQ(1, set_pattern(context, {std::nullopt, "b", std::nullopt}));
  EXPECT_EQ("L(b)", dump(context.elements));
  EXPECT_EQ(-1, set_pattern_tag(context, std::nullopt, "b", true, true, true));
  EXPECT_THAT(context.elements, IsEmpty());
}

TEST(ModelCompiler, LiteralEmptiedByConversionIsNoElement) {
  Context context;
  PatternTexts texts;
  texts.main = "\\";
  EXPECT_EQ(1, set_pattern(context, texts));
  EXPECT_EQ("L(\\)", dump(context.elements));
  texts.convert_main = true;
  EXPECT_EQ(0, set_pattern(context, texts));
}

TEST(ModelCompiler, TagExamples) {
  for (const auto& row : examples::kTagExamples) {
    SCOPED_TRACE(row.first);
    Context context = with_classes();
    compile_main(context, "an old pattern");
    EXPECT_EQ(row.result,
              set_pattern_tag(context, std::string(row.first),
                              std::string(row.second), row.count_start,
                              row.is_pattern, false));
    EXPECT_EQ(row.elements, dump(context.elements));
    EXPECT_EQ(row.start_count, context.start_count);
    EXPECT_EQ(row.last_main, context.last_main);
  }
}

TEST(ModelCompiler, TagConvertsBothTexts) {
  Context context;
  set_pattern_tag(context, "^A", "^B", false, false, true);
  EXPECT_EQ("L(<01>) C(0-255){0,0} L(<02>)", dump(context.elements));
}

TEST(ModelCompiler, ShorterNameWinsAtTheSamePlace) {
  Context context;
  set_operators(context, "name=abc\r\nname=ab\r\nname=xab");
  compile_main(context, "abc");
  EXPECT_EQ("C(ab){1,0} L(c)", dump(context.elements));
  compile_main(context, "xabc");
  EXPECT_EQ("C(xab){1,0} L(c)", dump(context.elements));
  compile_main(context, "\\abc");
  EXPECT_EQ("L(abc)", dump(context.elements));
}

TEST(ModelCompiler, OfEqualNamesTheFirstInTheListWins) {
  Context context;
  set_operators(context, "name=ab\r\nname=AB");
  compile_main(context, "AB");
  EXPECT_EQ("C(ab){1,0}", dump(context.elements));
}

TEST(ModelCompiler, ConstructKeepsItsLastByteFromTheNext) {
  Context context;
  set_operators(context, "name=k!\r\nname=w\\\r\nname=digits");
  compile_main(context, "k!digits");
  EXPECT_EQ("C(k!){1,0} C(digits){1,0}", dump(context.elements));
  compile_main(context, "w\\digits");
  EXPECT_EQ("C(w\\){1,0} C(digits){1,0}", dump(context.elements));
  compile_main(context, "w\\\\digits");
  EXPECT_EQ("C(w\\){1,0} L(digits)", dump(context.elements));
}

TEST(ModelCompiler, ConstructsCannotReachIntoOtherPieces) {
  Context context;
  set_operators(context, "name=k!\r\nname=w\\");
  compile_main(context, "k!?k!'a'k!\"a\"");
  EXPECT_EQ("C(k!){1,0} W(?){1,1} C(k!){1,0} H(a){1,0} C(k!){1,0} S(a)",
            dump(context.elements));
  compile_main(context, "w\\?w\\'a'w\\\"a\"");
  EXPECT_EQ("C(w\\){1,0} W(?){1,1} C(w\\){1,0} H(a){1,0} C(w\\){1,0} S(a)",
            dump(context.elements));
}

TEST(ModelCompiler, ClassesWithoutANameArePassedOver) {
  Context context;
  add_user_class(context, CharClass());
  compile_main(context, "ab");
  EXPECT_EQ("L(ab)", dump(context.elements));
}

// ---- Matcher ---------------------------------------------------------------

std::string text_of(std::string_view text) { return std::string(text); }

void compile_row(Context& context, const examples::MatcherExample& row) {
  const bool is_tag = row.texts == examples::Texts::kTag ||
                      row.texts == examples::Texts::kTagCountStart;
  if (is_tag) {
    EXPECT_EQ(1, set_pattern_tag(context, text_of(row.start), text_of(row.end),
                                 row.texts == examples::Texts::kTagCountStart,
                                 true, row.convert));
    return;
  }
  EXPECT_EQ(1, set_pattern(context, {text_of(row.start), text_of(row.main),
                                     text_of(row.end), true, true, true,
                                     row.convert, row.convert, row.convert}));
}

std::vector<Match> spans(const examples::Spans& given) {
  std::vector<Match> out;
  for (const examples::Span& span : given) {
    out.push_back({span.offset, span.length});
  }
  return out;
}

void check_row(const examples::MatcherExample& row) {
  SCOPED_TRACE(testing::Message() << row.start << " " << row.main << " "
                                  << row.end << " in " << row.text);
  Context context = with_classes();
  compile_row(context, row);
  const std::vector<Match> areas = spans(row.areas);
  const bool everywhere = row.where == examples::Where::kEverywhere;
  const SearchFlags flags{row.exact_case, row.whole_words, row.maximum};
  const Found found = find_all_by_areas(context, text_of(row.text), flags,
                                        everywhere ? nullptr : &areas,
                                        row.where == examples::Where::kInside);
  EXPECT_EQ(spans(row.matches), found.matches);
  EXPECT_EQ(static_cast<int32_t>(row.matches.size()), found.count);
}

TEST(ModelMatcher, WorkedExamples) {
  for (const auto& row : examples::kMatcherExamples) check_row(row);
}

TEST(ModelMatcher, MoreExamples) {
  for (const auto& row : examples::kMoreMatcherExamples) check_row(row);
}

TEST(ModelMatcher, EmptyPatternFails) {
  const Context context;
  const std::vector<Match> areas;
  EXPECT_EQ(-1, find_all(context, "a", {}).count);
  EXPECT_EQ(-1, find_all_by_areas(context, "a", {}, &areas, true).count);
}

TEST(ModelMatcher, EmptyTextHoldsNothing) {
  Context context;
  EXPECT_EQ(0, find_all(context, "", {}).count);
  compile_main(context, "a");
  EXPECT_EQ(0, find_all(context, "", {}).count);
}

TEST(ModelMatcher, AnyBytesBetweenTheTextsOfATag) {
  Context context;
  set_pattern_tag(context, "a", "b", false, false, false);
  EXPECT_THAT(find_all(context, "a\0\xFF\r\nb"s, {}).matches,
              ElementsAre(Match{0, 6}));
}

// ---- Random cases ----------------------------------------------------------

class Prepared {
 public:
  Prepared() {
    for (const ClassSet& set : kClassSets) {
      contexts_.emplace_back();
      set_operators(contexts_.back(), std::string(set.file));
    }
  }

  Found answer(const RandomCase& one) {
    Context& context = contexts_[one.class_set];
    compile(context, one);
    std::vector<Match> areas;
    for (const RandomArea& area : one.areas) {
      areas.push_back({area.offset, area.length});
    }
    return find_all_by_areas(
        context, one.text, {one.exact_case, one.whole_words, one.maximum},
        one.area_use == AreaUse::kEverywhere ? nullptr : &areas,
        one.area_use == AreaUse::kInside);
  }

  const Context& context(size_t class_set) const {
    return contexts_[class_set];
  }

 private:
  static void compile(Context& context, const RandomCase& one) {
    if (one.is_tag) {
      set_pattern_tag(context, one.start, one.end, one.count_start,
                      one.start_is_pattern, one.convert_start);
    } else {
      set_pattern(context,
                  {one.start, one.main, one.end, one.start_is_pattern,
                   one.main_is_pattern, one.end_is_pattern, one.convert_start,
                   one.convert_main, one.convert_end});
    }
  }

  std::vector<Context> contexts_;
};

constexpr int kRandomCases = 20000;

bool in_order(const std::vector<RandomArea>& areas) {
  return std::is_sorted(areas.begin(), areas.end(),
                        [](const RandomArea& a, const RandomArea& b) {
                          return a.offset < b.offset;
                        });
}

// Whether a match is where the case allows matches. If the areas are unsorted,
// only matches inside them can be checked.
bool lies_in_its_place(const RandomCase& one, const Match& match) {
  const size_t end = match.offset + match.length;
  const auto contains = [&](const RandomArea& area) {
    return area.offset <= match.offset &&
           end <= size_t{area.offset} + area.length;
  };
  const auto touches = [&](const RandomArea& area) {
    return area.offset < end &&
           match.offset < size_t{area.offset} + area.length;
  };
  if (one.area_use == AreaUse::kInside) {
    return std::any_of(one.areas.begin(), one.areas.end(), contains);
  }
  return !in_order(one.areas) ||
         std::none_of(one.areas.begin(), one.areas.end(), touches);
}

TEST(ModelRandomCases, EveryMatchIsPlausible) {
  RandomCases cases(1);
  Prepared prepared;
  for (int i = 0; i < kRandomCases; ++i) {
    const RandomCase one = cases.next();
    const Found found = prepared.answer(one);
    SCOPED_TRACE(describe(one));
    ASSERT_LE(one.text.size(), kLongestRandomText);
    ASSERT_EQ(std::max(0, found.count),
              static_cast<int32_t>(found.matches.size()));
    ASSERT_TRUE(one.maximum == 0 || found.matches.size() <= one.maximum);
    size_t previous_end = 0;
    for (const Match& match : found.matches) {
      ASSERT_GT(match.length, 0u);
      ASSERT_LE(match.offset + match.length, one.text.size());
      ASSERT_TRUE(lies_in_its_place(one, match)) << match.offset;
      ASSERT_TRUE(one.area_use == AreaUse::kInside ||
                  match.offset >= previous_end);
      previous_end = match.offset + match.length;
      ASSERT_TRUE(!one.whole_words ||
                  is_whole_word(one.text, match.offset, previous_end - 1) == 1);
    }
  }
}

TEST(ModelRandomCases, OftenMatchAndMeetEveryKindOfElement) {
  RandomCases cases(2);
  Prepared prepared;
  int matched = 0;
  int kinds[5] = {};
  for (int i = 0; i < kRandomCases; ++i) {
    const RandomCase one = cases.next();
    const Found found = prepared.answer(one);
    if (found.count <= 0) continue;
    ++matched;
    for (const Element& element : prepared.context(one.class_set).elements) {
      ++kinds[static_cast<size_t>(element.kind)];
    }
  }
  RecordProperty("matched", matched);
  EXPECT_GT(matched, kRandomCases * 2 / 5);
  for (const int of_kind : kinds) EXPECT_GT(of_kind, kRandomCases / 50);
}

TEST(ModelRandomCases, SameSeedGivesTheSameCases) {
  RandomCases a(3);
  RandomCases b(3);
  RandomCases c(4);
  bool differs = false;
  for (int i = 0; i < 100; ++i) {
    const std::string one = describe(a.next());
    EXPECT_EQ(one, describe(b.next()));
    differs = differs || one != describe(c.next());
  }
  EXPECT_TRUE(differs);
}

TEST(ModelRandomCases, ClassFilesGiveSortedClasses) {
  RandomCases cases(5);
  Context context;
  size_t most = 0;
  for (int i = 0; i < 5000; ++i) {
    const std::string file = cases.next_class_file();
    ASSERT_EQ(file.empty() ? -1 : 1, set_operators(context, file));
    const auto shorter = [](const CharClass& a, const CharClass& b) {
      return a.name.size() < b.name.size();
    };
    ASSERT_TRUE(std::is_sorted(context.sorted_classes.begin(),
                               context.sorted_classes.end(), shorter));
    most = std::max(most, context.sorted_classes.size());
  }
  EXPECT_GT(most, 5u);
}

}  // namespace
}  // namespace zenfo::model
