// The engine returns the same as the model: on seeded random patterns, texts
// and areas, on longer texts, and on random class definitions. Both search
// paths of the engine are compared.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "model/random_cases.h"
#include "support/engine_beside_model.h"
#include "support/pattern_examples.h"
#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using model::AreaUse;
using model::RandomCase;
using model::RandomCases;
using test::EngineBesideModel;

// Sanitizers make a case about fifteen times slower; an eighth of the cases
// still covers every kind of element thousands of times.
#if defined(ZENFO_ADDRESS_SANITIZER)
constexpr int kShare = 8;
#else
constexpr int kShare = 1;
#endif
constexpr int kCases = 250000 / kShare;
constexpr int kLongCases = 10000 / kShare;
constexpr int kClassFiles = 50000 / kShare;

// One pair for each set of user classes.
std::vector<std::unique_ptr<EngineBesideModel>> pairs() {
  std::vector<std::unique_ptr<EngineBesideModel>> out;
  for (const model::ClassSet& set : model::kClassSets) {
    out.push_back(std::make_unique<EngineBesideModel>(set.file));
  }
  return out;
}

TEST(EngineAgainstModel, SameElementsAndMatchesOnRandomCases) {
  RandomCases cases(1);
  const auto sides = pairs();
  int matched = 0;
  for (int i = 0; i < kCases; ++i) {
    const RandomCase one = cases.next();
    EngineBesideModel& side = *sides[one.class_set];
    ASSERT_EQ(side.compile_and_search(one), "")
        << "case " << i << ": " << describe(one) << "\n " << side.elements();
    matched += side.found() > 0;
  }
  EXPECT_GT(matched, kCases * 2 / 5);
}

// Texts of many samples, so that remembered positions are used again, passed
// and forgotten.
TEST(EngineAgainstModel, SameMatchesOnLongerTexts) {
  RandomCases cases(2);
  const auto sides = pairs();
  std::string samples;
  int many = 0;
  for (int i = 0; i < kLongCases; ++i) {
    RandomCase one = cases.next();
    const std::string own = one.text;
    samples = samples.substr(samples.size() > 300 ? samples.size() - 300 : 0);
    samples += own;
    one.text = own + samples + own + own + samples;
    EngineBesideModel& side = *sides[one.class_set];
    ASSERT_EQ(side.compile_and_search(one), "")
        << "case " << i << ": " << describe(one) << "\n " << side.elements();
    many += side.found() > 10;
  }
  EXPECT_GT(many, kLongCases / 10);
}

// Every position at which such a text can be cut in two: occurrences that begin
// before the cut and end after it, among many others or alone.
TEST(EngineAgainstModel, SameMatchesWhereverAreasAndTextsEnd) {
  constexpr const char* kPatterns[] = {
      "ab",       "\"ab|bca|c\"",  "\"aab|a\"'b'", "digitsab",
      "'a'[2]b",  "!\"bc|ab\"",    "a?b",          "digits[1-2]'a'",
      "adigitsb", "'c'[0-]\"ab\"", "b'a'[2-3]",    "\"ab\"digits[0-]c"};
  const std::string text = "aab1ab12abcaab1bcaabab1c2abccaaabb1ab";
  EngineBesideModel side(model::kClassSets[0].file);
  for (const char* pattern : kPatterns) {
    RandomCase one;
    one.main = pattern;
    one.main_is_pattern = true;
    one.exact_case = true;
    ASSERT_EQ(side.compile(one), "") << pattern;
    for (size_t cut = 1; cut <= text.size(); ++cut) {
      one.area_use = AreaUse::kEverywhere;
      one.text = text.substr(0, cut);
      ASSERT_EQ(side.search(one), "") << describe(one);
      one.text = text;
      const auto length = static_cast<uint32_t>(text.size() - cut);
      one.areas = {{0, static_cast<uint32_t>(cut)},
                   {static_cast<uint32_t>(cut), length}};
      one.area_use = AreaUse::kInside;
      ASSERT_EQ(side.search(one), "") << describe(one);
      one.areas = {{static_cast<uint32_t>(cut) - 1, 2}};
      one.area_use = AreaUse::kOutside;
      ASSERT_EQ(side.search(one), "") << describe(one);
    }
  }
}

// Texts longer than the 128 KB by which the engine looks ahead, with
// occurrences at every position around that border.
constexpr size_t kBorder = size_t{128} * 1024;
constexpr const char* kBorderPatterns[] = {"abcde", "\"abcde|cdex|bcd\"",
                                           "digitsabcde", "\"bcd|abcde\"'x|y'",
                                           "abcde?'x'"};

TEST(EngineAgainstModel, SameMatchesAcrossBordersAmongManyOthers) {
  EngineBesideModel side(model::kClassSets[0].file);
  for (const char* pattern : kBorderPatterns) {
    RandomCase one;
    one.main = pattern;
    one.main_is_pattern = true;
    one.exact_case = true;
    ASSERT_EQ(side.compile(one), "") << pattern;
    for (size_t shift = 0; shift < 11; ++shift) {
      one.text = std::string(shift, '.');
      while (one.text.size() < kBorder + 64) one.text += "1abcdex.a1b";
      ASSERT_EQ(side.search(one), "") << pattern << " " << shift;
      ASSERT_GT(side.found(), kBorder / 11);
    }
  }
}

// Only two occurrences: the model would search for the second one from every
// byte, so the expected results are constants.
TEST(EngineAgainstModel, FindsWhatLiesAcrossABorderAlone) {
  constexpr uint32_t kStarts[] = {1, 1, 0, 1, 1};
  constexpr uint32_t kLengths[] = {5, 5, 6, 6, 6};
  pattern_test::TestContext context;
  for (size_t row = 0; row < std::size(kBorderPatterns); ++row) {
    ASSERT_EQ(context.compile(kBorderPatterns[row]), 1);
    for (const size_t first : {size_t{0}, size_t{1}, kBorder / 2}) {
      for (size_t shift = 0; shift < 16; ++shift) {
        std::string text(kBorder + first + 64, '.');
        const size_t second = first + kBorder - 8 + shift;
        text.replace(first, 8, "1abcdex.");
        text.replace(second, 8, "1abcdex.");
        ASSERT_EQ(find_all(context, text.data(), text.size(), {}), 2)
            << kBorderPatterns[row] << " " << first << " " << shift;
        const auto* match = record_cast<MatchRecord>(context.matches.get(1));
        ASSERT_EQ(match->offset, second + kStarts[row]);
        ASSERT_EQ(match->length, kLengths[row]);
      }
    }
  }
}

TEST(EngineAgainstModel, SameClassesFromRandomDefinitionFiles) {
  RandomCases cases(3);
  EngineBesideModel side;
  size_t most = 0;
  for (int i = 0; i < kClassFiles; ++i) {
    const std::string file = cases.next_class_file();
    ASSERT_EQ(side.define_classes(file), "") << file;
    most = std::max(most, side.class_count());
  }
  EXPECT_GT(most, 5u);
}

// Names of equal length keep the order that the list's sort gives them.
TEST(EngineAgainstModel, SameOrderOfManyClasses) {
  std::string file;
  EngineBesideModel side;
  for (int i = 0; i < 60; ++i) {
    const std::string name(static_cast<size_t>(1 + i * 7 % 5),
                           static_cast<char>('a' + i % 26));
    file += "name=" + name + std::to_string(i % 3) +
            "\r\ninc_chars=" + std::to_string(i) + "\r\n";
    ASSERT_EQ(side.define_classes(file), "") << i;
  }
}

// ---- The example tables ----------------------------------------------------

// A context with the classes of the tables.
class ExampleContext : public PatternContext {
 public:
  ExampleContext() {
    PatternContext* const contexts[] = {this};
    apply_class_definitions(examples::kClassFile, contexts);
  }
};

std::string compiled(std::string_view text, bool is_pattern, bool convert) {
  ExampleContext context;
  compile_search(context, {}, {std::string(text).c_str(), is_pattern, convert},
                 {});
  return pattern_test::spell_elements(context);
}

TEST(EngineExamples, CompilerTables) {
  for (const auto& row : examples::kCompilerExamples) {
    EXPECT_EQ(compiled(row.text, true, false), row.elements) << row.text;
  }
  for (const auto& row : examples::kMoreCompilerExamples) {
    EXPECT_EQ(compiled(row.text, true, false), row.elements) << row.text;
  }
}

TEST(EngineExamples, CaretTable) {
  const ExampleContext context;
  for (const auto& row : examples::kCaretExamples) {
    EXPECT_EQ(context.expand_control_names(row.text), row.converted)
        << row.text;
    EXPECT_EQ(compiled(row.text, false, true),
              "L(" + pattern_test::spell_bytes(row.literal) + ")")
        << row.text;
    EXPECT_EQ(compiled(row.text, true, true), row.pattern_elements) << row.text;
  }
}

void expect_compiled(const PatternContext& context, std::string_view elements,
                     size_t start_count, ptrdiff_t last_main) {
  EXPECT_EQ(pattern_test::spell_elements(context), elements);
  EXPECT_EQ(context.pattern.start_count, start_count);
  EXPECT_EQ(context.pattern.last_main, last_main);
}

TEST(EngineExamples, CombinedAndTagTables) {
  for (const auto& row : examples::kCombinedExamples) {
    SCOPED_TRACE(row.main);
    ExampleContext context;
    const std::string texts[] = {std::string(row.start), std::string(row.main),
                                 std::string(row.end)};
    EXPECT_EQ(compile_search(context, {texts[0].c_str(), row.start_is_pattern},
                             {texts[1].c_str(), row.main_is_pattern},
                             {texts[2].c_str(), row.end_is_pattern}),
              row.result);
    expect_compiled(context, row.elements, row.start_count, row.last_main);
  }
  for (const auto& row : examples::kTagExamples) {
    SCOPED_TRACE(row.first);
    ExampleContext context;
    EXPECT_EQ(compile_tag(context, std::string(row.first).c_str(),
                          std::string(row.second).c_str(), row.count_start,
                          row.is_pattern, false),
              row.result);
    expect_compiled(context, row.elements, row.start_count, row.last_main);
  }
}

void compile_row(PatternContext& context, const examples::MatcherExample& row) {
  const std::string texts[] = {std::string(row.start), std::string(row.main),
                               std::string(row.end)};
  const bool count_start = row.texts == examples::Texts::kTagCountStart;
  if (count_start || row.texts == examples::Texts::kTag) {
    EXPECT_EQ(compile_tag(context, texts[0].c_str(), texts[2].c_str(),
                          count_start, true, row.convert),
              1);
    return;
  }
  EXPECT_EQ(compile_search(context, {texts[0].c_str(), true, row.convert},
                           {texts[1].c_str(), true, row.convert},
                           {texts[2].c_str(), true, row.convert}),
            1);
}

std::string spell_spans(const examples::Spans& spans) {
  std::string out;
  for (const examples::Span& span : spans) {
    out += (out.empty() ? "(" : " (") + std::to_string(span.offset) + "," +
           std::to_string(span.length) + ")";
  }
  return out.empty() ? "none" : out;
}

void check_row(const examples::MatcherExample& row, SearchPath path) {
  SCOPED_TRACE(testing::Message() << row.start << " " << row.main << " "
                                  << row.end << " in " << row.text);
  ExampleContext context;
  PatternContext areas;
  compile_row(context, row);
  std::vector<pattern_test::Span> spans;
  for (const examples::Span& span : row.areas) {
    spans.push_back({static_cast<uint32_t>(span.offset),
                     static_cast<uint32_t>(span.length)});
  }
  pattern_test::set_areas(areas, spans);
  const FindOptions options{.case_flag = row.exact_case,
                            .whole_words = row.whole_words,
                            .maximum = row.maximum,
                            .path = path};
  const bool everywhere = row.where == examples::Where::kEverywhere;
  EXPECT_EQ(find_all_by_areas(context, row.text.data(), row.text.size(),
                              options, everywhere ? nullptr : &areas,
                              row.where == examples::Where::kInside),
            static_cast<int32_t>(row.matches.size()));
  EXPECT_EQ(pattern_test::spell_matches(context), spell_spans(row.matches));
}

TEST(EngineExamples, MatcherTables) {
  for (const SearchPath path : {SearchPath::kFast, SearchPath::kPlain}) {
    for (const auto& row : examples::kMatcherExamples) check_row(row, path);
    for (const auto& row : examples::kMoreMatcherExamples) check_row(row, path);
  }
}

}  // namespace
}  // namespace zenfo
