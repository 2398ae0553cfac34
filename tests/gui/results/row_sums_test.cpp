#include "gui/results/row_sums.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace zenfo::host::gui {
namespace {

TEST(RowSums, AgreesWithPlainSums) {
  std::mt19937 random(3);
  RowSums sums;
  std::vector<uint32_t> model;
  for (int step = 0; step < 300; ++step) {
    if (random() % 2 == 0 || model.empty()) {
      model.push_back(random() % 5);
      sums.append(model.back());
    } else {
      const size_t block = random() % model.size();
      const uint32_t rows = random() % 9;
      sums.change(block, int64_t{rows} - model[block]);
      model[block] = rows;
    }
    uint64_t row = 0;
    for (size_t block = 0; block < model.size(); ++block) {
      ASSERT_EQ(sums.before(block), row);
      for (uint32_t inside = 0; inside < model[block]; ++inside, ++row) {
        const RowSums::Place place = sums.find(row);
        ASSERT_EQ(place.block, block);
        ASSERT_EQ(place.row, inside);
      }
    }
    ASSERT_EQ(sums.rows(), row);
  }
}

TEST(RowSums, StepsAreTheLogarithmOfTheBlocks) {
  RowSums sums;
  for (int i = 0; i < 100'000; ++i) sums.append(11);
  const uint64_t before = sums.steps();
  EXPECT_LE(before, 200'000u);
  sums.find(1'000'000);
  sums.before(99'999);
  sums.change(0, 5);
  EXPECT_LE(sums.steps() - before, 3u * 17);
}

}  // namespace
}  // namespace zenfo::host::gui
