#include "gui/settings/settings.h"

#include <gtest/gtest.h>

#include <string>

namespace zenfo::host::gui {
namespace {

Settings from(std::string_view json) {
  std::string reason;
  const auto value = parse_json(json, &reason);
  EXPECT_TRUE(value) << reason;
  return settings_from_json(value.value_or(JsonValue()));
}

std::string text_of(const Settings& settings) {
  return format_json(to_json(settings), JsonForm::kOneLine);
}

TEST(Settings, AreTheSameAfterJson) {
  Settings settings;
  settings.window = {-5, 6, 700, 500, true};
  settings.columns["found"] = {{"name", 120, true}, {"size", 60, false}};
  settings.sort_column = "size";
  settings.sort_descending = settings.preview_below = settings.wrap = true;
  settings.preview_shown = false;
  settings.splitter_percent = 70;
  settings.theme = Theme::kDark;
  settings.font = "Mono";
  settings.font_size = 12;
  settings.editor = "edit {file}:{line}";
  settings.editors["c"] = "ide";
  settings.keys["search"] = "F9";
  settings.last_query.text = "x";
  settings.history.add(HistoryField::kFind, "x");
  const std::string text = text_of(settings);
  const Settings read = from(text);
  EXPECT_EQ(text_of(read), text);
  EXPECT_EQ(read.window, settings.window);
  EXPECT_EQ(read.columns, settings.columns);
  EXPECT_EQ(read.theme, Theme::kDark);
  EXPECT_EQ(read.editors, settings.editors);
  EXPECT_EQ(read.keys, settings.keys);
  EXPECT_EQ(read.last_query, settings.last_query);
  EXPECT_EQ(read.history.entries(HistoryField::kFind).size(), 1u);
}

TEST(Settings, UnknownMembersAreKept) {
  const Settings settings = from(
      "{\"version\":7,\"odd\":[1,{}],\"window\":{\"x\":3,\"new\":true},"
      "\"columns\":{\"other\":[{\"name\":\"a\"}]}}");
  const JsonValue json = to_json(settings);
  EXPECT_EQ(*json.find("version")->integer(), 7);
  EXPECT_EQ(format_json(*json.find("odd"), JsonForm::kOneLine), "[1,{}]");
  EXPECT_TRUE(*json.find("window")->find("new")->boolean());
  EXPECT_EQ(*json.find("window")->find("x")->integer(), 3);
  EXPECT_NE(json.find("columns")->find("other"), nullptr);
}

TEST(Settings, OddMembersGetTheirDefaults) {
  const Settings settings = from(
      "{\"window\":5,\"wrap\":\"yes\",\"font_size\":1000,\"zoom_percent\":2.5,"
      "\"splitter_percent\":-1,\"theme\":\"pink\",\"columns\":[],"
      "\"editors\":{\"c\":1},\"last_query\":{\"text\":1},\"history\":0}");
  const Settings defaults;
  EXPECT_EQ(settings.window, defaults.window);
  EXPECT_EQ(settings.wrap, defaults.wrap);
  EXPECT_EQ(settings.font_size, defaults.font_size);
  EXPECT_EQ(settings.zoom_percent, defaults.zoom_percent);
  EXPECT_EQ(settings.splitter_percent, defaults.splitter_percent);
  EXPECT_EQ(settings.theme, Theme::kSystem);
  EXPECT_TRUE(settings.columns.empty());
  EXPECT_TRUE(settings.editors.empty());
  EXPECT_EQ(settings.last_query, Query());
}

TEST(Settings, GetTheirVersion) {
  EXPECT_EQ(*to_json(Settings()).find("version")->integer(), kSettingsVersion);
  EXPECT_EQ(*to_json(from("{\"wrap\":true}")).find("version")->integer(),
            kSettingsVersion);
}

}  // namespace
}  // namespace zenfo::host::gui
