#include "display/hex_painter.h"

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

class HexPainter : public ::testing::Test {
 protected:
  // Ten pixels per letter, twenty per line, three lines per page.
  void lay_out(const std::string& text, uint32_t bytes, const Marks& matches) {
    display_.state.bytes_per_line = bytes;
    display_.show(text, matches);
    ASSERT_EQ(prepare_display_now(display_.state, "", 0), 1);
  }
  int32_t paint(PaintOptions options) {
    canvas_->forget();
    options.fixed_font = true;
    return paint_hex(display_.state, canvas_, options);
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

TEST_F(HexPainter, DrawsDigitsThenCharactersSpanBySpan) {
  lay_out("abcdef", 4, {{1, 2}, {3, 2}});
  ASSERT_EQ(paint({}), 1);
  EXPECT_THAT(
      canvas_->texts,
      ElementsAre(plain(0, 0, "61 "), match(30, 0, "62 63 "),
                  match(90, 0, "64 "), plain(120, 0, "a"), match(130, 0, "bc"),
                  match(150, 0, "d"), match(0, 20, "65 "), plain(30, 20, "66 "),
                  match(120, 20, "e"), plain(130, 20, "f")));
  EXPECT_THAT(canvas_->rules,
              ElementsAre(DrawnRule{120, 0, 60, colours().gutter.text},
                          DrawnRule{180, 0, 60, colours().gutter.text}));
  EXPECT_TRUE(canvas_->clip_is_client);
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "fixed font", "end"));
}

TEST_F(HexPainter, FindsMatchesAtTheirDigitsAndAtTheirCharacters) {
  lay_out("abcdef", 4, {{1, 2}, {3, 2}});
  ASSERT_EQ(paint({}), 1);
  const struct {
    int32_t x, y;
    uint32_t group;
  } cases[] = {{29, 5, kNoGroup},  {30, 5, 0},         {89, 5, 0},
               {91, 5, 1},         {125, 5, kNoGroup}, {130, 5, 0},
               {149, 5, 0},        {155, 5, 1},        {161, 5, kNoGroup},
               {5, 30, 1},         {40, 30, kNoGroup}, {125, 30, 1},
               {135, 30, kNoGroup}};
  for (const auto& row : cases) {
    EXPECT_EQ(display_.state.group_at(row.x, row.y), row.group)
        << row.x << ' ' << row.y;
  }
}

TEST_F(HexPainter, WritesAllBytesInUpperCaseAndControlBytesAsDots) {
  std::string text;
  std::string characters;
  for (int i = 0; i < 256; ++i) {
    text += static_cast<char>(i);
    characters += i < 32 || i == 127 ? '.' : static_cast<char>(i);
  }
  canvas_->client = {0, 0, 30000, 60};
  lay_out(text, 256, {});
  ASSERT_EQ(paint({}), 1);
  ASSERT_EQ(canvas_->texts.size(), 2u);
  const std::string& digits = canvas_->texts[0].text;
  EXPECT_EQ(digits.substr(0, 9), "00 01 02 ");
  EXPECT_EQ(digits.substr(0x9F * 3, 6), "9F A0 ");
  EXPECT_EQ(digits.substr(255 * 3), "FF ");
  EXPECT_EQ(canvas_->texts[1].text, characters);
}

TEST_F(HexPainter, ScrollsTheDigitsByColumns) {
  canvas_->client = {0, 0, 100, 60};
  lay_out("abcd", 4, {{1, 1}});
  const struct {
    uint32_t left;
    std::vector<DrawnText> texts;
    int32_t start;
    // clang-format off
  } cases[] = {
    {1, {plain(0, 0, "1 "), match(20, 0, "62 "), plain(50, 0, "63 64 ")}, 110},
    {2, {plain(0, 0, " "), match(10, 0, "62 "), plain(40, 0, "63 64 ")}, 100},
    {3, {match(0, 0, "62 "), plain(30, 0, "63 64 "), plain(90, 0, "a")}, 90},
    {4, {match(0, 0, "2 "), plain(20, 0, "63 64 "), plain(80, 0, "a"), match(90, 0, "b")}, 80},
    {11, {plain(0, 0, " "), plain(10, 0, "a"), match(20, 0, "b"), plain(30, 0, "cd")}, 10},
  };
  // clang-format on
  for (const auto& row : cases) {
    ASSERT_EQ(paint({.left_column = row.left}), 1);
    EXPECT_EQ(canvas_->texts, row.texts) << row.left;
    EXPECT_THAT(
        canvas_->rules,
        ElementsAre(DrawnRule{row.start, 0, 60, colours().gutter.text},
                    DrawnRule{row.start + 60, 0, 60, colours().gutter.text}));
  }
}

TEST_F(HexPainter, KeepsTheCharactersAtTheClientsEdgeWhenScrolledFar) {
  canvas_->client = {0, 0, 100, 60};
  lay_out("abcd", 4, {{1, 1}});
  for (const uint32_t left : {12u, 13u, 17u, 4000000000u}) {
    ASSERT_EQ(paint({.left_column = left}), 1);
    EXPECT_THAT(canvas_->texts, ElementsAre(plain(0, 0, "a"), match(10, 0, "b"),
                                            plain(20, 0, "cd")))
        << left;
    EXPECT_THAT(canvas_->rules,
                ElementsAre(DrawnRule{60, 0, 60, colours().gutter.text}));
    EXPECT_EQ(display_.state.group_at(15, 5), 0u);
  }
}

TEST_F(HexPainter, PutsTheGuttersRuleAtItsEndAndTheCharactersAColumnFurther) {
  lay_out("abcd", 2, {{2, 1}});
  ASSERT_EQ(paint({.line_numbers = true}), 1);
  EXPECT_THAT(
      canvas_->texts,
      ElementsAre(drawn(0, 0, "1", colours().gutter), plain(20, 0, "61 62 "),
                  plain(90, 0, "ab"), drawn(0, 20, "2", colours().gutter),
                  match(20, 20, "63 "), plain(50, 20, "64 "),
                  match(90, 20, "c"), plain(100, 20, "d")));
  EXPECT_THAT(canvas_->rules,
              ElementsAre(DrawnRule{20, 0, 60, colours().gutter.text},
                          DrawnRule{90, 0, 60, colours().gutter.text},
                          DrawnRule{130, 0, 60, colours().gutter.text}));
}

TEST_F(HexPainter, TouchesOnlyWhatCanBeSeen) {
  Marks marks;
  for (uint32_t i = 0; i < 500000; ++i) marks.push_back({i * 2, 1});
  lay_out(std::string(1000000, 'x'), 1000000, marks);
  ASSERT_EQ(paint({.left_column = 1500000}), 1);
  EXPECT_EQ(canvas_->texts.size(), 7u);  // bytes of thirty pixels each
  EXPECT_EQ(canvas_->texts[0], match(0, 0, "78 "));
  EXPECT_EQ(display_.state.group_at(5, 5), 250000u);
  lay_out(std::string(1000000, 'x'), 4294967295u, {});
  ASSERT_EQ(paint({.left_column = 1500000}), 1);
  EXPECT_EQ(canvas_->texts.size(), 1u);
  EXPECT_LE(canvas_->longest_call, 8192u);
  lay_out(std::string(1000000, 'x'), 1, {});
  ASSERT_EQ(paint({.top_line = 999998}), 1);
  EXPECT_EQ(canvas_->texts.size(), 4u);
}

TEST_F(HexPainter, DrawsLongSpansInPiecesAndFindsThem) {
  canvas_->metrics = {20, 1};
  canvas_->client = {0, 0, 60000, 60};
  lay_out(std::string(9000, 'a'), 9000, {{0, 9000}});
  ASSERT_EQ(paint({}), 1);
  std::string shown;
  for (const DrawnText& drawn : canvas_->texts) shown += drawn.text;
  EXPECT_EQ(shown.size(), 9000u * 4);
  EXPECT_EQ(canvas_->texts.back().x + canvas_->texts.back().text.size(),
            36000u);
  EXPECT_LE(canvas_->longest_call, 8192u);
  EXPECT_EQ(display_.state.group_at(26999, 5), 0u);
  EXPECT_EQ(display_.state.group_at(35999, 5), 0u);
  EXPECT_EQ(display_.state.group_at(36001, 5), kNoGroup);
}

TEST_F(HexPainter, FailsWhenPaintingCannotBegin) {
  lay_out("ab", 1, {});
  canvas_->can_paint = false;
  EXPECT_EQ(paint({}), -1);
  EXPECT_THAT(canvas_->texts, IsEmpty());
  EXPECT_THAT(canvas_->rules, IsEmpty());
}

}  // namespace
}  // namespace zenfo
