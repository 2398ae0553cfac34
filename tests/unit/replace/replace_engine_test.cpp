#include "replace/replace_engine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "containers/string_pair.h"
#include "unit/replace/engine_support.h"

namespace zenfo {
namespace {

using namespace std::string_literals;

class ReplaceEngineTest : public testing::Test, protected replace_test::Engine {
 protected:
  int32_t with_text(std::string_view text, EditMode mode = EditMode::kReplace,
                    bool expand = false) {
    return replace_with_text(context, path.c_str(), text, mode, expand);
  }
  int32_t with_numbers(std::string_view text, std::string_view placeholder,
                       RunningNumber number) {
    return replace_with_numbers(context, path.c_str(), text, placeholder,
                                number, EditMode::kReplace, false);
  }
  int32_t with_records(EditMode mode = EditMode::kReplace) {
    return replace_with_records(context, path.c_str(), mode);
  }
  std::string states() {
    std::string all;
    for (uint32_t i = 0; i < context.matches.count(); ++i) {
      all += std::to_string(match(i).state) + std::to_string(match(i).flag);
    }
    return all;
  }
};

TEST_F(ReplaceEngineTest, EditModesByNumber) {
  EXPECT_EQ(edit_mode(1), EditMode::kInsertBefore);
  EXPECT_EQ(edit_mode(2), EditMode::kInsertAfter);
  for (int32_t other : {0, 3, -1, INT32_MIN}) {
    EXPECT_EQ(edit_mode(other), EditMode::kReplace);
  }
}

TEST_F(ReplaceEngineTest, PutsTheTextBeforeAfterOrInPlaceOfTheMatch) {
  set("abc", {{1, 1}});
  EXPECT_EQ(with_text("X"), 1);
  EXPECT_EQ(written(), "aXc");
  EXPECT_EQ(with_text("X", EditMode::kInsertBefore), 1);
  EXPECT_EQ(written(), "aXbc");
  EXPECT_EQ(with_text("X", EditMode::kInsertAfter), 1);
  EXPECT_EQ(written(), "abXc");
  EXPECT_EQ(with_text(""), 1);
  EXPECT_EQ(written(), "ac");
}

TEST_F(ReplaceEngineTest, WritesUpToTheFirstNul) {
  set("ab\0cab"s, {{0, 2}, {4, 2}});
  EXPECT_EQ(with_text("Z"), 1);
  EXPECT_EQ(written(), "Z");
  set("ab\0"s, {{1, 2}});
  EXPECT_EQ(with_text("Z", EditMode::kInsertAfter), 1);
  EXPECT_EQ(written(), "abZ");
}

TEST_F(ReplaceEngineTest, RefusesBeforeTheFileIsTouched) {
  const std::string before = written();
  set("", {});
  EXPECT_EQ(with_text("X"), -1);
  set("\0a"s, {{1, 1}});
  EXPECT_EQ(with_text("X"), -1);
  EXPECT_EQ(with_records(), -1);
  context.clear_matches();
  EXPECT_EQ(with_text("X"), -1) << "no text";
  set("abc", {{1, 1}});
  EXPECT_EQ(with_numbers("", "#", {1, 1}), -1);
  EXPECT_EQ(with_numbers("#", "", {1, 1}), -1);
  EXPECT_EQ(written(), before);
  EXPECT_EQ(replace_with_text(context, nullptr, "X", EditMode::kReplace, false),
            -1);
  EXPECT_EQ(replace_with_text(context, "", "X", EditMode::kReplace, false), -1);
  EXPECT_EQ(replace_with_records(context, "", EditMode::kReplace), -1);
}

TEST_F(ReplaceEngineTest, ExpandsTheTextOnce) {
  set("abc", {{1, 1}});
  EXPECT_EQ(with_text("^M", EditMode::kReplace, true), 1);
  EXPECT_EQ(written(), "a\rc");
  EXPECT_EQ(with_text("^M"), 1);
  EXPECT_EQ(written(), "a^Mc");
}

TEST_F(ReplaceEngineTest, NumbersSelectedMatches) {
  set("b.b.b", {{0, 1}, {2, 1}, {4, 1}});
  EXPECT_EQ(with_numbers("item#", "#", {5, 10}), 3);
  EXPECT_EQ(written(), "item5.item15.item25");
  match(1).state = 0;
  EXPECT_EQ(with_numbers("item#", "#", {5, 10}), 2);
  EXPECT_EQ(written(), "item5.b.item15");
}

TEST_F(ReplaceEngineTest, TheNumberGoesOnWhereItsOwnerHoldsIt) {
  set("b", {{0, 1}});
  RunningNumber number(7, 3);
  for (const char* expected : {"7", "10", "13"}) {
    EXPECT_EQ(replace_with_numbers(context, path.c_str(), "#", "#", number,
                                   EditMode::kReplace, false),
              1);
    EXPECT_EQ(written(), expected);
  }
}

TEST(RunningNumber, WrapsRound) {
  RunningNumber up(INT32_MAX, 1);
  EXPECT_EQ(up.take(), INT32_MAX);
  EXPECT_EQ(up.take(), INT32_MIN);
  RunningNumber down(INT32_MIN, -1);
  EXPECT_EQ(down.take(), INT32_MIN);
  EXPECT_EQ(down.take(), INT32_MAX);
  RunningNumber large(0, INT32_MIN);
  EXPECT_EQ(large.take() + large.take(), INT32_MIN);
  EXPECT_EQ(large.take(), 0);
}

TEST(InsertNumber, ReplacesEveryPlaceholder) {
  const struct {
    std::string text, placeholder, result;
  } cases[] = {
      {"item#", "#", "item12"}, {"#", "#", "12"},    {"##", "#", "1212"},
      {"#a#", "#", "12a12"},    {"abc", "#", "abc"}, {"aXXXb", "XX", "a12Xb"},
      {"NN", "NNN", "NN"},      {"nN", "N", "n12"},  {"a\0#"s, "\0"s, "a12#"s},
  };
  for (const auto& c : cases) {
    std::string out = "old";
    EXPECT_TRUE(insert_number(c.text, c.placeholder, "12", out));
    EXPECT_EQ(out, c.result);
  }
  std::string out;
  EXPECT_FALSE(insert_number("", "#", "1", out));
  EXPECT_FALSE(insert_number("#", "", "1", out));
}

TEST_F(ReplaceEngineTest, ListValuesGoToMatchesByPosition) {
  ItemList values;
  for (const char* value : {"1", "", "^M"}) {
    values.append(std::make_unique<ReplaceValue>(value));
  }
  set("b.b.b.b", {{0, 1}, {2, 1}, {4, 1}, {6, 1}});
  EXPECT_EQ(set_replacements_from_list(context, values, true), 1);
  EXPECT_EQ(states(), "11111100");
  EXPECT_EQ(with_records(), 3);
  EXPECT_EQ(written(), "1..\r.b") << "an empty value deletes";
  EXPECT_EQ(set_replacements_from_list(context, values, false), 1);
  EXPECT_EQ(states(), "11111100");
  EXPECT_EQ(with_records(EditMode::kInsertAfter), 3);
  EXPECT_EQ(written(), "b1.b.b^M.b");
}

TEST_F(ReplaceEngineTest, ValuesBeyondTheMatchesAreOfNoUse) {
  ItemList values;
  for (int i = 0; i < 3; ++i)
    values.append(std::make_unique<ReplaceValue>("v"));
  set("b", {{0, 1}});
  EXPECT_EQ(set_replacements_from_list(context, values, false), 1);
  EXPECT_EQ(with_records(), 1);
  EXPECT_EQ(written(), "v");
}

TEST_F(ReplaceEngineTest, RecordsOfOtherKindsAreRefused) {
  ItemList values;
  values.append(std::make_unique<StringPair>("a", "b"));
  set("b", {{0, 1}});
  EXPECT_EQ(set_replacements_from_list(context, values, false), -1);
  values.clear();
  context.matches.append(std::make_unique<StringPair>("a", "b"));
  EXPECT_EQ(set_replacements_from_list(context, values, false), -1);
  PatternContext other;
  EXPECT_EQ(set_replacements_from_matches(context, other, 0, false), -1);
}

TEST_F(ReplaceEngineTest, MatchesOfAnotherContextAreReplacements) {
  replace_test::Engine source;
  source.set("x\0y^Mz"s, {{0, 3}, {3, 2}});
  const auto prepare = [&](uint32_t index, bool expand = false) {
    set("b.b.b", {{0, 1}, {2, 1}, {4, 1}});
    return set_replacements_from_matches(context, source.context, index,
                                         expand);
  };
  EXPECT_EQ(prepare(0), 1);
  EXPECT_EQ(states(), "111100");
  EXPECT_EQ(match(0).replacement_length(), 3u) << "NUL included";
  EXPECT_EQ(with_records(), 2);
  EXPECT_EQ(written(), "x\0y.^M.b"s);
  EXPECT_EQ(prepare(2, true), 1);
  EXPECT_EQ(states(), "111111");
  EXPECT_EQ(with_records(), 3);
  EXPECT_EQ(written(), "\r.\r.\r");
  for (uint32_t beyond : {3u, UINT32_MAX}) {
    EXPECT_EQ(prepare(beyond), 1);
    EXPECT_EQ(states(), "000000");
    EXPECT_EQ(with_records(), 0);
    EXPECT_EQ(written(), "b.b.b");
  }
  set("", {});
  EXPECT_EQ(set_replacements_from_matches(context, source.context, 0, false),
            -1);
}

std::vector<uint32_t> reported;

TEST_F(ReplaceEngineTest, TakingMatchesReportsEachRecord) {
  set("bbb", {{0, 1}, {1, 1}, {2, 1}});
  replace_test::Engine source;
  source.set("xyz", {{0, 1}, {1, 1}, {2, 1}});
  context.set_report_hook([](ProgressRecord* record) {
    EXPECT_EQ(record->total, 3u);
    reported.push_back(record->position);
    return 0;
  });
  for (const uint32_t index : {0u, 1u}) {
    reported.clear();
    EXPECT_EQ(
        set_replacements_from_matches(context, source.context, index, false),
        1);
    EXPECT_EQ(reported, (std::vector<uint32_t>{0, 1, 2})) << index;
  }
}

TEST_F(ReplaceEngineTest, TakingMatchesReportsThoseLeftWithoutAValueToo) {
  set("bbb", {{0, 1}, {1, 1}, {2, 1}});
  replace_test::Engine source;
  source.set("x", {{0, 1}});
  context.set_report_hook([](ProgressRecord* record) {
    reported.push_back(record->position);
    return 0;
  });
  // One value for three matches, and no such value.
  for (const uint32_t index : {0u, 2u}) {
    reported.clear();
    EXPECT_EQ(
        set_replacements_from_matches(context, source.context, index, false),
        1);
    EXPECT_EQ(reported, (std::vector<uint32_t>{0, 1, 2})) << index;
  }
}

TEST_F(ReplaceEngineTest, TakingMatchesCanBeInterruptedAtEachRecord) {
  // All matches have a value, one has, none has.
  for (const uint32_t index : {1u, 0u, 2u}) {
    for (int polls = 1; polls <= 7; ++polls) {
      set("bbbbbbbb", {{0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}});
      replace_test::Engine source;
      source.set("x", {{0, 1}});
      search_counters() = {};
      context.set_poll_interval(1);
      static int left;
      left = polls;
      context.set_interrupt_hook([](void*) { return --left == 0 ? 1 : 0; });
      EXPECT_EQ(
          set_replacements_from_matches(context, source.context, index, false),
          polls <= 6 ? -1 : 1)
          << index << ' ' << polls;
    }
  }
}

TEST_F(ReplaceEngineTest, ARecordWithoutReplacementIsDeleted) {
  set("abc", {{0, 1}, {2, 1}});
  match(0).set_replacement("X");
  EXPECT_EQ(with_records(), 2);
  EXPECT_EQ(written(), "Xb");
}

}  // namespace
}  // namespace zenfo
