#include "display/model.h"

#include <gtest/gtest.h>

#include "support/display_fixture.h"

namespace zenfo {
namespace {

using platform::system_colour;
using platform::SystemColour;
using testing::DisplayFixture;

TEST(DisplayState, StartsEmptyAsTextWithoutSeparatorOrWindow) {
  DisplayState state;
  EXPECT_EQ(state.line_count(), 0u);
  EXPECT_EQ(state.bytes_per_line, 0u);
  EXPECT_FALSE(state.has_separator());
  EXPECT_EQ(state.window, nullptr);
  EXPECT_EQ(state.highlighted_group(), -1);
}

TEST(DisplayState, ReadsTheTwelveColoursFromTheSystem) {
  const Colour window = system_colour(static_cast<SystemColour>(5));
  const Colour text = system_colour(static_cast<SystemColour>(8));
  const Colour gray = system_colour(static_cast<SystemColour>(17));
  const Colour info = system_colour(static_cast<SystemColour>(24));
  const ColourTable colours = DisplayState().colours();
  const struct {
    const char* what;
    Colour colour, expected;
  } rows[] = {
      {"plain background", colours.plain.background, window},
      {"plain text", colours.plain.text, text},
      {"accent", colours.accent.background, 255},
      {"accent text", colours.accent.text, window},
      {"match background", colours.match.background, gray},
      {"match text", colours.match.text, window},
      {"area background", colours.area.background, info},
      {"area text", colours.area.text, gray},
      {"gutter background", colours.gutter.background, window},
      {"gutter text", colours.gutter.text, gray},
      {"marked gutter background", colours.marked_gutter.background, gray},
      {"marked gutter text", colours.marked_gutter.text, window},
  };
  for (const auto& row : rows) EXPECT_EQ(row.colour, row.expected) << row.what;
}

TEST(DisplayState, ResetEmptiesTheDisplayAndKeepsTheSettings) {
  DisplayFixture display;
  display.show("ab\ncd", {{1, 1}});
  display.state.bytes_per_line = 2;
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  ASSERT_TRUE(display.state.highlight(0));
  display.state.top_line = display.state.left_column = 3;
  display.state.page_lines = display.state.page_columns = 4;
  display.state.reset();
  EXPECT_EQ(display.state.line_count(), 0u);
  EXPECT_EQ(display.state.groups().size(), 0u);
  EXPECT_TRUE(display.state.text().empty());
  EXPECT_EQ(display.state.matches(), nullptr);
  EXPECT_EQ(display.state.areas(), nullptr);
  EXPECT_EQ(display.state.top_line, 0u);
  EXPECT_EQ(display.state.left_column, 0u);
  EXPECT_EQ(display.state.page_lines, 0u);
  EXPECT_EQ(display.state.page_columns, 0u);
  EXPECT_EQ(display.state.width, 0u);
  EXPECT_EQ(display.state.layout_word, 0u);
  EXPECT_EQ(display.state.highlighted_group(), -1);
  EXPECT_EQ(display.state.saved_colours(), Colours{});
  EXPECT_EQ(display.state.bytes_per_line, 2u);
  EXPECT_EQ(display.state.separator(), "\n");
}

TEST(DisplayState, ShowsTheLinesInForceUntilTheNextLayout) {
  DisplayFixture display;
  EXPECT_EQ(display.state.shown_bytes_per_line(), 0u);
  display.state.bytes_per_line = 8;
  EXPECT_EQ(display.state.shown_bytes_per_line(), 8u);
  display.show("abcd", {});
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  display.state.bytes_per_line = 0;
  EXPECT_EQ(display.state.shown_bytes_per_line(), 8u);
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  EXPECT_EQ(display.state.shown_bytes_per_line(), 0u);
}

TEST(DisplayState, FindsTheLineOfAnOffset) {
  DisplayFixture display;
  display.show("ab\r\n\r\ncd", {});
  ASSERT_EQ(prepare_display_now(display.state, "\r\n", 0), 1);
  const uint32_t lines[] = {0, 0, 0, 0, 1, 1, 2, 2};
  for (uint32_t i = 0; i < 8; ++i) {
    EXPECT_EQ(display.state.line_at(i), lines[i]) << i;
  }
}

TEST(DisplayState, PlacesAGroupAtItsFirstSpan) {
  DisplayFixture display;
  display.show("ab\r\ncdef", {{1, 1}, {3, 1}, {5, 2}});
  ASSERT_EQ(prepare_display_now(display.state, "\r\n", 0), 1);
  const struct { uint32_t line, column; } places[] = {{0, 1}, {0, 2}, {1, 1}};
  for (uint32_t group = 0; group < 3; ++group) {
    const DisplayState::Place place = display.state.group_place(group);
    EXPECT_EQ(place.line, places[group].line) << group;
    EXPECT_EQ(place.column, places[group].column) << group;
  }
}

Span match_span(uint32_t line, uint32_t column, uint32_t group) {
  return {.bytes = {},
          .kind = SpanKind::kMatch,
          .line = line,
          .column = column,
          .group = group,
          .colours = {}};
}

TEST(DisplayState, HitsPaintedMatchesEdgesIncluded) {
  DisplayState state;
  state.note_painted(match_span(0, 0, 4), {10, 20, 30, 40});
  const struct {
    int32_t x, y;
    uint32_t group;
  } cases[] = {{10, 20, 4},        {30, 40, 4},        {20, 30, 4},
               {9, 30, kNoGroup},  {31, 30, kNoGroup}, {20, 19, kNoGroup},
               {20, 41, kNoGroup}, {-1, -1, kNoGroup}};
  for (const auto& row : cases) {
    EXPECT_EQ(state.group_at(row.x, row.y), row.group) << row.x << ' ' << row.y;
  }
}

TEST(DisplayState, HitsTheFirstSpanWhereTwoTouch) {
  DisplayState state;
  state.note_painted(match_span(1, 5, 3), {10, 0, 20, 10});
  state.note_painted(match_span(1, 0, 2), {20, 0, 30, 10});
  state.note_painted(match_span(0, 7, 1), {20, -10, 30, 0});
  EXPECT_EQ(state.group_at(20, 5), 2u);
  EXPECT_EQ(state.group_at(20, 0), 1u);
  EXPECT_EQ(state.group_at(15, 5), 3u);
}

TEST(DisplayState, NeverHitsSpansWithoutRoomNorOtherKinds) {
  DisplayState state;
  state.note_painted(match_span(0, 0, 1), {});
  state.note_painted(match_span(0, 0, 1), {0, 0, 0, 10});
  state.note_painted(match_span(0, 0, 1), {0, 0, 10, 0});
  Span area = match_span(0, 0, 2);
  area.kind = SpanKind::kArea;
  state.note_painted(area, {0, 0, 10, 10});
  EXPECT_EQ(state.group_at(0, 0), kNoGroup);
}

}  // namespace
}  // namespace zenfo
