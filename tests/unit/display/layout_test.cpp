#include "display/layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "frame/callbacks.h"
#include "support/display_fixture.h"

namespace zenfo {
namespace {

using testing::DisplayFixture;
using ::testing::ElementsAre;
using testing::Marks;
using testing::picture;

using Lines = std::vector<std::string>;

class OtherRecord : public Record {
 public:
  RecordKind kind() const override { return RecordKind::kFileEntry; }
};

struct LayoutCase {
  const char* what;
  std::string text;
  std::string separator;
  uint32_t bytes_per_line;
  Marks matches;
  Lines lines;
};

TEST(Layout, CutsLinesIntoSpans) {
  // clang-format off
  const LayoutCase cases[] = {
    {"a match over two lines", "ab\r\ncd", "\r\n", 0, {{1, 4}}, {"a|M0:b", "M0:c|d"}},
    {"a match of the separator alone", "ab\r\ncd", "\r\n", 0, {{2, 2}}, {"ab|M0:", "cd"}},
    {"a part of the separator", "ab\r\ncd", "\r\n", 0, {{3, 1}}, {"ab|M0:", "cd"}},
    {"two matches in one separator", "ab\r\ncd", "\r\n", 0, {{2, 1}, {3, 1}}, {"ab|M0:|M1:", "cd"}},
    {"separator and next line", "ab\r\ncd", "\r\n", 0, {{3, 2}}, {"ab|M0:", "M0:c|d"}},
    {"text and separator", "ab\r\ncd", "\r\n", 0, {{1, 3}}, {"a|M0:b", "cd"}},
    {"an empty line in the middle", "ab\r\n\r\ncd", "\r\n", 0, {{1, 6}}, {"a|M0:b", "M0:", "M0:c|d"}},
    {"an empty line's separator", "\r\ncd", "\r\n", 0, {{0, 2}}, {"M0:", "cd"}},
    {"a match that ends where a line starts", "ab\ncd", "\n", 0, {{2, 1}}, {"ab|M0:", "cd"}},
    {"a whole line", "ab\ncd\nef", "\n", 0, {{3, 2}}, {"ab", "M0:cd", "ef"}},
    {"neighbours", "abcd", "\n", 0, {{0, 2}, {2, 1}, {3, 1}}, {"M0:ab|M1:c|M2:d"}},
    {"a text that ends with a separator", "ab\r\n", "\r\n", 0, {}, {"ab", ""}},
    {"separators only", "\n\n", "\n", 0, {}, {"", "", ""}},
    {"separators that overlap", "aaaXaa", "aa", 0, {}, {"", "aX", ""}},
    {"half a separator at the end", "ab\r", "\r\n", 0, {}, {"ab\r"}},
    {"a separator searched byte for byte", "aXbxc", "x", 0, {}, {"aXb", "c"}},
    {"zero bytes", std::string("a\0b\nc", 5), "\n", 0, {{1, 1}}, {std::string("a|M0:\0|b", 8), "c"}},
    {"a match behind the text", "ab", "\n", 0, {{2, 5}, {7, 1}}, {"ab"}},
    {"a match over the text's end", "ab", "\n", 0, {{1, 4294967295u}}, {"a|M0:b"}},
    {"a match of no length", "ab", "\n", 0, {{1, 0}}, {"ab"}},
    {"matches that overlap", "abcdef", "\n", 0, {{0, 3}, {1, 1}, {2, 3}}, {"M0:abc|M2:de|f"}},
    {"matches out of order", "abcdef", "\n", 0, {{4, 1}, {1, 2}}, {"a|M1:bc|d|M0:e|f"}},
    {"of two at one place the first", "abcd", "\n", 0, {{1, 2}, {1, 3}}, {"a|M0:bc|M1:d"}},
    {"hex: lines of four", "abcdefghij", "", 4, {{2, 5}}, {"ab|M0:cd", "M0:efg|h", "ij"}},
    {"hex: no empty last line", "abcdefgh", "", 4, {{4, 4}}, {"abcd", "M0:efgh"}},
    {"hex: bytes of separators are shown", "a\r\nb", "\r\n", 2, {{1, 2}}, {"a|M0:\r", "M0:\n|b"}},
    {"hex: one byte a line", "abc", "", 1, {{1, 1}}, {"a", "M0:b", "c"}},
    {"hex: a line longer than the text", "abc", "", 4294967295u, {{1, 1}}, {"a|M0:b|c"}},
  };
  // clang-format on
  for (const LayoutCase& row : cases) {
    SCOPED_TRACE(row.what);
    DisplayFixture display;
    display.state.bytes_per_line = row.bytes_per_line;
    display.show(row.text, row.matches);
    EXPECT_EQ(prepare_display_now(display.state, row.separator, 0), 1);
    EXPECT_EQ(picture(display.state), row.lines);
  }
}

struct AreaCase {
  const char* what;
  std::string text;
  int32_t mode;
  Marks matches;
  Marks areas;
  Lines lines;
};

TEST(Layout, GathersMatchesAndAreasInOrder) {
  // clang-format off
  const AreaCase cases[] = {
    {"a match inside an area", "abcdef", 0, {{1, 2}}, {{0, 4}}, {"A0:a|M1:bc|A0:d|ef"}},
    {"matches around and inside an area", "abcdefgh", 0, {{0, 1}, {2, 1}, {4, 1}, {7, 1}}, {{2, 4}},
     {"M0:a|b|M1:c|A2:d|M3:e|A2:f|g|M4:h"}},
    {"two areas", "abcdef", 0, {{3, 1}}, {{1, 1}, {4, 2}}, {"a|A0:b|c|M1:d|A2:ef"}},
    {"areas without matches", "abc", 0, {}, {{1, 1}}, {"a|A0:b|c"}},
    {"an area pattern without areas", "abc", 0, {{1, 1}}, {}, {"a|M0:b|c"}},
    {"an area that a match hides", "abcd", 0, {{0, 3}}, {{1, 1}}, {"M0:abc|d"}},
    {"a match from one area into the next", "abcdef", 0, {{1, 4}}, {{0, 2}, {3, 3}}, {"A0:a|M1:bcde|A2:f"}},
    {"areas that overlap", "abcdef", 0, {}, {{0, 3}, {2, 3}}, {"A0:abc|A1:de|f"}},
    {"an area over two lines", "ab\ncd", 0, {{2, 1}}, {{1, 3}}, {"a|A0:b|M1:", "A0:c|d"}},
    {"the complement", "abcdefgh", 1, {{0, 1}, {3, 1}, {5, 1}}, {{2, 3}}, {"A0:ab|c|M1:d|e|A2:fgh"}},
    {"the complement for any mode but 0", "abc", -1, {{1, 1}}, {{1, 1}}, {"A0:a|M1:b|A2:c"}},
    {"the complement of areas at both ends", "abcde", 1, {{0, 1}, {4, 1}}, {{0, 2}, {3, 2}}, {"M0:a|b|A1:c|d|M2:e"}},
    {"the complement of neighbouring areas", "abcd", 1, {{2, 1}}, {{0, 2}, {2, 2}}, {"ab|M0:c|d"}},
    {"a match where an area ends is outside", "abcd", 1, {{2, 1}}, {{0, 2}}, {"ab|A0:cd"}},
    {"a match that leaves its area wins", "abcd", 1, {{1, 2}}, {{0, 2}}, {"a|M0:bc|A1:d"}},
    {"the complement of no area", "abc", 1, {{1, 1}}, {}, {"A0:abc"}},
    {"the complement of everything", "abc", 1, {{1, 1}}, {{0, 3}}, {"a|M0:b|c"}},
  };
  // clang-format on
  for (const AreaCase& row : cases) {
    SCOPED_TRACE(row.what);
    DisplayFixture display;
    display.show(row.text, row.matches, row.areas);
    EXPECT_EQ(prepare_display_now(display.state, "\n", row.mode), 1);
    EXPECT_EQ(picture(display.state), row.lines);
  }
}

TEST(Layout, MakesAGroupOfEveryRangeEvenWhenItIsHidden) {
  DisplayFixture display;
  display.show("abcd", {{0, 3}}, {{1, 1}});
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  ASSERT_EQ(display.state.groups().size(), 2u);
  EXPECT_FALSE(display.state.groups()[0].empty());
  EXPECT_TRUE(display.state.groups()[1].empty());
  EXPECT_EQ(display.state.groups()[1].kind, SpanKind::kArea);
}

TEST(Layout, CountsMatchesWhateverTheirState) {
  DisplayFixture display;
  display.show("abcd", {{0, 1}, {2, 1}});
  display.matches.set_state(0, 0);
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  EXPECT_THAT(picture(display.state), ElementsAre("M0:a|b|M1:c|d"));
}

TEST(Layout, GivesLineColumnAndColoursOfEachSpan) {
  DisplayFixture display;
  display.show("ab\ncdef", {{4, 1}}, {{0, 1}});
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  const ColourTable& colours = display.state.colours();
  LineSpans first(display.state, 0);
  Span span;
  ASSERT_TRUE(first.next(&span));
  EXPECT_EQ(span.bytes.data(), display.text.data());
  EXPECT_EQ(span.colours, colours.area);
  EXPECT_EQ(span.group, 0u);
  ASSERT_TRUE(first.next(&span));
  EXPECT_EQ(span.colours, colours.plain);
  EXPECT_EQ(span.column, 1u);
  EXPECT_EQ(span.group, kNoGroup);
  LineSpans second(display.state, 1);
  ASSERT_TRUE(second.next(&span));
  ASSERT_TRUE(second.next(&span));
  EXPECT_EQ(span.colours, colours.match);
  EXPECT_EQ(span.line, 1u);
  EXPECT_EQ(span.column, 1u);
  EXPECT_EQ(span.group, 1u);
}

TEST(Layout, TakesTheWidestLineWithoutItsSeparatorAsWidth) {
  DisplayFixture display;
  display.show("a\r\nabcde\r\nabc", {});
  ASSERT_EQ(prepare_display_now(display.state, "\r\n", 0), 1);
  EXPECT_EQ(display.state.width, 5u);
  EXPECT_EQ(display.state.layout_word, 0u);
  EXPECT_EQ(display.state.line_bounds(1).width(), 5u);
}

TEST(Layout, CountsFourColumnsAByteAndTwoBetweenInHex) {
  const struct {
    uint32_t bytes, width, word;
  } cases[] = {{16, 66, 48},
               {1, 6, 3},
               {536870911, 2147483646, 1610612733},
               {536870912, 2147483647, 1610612736},
               {4294967295, 2147483647, 2147483647}};
  for (const auto& row : cases) {
    DisplayFixture display;
    display.show("abc", {});
    display.state.bytes_per_line = row.bytes;
    ASSERT_EQ(prepare_display_now(display.state, "", 0), 1);
    EXPECT_EQ(display.state.width, row.width);
    EXPECT_EQ(display.state.layout_word, row.word);
  }
}

TEST(Layout, MarksTextLinesWithMatchesOrAreasAndNeverHexLines) {
  DisplayFixture display;
  display.show("ab\ncd\nef\ngh\n", {{2, 1}}, {{6, 1}});
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  const bool expected[] = {true, false, true, false, false};
  for (uint32_t i = 0; i < 5; ++i) {
    EXPECT_EQ(display.state.line_marked(i), expected[i]) << i;
  }
  display.state.bytes_per_line = 4;
  ASSERT_EQ(prepare_display_now(display.state, "", 0), 1);
  for (uint32_t i = 0; i < display.state.line_count(); ++i) {
    EXPECT_FALSE(display.state.line_marked(i)) << i;
  }
}

TEST(PrepareDisplay, TheFirstSeparatorUnlessOneIsGivenIsLfCr) {
  DisplayFixture display;
  display.show("a\r\nb\r\nc", {});
  ASSERT_EQ(prepare_display_now(display.state, "", 0), 1);
  EXPECT_EQ(display.state.separator(), "\n\r");
  EXPECT_EQ(display.state.line_count(), 1u);
  display.show("a\r\n\r\nb", {});
  ASSERT_EQ(prepare_display_now(display.state, "", 0), 1);
  EXPECT_THAT(picture(display.state), ElementsAre("a\r", "\nb"));
}

TEST(PrepareDisplay, LeavesTheLayoutForLaterWhenNobodyCanNotice) {
  DisplayFixture display;
  display.state.set_interrupt_hook(interr);
  display.state.set_report_hook(zenfo::report);
  display.show("ab\n\rcd", {{0, 1}, {5, 1}});
  EXPECT_EQ(prepare_display(display.state, "", 0), 1);
  EXPECT_EQ(display.state.line_count(), 0u);
  EXPECT_EQ(display.state.separator(), "\n\r");
  make_deferred_layout(display.state);
  const auto lines = picture(display.state);
  EXPECT_THAT(lines, ElementsAre("M0:a|b", "c|M1:d"));
  display.state.begin_layout();
  make_deferred_layout(display.state);
  EXPECT_EQ(display.state.line_count(), 0u) << "only once";
}

TEST(PrepareDisplay, ForgetsALayoutLeftForLaterWithItsText) {
  DisplayFixture display;
  display.show("abc", {{0, 1}});
  EXPECT_EQ(prepare_display(display.state, "", 0), 1);
  display.state.reset();
  make_deferred_layout(display.state);
  EXPECT_EQ(display.state.line_count(), 0u);
}

TEST(PrepareDisplay, LaysOutAtOnceForAHostThatHearsIt) {
  DisplayFixture display;
  display.state.set_report_hook([](ProgressRecord*) { return 0; });
  display.show("abc", {{0, 1}});
  EXPECT_EQ(prepare_display(display.state, "", 0), 1);
  EXPECT_EQ(display.state.line_count(), 1u);
  display.state.set_report_hook(nullptr);
  display.show("abc", {{0, 1}}, {{1, 1}});
  EXPECT_EQ(prepare_display(display.state, "", 0), 1);
  EXPECT_EQ(display.state.line_count(), 1u) << "with areas";
}

TEST(PrepareDisplay, KeepsTheSeparatorUntilAnotherIsGiven) {
  DisplayFixture display;
  display.show("a;b,c", {});
  ASSERT_EQ(prepare_display_now(display.state, ";", 0), 1);
  ASSERT_EQ(prepare_display_now(display.state, "", 0), 1);
  EXPECT_THAT(picture(display.state), ElementsAre("a", "b,c"));
  display.state.reset();
  display.show("a;b,c", {});
  ASSERT_EQ(prepare_display_now(display.state, "", 0), 1);
  EXPECT_EQ(display.state.line_count(), 2u);
  ASSERT_EQ(prepare_display_now(display.state, ",", 0), 1);
  EXPECT_THAT(picture(display.state), ElementsAre("a;b", "c"));
}

TEST(PrepareDisplay, FailsWithoutTextOrMatchesButStoresTheSeparator) {
  DisplayFixture display;
  EXPECT_EQ(prepare_display_now(display.state, "+", 0), -1);
  EXPECT_EQ(display.state.separator(), "+");
  display.show("", {});
  EXPECT_EQ(prepare_display_now(display.state, "", 0), -1);
  display.state.bytes_per_line = 16;
  EXPECT_EQ(prepare_display_now(display.state, "", 0), -1);
  display.text = "abc";
  display.state.show(display.text, nullptr, nullptr);
  EXPECT_EQ(prepare_display_now(display.state, "", 0), -1);
}

TEST(PrepareDisplay, FailsForARecordThatIsNoMatch) {
  for (int list = 0; list < 2; ++list) {
    for (int32_t mode = 0; mode < 2; ++mode) {
      DisplayFixture display;
      display.show("abcdef", {{0, 1}}, {{0, 3}});
      (list == 0 ? display.matches : display.areas)
          .append(std::make_unique<OtherRecord>());
      EXPECT_EQ(prepare_display_now(display.state, "\n", mode), -1);
      EXPECT_EQ(display.state.groups().size(), 0u);
      EXPECT_EQ(display.state.line_count(), 0u);
    }
  }
}

TEST(PrepareDisplay, ClearsHighlightAndPaintedPlacesOfTheLayoutBefore) {
  DisplayFixture display;
  display.show("abc", {{1, 1}});
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  ASSERT_TRUE(display.state.highlight(0));
  Span span{.bytes = {},
            .kind = SpanKind::kMatch,
            .line = 0,
            .column = 1,
            .group = 0,
            .colours = {}};
  display.state.note_painted(span, {0, 0, 9, 9});
  ASSERT_EQ(display.state.group_at(5, 5), 0u);
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  EXPECT_EQ(display.state.highlighted_group(), -1);
  EXPECT_EQ(display.state.saved_colours(), Colours{});
  EXPECT_EQ(display.state.groups()[0].colours, display.state.colours().match);
  EXPECT_EQ(display.state.group_at(5, 5), kNoGroup);
}

TEST(PrepareDisplay, KeepsTheScrollPosition) {
  DisplayFixture display;
  display.show("a\nb", {});
  display.state.top_line = 7;
  display.state.left_column = 3;
  ASSERT_EQ(prepare_display_now(display.state, "\n", 0), 1);
  EXPECT_EQ(display.state.top_line, 7u);
  EXPECT_EQ(display.state.left_column, 3u);
}

// Polls, counted by the hook below.
int polls = 0;
int reports = 0;
std::function<int32_t()> when_polled;

int32_t poll(void*) {
  ++polls;
  return when_polled ? when_polled() : 0;
}
int32_t count_report(ProgressRecord* record) {
  EXPECT_EQ(record->total, 0u);
  ++reports;
  return 1;
}

class LayoutPolls : public ::testing::Test {
 protected:
  LayoutPolls() {
    polls = reports = 0;
    when_polled = nullptr;
    Marks marks;
    for (uint32_t i = 0; i < 1010; ++i) marks.push_back({i * 2, 1});
    display_.show(std::string(2020, 'x'), marks);
    display_.state.set_interrupt_hook(poll);
    display_.state.set_report_hook(count_report);
  }
  ~LayoutPolls() override { when_polled = nullptr; }

  DisplayFixture display_;
};

TEST_F(LayoutPolls, AskOnceEveryHundredAndOneRanges) {
  ASSERT_EQ(prepare_display_now(display_.state, "\n", 0), 1);
  EXPECT_EQ(polls, 10);
  EXPECT_EQ(reports, 10);
}

TEST_F(LayoutPolls, GiveUpWhenTheHostStops) {
  when_polled = [] { return polls == 3 ? 1 : 0; };
  EXPECT_EQ(prepare_display_now(display_.state, "\n", 0), -1);
  EXPECT_EQ(polls, 3);
  EXPECT_EQ(display_.state.line_count(), 0u);
  EXPECT_EQ(display_.state.groups().size(), 0u);
}

TEST_F(LayoutPolls, GiveUpWhenTheHostResetsTheDisplay) {
  when_polled = [this] {
    display_.state.reset();
    return 0;
  };
  EXPECT_EQ(prepare_display_now(display_.state, "\n", 0), -1);
  EXPECT_EQ(polls, 1);
  EXPECT_EQ(display_.state.line_count(), 0u);
}

TEST_F(LayoutPolls, KeepALayoutMadeDuringTheLayout) {
  when_polled = [this] {
    if (polls == 1) {
      display_.state.bytes_per_line = 1000;
      EXPECT_EQ(prepare_display_now(display_.state, "\n", 0), 1);
    }
    return 0;
  };
  EXPECT_EQ(prepare_display_now(display_.state, "\n", 0), -1);
  EXPECT_EQ(display_.state.line_count(), 3u);
  EXPECT_EQ(display_.state.groups().size(), 1010u);
}

// The rules byte by byte: the owner of each byte, then runs with one owner.
Lines slow_layout(const std::string& text, const std::string& separator,
                  uint32_t bytes_per_line, const Marks& matches,
                  const Marks& areas) {
  // Mode 0: an area's group follows those of all matches that do not start
  // after it.
  std::vector<int> owner(text.size(), -1);
  std::vector<std::string> names;
  std::vector<std::pair<bool, std::pair<uint32_t, uint32_t>>> ranges;
  size_t used = 0;
  for (const auto& area : areas) {
    while (used < matches.size() && matches[used].first <= area.first) {
      ranges.push_back({true, matches[used++]});
    }
    ranges.push_back({false, area});
  }
  while (used < matches.size()) ranges.push_back({true, matches[used++]});
  for (const bool match : {true, false}) {
    for (size_t i = 0; i < ranges.size(); ++i) {
      if (ranges[i].first != match) continue;
      const auto [offset, length] = ranges[i].second;
      for (uint32_t k = offset; k < offset + length && k < text.size(); ++k) {
        if (owner[k] < 0) owner[k] = static_cast<int>(i);
      }
    }
  }
  const auto name = [&](int i) {
    if (i < 0) return std::string();
    return (ranges[i].first ? "M" : "A") + std::to_string(i) + ":";
  };
  Lines lines;
  size_t start = 0;
  while (true) {
    size_t end = text.size();
    size_t next = text.size();
    bool last = true;
    if (bytes_per_line != 0) {
      end = next = std::min<size_t>(start + bytes_per_line, text.size());
      last = end == text.size();
    } else if (text.find(separator, start) != std::string::npos) {
      end = text.find(separator, start);
      next = end + separator.size();
      last = false;
    }
    std::string line;
    for (size_t k = start; k < end; ++k) {
      if (k == start || owner[k] != owner[k - 1]) {
        if (k != start) line += '|';
        line += name(owner[k]);
      }
      line += text[k];
    }
    for (size_t k = end; k < next; ++k) {
      // In the separator: a range that has not been seen in this line.
      if (owner[k] < 0 || (k > start && owner[k] == owner[k - 1])) continue;
      if (!line.empty()) line += '|';
      line += name(owner[k]);
    }
    lines.push_back(line);
    if (last) return lines;
    start = next;
  }
}

TEST(Layout, AgreesWithTheRulesByteByByteOnRandomMarks) {
  std::mt19937 random(20);
  const auto below = [&](uint32_t n) {
    return static_cast<uint32_t>(random() % n);
  };
  for (int round = 0; round < 4000; ++round) {
    std::string text(1 + below(24), 'a');
    for (char& c : text) c = "ab\r\n"[below(4)];
    const auto marks = [&] {
      Marks made;
      uint32_t offset = 0;
      for (uint32_t n = below(5); n > 0; --n) {
        offset += below(5);
        made.push_back({offset, 1 + below(6)});
        if (below(2) == 0) offset += made.back().second;
      }
      return made;
    };
    const Marks matches = marks();
    const Marks areas = marks();
    const std::string separator = below(2) == 0 ? "\n" : "\r\n";
    const uint32_t bytes = below(3) == 0 ? 1 + below(8) : 0;
    DisplayFixture display;
    display.state.bytes_per_line = bytes;
    display.show(text, matches, areas);
    ASSERT_EQ(prepare_display_now(display.state, separator, 0), 1);
    ASSERT_EQ(picture(display.state),
              slow_layout(text, separator, bytes, matches, areas))
        << ::testing::PrintToString(text) << bytes;
    // A walk from a column gives the line's last spans, starting with the one
    // that contains the column or one left of it.
    for (uint32_t line = 0; line < display.state.line_count(); ++line) {
      const uint32_t width = display.state.line_bounds(line).width();
      for (uint32_t column = 0; column <= width; ++column) {
        std::vector<std::pair<uint32_t, uint32_t>> all, some;
        LineSpans from_start(display.state, line);
        LineSpans from_column(display.state, line, column);
        Span span;
        while (from_start.next(&span)) {
          if (span.column + span.bytes.size() > column ||
              (span.bytes.empty() && span.column >= column)) {
            all.push_back({span.column, span.group});
          }
        }
        while (from_column.next(&span)) {
          if (span.column + span.bytes.size() > column ||
              (span.bytes.empty() && span.column >= column)) {
            some.push_back({span.column, span.group});
          }
        }
        ASSERT_EQ(some, all) << ::testing::PrintToString(text) << column;
      }
    }
  }
}

}  // namespace
}  // namespace zenfo
