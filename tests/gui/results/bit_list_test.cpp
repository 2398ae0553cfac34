#include "gui/results/bit_list.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace zenfo::host::gui {
namespace {

TEST(BitList, AgreesWithPlainBits) {
  std::mt19937 random(7);
  BitList list;
  std::vector<bool> model;
  const auto count = [&](size_t first, size_t length) {
    size_t sum = 0;
    for (size_t i = first; i < first + length; ++i) sum += model[i];
    return sum;
  };
  for (int step = 0; step < 500; ++step) {
    const bool on = random() % 2 == 0;
    if (random() % 3 == 0 || model.empty()) {
      const size_t length = random() % 90;
      list.append(length, on);
      model.insert(model.end(), length, on);
    } else {
      const size_t first = random() % model.size();
      const size_t length = random() % (model.size() - first + 1);
      if (random() % 4 == 0) {
        list.flip_range(first, length);
        for (size_t i = first; i < first + length; ++i) model[i] = !model[i];
      } else {
        list.set_range(first, length, on);
        std::fill_n(model.begin() + static_cast<long>(first), length, on);
      }
      EXPECT_EQ(list.count_in(first / 2, length), count(first / 2, length));
    }
    ASSERT_EQ(list.size(), model.size());
    ASSERT_EQ(list.count(), count(0, model.size()));
  }
  for (size_t i = 0; i < model.size(); ++i) ASSERT_EQ(list.at(i), model[i]);
  size_t next = 3;
  list.for_each_in(3, model.size() - 5, [&](size_t index) {
    for (; next < index; ++next) ASSERT_FALSE(model[next]);
    ASSERT_TRUE(model[next++]);
  });
  for (; next < model.size() - 2; ++next) ASSERT_FALSE(model[next]);
}

TEST(BitList, WordEndsAreNoSpecialCase) {
  BitList list;
  list.append(128, false);
  list.set_range(0, 64, true);
  EXPECT_EQ(list.count_in(0, 64), 64u);
  EXPECT_EQ(list.count_in(64, 64), 0u);
  EXPECT_EQ(list.count_in(128, 0), 0u);
  list.for_each_in(128, 0, [](size_t) { FAIL(); });
  list.clear();
  list.for_each_in(7, 0, [](size_t) { FAIL(); });
  list.append(3, true);
  EXPECT_EQ(list.count(), 3u);
}

}  // namespace
}  // namespace zenfo::host::gui
