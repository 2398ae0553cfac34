#include "shared/text/difference.h"

#include <algorithm>
#include <vector>

#include "shared/text/found_text.h"

namespace zenfo::host {
namespace {

// How far ahead to look for equal lines, and how many comparisons to spend on
// that; after those, lines are compared one by one.
constexpr size_t kFarthest = 400;
constexpr size_t kComparisons = 100'000'000;

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines;
  for (size_t start = 0; start < text.size();) {
    const size_t end = end_of_line(text, start);
    lines.push_back(text.substr(start, end - start));
    start = end;
  }
  return lines;
}

class Comparison {
 public:
  Comparison(std::string_view before, std::string_view after,
             const LineChanged& visit)
      : visit_(visit), old_(lines_of(before)), new_(lines_of(after)) {}

  void compare() {
    cut_common_end();
    while (i_ < old_.size() || j_ < new_.size()) {
      if (i_ < old_.size() && j_ < new_.size() && old_[i_] == new_[j_]) {
        ++i_;
        ++j_;
      } else {
        visit_difference();
      }
    }
  }

 private:
  struct Distance {
    size_t removed;
    size_t added;
  };

  // Keeps a single change of many lines bounded by what really changed.
  void cut_common_end() {
    while (!old_.empty() && !new_.empty() && old_.back() == new_.back()) {
      old_.pop_back();
      new_.pop_back();
    }
  }

  bool alike(size_t removed, size_t added) {
    if (comparisons_ > 0) --comparisons_;
    const size_t i = i_ + removed;
    const size_t j = j_ + added;
    if (i == old_.size() || j == new_.size()) {
      return i == old_.size() && j == new_.size();
    }
    return old_[i] == new_[j];
  }

  // Tries equal numbers of removed and added lines first, because most changes
  // do not move lines.
  Distance to_next_alike() {
    const size_t old_left = old_.size() - i_;
    const size_t new_left = new_.size() - j_;
    const size_t farthest = std::min(kFarthest, std::max(old_left, new_left));
    for (size_t d = 1; d <= farthest && comparisons_ > 0; ++d) {
      if (d <= old_left && d <= new_left && alike(d, d)) return {d, d};
      for (size_t less = d; less-- > 0;) {
        if (d <= old_left && less <= new_left && alike(d, less)) {
          return {d, less};
        }
        if (less <= old_left && d <= new_left && alike(less, d)) {
          return {less, d};
        }
      }
    }
    return {std::min<size_t>(old_left, 1), std::min<size_t>(new_left, 1)};
  }

  void visit_difference() {
    const Distance distance = to_next_alike();
    const size_t line = i_ + 1;
    for (size_t n = 0; n < distance.removed; ++n) {
      visit_(line + n, '-', old_[i_++]);
    }
    for (size_t n = 0; n < distance.added; ++n) {
      visit_(line + n, '+', new_[j_++]);
    }
  }

  const LineChanged& visit_;
  std::vector<std::string_view> old_;
  std::vector<std::string_view> new_;
  size_t i_ = 0;
  size_t j_ = 0;
  size_t comparisons_ = kComparisons;
};

}  // namespace

void for_each_changed_line(std::string_view before, std::string_view after,
                           const LineChanged& visit) {
  Comparison(before, after, visit).compare();
}

}  // namespace zenfo::host
