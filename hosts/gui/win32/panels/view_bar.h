// What is shown of a tab: matches, files without any, files not searched; the
// filter; and how the file beside it is shown.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>

#include "gui/results/result_set.h"
#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {

enum class PageKind { kText, kBytes };

class ViewBar : public WindowBase {
 public:
  // Sent to the parent as WM_COMMAND.
  static constexpr int kListChosen = 910;
  static constexpr int kFilterChanged = 911;
  static constexpr int kPageChosen = 912;
  ViewBar(HWND parent, const Look& look);

  void show_counts(const ResultTotals& totals);
  ResultState shown() const;
  void choose(ResultState state);
  PageKind page() const;
  void choose_page(PageKind page);
  // Whether a file is shown beside the results.
  void show_pages(bool on);
  std::string filter() const;
  void set_filter(const std::string& text);
  void focus_on_filter();
  bool filter_has_focus() const { return GetFocus() == filter_; }

  int height() const;
  void restyle();

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  void lay_out();

  const Look& look_;
  HWND found_ = nullptr, no_match_ = nullptr, not_searched_ = nullptr;
  HWND label_ = nullptr, filter_ = nullptr;
  HWND text_ = nullptr, bytes_ = nullptr;
  bool silent_ = false;  // the filter is being set from here
};

}  // namespace zenfo::host::gui::win32
