// Two walks over sorted lists, written step by step: the comparison of two
// lists, and the selection of duplicates. `key` compares two entries; the
// results identify entries by position.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace zenfo::model {

struct Marks {
  std::vector<bool> reference;
  std::vector<bool> compared;
};

// `stop` is called after each pair found equal.
template <class T, class Key>
Marks compare_sorted(const std::vector<T>& a, const std::vector<T>& b, Key key,
                     const std::function<bool()>& stop) {
  Marks marks{std::vector<bool>(a.size()), std::vector<bool>(b.size())};
  size_t start = 0;
  size_t i = 0;
  while (i < a.size()) {
    size_t next = i + 1;
    for (size_t j = start; j < b.size(); ++j) {
      const int answer = key(a[i], b[j]);
      if (answer > 0) continue;
      if (answer < 0) {
        start = j;
        break;
      }
      marks.reference[i] = true;
      marks.compared[j] = true;
      if (stop()) break;
      while (next < a.size() && key(a[i], a[next]) == 0) {
        marks.reference[next++] = true;
      }
      size_t other = j + 1;
      while (other < b.size() && key(b[j], b[other]) == 0) {
        marks.compared[other++] = true;
      }
      if (other < b.size()) start = other;
      break;
    }
    i = next;
  }
  return marks;
}

// Which entries of a sorted list equal the reference before them.
template <class T, class Key>
std::vector<bool> duplicates(const std::vector<T>& sorted, Key key) {
  std::vector<bool> marked(sorted.size());
  size_t reference = 0;
  for (size_t i = 1; i < sorted.size(); ++i) {
    marked[i] = key(sorted[reference], sorted[i]) == 0;
    if (!marked[i]) reference = i;
  }
  return marked;
}

}  // namespace zenfo::model
