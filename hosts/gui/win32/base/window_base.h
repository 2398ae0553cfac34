// A window whose messages are calls of an object.
//
// The object owns the window: its end destroys it. A parent may destroy the
// window first; window() is null then.
#pragma once

#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

class WindowBase {
 public:
  struct Shape {
    const wchar_t* class_name = L"";  // registered when it is first used
    UINT class_style = 0;
    const wchar_t* title = L"";
    DWORD style = WS_CHILD | WS_VISIBLE;
    DWORD extended_style = 0;
    HWND parent = nullptr;
    int id = 0;  // of a child
    // Of the client area of a window that is no child; 0: the system's choice.
    SIZE size = {0, 0};
  };

  WindowBase() = default;
  virtual ~WindowBase();
  WindowBase(const WindowBase&) = delete;
  WindowBase& operator=(const WindowBase&) = delete;

  HWND window() const { return window_; }

 protected:
  // Throws Failure if the window cannot be created. Messages arrive during the
  // call already.
  void create(const Shape& shape);
  virtual LRESULT on_message(UINT message, WPARAM word, LPARAM value) = 0;
  LRESULT by_default(UINT message, WPARAM word, LPARAM value) {
    return DefWindowProcW(window_, message, word, value);
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM word,
                                    LPARAM value);

  HWND window_ = nullptr;
};

// The parts of a painted area: everything is drawn into memory, and copied to
// the window when the object ends, so nothing blinks.
class Painting {
 public:
  explicit Painting(HWND window);
  ~Painting();
  Painting(const Painting&) = delete;
  Painting& operator=(const Painting&) = delete;

  HDC device() const { return memory_; }
  const RECT& area() const { return area_; }  // the whole client area

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  RECT area_{};
  HDC memory_;
  HBITMAP bitmap_;
  HGDIOBJ old_;
};

// Paints an area in one colour.
void fill(HDC device, const RECT& area, COLORREF colour);

}  // namespace zenfo::host::gui::win32
