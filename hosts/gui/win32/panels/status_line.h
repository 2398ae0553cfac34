// The line at the bottom: the state of the search in words, a bar, the file in
// hand.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>

#include "gui/results/result_set.h"
#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {

class StatusLine : public WindowBase {
 public:
  StatusLine(HWND parent, const Look& look);

  void show(const std::wstring& text);
  // The bar moves without an end while the number of files is not known.
  void show_progress(const JobProgress& progress);
  void hide_progress();
  std::wstring text() const;

  int height() const;
  void restyle();

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void lay_out();

  const Look& look_;
  HWND text_ = nullptr;
  HWND bar_ = nullptr;
  HWND path_ = nullptr;
  bool endless_ = false;
};

}  // namespace zenfo::host::gui::win32
