// A window's client area as a picture.
#pragma once

#include <windows.h>

#include <string>

namespace zenfo::viewer {

// Saves the contents of the window as a PNG file; false if that fails.
bool save_screenshot(HWND window, const std::wstring& path);

}  // namespace zenfo::viewer
