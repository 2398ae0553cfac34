#include "gui/text/text_layout.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace zenfo::host::gui {
namespace {

using Numbers = std::vector<uint32_t>;

LaidText laid_out(const std::string& bytes, std::vector<Mark> marks = {}) {
  TextRow row;
  row.bytes = bytes;
  row.marks = std::move(marks);
  return lay_out(row, CodePage::western());
}

TEST(CellsOf, KnowsWideAndZeroWidthCharacters) {
  EXPECT_EQ(cells_of(U'a'), 1u);
  EXPECT_EQ(cells_of(U'\u00E9'), 1u);
  EXPECT_EQ(cells_of(U'\u0301'), 0u);
  EXPECT_EQ(cells_of(U'\u0416'), 1u);
  EXPECT_EQ(cells_of(U'\u4E2D'), 2u);
  EXPECT_EQ(cells_of(U'\uAC00'), 2u);
  EXPECT_EQ(cells_of(U'\U0001F600'), 2u);
  EXPECT_EQ(cells_of(U'\u2401'), 1u);
}

TEST(LayOut, PutsCharactersIntoColumns) {
  struct Case {
    std::string bytes;
    Numbers columns;
  };
  const Case cases[] = {
      {"", {0}},
      {"abc", {0, 1, 2, 3}},
      {"\ta\tb", {0, 4, 5, 8, 9}},
      {"abcd\t", {0, 1, 2, 3, 4, 8}},
      {"\xE4\xB8\xAD!", {0, 2, 3}},
      {"e\xCC\x81.", {0, 1, 1, 2}},
      {"\xF0\x9F\x98\x80z", {0, 0, 2, 3}},
      {"\xE9\xE8", {0, 1, 2}},  // not UTF-8
  };
  for (const Case& c : cases) {
    EXPECT_EQ(laid_out(c.bytes).columns, c.columns) << c.bytes;
  }
}

TEST(LayOut, MovesMarksToUnits) {
  const LaidText laid = laid_out(
      "\xC3\xA9"
      "ab",
      {{2, 2, 7}});
  EXPECT_EQ(laid.marks, std::vector<Mark>({{1, 2, 7}}));
  EXPECT_EQ(laid.bytes, Numbers({0, 2, 3, 4}));
}

TEST(UnitOfByte, IsWhereTheCharacterBegins) {
  const LaidText laid = laid_out("a\xF0\x9F\x98\x80z");
  const Numbers units = {0, 1, 1, 1, 1, 3, 4, 4};
  for (uint32_t byte = 0; byte < units.size(); ++byte) {
    EXPECT_EQ(laid.unit_of_byte(byte), units[byte]) << byte;
  }
}

TEST(LineStarts, BreaksAfterWhiteSpace) {
  struct Case {
    std::string bytes;
    uint32_t columns;
    Numbers starts;
  };
  const Case cases[] = {
      {"", 5, {0}},
      {"abcde", 5, {0}},
      {"abcdef", 5, {0, 5}},
      {"ab cd ef", 5, {0, 3}},
      {"ab cd ef", 6, {0, 6}},
      {"abcdefghijk", 4, {0, 4, 8}},
      {"a bcdefgh", 4, {0, 2, 6}},
      {"\xE4\xB8\xAD\xE4\xB8\xAD\xE4\xB8\xAD", 3, {0, 1, 2}},
      {"\xE4\xB8\xAD\xE4\xB8\xAD", 1, {0, 1}},  // wider than the view
      {"\xF0\x9F\x98\x80\xF0\x9F\x98\x80", 2, {0, 2}},
      {"\xF0\x9F\x98\x80\xF0\x9F\x98\x80", 1, {0, 2}},
      {"abc", 0, {0, 1, 2}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(line_starts(laid_out(c.bytes), c.columns), c.starts)
        << c.bytes << " in " << c.columns;
  }
}

// No line is empty or too wide, unless one character is, and no pair is cut.
TEST(LineStarts, OfAnyTextFit) {
  std::mt19937 random(5);
  const std::string pieces[] = {
      "a", "bc", " ", "\t", "\xE4\xB8\xAD", "e\xCC\x81", "\xF0\x9F\x98\x80"};
  for (int round = 0; round < 300; ++round) {
    std::string bytes;
    for (int i = 0; i < 60; ++i) bytes += pieces[random() % 7];
    const LaidText laid = laid_out(bytes);
    const uint32_t columns = 1 + random() % 20;
    Numbers starts = line_starts(laid, columns);
    ASSERT_EQ(starts[0], 0u);
    starts.push_back(laid.size());
    for (size_t i = 0; i + 1 < starts.size(); ++i) {
      ASSERT_LT(starts[i], starts[i + 1]);
      const uint32_t width =
          laid.columns[starts[i + 1]] - laid.columns[starts[i]];
      ASSERT_TRUE(width <= columns || starts[i + 1] - starts[i] <= 2)
          << bytes << " in " << columns;
      ASSERT_NE(laid.text[starts[i]] & 0xFC00, 0xDC00);
    }
  }
}

TEST(UnitAtColumn, IsTheCharacterThere) {
  const LaidText laid = laid_out("a\t\xF0\x9F\x98\x80z");
  const Numbers units = {0, 1, 1, 1, 2, 2, 4, 5, 5};
  for (uint32_t column = 0; column < units.size(); ++column) {
    EXPECT_EQ(unit_at_column(laid, 0, laid.size(), column), units[column])
        << column;
  }
  EXPECT_EQ(unit_at_column(laid, 2, 4, 0), 2u);
  EXPECT_EQ(unit_at_column(laid, 2, 4, 99), 4u);
  EXPECT_EQ(unit_at_column(laid_out(""), 0, 0, 3), 0u);
}

}  // namespace
}  // namespace zenfo::host::gui
