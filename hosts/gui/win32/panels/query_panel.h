// The fields of a query, and the button that searches or cancels.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>
#include <vector>

#include "gui/query/query.h"
#include "gui/settings/commands.h"
#include "gui/settings/history.h"
#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {

class QueryPanel : public WindowBase {
 public:
  // Commands go to the parent as WM_COMMAND; so does a change of any field, as
  // kChanged.
  static constexpr int kChanged = 900;
  QueryPanel(HWND parent, const Look& look);

  Query query() const;
  void set_query(const Query& query);
  void show_history(const History& history);
  // Puts the texts of the fields into the history.
  void remember(History& history) const;

  void show_more(bool on);
  bool more_shown() const { return more_shown_; }
  void set_running(bool on);

  // What the panel needs; after a change of width, resolution or of "more".
  int height() const;
  void restyle();

  void focus_on(QueryField field);
  // Of the text to find, where its caret stands.
  void insert_line_break();
  void click(CommandId toggle);
  void choose_folder();
  void add_folders(const std::vector<std::string>& paths, bool keep);
  // Whether the focus is in a field whose list is shown.
  bool list_shown() const;
  // Takes the chosen entry of that list out of the history. False if none is.
  bool forget_entry(History& history);
  void show_list() const;
  bool has_focus() const;

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void make_controls();
  void make_tips();
  void make_areas();
  void lay_out();
  void lay_out_more(int y, int left, int right);
  void on_command(WPARAM word, LPARAM value);
  void update_areas();
  AreaChoice areas() const;
  void set_areas(const AreaChoice& areas);
  int row_height() const;
  int label_width() const;

  const Look& look_;
  bool more_shown_ = false;

  HWND find_label_ = nullptr, find_ = nullptr;
  HWND match_case_ = nullptr, whole_words_ = nullptr;
  HWND pattern_ = nullptr, caret_ = nullptr, search_ = nullptr;
  HWND folders_label_ = nullptr, folders_ = nullptr;
  HWND choose_ = nullptr, subfolders_ = nullptr;
  HWND include_label_ = nullptr, include_ = nullptr;
  HWND exclude_label_ = nullptr, exclude_ = nullptr, more_ = nullptr;
  HWND areas_label_ = nullptr, area_use_ = nullptr, area_kind_ = nullptr;
  HWND area_pattern_label_ = nullptr, area_pattern_ = nullptr;
  HWND area_start_label_ = nullptr, area_start_ = nullptr;
  HWND area_end_label_ = nullptr, area_end_ = nullptr;
  HWND binary_ = nullptr;
};

}  // namespace zenfo::host::gui::win32
