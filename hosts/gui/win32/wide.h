// Texts of the core, which are UTF-8, as Windows has them.
#pragma once

#include <string>
#include <string_view>

#include "gui/core/strings.h"
#include "gui/core/unicode.h"

namespace zenfo::host::gui::win32 {

inline std::wstring wide(std::string_view text) {
  const std::u16string units = to_utf16(text);
  return {units.begin(), units.end()};
}
inline std::wstring wide(Text id) { return wide(text(id)); }
inline std::string narrow(std::wstring_view text) {
  return to_utf8(std::u16string(text.begin(), text.end()));
}

}  // namespace zenfo::host::gui::win32
