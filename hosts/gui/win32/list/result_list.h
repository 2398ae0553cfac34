// The list of results: rows of files and of their matches.
//
// The control is virtual and knows only how many rows there are and which has
// the focus; which rows are selected, opened and checked is in the tab, so that
// a million of them cost nothing.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "gui/settings/settings.h"
#include "gui/win32/base/look.h"
#include "gui/win32/list/line_cache.h"
#include "gui/win32/list/result_tab.h"
#include "gui/win32/list/row_painter.h"

namespace zenfo::host::gui::win32 {

class ResultList {
 public:
  struct Events {
    std::function<void()> focus_moved;
    std::function<void()> choice_changed;
    std::function<void()> activated;  // a row was double-clicked
    std::function<void()> sorted;     // another order is wished for
  };
  // In the settings: for each kind of list its columns.
  using KeptColumns = std::map<std::string, std::vector<ColumnSetting>>;
  ResultList(HWND parent, int id, const Look& look, LineCache& lines,
             FileIcons& icons, KeptColumns& columns, Events events);

  HWND window() const { return list_; }
  bool has_focus() const { return GetFocus() == list_; }

  // Shows the tab's present list from where it was left. The tab must live
  // until another is shown.
  void show(ResultTab& tab);
  // Rows were added, opened, removed, filtered or sorted.
  void refresh();
  void lines_read();
  void restyle();
  // Remembers the place in the list before another is shown.
  void leave();
  // Keeps the columns as they are now.
  void keep_columns();

  // The row that has the focus, if there is one.
  bool any_row() const;
  ResultRow row() const { return tab_->list().focus; }
  // Moves the focus; opens the file of a match.
  void go_to(ResultRow row);
  void select_all();
  void toggle_chosen();
  // A match's file counts.
  void open_row(bool on);

  // Answers WM_NOTIFY of the list and its header.
  bool on_notify(const NMHDR* header, LRESULT* answer);

 private:
  static LRESULT CALLBACK on_message(HWND list, UINT message, WPARAM word,
                                     LPARAM value, UINT_PTR, DWORD_PTR data);
  bool on_click(UINT message, WPARAM keys, POINT at);
  void click_row(uint64_t row, int x, WPARAM keys, bool twice);
  void on_focus(uint64_t row);
  void select_by_keys(uint64_t row, bool shift, bool control);
  LRESULT on_draw(const NMLVCUSTOMDRAW& draw);
  LRESULT on_draw_header(const NMCUSTOMDRAW& draw);
  void on_text_wanted(NMLVDISPINFOW& info);
  LRESULT on_find(const NMLVFINDITEMW& wish);
  void on_column(int column);
  void paint_row(const NMLVCUSTOMDRAW& draw);
  void want_lines();
  void make_columns();
  std::vector<int> column_order() const;
  void note_widths();
  void fill_width();
  bool may_move(const NMHEADERW& drag) const;
  void show_sort();
  void put_focus();
  void leave_focus(int next);
  void change_row_height();

  const Look& look_;
  LineCache& lines_;
  KeptColumns& kept_columns_;
  Events events_;
  RowPainter painter_;
  HWND list_ = nullptr;
  HIMAGELIST row_height_ = nullptr;
  ResultTab* tab_ = nullptr;
  ResultState columns_of_ = ResultState::kFound;  // whose columns there are
  unsigned columns_dpi_ = 96;
  std::vector<int> widths_;  // as the user wants them, in pixels of 96 dpi
  int filler_ = -1;          // the column that takes what is left
  bool silent_ = false;      // the focus is being moved from here
};

}  // namespace zenfo::host::gui::win32
