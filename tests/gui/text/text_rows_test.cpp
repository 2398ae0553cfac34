#include "gui/text/text_rows.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "gui/words/unicode.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

class PageRows : public testing::Test {
 protected:
  void open(const std::string& text, std::vector<Match> matches = {}) {
    std::string reason;
    const std::string path = folder_.file("a", text);
    ASSERT_TRUE(rows_.open(path, std::move(matches), &reason)) << reason;
  }

  using Texts = std::vector<std::string>;
  // Of the lines in view, without the one that is cut at the bottom.
  Texts texts() {
    Texts all;
    for (const ShownLine& line : rows_.lines()) {
      all.push_back(to_utf8(std::u16string_view(line.text->text)
                                .substr(line.first, line.last - line.first)));
    }
    return all;
  }
  static std::string numbered(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += "line" + std::to_string(i) + '\n';
    return text;
  }
  std::string selected() {
    return to_utf8(rows_.selected_text(1000).value_or(u"too much"));
  }

  const test::TempFolder folder_;
  TextRows rows_;
};

TEST_F(PageRows, ShowsWhatFitsAndOneMore) {
  rows_.set_view(20, 3);
  open(numbered(10));
  EXPECT_EQ(texts(), Texts({"line0", "line1", "line2", "line3"}));
  EXPECT_EQ(rows_.lines()[2].number, 3u);
  EXPECT_EQ(rows_.digits(), 4u);
}

TEST_F(PageRows, ScrollsAndStopsAtBothEnds) {
  rows_.set_view(20, 3);
  open(numbered(10));
  EXPECT_FALSE(rows_.scroll_lines(-1));
  EXPECT_TRUE(rows_.scroll_lines(2));
  EXPECT_EQ(texts()[0], "line2");
  EXPECT_TRUE(rows_.scroll_lines(100));
  EXPECT_EQ(texts(), Texts({"line7", "line8", "line9"}));
  EXPECT_FALSE(rows_.scroll_lines(1));
  EXPECT_TRUE(rows_.scroll_lines(-2));
  EXPECT_EQ(texts()[0], "line5");
  EXPECT_TRUE(rows_.scroll_lines(-100));
  EXPECT_EQ(texts()[0], "line0");
  EXPECT_TRUE(rows_.go_to_end());
  EXPECT_EQ(texts()[0], "line7");
  EXPECT_TRUE(rows_.go_to_offset(0));
  EXPECT_EQ(texts()[0], "line0");
}

TEST_F(PageRows, AShortFileDoesNotScroll) {
  rows_.set_view(20, 9);
  open(numbered(3));
  EXPECT_FALSE(rows_.scroll_lines(1));
  EXPECT_FALSE(rows_.go_to_end());
  const TextRows::Range range = rows_.vertical();
  EXPECT_EQ(range.position, 0u);
  EXPECT_EQ(range.page, range.size);
}

TEST_F(PageRows, AnEmptyFileHasNoLines) {
  open("");
  EXPECT_TRUE(rows_.lines().empty());
  EXPECT_FALSE(rows_.scroll_lines(1));
  EXPECT_EQ(rows_.vertical().size, 0u);
  EXPECT_EQ(rows_.offset_at(0, 0), 0u);
  rows_.select_all();
  EXPECT_EQ(selected(), "");
  rows_.select_word(0);
  rows_.extend(1, 0);
  rows_.extend(0, 1);
  rows_.extend(-1, 0);
  EXPECT_FALSE(rows_.count_numbers(1));
}

TEST_F(PageRows, WithoutAFileNothingHappens) {
  std::string reason;
  EXPECT_FALSE(rows_.open(folder_.path("none"), {}, &reason));
  EXPECT_NE(reason, "");
  EXPECT_TRUE(rows_.lines().empty());
  EXPECT_FALSE(rows_.scroll_lines(1));
  EXPECT_FALSE(rows_.scroll_columns(1));
  EXPECT_FALSE(rows_.go_to_match(0));
  EXPECT_FALSE(rows_.go_to_end());
  rows_.set_view(5, 5);
  rows_.set_wrap(true);
  rows_.extend(1, 1);
  EXPECT_TRUE(rows_.current_line().first.empty());
}

TEST_F(PageRows, WrapsLinesAndNumbersTheFirst) {
  rows_.set_view(6, 4);
  rows_.set_wrap(true);
  open("one two three four\nfive\n");
  EXPECT_EQ(texts(), Texts({"one ", "two ", "three ", "four", "five"}));
  EXPECT_EQ(rows_.lines()[0].number, 1u);
  EXPECT_EQ(rows_.lines()[1].number, 0u);
  EXPECT_EQ(rows_.lines()[4].number, 2u);
  EXPECT_TRUE(rows_.scroll_lines(1));
  EXPECT_EQ(texts(), Texts({"two ", "three ", "four", "five"}));
  EXPECT_FALSE(rows_.scroll_lines(1));
  EXPECT_TRUE(rows_.scroll_lines(-1));
  EXPECT_EQ(texts()[0], "one ");
}

// What is at the top stays there.
TEST_F(PageRows, KeepsItsPlaceWhenWrapAndWidthChange) {
  rows_.set_view(10, 2);
  std::string text;
  for (int i = 0; i < 40; ++i) text += std::to_string(1000 + i) + " word ";
  open(text + "\n" + numbered(30));
  rows_.set_wrap(true);
  rows_.scroll_lines(12);
  const Texts before = texts();
  rows_.set_view(11, 2);
  EXPECT_EQ(texts()[0], before[0]);
  rows_.set_wrap(false);
  EXPECT_EQ(rows_.lines()[0].number, 1u);
}

// A step at a time and all at once lead to the same lines.
TEST_F(PageRows, ScrollingIsTheSameInAnySteps) {
  std::mt19937 random(3);
  std::string text;
  for (int i = 0; i < 100; ++i) {
    text += std::string(random() % 60, 'x') + ' ';
    text += std::string(random() % 60, 'y') + '\n';
  }
  text += std::string(9000, 'z') + "\nlast";
  for (const bool wrap : {false, true}) {
    rows_.set_view(40, 10);
    rows_.set_wrap(wrap);
    open(text);
    std::vector<Texts> seen = {texts()};
    while (rows_.scroll_lines(1)) seen.push_back(texts());
    for (int i = 0; i < 12; ++i) {
      const size_t target = random() % seen.size();
      rows_.go_to_offset(0);
      rows_.scroll_lines(static_cast<int64_t>(target));
      ASSERT_EQ(texts(), seen[target]) << target;
      rows_.go_to_end();
      rows_.scroll_lines(-static_cast<int64_t>(seen.size() - 1 - target));
      ASSERT_EQ(texts(), seen[target]) << target;
    }
  }
}

TEST_F(PageRows, TheScrollRangeIsInBytes) {
  rows_.set_view(20, 3);
  open(numbered(10));  // 60 bytes
  EXPECT_EQ(rows_.vertical().position, 0u);
  EXPECT_EQ(rows_.vertical().size, 60u);
  EXPECT_EQ(rows_.vertical().page, 18u);
  rows_.scroll_lines(2);
  EXPECT_EQ(rows_.vertical().position, 12u);
  rows_.go_to_end();
  const TextRows::Range range = rows_.vertical();
  EXPECT_EQ(range.position, range.size - range.page);
}

TEST_F(PageRows, ScrollsSidewaysAsFarAsTheWidestLine) {
  rows_.set_view(10, 3);
  open("short\n" + std::string(30, 'x') + "\n");
  EXPECT_EQ(rows_.horizontal().size, 31u);
  EXPECT_TRUE(rows_.scroll_columns(5));
  EXPECT_EQ(rows_.left_column(), 5u);
  EXPECT_TRUE(rows_.scroll_columns(100));
  EXPECT_EQ(rows_.left_column(), 21u);
  EXPECT_FALSE(rows_.scroll_columns(1));
  EXPECT_TRUE(rows_.scroll_columns(-100));
  EXPECT_EQ(rows_.left_column(), 0u);
  rows_.set_wrap(true);
  EXPECT_FALSE(rows_.scroll_columns(5));
}

TEST_F(PageRows, BringsMatchesIntoView) {
  rows_.set_view(20, 6);
  const std::string text = numbered(100);
  const auto offset = static_cast<uint32_t>(text.find("line50"));
  open(text, {{0, 4}, {offset, 6}});
  EXPECT_TRUE(rows_.go_to_match(1));
  EXPECT_EQ(texts()[2], "line50");
  EXPECT_EQ(rows_.current(), 1u);
  EXPECT_EQ(rows_.current_line().first, u"line50");
  EXPECT_EQ(rows_.current_line().second, 51u);
  rows_.scroll_lines(1);
  EXPECT_TRUE(rows_.go_to_match(1));  // still in view: does not move
  EXPECT_EQ(texts()[1], "line50");
  EXPECT_FALSE(rows_.go_to_match(2));
  EXPECT_TRUE(rows_.go_to_match(0));
  EXPECT_EQ(texts()[0], "line0");
}

TEST_F(PageRows, BringsMatchesFarToTheRightIntoView) {
  rows_.set_view(40, 5);
  open(std::string(3000, 'a') + "XX" + std::string(50, 'b'), {{3000, 2}});
  rows_.go_to_match(0);
  EXPECT_LE(rows_.left_column(), 3000u);
  EXPECT_GE(rows_.left_column() + 40, 3002u);
  rows_.set_wrap(true);
  rows_.go_to_match(0);
  bool seen = false;
  for (const std::string& line : texts()) {
    seen = seen || line.find("XX") != std::string::npos;
  }
  EXPECT_TRUE(seen);
}

TEST_F(PageRows, RunsSayHowPartsLook) {
  rows_.set_view(40, 5);
  open("ab XX cd YY ef\n", {{3, 2}, {9, 2}});
  rows_.set_areas({{6, 6}});
  rows_.select(4, 7);
  const ShownLine& line = rows_.lines()[0];
  EXPECT_EQ(rows_.runs(line, 0, line.last),
            std::vector<TextRun>({
                {0, 3},
                {3, 4, false, true, true, false},
                {4, 5, false, true, true, true},
                {5, 6, false, false, false, true},
                {6, 7, true, false, false, true},
                {7, 9, true},
                {9, 11, true, true, false, false},
                {11, 12, true},
                {12, 14},
            }));
  // Only the part in view.
  EXPECT_EQ(
      rows_.runs(line, 10, 13),
      std::vector<TextRun>(
          {{10, 11, true, true, false, false}, {11, 12, true}, {12, 13}}));
}

TEST_F(PageRows, TheCurrentMatchPrevailsWhereMatchesOverlap) {
  open("abcdef", {{0, 4}, {2, 4}});
  rows_.go_to_match(1);
  const ShownLine& line = rows_.lines()[0];
  EXPECT_EQ(rows_.runs(line, 0, 6),
            std::vector<TextRun>({{0, 2, false, true, false, false},
                                  {2, 4, false, true, true, false},
                                  {4, 6, false, true, true, false}}));
}

TEST_F(PageRows, FindsTheOffsetOfAPlace) {
  rows_.set_view(20, 5);
  open("abc\n\xC3\xA9\tz\nlast");
  EXPECT_EQ(rows_.offset_at(0, 0), 0u);
  EXPECT_EQ(rows_.offset_at(0, 2), 2u);
  EXPECT_EQ(rows_.offset_at(0, 99), 3u);
  EXPECT_EQ(rows_.offset_at(0, -5), 0u);
  EXPECT_EQ(rows_.offset_at(1, 1), 6u);
  EXPECT_EQ(rows_.offset_at(1, 3), 6u);
  EXPECT_EQ(rows_.offset_at(1, 4), 7u);
  EXPECT_EQ(rows_.offset_at(-1, 3), 0u);
  EXPECT_EQ(rows_.offset_at(77, 0), 13u);
}

TEST_F(PageRows, CopiesWhatIsSelected) {
  open("abc\n\xC3\xA9\x01z\r\nlast");
  rows_.select(1, 6);
  EXPECT_EQ(selected(), "bc\r\n\xC3\xA9");
  EXPECT_TRUE(rows_.is_end_selected(rows_.lines()[0]));
  EXPECT_FALSE(rows_.is_end_selected(rows_.lines()[1]));
  rows_.select(6, 1);  // backwards
  EXPECT_EQ(selected(), "bc\r\n\xC3\xA9");
  rows_.select_all();
  EXPECT_EQ(selected(), "abc\r\n\xC3\xA9\x01z\r\nlast");
  EXPECT_EQ(rows_.selected_text(3), std::nullopt);
  rows_.select(3, 3);
  EXPECT_EQ(selected(), "");
}

TEST_F(PageRows, CopiesALongLineWithoutBreaks) {
  const std::string text(20'000, 'x');
  open(text + "\n");
  rows_.select_all();
  EXPECT_EQ(to_utf8(*rows_.selected_text(30'000)), text + "\r\n");
}

TEST_F(PageRows, SelectsWords) {
  open("one, two\xC3\xA9_3 (x)");
  rows_.select_word(6);
  EXPECT_EQ(selected(), "two\xC3\xA9_3");
  rows_.select_word(3);
  EXPECT_EQ(selected(), ",");
  rows_.select(0, 0);
  rows_.select_word(500);
  EXPECT_EQ(selected(), "");
}

TEST_F(PageRows, ExtendsTheSelectionFromTheMatch) {
  open("abc\n\xC3\xA9z\nlast", {{1, 1}});
  rows_.extend(1, 0);
  EXPECT_EQ(selected(), "bc");
  rows_.extend(1, 0);
  EXPECT_EQ(selected(), "bc\r\n");
  rows_.extend(1, 0);
  EXPECT_EQ(selected(), "bc\r\n\xC3\xA9");
  rows_.extend(-1, 0);
  rows_.extend(-1, 0);
  EXPECT_EQ(selected(), "bc");
  rows_.extend(0, 1);
  EXPECT_EQ(selected(), "bc\r\n\xC3\xA9z");
  rows_.extend(0, 1);
  EXPECT_EQ(selected(), "bc\r\n\xC3\xA9z\r\nla");
  rows_.extend(0, 1);
  EXPECT_EQ(selected(), "bc\r\n\xC3\xA9z\r\nlast");
  rows_.extend(0, -1);
  rows_.extend(0, -1);
  rows_.extend(0, -1);
  EXPECT_EQ(selected(), "a");
}

TEST_F(PageRows, NumbersOfALargeFileAreCountedInSteps) {
  std::string text;
  for (int i = 0; i < 800'000; ++i) text += "line\n";
  rows_.set_view(20, 3);
  open(text);
  rows_.go_to_offset(3'900'000);
  EXPECT_EQ(rows_.lines()[0].number, 0u);
  EXPECT_TRUE(rows_.count_numbers(1));
  EXPECT_EQ(rows_.lines()[0].number, 0u);
  int calls = 1;
  while (rows_.count_numbers(1)) ++calls;
  EXPECT_LE(calls, 4);
  EXPECT_EQ(rows_.lines()[0].number, 780'001u);
  EXPECT_EQ(rows_.digits(), 6u);
  EXPECT_FALSE(rows_.count_numbers(1));
}

TEST_F(PageRows, AFileThatShrinksLeavesWhatIsThere) {
  rows_.set_view(20, 3);
  open(numbered(100));
  rows_.go_to_end();
  folder_.file("a", "one\ntwo\n");
  rows_.select_all();
  rows_.scroll_lines(-3);
  rows_.scroll_lines(500);
  rows_.lines();
  EXPECT_EQ(selected(), "one\r\ntwo\r\n");
}

TEST(TextRows, TellsTheNumberOfALineThatWasCounted) {
  const test::TempFolder folder;
  const std::string path = folder.file("a", "one\ntwo\nthree");
  TextRows rows;
  std::string reason;
  ASSERT_TRUE(rows.open(path, {}, &reason));
  rows.set_view(80, 10);
  rows.lines();
  EXPECT_EQ(rows.number_at(0), 1u);
  EXPECT_EQ(rows.number_at(5), 2u);
  EXPECT_EQ(rows.number_at(100), 3u);
}

}  // namespace
}  // namespace zenfo::host::gui
