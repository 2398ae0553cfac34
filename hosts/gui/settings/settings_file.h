// The file of settings.h.
//
// Tested by tests/gui/settings/settings_file_test.cpp
#pragma once

#include <string>
#include <string_view>

#include "gui/settings/settings.h"

namespace zenfo::host::gui {

// Defaults for a file that does not exist. One that is not JSON is renamed,
// with ".broken" after its name, and `message` says so; one that cannot be read
// leaves a message too, and is then not to be written.
Settings load_settings(const std::string& path, std::string* message,
                       bool* may_write);
// Writes a new file beside the old one, which it then replaces; creates folders
// that are missing. False, with a reason, when that fails: the old file stays.
bool save_settings(const std::string& path, const Settings& settings,
                   std::string* reason);

}  // namespace zenfo::host::gui
