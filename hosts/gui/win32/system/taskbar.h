// The progress of a search in the window's button on the taskbar.
#pragma once

#include "gui/results/outbox.h"
#include "gui/win32/base/system.h"

struct ITaskbarList3;

namespace zenfo::host::gui::win32 {

// Does nothing where the system has no such taskbar.
class Taskbar {
 public:
  Taskbar() = default;
  ~Taskbar();
  Taskbar(const Taskbar&) = delete;
  Taskbar& operator=(const Taskbar&) = delete;

  void show(HWND window, const JobProgress& progress);
  void hide(HWND window);

 private:
  bool reach();

  ITaskbarList3* list_ = nullptr;
  bool tried_ = false;
  bool shown_ = false;
};

}  // namespace zenfo::host::gui::win32
