// The selected rows of a list of results.
//
// The list control would take a step for each of a million rows; here a whole
// range is one step for 64 of them. Selections belong to files and matches, so
// they stay when rows move.
//
// Tested by tests/gui/results/row_selection_test.cpp
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "gui/results/bit_list.h"
#include "gui/results/result_rows.h"
#include "gui/results/result_set.h"

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
  // Takes a step for each file and each selected match, and one for 64 others.
  template <class Visit>
  void for_each(const ResultRows& rows, Visit visit) const {
    for (const uint32_t file : rows.files()) {
      if (has({file, ResultRow::kNoMatch})) visit({file, ResultRow::kNoMatch});
      if (!rows.is_open(file)) continue;
      for_each_match(file, [&](uint32_t match) { visit({file, match}); });
    }
  }
  // Calls visit(number in the file) for each selected match of a file.
  template <class Visit>
  void for_each_match(uint32_t file, Visit visit) const {
    const size_t first = set_.file(file).first;
    const size_t known = matches_.size() - std::min(first, matches_.size());
    const size_t listed = std::min<size_t>(set_.file(file).listed, known);
    matches_.for_each_in(first, listed, [&](size_t place) {
      visit(static_cast<uint32_t>(place - first));
    });
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
