// The document about the pattern language: each fenced block "pattern" is a
// search with all its matches.
//
//   pattern  cat            what to find; before, after: its markers
//   from, to                the texts of a tag search, instead
//   flags    whole-words    choices of the host
//   inside   dog            or outside: the exclusion pattern
//   text     cat concat
//   finds    0 cat          a line a match, or: finds nothing
//
// And the example class file, which those patterns use.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "pattern/class_file.h"
#include "support/document.h"
#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::spell_bytes;
using test::Block;
using test::fenced_blocks;
using test::read_source;
using test::with_bytes;

// ---- reading an example ----------------------------------------------------

constexpr size_t kValueColumn = 9;
const std::set<std::string> kKeys = {"pattern", "before", "after", "from",
                                     "to",      "inside", "flags", "text",
                                     "finds",   "outside"};
const std::set<std::string> kFlags = {"ignore-case", "whole-words", "convert",
                                      "literal", "count-start"};

// One example; a key that is missing is an empty text.
struct Example {
  size_t line = 0;
  std::map<std::string, std::string> values;
  std::set<std::string> flags;
  std::vector<std::string> finds;  // "0 cat"

  const char* value(const std::string& key) const {
    const auto found = values.find(key);
    return found != values.end() ? found->second.c_str() : "";
  }
  bool has(const std::string& key) const { return values.contains(key); }
  bool flag(const std::string& name) const { return flags.contains(name); }
};

void read_flags(const std::string& text, Example& example) {
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    EXPECT_TRUE(kFlags.contains(word)) << "no flag " << word;
    example.flags.insert(word);
  }
}

void read_line(const std::string& line, Example& example) {
  ASSERT_GT(line.size(), kValueColumn) << line;
  const std::string key = line.substr(0, line.find(' '));
  ASSERT_TRUE(kKeys.contains(key)) << "no key " << key;
  ASSERT_EQ(line.substr(0, kValueColumn),
            key + std::string(kValueColumn - key.size(), ' '));
  const std::string value = line.substr(kValueColumn);
  if (key == "finds") {
    example.finds.push_back(with_bytes(value));
  } else if (key == "flags") {
    read_flags(value, example);
  } else {
    const std::string bytes = key == "text" ? with_bytes(value) : value;
    EXPECT_TRUE(example.values.emplace(key, bytes).second) << "twice " << key;
  }
}

Example read_example(const Block& block) {
  Example example;
  example.line = block.line;
  std::istringstream lines(block.body);
  for (std::string line; std::getline(lines, line);) read_line(line, example);
  EXPECT_TRUE(example.has("text"));
  EXPECT_NE(example.has("pattern"), example.has("from"));
  EXPECT_EQ(example.has("from"), example.has("to"));
  EXPECT_FALSE(example.finds.empty());
  return example;
}

// ---- running an example ----------------------------------------------------

class ExampleContext : public PatternContext {
 public:
  ExampleContext() {
    PatternContext* const contexts[] = {this};
    EXPECT_EQ(
        apply_class_definitions(read_source("examples/classes.txt"), contexts),
        1);
  }
};

int32_t compile(const Example& example, PatternContext& context) {
  const bool is_pattern = !example.flag("literal");
  const bool convert = example.flag("convert");
  const auto text = [&](const char* key) {
    return PatternText{example.value(key), is_pattern, convert};
  };
  if (example.has("from")) {
    return compile_tag(context, example.value("from"), example.value("to"),
                       example.flag("count-start"), is_pattern, convert);
  }
  return compile_search(context, text("before"), text("pattern"),
                        text("after"));
}

std::vector<std::string> found(PatternContext& context,
                               const std::string& text) {
  std::vector<std::string> matches;
  for (uint32_t i = 0; i < context.matches.count(); ++i) {
    const auto* match = record_cast<MatchRecord>(context.matches.get(i));
    matches.push_back(std::to_string(match->offset) + " " +
                      text.substr(match->offset, match->length));
  }
  if (matches.empty()) matches.emplace_back("nothing");
  return matches;
}

std::vector<std::string> run(const Example& example, SearchPath path) {
  FindOptions options;
  options.path = path;
  options.case_flag = !example.flag("ignore-case");
  options.whole_words = example.flag("whole-words");
  const std::string text = example.value("text");
  ExampleContext context;
  EXPECT_EQ(compile(example, context), 1);
  const bool inside = example.has("inside");
  if (!inside && !example.has("outside")) {
    EXPECT_GE(find_all(context, text.data(), text.size(), options), 0);
    return found(context, text);
  }
  ExampleContext areas;
  const char* const excluded = example.value(inside ? "inside" : "outside");
  EXPECT_EQ(compile_search(areas, {}, {excluded, true, false}, {}), 1);
  EXPECT_GE(find_all(areas, text.data(), text.size(), {}), 0);
  EXPECT_GE(find_all_by_areas(context, text.data(), text.size(), options,
                              &areas, inside),
            0);
  return found(context, text);
}

std::string spell(const std::vector<std::string>& matches) {
  std::string spelt;
  for (const std::string& match : matches) spelt += spell_bytes(match) + '\n';
  return spelt;
}

// ---- tests -----------------------------------------------------------------

constexpr char kDocument[] = "docs/pattern-language.md";

TEST(PatternLanguage, FindsWhatItsDocumentSays) {
  const auto blocks = fenced_blocks(kDocument, "pattern");
  ASSERT_GE(blocks.size(), 50u);
  for (const Block& block : blocks) {
    SCOPED_TRACE(kDocument + (":" + std::to_string(block.line)));
    const Example example = read_example(block);
    for (SearchPath path : {SearchPath::kPlain, SearchPath::kFast}) {
      EXPECT_EQ(spell(run(example, path)), spell(example.finds));
    }
  }
}

// Every fenced block is of a kind that is tested.
TEST(PatternLanguage, ShowsNoExampleThatIsNotRun) {
  std::istringstream document(read_source(kDocument));
  size_t fences = 0;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("```")) {
      EXPECT_EQ(line, fences % 2 == 0 ? "```pattern" : "```");
      ++fences;
    }
  }
  EXPECT_EQ(fences, 2 * fenced_blocks(kDocument, "pattern").size());
}

// The examples must include the patterns recommended in the table "In
// practice".
TEST(PatternLanguage, ShowsThePatternsThatItRecommends) {
  const std::string text = read_source(kDocument);
  size_t at = text.find("| to find |");
  ASSERT_NE(at, std::string::npos);
  std::istringstream rows(text.substr(at));
  std::string row;
  std::getline(rows, row);
  std::getline(rows, row);
  size_t count = 0;
  for (; std::getline(rows, row) && row.starts_with('|'); ++count) {
    const size_t cell = row.find("| `", 1) + 3;
    const std::string pattern = row.substr(cell, row.find('`', cell) - cell);
    EXPECT_NE(text.find("\npattern  " + pattern + "\n"), std::string::npos)
        << pattern;
  }
  EXPECT_EQ(count, 5u);
}

std::string members(const CharClass& one) {
  std::string bytes;
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (one.contains(static_cast<uint8_t>(byte))) {
      bytes += static_cast<char>(byte);
    }
  }
  return bytes;
}

std::string bytes_that(bool (*wanted)(unsigned byte)) {
  std::string bytes;
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (wanted(byte)) bytes += static_cast<char>(byte);
  }
  return bytes;
}

TEST(ExampleClasses, HoldTheBytesThatTheirNamesPromise) {
  const std::string digits = "0123456789";
  const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::string lower = "abcdefghijklmnopqrstuvwxyz";
  std::map<std::string, std::string> expected = {
      {"#digit", digits},
      {"#hex", digits + "ABCDEFabcdef"},
      {"#letter", upper + lower},
      {"#upper", upper},
      {"#lower", lower},
      {"#word", digits + upper + "_" + lower},
      {"#blank", "\t "},
      {"#punct", "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"},
      {"#end", "\n\r"},
      {"#line", bytes_that([](unsigned b) { return b != 10 && b != 13; })}};
  ExampleContext context;
  std::map<std::string, std::string> defined;
  for (size_t i = 0; i < context.user_classes.count(); ++i) {
    const CharClass& one = context.user_classes.at(i);
    EXPECT_TRUE(defined.emplace(one.name(), members(one)).second) << one.name();
  }
  EXPECT_EQ(defined, expected);
}

// A pattern could never use the longer of two such names.
TEST(ExampleClasses, HaveNoNameThatBeginsAnother) {
  ExampleContext context;
  for (size_t i = 0; i < context.user_classes.count(); ++i) {
    for (size_t j = 0; j < context.user_classes.count(); ++j) {
      const std::string& name = context.user_classes.at(j).name();
      EXPECT_TRUE(i == j ||
                  !name.starts_with(context.user_classes.at(i).name()))
          << name;
    }
  }
}

TEST(ExampleClasses, EndTheirLinesInCrLf) {
  const std::string bytes = read_source("examples/classes.txt");
  const auto line_feeds = std::count(bytes.begin(), bytes.end(), '\n');
  size_t pairs = 0;
  for (size_t at = 0; (at = bytes.find("\r\n", at)) != std::string::npos;) {
    ++pairs;
    at += 2;
  }
  EXPECT_EQ(pairs, static_cast<size_t>(line_feeds));
  EXPECT_TRUE(bytes.ends_with("\r\n"));
}

}  // namespace
}  // namespace zenfo
