#include "gui/settings/key_map.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace zenfo::host::gui {
namespace {

using Changes = std::map<std::string, std::string>;

constexpr auto kList = KeyPlace::kList;
constexpr auto kFields = KeyPlace::kFields;

TEST(KeyMap, HasTheKeysOfTheTable) {
  const KeyMap map;
  for (const Command& row : commands()) {
    EXPECT_EQ(map.key(row.id), row.key);
    if (row.key == Key()) continue;
    const KeyPlace place = row.place == KeyPlace::kAnywhere ? kList : row.place;
    EXPECT_EQ(map.find(row.key, place), &row) << row.name;
  }
  EXPECT_EQ(map.find(Key(), kList), nullptr);
}

TEST(KeyMap, KeysMeanWhatTheyMeanWhereTheyAre) {
  const KeyMap map;
  const Key copy = key_of("Ctrl+C");
  EXPECT_EQ(map.find(copy, kFields), nullptr);
  EXPECT_EQ(map.find(copy, kList)->id, CommandId::kCopyPaths);
  EXPECT_EQ(map.find(key_of("F3"), kFields)->id, CommandId::kNextMatch);
}

TEST(KeyMap, AChangedKeyLeavesOthers) {
  const KeyMap map(
      {{"search", "F3"}, {"zoom.in", ""}, {"odd", "F1"}, {"exit", "no key"}});
  EXPECT_EQ(map.find(key_of("F3"), kList)->id, CommandId::kSearch);
  EXPECT_EQ(map.key(CommandId::kNextMatch), Key());
  EXPECT_EQ(map.find(key_of("F5"), kList), nullptr);
  EXPECT_EQ(map.key(CommandId::kZoomIn), Key());
  EXPECT_EQ(map.key(CommandId::kShowKeys), key_of("F1"));
  EXPECT_EQ(map.key(CommandId::kExit), Key());
}

// A key of the list and the same key of fields do not collide.
TEST(KeyMap, KeysOfDifferentPlacesMayBeTheSame) {
  const KeyMap map(Changes{{"history.show", "Ctrl+C"}});
  EXPECT_EQ(map.find(key_of("Ctrl+C"), kList)->id, CommandId::kCopyPaths);
  EXPECT_EQ(map.find(key_of("Ctrl+C"), kFields)->id, CommandId::kShowHistory);
}

}  // namespace
}  // namespace zenfo::host::gui
