// The replace engines write the same as their slow model: on random texts and
// patterns, on random overlapping marks, from every source, in every mode.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "containers/string_pair.h"
#include "model/random_cases.h"
#include "model/replace_model.h"
#include "pattern/match_record.h"
#include "replace/case_engine.h"
#include "replace/replace_engine.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

using model::Mark;
using model::Rewritten;

#if defined(ZENFO_ADDRESS_SANITIZER)
constexpr int kReplaceCases = 10000;
#else
constexpr int kReplaceCases = 80000;
#endif

// A file in memory if possible, because the disk is not tested.
class ScratchFile {
 public:
  ScratchFile() {
    const std::string in_memory = "/dev/shm";
    if (std::filesystem::is_directory(in_memory)) {
      path_ = in_memory + folder_.path().substr(folder_.path().rfind('/'));
    }
  }
  ~ScratchFile() { std::filesystem::remove(path_); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  const char* path() const { return path_.c_str(); }

 private:
  test::TempFolder folder_;
  std::string path_ = folder_.path("out");
};

// Makes one random case and has both sides write it.
class SideBySide {
 public:
  explicit SideBySide(uint64_t seed) : cases_(seed), random_(seed) {}

  void run_one() {
    const model::RandomCase one = cases_.next();
    text_ = one.text;
    if (chance(4)) text_[below(text_.size())] = '\0';
    if (chance(3)) {
      mark_at_random();
    } else {
      mark_matches(one);
    }
    fill_records();
    write(static_cast<int>(below(5)));
  }

  // Cases whose file differs from the text.
  int changed = 0;

 private:
  size_t below(size_t bound) { return bound == 0 ? 0 : random_() % bound; }
  bool chance(size_t one_in) { return below(one_in) == 0; }

  void mark_at_random() {
    marks_.clear();
    for (size_t n = below(6); n > 0; --n) {
      Mark mark;
      mark.offset = below(text_.size());
      mark.length = 1 + below(text_.size() - mark.offset);
      marks_.push_back(mark);
    }
  }

  // What the pattern model finds.
  void mark_matches(const model::RandomCase& one) {
    const std::string file(model::kClassSets[one.class_set].file);
    model::Context slow;
    model::set_operators(slow, file);
    model::set_pattern(
        slow, {one.start, one.main, one.end, one.start_is_pattern,
               one.main_is_pattern, one.end_is_pattern, one.convert_start,
               one.convert_main, one.convert_end});
    const model::Found found =
        model::find_all(slow, text_, {one.exact_case, one.whole_words, 0});
    marks_.clear();
    for (const model::Match& match : found.matches) {
      Mark mark;
      mark.offset = match.offset;
      mark.length = match.length;
      marks_.push_back(mark);
    }
  }

  void fill_records() {
    context_.clear_matches();
    context_.set_text(text_.data(), text_.size());
    for (Mark& mark : marks_) {
      auto record = std::make_unique<MatchRecord>(
          text_.data() + mark.offset, static_cast<uint32_t>(mark.length),
          static_cast<uint32_t>(mark.offset));
      mark.selected = !chance(4);
      record->state = mark.selected ? 1 : 0;
      context_.matches.append(std::move(record));
    }
  }

  std::string draw_text() {
    static const char* const kTexts[] = {
        "", "X", "longer text", "^M^J", "#", "a#b##", "\\^M#", "12^z#^M"};
    return kTexts[below(std::size(kTexts))];
  }
  int32_t draw_number() {
    static constexpr int32_t kNumbers[] = {0,  1,         5,        10,
                                           -1, INT32_MAX, INT32_MIN};
    return kNumbers[below(std::size(kNumbers))];
  }

  void write(int source) {
    SCOPED_TRACE("source " + std::to_string(source));
    test::write_file(file_.path(), "what stood there before, and was longer");
    const auto mode_number = static_cast<int32_t>(below(4));
    const EditMode mode = edit_mode(mode_number);
    const bool expand = chance(2);
    Rewritten expected, got;
    switch (source) {
      case 0: {
        const std::string text = draw_text();
        expected =
            model::replace_with_text(text_, marks_, text, mode_number, expand);
        got.answer =
            replace_with_text(context_, file_.path(), text, mode, expand);
        break;
      }
      case 1: {
        const std::string text = draw_text();
        const std::string placeholder = chance(5) ? "##" : "#";
        const int32_t first = draw_number();
        const int32_t step = draw_number();
        expected = model::replace_with_numbers(
            text_, marks_, text, placeholder, first, step, mode_number, expand);
        RunningNumber number(first, step);
        got.answer = replace_with_numbers(context_, file_.path(), text,
                                          placeholder, number, mode, expand);
        break;
      }
      case 2:
        take_values(expand);
        expected = model::replace_with_records(text_, marks_, mode_number);
        got.answer = replace_with_records(context_, file_.path(), mode);
        break;
      case 3:
        take_matches(expand);
        expected = model::replace_with_records(text_, marks_, mode_number);
        got.answer = replace_with_records(context_, file_.path(), mode);
        break;
      default: {
        const bool upper = chance(2);
        expected = model::change_case(text_, marks_, upper);
        got.answer = change_case(context_, file_.path(), upper);
        break;
      }
    }
    if (expected.answer == -1) {
      expected.file = "what stood there before, and was longer";
    }
    got.file = test::read_file(file_.path());
    ASSERT_EQ(got.answer, expected.answer);
    ASSERT_EQ(got.file, expected.file);
    changed += got.answer > 0 && got.file != text_;
    check_records();
  }

  void take_values(bool expand) {
    std::vector<std::string> texts;
    ItemList values;
    for (size_t n = below(5); n > 0; --n) {
      texts.push_back(draw_text());
      values.append(std::make_unique<ReplaceValue>(texts.back()));
    }
    model::set_from_list(marks_, texts, expand);
    ASSERT_EQ(set_replacements_from_list(context_, values, expand), 1);
  }

  void take_matches(bool expand) {
    std::vector<std::string> texts;
    PatternContext other;
    const std::string source = std::string("ab^M\0cd#", 8);
    for (size_t n = below(5); n > 0; --n) {
      const size_t offset = below(source.size());
      const size_t length = 1 + below(source.size() - offset);
      texts.push_back(source.substr(offset, length));
      other.matches.append(std::make_unique<MatchRecord>(
          source.data() + offset, static_cast<uint32_t>(length),
          static_cast<uint32_t>(offset)));
    }
    const auto index = chance(8) ? UINT32_MAX : static_cast<uint32_t>(below(5));
    model::set_from_matches(marks_, texts, index, expand);
    ASSERT_EQ(set_replacements_from_matches(context_, other, index, expand), 1);
  }

  void check_records() {
    for (uint32_t i = 0; i < marks_.size(); ++i) {
      const auto* record = record_cast<MatchRecord>(context_.matches.get(i));
      ASSERT_EQ(record->state != 0, marks_[i].selected);
      ASSERT_EQ(record->flag != 0, marks_[i].flag);
    }
  }

  model::RandomCases cases_;
  std::mt19937_64 random_;
  ScratchFile file_;
  std::string text_;
  std::vector<Mark> marks_;
  PatternContext context_;
};

TEST(ReplaceAgainstModel, EnginesWriteWhatTheModelWrites) {
  SideBySide both(7);
  for (int i = 0; i < kReplaceCases; ++i) {
    both.run_one();
    ASSERT_FALSE(testing::Test::HasFatalFailure()) << "case " << i;
  }
  EXPECT_GT(both.changed, kReplaceCases / 4);
}

}  // namespace
}  // namespace zenfo
