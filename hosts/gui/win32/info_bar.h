// One line for messages, above the results. It takes no room while there is
// none, and no box stops the user's work.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>

#include "gui/win32/look.h"
#include "gui/win32/window_base.h"

namespace zenfo::host::gui::win32 {

class InfoBar : public WindowBase {
 public:
  // Sent to the parent as WM_COMMAND when the bar needs more or less room.
  static constexpr int kResized = 920;
  InfoBar(HWND parent, const Look& look);

  // An empty text closes the bar.
  void show(const std::string& text);
  std::wstring text() const;
  int height() const;  // 0 while it is closed
  void restyle();

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void lay_out();

  const Look& look_;
  bool open_ = false;
  HWND text_ = nullptr;
  HWND close_ = nullptr;
};

}  // namespace zenfo::host::gui::win32
