// The rows of a list of results: files, and the matches of opened files.
//
// A list never jumps: files that come while a search runs go below the others,
// until sort() is called again. Opening, closing and finding a row cost the
// logarithm of the number of files; filtering and sorting walk through all.
//
// Tested by tests/gui/results/result_rows_test.cpp, load_test.cpp
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "gui/results/bit_list.h"
#include "gui/results/result_order.h"
#include "gui/results/result_set.h"
#include "gui/results/row_sums.h"

namespace zenfo::host::gui {

struct ResultRow {
  static constexpr uint32_t kNoMatch = std::numeric_limits<uint32_t>::max();

  uint32_t file = 0;          // in the set
  uint32_t match = kNoMatch;  // its number in the file

  bool is_file() const { return match == kNoMatch; }
  bool operator==(const ResultRow&) const = default;
};

class ResultRows {
 public:
  // The rows of the files with this state. The set must outlive this object.
  ResultRows(const ResultSet& set, ResultState state);

  // Takes in what the set got, or lost, since the last call.
  void update();

  uint64_t count() const { return sums_.rows(); }
  ResultRow at(uint64_t row) const;
  // No value for a file or match that has no row now. A match of a closed file
  // has none.
  std::optional<uint64_t> row_of(ResultRow row) const;

  bool is_open(uint32_t file) const { return open_.at(file); }
  // New files are closed, or opened after open_all(true).
  void open(uint32_t file, bool on);
  void open_all(bool on);

  ResultSort sort() const { return sort_; }
  // All files are sorted, also those that came since the last sort.
  void sort(ResultSort sort);
  // Shows only files whose path contains the text.
  void filter(std::string_view text);

  // The same in steps, of which the longest may be another thread's: the rows
  // stay as they are between a wish and its arrangement.
  void wish_for_sort(ResultSort sort);
  void wish_for_filter(std::string_view text);
  bool is_arranged() const { return arranged_; }
  void arrange_now();
  // What is to be run; the set must live as long.
  Arrangement arrangement() const;
  // Takes it, unless there was another wish since.
  void take(const Arrangement& arrangement);

  // The files that are shown, in the order of their rows.
  const std::vector<uint32_t>& files() const { return order_; }
  uint32_t files_shown() const { return static_cast<uint32_t>(order_.size()); }

  // The first file row after `from` (before it: after going round) whose name
  // begins with the text; `from` itself counts if `stay`.
  std::optional<uint64_t> find_name(std::string_view text, uint64_t from,
                                    bool stay) const;

  // The next match after a row, or before it, across files, opened or not. No
  // value at the end.
  std::optional<ResultRow> next_match(ResultRow row) const;
  std::optional<ResultRow> previous_match(ResultRow row) const;

  // What row access has cost so far, see RowSums.
  uint64_t steps() const { return sums_.steps(); }

 private:
  static constexpr uint32_t kNowhere = std::numeric_limits<uint32_t>::max();

  bool is_listed(uint32_t file) const;
  bool belongs(uint32_t file) const;
  uint32_t rows_of(uint32_t file) const;
  void append(uint32_t file);
  void rebuild();

  const ResultSet& set_;
  ResultState state_;
  uint32_t seen_ = 0;     // files of the set that were looked at
  uint32_t removed_ = 0;  // files of the set that were removed until then
  bool opens_new_ = false;
  bool arranged_ = true;
  ResultSort sort_;
  PathFilter filter_;
  std::vector<uint32_t> order_;   // files in the order of their rows
  std::vector<uint32_t> places_;  // of each file in it
  BitList open_;
  RowSums sums_;
};

}  // namespace zenfo::host::gui
