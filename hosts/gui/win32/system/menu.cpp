#include "gui/win32/system/menu.h"

#include <string>

#include "gui/win32/base/command_ids.h"
#include "gui/win32/base/wide.h"

namespace zenfo::host::gui::win32 {
namespace {

struct MenuRow {
  Menu menu;
  Text label;
};

constexpr MenuRow kMenus[] = {
    {Menu::kFile, Text::kMenuFile},     {Menu::kEdit, Text::kMenuEdit},
    {Menu::kSearch, Text::kMenuSearch}, {Menu::kResults, Text::kMenuResults},
    {Menu::kView, Text::kMenuView},     {Menu::kHelp, Text::kMenuHelp},
};

constexpr CommandId kRowCommands[] = {
    CommandId::kOpenInEditor, CommandId::kShowFolder,
    CommandId::kToggleChosen, CommandId::kRemoveFromResults,
    CommandId::kCopyPaths,    CommandId::kCopyRows,
    CommandId::kCopyLines,    CommandId::kCopyNames};

void append(HMENU menu, const Command& command, const KeyMap& keys) {
  std::wstring label = wide(command.label);
  const std::string key = key_name(keys.key(command.id));
  if (!key.empty()) label += L'\t' + wide(key);
  AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(number_of(command.id)),
              label.c_str());
}

HMENU make_menu(Menu menu, const KeyMap& keys) {
  const HMENU made = CreatePopupMenu();
  for (const Command& command : commands()) {
    if (command.menu != menu) continue;
    if (command.begins_group) AppendMenuW(made, MF_SEPARATOR, 0, nullptr);
    append(made, command, keys);
  }
  return made;
}

}  // namespace

HMENU make_menu_bar(const KeyMap& keys) {
  const HMENU bar = CreateMenu();
  for (const MenuRow& row : kMenus) {
    AppendMenuW(bar, MF_POPUP,
                reinterpret_cast<UINT_PTR>(make_menu(row.menu, keys)),
                wide(row.label).c_str());
  }
  return bar;
}

HMENU make_row_menu(const KeyMap& keys) {
  const HMENU menu = CreatePopupMenu();
  for (const CommandId id : kRowCommands) {
    if (id == CommandId::kToggleChosen || id == CommandId::kCopyPaths) {
      AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    }
    append(menu, command(id), keys);
  }
  return menu;
}

HMENU make_text_menu(const KeyMap& keys) {
  return make_menu(Menu::kTextPage, keys);
}

void update_menu(HMENU menu, const CommandState& state,
                 bool (*is_on)(CommandId id, const void* owner),
                 const void* owner) {
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const auto number = static_cast<int>(GetMenuItemID(menu, i));
    const auto id = command_of(number);
    if (!id) continue;
    const bool enabled = command(*id).enabled(state);
    EnableMenuItem(menu, static_cast<UINT>(i),
                   MF_BYPOSITION | (enabled ? MF_ENABLED : MF_GRAYED));
    CheckMenuItem(
        menu, static_cast<UINT>(i),
        MF_BYPOSITION | (is_on(*id, owner) ? MF_CHECKED : MF_UNCHECKED));
  }
}

}  // namespace zenfo::host::gui::win32
