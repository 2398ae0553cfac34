#include "gui/text/text_window.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "shared/text/json_text.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

bool go_on_always() { return false; }

class Window : public testing::Test {
 protected:
  void open(const std::string& text, std::vector<Match> matches = {}) {
    std::string reason;
    path_ = folder_.file("a", text);
    ASSERT_TRUE(window_.open(path_, std::move(matches), &reason)) << reason;
  }

  static std::vector<std::string> texts(const std::vector<TextRow>& rows) {
    std::vector<std::string> all;
    for (const TextRow& row : rows) all.push_back(row.bytes);
    return all;
  }
  using Texts = std::vector<std::string>;

  const test::TempFolder folder_;
  std::string path_;
  TextWindow window_;
};

TEST_F(Window, ShowsRowsInBothDirections) {
  open("one\r\ntwo\n\nfour");
  EXPECT_EQ(texts(window_.rows_from(0, 10)), Texts({"one", "two", "", "four"}));
  EXPECT_EQ(texts(window_.rows_from(6, 2)), Texts({"two", ""}));
  EXPECT_EQ(texts(window_.rows_before(10, 2)), Texts({"two", ""}));
  EXPECT_EQ(texts(window_.rows_before(3, 2)), Texts());
  EXPECT_EQ(window_.row_start(4), 0u);
  EXPECT_EQ(window_.row_start(5), 5u);
  EXPECT_EQ(window_.row_start(1000), 10u);
  const TextRow row = window_.rows_from(5, 1)[0];
  EXPECT_EQ(row.offset, 5u);
  EXPECT_EQ(row.end, 9u);
  EXPECT_EQ(row.number, 2u);
  EXPECT_TRUE(row.begins_line);
}

TEST_F(Window, AnEmptyFileHasNoRows) {
  open("");
  EXPECT_TRUE(window_.rows_from(0, 5).empty());
  EXPECT_TRUE(window_.rows_before(0, 5).empty());
  EXPECT_EQ(window_.row_start(7), 0u);
  EXPECT_EQ(window_.count_to(0, go_on_always), 1u);
}

TEST_F(Window, MarksMatchesWithTheirNumbers) {
  open("aXXb\ncXX\nXXd\n", {{1, 2}, {6, 5}, {10, 1}});
  const std::vector<TextRow> rows = window_.rows_from(0, 9);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].marks, std::vector<Mark>({{1, 2, 0}}));
  EXPECT_EQ(rows[1].marks, std::vector<Mark>({{1, 2, 1}}));
  EXPECT_EQ(rows[2].marks, std::vector<Mark>({{0, 2, 1}, {1, 1, 2}}));
}

// All rows once, forwards and backwards, and from every row on.
TEST_F(Window, RowsAreTheSameFromAnywhere) {
  std::mt19937 random(9);
  for (int round = 0; round < 8; ++round) {
    std::string text;
    while (text.size() < 40'000) {
      const size_t length = random() % (round % 2 == 0 ? 200 : 20'000);
      text += std::string(length, static_cast<char>('a' + random() % 26));
      if (random() % 4 != 0) text += '\n';
    }
    open(text);
    const std::vector<TextRow> rows = window_.rows_from(0, 100'000);
    std::string joined;
    for (size_t i = 0; i < rows.size(); ++i) {
      ASSERT_EQ(rows[i].offset, joined.size());
      ASSERT_EQ(rows[i].begins_line, joined.empty() || joined.back() == '\n');
      ASSERT_LE(rows[i].bytes.size(), 2 * TextWindow::kPiece);
      // Only long lines are cut, and not near their starts.
      if (!rows[i].begins_line) {
        ASSERT_EQ(rows[i].offset % TextWindow::kPiece, 0u);
        const size_t line_end = joined.rfind('\n');
        ASSERT_GE(joined.size() - line_end - 1, TextWindow::kPiece);
      }
      joined += text.substr(rows[i].offset, rows[i].end - rows[i].offset);
    }
    ASSERT_EQ(joined, text);
    EXPECT_EQ(window_.rows_before(text.size(), 100'000).size() + 1,
              rows.size());
    for (int i = 0; i < 50; ++i) {
      const size_t index = random() % rows.size();
      const uint64_t inside = rows[index].offset +
                              random() % (rows[index].end - rows[index].offset);
      ASSERT_EQ(window_.row_start(inside), rows[index].offset);
      ASSERT_EQ(window_.rows_from(inside, 1)[0], rows[index]);
      const std::vector<TextRow> before = window_.rows_before(inside, 1);
      ASSERT_EQ(before.size(), index > 0 ? 1u : 0u);
      if (index > 0) {
        ASSERT_EQ(before[0], rows[index - 1]);
      }
    }
  }
}

TEST_F(Window, NumbersAppearWhenTheyAreCounted) {
  std::string text;
  for (int i = 0; i < 400'000; ++i) text += "line\n";
  open(text);
  const uint64_t far = 1'900'001;
  EXPECT_EQ(window_.rows_from(far, 1)[0].number, 0u);
  EXPECT_EQ(window_.count_to(far, [] { return true; }), std::nullopt);
  EXPECT_EQ(window_.count_to(far, go_on_always), 380'001u);
  const std::vector<TextRow> rows = window_.rows_from(far, 2);
  EXPECT_EQ(rows[0].number, 380'001u);
  EXPECT_EQ(rows[1].number, 380'002u);
  EXPECT_EQ(window_.line_start(1, go_on_always), 0u);
  EXPECT_EQ(window_.line_start(2, go_on_always), 5u);
  EXPECT_EQ(window_.line_start(380'001, go_on_always), 1'900'000u);
  EXPECT_EQ(window_.line_start(400'000, go_on_always), text.size() - 5);
  EXPECT_EQ(window_.line_start(400'001, go_on_always), std::nullopt);
}

TEST_F(Window, PiecesOfALongLineHaveItsNumber) {
  open("x\n" + std::string(10'000, 'y') + "\nz");
  const std::vector<TextRow> rows = window_.rows_from(0, 20);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[1].number, 2u);
  EXPECT_EQ(rows[2].number, 2u);
  EXPECT_FALSE(rows[2].begins_line);
  EXPECT_EQ(rows[3].number, 3u);
}

// All pieces of a long line are UTF-8 if the line is.
TEST_F(Window, NoCharacterIsCut) {
  const std::string characters[] = {"\xC3\xA9", "\xE2\x82\xAC",
                                    "\xF0\x9F\x98\x80"};
  for (size_t shift = 0; shift < 5; ++shift) {
    std::string text(shift, 'x');
    for (int i = 0; i < 9000; ++i) text += characters[i / 7 % 3];
    for (int tail = 0; tail < 2; ++tail) {
      open(text);
      const std::vector<TextRow> rows = window_.rows_from(0, 100);
      ASSERT_GT(rows.size(), 3u);
      uint64_t end = 0;
      for (const TextRow& row : rows) {
        ASSERT_EQ(row.offset, end);
        end = row.end;
        EXPECT_TRUE(is_utf8(row.bytes)) << shift << " at " << row.offset;
        for (uint64_t at = row.offset; at < row.offset + 4; ++at) {
          EXPECT_EQ(window_.row_start(at), row.offset);
        }
        EXPECT_EQ(window_.row_start(row.end - 1), row.offset);
      }
      EXPECT_EQ(end, text.size());
      text += "\n";
    }
  }
}

TEST_F(Window, ALineThatEndsInsideOfACharacterNearACut) {
  const std::string text =
      std::string(TextWindow::kPiece - 1, 'x') + "\xC3\xA9";
  open(text);
  const std::vector<TextRow> rows = window_.rows_from(0, 9);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].bytes, text);
  EXPECT_EQ(window_.row_start(text.size()), 0u);
}

TEST_F(Window, SaysWhyAFileCannotBeShown) {
  std::string reason;
  EXPECT_FALSE(window_.open(folder_.path("none"), {}, &reason));
  EXPECT_NE(reason, "");
  EXPECT_TRUE(window_.rows_from(0, 5).empty());
}

TEST_F(Window, SeesThatTheFileHasChanged) {
  open("one\ntwo\n");
  EXPECT_FALSE(window_.has_changed());
  test::write_file(path_, "one\n");
  EXPECT_TRUE(window_.has_changed());
  EXPECT_EQ(texts(window_.rows_from(0, 5)), Texts({"one"}));
}

}  // namespace
}  // namespace zenfo::host::gui
