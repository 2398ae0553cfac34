// The list's sort written step by step, as plainly as possible and without the
// engine's precautions: it defines the order of equal items.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace zenfo::model {

template <class T, class Compare>
void sort_range(std::vector<T>& a, long low, long high, Compare compare) {
  if (high - low <= 4) return;  // left to the final pass
  long middle = (low + high) / 2;
  if (compare(a[low], a[middle]) > 0) std::swap(a[low], a[middle]);
  if (compare(a[low], a[high]) > 0) std::swap(a[low], a[high]);
  if (compare(a[middle], a[high]) > 0) std::swap(a[middle], a[high]);
  std::swap(a[middle], a[high - 1]);
  T pivot = a[high - 1];
  long i = low;
  long j = high - 1;
  for (;;) {
    ++i;
    while (i < high && compare(a[i], pivot) < 0) ++i;
    --j;
    while (j > low && compare(a[j], pivot) > 0) --j;
    if (j >= i) {
      std::swap(a[i], a[j]);
    } else {
      break;
    }
  }
  std::swap(a[i], a[high - 1]);
  sort_range(a, low, j, compare);
  sort_range(a, i + 1, high, compare);
}

template <class T, class Compare>
void sort(std::vector<T>& a, Compare compare) {
  if (a.size() < 2) return;
  sort_range(a, 0, static_cast<long>(a.size()) - 1, compare);
  for (size_t position = 1; position < a.size(); ++position) {
    T item = a[position];
    size_t gap = position;
    while (gap > 0 && compare(a[gap - 1], item) > 0) {
      a[gap] = a[gap - 1];
      --gap;
    }
    a[gap] = item;
  }
}

}  // namespace zenfo::model
