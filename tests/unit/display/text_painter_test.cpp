#include "display/text_painter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/display_fixture.h"
#include "support/recording_canvas.h"

namespace zenfo {
namespace {

using testing::DisplayFixture;
using testing::DrawnRule;
using testing::DrawnText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Marks;
using testing::RecordingCanvas;

class TextPainter : public ::testing::Test {
 protected:
  // Ten pixels per letter, twenty per line, three lines of twenty columns per
  // page.
  void lay_out(const std::string& text, const Marks& matches) {
    display_.show(text, matches);
    ASSERT_EQ(prepare_display_now(display_.state, "\n", 0), 1);
  }
  int32_t paint(PaintOptions options) {
    canvas_->forget();
    return paint_text(display_.state, canvas_, options);
  }
  DrawnText drawn(int32_t x, int32_t y, const std::string& text,
                  const Colours& colours) {
    return {x, y, text, colours.text, colours.background};
  }
  DrawnText plain(int32_t x, int32_t y, const std::string& text) {
    return drawn(x, y, text, colours().plain);
  }
  DrawnText match(int32_t x, int32_t y, const std::string& text) {
    return drawn(x, y, text, colours().match);
  }
  const ColourTable& colours() { return display_.state.colours(); }

  DisplayFixture display_;
  std::shared_ptr<RecordingCanvas> canvas_ =
      std::make_shared<RecordingCanvas>();
};

TEST_F(TextPainter, DrawsVisibleLinesSpanBySpan) {
  lay_out("abcd\nef\n\nghi\njk", {{1, 2}, {12, 3}});
  ASSERT_EQ(paint({.top_line = 1}), 1);
  EXPECT_THAT(canvas_->texts,
              ElementsAre(plain(0, 0, "ef"), plain(0, 40, "ghi")));
  ASSERT_EQ(paint({.top_line = 0}), 1);
  EXPECT_THAT(canvas_->texts,
              ElementsAre(plain(0, 0, "a"), match(10, 0, "bc"),
                          plain(30, 0, "d"), plain(0, 20, "ef")));
  ASSERT_EQ(paint({.top_line = 3}), 1);
  EXPECT_THAT(canvas_->texts,
              ElementsAre(plain(0, 0, "ghi"), match(0, 20, "jk")));
  EXPECT_TRUE(canvas_->clip_is_client);
  EXPECT_THAT(canvas_->rules, IsEmpty());
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "variable font", "end"));
}

TEST_F(TextPainter, AdvancesByWhatEachPieceMeasures) {
  lay_out("iiiabi", {{1, 1}, {3, 1}});
  ASSERT_EQ(paint({}), 1);
  EXPECT_THAT(canvas_->texts,
              ElementsAre(plain(0, 0, "i"), match(3, 0, "i"), plain(6, 0, "i"),
                          match(9, 0, "a"), plain(19, 0, "bi")));
  EXPECT_EQ(display_.state.group_at(5, 10), 0u);
  EXPECT_EQ(display_.state.group_at(8, 10), kNoGroup);
  EXPECT_EQ(display_.state.group_at(9, 0), 1u);
  EXPECT_EQ(display_.state.group_at(19, 20), 1u);
  EXPECT_EQ(display_.state.group_at(20, 20), kNoGroup);
  ASSERT_EQ(paint({.fixed_font = true}), 1);
  EXPECT_EQ(display_.state.group_at(5, 10), kNoGroup);
  EXPECT_EQ(display_.state.group_at(15, 10), 0u);
}

TEST_F(TextPainter, BeginsAtTheLeftColumn) {
  const std::string tail(30, 'x');
  lay_out("abcdef" + tail + "\nab\nabc\nabcd", {{1, 1}, {3, 2}, {47, 1}});
  canvas_->client = {0, 0, 200, 79};
  const struct {
    uint32_t left;
    std::vector<DrawnText> texts;
  } cases[] = {
      {2,
       {plain(0, 0, "c"), match(10, 0, "de"), plain(30, 0, "f" + tail),
        plain(0, 40, "c")}},
      {3, {match(0, 0, "de"), plain(20, 0, "f" + tail)}},
      {4, {match(0, 0, "e"), plain(10, 0, "f" + tail)}},
      {5, {plain(0, 0, "f" + tail)}},
      {36, {}},
      {4000000000u, {}},
  };
  for (const auto& row : cases) {
    ASSERT_EQ(paint({.left_column = row.left}), 1);
    EXPECT_EQ(canvas_->texts, row.texts) << row.left;
  }
  ASSERT_EQ(paint({.top_line = 1, .left_column = 3}), 1);
  EXPECT_THAT(canvas_->texts, ElementsAre(match(0, 40, "d")));
  EXPECT_EQ(display_.state.group_at(5, 50), 2u);
}

TEST_F(TextPainter, ForgetsWhereSpansWereDrawnBefore) {
  lay_out("a" + std::string(40, 'b'), {{0, 1}});
  ASSERT_EQ(paint({}), 1);
  ASSERT_EQ(display_.state.group_at(5, 5), 0u);
  ASSERT_EQ(paint({.left_column = 1}), 1);
  EXPECT_EQ(display_.state.group_at(5, 5), kNoGroup);
}

TEST_F(TextPainter, PaintsFromLineZeroWhenAllLinesFit) {
  lay_out("ab\ncd", {});
  ASSERT_EQ(paint({.top_line = 1, .left_column = 1}), 1);
  EXPECT_THAT(canvas_->texts,
              ElementsAre(plain(0, 0, "ab"), plain(0, 20, "cd")));
  EXPECT_EQ(display_.state.top_line, 0u);
  EXPECT_EQ(display_.state.left_column, 0u);
}

TEST_F(TextPainter, NumbersLinesBesideARuleFivePixelsBeforeTheGuttersEnd) {
  lay_out("ab\nc\n\nd", {{3, 1}});
  canvas_->client = {0, 0, 200, 60};
  ASSERT_EQ(paint({.line_numbers = true}), 1);
  EXPECT_THAT(
      canvas_->texts,
      ElementsAre(drawn(0, 0, "1", colours().gutter), plain(20, 0, "ab"),
                  drawn(0, 20, "2", colours().marked_gutter),
                  match(20, 20, "c"), drawn(0, 40, "3", colours().gutter)));
  EXPECT_THAT(canvas_->rules,
              ElementsAre(DrawnRule{15, 0, 60, colours().gutter.text}));
  EXPECT_EQ(display_.state.group_at(20, 20), 0u);
}

TEST_F(TextPainter, DrawsFromTheClientsCorner) {
  lay_out("ab\ncd\nef", {{0, 1}});
  canvas_->client = {7, 9, 100, 49};
  ASSERT_EQ(paint({.line_numbers = true}), 1);
  EXPECT_THAT(
      canvas_->texts,
      ElementsAre(drawn(7, 9, "1", colours().marked_gutter), match(27, 9, "a"),
                  plain(37, 9, "b"), drawn(7, 29, "2", colours().gutter),
                  plain(27, 29, "cd")));
  EXPECT_THAT(canvas_->rules,
              ElementsAre(DrawnRule{22, 9, 49, colours().gutter.text}));
}

TEST_F(TextPainter, DrawsASpanOfMoreThan8192BytesButNeverFindsIt) {
  canvas_->metrics = {20, 1};
  canvas_->client = {0, 0, 20000, 60};
  for (const uint32_t length : {8192u, 8193u, 9000u}) {
    lay_out("a" + std::string(length, 'x') + "b",
            {{1, length}, {length + 1, 1}});
    ASSERT_EQ(paint({.fixed_font = true}), 1);
    EXPECT_LE(canvas_->longest_call, 8192u);
    const bool noted = length <= 8192;
    EXPECT_EQ(canvas_->texts.size(), noted ? 3u : 4u);
    EXPECT_EQ(display_.state.group_at(100, 10), noted ? 0u : kNoGroup);
    // The next span is found where it was drawn.
    EXPECT_EQ(display_.state.group_at(static_cast<int32_t>(length) + 2, 10),
              1u);
  }
}

TEST_F(TextPainter, TouchesOnlyWhatCanBeSeen) {
  const std::string line(1000000, 'x');
  Marks marks;
  for (uint32_t i = 0; i < 500000; ++i) marks.push_back({i * 2, 1});
  lay_out(line + "\n" + line, marks);
  ASSERT_EQ(paint({.left_column = 700000}), 1);
  // Twenty columns are visible, one byte each.
  EXPECT_EQ(canvas_->texts.size(), 20u + 1u);
  EXPECT_EQ(canvas_->texts[0], match(0, 0, "x"));
  EXPECT_LE(canvas_->bytes_measured, 20u + 8192u);
  EXPECT_EQ(display_.state.group_at(1, 1), 350000u);
}

TEST_F(TextPainter, DrawsNothingWithoutLinesOrRoom) {
  EXPECT_EQ(paint({.top_line = 3, .line_numbers = true}), 1);
  EXPECT_THAT(canvas_->texts, IsEmpty());
  EXPECT_EQ(canvas_->rules.size(), 1u);
  lay_out("ab\ncd", {{0, 1}});
  canvas_->client = {0, 0, 0, 60};
  EXPECT_EQ(paint({}), 1);
  EXPECT_THAT(canvas_->texts, IsEmpty());
  EXPECT_EQ(display_.state.group_at(0, 0), kNoGroup);
}

TEST_F(TextPainter, FailsWhenPaintingCannotBegin) {
  lay_out("ab", {});
  canvas_->can_paint = false;
  EXPECT_EQ(paint({}), -1);
  EXPECT_THAT(canvas_->texts, IsEmpty());
}

TEST_F(TextPainter, NeverFindsASpanThatTakesNoRoom) {
  lay_out("ab\ncd", {{2, 1}});
  ASSERT_EQ(paint({}), 1);
  for (int32_t x = 0; x < 40; ++x) {
    EXPECT_EQ(display_.state.group_at(x, 10), kNoGroup);
  }
}

}  // namespace
}  // namespace zenfo
