#include "display/page_setup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    prepare_display(state, "\n", 0);
  }

  std::shared_ptr<RecordingCanvas> canvas = std::make_shared<RecordingCanvas>();
};

struct SetupCase {
  const char* what;
  int lines;
  Rectangle client;
  FontMetrics metrics;
  PaintOptions options;
  // What is stored, and the gutter.
  uint32_t page_lines, page_columns, top_line, left_column;
  int32_t gutter;
};

TEST(Page, CountsLinesAndColumnsAndClampsTheScrollPosition) {
  constexpr Rectangle kClient{0, 0, 200, 60};
  constexpr FontMetrics kMetrics{20, 10};
  const SetupCase cases[] = {
      {"a page of many",
       10,
       kClient,
       kMetrics,
       {.top_line = 4},
       3,
       20,
       4,
       0,
       0},
      {"as many lines as fit begin at 0",
       3,
       kClient,
       kMetrics,
       {.top_line = 1},
       3,
       20,
       0,
       0,
       0},
      {"fewer lines than fit begin at 0",
       2,
       kClient,
       kMetrics,
       {.top_line = 7},
       3,
       20,
       0,
       0,
       0},
      {"one line more than fit",
       4,
       kClient,
       kMetrics,
       {.top_line = 2},
       3,
       20,
       2,
       0,
       0},
      {"a top line behind the end stays",
       10,
       kClient,
       kMetrics,
       {.top_line = 4294967295u},
       3,
       20,
       4294967295u,
       0,
       0},
      {"columns that fit begin at 0",
       10,
       {0, 0, 50, 60},
       kMetrics,
       {.left_column = 2},
       3,
       5,
       0,
       0,
       0},
      {"columns that do not fit",
       10,
       {0, 0, 49, 60},
       kMetrics,
       {.left_column = 2},
       3,
       4,
       0,
       2,
       0},
      {"a gutter of the digits and a column",
       10,
       kClient,
       kMetrics,
       {.line_numbers = true},
       3,
       17,
       0,
       0,
       30},
      {"a client narrower than the gutter",
       10,
       {0, 0, 25, 60},
       kMetrics,
       {.left_column = 1, .line_numbers = true},
       3,
       0,
       0,
       1,
       30},
      {"pixels over are no line or column",
       10,
       {0, 0, 209, 79},
       kMetrics,
       {},
       3,
       20,
       0,
       0,
       0},
      {"metrics of 0 count as 1", 100, kClient, {0, 0}, {}, 60, 200, 0, 0, 0},
      {"no room at all",
       10,
       {0, 0, 0, 0},
       kMetrics,
       {.top_line = 1, .left_column = 1},
       0,
       0,
       1,
       1,
       0},
      {"a client upside down",
       10,
       {0, 60, 200, 0},
       kMetrics,
       {},
       0,
       20,
       0,
       0,
       0},
  };
  for (const SetupCase& row : cases) {
    SCOPED_TRACE(row.what);
    PageFixture display(row.lines);
    display.canvas->client = row.client;
    display.canvas->metrics = row.metrics;
    const Page page(display.state, display.canvas, row.options);
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

TEST(Page, GoesByTheLinesThereAreOncePaintingHasBegun) {
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
