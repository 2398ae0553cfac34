// The display as a host uses it: inside the option question of a run, and on
// Windows in a window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#ifdef _WIN32
#include <windows.h>
#endif

#include <cstdint>
#include <functional>
#include <string>

#include "support/host_recorder.h"
#include "support/matchers.h"
#include "support/session.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

class DisplayTest : public testing::Test {
 protected:
  // Searches one file for "cat" and calls `look` in the question.
  void look_at(const std::string& content, const std::function<void()>& look) {
    session.folder.file("text", content);
    Clear(ZENFO_LIST_RUN_FILES);
    ASSERT_EQ(session.find(ZENFO_LIST_RUN_FILES, "0~/text"), 1);
    SetState(ZENFO_LIST_RUN_FILES, 0, 1);
    ASSERT_EQ(SetPattern("", "cat", "", 0, 0, 0, 0, 0, 0), 1);
    bool asked = false;
    host.answer_option = [&](const HostRecorder::Question&) {
      asked = true;
      look();
      return 1;
    };
    FindBlock(1, 0, 0, "", 1, 0);
    EXPECT_TRUE(asked);
  }
  // Highlights a group and returns where it begins.
  static std::pair<int32_t, int32_t> place(uint32_t group) {
    int32_t position[2] = {-7, -7};
    EXPECT_EQ(HighlightGroup(group, position), 1);
    return {position[0], position[1]};
  }

  Session session;
  HostRecorder host;
};

TEST_F(DisplayTest, IsFilledForTheQuestionOnly) {
  look_at("a cat\r\n\r\nthe cat", [] {
    // Lines split at LF CR, until the host says otherwise.
    EXPECT_EQ(GetDisplayLineCount(), 2);
    EXPECT_EQ(PrepareDisplay("\r\n", 0), 1);
    EXPECT_EQ(GetDisplayLineCount(), 3);
    EXPECT_EQ(GetDisplayWidth(), 7);
    EXPECT_EQ(place(0), std::make_pair(0, 2));
    EXPECT_EQ(place(1), std::make_pair(2, 4));
    int32_t position[2];
    EXPECT_EQ(HighlightGroup(2, position), -1);
    EXPECT_EQ(MarkGroups(UINT32_MAX, -1), 0);
    EXPECT_EQ(MarkGroups(2, 1), -1);
    EXPECT_EQ(ClearHighlight(), 1);
  });
  EXPECT_THAT(host.statuses, Contains(HasSubstr("Preparing for display")));
  EXPECT_EQ(GetDisplayLineCount(), 0);
  EXPECT_EQ(PrepareDisplay("\n", 0), -1);
  look_at("a\ncat", [] { EXPECT_EQ(GetDisplayLineCount(), 2); });
}

TEST_F(DisplayTest, ShowsHexLinesAfterSetBytesPerLine) {
  EXPECT_EQ(SetBytesPerLine(16), 1);
  look_at(std::string(30, '-') + "cat", [] {
    EXPECT_EQ(GetBytesPerLine(), 16);
    EXPECT_EQ(GetDisplayLineCount(), 3);
    EXPECT_EQ(GetDisplayWidth(), 66);
    EXPECT_EQ(place(0), std::make_pair(1, 14));
    EXPECT_EQ(ResetDisplay(), 1);
    EXPECT_EQ(GetDisplayLineCount(), 0);
  });
  EXPECT_EQ(GetBytesPerLine(), 16);
}

TEST_F(DisplayTest, ALayoutPollsAndReportsAndCanBeStopped) {
  std::string cats;
  for (int i = 0; i < 1010; ++i) cats += "cat";
  look_at(cats, [&] {
    const int polls = host.interrupt_polls;
    const size_t reports = host.reports.size();
    EXPECT_EQ(PrepareDisplay("\n", 0), 1);
    EXPECT_EQ(host.interrupt_polls - polls, 10) << "on every 101st group";
    EXPECT_EQ(host.reports.size() - reports, 10u);
    host.interrupt = [] { return 1; };
    EXPECT_EQ(PrepareDisplay("\n", 0), -1);
    EXPECT_EQ(GetDisplayLineCount(), 0);
    host.interrupt = [] { return 0; };
  });
  EXPECT_EQ(GetFlag(ZENFO_LIST_RESULT, 0), 1010) << "the run goes on";
}

TEST_F(DisplayTest, CopiesItsSeparator) {
  char buffer[4] = "zzz";
  EXPECT_EQ(GetLineSeparator(buffer, 4), 1);
  EXPECT_STREQ(buffer, "");
  look_at("cat", [] {});
  buffer[0] = 'z';
  EXPECT_EQ(GetLineSeparator(buffer, 1), -1);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(GetLineSeparator(buffer, 2), 1);
  EXPECT_STREQ(buffer, "\n\r");
}

TEST_F(DisplayTest, LogsNothing) {
  int32_t position[2];
  EXPECT_EQ(PaintDisplay(0, 0, 0, 0), -1);
  EXPECT_EQ(RepaintDisplay(0, 0, 0), -1);
  EXPECT_EQ(SetDisplayWindow(nullptr), -1);
  EXPECT_EQ(GetDisplayScrollPos(position, position), -1);
  EXPECT_EQ(GetDisplayScrollTrackPos(position, position), -1);
  EXPECT_EQ(HitTestDisplay(0, 0), -1);
  EXPECT_EQ(HighlightGroup(0, nullptr), -1);
  EXPECT_EQ(PrepareDisplay(nullptr, 0), -1);
  EXPECT_EQ(GetLineSeparator(nullptr, 0), -1);
  EXPECT_THAT(session.take_log(), IsEmpty());
}

#ifndef _WIN32

TEST_F(DisplayTest, HasNoWindowOnLinux) {
  int window = 0;
  EXPECT_EQ(SetDisplayWindow(&window), -1);
  EXPECT_EQ(PaintDisplay(0, 0, 0, 0), -1);
}

#else

class DisplayWindow : public DisplayTest {
 protected:
  static void SetUpTestSuite() {
    window_ = CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 10, 10,
                              400, 200, nullptr, nullptr, nullptr, nullptr);
  }
  static void TearDownTestSuite() { DestroyWindow(window_); }

  static void paint(uint32_t top, uint32_t left, int32_t numbers) {
    InvalidateRect(window_, nullptr, TRUE);
    PaintDisplay(top, left, numbers, 1);
  }
  static int bar_maximum(int bar) {
    int minimum = -1;
    int maximum = -1;
    GetScrollRange(window_, bar, &minimum, &maximum);
    EXPECT_EQ(minimum, 0);
    return maximum;
  }
  // Whether a rectangle shows a colour anywhere.
  static bool shows(COLORREF colour, const RECT& where) {
    HDC device = GetDC(window_);
    bool found = false;
    for (LONG y = where.top; y < where.bottom && !found; ++y) {
      for (LONG x = where.left; x < where.right && !found; ++x) {
        found = GetPixel(device, x, y) == colour;
      }
    }
    ReleaseDC(window_, device);
    return found;
  }
  // The x of the first point to the right that belongs to a group; -1 if none.
  static int find_from(int x, int y, int32_t group) {
    for (; x < 400; ++x) {
      if (HitTestDisplay(x, y) == group) return x;
    }
    return -1;
  }

  static inline HWND window_ = nullptr;
};

TEST_F(DisplayWindow, ShowsScrollBarsThatFollowTheLayout) {
  std::string text(100, 'x');
  for (int i = 0; i < 200; ++i) text += "\ncat";
  look_at(text, [] {
    EXPECT_EQ(PrepareDisplay("\n", 0), 1);
    EXPECT_EQ(SetDisplayWindow(window_), 1);
    EXPECT_EQ(bar_maximum(SB_VERT), 201);
    EXPECT_EQ(bar_maximum(SB_HORZ), 100);
    paint(30, 20, 0);
    EXPECT_EQ(GetDisplayTopLine(), 30);
    EXPECT_EQ(GetDisplayLeftColumn(), 20);
    EXPECT_GT(GetDisplayPageLines(), 3);
    int32_t vertical = 0;
    int32_t horizontal = 0;
    EXPECT_EQ(GetDisplayScrollPos(&vertical, &horizontal), 1);
    EXPECT_EQ(vertical, 30);
    EXPECT_EQ(horizontal, 20);
    EXPECT_EQ(PaintDisplay(31, 21, 0, 1), 21);
    EXPECT_EQ(RepaintDisplay(7, 0, 1), 1);
    EXPECT_EQ(GetDisplayTopLine(), 31);
    EXPECT_EQ(PrepareDisplay("x", 0), 1);
    EXPECT_EQ(bar_maximum(SB_VERT), 101);
  });
}

TEST_F(DisplayWindow, ShowsBothScrollBarsOfANewWindow) {
  ShowScrollBar(window_, SB_BOTH, FALSE);
  EXPECT_EQ(SetDisplayWindow(window_), 1);
  constexpr LONG kBars = WS_HSCROLL | WS_VSCROLL;
  EXPECT_EQ(GetWindowLongA(window_, GWL_STYLE) & kBars, kBars);
}

TEST_F(DisplayWindow, PaintsMatchesWhereTheyAreFound) {
  look_at("a cat and a cat", [] {
    EXPECT_EQ(SetDisplayWindow(window_), 1);
    for (const int32_t numbers : {0, 1}) {
      paint(0, 0, numbers);
      const int first = find_from(0, 5, 0);
      const int behind = find_from(first, 5, -1);
      const int second = find_from(behind, 5, 1);
      EXPECT_GT(first, 0);
      EXPECT_GT(second, behind);
      EXPECT_EQ(find_from(second, 5, 0), -1);
      EXPECT_EQ(find_from(0, 60, 0), -1);
      const RECT match{first, 0, behind - 1, 12};
      EXPECT_TRUE(shows(GetSysColor(COLOR_GRAYTEXT), match));
      EXPECT_FALSE(shows(RGB(255, 0, 0), match));
      int32_t position[2];
      EXPECT_EQ(HighlightGroup(0, position), 1);
      InvalidateRect(window_, nullptr, TRUE);
      EXPECT_EQ(RepaintDisplay(0, numbers, 1), 1);
      EXPECT_TRUE(shows(RGB(255, 0, 0), match));
      EXPECT_FALSE(shows(GetSysColor(COLOR_GRAYTEXT), match));
      EXPECT_EQ(ClearHighlight(), 1);
    }
  });
}

TEST_F(DisplayWindow, FindsHexMatchesAtDigitsAndCharacters) {
  EXPECT_EQ(SetBytesPerLine(4), 1);
  look_at("-cat", [] {
    EXPECT_EQ(SetDisplayWindow(window_), 1);
    paint(0, 0, 0);
    const int digits = find_from(0, 5, 0);
    const int behind = find_from(digits, 5, -1);
    const int characters = find_from(behind, 5, 0);
    EXPECT_GT(digits, 0);
    EXPECT_GT(characters, behind);
    EXPECT_TRUE(shows(GetSysColor(COLOR_GRAYTEXT),
                      {characters, 0, characters + 3, 12}));
  });
}

TEST_F(DisplayWindow, ReleasesTheWindow) {
  EXPECT_EQ(SetDisplayWindow(window_), 1);
  EXPECT_EQ(SetDisplayWindow(nullptr), -1);
  EXPECT_EQ(PaintDisplay(0, 0, 0, 1), -1);
}

#endif

}  // namespace
}  // namespace zenfo::test
