// A window's client area as a picture.
#pragma once

#include <windows.h>

#include <string>

namespace zenfo::viewer {

// Saves what the window shows as a PNG file; false when that fails.
bool save_screenshot(HWND window, const std::wstring& path);

}  // namespace zenfo::viewer
