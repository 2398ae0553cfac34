#include "gui/win32/page/bytes_view.h"

#include <algorithm>
#include <utility>

#include "gui/win32/base/wide.h"
#include "gui/words/strings.h"
#include "zenfofr130.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr int32_t kLineNumbers = 1;
constexpr int32_t kFixedFont = 1;
constexpr int kAcross = 8;  // columns that a step sideways moves
constexpr int kNotch = 3;   // lines of a notch of the wheel

SCROLLINFO bar_of(HWND window, int bar) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  GetScrollInfo(window, bar, &info);
  return info;
}

// The width of a character in the font that the library paints with.
int column_width() {
  static const int width = [] {
    const HDC device = CreateCompatibleDC(nullptr);
    SelectObject(device, GetStockObject(ANSI_FIXED_FONT));
    TEXTMETRICW metrics{};
    GetTextMetricsW(device, &metrics);
    DeleteDC(device);
    return std::max<int>(metrics.tmMaxCharWidth, 1);
  }();
  return width;
}

}  // namespace

BytesView::BytesView(HWND parent, const Look& look) : look_(look) {
  Shape shape;
  shape.class_name = L"zenfo-bytes";
  shape.class_style = CS_HREDRAW | CS_VREDRAW;
  shape.style =
      WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | WS_CLIPSIBLINGS;
  shape.parent = parent;
  create(shape);
  name_page(std::string(text(Text::kBytesPage)));
  restyle();
}

BytesView::~BytesView() { leave(); }

// --- What is shown -----------------------------------------------------------

void BytesView::show(std::shared_ptr<BytesDisplay> display,
                     std::optional<uint32_t> match) {
  if (!shows(display.get())) leave();
  display_ = std::move(display);
  message_.clear();
  top_ = left_ = 0;
  use([&] { SetDisplayWindow(window()); });
  name_page(std::string(text(Text::kBytesPage)));
  repaint();
  go_to(match);
}

// A match that is out of view comes into the upper half, with what stands
// before it.
void BytesView::go_to(std::optional<uint32_t> match) {
  if (!match) return;
  bool found = false;
  use([&] {
    int32_t place[2] = {0, 0};
    const auto group = display_->groups.group_at(*match);
    found = group && HighlightGroup(*group, place) == 1;
    if (!found) {
      ClearHighlight();
      return;
    }
    left_ = static_cast<uint32_t>(place[1]);
    if (place[0] == GetDisplayTopLine()) return;
    const int32_t page = GetDisplayPageLines();
    const int32_t last = std::max(GetDisplayLineCount() - page, 0);
    top_ = static_cast<uint32_t>(std::clamp(place[0] - page / 3, 0, last));
  });
  if (found) name_page(format(Text::kBytesMatch, {grouped(*match)}));
  repaint();
}

void BytesView::say(const std::string& message) {
  if (!display_ && message_ == wide(message)) return;
  leave();
  message_ = wide(message);
  for (const int bar : {SB_VERT, SB_HORZ}) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL | SIF_DISABLENOSCROLL;
    SetScrollInfo(window(), bar, &info, TRUE);
  }
  const std::string page(text(Text::kBytesPage));
  name_page(message.empty() ? page : page + ": " + message);
  InvalidateRect(window(), nullptr, TRUE);
}

void BytesView::leave() {
  if (display_) display_->parked.leave();
  display_.reset();
}

bool BytesView::use(const std::function<void()>& look) {
  return display_ && display_->parked.use(look);
}

void BytesView::name_page(const std::string& name) {
  SetWindowTextW(window(), wide(name).c_str());
  NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window(), OBJID_CLIENT, CHILDID_SELF);
}

void BytesView::restyle() {
  apply_to_control(window(), look_.theme);
  InvalidateRect(window(), nullptr, TRUE);
}

// Four columns for each byte and two between the parts, beside line numbers.
// Few lengths, so that a dump does not change with every pixel.
uint32_t BytesView::bytes_that_fit() const {
  RECT area{};
  GetClientRect(window(), &area);
  constexpr int kNumbers = 8;
  const int columns = area.right / column_width() - kNumbers - 2;
  for (const int bytes : {32, 24, 16, 12}) {
    if (4 * bytes <= columns) return static_cast<uint32_t>(bytes);
  }
  return 8;
}

// --- Painting ----------------------------------------------------------------

void BytesView::paint() {
  const bool painted =
      use([&] { PaintDisplay(top_, left_, kLineNumbers, kFixedFont); });
  if (!painted) return paint_message();
  ValidateRect(window(), nullptr);
  paint_focus();
}

void BytesView::paint_message() {
  const Painting painting(window());
  const HDC device = painting.device();
  RECT area = painting.area();
  fill(device, area, look_.theme.ground);
  const HGDIOBJ old = SelectObject(device, look_.font.get());
  SetBkMode(device, TRANSPARENT);
  SetTextColor(device, look_.theme.dim_text);
  InflateRect(&area, -look_.scale(8), -look_.scale(6));
  DrawTextW(device, message_.c_str(), -1, &area, DT_NOPREFIX | DT_WORDBREAK);
  SelectObject(device, old);
}

void BytesView::paint_focus() {
  if (GetFocus() != window()) return;
  RECT area{};
  GetClientRect(window(), &area);
  const HDC device = GetDC(window());
  SetDCBrushColor(device, GetSysColor(COLOR_WINDOWFRAME));
  FrameRect(device, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  ReleaseDC(window(), device);
}

// At once, because the library reckons with the page painted last.
void BytesView::repaint() {
  InvalidateRect(window(), nullptr, TRUE);
  UpdateWindow(window());
}

// --- Scrolling ---------------------------------------------------------------

// The library has set the ranges of the bars.
void BytesView::scroll_to(int bar, int64_t position) {
  const SCROLLINFO info = bar_of(window(), bar);
  const int64_t last = std::max(info.nMax - static_cast<int>(info.nPage), 0);
  const auto wanted =
      static_cast<uint32_t>(std::clamp<int64_t>(position, 0, last));
  uint32_t& now = bar == SB_VERT ? top_ : left_;
  if (wanted == now) return;
  now = wanted;
  repaint();
}

void BytesView::scroll_by(int bar, int64_t steps) {
  scroll_to(bar, int64_t{bar == SB_VERT ? top_ : left_} + steps);
}

void BytesView::on_scroll_bar(int bar, int action) {
  const SCROLLINFO info = bar_of(window(), bar);
  const int64_t page = std::max<int64_t>(int64_t{info.nPage} - 1, 1);
  switch (action) {
    case SB_LINEUP:
      return scroll_by(bar, -1);
    case SB_LINEDOWN:
      return scroll_by(bar, 1);
    case SB_PAGEUP:
      return scroll_by(bar, -page);
    case SB_PAGEDOWN:
      return scroll_by(bar, page);
    case SB_TOP:
      return scroll_to(bar, 0);
    case SB_BOTTOM:
      return scroll_to(bar, info.nMax);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return scroll_to(bar, info.nTrackPos);
    default:
      return;
  }
}

// Fine wheels report less than a notch at a time.
void BytesView::on_wheel(int turn, bool sideways) {
  int& turned = sideways ? wheel_sideways_ : wheel_;
  turned += turn * (sideways ? kAcross : kNotch);
  const int count = turned / WHEEL_DELTA;
  turned -= count * WHEEL_DELTA;
  scroll_by(sideways ? SB_HORZ : SB_VERT, -count);
}

bool BytesView::on_key(WPARAM key) {
  struct Row {
    WPARAM key;
    int bar;
    int action;
  };
  static constexpr Row kRows[] = {
      {VK_UP, SB_VERT, SB_LINEUP},    {VK_DOWN, SB_VERT, SB_LINEDOWN},
      {VK_PRIOR, SB_VERT, SB_PAGEUP}, {VK_NEXT, SB_VERT, SB_PAGEDOWN},
      {VK_HOME, SB_VERT, SB_TOP},     {VK_END, SB_VERT, SB_BOTTOM},
      {VK_LEFT, SB_HORZ, SB_LINEUP},  {VK_RIGHT, SB_HORZ, SB_LINEDOWN},
  };
  for (const Row& row : kRows) {
    if (row.key != key) continue;
    on_scroll_bar(row.bar, row.action);
    return true;
  }
  return false;
}

void BytesView::on_click(POINT point) {
  SetFocus(window());
  std::optional<uint32_t> match;
  use([&] {
    const int32_t group = HitTestDisplay(point.x, point.y);
    if (group < 0) return;
    match = display_->groups.offset_of(static_cast<uint32_t>(group));
  });
  if (match && on_match) on_match(*match);
}

// The page may begin too far down for what is seen of it now.
void BytesView::on_size() {
  InvalidateRect(window(), nullptr, TRUE);
  const uint32_t fit = bytes_that_fit();
  if (fit == std::exchange(fit_, fit)) return;
  if (display_ && on_fit_changed) on_fit_changed();
}

LRESULT BytesView::on_message(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_PAINT:
      paint();
      return 0;
    case WM_ERASEBKGND: {
      RECT area{};
      GetClientRect(window(), &area);
      fill(reinterpret_cast<HDC>(word), area,
           display_ ? GetSysColor(COLOR_WINDOW) : look_.theme.ground);
      return 1;
    }
    case WM_SIZE:
      on_size();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(window(), nullptr, TRUE);
      return 0;
    case WM_VSCROLL:
      on_scroll_bar(SB_VERT, LOWORD(word));
      return 0;
    case WM_HSCROLL:
      on_scroll_bar(SB_HORZ, LOWORD(word));
      return 0;
    case WM_MOUSEWHEEL:
      on_wheel(GET_WHEEL_DELTA_WPARAM(word), GetKeyState(VK_SHIFT) < 0);
      return 0;
    case WM_MOUSEHWHEEL:
      on_wheel(-GET_WHEEL_DELTA_WPARAM(word), true);
      return 0;
    case WM_LBUTTONDOWN:
      on_click({GET_X_LPARAM(value), GET_Y_LPARAM(value)});
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_KEYDOWN:
      if (on_key(word)) return 0;
      break;
    default:
      break;
  }
  return by_default(message, word, value);
}

}  // namespace zenfo::host::gui::win32
