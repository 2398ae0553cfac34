#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "library/library.h"
#include "support/display_fixture.h"
#include "support/recording_canvas.h"
#include "zenfofr130.h"

namespace zenfo {
namespace {

using testing::DisplayFixture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Marks;
using testing::RecordingCanvas;

class DisplayOperations : public ::testing::Test {
 protected:
  DisplayOperations() { library().display = std::make_unique<DisplayState>(); }
  ~DisplayOperations() override { library().display.reset(); }

  DisplayState& state() { return *library().display; }
  void show(const std::string& text, const Marks& matches) {
    source_.text = text;
    source_.fill(source_.matches, matches);
    state().show(source_.text, &source_.matches, nullptr);
  }
  void lay_out(const std::string& text, const Marks& matches) {
    show(text, matches);
    ASSERT_EQ(PrepareDisplay("\n", 0), 1);
  }
  // Three lines of twenty columns per page, ten pixels per column.
  void open_window() { state().window = canvas_; }
  const ColourTable& colours() { return state().colours(); }
  Colours group_colours(uint32_t group) {
    return state().groups()[group].colours;
  }

  DisplayFixture source_;
  std::shared_ptr<RecordingCanvas> canvas_ =
      std::make_shared<RecordingCanvas>();
};

TEST_F(DisplayOperations, FailWithoutADisplay) {
  library().display.reset();
  int32_t position[2] = {7, 7};
  char buffer[4] = "abc";
  const int32_t answers[] = {
      ResetDisplay(),
      PrepareDisplay("x", 0),
      GetDisplayLineCount(),
      GetDisplayWidth(),
      GetDisplayTopLine(),
      GetDisplayLeftColumn(),
      GetDisplayPageLines(),
      SetBytesPerLine(1),
      GetBytesPerLine(),
      GetLineSeparator(buffer, 4),
      SetDisplayWindow(position),
      GetDisplayScrollPos(position, position),
      GetDisplayScrollTrackPos(position, position),
      PaintDisplay(0, 0, 0, 0),
      RepaintDisplay(0, 0, 0),
      HitTestDisplay(0, 0),
      HighlightGroup(0, position),
      ClearHighlight(),
      MarkGroups(0xFFFFFFFF, 0),
  };
  for (size_t i = 0; i < std::size(answers); ++i) {
    EXPECT_EQ(answers[i], -1) << i;
  }
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(position[1], 7);
}

TEST_F(DisplayOperations, DescribeTheLayout) {
  lay_out("ab\ncdefg\nh", {});
  EXPECT_EQ(GetDisplayLineCount(), 3);
  EXPECT_EQ(GetDisplayWidth(), 5);
  state().top_line = 11;
  state().left_column = 12;
  state().page_lines = 13;
  EXPECT_EQ(GetDisplayTopLine(), 11);
  EXPECT_EQ(GetDisplayLeftColumn(), 12);
  EXPECT_EQ(GetDisplayPageLines(), 13);
  EXPECT_EQ(ResetDisplay(), 1);
  EXPECT_EQ(GetDisplayLineCount(), 0);
  EXPECT_EQ(GetDisplayWidth(), 0);
  EXPECT_EQ(GetDisplayTopLine(), 0);
}

TEST_F(DisplayOperations, LayOutAsHexFromTheNextPrepareOn) {
  lay_out(std::string(40, 'x'), {});
  EXPECT_EQ(GetBytesPerLine(), 0);
  EXPECT_EQ(SetBytesPerLine(16), 1);
  EXPECT_EQ(GetBytesPerLine(), 16);
  EXPECT_EQ(GetDisplayLineCount(), 1);
  EXPECT_EQ(GetDisplayWidth(), 40);
  EXPECT_EQ(PrepareDisplay(nullptr, 0), 1);
  EXPECT_EQ(GetDisplayLineCount(), 3);
  EXPECT_EQ(GetDisplayWidth(), 66);
  EXPECT_EQ(SetBytesPerLine(0xFFFFFFFF), 1);
  EXPECT_EQ(GetBytesPerLine(), -1);
}

TEST_F(DisplayOperations, SplitWindowsLinesWhenAsked) {
  show("a\r\nb\r\n", {});
  EXPECT_EQ(PrepareDisplay(nullptr, 0), 1);
  EXPECT_EQ(GetDisplayLineCount(), 1);
  EXPECT_EQ(PrepareDisplay("\r\n", 0), 1);
  EXPECT_EQ(GetDisplayLineCount(), 3);
  EXPECT_EQ(PrepareDisplay("", 0), 1);
  EXPECT_EQ(GetDisplayLineCount(), 3);
}

TEST_F(DisplayOperations, StoreASeparatorEvenWithNothingToShow) {
  EXPECT_EQ(PrepareDisplay("ab", 0), -1);
  char buffer[8];
  EXPECT_EQ(GetLineSeparator(buffer, 8), 1);
  EXPECT_STREQ(buffer, "ab");
}

TEST_F(DisplayOperations, CopyTheSeparatorWhenTheBufferHoldsIt) {
  char buffer[8] = "zzzzzzz";
  EXPECT_EQ(GetLineSeparator(buffer, 8), 1);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(PrepareDisplay(nullptr, 0), -1);
  std::memset(buffer, 'z', 8);
  EXPECT_EQ(GetLineSeparator(buffer, 1), -1);
  EXPECT_EQ(std::string_view(buffer, 4), std::string_view("\0zzz", 4));
  EXPECT_EQ(GetLineSeparator(nullptr, 8), -1);
}

TEST_F(DisplayOperations, WriteASeparatorAsLongAsTheBufferOneBytePastIt) {
  EXPECT_EQ(PrepareDisplay(nullptr, 0), -1);
  char buffer[5] = "zzzz";
  EXPECT_EQ(GetLineSeparator(buffer, 2), 1);
  EXPECT_EQ(std::string_view(buffer, 4), std::string_view("\n\r\0z", 4));
}

TEST_F(DisplayOperations, NeedAWindowToPaintAndScroll) {
  lay_out("abc", {{0, 1}});
  int32_t value = 5;
  EXPECT_EQ(PaintDisplay(0, 0, 0, 0), -1);
  EXPECT_EQ(RepaintDisplay(0, 0, 0), -1);
  EXPECT_EQ(GetDisplayScrollPos(&value, &value), -1);
  EXPECT_EQ(GetDisplayScrollTrackPos(&value, &value), -1);
  EXPECT_EQ(value, 5);
}

TEST_F(DisplayOperations, ForgetTheWindowWhenGivenNone) {
  open_window();
  EXPECT_EQ(SetDisplayWindow(nullptr), -1);
  EXPECT_EQ(state().window, nullptr);
}

TEST_F(DisplayOperations, SetScrollRangesWithEachLayoutWithoutRedrawing) {
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
  EXPECT_EQ(PrepareDisplay(nullptr, 0), -1);
  EXPECT_THAT(canvas_->calls, IsEmpty());
}

TEST_F(DisplayOperations, ReadTheScrollBars) {
  open_window();
  int32_t vertical = 0;
  int32_t horizontal = 0;
  EXPECT_EQ(GetDisplayScrollPos(&vertical, &horizontal), 1);
  EXPECT_EQ(vertical, 22);
  EXPECT_EQ(horizontal, 11);
  EXPECT_THAT(canvas_->calls, ElementsAre("get vertical", "get horizontal"));
  EXPECT_EQ(GetDisplayScrollTrackPos(&vertical, &horizontal), 1);
  EXPECT_EQ(vertical, 44);
  EXPECT_EQ(horizontal, 33);
  canvas_->forget();
  EXPECT_EQ(GetDisplayScrollPos(nullptr, &horizontal), 1);
  EXPECT_EQ(horizontal, 11);
  EXPECT_THAT(canvas_->calls, ElementsAre("get horizontal"));
  EXPECT_EQ(GetDisplayScrollPos(nullptr, nullptr), 1);
  canvas_->can_scroll = false;
  EXPECT_EQ(GetDisplayScrollPos(&vertical, nullptr), -1);
  EXPECT_EQ(GetDisplayScrollPos(nullptr, &horizontal), -1);
}

TEST_F(DisplayOperations, PaintAndMoveTheScrollBars) {
  open_window();
  lay_out("a\nb\nc\nd\ne", {});
  canvas_->forget();
  canvas_->answer = 4711;
  EXPECT_EQ(PaintDisplay(1, 2, 0, 1), 4711);
  EXPECT_THAT(canvas_->calls,
              ElementsAre("begin", "fixed font", "end", "vertical page 3 at 1",
                          "horizontal page 20 at 0"));
  EXPECT_EQ(canvas_->texts[0].text, "b");
}

TEST_F(DisplayOperations, DoNotPassOnWhatThePainterAnswers) {
  open_window();
  lay_out("a\nb\nc\nd\ne", {});
  canvas_->answer = 4711;
  EXPECT_EQ(PaintDisplay(1, 2, 0, 1), 4711);
  canvas_->forget();
  canvas_->can_paint = false;
  EXPECT_EQ(PaintDisplay(2, 2, 0, 1), 4711);
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "vertical page 3 at 1",
                                          "horizontal page 20 at 0"));
}

TEST_F(DisplayOperations, CapTheValuesOfScrollBars) {
  open_window();
  lay_out("a\nb\nc\nd\ne", {});
  state().width = 0xFFFFFFFF;
  canvas_->forget();
  PaintDisplay(0xFFFFFFFF, 0xFFFFFFFE, 0, 1);
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "fixed font", "end",
                                          "vertical page 3 at 2147483647",
                                          "horizontal page 20 at 2147483647"));
  EXPECT_EQ(state().top_line, 0xFFFFFFFF);
  state().set_scroll_ranges(false);
  EXPECT_EQ(canvas_->calls[5], "horizontal range 2147483647");
}

TEST_F(DisplayOperations, RepaintThePageInViewWhateverTheFirstArgument) {
  open_window();
  lay_out("a\nb\nc\nd\ne", {});
  PaintDisplay(2, 0, 0, 1);
  canvas_->forget();
  EXPECT_EQ(RepaintDisplay(4, 1, 0), 1);
  EXPECT_THAT(canvas_->calls, ElementsAre("begin", "variable font", "end"));
  EXPECT_EQ(canvas_->texts[0].text, "3");
  EXPECT_EQ(canvas_->texts[1].text, "c");
  EXPECT_EQ(canvas_->rules.size(), 1u);
  canvas_->can_paint = false;
  EXPECT_EQ(RepaintDisplay(0, 0, 0), -1);
}

TEST_F(DisplayOperations, PaintTheLinesThereAreAsTheyWereLaidOut) {
  open_window();
  lay_out("ab", {});
  ASSERT_EQ(SetBytesPerLine(4), 1);
  PaintDisplay(0, 0, 0, 1);
  EXPECT_EQ(canvas_->texts[0].text, "ab");
  ASSERT_EQ(PrepareDisplay(nullptr, 0), 1);
  canvas_->forget();
  PaintDisplay(0, 0, 0, 1);
  EXPECT_EQ(canvas_->texts[0].text, "61 62 ");
}

TEST_F(DisplayOperations,
       SurviveAHostThatTakesTheWindowAwayWhilePaintingBegins) {
  open_window();
  lay_out("ab\ncd", {{0, 1}});
  std::weak_ptr<RecordingCanvas> canvas = canvas_;
  canvas_->while_beginning = [&] {
    SetDisplayWindow(nullptr);
    ResetDisplay();
  };
  canvas_->answer = 3;
  canvas_.reset();
  EXPECT_EQ(PaintDisplay(0, 0, 1, 1), 3);
  EXPECT_TRUE(canvas.expired());
}

TEST_F(DisplayOperations, FindTheMatchUnderAPoint) {
  open_window();
  lay_out("abcd\nef", {{1, 1}, {5, 2}});
  EXPECT_EQ(HitTestDisplay(15, 5), -1);
  PaintDisplay(0, 0, 0, 1);
  EXPECT_EQ(HitTestDisplay(5, 5), -1);
  EXPECT_EQ(HitTestDisplay(15, 5), 0);
  EXPECT_EQ(HitTestDisplay(5, 30), 1);
  EXPECT_EQ(HitTestDisplay(-1, -1), -1);
}

TEST_F(DisplayOperations, FindNoMatchUntilTheLayoutIsPainted) {
  open_window();
  const auto paint = [&] {
    lay_out("abcd\nef", {{1, 1}, {5, 2}});
    PaintDisplay(0, 0, 0, 1);
    ASSERT_EQ(HitTestDisplay(15, 5), 0);
  };
  paint();
  EXPECT_EQ(ResetDisplay(), 1);
  EXPECT_EQ(HitTestDisplay(15, 5), -1);
  paint();
  EXPECT_EQ(PrepareDisplay("\n", 0), 1);
  EXPECT_EQ(HitTestDisplay(15, 5), -1);
  PaintDisplay(0, 0, 0, 1);
  EXPECT_EQ(HitTestDisplay(15, 5), 0);
}

TEST_F(DisplayOperations, HighlightOneGroupAtATime) {
  lay_out("ab\ncd", {{1, 3}, {4, 1}});
  int32_t position[2] = {9, 9};
  EXPECT_EQ(HighlightGroup(0, position), 1);
  EXPECT_EQ(group_colours(0), (Colours{255, colours().accent.text}));
  EXPECT_EQ(state().highlighted_group(), 0);
  EXPECT_EQ(state().saved_colours(), colours().match);
  EXPECT_EQ(HighlightGroup(1, position), 1);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(group_colours(1), colours().accent);
  EXPECT_EQ(ClearHighlight(), 1);
  EXPECT_EQ(group_colours(1), colours().match);
  EXPECT_EQ(state().highlighted_group(), -1);
  EXPECT_EQ(state().saved_colours(), Colours{});
  EXPECT_EQ(ClearHighlight(), 1);
}

TEST_F(DisplayOperations, FailToHighlightWhatIsNotThere) {
  lay_out("abc", {{0, 2}, {1, 1}});  // the second is hidden
  int32_t position[2] = {9, 9};
  ASSERT_EQ(HighlightGroup(0, position), 1);
  EXPECT_EQ(HighlightGroup(0, nullptr), -1);
  EXPECT_EQ(state().highlighted_group(), 0);
  position[0] = position[1] = 9;
  EXPECT_EQ(HighlightGroup(2, position), -1);
  EXPECT_EQ(position[0], 9);
  EXPECT_EQ(position[1], 0);
  EXPECT_EQ(state().highlighted_group(), -1);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(HighlightGroup(1, position), -1);
  EXPECT_EQ(HighlightGroup(0xFFFFFFFF, position), -1);
}

TEST_F(DisplayOperations, SuggestWhereToScrollForAHighlight) {
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
      {"after it, left of what is seen", 5, 10, 5, 30, 4, 10, 5, 10},
      {"at the left column", 5, 30, 5, 30, 4, 10, 5, 30},
      {"in the last column of the page", 5, 39, 5, 30, 4, 10, 5, 30},
      {"two columns after it", 5, 41, 5, 30, 4, 10, 5, 41},
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
    ASSERT_EQ(HighlightGroup(0, position), 1);
    EXPECT_EQ(position[0], row.wanted_line);
    EXPECT_EQ(position[1], row.wanted_column);
  }
}

TEST_F(DisplayOperations, MarkAndUnmarkGroups) {
  lay_out("abc", {{0, 1}, {1, 1}, {2, 1}});
  EXPECT_EQ(MarkGroups(1, 0), 0);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(group_colours(1), colours().plain);
  EXPECT_EQ(MarkGroups(0xFFFFFFFF, 0), 0);
  for (uint32_t i = 0; i < 3; ++i) EXPECT_EQ(group_colours(i), colours().plain);
  EXPECT_EQ(MarkGroups(2, 1), 0);
  EXPECT_EQ(group_colours(2), colours().match);
  EXPECT_EQ(group_colours(1), colours().plain);
  for (const int32_t action : {2, -2, 2147483647}) {
    EXPECT_EQ(MarkGroups(0xFFFFFFFF, action), 0);
    EXPECT_EQ(group_colours(2), colours().match);
    EXPECT_EQ(group_colours(1), colours().plain);
  }
  EXPECT_EQ(MarkGroups(3, 0), -1);
  EXPECT_EQ(MarkGroups(0xFFFFFFFE, 0), -1);
}

TEST_F(DisplayOperations, MarkNoGroupsWhenThereAreNone) {
  EXPECT_EQ(MarkGroups(0xFFFFFFFF, 1), 0);
  EXPECT_EQ(MarkGroups(0, 1), -1);
  lay_out("ab", {{0, 2}, {1, 1}});
  EXPECT_EQ(MarkGroups(1, 1), 0);  // hidden
}

TEST_F(DisplayOperations, CountTheColumnAfterTheLastOneAsInView) {
  lay_out(std::string(99, 'x'), {{40, 1}});
  state().left_column = 30;
  state().page_lines = 4;
  state().page_columns = 10;
  int32_t position[2] = {-5, -5};
  ASSERT_EQ(HighlightGroup(0, position), 1);
  EXPECT_EQ(position[1], 30);
}

TEST_F(DisplayOperations, ToggleAPlainTextToTheMatchColourButNeverBack) {
  lay_out("abc", {{0, 1}});
  ASSERT_EQ(MarkGroups(0, 0), 0);
  EXPECT_EQ(MarkGroups(0, -1), 0);
  EXPECT_EQ(group_colours(0), colours().match);
  EXPECT_EQ(MarkGroups(0, -1), 0);
  EXPECT_EQ(group_colours(0),
            (Colours{colours().plain.background, colours().match.text}));
}

TEST_F(DisplayOperations, MarkWhatAHighlightWillLeave) {
  lay_out("abc", {{0, 1}, {1, 1}});
  int32_t position[2];
  ASSERT_EQ(HighlightGroup(0, position), 1);
  EXPECT_EQ(MarkGroups(0xFFFFFFFF, 0), 0);
  EXPECT_EQ(group_colours(0), colours().accent);
  EXPECT_EQ(group_colours(1), colours().plain);
  EXPECT_EQ(state().saved_colours(), colours().plain);
  EXPECT_EQ(MarkGroups(0, -1), 0);
  EXPECT_EQ(group_colours(0), colours().accent);
  EXPECT_EQ(ClearHighlight(), 1);
  EXPECT_EQ(group_colours(0), colours().match);
}

}  // namespace
}  // namespace zenfo
