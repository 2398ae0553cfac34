#include "display/page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "support/display_fixture.h"
#include "support/recording_canvas.h"

namespace zenfo {
namespace {

using platform::FontMetrics;
using platform::Rectangle;
using testing::DisplayFixture;
using testing::DrawnText;
using ::testing::ElementsAre;
using testing::RecordingCanvas;

// A display of `lines` lines of five bytes, the second one marked.
struct PageFixture : DisplayFixture {
  explicit PageFixture(int lines) {
    std::string shown;
    for (int i = 0; i < lines; ++i) shown += i == 0 ? "abcde" : "\nabcde";
    show(shown, {{7, 1}});
    prepare_display_now(state, "\n", 0);
  }

  std::shared_ptr<RecordingCanvas> canvas = std::make_shared<RecordingCanvas>();
};

struct PageCase {
  int lines = 10;
  Rectangle client = {0, 0, 200, 60};
  FontMetrics metrics = {20, 10};
  uint32_t top = 0, left = 0;  // asked for
  bool numbers = false;
  // The stored values, and the gutter.
  uint32_t page_lines = 3, page_columns = 20, top_line = 0, left_column = 0;
  int32_t gutter = 0;
};

TEST(Page, CountsLinesAndColumnsAndClampsTheScrollPosition) {
  // clang-format off
  const std::pair<const char*, PageCase> cases[] = {
    {"a page of many", {.top = 4, .top_line = 4}},
    {"as many lines as fit begin at 0", {.lines = 3, .top = 1}},
    {"fewer lines than fit begin at 0", {.lines = 2, .top = 7}},
    {"one line more than fit", {.lines = 4, .top = 2, .top_line = 2}},
    {"a top line after the end stays", {.top = 4294967295u, .top_line = 4294967295u}},
    {"columns that fit begin at 0", {.client = {0, 0, 50, 60}, .left = 2, .page_columns = 5}},
    {"columns that do not fit", {.client = {0, 0, 49, 60}, .left = 2, .page_columns = 4, .left_column = 2}},
    {"a gutter of the digits and a column", {.numbers = true, .page_columns = 17, .gutter = 30}},
    {"a client within the gutter", {.client = {0, 0, 25, 60}, .left = 1, .numbers = true, .page_columns = 0, .left_column = 1, .gutter = 30}},
    {"pixels over are no line or column", {.client = {0, 0, 209, 79}}},
    {"metrics of 0 count as 1", {.lines = 100, .metrics = {0, 0}, .page_lines = 60, .page_columns = 200}},
    {"no room at all", {.client = {0, 0, 0, 0}, .top = 1, .left = 1, .page_lines = 0, .page_columns = 0, .top_line = 1, .left_column = 1}},
    {"a client upside down", {.client = {0, 60, 200, 0}, .page_lines = 0}},
  };
  // clang-format on
  for (const auto& [what, row] : cases) {
    SCOPED_TRACE(what);
    PageFixture display(row.lines);
    display.canvas->client = row.client;
    display.canvas->metrics = row.metrics;
    const Page page(display.state, display.canvas,
                    {.top_line = row.top,
                     .left_column = row.left,
                     .line_numbers = row.numbers});
    ASSERT_TRUE(page.begun());
    EXPECT_EQ(display.state.page_lines, row.page_lines);
    EXPECT_EQ(display.state.page_columns, row.page_columns);
    EXPECT_EQ(display.state.top_line, row.top_line);
    EXPECT_EQ(display.state.left_column, row.left_column);
    EXPECT_EQ(page.gutter, row.gutter);
  }
}

TEST(Page, EndsAtTheLastLineWithoutWrapping) {
  PageFixture display(10);
  const struct {
    uint32_t top, end;
  } cases[] = {{0, 3}, {7, 10}, {8, 10}, {10, 10}, {4294967295u, 10}};
  for (const auto& row : cases) {
    const Page page(display.state, display.canvas, {.top_line = row.top});
    EXPECT_EQ(page.end_line(), row.end) << row.top;
  }
}

TEST(Page, SelectsTheFontAskedForAndEndsPainting) {
  PageFixture display(1);
  { const Page page(display.state, display.canvas, {.fixed_font = true}); }
  { const Page page(display.state, display.canvas, {}); }
  EXPECT_THAT(display.canvas->calls,
              ElementsAre("begin", "fixed font", "end", "begin",
                          "variable font", "end"));
}

TEST(Page, LeavesAllAsItWasWhenPaintingCannotBegin) {
  PageFixture display(10);
  display.state.page_lines = 5;
  display.state.top_line = 6;
  display.canvas->can_paint = false;
  {
    const Page page(display.state, display.canvas, {.top_line = 1});
    EXPECT_FALSE(page.begun());
  }
  EXPECT_EQ(display.state.page_lines, 5u);
  EXPECT_EQ(display.state.top_line, 6u);
  EXPECT_THAT(display.canvas->calls, ElementsAre("begin"));
}

TEST(Page, UsesTheLinesThatExistOncePaintingHasBegun) {
  PageFixture display(10);
  display.canvas->while_beginning = [&] { display.state.reset(); };
  const Page page(display.state, display.canvas, {.top_line = 5});
  EXPECT_EQ(page.end_line(), 0u);
  EXPECT_EQ(display.state.top_line, 0u);
}

TEST(Page, NumbersLinesFromOneAndSetsMarkedOnesOff) {
  PageFixture display(12);
  display.canvas->client = {5, 7, 200, 60};
  Page page(display.state, display.canvas,
            {.top_line = 1, .line_numbers = true});
  page.draw_number(1);
  page.draw_number(2);
  const ColourTable& colours = display.state.colours();
  EXPECT_THAT(display.canvas->texts,
              ElementsAre(DrawnText{5, 7, "2", colours.marked_gutter.text,
                                    colours.marked_gutter.background},
                          DrawnText{5, 27, "3", colours.gutter.text,
                                    colours.gutter.background}));
  EXPECT_TRUE(display.canvas->clip_is_client);
}

TEST(Page, DrawsNoNumbersUnlessAsked) {
  PageFixture display(2);
  Page page(display.state, display.canvas, {});
  page.draw_number(0);
  EXPECT_TRUE(display.canvas->texts.empty());
}

TEST(Page, DrawsLongTextsInPiecesAsFarAsTheyCanBeSeen) {
  PageFixture display(1);
  display.canvas->metrics = {20, 1};
  display.canvas->client = {0, 0, 20000, 60};
  Page page(display.state, display.canvas, {.fixed_font = true});
  page.move_to(0, 0);
  const std::string text(100000, 'x');
  EXPECT_EQ(page.draw(text, {}, 0), 3 * 8192);
  EXPECT_EQ(display.canvas->longest_call, 8192u);
  ASSERT_EQ(display.canvas->texts.size(), 3u);
  EXPECT_EQ(display.canvas->texts[2].x, 16384);
}

TEST(Page, KeepsPositionsWithinWhatTheSystemTakes) {
  EXPECT_EQ(pixel(5), 5);
  EXPECT_EQ(pixel(int64_t{1} << 40), 2147483647);
  EXPECT_EQ(pixel(-(int64_t{1} << 40)), -2147483647);
}

}  // namespace
}  // namespace zenfo
