// Messages that the program sends to its own main window.
#pragma once

#include "gui/win32/system.h"

namespace zenfo::host::gui::win32 {

inline constexpr UINT kWake = WM_APP + 1;       // a job has ended
inline constexpr UINT kLinesRead = WM_APP + 2;  // lines can be taken
inline constexpr UINT kCheckIdle = WM_APP + 3;  // someone waits for the end

}  // namespace zenfo::host::gui::win32
