// The system's dialogs for folders and for files to write.
#pragma once

#include <optional>
#include <string>

#include "gui/win32/base/system.h"

namespace zenfo::host::gui::win32 {

// No value when the user cancels.
std::optional<std::string> ask_for_folder(HWND owner);

struct FileWish {
  std::string path;
  unsigned kind = 0;  // the number of the chosen kind, from 0
};
// `kinds` as the system wants them: name, pattern, name, ..., each ended by a
// zero.
std::optional<FileWish> ask_where_to_save(HWND owner, const wchar_t* kinds,
                                          const wchar_t* name);

}  // namespace zenfo::host::gui::win32
