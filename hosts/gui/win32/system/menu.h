// The menus, made from the table of commands.
//
// Tested by tests/gui/win32/menu_test.cpp, tests/gui/window/window_test.cpp
#pragma once

#include "gui/settings/commands.h"
#include "gui/settings/key_map.h"
#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

HMENU make_menu_bar(const KeyMap& keys);
// Commands for the rows of a list.
HMENU make_row_menu(const KeyMap& keys);
// Commands for the text page.
HMENU make_text_menu(const KeyMap& keys);
// Greys what cannot be done now, and checks what is on.
void update_menu(HMENU menu, const CommandState& state,
                 bool (*is_on)(CommandId id, const void* owner),
                 const void* owner);

}  // namespace zenfo::host::gui::win32
