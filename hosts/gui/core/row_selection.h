// The selected rows of a list of results.
//
// The list control would take a step for each of a million rows; here a whole
// range is one step for 64 of them. Selections belong to files and matches, so
// they stay when rows move.
//
// Tested by tests/gui/core/row_selection_test.cpp
#pragma once

#include <cstdint>

#include "gui/core/bit_list.h"
#include "gui/core/result_rows.h"
#include "gui/core/result_set.h"

namespace zenfo::host::gui {

class RowSelection {
 public:
  explicit RowSelection(const ResultSet& set) : set_(set) {}

  bool has(ResultRow row) const;
  void select(ResultRow row, bool on);
  // Rows from one to the other, both included, in either direction.
  void select_rows(const ResultRows& rows, uint64_t from, uint64_t to, bool on);
  void select_all(const ResultRows& rows);
  void clear();
  uint64_t count() const { return files_.count() + matches_.count(); }

  // Calls visit(ResultRow) for each selected row, in the order of the rows.
  template <class Visit>
  void for_each(const ResultRows& rows, Visit visit) const {
    for (uint64_t row = 0; row < rows.count(); ++row) {
      const ResultRow at = rows.at(row);
      if (has(at)) visit(at);
    }
  }

 private:
  void grow();

  const ResultSet& set_;
  BitList files_;
  BitList matches_;  // by their place in the store
};

// Chooses or leaves out the selected rows: all of them are chosen unless all
// were before. A file stands for its matches.
void toggle_selected(const RowSelection& selection, const ResultRows& rows,
                     ResultSet& set);

}  // namespace zenfo::host::gui
