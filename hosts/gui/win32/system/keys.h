// Keys as messages have them, in the words of the table of commands.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include "gui/settings/commands.h"
#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

// The key of a WM_KEYDOWN or WM_SYSKEYDOWN, with the modifiers that are down.
// No key for one that the table does not know.
Key key_of_message(const MSG& message);

}  // namespace zenfo::host::gui::win32
