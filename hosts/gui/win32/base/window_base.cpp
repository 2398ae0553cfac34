#include "gui/win32/base/window_base.h"

#include "shared/frame/failure.h"

namespace zenfo::host::gui::win32 {
namespace {

// Registering a class again fails without harm.
void register_class(const WindowBase::Shape& shape, WNDPROC procedure) {
  WNDCLASSEXW row{};
  row.cbSize = sizeof row;
  row.style = shape.class_style;
  row.lpfnWndProc = procedure;
  row.hInstance = GetModuleHandleW(nullptr);
  row.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
  row.hIcon = LoadIconW(row.hInstance, MAKEINTRESOURCEW(1));    // or none
  row.lpszClassName = shape.class_name;
  RegisterClassExW(&row);
}

SIZE outer_size(const WindowBase::Shape& shape) {
  if (shape.size.cx == 0) return {CW_USEDEFAULT, CW_USEDEFAULT};
  RECT area{0, 0, shape.size.cx, shape.size.cy};
  AdjustWindowRectEx(&area, shape.style, FALSE, shape.extended_style);
  return {area.right - area.left, area.bottom - area.top};
}

}  // namespace

WindowBase::~WindowBase() {
  if (window_ == nullptr) return;
  // The part of the object that answers messages is gone already.
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

void WindowBase::create(const Shape& shape) {
  register_class(shape, procedure);
  const bool child = (shape.style & WS_CHILD) != 0;
  const int place = child ? 0 : CW_USEDEFAULT;
  const SIZE size = child ? SIZE{0, 0} : outer_size(shape);
  const auto id = child ? reinterpret_cast<HMENU>(shape.id) : nullptr;
  const HWND made =
      CreateWindowExW(shape.extended_style, shape.class_name, shape.title,
                      shape.style, place, place, size.cx, size.cy, shape.parent,
                      id, GetModuleHandleW(nullptr), this);
  if (made == nullptr) throw Failure{"window", "cannot be created"};
}

LRESULT CALLBACK WindowBase::procedure(HWND window, UINT message, WPARAM word,
                                       LPARAM value) {
  if (message == WM_NCCREATE) {
    const auto* create = reinterpret_cast<const CREATESTRUCTW*>(value);
    auto* made = static_cast<WindowBase*>(create->lpCreateParams);
    made->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
  }
  auto* owner =
      reinterpret_cast<WindowBase*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (owner == nullptr) return DefWindowProcW(window, message, word, value);
  if (message != WM_NCDESTROY) return owner->on_message(message, word, value);
  // The object may outlive its window, or be in its own end.
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  owner->window_ = nullptr;
  return DefWindowProcW(window, message, word, value);
}

Painting::Painting(HWND window) : window_(window) {
  const HDC shown = BeginPaint(window, &paint_);
  GetClientRect(window, &area_);
  memory_ = CreateCompatibleDC(shown);
  bitmap_ = CreateCompatibleBitmap(shown, area_.right, area_.bottom);
  old_ = SelectObject(memory_, bitmap_);
}

Painting::~Painting() {
  const RECT& part = paint_.rcPaint;
  BitBlt(paint_.hdc, part.left, part.top, part.right - part.left,
         part.bottom - part.top, memory_, part.left, part.top, SRCCOPY);
  SelectObject(memory_, old_);
  DeleteObject(bitmap_);
  DeleteDC(memory_);
  EndPaint(window_, &paint_);
}

void fill(HDC device, const RECT& area, COLORREF colour) {
  SetDCBrushColor(device, colour);
  FillRect(device, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

}  // namespace zenfo::host::gui::win32
