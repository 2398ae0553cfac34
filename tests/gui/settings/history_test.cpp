#include "gui/settings/history.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zenfo::host::gui {
namespace {

using Entries = std::vector<std::string>;
constexpr auto kFind = HistoryField::kFind;

TEST(History, TheNewestEntryIsFirst) {
  History history;
  EXPECT_TRUE(history.entries(kFind).empty());
  for (const char* entry : {"a", "b", "a", "", "c"}) history.add(kFind, entry);
  EXPECT_EQ(history.entries(kFind), Entries({"c", "a", "b"}));
  EXPECT_TRUE(history.entries(HistoryField::kFolders).empty());
  history.remove(kFind, "a");
  history.remove(kFind, "none");
  EXPECT_EQ(history.entries(kFind), Entries({"c", "b"}));
  history.clear();
  EXPECT_TRUE(history.entries(kFind).empty());
}

TEST(History, AddsAnEntryOfItsOwn) {
  History history;
  history.add(kFind, "a");
  history.add(kFind, "b");
  history.add(kFind, history.entries(kFind)[1]);
  EXPECT_EQ(history.entries(kFind), Entries({"a", "b"}));
  history.remove(kFind, history.entries(kFind)[0]);
  EXPECT_EQ(history.entries(kFind), Entries({"b"}));
}

TEST(History, KeepsFifty) {
  History history;
  for (int i = 0; i < 60; ++i) history.add(kFind, std::to_string(i));
  ASSERT_EQ(history.entries(kFind).size(), 50u);
  EXPECT_EQ(history.entries(kFind).front(), "59");
  EXPECT_EQ(history.entries(kFind).back(), "10");
}

TEST(History, RemembersNothingWhileOff) {
  History history;
  history.set_remembers(false);
  history.add(kFind, "a");
  EXPECT_TRUE(history.entries(kFind).empty());
}

TEST(History, IsTheSameAfterJson) {
  History history;
  history.add(kFind, "a\nb");
  history.add(HistoryField::kFolders, "C:\\x; y");
  history.set_remembers(false);
  JsonValue json;
  json["odd"] = 1;
  history.write(json);
  EXPECT_NE(json.find("odd"), nullptr);
  History read;
  read.read(json);
  EXPECT_EQ(read.entries(kFind), history.entries(kFind));
  EXPECT_EQ(read.entries(HistoryField::kFolders), Entries({"C:\\x; y"}));
  EXPECT_FALSE(read.remembers());
}

TEST(History, LeavesOutWhatHasAnotherForm) {
  std::string reason;
  History history;
  history.read(*parse_json(
      "{\"find\":[\"a\",1,\"\",\"a\",\"b\"],\"folders\":\"x\",\"remember\":3}",
      &reason));
  EXPECT_EQ(history.entries(kFind), Entries({"a", "b"}));
  EXPECT_TRUE(history.entries(HistoryField::kFolders).empty());
  EXPECT_TRUE(history.remembers());
}

}  // namespace
}  // namespace zenfo::host::gui
