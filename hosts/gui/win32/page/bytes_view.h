// The Bytes page: a file as a hex dump with its matches and areas, laid out and
// painted by the library.
//
// It is painted while a DisplayJob is parked, see engine/parked_display.h; at
// other times the page says why there is nothing. Fonts and colours are the
// library's: the system's fixed font and its window colours, in dark windows
// too.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "gui/engine/display_job.h"
#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {

class BytesView : public WindowBase {
 public:
  BytesView(HWND parent, const Look& look);
  ~BytesView() override;

  // The display must be parked. The offset is that of a match.
  void show(std::shared_ptr<BytesDisplay> display,
            std::optional<uint32_t> match);
  bool shows(const BytesDisplay* display) const {
    return display_.get() == display;
  }
  void go_to(std::optional<uint32_t> match);
  // A text instead of bytes.
  void say(const std::string& message);
  void clear() { say(""); }
  void restyle();
  uint32_t top() const { return top_; }  // the first line in view, from 0
  // How many bytes of a line fit.
  uint32_t bytes_that_fit() const;

  // The user has clicked on the match at an offset.
  std::function<void(uint32_t offset)> on_match;
  // Other lines fit than before.
  std::function<void()> on_fit_changed;

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void leave();
  bool use(const std::function<void()>& look);
  void paint();
  void paint_message();
  void paint_focus();
  void repaint();
  void scroll_to(int bar, int64_t position);
  void scroll_by(int bar, int64_t steps);
  void on_scroll_bar(int bar, int action);
  void on_wheel(int turn, bool sideways);
  bool on_key(WPARAM key);
  void on_click(POINT point);
  void on_size();
  void name_page(const std::string& name);

  const Look& look_;
  std::shared_ptr<BytesDisplay> display_;
  std::wstring message_;
  uint32_t top_ = 0;   // line
  uint32_t left_ = 0;  // column
  uint32_t fit_ = 0;   // bytes that fitted last
  int wheel_ = 0;      // turned but not yet scrolled
  int wheel_sideways_ = 0;
};

}  // namespace zenfo::host::gui::win32
