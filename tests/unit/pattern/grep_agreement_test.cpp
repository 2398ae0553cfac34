// The engine finds the same as grep, where both can express the search:
// literals with and without case, whole words, lists of literals of which none
// begins another, and a class run before a literal whose first byte is not in
// the class (so that grep's backtracking makes no difference).
//
// grep runs as a process, in the C locale, over a file of generated text; -o
// and -b make it print every match after its offset.
#include <gtest/gtest.h>

#ifdef __linux__

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/temp_folder.h"
#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::spell_matches;
using pattern_test::TestContext;

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  size_t below(size_t bound) { return engine_() % bound; }
  std::string some_of(std::string_view bytes, size_t least, size_t most) {
    std::string out;
    for (size_t n = least + below(most - least + 1); n > 0; --n) {
      out += bytes[below(bytes.size())];
    }
    return out;
  }

 private:
  std::mt19937 engine_;
};

// What `grep -ob OPTIONS` prints, as "(offset,length) ..." or "none".
class Grep {
 public:
  explicit Grep(std::string_view text) { test::write_file(text_file_, text); }

  std::string matches(const std::string& options,
                      const std::vector<std::string>& patterns) {
    std::string lines;
    for (const std::string& pattern : patterns) lines += pattern + "\n";
    test::write_file(pattern_file_, lines);
    const std::string command = "LC_ALL=C grep -aob " + options + " -f '" +
                                pattern_file_ + "' '" + text_file_ + "'";
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return "grep does not start";
    const std::string output = read_all(pipe);
    const int status = pclose(pipe);
    // 0: found, 1: nothing found.
    if (WEXITSTATUS(status) > 1) return "grep fails";
    return spell(output);
  }

 private:
  static std::string read_all(std::FILE* pipe) {
    std::string output;
    char buffer[4096];
    while (const size_t got = std::fread(buffer, 1, sizeof buffer, pipe)) {
      output.append(buffer, got);
    }
    return output;
  }

  // Lines of "offset:match".
  static std::string spell(const std::string& output) {
    std::string out;
    for (size_t at = 0; at < output.size();) {
      const size_t end = output.find('\n', at);
      const size_t colon = output.find(':', at);
      out += (out.empty() ? "(" : " (") + output.substr(at, colon - at) + "," +
             std::to_string(end - colon - 1) + ")";
      at = end + 1;
    }
    return out.empty() ? "none" : out;
  }

  test::TempFolder folder_;
  std::string text_file_ = test::join(folder_.path(), "text");
  std::string pattern_file_ = test::join(folder_.path(), "patterns");
};

// Few different bytes, so that there are many matches; with lines, zero bytes
// and high bytes.
std::string make_text(Random& random, size_t length) {
  constexpr std::string_view kBytes("aabbcABC0011 .-\n\xE9\x80\0", 18);
  std::string text;
  while (text.size() < length) text += random.some_of(kBytes, 1, 16);
  return text + "\n";
}

std::string found(TestContext& context, const std::string& text,
                  const FindOptions& options) {
  find_all(context, text.data(), text.size(), options);
  return spell_matches(context);
}

constexpr size_t kTextLength = 20000;
constexpr int kSearches = 60;

// Checks that there are enough matches for the agreement to mean something.
class Tally {
 public:
  void count(const std::string& matches) { ++(matches == "none" ? no_ : yes_); }
  ~Tally() { EXPECT_GT(yes_, no_); }

 private:
  int yes_ = 0;
  int no_ = 0;
};

TEST(GrepAgreement, Literals) {
  Random random(1);
  const std::string text = make_text(random, kTextLength);
  Grep grep(text);
  TestContext context;
  Tally tally;
  for (int i = 0; i < kSearches; ++i) {
    const std::string literal = random.some_of("aabbcABC01 .\xE9", 1, 4);
    ASSERT_EQ(context.compile(literal.c_str(), false), 1);
    const bool exact = random.below(2) == 0;
    const std::string expected = grep.matches(exact ? "-F" : "-Fi", {literal});
    ASSERT_EQ(found(context, text, {.case_flag = exact}), expected) << literal;
    tally.count(expected);
  }
}

// For grep an underscore is part of a word, so these texts contain none.
TEST(GrepAgreement, WholeWords) {
  Random random(2);
  const std::string text = make_text(random, kTextLength);
  Grep grep(text);
  TestContext context;
  Tally tally;
  for (int i = 0; i < kSearches; ++i) {
    const std::string literal = random.some_of("aabbcABC01", 1, 2);
    ASSERT_EQ(context.compile(literal.c_str(), false), 1);
    const bool exact = random.below(2) == 0;
    const std::string expected =
        grep.matches(exact ? "-Fw" : "-Fwi", {literal});
    ASSERT_EQ(found(context, text, {.case_flag = exact, .whole_words = true}),
              expected)
        << literal;
    tally.count(expected);
  }
}

bool is_prefix_free(const std::vector<std::string>& texts, bool exact) {
  const auto fold = [&](std::string text) {
    for (char& c : text) {
      if (!exact) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      }
    }
    return text;
  };
  for (const std::string& one : texts) {
    for (const std::string& other : texts) {
      if (&one != &other && fold(other).starts_with(fold(one))) return false;
    }
  }
  return true;
}

TEST(GrepAgreement, ListsOfLiterals) {
  Random random(3);
  const std::string text = make_text(random, kTextLength);
  Grep grep(text);
  TestContext context;
  Tally tally;
  for (int i = 0; i < kSearches; ++i) {
    const bool exact = random.below(2) == 0;
    std::vector<std::string> list;
    do {
      list.clear();
      for (size_t n = 2 + random.below(4); n > 0; --n) {
        list.push_back(random.some_of("aabbcABC01\xE9", 1, 4));
      }
    } while (!is_prefix_free(list, exact));
    std::string pattern;
    for (const std::string& one : list) pattern += "|" + one;
    pattern = "\"" + pattern.substr(1) + "\"";
    ASSERT_EQ(context.compile(pattern.c_str()), 1);
    const std::string expected = grep.matches(exact ? "-F" : "-Fi", list);
    ASSERT_EQ(found(context, text, {.case_flag = exact}), expected) << pattern;
    tally.count(expected);
  }
}

TEST(GrepAgreement, ClassRunBeforeALiteral) {
  struct {
    const char* name;
    const char* bracket;
    const char* others;  // first bytes of literals, none of the class
  } classes[] = {{"digits", "[0-9]", "abcABC .\xE9"},
                 {"alpha", "[A-Za-z]", "01 .\xE9"},
                 {"high", "[\x80-\xFF]", "abc01 ."},
                 {"'a|b'", "[ab]", "cC01 .\xE9"}};
  struct {
    const char* count;
    const char* repeat;
  } counts[] = {{"", "+"}, {"[1-]", "+"}, {"[2-]", "{2,}"}, {"[4-]", "{4,}"}};
  Random random(4);
  const std::string text = make_text(random, kTextLength);
  Grep grep(text);
  TestContext context;
  auto high = std::make_unique<CharClass>("high");
  high->add_include_range(0x80, 0xFF);
  context.add_user_class(std::move(high));
  Tally tally;
  for (const auto& one : classes) {
    for (const auto& count : counts) {
      for (int i = 0; i < kSearches / 10; ++i) {
        const std::string literal = random.some_of(one.others, 1, 1) +
                                    random.some_of("aabbcABC01", 0, 1);
        const std::string pattern =
            std::string(one.name) + count.count + literal;
        ASSERT_EQ(context.compile(pattern.c_str()), 1);
        std::string expression = std::string(one.bracket) + count.repeat;
        for (const char c : literal) expression += std::string("[") + c + "]";
        const std::string expected = grep.matches("-E", {expression});
        ASSERT_EQ(found(context, text, {}), expected) << expression;
        tally.count(expected);
      }
    }
  }
}

// Only runs: grep and the engine both take the longest from the left.
TEST(GrepAgreement, RunsWithAndWithoutBounds) {
  struct {
    const char* pattern;
    const char* expression;
  } rows[] = {{"digits", "[0-9]+"},
              {"digits[2]", "[0-9]{2}"},
              {"digits[2-3]", "[0-9]{2,3}"},
              {"alpha[3-]", "[A-Za-z]{3,}"},
              {"'a|0'[-2]", "[a0]{1,2}"}};
  Random random(5);
  const std::string text = make_text(random, kTextLength);
  Grep grep(text);
  TestContext context;
  for (const auto& row : rows) {
    ASSERT_EQ(context.compile(row.pattern), 1);
    const std::string expected = grep.matches("-E", {row.expression});
    ASSERT_EQ(found(context, text, {}), expected) << row.pattern;
    EXPECT_NE(expected, "none");
  }
}

}  // namespace
}  // namespace zenfo

#endif  // __linux__
