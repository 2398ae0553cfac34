// The dialog for settings that have no place of their own in the window.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <vector>

#include "gui/settings/settings.h"
#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {

class SettingsDialog : public WindowBase {
 public:
  SettingsDialog(HWND owner, const Look& look, const Settings& settings);

  // Lets the user work in it; true if the settings are to be taken.
  bool run();
  void put_into(Settings& settings) const;

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void make_controls(const Settings& settings);
  void lay_out();
  void place_window();
  void end(bool taken);

  const HWND owner_;
  const Look& look_;
  std::vector<int> sizes_;  // of the font, as they can be chosen
  bool open_ = true;
  bool taken_ = false;

  HWND theme_label_ = nullptr, theme_ = nullptr;
  HWND size_label_ = nullptr, size_ = nullptr, wrap_ = nullptr;
  HWND editor_label_ = nullptr, editor_ = nullptr, hint_ = nullptr;
  HWND remember_ = nullptr, ok_ = nullptr, cancel_ = nullptr;
};

}  // namespace zenfo::host::gui::win32
