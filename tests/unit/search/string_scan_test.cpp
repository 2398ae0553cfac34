// The strings of a run, looked for together in a text.
#include "search/string_scan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace zenfo {
namespace {

using testing::ElementsAre;
using Offsets = std::optional<std::vector<uint32_t>>;

Offsets offsets(const StringScan& scan, uint32_t place) {
  const auto found = scan.offsets(place);
  if (!found) return std::nullopt;
  return std::vector<uint32_t>(found->begin(), found->end());
}

std::vector<uint32_t> due(const StringScan& scan) {
  std::vector<uint32_t> places;
  for (uint32_t at = scan.next_due(0); at != StringScan::kNoPlace;
       at = scan.next_due(at + 1)) {
    places.push_back(at);
  }
  return places;
}

TEST(StringScan, KnowsWhereEveryStringOccurs) {
  StringScan scan({{1, "aa"}, {3, "b"}, {4, "zz"}, {7, "aa"}, {9, "y"}}, true);
  ASSERT_TRUE(scan.look_through("aaab aab"));
  EXPECT_THAT(*offsets(scan, 1), ElementsAre(0, 1, 5));
  EXPECT_THAT(*offsets(scan, 3), ElementsAre(3, 7));
  EXPECT_THAT(*offsets(scan, 4), ElementsAre());
  EXPECT_THAT(*offsets(scan, 7), ElementsAre(0, 1, 5));
  EXPECT_THAT(*offsets(scan, 9), ElementsAre());
  EXPECT_EQ(offsets(scan, 0), std::nullopt) << "no string is there";
  EXPECT_EQ(offsets(scan, 10), std::nullopt);
  EXPECT_THAT(due(scan), ElementsAre(1, 3, 7, 9)) << "the last is always due";
}

TEST(StringScan, ForgetsTheLastText) {
  StringScan scan({{0, "a"}, {1, "b"}, {2, "c"}}, true);
  ASSERT_TRUE(scan.look_through("aab"));
  ASSERT_TRUE(scan.look_through("xbx"));
  EXPECT_THAT(*offsets(scan, 0), ElementsAre());
  EXPECT_THAT(*offsets(scan, 1), ElementsAre(1));
  EXPECT_THAT(due(scan), ElementsAre(1, 2));
  ASSERT_TRUE(scan.look_through(""));
  EXPECT_THAT(due(scan), ElementsAre(2));
}

TEST(StringScan, FollowsTheCaseFlag) {
  StringScan scan({{0, "Ab"}, {1, "aB"}}, false);
  ASSERT_TRUE(scan.look_through("AB ab"));
  EXPECT_THAT(*offsets(scan, 0), ElementsAre(0, 3));
  EXPECT_THAT(*offsets(scan, 1), ElementsAre(0, 3));
}

TEST(StringScan, LeavesStringsThatAreTooLongToASearchOfTheirOwn) {
  StringScan scan({{0, std::string(300, 'a')}, {1, "b"}}, true);
  ASSERT_TRUE(scan.look_through("b"));
  EXPECT_EQ(offsets(scan, 0), std::nullopt);
  EXPECT_THAT(due(scan), ElementsAre(0, 1));
}

TEST(StringScan, DoesNotKeepStringsThatOccurTooOften) {
  StringScan scan({{0, "a"}, {1, "b"}, {2, "c"}, {3, "x"}}, true, 10);
  ASSERT_TRUE(scan.look_through("aaaaaaaaaaaabcaaaaaaaaaaaaaaaab"));
  EXPECT_EQ(offsets(scan, 0), std::nullopt);
  EXPECT_THAT(*offsets(scan, 1), ElementsAre(12, 30));
  EXPECT_THAT(*offsets(scan, 2), ElementsAre(13));
  EXPECT_THAT(due(scan), ElementsAre(0, 1, 2, 3));
  ASSERT_TRUE(scan.look_through("ab"));
  EXPECT_THAT(*offsets(scan, 0), ElementsAre(0)) << "the next text is another";
}

TEST(StringScan, KeepsLessThanItsRoomHoweverManyOccur) {
  std::string text;
  for (int i = 0; i < 4000; ++i) text += static_cast<char>('a' + i % 20);
  std::vector<StringScan::Placed> strings;
  for (uint32_t i = 0; i < 20; ++i) {
    strings.push_back({i, std::string(1, static_cast<char>('a' + i))});
  }
  StringScan scan(strings, true, 100);
  ASSERT_TRUE(scan.look_through(text));
  for (uint32_t i = 0; i < 20; ++i) EXPECT_EQ(offsets(scan, i), std::nullopt);
  EXPECT_EQ(due(scan).size(), 20u);
}

}  // namespace
}  // namespace zenfo
