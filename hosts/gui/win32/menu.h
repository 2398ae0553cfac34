// The menus, made from the table of commands.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include "gui/core/commands.h"
#include "gui/win32/system.h"

namespace zenfo::host::gui::win32 {

HMENU make_menu_bar();
// Commands for the rows of a list.
HMENU make_row_menu();
// Commands for the text page.
HMENU make_text_menu();
// Greys what cannot be done now, and checks what is on.
void update_menu(HMENU menu, const CommandState& state,
                 bool (*is_on)(CommandId id, const void* owner),
                 const void* owner);

}  // namespace zenfo::host::gui::win32
