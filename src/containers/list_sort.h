// The list's own sort: median-of-three quicksort that leaves ranges of up to
// five alone, then one insertion sort over all.
//
// The steps are fixed, since equal items end up where the steps leave them.
// Two things limit the cost of hostile input without changing the result for
// other input: the smaller part is sorted by recursion and the larger by the
// loop (the parts are disjoint, so their order does not matter), and a range
// reached after 2 log2(n) + 16 levels is merge sorted.
//
// Tested by tests/unit/containers/list_sort_test.cpp
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>
#include <vector>

namespace zenfo {

// `compare(a, b)` returns negative, zero or positive; it need not be a true
// order (missing texts and times are none).
template <class T, class Compare>
class ListSort {
 public:
  ListSort(T* items, size_t count, Compare compare)
      : items_(items), count_(count), compare_(compare) {}

  void run() {
    run_quicksort();
    run_insertion(count_);
  }

  // The two halves, for callers that know a shorter way through the second.
  void run_quicksort() {
    if (count_ < 2) return;
    int levels = 2 * static_cast<int>(std::bit_width(count_)) + 16;
    quicksort(0, static_cast<ptrdiff_t>(count_) - 1, levels);
  }
  // Over the first `count` items.
  void run_insertion(size_t count) {
    for (size_t position = 1; position < count; ++position) {
      T item = items_[position];
      size_t gap = position;
      while (gap > 0 && compare_(items_[gap - 1], item) > 0) {
        items_[gap] = items_[gap - 1];
        --gap;
      }
      items_[gap] = item;
    }
  }

 private:
  static constexpr ptrdiff_t kLeftToInsertion = 4;

  void quicksort(ptrdiff_t low, ptrdiff_t high, int levels) {
    while (high - low > kLeftToInsertion) {
      if (levels-- == 0) {
        merge_sort(low, high);
        return;
      }
      auto [left_end, right_start] = partition(low, high);
      if (left_end - low < high - right_start) {
        quicksort(low, left_end, levels);
        low = right_start;
      } else {
        quicksort(right_start, high, levels);
        high = left_end;
      }
    }
  }

  // Splits [low, high] round a pivot into [low, first] and [second, high].
  std::pair<ptrdiff_t, ptrdiff_t> partition(ptrdiff_t low, ptrdiff_t high) {
    ptrdiff_t middle = (low + high) / 2;
    order(low, middle);
    order(low, high);
    order(middle, high);
    std::swap(items_[middle], items_[high - 1]);
    const T pivot = items_[high - 1];
    ptrdiff_t i = low;
    ptrdiff_t j = high - 1;
    // Both bounds are needed: the comparison need not be a true order.
    while (true) {
      do {
        ++i;
      } while (i < high && compare_(items_[i], pivot) < 0);
      do {
        --j;
      } while (j > low && compare_(items_[j], pivot) > 0);
      if (j < i) break;
      std::swap(items_[i], items_[j]);
    }
    std::swap(items_[i], items_[high - 1]);
    return {j, i + 1};
  }

  void order(ptrdiff_t a, ptrdiff_t b) {
    if (compare_(items_[a], items_[b]) > 0) std::swap(items_[a], items_[b]);
  }

  // Not the standard library's, which may rely on a true order.
  void merge_sort(ptrdiff_t low, ptrdiff_t high) {
    std::vector<T> spare(static_cast<size_t>(high - low + 1), items_[low]);
    const ptrdiff_t end = high + 1;
    for (ptrdiff_t width = 1; width < end - low; width *= 2) {
      for (ptrdiff_t start = low; start + width < end; start += 2 * width) {
        merge(start, start + width, std::min(start + 2 * width, end),
              spare.data());
      }
    }
  }

  void merge(ptrdiff_t left, ptrdiff_t middle, ptrdiff_t end, T* spare) {
    std::copy(items_ + left, items_ + middle, spare);
    ptrdiff_t taken = 0;
    const ptrdiff_t waiting = middle - left;
    ptrdiff_t right = middle;
    for (ptrdiff_t to = left; taken < waiting; ++to) {
      bool from_right =
          right < end && compare_(spare[taken], items_[right]) > 0;
      items_[to] = from_right ? items_[right++] : spare[taken++];
    }
  }

  T* items_;
  size_t count_;
  Compare compare_;
};

template <class T, class Compare>
void list_sort(T* items, size_t count, Compare compare) {
  ListSort<T, Compare>(items, count, compare).run();
}

}  // namespace zenfo
