#include "display/display_ops.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "support/display_fixture.h"
#include "support/recording_canvas.h"

namespace zenfo {
namespace {

using testing::DisplayFixture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Marks;
using testing::RecordingCanvas;

class DisplayOps : public ::testing::Test {
 protected:
  DisplayOps() { library_.display = std::make_unique<DisplayState>(); }

  DisplayState& state() { return *library_.display; }
  void show(const std::string& text, const Marks& matches) {
    source_.text = text;
    source_.fill(source_.matches, matches);
    state().show(source_.text, &source_.matches, nullptr);
  }
  void lay_out(const std::string& text, const Marks& matches) {
    show(text, matches);
    ASSERT_EQ(prepare_display(library_, "\n", 0), 1);
  }
  // Three lines of twenty columns a page, ten pixels a column.
  void open_window() { state().window = canvas_; }
  const ColourTable& colours() { return state().colours(); }
  Colours group_colours(uint32_t group) {
    return state().groups()[group].colours;
  }

  DisplayFixture source_;
  Library library_;
  std::shared_ptr<RecordingCanvas> canvas_ =
      std::make_shared<RecordingCanvas>();
};

TEST_F(DisplayOps, FailWithoutADisplay) {
  library_.display.reset();
  int32_t position[2] = {7, 7};
  char buffer[4] = "abc";
  const int32_t answers[] = {
      reset_display(library_),
      prepare_display(library_, "x", 0),
      get_display_line_count(library_),
      get_display_width(library_),
      get_display_top_line(library_),
      get_display_left_column(library_),
      get_display_page_lines(library_),
      set_bytes_per_line(library_, 1),
      get_bytes_per_line(library_),
      get_line_separator(library_, buffer, 4),
      set_display_window(library_, position),
      get_display_scroll_pos(library_, position, position),
      get_display_scroll_track_pos(library_, position, position),
      paint_display(library_, 0, 0, 0, 0),
      repaint_display(library_, 0, 0, 0),
      hit_test_display(library_, 0, 0),
      highlight_group(library_, 0, position),
      clear_highlight(library_),
      mark_groups(library_, 0xFFFFFFFF, 0),
  };
  for (size_t i = 0; i < std::size(answers); ++i) {
    EXPECT_EQ(answers[i], -1) << i;
  }
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(position[1], 7);
}

TEST_F(DisplayOps, TellTheLayout) {
  lay_out("ab\ncdefg\nh", {});
  EXPECT_EQ(get_display_line_count(library_), 3);
  EXPECT_EQ(get_display_width(library_), 5);
  state().top_line = 11;
  state().left_column = 12;
  state().page_lines = 13;
  EXPECT_EQ(get_display_top_line(library_), 11);
  EXPECT_EQ(get_display_left_column(library_), 12);
  EXPECT_EQ(get_display_page_lines(library_), 13);
  EXPECT_EQ(reset_display(library_), 1);
  EXPECT_EQ(get_display_line_count(library_), 0);
  EXPECT_EQ(get_display_width(library_), 0);
  EXPECT_EQ(get_display_top_line(library_), 0);
}

TEST_F(DisplayOps, LayOutAsHexFromTheNextPrepareOn) {
  lay_out(std::string(40, 'x'), {});
  EXPECT_EQ(get_bytes_per_line(library_), 0);
  EXPECT_EQ(set_bytes_per_line(library_, 16), 1);
  EXPECT_EQ(get_bytes_per_line(library_), 16);
  EXPECT_EQ(get_display_line_count(library_), 1);
  EXPECT_EQ(get_display_width(library_), 40);
  EXPECT_EQ(prepare_display(library_, nullptr, 0), 1);
  EXPECT_EQ(get_display_line_count(library_), 3);
  EXPECT_EQ(get_display_width(library_), 66);
  EXPECT_EQ(set_bytes_per_line(library_, 0xFFFFFFFF), 1);
  EXPECT_EQ(get_bytes_per_line(library_), -1);
}

TEST_F(DisplayOps, SplitWindowsLinesWhenToldTo) {
  show("a\r\nb\r\n", {});
  EXPECT_EQ(prepare_display(library_, nullptr, 0), 1);
  EXPECT_EQ(get_display_line_count(library_), 1);
  EXPECT_EQ(prepare_display(library_, "\r\n", 0), 1);
  EXPECT_EQ(get_display_line_count(library_), 3);
  EXPECT_EQ(prepare_display(library_, "", 0), 1);
  EXPECT_EQ(get_display_line_count(library_), 3);
}

TEST_F(DisplayOps, StoreASeparatorEvenWithNothingToShow) {
  EXPECT_EQ(prepare_display(library_, "ab", 0), -1);
  char buffer[8];
  EXPECT_EQ(get_line_separator(library_, buffer, 8), 1);
  EXPECT_STREQ(buffer, "ab");
}

TEST_F(DisplayOps, CopyTheSeparatorWhenTheBufferHoldsIt) {
  char buffer[8] = "zzzzzzz";
  EXPECT_EQ(get_line_separator(library_, buffer, 8), 1);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(prepare_display(library_, nullptr, 0), -1);
  std::memset(buffer, 'z', 8);
  EXPECT_EQ(get_line_separator(library_, buffer, 1), -1);
  EXPECT_EQ(std::string_view(buffer, 4), std::string_view("\0zzz", 4));
  // A separator as long as the buffer is written one byte past it.
  EXPECT_EQ(get_line_separator(library_, buffer, 2), 1);
  EXPECT_EQ(std::string_view(buffer, 4), std::string_view("\n\r\0z", 4));
  EXPECT_EQ(get_line_separator(library_, nullptr, 8), -1);
}

TEST_F(DisplayOps, NeedAWindowToPaintAndScroll) {
  lay_out("abc", {{0, 1}});
  int32_t value = 5;
  EXPECT_EQ(paint_display(library_, 0, 0, 0, 0), -1);
  EXPECT_EQ(repaint_display(library_, 0, 0, 0), -1);
  EXPECT_EQ(get_display_scroll_pos(library_, &value, &value), -1);
  EXPECT_EQ(get_display_scroll_track_pos(library_, &value, &value), -1);
  EXPECT_EQ(value, 5);
}

TEST_F(DisplayOps, ForgetTheWindowWhenGivenNone) {
  open_window();
  EXPECT_EQ(set_display_window(library_, nullptr), -1);
  EXPECT_EQ(state().window, nullptr);
}

TEST_F(DisplayOps, SetScrollRangesWithEachLayoutWithoutRedrawing) {
  open_window();
  lay_out("ab\ncdefg\nh", {});
  EXPECT_THAT(canvas_->calls,
              ElementsAre("horizontal range 5", "vertical range 3"));
  canvas_->forget();
  state().set_scroll_ranges(true);
  EXPECT_THAT(canvas_->calls, ElementsAre("horizontal range 5 redraw",
                                          "vertical range 3 redraw"));
  canvas_->forget();
  show("", {});
  EXPECT_EQ(prepare_display(library_, nullptr, 0), -1);
  EXPECT_THAT(canvas_->calls, IsEmpty());
}

TEST_F(DisplayOps, ReadTheScrollBars) {
  open_window();
  int32_t vertical = 0;
  int32_t horizontal = 0;
  EXPECT_EQ(get_display_scroll_pos(library_, &vertical, &horizontal), 1);
  EXPECT_EQ(vertical, 22);
  EXPECT_EQ(horizontal, 11);
  EXPECT_THAT(canvas_->calls, ElementsAre("get vertical", "get horizontal"));
  EXPECT_EQ(get_display_scroll_track_pos(library_, &vertical, &horizontal), 1);
  EXPECT_EQ(vertical, 44);
  EXPECT_EQ(horizontal, 33);
  canvas_->forget();
  EXPECT_EQ(get_display_scroll_pos(library_, nullptr, &horizontal), 1);
  EXPECT_EQ(horizontal, 11);
  EXPECT_THAT(canvas_->calls, ElementsAre("get horizontal"));
  EXPECT_EQ(get_display_scroll_pos(library_, nullptr, nullptr), 1);
  canvas_->can_scroll = false;
  EXPECT_EQ(get_display_scroll_pos(library_, &vertical, nullptr), -1);
  EXPECT_EQ(get_display_scroll_pos(library_, nullptr, &horizontal), -1);
}

TEST_F(DisplayOps, PaintAndMoveTheScrollBars) {
  open_window();
  lay_out("a\nb\nc\nd\ne", {});
  canvas_->forget();
  canvas_->answer = 4711;
  EXPECT_EQ(paint_display(library_, 1, 2, 0, 1), 4711);
  EXPECT_THAT(canvas_->calls,
              ElementsAre("begin", "fixed font", "end", "vertical page 3 at 1",
                          "horizontal page 20 at 0"));
  EXPECT_EQ(canvas_->texts[0].text, "b");
  canvas_->forget();
  // The painter's failure is not passed on.
  canvas_->can_paint = false;
  EXPECT_EQ(paint_display(library_, 2, 2, 0, 1), 4711);
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "vertical page 3 at 1",
                                          "horizontal page 20 at 0"));
}

TEST_F(DisplayOps, CapWhatScrollBarsAreTold) {
  open_window();
  lay_out("a\nb\nc\nd\ne", {});
  state().width = 0xFFFFFFFF;
  canvas_->forget();
  paint_display(library_, 0xFFFFFFFF, 0xFFFFFFFE, 0, 1);
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "fixed font", "end",
                                          "vertical page 3 at 2147483647",
                                          "horizontal page 20 at 2147483647"));
  EXPECT_EQ(state().top_line, 0xFFFFFFFF);
  state().set_scroll_ranges(false);
  EXPECT_EQ(canvas_->calls[5], "horizontal range 2147483647");
}

TEST_F(DisplayOps, RepaintWhereThePageStandsWhateverTheFirstArgument) {
  open_window();
  lay_out("a\nb\nc\nd\ne", {});
  paint_display(library_, 2, 0, 0, 1);
  canvas_->forget();
  EXPECT_EQ(repaint_display(library_, 4, 1, 0), 1);
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "variable font", "end"));
  EXPECT_EQ(canvas_->texts[0].text, "3");
  EXPECT_EQ(canvas_->texts[1].text, "c");
  EXPECT_EQ(canvas_->rules.size(), 1u);
  canvas_->can_paint = false;
  EXPECT_EQ(repaint_display(library_, 0, 0, 0), -1);
}

TEST_F(DisplayOps, PaintTheLinesThereAreAsTheyWereLaidOut) {
  open_window();
  lay_out("ab", {});
  ASSERT_EQ(set_bytes_per_line(library_, 4), 1);
  paint_display(library_, 0, 0, 0, 1);
  EXPECT_EQ(canvas_->texts[0].text, "ab");
  ASSERT_EQ(prepare_display(library_, nullptr, 0), 1);
  canvas_->forget();
  paint_display(library_, 0, 0, 0, 1);
  EXPECT_EQ(canvas_->texts[0].text, "61 62 ");
}

TEST_F(DisplayOps, SurviveAHostThatTakesTheWindowAwayWhilePaintingBegins) {
  open_window();
  lay_out("ab\ncd", {{0, 1}});
  std::weak_ptr<RecordingCanvas> canvas = canvas_;
  canvas_->while_beginning = [&] {
    set_display_window(library_, nullptr);
    reset_display(library_);
  };
  canvas_->answer = 3;
  canvas_.reset();
  EXPECT_EQ(paint_display(library_, 0, 0, 1, 1), 3);
  EXPECT_TRUE(canvas.expired());
}

TEST_F(DisplayOps, TellWhichMatchLiesUnderAPoint) {
  open_window();
  lay_out("abcd\nef", {{1, 1}, {5, 2}});
  EXPECT_EQ(hit_test_display(library_, 15, 5), -1);
  paint_display(library_, 0, 0, 0, 1);
  EXPECT_EQ(hit_test_display(library_, 5, 5), -1);
  EXPECT_EQ(hit_test_display(library_, 15, 5), 0);
  EXPECT_EQ(hit_test_display(library_, 5, 30), 1);
  EXPECT_EQ(hit_test_display(library_, -1, -1), -1);
}

TEST_F(DisplayOps, TellOfNoMatchUntilTheLayoutIsPainted) {
  open_window();
  const auto paint = [&] {
    lay_out("abcd\nef", {{1, 1}, {5, 2}});
    paint_display(library_, 0, 0, 0, 1);
    ASSERT_EQ(hit_test_display(library_, 15, 5), 0);
  };
  paint();
  EXPECT_EQ(reset_display(library_), 1);
  EXPECT_EQ(hit_test_display(library_, 15, 5), -1);
  paint();
  EXPECT_EQ(prepare_display(library_, "\n", 0), 1);
  EXPECT_EQ(hit_test_display(library_, 15, 5), -1);
  paint_display(library_, 0, 0, 0, 1);
  EXPECT_EQ(hit_test_display(library_, 15, 5), 0);
}

TEST_F(DisplayOps, HighlightOneGroupAtATime) {
  lay_out("ab\ncd", {{1, 3}, {4, 1}});
  int32_t position[2] = {9, 9};
  EXPECT_EQ(highlight_group(library_, 0, position), 1);
  EXPECT_EQ(group_colours(0), (Colours{255, colours().accent.text}));
  EXPECT_EQ(state().highlighted_group(), 0);
  EXPECT_EQ(state().saved_colours(), colours().match);
  EXPECT_EQ(highlight_group(library_, 1, position), 1);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(group_colours(1), colours().accent);
  EXPECT_EQ(clear_highlight(library_), 1);
  EXPECT_EQ(group_colours(1), colours().match);
  EXPECT_EQ(state().highlighted_group(), -1);
  EXPECT_EQ(state().saved_colours(), Colours{});
  EXPECT_EQ(clear_highlight(library_), 1);
}

TEST_F(DisplayOps, FailToHighlightWhatIsNotThere) {
  lay_out("abc", {{0, 2}, {1, 1}});  // the second is hidden
  int32_t position[2] = {9, 9};
  ASSERT_EQ(highlight_group(library_, 0, position), 1);
  EXPECT_EQ(highlight_group(library_, 0, nullptr), -1);
  EXPECT_EQ(state().highlighted_group(), 0);
  position[0] = position[1] = 9;
  EXPECT_EQ(highlight_group(library_, 2, position), -1);
  EXPECT_EQ(position[0], 9);
  EXPECT_EQ(position[1], 0);
  EXPECT_EQ(state().highlighted_group(), -1);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(highlight_group(library_, 1, position), -1);
  EXPECT_EQ(highlight_group(library_, 0xFFFFFFFF, position), -1);
}

TEST_F(DisplayOps, SuggestWhereToScrollForAHighlight) {
  std::string text;
  for (int i = 0; i < 20; ++i) text += std::string(99, 'x') + "\n";
  const struct {
    const char* what;
    uint32_t line, column;                         // of the match
    uint32_t top, left, page_lines, page_columns;  // the page
    int32_t wanted_line, wanted_column;
  } cases[] = {
      {"first visible line", 5, 0, 5, 0, 4, 10, 5, 0},
      {"last visible line", 8, 0, 5, 0, 4, 10, 5, 0},
      {"just below it", 9, 0, 5, 0, 4, 10, 9, 0},
      {"just above", 4, 0, 5, 0, 4, 10, 4, 0},
      {"no page yet", 0, 0, 0, 0, 0, 0, 0, 0},
      {"no page yet, further down", 3, 4, 0, 0, 0, 0, 3, 4},
      {"in the first page of columns", 5, 9, 5, 30, 4, 10, 5, 0},
      {"behind it, left of what is seen", 5, 10, 5, 30, 4, 10, 5, 10},
      {"at the left column", 5, 30, 5, 30, 4, 10, 5, 30},
      {"at the page's end", 5, 40, 5, 30, 4, 10, 5, 30},
      {"behind the page's end", 5, 41, 5, 30, 4, 10, 5, 41},
      {"at the end of the first page", 5, 10, 5, 0, 4, 10, 5, 0},
      {"a page at the end of all numbers", 5, 0, 0xFFFFFFFF, 0, 4, 10, 5, 0},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    lay_out(text, {{row.line * 100 + row.column, 1}});
    state().top_line = row.top;
    state().left_column = row.left;
    state().page_lines = row.page_lines;
    state().page_columns = row.page_columns;
    int32_t position[2] = {-5, -5};
    ASSERT_EQ(highlight_group(library_, 0, position), 1);
    EXPECT_EQ(position[0], row.wanted_line);
    EXPECT_EQ(position[1], row.wanted_column);
  }
}

TEST_F(DisplayOps, MarkAndUnmarkGroups) {
  lay_out("abc", {{0, 1}, {1, 1}, {2, 1}});
  EXPECT_EQ(mark_groups(library_, 1, 0), 0);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(group_colours(1), colours().plain);
  EXPECT_EQ(mark_groups(library_, 0xFFFFFFFF, 0), 0);
  for (uint32_t i = 0; i < 3; ++i) EXPECT_EQ(group_colours(i), colours().plain);
  EXPECT_EQ(mark_groups(library_, 2, 1), 0);
  EXPECT_EQ(group_colours(2), colours().match);
  EXPECT_EQ(group_colours(1), colours().plain);
  for (const int32_t action : {2, -2, 2147483647}) {
    EXPECT_EQ(mark_groups(library_, 0xFFFFFFFF, action), 0);
    EXPECT_EQ(group_colours(2), colours().match);
    EXPECT_EQ(group_colours(1), colours().plain);
  }
  EXPECT_EQ(mark_groups(library_, 3, 0), -1);
  EXPECT_EQ(mark_groups(library_, 0xFFFFFFFE, 0), -1);
}

TEST_F(DisplayOps, MarkNoGroupsWhenThereAreNone) {
  EXPECT_EQ(mark_groups(library_, 0xFFFFFFFF, 1), 0);
  EXPECT_EQ(mark_groups(library_, 0, 1), -1);
  lay_out("ab", {{0, 2}, {1, 1}});
  EXPECT_EQ(mark_groups(library_, 1, 1), 0);  // hidden
}

TEST_F(DisplayOps, TogglingTwiceLeavesTheMatchTextColour) {
  lay_out("abc", {{0, 1}});
  ASSERT_EQ(mark_groups(library_, 0, 0), 0);
  EXPECT_EQ(mark_groups(library_, 0, -1), 0);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(mark_groups(library_, 0, -1), 0);
  EXPECT_EQ(group_colours(0),
            (Colours{colours().plain.background, colours().match.text}));
}

TEST_F(DisplayOps, MarkWhatAHighlightWillLeave) {
  lay_out("abc", {{0, 1}, {1, 1}});
  int32_t position[2];
  ASSERT_EQ(highlight_group(library_, 0, position), 1);
  EXPECT_EQ(mark_groups(library_, 0xFFFFFFFF, 0), 0);
  EXPECT_EQ(group_colours(0), colours().accent);
  EXPECT_EQ(group_colours(1), colours().plain);
  EXPECT_EQ(state().saved_colours(), colours().plain);
  EXPECT_EQ(mark_groups(library_, 0, -1), 0);
  EXPECT_EQ(group_colours(0), colours().accent);
  EXPECT_EQ(clear_highlight(library_), 1);
  EXPECT_EQ(group_colours(0), colours().match);
}

}  // namespace
}  // namespace zenfo
