// Opens files in other programs.
#pragma once

#include <cstdint>
#include <string>

#include "gui/settings/settings.h"
#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

// In the user's editor for such files, at the line if it can; in the program
// that the system knows otherwise. Returns why that failed, or nothing.
std::string open_in_editor(HWND owner, const Settings& settings,
                           const std::string& path, uint64_t line);
// Its folder, with the file selected.
void show_in_folder(const std::string& path);
// The command with {file} and {line} replaced. A path with blanks is put into
// quotes, unless the command has them.
std::string editor_command(const std::string& command, const std::string& path,
                           uint64_t line);

}  // namespace zenfo::host::gui::win32
