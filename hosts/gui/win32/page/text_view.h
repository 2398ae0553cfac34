// The Text page: a file of any size, its matches marked, read as it is shown.
//
// The lines are those of the core's TextRows; here they meet pixels, keys and
// the mouse. The window's title is its name for screen readers: it says the
// match and its line.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gui/text/text_rows.h"
#include "gui/win32/base/dpi.h"
#include "gui/win32/base/theme.h"
#include "gui/win32/base/window_base.h"
#include "gui/win32/page/text_painter.h"

namespace zenfo::host::gui::win32 {

class TextView : public WindowBase {
 public:
  // The theme must outlive the view; repaint after it has changed.
  explicit TextView(HWND parent, const Theme& theme);

  // The matches must be in order. A file that cannot be read leaves its reason
  // on the page.
  void show(const std::filesystem::path& file, std::span<const Match> matches,
            size_t current);
  // Areas in grey, for the file that is shown; in order, apart.
  void show_areas(std::vector<Match> areas);
  void go_to(size_t match);
  void clear();
  void scale(unsigned dpi);
  void theme_changed();

  // Empty: the program's choice.
  void set_font(const std::string& name, int points);
  void set_zoom(int percent);
  int zoom() const { return zoom_; }
  void set_wrap(bool on);
  bool is_wrapped() const { return rows_.is_wrapped(); }
  void set_white_space(bool on);
  bool shows_white_space() const { return white_space_; }

  // F3 and Shift+F3: called with 1 or -1. Without it the page goes to the next
  // match of the file.
  std::function<void(int)> on_step;
  // The user has changed it with the wheel or keys.
  std::function<void(int percent)> on_zoom;

  // Whether line numbers in view are still to be counted.
  bool is_counting() const { return counting_; }
  // They have been.
  std::function<void()> on_numbers;

  bool is_open() const { return rows_.is_open(); }
  bool has_selection() const { return !rows_.selection().is_empty(); }
  // No value for more than `most` bytes.
  std::optional<std::u16string> selected_text(uint64_t most) {
    return rows_.selected_text(most);
  }
  void select_all();
  // The number of the line with the caret, or of the current match if nothing
  // was selected or clicked; 0 if it is not known.
  uint64_t caret_line();
  // Where a menu opens that was asked for by a key, on the screen.
  POINT menu_place();

  // The selected text, into the clipboard. False if there is none, or too much.
  bool copy();
  // Where the current match stands on the page, if it is in view.
  std::optional<RECT> current_box();

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void paint_on(HDC device, const RECT& area);
  void make_font();
  void lay_out();
  void refresh();
  void show_bars();
  void announce();
  void name_page(const std::string& name);
  void keep_counting();
  void on_counted();

  void on_scroll_bar(int bar, int action);
  void on_wheel(int turn, bool sideways);
  bool on_key(WPARAM key);
  void zoom_by(int percent);
  void scroll_lines(int64_t lines);
  void scroll_columns(int64_t columns);
  void scroll_page(int direction);
  void go_to_start();
  void go_to_end();
  void track(int bar, int position);
  void extend(int characters, int lines);
  void step(int direction);
  void on_mouse_down(POINT point, bool extends);
  void on_right_down(POINT point);
  void on_mouse_move(POINT point);
  void end_drag();
  uint64_t offset_at(POINT point);
  bool is_over_text() const;

  const Theme& theme_;
  TextRows rows_;
  std::wstring message_;  // instead of text
  std::wstring font_name_;
  int points_ = 10;
  int zoom_ = 100;
  unsigned dpi_ = 96;
  Font font_;
  TextMeasures measures_;
  uint32_t digits_ = 0;  // of line numbers, so far
  bool white_space_ = false;
  bool clicked_ = false;  // the caret stands where the user has clicked
  bool dragging_ = false;
  bool counting_ = false;              // lines, for their numbers
  bool named_without_number_ = false;  // of the line: not counted yet
  int wheel_ = 0;                      // turned but not yet scrolled
  int wheel_sideways_ = 0;
};

}  // namespace zenfo::host::gui::win32
