// The tabs of results: the system's tab control, painted in the program's
// colours.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <functional>
#include <string>

#include "gui/win32/base/look.h"

namespace zenfo::host::gui::win32 {

class TabStrip {
 public:
  TabStrip(HWND parent, int id, const Look& look);

  HWND window() const { return strip_; }
  int height() const;
  void restyle();

  int count() const { return TabCtrl_GetItemCount(strip_); }
  int current() const { return TabCtrl_GetCurSel(strip_); }
  void add(const std::wstring& title);
  void remove(int index) { TabCtrl_DeleteItem(strip_, index); }
  void choose(int index) { TabCtrl_SetCurSel(strip_, index); }
  void rename(int index, const std::wstring& title);
  // The tab at a place of the strip, or -1.
  int tab_at(POINT point) const;

  // A tab was clicked with the middle button.
  std::function<void(int index)> on_close;

 private:
  static LRESULT CALLBACK on_message(HWND strip, UINT message, WPARAM word,
                                     LPARAM value, UINT_PTR, DWORD_PTR data);
  void paint();

  const Look& look_;
  HWND strip_;
};

}  // namespace zenfo::host::gui::win32
