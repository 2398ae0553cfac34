#include "gui/win32/system/menu.h"

#include <gtest/gtest.h>

#include <string>

#include "gui/win32/base/command_ids.h"

namespace zenfo::host::gui::win32 {
namespace {

// The label of a command in a menu or one below it.
std::wstring label_in(HMENU menu, CommandId id) {
  wchar_t text[200] = L"";
  GetMenuStringW(menu, static_cast<UINT>(number_of(id)), text, 200,
                 MF_BYCOMMAND);
  return text;
}

TEST(Menus, NameTheKeysInForce) {
  const KeyMap usual;
  const KeyMap changed({{"search", "Ctrl+R"}, {"open", ""}});
  struct Row {
    HMENU (*make)(const KeyMap&);
    CommandId command;
    const wchar_t *usual, *changed;
  };
  const Row rows[] = {
      {make_menu_bar, CommandId::kSearch, L"&Search\tF5", L"&Search\tCtrl+R"},
      {make_row_menu, CommandId::kOpenInEditor, L"&Open at the line\tEnter",
       L"&Open at the line"},
      {make_text_menu, CommandId::kCopyText, L"&Copy\tCtrl+C",
       L"&Copy\tCtrl+C"}};
  for (const Row& row : rows) {
    const HMENU before = row.make(usual);
    const HMENU after = row.make(changed);
    EXPECT_EQ(label_in(before, row.command), row.usual);
    EXPECT_EQ(label_in(after, row.command), row.changed);
    DestroyMenu(before);
    DestroyMenu(after);
  }
}

}  // namespace
}  // namespace zenfo::host::gui::win32
