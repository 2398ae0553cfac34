// Messages and timers of the main window that come from the program itself.
#pragma once

#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

inline constexpr UINT_PTR kPullTimer = 1;    // news of jobs
inline constexpr UINT_PTR kOutputTimer = 2;  // progress of an export

inline constexpr UINT kWake = WM_APP + 1;       // a job has ended
inline constexpr UINT kLinesRead = WM_APP + 2;  // lines can be taken
inline constexpr UINT kCheckIdle = WM_APP + 3;  // someone waits for the end

inline constexpr UINT kWorkEnded = WM_APP + 4;  // of a side thread

}  // namespace zenfo::host::gui::win32
