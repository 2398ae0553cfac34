// One line for messages, above the results. It takes no room while there is
// none, and no box stops the user's work.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <optional>
#include <string>

#include "gui/settings/commands.h"
#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {

class InfoBar : public WindowBase {
 public:
  // Sent to the parent as WM_COMMAND when the bar needs more or less room.
  static constexpr int kResized = 920;
  InfoBar(HWND parent, const Look& look);

  // An empty text closes the bar.
  void show(const std::string& text);
  // With a button for a command, which the parent gets as WM_COMMAND.
  void show(const std::string& text, CommandId action);
  std::optional<CommandId> action() const { return shown_action_; }
  std::wstring text() const;
  int height() const;  // 0 while it is closed
  void restyle();

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void show_text(const std::string& text);
  void lay_out();

  const Look& look_;
  bool open_ = false;
  HWND text_ = nullptr;
  std::optional<CommandId> shown_action_;
  HWND action_ = nullptr;
  HWND close_ = nullptr;
};

}  // namespace zenfo::host::gui::win32
