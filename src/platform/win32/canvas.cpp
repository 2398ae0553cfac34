// Painting and scroll bars as the system's windows have them.
//
// Tested by tests/unit/platform/canvas_test.cpp
#include "platform/canvas.h"

#include "platform/win32/system.h"

namespace zenfo::platform {
namespace {

constexpr UINT kRange = SIF_RANGE | SIF_DISABLENOSCROLL;
constexpr UINT kPage = SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;

RECT to_rect(const Rectangle& rectangle) {
  return {rectangle.left, rectangle.top, rectangle.right, rectangle.bottom};
}

int bar_number(ScrollBar bar) {
  return bar == ScrollBar::kHorizontal ? SB_HORZ : SB_VERT;
}

SCROLLINFO scroll_info(UINT mask) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = mask;
  return info;
}

class WindowCanvas final : public Canvas {
 public:
  explicit WindowCanvas(HWND window) : window_(window) {}

  Rectangle client_rectangle() override {
    RECT rect{};
    GetClientRect(window_, &rect);
    return {rect.left, rect.top, rect.right, rect.bottom};
  }

  bool begin_paint() override {
    // BeginPaint lets the host erase the background, and the host may paint
    // again from there: only the outermost paint is carried out.
    if (painting_) return false;
    painting_ = true;
    paint_ = {};
    device_ = BeginPaint(window_, &paint_);
    if (device_ == nullptr) painting_ = false;
    if (painting_) SetTextAlign(device_, TA_UPDATECP);
    return painting_;
  }

  void end_paint() override {
    if (old_font_ != nullptr) SelectObject(device_, old_font_);
    old_font_ = nullptr;
    EndPaint(window_, &paint_);
    device_ = nullptr;
    painting_ = false;
  }

  FontMetrics select_font(Font font) override {
    old_font_ = SelectObject(
        device_,
        GetStockObject(font == Font::kFixed ? ANSI_FIXED_FONT : ANSI_VAR_FONT));
    TEXTMETRICA metrics{};
    if (GetTextMetricsA(device_, &metrics) == 0) return {};
    return {static_cast<int32_t>(metrics.tmHeight),
            static_cast<int32_t>(metrics.tmMaxCharWidth)};
  }

  int32_t text_width(std::string_view text) override {
    SIZE size{};
    GetTextExtentPoint32A(device_, text.data(), static_cast<int>(text.size()),
                          &size);
    return size.cx;
  }

  void move_to(int32_t x, int32_t y) override {
    MoveToEx(device_, x, y, nullptr);
  }

  void draw_text(std::string_view text, Colour text_colour, Colour background,
                 const Rectangle& clip) override {
    const RECT rect = to_rect(clip);
    SetTextColor(device_, text_colour);
    SetBkColor(device_, background);
    ExtTextOutA(device_, 0, 0, ETO_CLIPPED, &rect, text.data(),
                static_cast<UINT>(text.size()), nullptr);
  }

  void draw_vertical_rule(int32_t x, int32_t top, int32_t bottom,
                          Colour colour) override {
    HPEN pen = CreatePen(PS_SOLID, 0, colour);
    if (pen == nullptr) return;
    HGDIOBJ old_pen = SelectObject(device_, pen);
    MoveToEx(device_, x, top, nullptr);
    LineTo(device_, x, bottom);
    SelectObject(device_, old_pen);
    DeleteObject(pen);
  }

  void show_scroll_bars() override { ShowScrollBar(window_, SB_BOTH, TRUE); }

  void set_scroll_range(ScrollBar bar, int32_t maximum, bool redraw) override {
    SCROLLINFO info = scroll_info(kRange);
    info.nMax = maximum;
    SetScrollInfo(window_, bar_number(bar), &info, redraw ? TRUE : FALSE);
  }

  int32_t set_scroll_page(ScrollBar bar, int32_t page,
                          int32_t position) override {
    SCROLLINFO info = scroll_info(kPage);
    info.nPage = static_cast<UINT>(page);
    info.nPos = position;
    return SetScrollInfo(window_, bar_number(bar), &info, TRUE);
  }

  bool get_scroll_value(ScrollBar bar, ScrollValue kind,
                        int32_t* value) override {
    const bool track = kind == ScrollValue::kTrackPosition;
    SCROLLINFO info = scroll_info(track ? SIF_TRACKPOS : SIF_POS);
    if (GetScrollInfo(window_, bar_number(bar), &info) == 0) return false;
    *value = track ? info.nTrackPos : info.nPos;
    return true;
  }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  HDC device_ = nullptr;
  HGDIOBJ old_font_ = nullptr;
  bool painting_ = false;
};

}  // namespace

Colour system_colour(SystemColour number) {
  return GetSysColor(static_cast<int>(number));
}

std::unique_ptr<Canvas> open_window(void* handle) {
  if (handle == nullptr) return nullptr;
  return std::make_unique<WindowCanvas>(static_cast<HWND>(handle));
}

}  // namespace zenfo::platform
