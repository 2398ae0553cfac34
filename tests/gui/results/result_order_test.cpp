#include "gui/results/result_order.h"

#include <gtest/gtest.h>

#include <vector>

#include "gui/made_results.h"

namespace zenfo::host::gui {
namespace {

using test::found_file;
using Order = std::vector<uint32_t>;

class ResultOrder : public testing::Test {
 protected:
  ResultOrder() {
    set_.add(test::news_of({found_file("/m/b.txt", 2, 30, 300),
                            found_file("/M/a.C", 9, 10, 100),
                            found_file("/k/C.h", 2, 20, 200)}));
  }

  Order sorted(ResultColumn column, bool descending = false) const {
    Order order = {0, 1, 2};
    sort_files(set_, {column, descending}, order);
    return order;
  }

  ResultSet set_{Query()};
};

TEST_F(ResultOrder, SortsByEachColumn) {
  EXPECT_EQ(sorted(ResultColumn::kFound), Order({0, 1, 2}));
  EXPECT_EQ(sorted(ResultColumn::kName), Order({1, 0, 2}));
  EXPECT_EQ(sorted(ResultColumn::kMatches), Order({2, 0, 1}));
  EXPECT_EQ(sorted(ResultColumn::kFolder), Order({2, 1, 0}));
  EXPECT_EQ(sorted(ResultColumn::kSize), Order({1, 2, 0}));
  EXPECT_EQ(sorted(ResultColumn::kType), Order({1, 2, 0}));
  EXPECT_EQ(sorted(ResultColumn::kModified), Order({1, 2, 0}));
}

TEST_F(ResultOrder, DescendingKeepsTheOrderOfEqualOnes) {
  EXPECT_EQ(sorted(ResultColumn::kFound, true), Order({2, 1, 0}));
  EXPECT_EQ(sorted(ResultColumn::kMatches, true), Order({1, 2, 0}));
  EXPECT_EQ(sorted(ResultColumn::kReason, true), Order({1, 2, 0}));
}

TEST_F(ResultOrder, SortsByReason) {
  set_.add(test::news_of({}, {{"/x", ResultState::kNotSearched, "gone"},
                              {"/y", ResultState::kNotSearched, "Binary"}}));
  Order order = {3, 4};
  sort_files(set_, {ResultColumn::kReason, false}, order);
  EXPECT_EQ(order, Order({4, 3}));
}

TEST(ResultColumns, HaveNames) {
  for (int i = 0; i <= static_cast<int>(ResultColumn::kReason); ++i) {
    const auto column = static_cast<ResultColumn>(i);
    EXPECT_EQ(column_of(column_name(column)), column);
  }
  EXPECT_EQ(column_name(ResultColumn::kModified), "modified");
  EXPECT_EQ(column_of("odd"), ResultColumn::kFound);
}

TEST(PathFilter, LooksForATextWithoutCase) {
  EXPECT_TRUE(PathFilter("").takes("/a"));
  EXPECT_TRUE(PathFilter("SRC").takes("/src/a.c"));
  EXPECT_TRUE(PathFilter("c/A.").takes("/src/a.c"));
  EXPECT_FALSE(PathFilter("x").takes("/src/a.c"));
}

}  // namespace
}  // namespace zenfo::host::gui
