// Texts of the core, which are UTF-8, as Windows has them.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "gui/words/strings.h"
#include "gui/words/unicode.h"

namespace zenfo::host::gui::win32 {

inline std::wstring wide(std::string_view text) {
  static_assert(sizeof(wchar_t) == sizeof(char16_t));
  const std::u16string units = to_utf16(text);
  std::wstring copy(units.size(), L'\0');
  std::copy(units.begin(), units.end(), copy.begin());
  return copy;
}
inline std::wstring wide(Text id) { return wide(text(id)); }
inline std::string narrow(std::wstring_view text) {
  return to_utf8(std::u16string(text.begin(), text.end()));
}

}  // namespace zenfo::host::gui::win32
