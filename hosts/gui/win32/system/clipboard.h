// Text for other programs.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>

#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

// False if another program holds the clipboard.
bool copy_text(HWND owner, const std::wstring& text);
// Empty if the clipboard has no text, or another program holds it.
std::wstring copied_text(HWND owner);

}  // namespace zenfo::host::gui::win32
