#include "gui/results/match_store.h"

#include <gtest/gtest.h>

#include <vector>

namespace zenfo::host::gui {
namespace {

std::vector<Match> made(uint32_t count) {
  std::vector<Match> matches;
  for (uint32_t i = 0; i < count; ++i) matches.push_back({i * 3, i % 7});
  return matches;
}

TEST(MatchStore, KeepsMatchesAcrossBlocks) {
  const std::vector<Match> all = made(200'000);
  MatchStore store;
  const std::span<const Match> span = all;
  store.append(span.first(65'535));
  store.append(span.subspan(65'535, 2));
  store.append(span.subspan(65'537));
  store.append({});
  ASSERT_EQ(store.size(), all.size());
  for (uint32_t i = 0; i < store.size(); ++i) {
    ASSERT_EQ(store.at(i), all[i]);
  }
}

TEST(MatchStore, AllAreChosenAtFirst) {
  MatchStore store;
  store.append(made(100));
  EXPECT_EQ(store.chosen_in(0, 100), 100u);
  store.choose(10, 5, false);
  EXPECT_FALSE(store.is_chosen(14));
  EXPECT_TRUE(store.is_chosen(15));
  EXPECT_EQ(store.chosen_in(5, 10), 5u);
}

TEST(MatchStore, GivesRangesAcrossBlocks) {
  const std::vector<Match> all = made(140'000);
  MatchStore store;
  store.append(all);
  EXPECT_EQ(store.range(0, store.size()), all);
  EXPECT_EQ(store.range(65'534, 5),
            std::vector<Match>(all.begin() + 65'534, all.begin() + 65'539));
  EXPECT_TRUE(store.range(140'000, 0).empty());
}

TEST(MatchStore, ACopyStaysAsItWas) {
  MatchStore store;
  store.append(made(70'000));
  const MatchStore copy = store;
  store.choose(5, 1, false);
  store.invert(69'999, 1);
  store.append(made(80'000));
  EXPECT_EQ(copy.size(), 70'000u);
  EXPECT_EQ(copy.chosen_in(0, 70'000), 70'000u);
  EXPECT_EQ(copy.range(0, 70'000), made(70'000));
  EXPECT_EQ(store.range(70'000, 80'000), made(80'000));
  EXPECT_EQ(store.chosen_in(0, 150'000), 149'998u);
}

TEST(MatchStore, NeedsLittleMoreThanEightBytesEach) {
  MatchStore store;
  EXPECT_EQ(store.bytes(), 0u);
  store.append(made(3));
  EXPECT_LT(store.bytes(), 200u);
  store.append(made(1'000'000));
  EXPECT_LT(store.bytes(), 9'000'000u);
}

}  // namespace
}  // namespace zenfo::host::gui
