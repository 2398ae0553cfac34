// Texts as C programs see them: up to the first NUL, and printed with "%s".
//
// Tested by tests/unit/text/c_text_test.cpp
#pragma once

#include <optional>
#include <string_view>

namespace zenfo {

inline std::string_view up_to_nul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

// What the files written show of a text.
// Intended: a missing one is written as "(null)".
inline std::string_view printed(std::optional<std::string_view> text) {
  return text ? up_to_nul(*text) : "(null)";
}

}  // namespace zenfo
