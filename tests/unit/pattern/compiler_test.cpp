#include "pattern/compiler.h"

#include <gtest/gtest.h>

#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::spell_elements;
using pattern_test::TestContext;

struct Case {
  const char* text;
  const char* elements;
};

void expect_elements(const std::vector<Case>& cases, bool is_pattern,
                     bool convert) {
  for (const Case& one : cases) {
    TestContext context;
    int32_t answer = context.compile(one.text, is_pattern, convert);
    EXPECT_EQ(spell_elements(context), one.elements) << one.text;
    EXPECT_EQ(answer, *one.elements != '\0' ? 1 : 0) << one.text;
  }
}

TEST(Compiler, ReadsLiteralsAndEscapes) {
  expect_elements({{R"(abc\\d\e)", R"(L(abc\de))"},
                   {R"(a\b)", "L(ab)"},
                   {R"(\)", ""},
                   {R"(abc\)", "L(abc)"}},
                  true, false);
}

TEST(Compiler, ReadsWildcardRuns) {
  expect_elements(
      {
          {"???", "W(?){3,3}"},
          {R"(\???)", R"(L(???))"},
          {R"(\\???)", R"(L(\) W(?){3,3})"},
          {"!?", "!W(?){1,1}"},
          {R"(\!?)", "L(!?)"},
          {R"(\!??)", R"(L(!??))"},
          {"!!?", "L(!) !W(?){1,1}"},
          {"a??b", "L(a) W(?){2,2} L(b)"},
          {R"(\??a??)", "L(??a) W(?){2,2}"},
          // Wildcard runs take no count.
          {"?[3]", "W(?){1,1} L([3])"},
      },
      true, false);
}

TEST(Compiler, ReadsClassReferencesAndCounts) {
  expect_elements(
      {
          {"digits", "C(digits){1,0}"},
          {"DIGITS[3]x", "C(digits){3,3} L(x)"},
          {"digits[2-5]", "C(digits){2,5}"},
          {"digits[2-]", "C(digits){2,0}"},
          {"digits[-5]", "C(digits){1,5}"},
          {"digits[0-]", "C(digits){0,0}"},
          {"digits[0]", "C(digits){0,0}"},
          {"digits[]", "C(digits){1,0}"},
          {"digits[-]", "C(digits){1,0}"},
          {"digits[3-2]", "C(digits){3,2}"},
          {"digits[007]", "C(digits){7,7}"},
          // A rejected count is text.
          {"digits[a]", "C(digits){1,0} L([a])"},
          {"digits[3", "C(digits){1,0} L([3)"},
          {"digits[", "C(digits){1,0} L([)"},
          {"digits[3-x]", "C(digits){1,0} L([3-x])"},
          {"digits[3--5]", "C(digits){1,0} L([3--5])"},
          {"digits[3-5-]", "C(digits){1,0} L([3-5-])"},
          {"digits[ 3]", "C(digits){1,0} L([ 3])"},
          {"digits [3]", "C(digits){1,0} L( [3])"},
          {"digits[4294967295]", "C(digits){max,max}"},
          {"digits[4294967296]", "C(digits){max,max}"},
          {"digits[99999999999999999999999]", "C(digits){max,max}"},
          {"digits[2][3]", "C(digits){2,2} L([3])"},
          {"!digits", "!C(digits){1,0}"},
          {R"(\!digits)", "L(!digits)"},
          {R"(!\digits)", "L(!digits)"},
          {R"(\\!digits)", R"(L(\) !C(digits){1,0})"},
          {R"(\\\!digits)", R"(L(\!digits))"},
          {"!!digits", "L(!) !C(digits){1,0}"},
          {R"(\digitsdigits)", "L(digits) C(digits){1,0}"},
          {"alphadigits[2]!digits",
           "C(alpha){1,0} C(digits){2,2} !C(digits){1,0}"},
          {"x'a'digits[2]?y", "L(x) H(a){1,0} C(digits){2,2} W(?){1,1} L(y)"},
          // The end of the previous construct limits the count of escapes.
          {R"(digits[2]\\alpha)", R"(C(digits){2,2} L(\) C(alpha){1,0})"},
      },
      true, false);
}

TEST(Compiler, ReadsCharacterLists) {
  expect_elements(
      {
          {"'a|b'[2]", "H(a,b){2,2}"},
          {"!'a'[2-3]", "!H(a){2,3}"},
          {R"(\'a')", "L('a')"},
          {"'ab'c'd'", "L('ab'c) H(d){1,0}"},
          {"''", "L('')"},
          {"'", "L(')"},
          {"'a", "L('a)"},
          {"''a'", "L(') H(a){1,0}"},
          {"'|'", "L('|')"},
          {"'a|'", "L('a|')"},
          {"'|a'", "L('|a')"},
          {R"('\|')", "H(|){1,0}"},
          {R"('\'')", "H('){1,0}"},
          {R"('\\')", R"(H(\){1,0})"},
          {R"('a|\||\\|b')", R"(H(a,|,\,b){1,0})"},
          {"'?'", "L(') W(?){1,1} L(')"},
          {R"('\?')", "H(?){1,0}"},
          {"'a|digits'", "L('a|) C(digits){1,0} L(')"},
          {"'a'[x", "H(a){1,0} L([x)"},
      },
      true, false);
}

TEST(Compiler, AnEscapeMakesOnlyTheMarkerLiteralTheListIsNotNegated) {
  expect_elements(
      {
          {R"(\!'a')", "L(!) H(a){1,0}"},
          {R"(\\!'a')", R"(L(\) !H(a){1,0})"},
          {R"(\!"a")", "L(!) S(a)"},
          {R"(\\!"a")", R"(L(\) !S(a))"},
      },
      true, false);
}

TEST(Compiler, ReadsStringLists) {
  expect_elements(
      {
          {R"("foo|bar"x)", "S(foo,bar) L(x)"},
          {R"("a b"c")", R"(L("a b) S(c))"},
          {"\"a\tb\"", "L(\"a<09>b\")"},
          {"\"a\x80\"", "S(a<80>)"},
          {R"(""a")", R"(L(") S(a))"},
          {R"("")", R"(L(""))"},
          {R"("foo?")", R"(L("foo) W(?){1,1} L("))"},
          {R"("foo\?|b\|c")", "S(foo?,b|c)"},
          {R"(!"foo|bar")", "!S(foo,bar)"},
          {R"(\"a")", R"(L("a"))"},
          {R"("a||b")", "S(a,b)"},
          {R"("|")", "S()"},
          {R"(!"|")", "!S()"},
          {R"('"')", R"(H("){1,0})"},
          {R"("it's|he's")", "S(it's,he's)"},
          {R"("a'b'c")", R"(L("a) H(b){1,0} L(c"))"},
          {R"("a\"b")", R"(S(a"b))"},
          // String lists take no count.
          {R"("a"[2])", "S(a) L([2])"},
      },
      true, false);
}

TEST(Compiler, ConvertsCaretsWhenAsked) {
  const std::vector<Case> patterns = {
      {"^M^J", "L(<0D><0A>)"}, {R"(\^M)", "L(^M)"}, {R"(\\^M)", R"(L(\<0D>))"},
      {"^[^]", "L(<1B>^])"},   {"^^M", "L(^<0D>)"}, {"^m", "L(^m)"},
      {R"(^\x)", "L(<1C>x)"},  {R"(a\b)", "L(ab)"},
  };
  // A literal text gives the same.
  expect_elements(patterns, true, true);
  expect_elements(patterns, false, true);
}

TEST(Compiler, LeavesLiteralTextsAlone) {
  expect_elements({{R"(^M\?digits"a")", R"(L(^M\?digits"a"))"}}, false, false);
  expect_elements({{R"(\)", ""}}, false, true);
}

TEST(Compiler, TakesTheShorterNameAtEqualPositions) {
  TestContext context;
  context.add_user_class(std::make_unique<CharClass>("digitsmore"));
  context.add_user_class(std::make_unique<CharClass>("dig"));
  context.add_user_class(std::make_unique<CharClass>(""));  // never found
  context.compile("digitsmore");
  EXPECT_EQ(spell_elements(context), "C(dig){1,0} L(itsmore)");
}

TEST(Compiler, CopiesClassesIntoElements) {
  TestContext context;
  context.compile("digits");
  context.clear_user_classes();
  EXPECT_EQ(spell_elements(context), "C(digits){1,0}");
  EXPECT_TRUE(static_cast<RunElement&>(*context.pattern.elements[0])
                  .counted()
                  .contains('7'));
}

TEST(CompileSearch, CombinesTheThreeTexts) {
  TestContext context;
  EXPECT_EQ(compile_search(context, {"a"}, {"b?", true}, {"c"}), 1);
  EXPECT_EQ(spell_elements(context), "L(a) L(b) W(?){1,1} L(c)");
  EXPECT_EQ(context.pattern.start_count, 1u);
  EXPECT_EQ(context.pattern.last_main, 2);
  EXPECT_EQ(context.pattern.main_end(), 3u);
}

TEST(CompileSearch, TakesEachTextsOwnFlags) {
  TestContext context;
  EXPECT_EQ(compile_search(context, {"^A?", true, false}, {"^A?", false, true},
                           {"^A?", true, true}),
            1);
  EXPECT_EQ(spell_elements(context),
            "L(^A) W(?){1,1} L(<01>?) L(<01>) W(?){1,1}");
}

TEST(CompileSearch, ClearsAndFailsOnAnEmptyMainText) {
  TestContext context;
  for (const char* main : {static_cast<const char*>(nullptr), ""}) {
    context.compile("abc");
    EXPECT_EQ(compile_search(context, {"a"}, {main}, {"b"}), -1);
    EXPECT_TRUE(context.pattern.empty());
    EXPECT_EQ(context.pattern.start_count, 0u);
    EXPECT_EQ(context.pattern.last_main, 0);
  }
}

TEST(CompileSearch, AnswersZeroWithoutElements) {
  TestContext context;
  EXPECT_EQ(context.compile("\\"), 0);
  EXPECT_FALSE(context.pattern.has_main());
}

TEST(CompileSearch, CountsMarkersOfAMainThatCompilesToNothing) {
  TestContext context;
  EXPECT_EQ(compile_search(context, {"a"}, {"\\", true}, {}), 1);
  EXPECT_EQ(spell_elements(context), "L(a)");
  EXPECT_FALSE(context.pattern.has_main());
  EXPECT_EQ(compile_search(context, {}, {"\\", true}, {"a"}), 1);
  EXPECT_FALSE(context.pattern.has_main());
  EXPECT_EQ(spell_elements(context), "L(a)");
}

TEST(CompileTag, JoinsTheTextsByAnyRun) {
  TestContext context;
  EXPECT_EQ(compile_tag(context, "<b>", "</b>", false, false, false), 1);
  EXPECT_EQ(spell_elements(context), "L(<b>) C(0-255){0,0} L(</b>)");
  EXPECT_EQ(context.pattern.last_main, 2);
  EXPECT_EQ(context.pattern.start_count, 0u);
  compile_tag(context, "<b>", "</b>", true, false, false);
  EXPECT_EQ(context.pattern.start_count, 1u);
  EXPECT_EQ(context.pattern.last_main, 2);
}

TEST(CompileTag, CountsAllElementsOfTheFirstText) {
  TestContext context;
  EXPECT_EQ(compile_tag(context, "a?^M", "digits", true, true, true), 1);
  EXPECT_EQ(spell_elements(context),
            "L(a) W(?){1,1} L(<0D>) C(0-255){0,0} C(digits){1,0}");
  EXPECT_EQ(context.pattern.start_count, 3u);
  EXPECT_EQ(context.pattern.last_main, 4);
}

TEST(CompileTag, ClearsAndFailsOnAnEmptyText) {
  TestContext context;
  struct {
    const char* first;
    const char* second;
  } cases[] = {{nullptr, "b"}, {"a", nullptr}, {"", "b"}, {"a", ""}};
  for (const auto& one : cases) {
    context.compile("abc");
    EXPECT_EQ(compile_tag(context, one.first, one.second, true, false, false),
              -1);
    EXPECT_TRUE(context.pattern.empty());
  }
}

}  // namespace
}  // namespace zenfo
