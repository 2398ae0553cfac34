// The order of files in a list of results, and the filter over it.
//
// Tested by tests/gui/results/result_order_test.cpp
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gui/results/result_set.h"

namespace zenfo::host::gui {

// kFound is the order in which they were found.
enum class ResultColumn {
  kFound,
  kName,
  kMatches,
  kFolder,
  kSize,
  kType,
  kModified,
  kReason
};

// The name of a column in settings, and back; kFound for an unknown one.
std::string_view column_name(ResultColumn column);
ResultColumn column_of(std::string_view name);

struct ResultSort {
  ResultColumn column = ResultColumn::kFound;
  bool descending = false;

  bool operator==(const ResultSort&) const = default;
};

// A text for comparisons without case: as the system folds names, and the
// letters of ASCII everywhere.
std::string folded(std::string_view text);

// A text that paths must contain; case does not matter.
class PathFilter {
 public:
  explicit PathFilter(std::string_view text = "");
  bool takes(std::string_view path) const;
  bool empty() const { return text_.empty(); }

  bool operator==(const PathFilter&) const = default;

 private:
  std::string text_;
};

// The order of files, made apart from the result: of large ones on another
// thread, while the result grows. It must live until run() has ended.
//
// Texts are compared without case, and numbers in them by their bytes. Equal
// ones are in the order of their paths, then as found, also in a descending
// sort.
class Arrangement {
 public:
  // `seen`: the number of files from which those that are added were taken.
  Arrangement(ResultSort sort, PathFilter filter, uint32_t seen = 0)
      : sort_(sort), filter_(std::move(filter)), seen_(seen) {}

  // The next file of the set; they come in the order of their numbers.
  void add(const ResultSet& set, uint32_t file);
  // Filters and sorts. Goes without an end once `stop` is set; the order is of
  // no use then.
  void run(const std::atomic<bool>* stop = nullptr);

  const ResultSort& sort() const { return sort_; }
  const PathFilter& filter() const { return filter_; }
  uint32_t seen() const { return seen_; }
  const std::vector<uint32_t>& order() const { return order_; }

 private:
  struct Item {
    uint32_t index;
    const ResultFile* file;
    const std::string* reason;
  };
  struct Key;

  Key key_of(const Item& item) const;

  ResultSort sort_;
  PathFilter filter_;
  uint32_t seen_;
  std::vector<Item> items_;
  std::vector<uint32_t> order_;
};

// The same at once.
void sort_files(const ResultSet& set, ResultSort sort,
                std::vector<uint32_t>& files);

}  // namespace zenfo::host::gui
