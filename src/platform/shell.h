// Shell facts of a file: type name, icon, perceived type.
//
// Tested by tests/unit/platform/shell_test.cpp
#pragma once

#include <cstdint>
#include <string>

namespace zenfo::platform {

// The shell's type name ("Text Document"; natively "<EXT> File", "File" when
// there is no extension). False when the shell does not answer.
bool read_type_name(const char* path, std::string& type_name);
// Index of the small icon in the system image list (natively 0).
bool read_icon_index(const char* path, int32_t& index);
// Handle of the system image list of small icons, 0 natively.
intptr_t system_image_list(const char* path);
// Whether the system perceives files of this path's extension as text; on
// Windows the registry value "PerceivedType", natively a short table.
bool is_perceived_text(const char* path);

}  // namespace zenfo::platform
