// Small signs drawn with lines, so that they suit any colour and resolution.
#pragma once

#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"

namespace zenfo::host::gui::win32 {

enum class Check { kOff, kOn, kSome };
enum class Pointing { kDown, kRight, kUp, kLeft };

// In the middle of the area.
void draw_check(HDC device, const RECT& area, Check check, const Look& look);
void draw_arrow(HDC device, const RECT& area, Pointing to, COLORREF colour,
                const Look& look);
void draw_frame(HDC device, const RECT& area, COLORREF colour);

}  // namespace zenfo::host::gui::win32
