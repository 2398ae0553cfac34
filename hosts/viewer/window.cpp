#include "viewer/window.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "zenfofr130.h"

namespace zenfo::viewer {
namespace {

constexpr wchar_t kClass[] = L"zenfo-view";
constexpr LONG kWidth = 680;  // of the client area: 80 columns fit
constexpr LONG kHeight = 300;
constexpr uint32_t kHexBytes = 16;
constexpr int kLinesPerNotch = 3;
constexpr wchar_t kKeys[] =
    L"Arrows, Page Up, Page Down, Home, End\tmove the page\n"
    L"N, F3\tnext match\n"
    L"P, Shift+F3\tmatch before\n"
    L"H\ttext or hex dump\n"
    L"L\tline numbers\n"
    L"F\tfixed or variable font\n"
    L"Esc\tclose";
constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_VSCROLL | WS_HSCROLL;

void register_class(WNDPROC procedure) {
  WNDCLASSEXW row{};
  row.cbSize = sizeof row;
  row.style = CS_HREDRAW | CS_VREDRAW;  // A new size shows a new page.
  row.lpfnWndProc = procedure;
  row.hInstance = GetModuleHandleW(nullptr);
  row.hCursor = LoadCursor(nullptr, IDC_ARROW);
  row.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  row.lpszClassName = kClass;
  RegisterClassExW(&row);
}

// The size of a window with the wanted client area.
SIZE outer_size() {
  RECT area{0, 0, kWidth, kHeight};
  AdjustWindowRectEx(&area, kStyle, FALSE, 0);
  return {area.right - area.left + GetSystemMetrics(SM_CXVSCROLL),
          area.bottom - area.top + GetSystemMetrics(SM_CYHSCROLL)};
}

// The new position after a scroll bar action. The engine has set the range and
// the page size of the bar.
int scrolled(HWND window, int bar, int action) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  GetScrollInfo(window, bar, &info);
  const int page = static_cast<int>(info.nPage);
  const int last = std::max(info.nMax - page, 0);
  const auto target = [&] {
    switch (action) {
      case SB_LINEUP:
        return info.nPos - 1;
      case SB_LINEDOWN:
        return info.nPos + 1;
      case SB_PAGEUP:
        return info.nPos - page;
      case SB_PAGEDOWN:
        return info.nPos + page;
      case SB_THUMBTRACK:
        return info.nTrackPos;
      case SB_TOP:
        return 0;
      case SB_BOTTOM:
        return last;
      default:
        return info.nPos;
    }
  };
  return std::clamp(target(), 0, last);
}

}  // namespace

Window::Window(std::wstring name, bool hex)
    : name_(std::move(name)), hex_(hex) {
  register_class(procedure);
  const SIZE size = outer_size();
  handle_ = CreateWindowExW(0, kClass, name_.c_str(), kStyle, CW_USEDEFAULT,
                            CW_USEDEFAULT, size.cx, size.cy, nullptr, nullptr,
                            GetModuleHandleW(nullptr), this);
}

Window::~Window() {
  if (handle_ != nullptr) DestroyWindow(handle_);
}

bool Window::open() {
  if (handle_ == nullptr || SetDisplayWindow(handle_) != 1) return false;
  ShowWindow(handle_, SW_SHOWNORMAL);
  show_text();
  return true;
}

void Window::run() {
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

LRESULT CALLBACK Window::procedure(HWND handle, UINT message, WPARAM word,
                                   LPARAM value) {
  if (message == WM_NCCREATE) {
    const auto* create = reinterpret_cast<const CREATESTRUCTW*>(value);
    SetWindowLongPtrW(handle, GWLP_USERDATA,
                      reinterpret_cast<LONG_PTR>(create->lpCreateParams));
  }
  auto* window =
      reinterpret_cast<Window*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
  if (window == nullptr || window->handle_ == nullptr) {
    return DefWindowProcW(handle, message, word, value);
  }
  return window->on_message(message, word, value);
}

LRESULT Window::on_message(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_PAINT:
      paint();
      return 0;
    case WM_VSCROLL:
      scroll(SB_VERT, LOWORD(word));
      return 0;
    case WM_HSCROLL:
      scroll(SB_HORZ, LOWORD(word));
      return 0;
    case WM_MOUSEWHEEL:
      on_wheel(GET_WHEEL_DELTA_WPARAM(word));
      return 0;
    case WM_LBUTTONDOWN:
      show_match(HitTestDisplay(GET_X_LPARAM(value), GET_Y_LPARAM(value)));
      return 0;
    case WM_KEYDOWN:
      on_key(word);
      return 0;
    case WM_DESTROY:
      SetDisplayWindow(nullptr);
      handle_ = nullptr;
      PostQuitMessage(0);
      return 0;
    default:
      return DefWindowProcW(handle_, message, word, value);
  }
}

void Window::on_key(WPARAM key) {
  struct Row {
    WPARAM key;
    void (*act)(Window&);
  };
  static constexpr Row kRows[] = {
      {VK_UP, [](Window& w) { w.scroll(SB_VERT, SB_LINEUP); }},
      {VK_DOWN, [](Window& w) { w.scroll(SB_VERT, SB_LINEDOWN); }},
      {VK_PRIOR, [](Window& w) { w.scroll(SB_VERT, SB_PAGEUP); }},
      {VK_NEXT, [](Window& w) { w.scroll(SB_VERT, SB_PAGEDOWN); }},
      {VK_HOME, [](Window& w) { w.scroll(SB_VERT, SB_TOP); }},
      {VK_END, [](Window& w) { w.scroll(SB_VERT, SB_BOTTOM); }},
      {VK_LEFT, [](Window& w) { w.scroll(SB_HORZ, SB_LINELEFT); }},
      {VK_RIGHT, [](Window& w) { w.scroll(SB_HORZ, SB_LINERIGHT); }},
      {VK_F3, [](Window& w) { w.step(GetKeyState(VK_SHIFT) < 0 ? -1 : 1); }},
      {'N', [](Window& w) { w.step(1); }},
      {'P', [](Window& w) { w.step(-1); }},
      {'H', [](Window& w) { w.turn(w.hex_), w.show_text(); }},
      {'L', [](Window& w) { w.turn(w.line_numbers_); }},
      {'F', [](Window& w) { w.turn(w.fixed_font_); }},
      {VK_F1, [](Window& w) { MessageBoxW(w.handle_, kKeys, kClass, MB_OK); }},
      {VK_ESCAPE, [](Window& w) { DestroyWindow(w.handle_); }},
  };
  for (const Row& row : kRows) {
    if (row.key == key) return row.act(*this);
  }
}

// Fine wheels report less than a notch at a time.
void Window::on_wheel(int turn) {
  wheel_ += turn * kLinesPerNotch;
  const int lines = wheel_ / WHEEL_DELTA;
  wheel_ -= lines * WHEEL_DELTA;
  scroll(SB_VERT, lines > 0 ? SB_LINEUP : SB_LINEDOWN, std::abs(lines));
}

// The engine calls BeginPaint() and EndPaint() itself.
void Window::paint() {
  PaintDisplay(top_line_, left_column_, line_numbers_, fixed_font_);
}

// Paints at once, because the engine calculates with the page painted last.
void Window::repaint() {
  InvalidateRect(handle_, nullptr, TRUE);
  UpdateWindow(handle_);
}

// Lines end in CR LF, or in LF if there is no CR LF.
void Window::show_text() {
  SetBytesPerLine(hex_ ? kHexBytes : 0);
  PrepareDisplay("\r\n", 0);
  if (GetDisplayLineCount() == 1) PrepareDisplay("\n", 0);
  top_line_ = left_column_ = 0;
  repaint();
  show_match(match_);
}

void Window::scroll(int bar, int action, int times) {
  for (; times > 0; --times) {
    const auto target = static_cast<uint32_t>(scrolled(handle_, bar, action));
    (bar == SB_VERT ? top_line_ : left_column_) = target;
    repaint();
  }
}

// Goes to a match and highlights it; does nothing if it does not exist.
void Window::show_match(int32_t match) {
  int32_t place[2] = {0, 0};
  if (match < 0 || HighlightGroup(static_cast<uint32_t>(match), place) != 1) {
    return;
  }
  match_ = match;
  top_line_ = static_cast<uint32_t>(place[0]);
  left_column_ = static_cast<uint32_t>(place[1]);
  const std::wstring title = name_ + L" - match " + std::to_wstring(match + 1) +
                             L" of " +
                             std::to_wstring(GetCount(ZENFO_LIST_MATCHES, -1));
  SetWindowTextW(handle_, title.c_str());
  repaint();
}

// Moves by this many matches, from the last one to the first.
void Window::step(int32_t matches) {
  const int32_t count = GetCount(ZENFO_LIST_MATCHES, -1);
  if (count > 0) show_match((match_ + matches + count) % count);
}

void Window::turn(bool& option) {
  option = !option;
  repaint();
}

}  // namespace zenfo::viewer
