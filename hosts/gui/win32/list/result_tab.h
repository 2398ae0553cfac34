// A tab: a search, its results, and how its lists are looked at.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "gui/query/query.h"
#include "gui/results/result_rows.h"
#include "gui/results/result_set.h"
#include "gui/results/row_selection.h"

namespace zenfo::host::gui::win32 {

inline constexpr ResultState kResultStates[] = {
    ResultState::kFound, ResultState::kNoMatch, ResultState::kNotSearched};

// One of the three lists of a tab.
struct ListState {
  ListState(const ResultSet& set, ResultState shown)
      : state(shown), rows(set, shown), selection(set) {}

  const ResultState state;
  ResultRows rows;
  RowSelection selection;
  bool any_focus = false;
  ResultRow focus;
  ResultRow anchor;  // where a range of selected rows begins
  uint64_t top = 0;  // the first row in view
};

class ResultTab {
 public:
  // `sort`: of the files with matches.
  explicit ResultTab(ResultSort sort);

  // Throws away the results; `opened` says whether files show their matches.
  void begin(const Query& query, JobId job, bool opened);
  void add(JobNews news);
  bool running() const { return job_ != 0; }
  bool searched() const { return searched_; }
  JobId job() const { return job_; }
  // Different for all searches of the program.
  uint16_t serial() const { return serial_; }

  // Other threads may keep it.
  std::shared_ptr<const ResultSet> shared_set() const { return set_; }
  ResultSet& set() { return *set_; }
  const ResultSet& set() const { return *set_; }
  ListState& list() { return *lists_[static_cast<size_t>(shown)]; }
  const ListState& list() const { return *lists_[static_cast<size_t>(shown)]; }
  ListState& list(ResultState state) {
    return *lists_[static_cast<size_t>(state)];
  }

  // Only files whose paths contain the text are to be shown, in all lists. The
  // lists are not arranged before someone does it.
  void filter(const std::string& text);
  const std::string& filter_text() const { return filter_; }
  // Takes in what was added or removed.
  void update();
  // What came since is to be sorted too, where the user has chosen an order.
  void sort_again();

  ResultState shown = ResultState::kFound;
  Query fields;  // what the panel says while this tab is shown

 private:
  void make_lists(bool opened);

  std::shared_ptr<ResultSet> set_;
  std::array<std::unique_ptr<ListState>, 3> lists_;
  std::string filter_;
  JobId job_ = 0;
  uint16_t serial_ = 0;
  bool searched_ = false;
};

}  // namespace zenfo::host::gui::win32
