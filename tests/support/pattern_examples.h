// Worked examples of the pattern language as tables.
//
// The slow model and the engine are tested with the same rows. In expected
// elements L is a literal, C a class, W a wildcard run, H a char list, S a
// string list, a leading ! negation; control bytes are written <0D>.
//
// Used by tests/unit/model/pattern_model_test.cpp and tests/unit/pattern/
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace zenfo::examples {

// Definition file of the classes that every row uses.
inline constexpr std::string_view kClassFile =
    "name=digits\r\ninc_ranges=48-57\r\n"
    "name=alpha\r\ninc_ranges=65-90,97-122\r\n";

// ---- Compiler --------------------------------------------------------------

// A main text, read as a pattern without conversion, and its elements.
struct CompilerExample {
  std::string_view text;
  std::string_view elements;
};

inline constexpr CompilerExample kCompilerExamples[] = {
    // literals and wildcard runs
    {R"(abc\\d\e)", R"(L(abc\de))"},
    {R"(???)", R"(W(?){3,3})"},
    {R"(\???)", R"(L(???))"},
    {R"(\\???)", R"(L(\) W(?){3,3})"},
    {R"(!?)", R"(!W(?){1,1})"},
    {R"(\!?)", R"(L(!?))"},
    {R"(a??b)", R"(L(a) W(?){2,2} L(b))"},
    {R"(?[3])", R"(W(?){1,1} L([3]))"},
    // classes and counts
    {R"(digits)", R"(C(digits){1,0})"},
    {R"(DIGITS[3]x)", R"(C(digits){3,3} L(x))"},
    {R"(digits[2-5])", R"(C(digits){2,5})"},
    {R"(digits[2-])", R"(C(digits){2,0})"},
    {R"(digits[-5])", R"(C(digits){1,5})"},
    {R"(digits[0-])", R"(C(digits){0,0})"},
    {R"(digits[0])", R"(C(digits){0,0})"},
    {R"(digits[])", R"(C(digits){1,0})"},
    {R"(digits[-])", R"(C(digits){1,0})"},
    {R"(digits[3-2])", R"(C(digits){3,2})"},
    {R"(digits[a])", R"(C(digits){1,0} L([a]))"},
    {R"(digits[3)", R"(C(digits){1,0} L([3))"},
    {R"(digits[3-x])", R"(C(digits){1,0} L([3-x]))"},
    {R"(digits[3--5])", R"(C(digits){1,0} L([3--5]))"},
    {R"(digits[99999999999])", R"(C(digits){max,max})"},
    {R"(digits[2][3])", R"(C(digits){2,2} L([3]))"},
    {R"(!digits)", R"(!C(digits){1,0})"},
    {R"(\!digits)", R"(L(!digits))"},
    {R"(!\digits)", R"(L(!digits))"},
    {R"(\\!digits)", R"(L(\) !C(digits){1,0})"},
    {R"(!!digits)", R"(L(!) !C(digits){1,0})"},
    {R"(alphadigits[2]!digits)",
     R"(C(alpha){1,0} C(digits){2,2} !C(digits){1,0})"},
    {R"(x'a'digits[2]?y)", R"(L(x) H(a){1,0} C(digits){2,2} W(?){1,1} L(y))"},
    // char lists
    {R"('a|b'[2])", R"(H(a,b){2,2})"},
    {R"(!'a'[2-3])", R"(!H(a){2,3})"},
    {R"(\!'a')", R"(L(!) H(a){1,0})"},
    {R"(\'a')", R"(L('a'))"},
    {R"('ab'c'd')", R"(L('ab'c) H(d){1,0})"},
    {R"('')", R"(L(''))"},
    {R"(''a')", R"(L(') H(a){1,0})"},
    {R"('|')", R"(L('|'))"},
    {R"('\|')", R"(H(|){1,0})"},
    {R"('\'')", R"(H('){1,0})"},
    {R"('\\')", R"(H(\){1,0})"},
    {R"('?')", R"(L(') W(?){1,1} L('))"},
    {R"('\?')", R"(H(?){1,0})"},
    {R"('a|digits')", R"(L('a|) C(digits){1,0} L('))"},
    // string lists
    {R"("foo|bar"x)", R"(S(foo,bar) L(x))"},
    {R"("a b"c")", R"(L("a b) S(c))"},
    {R"(""a")", R"(L(") S(a))"},
    {R"("foo?")", R"(L("foo) W(?){1,1} L("))"},
    {R"("foo\?|b\|c")", R"(S(foo?,b|c))"},
    {R"(!"foo|bar")", R"(!S(foo,bar))"},
    {R"("a||b")", R"(S(a,b))"},
    {R"("|")", R"(S())"},
    {R"('"')", R"(H("){1,0})"},
    {R"("it's|he's")", R"(S(it's,he's))"},
    {R"("a'b'c")", R"(L("a) H(b){1,0} L(c"))"},
};

// More of the same, one row per rule that the rows above leave open.
inline constexpr CompilerExample kMoreCompilerExamples[] = {
    // escapes
    {R"(\)", ""},
    {R"(a\)", R"(L(a))"},
    {R"(a\\)", R"(L(a\))"},
    {R"(\\\???)", R"(L(\???))"},
    {R"(\??!?)", R"(L(??) !W(?){1,1})"},
    {R"(?\?)", R"(W(?){1,1} L(?))"},
    {R"(?!?)", R"(W(?){1,1} !W(?){1,1})"},
    {R"(!??)", R"(!W(?){2,2})"},
    {R"(\!??a)", R"(L(!??a))"},
    {R"(\digitsdigits)", R"(L(digits) C(digits){1,0})"},
    {R"(a\digits[2]b)", R"(L(adigits[2]b))"},
    {R"(digits\\digits)", R"(C(digits){1,0} L(\) C(digits){1,0})"},
    {R"(\\\!digits)", R"(L(\!digits))"},
    {R"(!\\digits)", R"(L(!\) C(digits){1,0})"},
    {R"(\\!?)", R"(L(\) !W(?){1,1})"},
    {R"(\\'a')", R"(L(\) H(a){1,0})"},
    {R"(\\!'a')", R"(L(\) !H(a){1,0})"},
    {R"(\"a")", R"(L("a"))"},
    {R"(\\"a")", R"(L(\) S(a))"},
    {R"(\!"a")", R"(L(!) S(a))"},
    {R"(\\!"a")", R"(L(\) !S(a))"},
    // a marker never reaches into the construct before
    {R"(digits!)", R"(C(digits){1,0} L(!))"},
    {R"(digits[2]!?)", R"(C(digits){2,2} !W(?){1,1})"},
    {R"('a'!'b'!"c"!?)", R"(H(a){1,0} !H(b){1,0} !S(c) !W(?){1,1})"},
    // counts
    {R"(digits[4294967295])", R"(C(digits){max,max})"},
    {R"(digits[4294967294])", R"(C(digits){4294967294,4294967294})"},
    {R"(digits[4294967296-18446744073709551617])", R"(C(digits){max,max})"},
    {R"(digits[007])", R"(C(digits){7,7})"},
    {R"(digits[0-0])", R"(C(digits){0,0})"},
    {R"(digits[1-2-3])", R"(C(digits){1,0} L([1-2-3]))"},
    {R"(digits[--])", R"(C(digits){1,0} L([--]))"},
    {R"(digits[ 3])", R"(C(digits){1,0} L([ 3]))"},
    {R"(digits[+3])", R"(C(digits){1,0} L([+3]))"},
    {R"(digits[-5)", R"(C(digits){1,0} L([-5))"},
    {R"(digits[)", R"(C(digits){1,0} L([))"},
    {R"(digits [3])", R"(C(digits){1,0} L( [3]))"},
    {R"(digits\[3])", R"(C(digits){1,0} L([3]))"},
    {R"(digits[digits])", R"(C(digits){1,0} L([) C(digits){1,0} L(]))"},
    {R"('a'[?])", R"(H(a){1,0} L([) W(?){1,1} L(]))"},
    {R"('a'[2-])", R"(H(a){2,0})"},
    {R"('a'[x])", R"(H(a){1,0} L([x]))"},
    {R"("a"[2])", R"(S(a) L([2]))"},
    // char lists
    {R"(''')", R"(L('''))"},
    {R"('''a')", R"(L('') H(a){1,0})"},
    {R"('a)", R"(L('a))"},
    {R"('a\')", R"(L('a'))"},
    {R"('a|')", R"(L('a|'))"},
    {R"('|a')", R"(L('|a'))"},
    {R"('a||b')", R"(L('a||b'))"},
    {R"('\a|\b')", R"(H(a,b){1,0})"},
    {R"('a|a')", R"(H(a,a){1,0})"},
    {R"(' | ')", R"(H( , ){1,0})"},
    {R"('a\|b')", R"(L('a|b'))"},
    {R"('a|\||b')", R"(H(a,|,b){1,0})"},
    {R"('ab''c')", R"(L('ab') H(c){1,0})"},
    {R"('ab'!'c')", R"(L('ab') !H(c){1,0})"},
    {R"('ab'c!'d')", R"(L('ab'c) !H(d){1,0})"},
    // string lists
    {R"("")", R"(L(""))"},
    {R"(""")", R"(L("""))"},
    {R"("a)", R"(L("a))"},
    {R"("a\")", R"(L("a"))"},
    {R"("a\"b")", R"(S(a"b))"},
    {R"("\a|\\")", R"(S(a,\))"},
    {R"("a|\\|b")", R"(S(a,\,b))"},
    {R"("||")", R"(S())"},
    {R"("|a|")", R"(S(a))"},
    {R"(!"|")", R"(!S())"},
    {"\"a\tb\"c\"", "L(\"a<09>b) S(c)"},
    {R"(x"a"y"b"z)", R"(L(x) S(a) L(y) S(b) L(z))"},
    {R"("a!"b")", R"(S(a!) L(b"))"},
    {R"("a "!"b")", R"(L("a ) S(!) L(b"))"},
    // a list in quotes is broken by a construct of an earlier level
    {R"("a|digits")", R"(L("a|) C(digits){1,0} L("))"},
    {R"("a|\digits")", R"(S(a,digits))"},
    {R"('"'a'"')", R"(H("){1,0} L(a) H("){1,0})"},
};

// A main text with caret names: converted, as a literal with conversion (the
// only literal), as a pattern with conversion.
struct CaretExample {
  std::string_view text;
  std::string_view converted;
  std::string_view literal;
  std::string_view pattern_elements;
};

inline constexpr CaretExample kCaretExamples[] = {
    {R"(^M^J)", "\x0D\x0A", "\x0D\x0A", "L(<0D><0A>)"},
    {R"(\^M)", R"(\^M)", "^M", "L(^M)"},
    {R"(\\^M)", "\\\\\x0D", "\\\x0D", R"(L(\<0D>))"},
    {R"(^[^])", "\x1B^]", "\x1B^]", "L(<1B>^])"},
    {R"(^^M)", "^\x0D", "^\x0D", "L(^<0D>)"},
    {R"(^m)", "^m", "^m", "L(^m)"},
    {R"(^\x)", "\x1Cx", "\x1Cx", "L(<1C>x)"},
    {R"(a\b)", R"(a\b)", "ab", "L(ab)"},
    // after an escaped name the pass continues one byte on, after a replaced
    // one at its end
    {R"(\^^^)", "\\^\x1E", "^\x1E", "L(^<1E>)"},
    {R"(^^^^)", "\x1E\x1E", "\x1E\x1E", "L(<1E><1E>)"},
    {R"(^\^\)", "\x1C\x1C", "\x1C\x1C", "L(<1C><1C>)"},
    {R"(^\^M)", "\x1C^M", "\x1C^M", "L(<1C>^M)"},
    {R"(\\\^A)", R"(\\\^A)", R"(\^A)", R"(L(\^A))"},
    {R"(^@^_)", "^@\x1F", "^@\x1F", "L(^@<1F>)"},
};

// Three texts, or the two of a tag, and their elements.
struct CombinedExample {
  std::string_view start;
  std::string_view main;
  std::string_view end;
  bool start_is_pattern;
  bool main_is_pattern;
  bool end_is_pattern;
  int result;
  std::string_view elements;
  size_t start_count;
  ptrdiff_t last_main;
};

inline constexpr CombinedExample kCombinedExamples[] = {
    {"a", "b?", "c", false, true, false, 1, "L(a) L(b) W(?){1,1} L(c)", 1, 2},
    {"", "b?", "", false, true, false, 1, "L(b) W(?){1,1}", 0, 1},
    {"'a'?", "b", "?", true, true, true, 1,
     "H(a){1,0} W(?){1,1} L(b) W(?){1,1}", 2, 2},
    {"a?", R"(b\?)", R"(c\)", false, false, false, 1, R"(L(a?) L(b\?) L(c\))",
     1, 1},
    {"", R"(\)", "", false, true, false, 0, "", 0, -1},
    {"a", R"(\)", "", false, true, false, 1, "L(a)", 1, 0},
    {"", R"(\)", "a", false, true, false, 1, "L(a)", 0, -1},
    {"a", "", "c", false, true, false, -1, "", 0, 0},
};

struct TagExample {
  std::string_view first;
  std::string_view second;
  bool count_start;
  bool is_pattern;
  int result;
  std::string_view elements;
  size_t start_count;
  ptrdiff_t last_main;
};

inline constexpr TagExample kTagExamples[] = {
    {"<b>", "</b>", false, false, 1, "L(<b>) C(0-255){0,0} L(</b>)", 0, 2},
    {"<b>", "</b>", true, false, 1, "L(<b>) C(0-255){0,0} L(</b>)", 1, 2},
    {"<b>", "</b>", true, true, 1, "L(<b>) C(0-255){0,0} L(</b>)", 1, 2},
    {"<?", "'a'x", true, true, 1, "L(<) W(?){1,1} C(0-255){0,0} H(a){1,0} L(x)",
     2, 4},
    {"<?", "'a'x", true, false, 1, "L(<?) C(0-255){0,0} L('a'x)", 1, 2},
    {R"(\)", R"(\)", true, true, 1, "C(0-255){0,0}", 0, 0},
    {"", "b", true, true, -1, "", 0, 0},
    {"a", "", true, true, -1, "", 0, 0},
};

// ---- Matcher ---------------------------------------------------------------

struct Span {
  size_t offset;
  size_t length;
};

// Spans, or areas, in a row. Too many do not compile.
class Spans {
 public:
  constexpr Spans(std::initializer_list<Span> spans) {
    for (const Span& span : spans) spans_[size_++] = span;
  }
  constexpr const Span* begin() const { return spans_; }
  constexpr const Span* end() const { return spans_ + size_; }
  constexpr size_t size() const { return size_; }

 private:
  Span spans_[8] = {};
  size_t size_ = 0;
};

enum class Where { kEverywhere, kInside, kOutside };
enum class Texts { kMain, kStartMain, kMainEnd, kAll, kTag, kTagCountStart };

// Texts are read as patterns. The first text is the start marker or the first
// text of a tag, the third the end marker or the second text of a tag.
struct MatcherExample {
  Texts texts = Texts::kMain;
  std::string_view start = {};
  std::string_view main = {};
  std::string_view end = {};
  bool convert = false;
  bool exact_case = true;
  bool whole_words = false;
  uint32_t maximum = 0;
  Where where = Where::kEverywhere;
  Spans areas = {};
  std::string_view text = {};
  Spans matches = {};
};

using namespace std::string_view_literals;

inline constexpr MatcherExample kMatcherExamples[] = {
    // literals, case, whole words, maximum
    {.main = "cat",
     .exact_case = false,
     .whole_words = true,
     .text = "cat concat cat_ cat1",
     .matches = {{0, 3}, {11, 3}}},
    {.main = "cat",
     .maximum = 2,
     .text = "cat concat cat",
     .matches = {{0, 3}, {7, 3}}},
    {.main = "ABC",
     .exact_case = false,
     .text = "xabcAbC",
     .matches = {{1, 3}, {4, 3}}},
    {.main = "aa", .text = "aaaaa", .matches = {{0, 2}, {2, 2}}},
    // classes and counts
    {.main = "digits", .text = "ab12,345", .matches = {{2, 2}, {5, 3}}},
    {.main = "digits[3]", .text = "12a345b6789", .matches = {{3, 3}, {7, 3}}},
    {.main = "digits[0-]", .text = "a12b", .matches = {{1, 2}}},
    {.main = "digits[3-2]",
     .text = "12 123 12345",
     .matches = {{3, 2}, {7, 2}, {9, 2}}},
    {.main = "digitsx", .text = "ab12x 3x x", .matches = {{2, 3}, {6, 2}}},
    {.main = "digits[3]x", .text = "12a345x", .matches = {{3, 4}}},
    {.main = "digits[3]x", .text = "12345x"},
    {.main = "digits[3]x", .text = "123456x", .matches = {{3, 4}}},
    {.main = "digits[1-2]x", .text = "123x", .matches = {{2, 2}}},
    {.main = "alphax", .text = "axbx", .matches = {{0, 2}, {2, 2}}},
    {.main = "alphax", .text = "xx"},
    {.main = "aalphab", .text = "ab acb abcb", .matches = {{3, 3}}},
    {.main = "<alphadigits>",
     .text = "<ab12><ab><c3>",
     .matches = {{0, 6}, {10, 4}}},
    {.main = "<alpha>", .text = "<ab<abc>", .matches = {{3, 5}}},
    {.main = "<alpha[3-]>", .text = "<ab<abc>"},
    {.main = "alphadigits;", .text = "ab12;c;d3;", .matches = {{0, 5}, {7, 3}}},
    // where the search goes on after a failure
    {.main = "digits[2]alphax", .text = "123abx", .matches = {{1, 5}}},
    {.main = "digits[3]alpha", .text = "12345ab", .matches = {{2, 5}}},
    {.main = "digitsalpha", .text = "12ab3c 4", .matches = {{0, 4}, {4, 2}}},
    {.main = "abcdigits", .text = "abcabc1 abc", .matches = {{3, 4}}},
    {.main = "adigits[2]", .text = "a1a23", .matches = {{2, 3}}},
    {.main = "bdigits[0-]", .text = "bb1 b22", .matches = {{0, 1}, {4, 3}}},
    // char lists
    {.main = "!'a'[2-3]", .text = "bcdeafg", .matches = {{0, 3}, {5, 2}}},
    {.main = "'a|b'[2]", .text = "aabba", .matches = {{0, 2}, {2, 2}}},
    {.main = "'a|b'", .exact_case = false, .text = "xABy", .matches = {{1, 2}}},
    {.main = "'a|b'", .text = "xABy"},
    // wildcard runs
    {.main = "???", .text = "abcdef"},
    {.main = "a?b", .text = "axb ab a b", .matches = {{4, 2}}},
    {.main = "?b", .text = "abb", .matches = {{1, 1}, {2, 1}}},
    {.main = "b?", .text = "abbb", .matches = {{1, 1}, {2, 1}, {3, 1}}},
    {.main = "?digitsb", .text = "1b22b", .matches = {{0, 2}, {2, 3}}},
    // string lists
    {.main = R"("foo|bar"x)",
     .text = "foo foox barx",
     .matches = {{4, 4}, {9, 4}}},
    {.main = R"("a|ab")", .text = "aabab", .matches = {{0, 1}, {1, 2}, {3, 2}}},
    {.main = R"("ab|a")", .text = "aabab", .matches = {{0, 1}, {1, 1}, {3, 1}}},
    {.main = R"(!"foo|bar")",
     .text = "xxfoo yy bar",
     .matches = {{0, 2}, {3, 2}, {6, 2}, {10, 2}}},
    // markers and tags
    {.texts = Texts::kStartMain,
     .start = "a",
     .main = "b",
     .text = "axaxb ab",
     .matches = {{7, 1}}},
    {.texts = Texts::kStartMain,
     .start = "aa",
     .main = "b",
     .text = "aaab aab",
     .matches = {{7, 1}}},
    {.texts = Texts::kStartMain,
     .start = "digits",
     .main = "x",
     .text = "12x ax 7x",
     .matches = {{2, 1}, {8, 1}}},
    {.texts = Texts::kMainEnd,
     .main = "x",
     .end = "digits",
     .text = "x1x22 xx3",
     .matches = {{0, 1}, {2, 1}, {7, 1}}},
    {.texts = Texts::kAll,
     .start = "<b>",
     .main = "!'<'",
     .end = "</b>",
     .text = "<b>hi</b><b></b><b>yo</b>",
     .matches = {{3, 2}, {19, 2}}},
    {.texts = Texts::kTag,
     .start = "<b>",
     .end = "</b>",
     .text = "<b>hi</b><b></b><b>yo</b>",
     .matches = {{0, 9}, {9, 7}, {16, 9}}},
    {.texts = Texts::kTagCountStart,
     .start = "<b>",
     .end = "</b>",
     .text = "<b>hi</b><b></b><b>yo</b>",
     .matches = {{3, 6}, {12, 4}, {19, 6}}},
    {.texts = Texts::kTag,
     .start = "(",
     .end = ")",
     .text = "((a)b)",
     .matches = {{0, 4}}},
    {.main = "^M^J",
     .convert = true,
     .text = "a\r\nb\n\r\n",
     .matches = {{1, 2}, {5, 2}}},
    // areas
    {.main = "ab",
     .where = Where::kInside,
     .areas = {{3, 3}},
     .text = "abcabcab",
     .matches = {{3, 2}}},
    {.main = "ab",
     .where = Where::kOutside,
     .areas = {{3, 3}},
     .text = "abcabcab",
     .matches = {{0, 2}, {6, 2}}},
    {.main = "ab", .where = Where::kOutside, .areas = {{1, 2}}, .text = "abab"},
    {.main = "ab",
     .where = Where::kOutside,
     .areas = {{0, 4}, {2, 4}},
     .text = "abababab",
     .matches = {{6, 2}}},
    {.main = "ab",
     .where = Where::kOutside,
     .text = "abab",
     .matches = {{0, 2}, {2, 2}}},
    {.main = "ab", .where = Where::kInside, .text = "abab"},
    {.main = "digits[1-2]",
     .where = Where::kInside,
     .areas = {{1, 3}},
     .text = "12345",
     .matches = {{1, 2}, {3, 1}}},
    {.main = "cat",
     .whole_words = true,
     .where = Where::kInside,
     .areas = {{3, 3}, {7, 3}},
     .text = "concat cat",
     .matches = {{7, 3}}},
};

// More of the same, one row per rule that the rows above leave open.
inline constexpr MatcherExample kMoreMatcherExamples[] = {
    // whole words: dropped matches are not counted, but use up their bytes
    {.main = "cat",
     .whole_words = true,
     .maximum = 1,
     .text = "xcat cat cat",
     .matches = {{5, 3}}},
    {.main = "'a|b'[2]",
     .whole_words = true,
     .text = "aab ab",
     .matches = {{4, 2}}},
    {.main = "cat",
     .whole_words = true,
     .text = "cat\xE9 \xE9"
             "cat",
     .matches = {{0, 3}, {6, 3}}},
    // the case flag reaches literals, char lists, string lists, not classes
    {.main = R"("foo|bar")",
     .exact_case = false,
     .text = "FoO BAR",
     .matches = {{0, 3}, {4, 3}}},
    {.main = R"("foo|bar")", .text = "FoO BAR"},
    {.main = "!'a'", .exact_case = false, .text = "xAa", .matches = {{0, 1}}},
    {.main = "\xC0",
     .exact_case = false,
     .text = "\xE0\xC0",
     .matches = {{1, 1}}},
    // a maximum below the minimum: cut as soon as the run goes beyond it, if
    // the bytes that the minimum wants are left
    {.main = "digits[5-2]", .text = "123ab", .matches = {{0, 2}}},
    {.main = "digits[5-2]", .text = "1234"},
    {.main = "digits[-2]",
     .text = "12345",
     .matches = {{0, 2}, {2, 2}, {4, 1}}},
    {.main = "digits[99999999999]", .text = "12345"},
    {.main = "!digits[2]", .text = "abc1de", .matches = {{0, 2}, {4, 2}}},
    // a gap that ends short goes on where its last element stopped
    {.main = "digits[2]x", .text = "123x"},
    {.main = "digits[2]x", .text = "1234x", .matches = {{2, 3}}},
    {.main = "?x", .text = "aax", .matches = {{2, 1}}},
    // a failing gap element that took something is skipped with one byte more
    {.main = "digits[3]x", .text = "1a345x", .matches = {{2, 4}}},
    {.main = "<digits[3]>", .text = "<12<345>"},
    {.main = "<digits[3]>", .text = "<12 <345>", .matches = {{4, 5}}},
    // and to after the literal when it stopped there
    {.main = "digits[0-]'a'x", .text = "12x3ax", .matches = {{3, 3}}},
    // the resume word of a run that was cut, in gap and tail
    {.main = "digits[2]'a'[2]", .text = "123aa", .matches = {{1, 4}}},
    {.main = "xdigits[2]'a'", .text = "x123a x12a", .matches = {{6, 4}}},
    {.main = "digits[2]?'a'", .text = "123a", .matches = {}},
    // which never lies before the place of the run
    {.main = "aaalpha[1]digits", .text = "aaab1"},
    // a failing element of a gap or of the tail that took nothing is tried
    // again at the same position, unless it is the first
    {.main = "b'c'b", .text = "bbcb", .matches = {{1, 3}}},
    {.main = "a'b'", .text = "aab", .matches = {{1, 2}}},
    // at the start of the attempt it is skipped with all that it took
    {.main = "digits[0-1]alpha[2]", .text = "a1bc", .matches = {{2, 2}}},
    // the last element without a length pushes the next attempt one byte on
    {.main = "adigits[0-]", .text = "aaa", .matches = {{0, 1}, {2, 1}}},
    {.main = "adigits[0-]?",
     .text = "aaa",
     .matches = {{0, 1}, {1, 1}, {2, 1}}},
    // matches of length 0 are dropped
    {.main = "digits[0-]", .text = "abc"},
    {.main = "?", .text = "abc"},
    {.texts = Texts::kStartMain, .start = "a", .main = "?", .text = "aaa"},
    // a wildcard as first main element is where the one before ended
    {.texts = Texts::kAll,
     .start = "<",
     .main = "?a",
     .end = ">",
     .text = "<a> <ba>",
     .matches = {{1, 1}}},
    // a wildcard after a literal start marker lets the literals touch
    {.main = "a?b", .text = "aab", .matches = {{1, 2}}},
    // adjacent literals: on after the first literal of the pattern
    {.texts = Texts::kAll,
     .start = "a",
     .main = "b",
     .end = "c",
     .text = "abxc abc",
     .matches = {{6, 1}}},
    {.texts = Texts::kAll,
     .start = "a",
     .main = "a",
     .end = "b",
     .text = "aaab",
     .matches = {{2, 1}}},
    {.texts = Texts::kStartMain,
     .start = "x!'x'y",
     .main = "z",
     .text = "xayz xay z",
     .matches = {{3, 1}}},
    {.texts = Texts::kStartMain,
     .start = "x!'x'y",
     .main = "z",
     .text = "xay xbyz",
     .matches = {{7, 1}}},
    // string lists
    {.main = R"("|")", .text = "abc"},
    {.main = R"(!"|")", .text = "ab c", .matches = {{0, 2}, {3, 1}}},
    {.main = R"(a!"x")", .text = "a ax a"},
    {.main = R"(!"b"x)", .text = "aax", .matches = {{0, 3}}},
    {.main = R"("foo"bar)", .text = "foofoobar", .matches = {{3, 6}}},
    {.main = R"("foobar|foo"bar)", .text = "foobar", .matches = {{0, 6}}},
    {.main = R"(!"a")", .text = "\x80\xFF a"sv, .matches = {{0, 2}}},
    // bytes: NUL is an ordinary one, 0x80 is above the blanks
    {.texts = Texts::kTag,
     .start = "a",
     .end = "b",
     .text = "a\0\xFF"
             "b"sv,
     .matches = {{0, 4}}},
    {.main = "!alpha", .text = "a\0\x80z"sv, .matches = {{1, 2}}},
    // a match needs a main element
    {.texts = Texts::kStartMain, .start = "a", .main = R"(\)", .text = "aaa"},
    {.texts = Texts::kMainEnd, .main = R"(\)", .end = "a", .text = "aaa"},
    // areas are taken as they come and cut to the text
    {.main = "a",
     .where = Where::kInside,
     .areas = {{2, 2}, {0, 2}},
     .text = "aaaa",
     .matches = {{2, 1}, {3, 1}, {0, 1}, {1, 1}}},
    {.main = "a",
     .where = Where::kInside,
     .areas = {{0, 1}, {0, 1}},
     .text = "aa",
     .matches = {{0, 1}, {0, 1}}},
    {.main = "a",
     .where = Where::kInside,
     .areas = {{1, 4294967295}, {9, 9}},
     .text = "aaa",
     .matches = {{1, 1}, {2, 1}}},
    {.main = "a",
     .where = Where::kOutside,
     .areas = {{1, 4294967295}, {9, 9}},
     .text = "aaa",
     .matches = {{0, 1}}},
    {.main = "a",
     .where = Where::kOutside,
     .areas = {{2, 1}, {0, 1}},
     .text = "aaaa",
     .matches = {{0, 1}, {1, 1}, {3, 1}}},
    {.main = "a",
     .where = Where::kOutside,
     .areas = {{1, 0}},
     .text = "aa",
     .matches = {{0, 1}, {1, 1}}},
    {.main = "a",
     .maximum = 3,
     .where = Where::kInside,
     .areas = {{0, 2}, {2, 2}, {4, 2}},
     .text = "aaaaaa",
     .matches = {{0, 1}, {1, 1}, {2, 1}}},
    {.main = "a",
     .maximum = 2,
     .where = Where::kOutside,
     .areas = {{1, 1}},
     .text = "aaaaaa",
     .matches = {{0, 1}, {2, 1}}},
    // a literal missing from one area does not end the others
    {.main = "ab",
     .where = Where::kInside,
     .areas = {{0, 2}, {2, 2}},
     .text = "xxab",
     .matches = {{2, 2}}},
    {.main = "cat",
     .whole_words = true,
     .where = Where::kOutside,
     .areas = {{0, 3}},
     .text = "concat cat",
     .matches = {{7, 3}}},
};

}  // namespace zenfo::examples
