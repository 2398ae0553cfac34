// Keys, wheel, scroll bars and mouse of the text page.
#include <algorithm>

#include "gui/win32/page/text_view.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr int kZoomStep = 10;  // percent
constexpr int64_t kFarRight = int64_t{1} << 30;

bool is_down(int key) { return GetKeyState(key) < 0; }

// How many lines or characters a notch of the wheel moves; a page for -1.
int per_notch(UINT setting) {
  UINT count = 3;
  SystemParametersInfoW(setting, 0, &count, 0);
  return count == WHEEL_PAGESCROLL ? -1
                                   : static_cast<int>(std::min(count, 100U));
}

int track_position(HWND window, int bar) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_TRACKPOS;
  GetScrollInfo(window, bar, &info);
  return info.nTrackPos;
}

}  // namespace

// --- Scrolling ---------------------------------------------------------------

void TextView::scroll_lines(int64_t lines) {
  if (rows_.scroll_lines(lines)) refresh();
}

void TextView::scroll_columns(int64_t columns) {
  if (rows_.scroll_columns(columns)) refresh();
}

// A line stays in view.
void TextView::scroll_page(int direction) {
  RECT area{};
  GetClientRect(window(), &area);
  const int lines = area.bottom / measures_.height - 1;
  scroll_lines(int64_t{direction} * std::max(lines, 1));
}

void TextView::on_scroll_bar(int bar, int action) {
  const bool down = bar == SB_VERT;
  const auto page = static_cast<int64_t>(rows_.horizontal().page);
  const auto by = [&](int64_t lines, int64_t columns) {
    return down ? scroll_lines(lines) : scroll_columns(columns);
  };
  switch (action) {
    case SB_LINEUP:
      return by(-1, -1);
    case SB_LINEDOWN:
      return by(1, 1);
    case SB_PAGEUP:
      return down ? scroll_page(-1) : scroll_columns(-page);
    case SB_PAGEDOWN:
      return down ? scroll_page(1) : scroll_columns(page);
    case SB_TOP:
      return down ? go_to_start() : scroll_columns(-kFarRight);
    case SB_BOTTOM:
      return down ? go_to_end() : scroll_columns(kFarRight);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return track(bar, track_position(window(), bar));
    default:
      return;
  }
}

void TextView::go_to_start() {
  if (rows_.go_to_offset(0)) refresh();
}

void TextView::go_to_end() {
  if (rows_.go_to_end()) refresh();
}

void TextView::on_wheel(int turn, bool sideways) {
  if (is_down(VK_CONTROL)) {
    wheel_ += turn;
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    if (notches != 0) zoom_by(notches * kZoomStep);
    return;
  }
  // Fine wheels report less than a notch at a time.
  int& turned = sideways ? wheel_sideways_ : wheel_;
  const int step =
      per_notch(sideways ? SPI_GETWHEELSCROLLCHARS : SPI_GETWHEELSCROLLLINES);
  turned += turn * std::abs(step);
  const int count = turned / WHEEL_DELTA;
  turned -= count * WHEEL_DELTA;
  if (count == 0) return;
  if (sideways) return scroll_columns(-count);
  if (step < 0) return scroll_page(-count);
  scroll_lines(-count);
}

void TextView::zoom_by(int percent) {
  set_zoom(zoom_ + percent);
  if (on_zoom) on_zoom(zoom_);
}

// --- Keys --------------------------------------------------------------------

void TextView::extend(int characters, int lines) {
  rows_.extend(characters, lines);
  refresh();
}

void TextView::step(int direction) {
  if (on_step) return on_step(direction);
  const size_t count = rows_.match_count();
  if (count == 0) return;
  go_to((rows_.current() + (direction > 0 ? 1 : count - 1)) % count);
}

bool TextView::on_key(WPARAM key) {
  enum Held { kNone, kShift, kControl };
  struct Row {
    WPARAM key;
    Held held;
    void (*act)(TextView&);
  };
  static constexpr Row kRows[] = {
      {VK_UP, kNone, [](TextView& v) { v.scroll_lines(-1); }},
      {VK_DOWN, kNone, [](TextView& v) { v.scroll_lines(1); }},
      {VK_LEFT, kNone, [](TextView& v) { v.scroll_columns(-1); }},
      {VK_RIGHT, kNone, [](TextView& v) { v.scroll_columns(1); }},
      {VK_PRIOR, kNone, [](TextView& v) { v.scroll_page(-1); }},
      {VK_NEXT, kNone, [](TextView& v) { v.scroll_page(1); }},
      {VK_HOME, kNone, [](TextView& v) { v.scroll_columns(-kFarRight); }},
      {VK_END, kNone, [](TextView& v) { v.scroll_columns(kFarRight); }},
      {VK_HOME, kControl, [](TextView& v) { v.go_to_start(); }},
      {VK_END, kControl, [](TextView& v) { v.go_to_end(); }},
      {VK_UP, kShift, [](TextView& v) { v.extend(0, -1); }},
      {VK_DOWN, kShift, [](TextView& v) { v.extend(0, 1); }},
      {VK_LEFT, kShift, [](TextView& v) { v.extend(-1, 0); }},
      {VK_RIGHT, kShift, [](TextView& v) { v.extend(1, 0); }},
      {VK_F3, kNone, [](TextView& v) { v.step(1); }},
      {VK_F3, kShift, [](TextView& v) { v.step(-1); }},
      {'A', kControl, [](TextView& v) { v.select_all(); }},
      {'C', kControl, [](TextView& v) { v.copy(); }},
      {VK_INSERT, kControl, [](TextView& v) { v.copy(); }},
      {VK_OEM_PLUS, kControl, [](TextView& v) { v.zoom_by(kZoomStep); }},
      {VK_ADD, kControl, [](TextView& v) { v.zoom_by(kZoomStep); }},
      {VK_OEM_MINUS, kControl, [](TextView& v) { v.zoom_by(-kZoomStep); }},
      {VK_SUBTRACT, kControl, [](TextView& v) { v.zoom_by(-kZoomStep); }},
      {'0', kControl, [](TextView& v) { v.zoom_by(100 - v.zoom_); }},
      {VK_NUMPAD0, kControl, [](TextView& v) { v.zoom_by(100 - v.zoom_); }},
  };
  Held held = is_down(VK_SHIFT) ? kShift : kNone;
  if (is_down(VK_CONTROL)) held = kControl;
  for (const Row& row : kRows) {
    if (row.key != key || row.held != held) continue;
    row.act(*this);
    return true;
  }
  return false;
}

void TextView::select_all() {
  rows_.select_all();
  refresh();
}

// --- Mouse -------------------------------------------------------------------

uint64_t TextView::offset_at(POINT point) {
  const int line = point.y < 0 ? -1 : point.y / measures_.height;
  // The nearest edge of a character.
  const int x = point.x - measures_.left + measures_.cell / 2;
  const int column = x < 0 ? -1 : x / measures_.cell;
  return rows_.offset_at(line, column);
}

bool TextView::is_over_text() const {
  POINT point{};
  GetCursorPos(&point);
  ScreenToClient(window(), &point);
  return point.x >= measures_.gutter;
}

void TextView::on_mouse_down(POINT point, bool extends) {
  SetFocus(window());
  const uint64_t offset = offset_at(point);
  rows_.select(extends ? rows_.selection().anchor : offset, offset);
  clicked_ = true;
  SetCapture(window());
  dragging_ = true;
  refresh();
}

// For the menu: what is selected stays if the click is on it.
void TextView::on_right_down(POINT point) {
  SetFocus(window());
  const uint64_t offset = offset_at(point);
  const TextRows::Selection& now = rows_.selection();
  if (offset >= now.start() && offset < now.end()) return;
  rows_.select(offset, offset);
  clicked_ = true;
  refresh();
}

// Outside of the page it moves.
void TextView::on_mouse_move(POINT point) {
  RECT area{};
  GetClientRect(window(), &area);
  if (point.y < 0) rows_.scroll_lines(-1);
  if (point.y >= area.bottom) rows_.scroll_lines(1);
  if (point.x < measures_.gutter) rows_.scroll_columns(-1);
  if (point.x >= area.right) rows_.scroll_columns(1);
  point.y = std::min(point.y, area.bottom - 1);
  point.x = std::min(point.x, area.right - 1);
  rows_.select(rows_.selection().anchor, offset_at(point));
  refresh();
}

void TextView::end_drag() {
  if (dragging_) ReleaseCapture();
  dragging_ = false;
}

}  // namespace zenfo::host::gui::win32
