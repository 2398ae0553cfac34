// Patterns and texts made to waste time. Nothing is timed: the texts are so
// long that a search with quadratic time would exceed the time limit of the
// test.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::TestContext;

// Sanitizers make the work for a byte some ten times longer; work that grows
// with the square of a quarter of a megabyte would not end there either.
#if defined(ZENFO_ADDRESS_SANITIZER)
constexpr size_t kLength = size_t{256} << 10;
constexpr size_t kPatternPieces = 30000;
#else
constexpr size_t kLength = size_t{1} << 20;
constexpr size_t kPatternPieces = 100000;
#endif

std::string filled(std::string_view piece, std::string_view last = "") {
  std::string text;
  text.reserve(kLength + piece.size() + last.size());
  while (text.size() < kLength) text += piece;
  return text + std::string(last);
}

// How many matches both paths find; -2 when they disagree.
int32_t count(TestContext& context, const std::string& text,
              bool case_flag = true, bool whole_words = false) {
  FindOptions options{.case_flag = case_flag,
                      .whole_words = whole_words,
                      .store = false,
                      .path = SearchPath::kFast};
  const int32_t fast = find_all(context, text.data(), text.size(), options);
  options.path = SearchPath::kPlain;
  const int32_t plain = find_all(context, text.data(), text.size(), options);
  return fast == plain ? fast : -2;
}

int32_t count(const std::string& pattern, const std::string& text,
              bool case_flag = true) {
  TestContext context;
  if (context.compile(pattern.c_str()) != 1) return -3;
  return count(context, text, case_flag);
}

// Repeats a piece, to write long literals.
std::string times(std::string_view piece, size_t number) {
  std::string out;
  while (number-- > 0) out += piece;
  return out;
}

TEST(HostilePatterns, LongClassRunsBeforeALiteralThatRarelyComes) {
  const std::string run = filled("a", "<");
  EXPECT_EQ(count("alpha<", run), 1);
  EXPECT_EQ(count("alpha>", run), 0);
  EXPECT_EQ(count("alpha[2-]<", run), 1);
  EXPECT_EQ(count("alpha[3]<", run), 0);
  // Runs of five bytes: the rest decides.
  EXPECT_EQ(count("alpha[2-5]<", run), kLength % 5 >= 2 ? 1 : 0);
  EXPECT_EQ(count("alpha[99999999-]<", run), 0);
  EXPECT_EQ(count("alpha[0-]<", run), 1);
  EXPECT_EQ(count("!digits<", run), 1);
  EXPECT_EQ(count("alphadigits<", run), 0);
  EXPECT_EQ(count("digits[0-]alpha<", run), 1);
  EXPECT_EQ(count("alpha[1]digits<", run), 0);
  EXPECT_EQ(count("alpha[2]digits[0-]<", run), 1);
  EXPECT_EQ(count("a!'<'<", run), 1);
  // The literal is among the bytes of the class.
  EXPECT_EQ(count("alphaz", filled("a", "z")), 1);
  EXPECT_EQ(count("alphaa", filled("a")), 0);
}

TEST(HostilePatterns, RunsThatAreNeverLongEnough) {
  const std::string run = filled("a", " b");
  EXPECT_EQ(count("alpha[99999999]", run), 0);
  const auto number = [](size_t n) { return "[" + std::to_string(n) + "]"; };
  EXPECT_EQ(count("alpha" + number(kLength), run), 1);
  EXPECT_EQ(count("alpha" + number(kLength + 1), run), 0);
  EXPECT_EQ(count("aalpha" + number(kLength - 1), run), 1);
  EXPECT_EQ(count("aalpha" + number(kLength), run), 0);
  EXPECT_EQ(count("a'a'" + number(kLength) + "b", run), 0);
  EXPECT_EQ(count("'a'[0-1]alpha" + number(kLength), run), 0);
  EXPECT_EQ(count("alpha[1000000]digits", run), 0);
  EXPECT_EQ(count("alpha[1000]alpha[1000]digits", run), 0);
}

TEST(HostilePatterns, OverlappingPartialLiterals) {
  const std::string text = filled("a");
  EXPECT_EQ(count(times("a", 50) + "b", text), 0);
  EXPECT_EQ(count("b" + times("a", 50), text), 0);
  EXPECT_EQ(count(times("a", 1000) + "b" + times("a", 1000), text), 0);
  EXPECT_EQ(count(times("ab", 500) + "b", filled("ab")), 0);
  EXPECT_EQ(count(times("aB", 500) + "b", filled("Ab"), false), 0);
  EXPECT_EQ(count(times("a", 1024), text),
            static_cast<int32_t>(kLength / 1024));
  // Found at every byte, but nowhere with a digit before it.
  EXPECT_EQ(count("digits" + times("a", 50), text), 0);
  EXPECT_EQ(count(times("a", 50) + "digits", text), 0);
}

TEST(HostilePatterns, AlternativesThatSharePrefixes) {
  std::string list;
  for (size_t i = 1; i <= 40; ++i) list += "|" + times("a", i) + "b";
  list = "\"" + list.substr(1) + "\"";
  EXPECT_EQ(count(list, filled("a")), 0);
  EXPECT_EQ(count(list, filled("a", "b")), 1);
  EXPECT_EQ(count(list + "x", filled("ab")), 0);
  EXPECT_EQ(count(list + "x", filled("ab", "x")), 1);
  EXPECT_EQ(count(list + "digits", filled("ab")), 0);
  EXPECT_EQ(count("\"a|b|ab\"<", filled("ab", "<")), 1);
  EXPECT_EQ(count("alpha[1]\"a|b|ab\"<", filled("ab", "<")), 1);
}

TEST(HostilePatterns, LiteralPairsThatNeverTouch) {
  struct {
    const char* start;
    const char* main;
    const char* end;
    const char* text;
  } rows[] = {{"a", "b", "", "axb"},   {"aa", "b", "", "aaa"},
              {"a", "b", "c", "abxc"}, {"a", "b", "c", "a"},
              {"x", "z", "y", "xxxx"}, {"x!'x'[0-]y", "z", "", "x"}};
  for (const auto& row : rows) {
    TestContext context;
    ASSERT_EQ(compile_search(context, {row.start, true}, {row.main, true},
                             {row.end, true}),
              1);
    EXPECT_EQ(count(context, filled(row.text)), 0) << row.start << row.main;
    // The later ones occur once, far away.
    EXPECT_EQ(count(context, filled(row.text, "y-z-b-c")), 0)
        << row.start << row.main;
  }
}

TEST(HostilePatterns, CharLists) {
  const std::string text = filled("ab");
  EXPECT_EQ(count("'a|b'x", text), 0);
  EXPECT_EQ(count("'a|b'x", filled("ab", "x")), 1);
  EXPECT_EQ(count("'a|b'[3]x", filled("ab", "-x")), 0);
  EXPECT_EQ(count("'a'[1]'b'[1]'a'[1]x", filled("ab", "-x")), 0);
  EXPECT_EQ(count("!'x'x", filled("ab", "x")), 1);
  EXPECT_EQ(count("'A|B'[5-2]", text, false),
            static_cast<int32_t>(kLength / 2) - 2);
  EXPECT_EQ(count("'a|b''1'", text), 0);
}

TEST(HostilePatterns, Markers) {
  TestContext context;
  const auto compile = [&](const char* start, const char* main,
                           const char* end) {
    return compile_search(context, {start, true}, {main, true}, {end, true});
  };
  ASSERT_EQ(compile("<", "!'>'", ">"), 1);
  EXPECT_EQ(count(context, filled("<")), 0);
  EXPECT_EQ(count(context, filled("<", ">")), 1);
  EXPECT_EQ(count(context, filled("<>")), 0);
  ASSERT_EQ(compile("<!'>'", "x", "digits"), 1);
  EXPECT_EQ(count(context, filled("<", "x")), 0);
  EXPECT_EQ(count(context, filled("<x")), 0);
  ASSERT_EQ(compile("alpha", "digits", "<"), 1);
  EXPECT_EQ(count(context, filled("a", "<")), 0);
  EXPECT_EQ(count(context, filled("a1", "<")), 1);
  // A tag whose second text occurs once, at the end, or never.
  ASSERT_EQ(compile_tag(context, "<", ">", false, false, false), 1);
  EXPECT_EQ(count(context, filled("<")), 0);
  EXPECT_EQ(count(context, filled("<", ">")), 1);
  ASSERT_EQ(compile_tag(context, "<", "'1'", false, true, false), 1);
  EXPECT_EQ(count(context, filled("<")), 0);
}

TEST(HostilePatterns, NegatedStringLists) {
  const std::string text = filled("ab");
  EXPECT_EQ(count("!\"x|y\"", text), 1);
  EXPECT_EQ(count("!\"x|y\"z", text), 0);
  EXPECT_EQ(count("!\"x|y\"z", filled("ab", " z")), 0);
  EXPECT_EQ(count("a!\"x|y\"digits", text), 0);
  EXPECT_EQ(count("a!\"x|y\"digits", filled("ab", " z")), 0);
  EXPECT_EQ(count("a!\"x|y\"digitsz", filled("ab", " z")), 0);
  EXPECT_EQ(count("!\"ab|b\"", filled("b")), 0);
  EXPECT_EQ(count("alpha[1]!\"x\"digits", filled("ab", " z")), 0);
  EXPECT_EQ(count("alpha[1]!\"b\"z", filled("ab", "z")), 0);
}

TEST(HostilePatterns, Wildcards) {
  const std::string text = filled("a", "z");
  EXPECT_EQ(count("?z", text), 1);
  EXPECT_EQ(count("???", text), 0);
  EXPECT_EQ(count("a?z", text), 1);
  EXPECT_EQ(count("a?alpha", text), 1);
  EXPECT_EQ(count("?alphadigits", text), 0);
  EXPECT_EQ(count("?alpha[1]?digits?z", text), 0);
  EXPECT_EQ(count("?\"x|az\"?", text), 1);
}

TEST(HostilePatterns, MatchesThatAreDroppedForTheirNeighbours) {
  TestContext context;
  ASSERT_EQ(context.compile("aa"), 1);
  EXPECT_EQ(count(context, filled("a"), true, true), 0);
  ASSERT_EQ(context.compile("alpha"), 1);
  EXPECT_EQ(count(context, filled("a1"), true, true), 0);
}

// With polls and reports: attempts that are skipped are reported too.
int asked;
int32_t never_stop(void*) {
  ++asked;
  return 0;
}
int32_t no_report(ProgressRecord*) { return 1; }

TEST(HostilePatterns, UnderAHostThatListens) {
  TestContext context;
  context.set_interrupt_hook(never_stop);
  context.set_report_hook(no_report);
  asked = 0;
  struct {
    const char* pattern;
    const char* last;
  } rows[] = {{"alpha<", "<"},       {"alpha[9000000-]<", "<"},
              {"alphadigits<", "<"}, {"\"b|c\"<", "<"},
              {"'b'", ""},           {"?<", "<"},
              {"alpha", ""},         {"digits[2-]a", ""}};
  for (const auto& row : rows) {
    ASSERT_EQ(context.compile(row.pattern), 1);
    EXPECT_GE(count(context, filled("a", row.last)), 0) << row.pattern;
  }
  EXPECT_GT(asked, 0);
}

// Many areas: the work for each depends on its own bytes only.
TEST(HostilePatterns, ManyAreas) {
  constexpr uint32_t kAreas = kLength / 42;
  std::vector<pattern_test::Span> spans;
  for (uint32_t i = 0; i < kAreas; ++i) spans.push_back({i * 40, 20});
  TestContext areas;
  pattern_test::set_areas(areas, spans);
  const std::string text = filled("ab", "z");
  for (const char* pattern : {"z", "alphaz", "\"z|y\"", "digits"}) {
    TestContext context;
    ASSERT_EQ(context.compile(pattern), 1);
    for (const bool inside : {true, false}) {
      const int32_t found = find_all_by_areas(context, text.data(), text.size(),
                                              {.store = false}, &areas, inside);
      EXPECT_EQ(found, !inside && std::string_view(pattern) != "digits" ? 1 : 0)
          << pattern;
    }
  }
}

// ---- Long patterns ---------------------------------------------------------

TEST(HostilePatterns, LongPatternsCompile) {
  constexpr const char* kPieces[] = {
      "a",   "\\",   "\\\\", "\\?", "?",    "!?",    "'",    "''a",
      "'a'", "'ab'", "\"",   "\" ", "\"a|", "\"a\"", "!",    "\\!",
      "[",   "\\'",  "\\\"", "^",   "^M",   "\\^\\", "!'a'", "\\\\\\'"};
  for (const char* piece : kPieces) {
    TestContext context;
    const std::string pattern = times(piece, kPatternPieces);
    EXPECT_GE(context.compile(pattern.c_str(), true, true), 0) << piece;
  }
}

TEST(HostilePatterns, LongPatternsOfClassesCompile) {
  for (const char* piece : {"digits", "\\digits", "digits[", "digits[1", "dig",
                            "digits[2-3]", "!digits", "\\!alpha\\\\"}) {
    TestContext context;
    const std::string pattern = times(piece, kPatternPieces / 15);
    EXPECT_EQ(context.compile(pattern.c_str()), 1) << piece;
  }
}

}  // namespace
}  // namespace zenfo
