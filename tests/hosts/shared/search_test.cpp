// Names and counts of lines, which find gets from a shorter search, compared
// with the lines that it shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/process.h"
#include "shared/session/search.h"
#include "support/sweep.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using Arguments = std::vector<std::string>;

std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class LessThanShown : public testing::TestWithParam<Arguments> {
 protected:
  static constexpr int kFiles = 60;

  // Short lines of few different bytes, so that there are many near matches.
  LessThanShown() {
    const std::string bytes = "aaabbA12 x\n\n\r\x01";
    std::mt19937 random(11);
    for (int file = 0; file < kFiles; ++file) {
      std::string text;
      for (size_t n = random() % 120; n > 0; --n) {
        text += bytes[random() % bytes.size()];
      }
      folder_.file("f" + std::to_string(file), text);
    }
  }

  std::string find(Arguments options) const {
    options.insert(options.begin(), "find");
    options.insert(options.end(), GetParam().begin(), GetParam().end());
    options.push_back(".");
    const Outcome outcome = run_zenfo(options, folder_.path());
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.status, 2);
    return outcome.out;
  }

  // The number of lines shown for each file.
  std::map<std::string, int> shown_lines() const {
    std::map<std::string, int> lines;
    for (const std::string& line : lines_of(find({"-arH"}))) {
      ++lines[line.substr(0, line.find(':'))];
    }
    return lines;
  }

  // The counts above 0.
  std::map<std::string, int> counted_lines(Arguments options) const {
    std::map<std::string, int> counted;
    for (const std::string& line : lines_of(find(std::move(options)))) {
      const size_t colon = line.find(':');
      const int count = std::stoi(line.substr(colon + 1));
      if (count > 0) counted[line.substr(0, colon)] = count;
    }
    return counted;
  }

  TempFolder folder_;
};

TEST_P(LessThanShown, AgreesWithTheLinesThatAreShown) {
  const std::map<std::string, int> shown = shown_lines();
  EXPECT_FALSE(shown.empty()) << "the texts are chosen to be there";
  EXPECT_EQ(counted_lines({"-rc"}), shown);
  std::map<std::string, int> most_two = shown;
  for (auto& [path, lines] : most_two) lines = std::min(lines, 2);
  EXPECT_EQ(counted_lines({"-rc", "-m2"}), most_two);
  const std::vector<std::string> with = lines_of(find({"-rl"}));
  EXPECT_EQ(with.size(), shown.size());
  for (const std::string& path : with) EXPECT_TRUE(shown.contains(path));
  const std::vector<std::string> without = lines_of(find({"-rL"}));
  EXPECT_EQ(with.size() + without.size(), size_t{kFiles});
  for (const std::string& path : without) EXPECT_FALSE(shown.contains(path));
}

const Arguments kSearches[] = {
    {"a"},
    {"ab"},
    {"-i", "ab"},
    {"-w", "a"},
    {"-w", "ab"},
    {"a\n"},
    {"a\nb"},
    {"--caret", "b^J"},
    {"--caret", "^M^J"},
    {"--start", "\n", "a"},
    {"--start", "a", "b"},
    {"--end", "\n", "a"},
    {"--end", "b", "a"},
    {"--inside", "'a|b'", "ab"},
    {"--outside", "x", "ab"},
    {"--between", "a", "b"},
    {"-e", "ab", "-e", "x"},
    {"-e", "a", "-e", "ab", "-e", "bb"},
    {"-i", "-e", "AB", "-e", "x 1"},
    {"-w", "-e", "ab", "-e", "x"},
    {"-e", "a\n", "-e", "x"},
    {"-e", "\"", "-e", "'", "-e", "ab"},
    {"-e", "a|b", "-e", "!", "-e", "?", "-e", "\\", "-e", "12"},
    {"--caret", "-e", "b^J", "-e", "12"},
    {"--pattern", "-e", "'a|b'x", "-e", "12"},
    {"--pattern", "'a|b'"},
    {"--pattern", "'1|2'a"},
    {"--pattern", "'a|b'[2]"},
    {"--pattern", "'a|b'[-2]x"},
    {"--pattern", "a'1|2'[0-]"},
    {"--pattern", "\"ab|12\""},
    {"--pattern", "'a'[0-]"},
    {"--pattern", "'a|b'[0-1]"},
    {"--pattern", "?'x|a'[0-1]b"},
    {"--pattern", "'A'[0-]'a|b'[2]"},
    {"--pattern", "-i", "\"ab|12\"'a|b'"},
    {"--pattern", "!'a|b'"},
    {"--pattern", "!'a'[3]"},
    {"--pattern", "a?b"},
    {"--pattern", "a?"},
    {"--pattern", "'a|\n'"},
    {"--pattern", "--caret", "'a|^J'b"},
};

// Programs start slowly under Wine and with sanitizers.
#if defined(_WIN32) || defined(ZENFO_SANITIZED_PROGRAM)
constexpr int kSearchStep = 4;
#else
constexpr int kSearchStep = 1;
#endif

std::vector<Arguments> sampled_searches() {
  const Sweep sweep(kSearchStep);
  std::vector<Arguments> searches;
  for (size_t i = static_cast<size_t>(sweep.first() - 1);
       i < std::size(kSearches); i += static_cast<size_t>(sweep.step())) {
    searches.push_back(kSearches[i]);
  }
  return searches;
}

INSTANTIATE_TEST_SUITE_P(Searches, LessThanShown,
                         testing::ValuesIn(sampled_searches()));

// The output does not show which searches were shortened, so these test the
// functions.
host::SearchOptions options_for(const std::string& text) {
  host::SearchOptions options;
  options.texts = {text};
  return options;
}

TEST(SearchOnceALine, IsForMatchesThatStayInTheirLines) {
  for (const char* text : {"a", "a!b?#", "a^J"}) {
    host::SearchOptions options = options_for(text);
    EXPECT_TRUE(host::search_once_a_line(options)) << text;
    EXPECT_TRUE(options.end.is_pattern);
  }
  host::SearchOptions texts = options_for("a");
  texts.texts.push_back("\"?|b");
  EXPECT_TRUE(host::search_once_a_line(texts));
  EXPECT_EQ(texts.texts, Arguments{R"("a|\"\?\|b")"});
  EXPECT_TRUE(texts.is_pattern);
  host::SearchOptions many = options_for("");
  many.texts = std::vector<std::string>(1000, "a");
  EXPECT_TRUE(host::search_once_a_line(many));
  host::SearchOptions pattern = options_for("'a|b'[2-]c\"d|e\"\\!");
  pattern.is_pattern = true;
  EXPECT_TRUE(host::search_once_a_line(pattern));
}

TEST(SearchOnceALine, LeavesOthersAlone) {
  using Change = void (*)(host::SearchOptions&);
  const Change changes[] = {
      [](auto& o) { o.texts = {"a\nb"}; },
      [](auto& o) {
        o.texts = {"a", "b"}, o.is_pattern = true;
      },
      [](auto& o) {
        o.texts = {"a", "b"}, o.caret = true;
      },
      [](auto& o) {
        o.texts = {"a", "b c"}, o.is_pattern = false;
      },
      [](auto& o) {
        o.texts = {"a", "\xC4"}, o.is_pattern = false;
      },
      [](auto& o) { o.texts.clear(), o.between.emplace("a", "b"); },
      [](auto& o) { o.texts = {"a^J"}, o.caret = true; },
      [](auto& o) { o.texts = {"!'a'"}, o.is_pattern = true; },
      [](auto& o) { o.texts = {"#word"}, o.is_pattern = true; },
      [](auto& o) { o.texts = {"a?b"}, o.is_pattern = true; },
      [](auto& o) { o.texts = {"'a'[0-]"}, o.is_pattern = true; },
      [](auto& o) { o.start.text = "s"; },
      [](auto& o) { o.end.text = "e"; },
      [](auto& o) { o.areas.pattern = "area"; },
      [](auto& o) { o.classes = "file"; },
      [](auto& o) { o.whole_words = true; },
      [](auto& o) { o.report = "file"; },
  };
  for (const Change& change : changes) {
    host::SearchOptions options = options_for("a");
    change(options);
    const std::string end = options.end.text;
    EXPECT_FALSE(host::search_once_a_line(options))
        << "change " << &change - changes;
    EXPECT_EQ(options.end.text, end);
  }
}

TEST(SearchOnceAFile, IsForMatchesWithFreeSurroundings) {
  host::SearchOptions options = options_for("a?\nb");
  options.is_pattern = true;
  options.start.text = "s";
  options.areas.pattern = "area";
  EXPECT_TRUE(host::search_once_a_file(options));
  EXPECT_NE(options.end.text, "");
  using Change = void (*)(host::SearchOptions&);
  const Change changes[] = {
      [](auto& o) {
        o.texts = {"a", "b"}, o.is_pattern = true;
      },
      [](auto& o) { o.texts = {"'a'[0-1]"}, o.is_pattern = true; },
      [](auto& o) { o.texts = {"a \x01 any byte \x01"}; },
      [](auto& o) { o.start.text = "\x01 any byte \x01"; },
      [](auto& o) { o.areas.pattern = "\x01 any byte \x01"; },
      [](auto& o) { o.texts.clear(), o.between.emplace("a", "b"); },
      [](auto& o) { o.end.text = "e"; },
      [](auto& o) { o.classes = "file"; },
      [](auto& o) { o.whole_words = true; },
      [](auto& o) { o.report = "file"; },
  };
  for (const Change& change : changes) {
    host::SearchOptions given = options_for("a");
    change(given);
    const std::string end = given.end.text;
    EXPECT_FALSE(host::search_once_a_file(given));
    EXPECT_EQ(given.end.text, end) << "change " << &change - changes;
  }
}

}  // namespace
}  // namespace zenfo::test
