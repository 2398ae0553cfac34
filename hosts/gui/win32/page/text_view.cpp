#include "gui/win32/page/text_view.h"

#include <algorithm>
#include <utility>

#include "gui/win32/base/ansi_page.h"
#include "gui/win32/base/wide.h"
#include "gui/words/strings.h"
#include "shared/system/paths.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr wchar_t kUsualFont[] = L"Consolas";
constexpr int kSmallestFont = 4;  // points
constexpr int kLeastZoom = 40;    // percent
constexpr int kMostZoom = 400;
constexpr uint64_t kMostCopied = uint64_t{64} << 20;  // bytes
constexpr UINT_PTR kCounting = 1;                     // the timer
constexpr uint32_t kMegabytesATime = 8;
// Scroll bars have 32 bits; a large file scrolls in greater units.
constexpr uint64_t kMostSteps = uint64_t{1} << 30;

uint64_t step_of(uint64_t size) { return size / kMostSteps + 1; }

bool give_to_clipboard(HWND owner, const std::u16string& text) {
  const size_t size = (text.size() + 1) * sizeof(char16_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  if (memory == nullptr) return false;
  auto* copy = static_cast<char16_t*>(GlobalLock(memory));
  std::copy_n(text.c_str(), text.size() + 1, copy);
  GlobalUnlock(memory);
  const bool open = OpenClipboard(owner) != 0;
  const bool given = open && EmptyClipboard() != 0 &&
                     SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
  if (open) CloseClipboard();
  if (!given) GlobalFree(memory);
  return given;
}

}  // namespace

TextView::TextView(HWND parent, const Theme& theme) : theme_(theme) {
  rows_.set_page(ansi_page());
  Shape shape;
  shape.class_name = L"ZenfoText";
  shape.class_style = CS_DBLCLKS;
  shape.style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL |
                WS_CLIPSIBLINGS;
  shape.parent = parent;
  create(shape);
  name_page(std::string(text(Text::kTextPage)));
  dpi_ = dpi_of(window());
  theme_changed();
  make_font();
}

// --- What is shown -----------------------------------------------------------

void TextView::show(const std::filesystem::path& file,
                    std::span<const Match> matches, size_t current) {
  const std::string path = host::narrow(file.native());
  std::string reason;
  end_drag();
  digits_ = 0;
  message_.clear();
  if (!rows_.open(path, {matches.begin(), matches.end()}, &reason)) {
    const std::string name = host::narrow(file.filename().native());
    message_ = wide(format(Text::kTextUnread, {name, reason}));
  }
  lay_out();
  go_to(current);
  if (!message_.empty()) name_page(narrow(message_));
}

void TextView::show_areas(std::vector<Match> areas) {
  rows_.set_areas(std::move(areas));
  refresh();
}

void TextView::go_to(size_t match) {
  rows_.go_to_match(match);
  rows_.select(0, 0);
  clicked_ = false;
  refresh();
  announce();
}

void TextView::clear() {
  end_drag();
  rows_.close();
  message_.clear();
  digits_ = 0;
  lay_out();
  name_page(std::string(text(Text::kTextPage)));
}

void TextView::name_page(const std::string& name) {
  SetWindowTextW(window(), wide(name).c_str());
  NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window(), OBJID_CLIENT, CHILDID_SELF);
}

void TextView::announce() {
  named_without_number_ = false;
  if (rows_.match_count() == 0) {
    return name_page(std::string(text(Text::kTextPage)));
  }
  constexpr size_t kMost = 300;  // units of the line
  auto [line, number] = rows_.current_line();
  if (line.size() > kMost) line.resize(kMost);
  const std::string shown = to_utf8(line);
  const std::string match = grouped(rows_.current() + 1);
  const std::string count = grouped(rows_.match_count());
  named_without_number_ = number == 0;
  name_page(number == 0
                ? format(Text::kTextMatch, {match, count, shown})
                : format(Text::kTextMatchInLine,
                         {match, count, std::to_string(number), shown}));
}

// --- Sizes -------------------------------------------------------------------

void TextView::scale(unsigned dpi) {
  dpi_ = dpi;
  make_font();
}

void TextView::set_font(const std::string& name, int points) {
  font_name_ = wide(name);
  points_ = points;
  make_font();
}

void TextView::set_zoom(int percent) {
  zoom_ = std::clamp(percent, kLeastZoom, kMostZoom);
  make_font();
}

void TextView::set_wrap(bool on) {
  rows_.set_wrap(on);
  ShowScrollBar(window(), SB_HORZ, on ? FALSE : TRUE);
  lay_out();
}

void TextView::set_white_space(bool on) {
  white_space_ = on;
  refresh();
}

void TextView::theme_changed() {
  apply_to_control(window(), theme_);
  refresh();
}

void TextView::make_font() {
  const std::wstring name = font_name_.empty() ? kUsualFont : font_name_;
  const int points = std::max(MulDiv(points_, zoom_, 100), kSmallestFont);
  font_ = fixed_font(name.c_str(), points, dpi_);
  const SIZE cell = text_size(window(), font_.get(), L"0");
  measures_.cell = std::max<int>(cell.cx, 1);
  measures_.height = std::max<int>(cell.cy + scaled(1, dpi_), 1);
  measures_.frame = std::max(scaled(1, dpi_), 1);
  lay_out();
}

// More digits make the gutter wider, and lines narrower.
void TextView::lay_out() {
  RECT area{};
  GetClientRect(window(), &area);
  for (;;) {
    const auto digits = static_cast<int>(std::max(digits_, 4U));
    measures_.gutter = (digits + 2) * measures_.cell;
    measures_.left = measures_.gutter + measures_.cell / 2;
    const int width = std::max<int>(area.right - measures_.left, 0);
    rows_.set_view(static_cast<uint32_t>(width / measures_.cell),
                   static_cast<uint32_t>(area.bottom / measures_.height));
    if (rows_.digits() <= digits_) break;
    digits_ = rows_.digits();
  }
  refresh();
}

// After anything has moved.
void TextView::refresh() {
  if (rows_.digits() > digits_ && rows_.is_open()) return lay_out();
  show_bars();
  InvalidateRect(window(), nullptr, FALSE);
  keep_counting();
}

// A bar that is not needed stays, so that the page keeps its width.
void TextView::show_bars() {
  const TextRows::Range down = rows_.vertical();
  const uint64_t step = step_of(down.size);
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL | SIF_DISABLENOSCROLL;
  info.nMax = static_cast<int>(down.size / step);
  info.nPage = static_cast<UINT>(down.page / step) + 1;
  info.nPos = static_cast<int>(down.position / step);
  SetScrollInfo(window(), SB_VERT, &info, TRUE);
  if (rows_.is_wrapped()) return;
  const TextRows::Range right = rows_.horizontal();
  info.nMax = static_cast<int>(right.size) - 1;
  info.nPage = static_cast<UINT>(right.page);
  info.nPos = static_cast<int>(right.position);
  SetScrollInfo(window(), SB_HORZ, &info, TRUE);
}

// The thumb stands at a place of show_bars().
void TextView::track(int bar, int position) {
  if (bar == SB_HORZ) {
    return scroll_columns(position - int64_t{rows_.left_column()});
  }
  const TextRows::Range range = rows_.vertical();
  const uint64_t offset =
      static_cast<uint64_t>(std::max(position, 0)) * step_of(range.size);
  const bool moves = offset + range.page >= range.size
                         ? rows_.go_to_end()
                         : rows_.go_to_offset(offset);
  if (moves) refresh();
}

// Line numbers of a large file arrive later, between other messages.
void TextView::keep_counting() {
  if (counting_ || !rows_.lacks_numbers()) return;
  counting_ = SetTimer(window(), kCounting, USER_TIMER_MINIMUM, nullptr) != 0;
}

// Also when the file has become shorter: then nothing is counted until the page
// moves again.
void TextView::on_counted() {
  KillTimer(window(), kCounting);
  counting_ = false;
  if (!rows_.lacks_numbers()) {
    refresh();
    if (named_without_number_) announce();
  }
  if (on_numbers && !counting_) on_numbers();
}

// --- Painting ----------------------------------------------------------------

void TextView::paint_on(HDC device, const RECT& area) {
  const HGDIOBJ old = SelectObject(device, font_.get());
  TextPainter painter(device, area, measures_, theme_);
  painter.show_white_space(white_space_);
  painter.paint(rows_);
  if (!message_.empty()) {
    RECT box = area;
    box.left += measures_.left;
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, theme_.dim_text);
    DrawTextW(device, message_.c_str(), -1, &box, DT_NOPREFIX | DT_WORDBREAK);
  }
  if (GetFocus() == window()) {
    SetDCBrushColor(device, theme_.dim_text);
    FrameRect(device, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  }
  SelectObject(device, old);
}

std::optional<RECT> TextView::current_box() {
  int top = 0;
  for (const ShownLine& line : rows_.lines()) {
    for (const TextRun& run : rows_.runs(line, line.first, line.last)) {
      if (!run.current) continue;
      const auto x = [&](uint32_t unit) {
        const auto column =
            static_cast<int>(line.text->columns[unit] - line.first_column());
        return measures_.left +
               (column - static_cast<int>(rows_.left_column())) *
                   measures_.cell;
      };
      return RECT{x(run.first), top, x(run.last), top + measures_.height};
    }
    top += measures_.height;
  }
  return std::nullopt;
}

uint64_t TextView::caret_line() {
  if (clicked_ || has_selection()) {
    return rows_.number_at(rows_.selection().caret);
  }
  return rows_.match_count() == 0 ? 1 : rows_.current_line().second;
}

POINT TextView::menu_place() {
  const RECT box = current_box().value_or(
      RECT{measures_.left, 0, measures_.left, measures_.height});
  POINT place{box.left, box.bottom};
  ClientToScreen(window(), &place);
  return place;
}

bool TextView::copy() {
  const std::optional<std::u16string> text = rows_.selected_text(kMostCopied);
  return text && !text->empty() && give_to_clipboard(window(), *text);
}

// --- Messages ----------------------------------------------------------------

LRESULT TextView::on_message(UINT message, WPARAM word, LPARAM value) {
  const POINT point{GET_X_LPARAM(value), GET_Y_LPARAM(value)};
  switch (message) {
    case WM_PAINT: {
      const Painting painting(window());
      paint_on(painting.device(), painting.area());
      return 0;
    }
    case WM_PRINTCLIENT: {
      RECT area{};
      GetClientRect(window(), &area);
      paint_on(reinterpret_cast<HDC>(word), area);
      return 0;
    }
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
      lay_out();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(window(), nullptr, FALSE);
      return 0;
    case WM_TIMER:
      if (rows_.count_numbers(kMegabytesATime)) return 0;
      on_counted();
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
      on_mouse_down(point, (word & MK_SHIFT) != 0);
      return 0;
    case WM_RBUTTONDOWN:
      on_right_down(point);
      return 0;
    case WM_LBUTTONDBLCLK:
      rows_.select_word(offset_at(point));
      refresh();
      return 0;
    case WM_MOUSEMOVE:
      if (dragging_) on_mouse_move(point);
      return 0;
    case WM_LBUTTONUP:
      end_drag();
      return 0;
    case WM_CAPTURECHANGED:
      dragging_ = false;
      return 0;
    case WM_SETCURSOR:
      if (LOWORD(value) != HTCLIENT || !is_over_text()) break;
      SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32513)));  // for text
      return TRUE;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_KEYDOWN:
      if (on_key(word)) return 0;
      break;
    case WM_COPY:
      copy();
      return 0;
    default:
      break;
  }
  return by_default(message, word, value);
}

}  // namespace zenfo::host::gui::win32
