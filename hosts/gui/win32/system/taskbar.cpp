#include "gui/win32/system/taskbar.h"

// After windows.h.
#include <shobjidl.h>

namespace zenfo::host::gui::win32 {

Taskbar::~Taskbar() {
  if (list_ != nullptr) list_->Release();
}

bool Taskbar::reach() {
  if (tried_) return list_ != nullptr;
  tried_ = true;
  void* made = nullptr;
  if (SUCCEEDED(CoCreateInstance(CLSID_TaskbarList, nullptr,
                                 CLSCTX_INPROC_SERVER, IID_ITaskbarList3,
                                 &made))) {
    list_ = static_cast<ITaskbarList3*>(made);
  }
  return list_ != nullptr;
}

void Taskbar::show(HWND window, const JobProgress& progress) {
  if (!reach()) return;
  shown_ = true;
  if (progress.files == 0) {
    list_->SetProgressState(window, TBPF_INDETERMINATE);
  } else {
    list_->SetProgressValue(window, progress.files_done, progress.files);
  }
}

void Taskbar::hide(HWND window) {
  if (shown_) list_->SetProgressState(window, TBPF_NOPROGRESS);
  shown_ = false;
}

}  // namespace zenfo::host::gui::win32
