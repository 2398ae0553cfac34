// What the text of a path alone shows, by the rules of either system.
//
// Tested by tests/unit/platform/path_text_test.cpp
#pragma once

#include <string>
#include <string_view>

namespace zenfo::platform {

enum class PathStyle {
  kPosix,    // separator "/"
  kWindows,  // separators "\" and "/", drives, "\\server\share"
};

// The path with one separator of the style between its parts, none at its end
// and no "." parts; a path of separators alone stays one, ".." stays. On
// Windows two separators at the start stay two.
// Examples: "a//./b/" -> "a/b", "./." -> ".", "C:/x\" -> "C:\x".
std::string plain_path(std::string_view path, PathStyle style);

// Whether the text names a root: an empty text and a lone separator; with
// kWindows also a drive ("C:", "C:\"), a share ("\\server\share") or less, the
// long forms ("\\?\C:\", "\\?\UNC\server\share") included.
bool is_root_text(std::string_view folder, PathStyle style);

}  // namespace zenfo::platform
