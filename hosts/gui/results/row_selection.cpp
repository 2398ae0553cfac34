#include "gui/results/row_selection.h"

#include <algorithm>

namespace zenfo::host::gui {
namespace {

bool is_fully_chosen(const ResultSet& set, ResultRow row) {
  return row.is_file() ? set.file(row.file).choice() == Choice::kAll
                       : set.is_chosen(row.file, row.match);
}

}  // namespace

void RowSelection::grow() {
  if (files_.size() < set_.count()) {
    files_.append(set_.count() - files_.size(), false);
  }
  if (matches_.size() < set_.matches().size()) {
    matches_.append(set_.matches().size() - matches_.size(), false);
  }
}

bool RowSelection::has(ResultRow row) const {
  if (row.is_file()) return row.file < files_.size() && files_.at(row.file);
  const size_t place = set_.file(row.file).first + size_t{row.match};
  return place < matches_.size() && matches_.at(place);
}

void RowSelection::select(ResultRow row, bool on) {
  grow();
  if (row.is_file()) {
    files_.set(row.file, on);
  } else {
    matches_.set(set_.file(row.file).first + row.match, on);
  }
}

void RowSelection::select_rows(const ResultRows& rows, uint64_t from,
                               uint64_t to, bool on) {
  grow();
  if (from > to) std::swap(from, to);
  for (uint64_t row = from; row <= to && row < rows.count();) {
    const ResultRow at = rows.at(row);
    if (at.is_file()) {
      files_.set(at.file, on);
      ++row;
      continue;
    }
    // The rest of the file's matches at once.
    const ResultFile& file = set_.file(at.file);
    const uint64_t length =
        std::min<uint64_t>(file.listed - at.match, to - row + 1);
    matches_.set_range(file.first + at.match, length, on);
    row += length;
  }
}

void RowSelection::select_all(const ResultRows& rows) {
  if (rows.count() > 0) select_rows(rows, 0, rows.count() - 1, true);
}

void RowSelection::clear() {
  files_.set_range(0, files_.size(), false);
  matches_.set_range(0, matches_.size(), false);
}

void toggle_selected(const RowSelection& selection, const ResultRows& rows,
                     ResultSet& set) {
  bool all = true;
  selection.for_each(
      rows, [&](ResultRow row) { all = all && is_fully_chosen(set, row); });
  selection.for_each(rows, [&](ResultRow row) {
    if (row.is_file()) {
      set.choose_file(row.file, !all);
    } else {
      set.choose(row.file, row.match, !all);
    }
  });
}

}  // namespace zenfo::host::gui
