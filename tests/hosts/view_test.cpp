// Sends keys, wheel turns, scrolls and clicks to the window of zenfo-view.
// Reads the result from the title, which shows the number of the match last
// clicked.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

constexpr int kMatches = 200;  // one a line
constexpr int kAtFirstLine = 5;
constexpr int kAtText = 40;  // right of the line numbers

class ViewTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string text;
    for (int i = 0; i < kMatches; ++i) text += "cat\n";
    start(folder_.file("cats", text));
    for (int tries = 0; window_ == nullptr && tries < 300; ++tries) {
      Sleep(100);
      EnumWindows(take_window, reinterpret_cast<LPARAM>(this));
    }
    ASSERT_NE(window_, nullptr);
    for (int tries = 0; match() == 0 && tries < 300; ++tries) Sleep(100);
  }
  void TearDown() override {
    TerminateProcess(process_.hProcess, 99);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }

  void start(const std::string& file) {
    std::string line = "\"" ZENFO_PROGRAM "\" \"" + file + "\" cat";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    ASSERT_TRUE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0,
                               nullptr, nullptr, &startup, &process_));
  }
  static BOOL CALLBACK take_window(HWND window, LPARAM test) {
    auto* self = reinterpret_cast<ViewTest*>(test);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != self->process_.dwProcessId || !IsWindowVisible(window)) {
      return TRUE;
    }
    self->window_ = window;
    return FALSE;
  }

  // The number of the match in the title; 0 before the first.
  int match() const {
    char title[MAX_PATH] = "";
    GetWindowTextA(window_, title, sizeof title);
    const std::string text = title;
    const size_t at = text.rfind(" - match ");
    return at == std::string::npos ? 0 : std::stoi(text.substr(at + 9));
  }
  LRESULT send(UINT message, WPARAM word, LPARAM value = 0) const {
    return SendMessageA(window_, message, word, value);
  }
  int press(WPARAM key) const {
    send(WM_KEYDOWN, key);
    return match();
  }
  int click(int x, int y) const {
    send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    return match();
  }
  // The match in the first line shown.
  int first_shown() const { return click(kAtText, kAtFirstLine); }
  int first_after(WPARAM key) const {
    send(WM_KEYDOWN, key);
    return first_shown();
  }
  void turn_wheel(int by) const {
    send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(by)));
  }

  TempFolder folder_;
  PROCESS_INFORMATION process_{};
  HWND window_ = nullptr;
};

TEST_F(ViewTest, GoesFromMatchToMatchAndRound) {
  EXPECT_EQ(match(), 1);
  EXPECT_EQ(press('N'), 2);
  EXPECT_EQ(press(VK_F3), 3);
  EXPECT_EQ(press('P'), 2);
  EXPECT_EQ(press('P'), 1);
  EXPECT_EQ(press('P'), kMatches);
  const int shown = first_shown();
  EXPECT_GT(shown, 100);
  for (int i = shown; i < kMatches; ++i) press('N');
  EXPECT_EQ(press('N'), 1);
  EXPECT_EQ(first_shown(), 1);
}

TEST_F(ViewTest, ScrollsByKeysWheelAndBar) {
  EXPECT_EQ(first_shown(), 1);
  EXPECT_EQ(first_after(VK_UP), 1);
  EXPECT_EQ(first_after(VK_DOWN), 2);
  EXPECT_EQ(first_after(VK_UP), 1);
  const int second_page = first_after(VK_NEXT);
  EXPECT_GT(second_page, 5);
  EXPECT_EQ(first_after(VK_NEXT), 2 * second_page - 1);
  EXPECT_EQ(first_after(VK_PRIOR), second_page);
  const int last_page = first_after(VK_END);
  EXPECT_EQ(first_after(VK_DOWN), last_page);
  EXPECT_EQ(last_page, kMatches + 1 - (second_page - 1) + 1)
      << "the empty line behind the last separator is seen";
  EXPECT_EQ(first_after(VK_HOME), 1);
  turn_wheel(-WHEEL_DELTA);
  EXPECT_EQ(first_shown(), 4);
  turn_wheel(-WHEEL_DELTA / 2);
  turn_wheel(-WHEEL_DELTA / 2);
  EXPECT_EQ(first_shown(), 7);
  turn_wheel(WHEEL_DELTA);
  EXPECT_EQ(first_shown(), 4);
  send(WM_VSCROLL, SB_LINEDOWN);
  EXPECT_EQ(first_shown(), 5);
}

TEST_F(ViewTest, TurnsToHexAndBack) {
  // A line of the dump shows four lines of the file, at 24 pixels a byte.
  constexpr int kFourBytes = 4 * 24;
  press('H');
  EXPECT_EQ(click(kAtText + kFourBytes, kAtFirstLine), 2);
  EXPECT_EQ(click(kAtText + 3 * kFourBytes, kAtFirstLine), 4);
  press('H');
  EXPECT_EQ(click(kAtText, kAtFirstLine), 1);
  EXPECT_EQ(click(kAtText + kFourBytes, kAtFirstLine), 1) << "nothing there";
}

TEST_F(ViewTest, TurnsLineNumbersAndFont) {
  constexpr int kAtGutter = 4;
  press('N');
  EXPECT_EQ(click(kAtGutter, kAtFirstLine), 2) << "a number is no match";
  press('L');
  EXPECT_EQ(click(kAtGutter, kAtFirstLine), 1);
  constexpr int kAtThirdLetter = 22;
  press('N');
  EXPECT_EQ(click(kAtThirdLetter, kAtFirstLine), 1);
  press('N');
  press('F');
  EXPECT_EQ(click(kAtThirdLetter, kAtFirstLine), 2) << "letters are narrower";
}

TEST_F(ViewTest, EndsWithEscape) {
  send(WM_KEYDOWN, VK_ESCAPE);
  ASSERT_EQ(WaitForSingleObject(process_.hProcess, 20000), WAIT_OBJECT_0);
  DWORD status = 99;
  GetExitCodeProcess(process_.hProcess, &status);
  EXPECT_EQ(status, 0u);
}

}  // namespace
}  // namespace zenfo::test
