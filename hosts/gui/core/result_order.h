// The order of files in a list of results, and the filter over it.
//
// Tested by tests/gui/core/result_order_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gui/core/result_set.h"

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

// Sorts files of a set. Texts are compared without case, and numbers in them by
// their bytes. Equal ones are in the order of their paths, then as found, also
// in a descending sort.
void sort_files(const ResultSet& set, ResultSort sort,
                std::vector<uint32_t>& files);

// A text that paths must contain; case does not matter.
class PathFilter {
 public:
  explicit PathFilter(std::string_view text = "");
  bool takes(std::string_view path) const;
  bool empty() const { return text_.empty(); }

 private:
  std::string text_;
};

}  // namespace zenfo::host::gui
