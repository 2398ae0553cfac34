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

// Texts of hosts, which may be null.
inline bool is_empty(const char* text) {
  return text == nullptr || *text == '\0';
}

inline std::string_view or_empty(const char* text) {
  return text != nullptr ? text : "";
}

// A text as written files show it.
// Intended: a missing one is written as "(null)".
inline std::string_view printed(std::optional<std::string_view> text) {
  return text ? up_to_nul(*text) : "(null)";
}

}  // namespace zenfo
