// One window for all starts: a second start hands its command line to the
// window that is there.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

// False if there is no window yet, or it does not answer.
bool hand_over(const wchar_t* window_class,
               const std::vector<std::string>& arguments);
// No value for a message of another kind.
std::optional<std::vector<std::string>> arguments_in(
    const COPYDATASTRUCT& data);

}  // namespace zenfo::host::gui::win32
