#include "gui/settings/commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "support/document.h"

namespace zenfo::host::gui {
namespace {

TEST(Commands, EachHasOneRow) {
  std::set<CommandId> ids;
  std::set<std::string_view> names;
  for (const Command& row : commands()) {
    EXPECT_TRUE(ids.insert(row.id).second) << row.name;
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    EXPECT_EQ(&command(row.id), &row);
    EXPECT_EQ(find_command(row.name), &row);
    EXPECT_NE(row.menu, Menu::kNone) << row.name;
  }
  // kGoToFilter and the like: none is forgotten.
  for (int id = 0; id <= static_cast<int>(CommandId::kExit); ++id) {
    EXPECT_EQ(ids.count(static_cast<CommandId>(id)), 1u) << id;
  }
  EXPECT_EQ(find_command("none"), nullptr);
}

TEST(Commands, NoKeyMeansTwoThings) {
  for (const Command& a : commands()) {
    for (const Command& b : commands()) {
      const bool apart = a.place != b.place && a.place != KeyPlace::kAnywhere &&
                         b.place != KeyPlace::kAnywhere;
      if (&a == &b || apart || a.key == Key()) continue;
      EXPECT_FALSE(a.key == b.key) << a.name << ' ' << b.name;
    }
  }
}

TEST(Commands, KeysHaveNames) {
  EXPECT_EQ(key_name({}), "");
  EXPECT_EQ(key_name({KeyCode::kCharacter, 'F', true, true, false}),
            "Ctrl+Shift+F");
  EXPECT_EQ(key_name({KeyCode::kPageDown, 0, true}), "Ctrl+PgDn");
  for (const Command& row : commands()) {
    EXPECT_EQ(key_of(key_name(row.key)), row.key) << row.name;
  }
  EXPECT_EQ(key_of("Ctrl+"), Key());
  EXPECT_EQ(key_of("Ctrl+f"), Key());
  EXPECT_EQ(key_of("Odd"), Key());
}

// With the names that the menus show.
TEST(Commands, HaveTheirKeysInTheDocument) {
  std::string table = test::read_source("docs/window.md");
  std::erase(table, '\r');
  table = table.substr(table.find("<!-- keys -->"));
  table.resize(table.find("<!-- end of keys -->"));
  std::ptrdiff_t keys = 0;
  for (const Command& row : commands()) {
    const std::string key = key_name(row.key);
    if (key.empty()) continue;
    ++keys;
    const std::string line = "| " + key + " | " + plain_text(row.label) +
                             " | `" + std::string(row.name) + "` |\n";
    EXPECT_NE(table.find(line), std::string::npos) << line;
  }
  EXPECT_EQ(std::count(table.begin(), table.end(), '`'), 2 * keys);
}

TEST(Commands, AreEnabledByTheState) {
  CommandState state;
  EXPECT_FALSE(command(CommandId::kSearch).enabled(state));
  EXPECT_FALSE(command(CommandId::kStop).enabled(state));
  state.can_search = true;
  EXPECT_TRUE(command(CommandId::kSearch).enabled(state));
  state.running = true;
  EXPECT_FALSE(command(CommandId::kSearch).enabled(state));
  EXPECT_TRUE(command(CommandId::kStop).enabled(state));
  EXPECT_FALSE(command(CommandId::kExport).enabled(state));
  state.any_chosen = true;
  EXPECT_TRUE(command(CommandId::kExport).enabled(state));
  EXPECT_TRUE(command(CommandId::kExit).enabled(CommandState()));
}

// The access keys of a menu.
TEST(Commands, NoLetterStandsForTwoRowsOfAMenu) {
  std::set<std::pair<Menu, char>> letters;
  for (const Command& row : commands()) {
    const std::string_view label = text(row.label);
    const size_t mark = label.find('&');
    if (mark == std::string_view::npos) continue;
    const char letter = static_cast<char>(label[mark + 1] | 0x20);
    EXPECT_TRUE(letters.emplace(row.menu, letter).second) << label;
  }
}

// Of the window: with Alt they go to a menu, a field or a button, or are the
// keys of commands. The button for searches has none, its menu has it.
TEST(Commands, NoLetterWithAltMeansTwoThings) {
  std::set<char> letters;
  for (const Text name :
       {Text::kMenuFile, Text::kMenuEdit, Text::kMenuSearch, Text::kMenuResults,
        Text::kMenuView, Text::kMenuHelp, Text::kFind, Text::kFolders,
        Text::kIncludeNames, Text::kExcludeNames, Text::kSubfolders,
        Text::kCommandMore, Text::kAreas, Text::kAreaPattern, Text::kAreaStart,
        Text::kAreaEnd, Text::kSearchBinary, Text::kFilter}) {
    const std::string_view label = text(name);
    const size_t mark = label.find('&');
    if (mark == std::string_view::npos) continue;
    EXPECT_TRUE(
        letters.insert(static_cast<char>(label[mark + 1] | 0x20)).second)
        << label;
  }
  for (const Command& row : commands()) {
    const Key& key = row.key;
    if (!key.alt || key.control || key.code != KeyCode::kCharacter) continue;
    EXPECT_TRUE(letters.insert(static_cast<char>(key.character | 0x20)).second)
        << row.name;
  }
}

}  // namespace
}  // namespace zenfo::host::gui
