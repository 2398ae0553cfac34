#include "containers/list_sort.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "model/sort_model.h"

namespace zenfo {
namespace {

// A key to sort by and the item's first position, to check the order of equals.
struct Item {
  int key;
  int origin;
  bool operator==(const Item&) const = default;
};

int by_key(const Item& a, const Item& b) { return a.key - b.key; }

std::vector<Item> items(size_t count, const std::function<int(size_t)>& key) {
  std::vector<Item> made;
  for (size_t i = 0; i < count; ++i) {
    made.push_back({key(i), static_cast<int>(i)});
  }
  return made;
}

void expect_as_model(std::vector<Item> list) {
  std::vector<Item> model = list;
  model::sort(model, by_key);
  list_sort(list.data(), list.size(), by_key);
  ASSERT_EQ(list, model);
}

TEST(ListSort, LeavesEqualItemsWhereTheStepsLeaveThem) {
  std::mt19937_64 random(20261114);
  for (int round = 0; round < 3000; ++round) {
    const size_t count = random() % 200;
    const int keys = 1 + static_cast<int>(random() % 40);
    expect_as_model(items(
        count, [&](size_t) { return static_cast<int>(random() % keys); }));
  }
}

TEST(ListSort, FollowsTheStepsOnSortedReversedEqualAndOrganPipeInput) {
  for (size_t count : {0u, 1u, 2u, 4u, 5u, 6u, 7u, 100u, 1000u, 5000u}) {
    const int n = static_cast<int>(count);
    expect_as_model(items(count, [](size_t i) { return static_cast<int>(i); }));
    expect_as_model(
        items(count, [&](size_t i) { return n - static_cast<int>(i); }));
    expect_as_model(items(count, [](size_t) { return 7; }));
    expect_as_model(items(count, [&](size_t i) {
      return std::min(static_cast<int>(i), n - static_cast<int>(i));
    }));
  }
}

TEST(ListSort, SortsUpToFiveItemsByTheInsertionPassAlone) {
  // The insertion pass is stable; the quicksort is not.
  std::vector<Item> list = {{1, 0}, {1, 1}, {0, 2}, {1, 3}, {0, 4}};
  list_sort(list.data(), list.size(), by_key);
  EXPECT_EQ(list, (std::vector<Item>{{0, 2}, {0, 4}, {1, 0}, {1, 1}, {1, 3}}));
}

// An adversary that makes median-of-three quicksort take its worst case: it
// decides how items compare only when they are compared.
struct Adversary {
  explicit Adversary(int count) : value(count, kGas), solid(0) {}
  static constexpr int kGas = INT32_MAX;

  int operator()(int a, int b) {
    if (value[a] == kGas && value[b] == kGas) {
      if (a == candidate) {
        value[a] = solid++;
      } else {
        value[b] = solid++;
      }
    }
    if (value[a] == kGas) {
      candidate = a;
    } else if (value[b] == kGas) {
      candidate = b;
    }
    return value[a] < value[b] ? -1 : value[a] > value[b] ? 1 : 0;
  }

  std::vector<int> value;
  int solid;
  int candidate = 0;
};

TEST(ListSort, StaysShallowAndQuickOnHostileInput) {
  const int count = 100000;
  Adversary adversary(count);
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  uint64_t comparisons = 0;
  list_sort(order.data(), order.size(), [&](int a, int b) {
    ++comparisons;
    return adversary(a, b);
  });
  for (int i = 1; i < count; ++i) {
    ASSERT_LE(adversary.value[order[i - 1]], adversary.value[order[i]]);
  }
  // n^2 / 4 would be 2,500,000,000.
  EXPECT_LT(comparisons, 20000000u);
}

TEST(ListSort, EndsWithComparisonsThatAreNoOrder) {
  std::mt19937_64 random(7);
  for (size_t count : {2u, 6u, 50u, 3000u}) {
    for (int kind = 0; kind < 3; ++kind) {
      std::vector<int> list(count);
      std::iota(list.begin(), list.end(), 0);
      list_sort(list.data(), list.size(), [&](int, int) {
        return kind == 0   ? -1
               : kind == 1 ? 1
                           : static_cast<int>(random() % 3) - 1;
      });
      std::vector<int> sorted = list;
      std::sort(sorted.begin(), sorted.end());
      for (size_t i = 0; i < count; ++i) {
        ASSERT_EQ(sorted[i], static_cast<int>(i));
      }
    }
  }
}

}  // namespace
}  // namespace zenfo
