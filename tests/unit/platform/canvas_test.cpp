#include "platform/canvas.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#endif

namespace zenfo::platform {
namespace {

TEST(Canvas, OpensNoWindowWithoutAHandle) {
  EXPECT_EQ(open_window(nullptr), nullptr);
}

#ifdef _WIN32

TEST(Canvas, TakesColoursFromTheSystem) {
  EXPECT_EQ(system_colour(SystemColour::kWindow), GetSysColor(COLOR_WINDOW));
  EXPECT_EQ(system_colour(SystemColour::kWindowText),
            GetSysColor(COLOR_WINDOWTEXT));
  EXPECT_EQ(system_colour(SystemColour::kGrayText),
            GetSysColor(COLOR_GRAYTEXT));
  EXPECT_EQ(system_colour(SystemColour::kInfoBackground),
            GetSysColor(COLOR_INFOBK));
}

class WindowCanvas : public ::testing::Test {
 protected:
  // One window for all tests, because showing one is slow.
  static void SetUpTestSuite() {
    window_ = CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 10, 10,
                              300, 100, nullptr, nullptr, nullptr, nullptr);
  }
  static void TearDownTestSuite() { DestroyWindow(window_); }

  SCROLLINFO bar(int number) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(window_, number, &info);
    return info;
  }

  static inline HWND window_ = nullptr;
  std::unique_ptr<Canvas> canvas_ = open_window(window_);
};

TEST_F(WindowCanvas, AnswersTheClientRectangle) {
  RECT client{};
  ASSERT_TRUE(GetClientRect(window_, &client));
  ASSERT_GT(client.right, 0);
  EXPECT_EQ(canvas_->client_rectangle(),
            (Rectangle{client.left, client.top, client.right, client.bottom}));
}

TEST_F(WindowCanvas, MeasuresInTheFontSelected) {
  ASSERT_TRUE(canvas_->begin_paint());
  const FontMetrics fixed = canvas_->select_font(Font::kFixed);
  EXPECT_GT(fixed.height, 0);
  EXPECT_EQ(canvas_->text_width("iiii"), canvas_->text_width("MMMM"));
  EXPECT_LE(canvas_->text_width("M"), fixed.widest_character);
  canvas_->end_paint();
  ASSERT_TRUE(canvas_->begin_paint());
  const FontMetrics variable = canvas_->select_font(Font::kVariable);
  EXPECT_GT(variable.widest_character, 0);
  EXPECT_LT(canvas_->text_width("iiii"), canvas_->text_width("MMMM"));
  EXPECT_EQ(canvas_->text_width({}), 0);
  canvas_->end_paint();
}

TEST_F(WindowCanvas, DrawsTextsOneAfterTheOtherWithinTheClip) {
  constexpr Colour kRed = 0x0000FF;
  constexpr Colour kBlue = 0xFF0000;
  constexpr Colour kGreen = 0x00FF00;
  InvalidateRect(window_, nullptr, TRUE);
  ASSERT_TRUE(canvas_->begin_paint());
  const FontMetrics font = canvas_->select_font(Font::kFixed);
  const int32_t width = canvas_->text_width(" ");
  ASSERT_GT(width, 0);
  canvas_->move_to(20, 30);
  const Rectangle clip{0, 0, 300, 30 + font.height - 2};
  canvas_->draw_text("  ", 0, kRed, clip);
  canvas_->draw_text(" ", 0, kBlue, clip);
  canvas_->draw_vertical_rule(5, 10, 20, kGreen);
  canvas_->end_paint();
  HDC device = GetDC(window_);
  EXPECT_EQ(GetPixel(device, 20, 30), kRed);
  EXPECT_EQ(GetPixel(device, 20 + 2 * width - 1, 31), kRed);
  EXPECT_EQ(GetPixel(device, 20 + 2 * width, 31), kBlue);
  EXPECT_NE(GetPixel(device, 20 + 3 * width, 31), kBlue);
  EXPECT_NE(GetPixel(device, 19, 30), kRed);
  EXPECT_NE(GetPixel(device, 21, 29), kRed);
  EXPECT_EQ(GetPixel(device, 21, clip.bottom - 1), kRed);
  EXPECT_NE(GetPixel(device, 21, clip.bottom), kRed);
  EXPECT_EQ(GetPixel(device, 5, 10), kGreen);
  EXPECT_EQ(GetPixel(device, 5, 19), kGreen);
  EXPECT_NE(GetPixel(device, 5, 20), kGreen);
  EXPECT_NE(GetPixel(device, 6, 15), kGreen);
  ReleaseDC(window_, device);
}

TEST_F(WindowCanvas, RefusesToPaintWhilePaintingOrWithoutAWindow) {
  ASSERT_TRUE(canvas_->begin_paint());
  EXPECT_FALSE(canvas_->begin_paint());
  canvas_->end_paint();
  ASSERT_TRUE(canvas_->begin_paint());
  canvas_->end_paint();
  HWND gone = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 10, 10, nullptr,
                              nullptr, nullptr, nullptr);
  DestroyWindow(gone);
  const std::unique_ptr<Canvas> canvas = open_window(gone);
  ASSERT_NE(canvas, nullptr);
  EXPECT_FALSE(canvas->begin_paint());
  EXPECT_EQ(canvas->client_rectangle(), Rectangle{});
  int32_t value = 5;
  EXPECT_FALSE(canvas->get_scroll_value(ScrollBar::kVertical,
                                        ScrollValue::kPosition, &value));
  EXPECT_EQ(value, 5);
}

TEST_F(WindowCanvas, LetsTheScrollBarsFollow) {
  canvas_->show_scroll_bars();
  EXPECT_EQ(GetWindowLongA(window_, GWL_STYLE) & (WS_HSCROLL | WS_VSCROLL),
            WS_HSCROLL | WS_VSCROLL);
  canvas_->set_scroll_range(ScrollBar::kVertical, 1000, true);
  canvas_->set_scroll_range(ScrollBar::kHorizontal, 80, false);
  EXPECT_EQ(bar(SB_VERT).nMin, 0);
  EXPECT_EQ(bar(SB_VERT).nMax, 1000);
  EXPECT_EQ(bar(SB_HORZ).nMax, 80);
  EXPECT_EQ(canvas_->set_scroll_page(ScrollBar::kVertical, 25, 300), 300);
  EXPECT_EQ(canvas_->set_scroll_page(ScrollBar::kHorizontal, 20, 70), 61);
  EXPECT_EQ(bar(SB_VERT).nPage, 25u);
  EXPECT_EQ(bar(SB_HORZ).nPage, 20u);
  int32_t value = 0;
  EXPECT_TRUE(canvas_->get_scroll_value(ScrollBar::kVertical,
                                        ScrollValue::kPosition, &value));
  EXPECT_EQ(value, 300);
  EXPECT_TRUE(canvas_->get_scroll_value(ScrollBar::kHorizontal,
                                        ScrollValue::kPosition, &value));
  EXPECT_EQ(value, 61);
  EXPECT_TRUE(canvas_->get_scroll_value(ScrollBar::kVertical,
                                        ScrollValue::kTrackPosition, &value));
  EXPECT_EQ(value, 300);
}

#else

TEST(Canvas, OpensNoWindowNatively) {
  int window = 0;
  EXPECT_EQ(open_window(&window), nullptr);
}

TEST(Canvas, HasTheUsualSystemColoursNatively) {
  EXPECT_EQ(system_colour(SystemColour::kWindow), 0xFFFFFFu);
  EXPECT_EQ(system_colour(SystemColour::kWindowText), 0u);
  EXPECT_EQ(system_colour(SystemColour::kGrayText), 0x6D6D6Du);
  EXPECT_EQ(system_colour(SystemColour::kInfoBackground), 0xE1FFFFu);
}

#endif

}  // namespace
}  // namespace zenfo::platform
